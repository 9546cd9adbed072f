// The main window's menus.
// SPDX-License-Identifier: MIT

#include "menus.h"

#include "dzaction.h"
#include "dzactionmgr.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace openhost {

namespace {

QString WithoutMnemonic(QString text)
{
    return text.remove(QLatin1Char('&'));
}

/// The menu of that title on a bar or in a menu, made if it is missing.
template <class Owner>
QMenu& MenuIn(Owner& owner, const QString& title)
{
    for (const QAction* const action : owner.actions())
        if (action->menu() && WithoutMnemonic(action->menu()->title()) == WithoutMnemonic(title))
            return *action->menu();
    return *owner.addMenu(title);
}

} // namespace

void FillMenus(QMainWindow& window, const DzActionMgr& actions)
{
    QMenuBar& bar = *window.menuBar();
    bar.clear();
    for (int i = 0; i < actions.getNumActions(); ++i) {
        DzAction* const action = actions.getAction(i);
        QMenu* menu = nullptr;
        for (const QString& title : action->getDefaultMenuPath().split(QLatin1Char('/'), Qt::SkipEmptyParts))
            menu = menu ? &MenuIn(*menu, title) : &MenuIn(bar, title);
        if (menu)
            menu->addAction(action);
    }
}

} // namespace openhost
