// Tells when shapes of the scene may have changed.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>

class DzNode;
class DzObject;

namespace desktop {

/// Of all nodes, those too that come later. Hears of nothing any more once it is deleted: nodes that an
/// undone removal brings back have kept their connections.
class ShapeChanges : public QObject {
    Q_OBJECT

public:
    ShapeChanges();

signals:
    /// Once for what comes together; once at the beginning too.
    void changed();

private slots:
    void watch(DzNode* node);
    void watch(DzNode* node, DzObject* before, DzObject* now);

private:
    QTimer _soon;
};

} // namespace desktop
