// The desktop application's menu entries among those of the host and its plug-ins.
// SPDX-License-Identifier: MIT

#include "desktop_menus.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace desktop {

namespace {

/// File and Edit come first and Help comes last; what plug-ins bring stands between. The host's menus are
/// told apart by their data, since titles are translated.
int Rank(const QAction* menu)
{
    const QStringList order{QStringLiteral("File"),   QStringLiteral("Edit"),
                            QStringLiteral("View"),   QString(),
                            QStringLiteral("Window"), QStringLiteral("Help")};
    const int place = order.indexOf(menu->data().toString());
    return place >= 0 ? place : order.indexOf(QString());
}

void Divide(QMenu& menu)
{
    for (QAction* const entry : menu.actions()) {
        const auto* const action = qobject_cast<const MenuAction*>(entry);
        if (action && action->startsGroup())
            menu.insertSeparator(entry);
        if (action && action->above())
            menu.insertMenu(entry, action->above());
    }
}

} // namespace

MenuAction::MenuAction(const ActionTexts& texts, std::function<void()> work)
    : DzAction(tr(texts.text), tr(texts.description)), _menu(QLatin1String(texts.menu)), _keys(texts.keys),
      _startsGroup(texts.startsGroup), _above(texts.above), _work(std::move(work))
{
}

void MenuAction::executeAction()
{
    _work();
}

void ArrangeMenus(QMainWindow& window, QMenu& view, QMenu& panes)
{
    QMenuBar& bar = *window.menuBar();
    for (const QAction* const menu : bar.actions())
        Divide(*menu->menu());
    view.menuAction()->setData(QStringLiteral("View"));
    panes.menuAction()->setData(QStringLiteral("Window"));
    QList<QAction*> menus = bar.actions() + QList<QAction*>{view.menuAction(), panes.menuAction()};
    std::stable_sort(menus.begin(), menus.end(),
                     [](const QAction* a, const QAction* b) { return Rank(a) < Rank(b); });
    bar.addActions(menus); // moves those that are there
}

} // namespace desktop
