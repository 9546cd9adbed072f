// Joints that follow what an action makes of a figure's shape.
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QStringList>

#include <utility>
#include <vector>

class DzAction;
class DzNode;

namespace desktop {

/// Adjusts the rig of figures that have got new morphs by the time an action is done. Dialogs that the action
/// leaves open can save the morphs only after that.
class RigFollower : public QObject {
    Q_OBJECT

public:
    /// @param action  borrowed; watched once, however often it is given
    void watch(const DzAction& action);
    void setWanted(bool isWanted) { _isWanted = isWanted; }

private slots:
    void noteMorphs();
    void followNewMorphs();

private:
    void follow(DzNode& figure, const QSet<QString>& known, QStringList& troubles) const;

    bool _isWanted = false;
    QPointer<QObject> _running; ///< the action that is looked at; those that it runs itself are a part of it
    /// The figures with the names of their morphs before the action.
    std::vector<std::pair<QPointer<DzNode>, QSet<QString>>> _known;
};

} // namespace desktop
