// Whether the scene has been changed since it was last as in its file.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/events.h"

#include <QObject>

namespace desktop {

/// Listens to the host as long as it lives.
class SceneChanges : public QObject {
    Q_OBJECT

public:
    SceneChanges();

    bool isChanged() const { return _isChanged; }
    void setChanged(bool isChanged);

signals:
    void toggled(); ///< there are changes now, or none any more

private slots:
    void followSteps(bool isClean);
    void handleNodes();
    void handleEdit(openhost::SceneEdit edit, DzElement* element);

private:
    bool _isChanged = false;
};

} // namespace desktop
