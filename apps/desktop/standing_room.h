// Figures that are loaded beside those that stand there.
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class DzAction;
class DzNode;

namespace desktop {

/// A figure that comes alone and would stand inside another one is put to the right of all, as seen from the
/// front. Its shape does not hang on the place. Figures whose file gives them a place of their own stay
/// there, and so does what a conversion or a script loads.
class StandingRoom : public QObject {
    Q_OBJECT

public:
    StandingRoom();

    /// Before every action of the window.
    void watch(const DzAction& action);

signals:
    void figurePlaced(); ///< beside others, of which it may be too far off to be seen with them

private slots:
    void handleActionStarting();
    void handleActionDone();
    void handleLoadStarting();
    void handleLoaded();

private:
    QList<QPointer<DzNode>> _before; ///< figures at the start of a load
    bool _isConverting = false;
};

} // namespace desktop
