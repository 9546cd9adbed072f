// The two figures that are looked at against each other.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <dzskeleton.h>

namespace desktop {

/// A result and its source. As long as nobody chooses, the first two figures of the scene: of these a Genesis
/// 9 is the result, and the later one otherwise.
class ComparedFigures : public QObject {
    Q_OBJECT

public:
    ComparedFigures();

    /// Those that can be chosen, in the scene's order: with a mesh, and not worn by another one.
    const QVector<QPointer<DzSkeleton>>& all() const { return _all; }
    /// Null with less than two figures. The two are never the same.
    DzSkeleton* source() const { return _source; }
    DzSkeleton* result() const { return _result; }
    bool areThere() const { return _source && _result; }

    /// A figure of all(). Who was in the other place moves to that one's.
    void setSource(DzSkeleton* figure);
    void setResult(DzSkeleton* figure);

signals:
    /// Others are compared, or others can be.
    void changed();

public slots:
    void update();

private:
    QTimer _soon;
    QVector<QPointer<DzSkeleton>> _all;
    QPointer<DzSkeleton> _source, _result;
};

} // namespace desktop
