// The actions of the host and its plug-ins.
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QWidget>

class DzAction;
class DzClassFactory;
class DzPlugin;

/// Owns its actions.
class DzActionMgr : public QWidget {
    Q_OBJECT
public:
    explicit DzActionMgr(QWidget* parent);
    ~DzActionMgr();

    /// The first action of exactly that class; null if none.
    Q_INVOKABLE DzAction* findAction(const QString& className) const;
    Q_INVOKABLE int getNumActions() const;
    Q_INVOKABLE DzAction* getAction(int index) const;
    /// Takes ownership and sets the action's default shortcut.
    void addAction(DzAction* action);
    /// One action for each action class of the plug-in.
    void addActions(const DzPlugin& plugin);
    /// Deletes the actions of the plug-in's classes.
    void removeActions(const DzPlugin& plugin);

signals:
    void actionListChanged();

private:
    QList<DzAction*> _actions;
};
