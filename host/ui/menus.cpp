// The main window's menus.
// SPDX-License-Identifier: MIT

#include "menus.h"

#include "dzaction.h"
#include "dzactionmgr.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace openhost {

namespace {

QString WithoutMnemonic(QString text)
{
    return text.remove(QLatin1Char('&'));
}

/// Paths have English titles whatever the language is. Those of plug-ins are shown as they are.
QString ShownTitle(const QString& title)
{
    const char* const context = "openhost::Menus";
    for (const char* const known :
         {QT_TRANSLATE_NOOP("openhost::Menus", "&File"), QT_TRANSLATE_NOOP("openhost::Menus", "&Edit"),
          QT_TRANSLATE_NOOP("openhost::Menus", "&Help")})
        if (WithoutMnemonic(QLatin1String(known)) == WithoutMnemonic(title))
            return QCoreApplication::translate(context, known);
    return title;
}

/// The menu of that title on a bar or in a menu, made if it is missing.
template <class Owner>
QMenu& MenuIn(Owner& owner, const QString& title)
{
    for (const QAction* const action : owner.actions())
        if (action->menu() && action->data().toString() == WithoutMnemonic(title))
            return *action->menu();
    QMenu& menu = *owner.addMenu(ShownTitle(title));
    menu.menuAction()->setData(WithoutMnemonic(title));
    return menu;
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
