// The desktop application's menu entries among those of the host and its plug-ins.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_menus.h"

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace desktop {

namespace {

/// File and Edit come first and Help comes last; what plug-ins bring stands between.
int Rank(const QAction* menu)
{
    const QString title = menu->text().remove(QLatin1Char('&'));
    if (title == QLatin1String("File"))
        return 0;
    if (title == QLatin1String("Edit"))
        return 1;
    return title == QLatin1String("Help") ? 3 : 2;
}

void DrawLines(QMenu& menu)
{
    for (QAction* const entry : menu.actions()) {
        const auto* const action = qobject_cast<const MenuAction*>(entry);
        if (action && action->startsGroup())
            menu.insertSeparator(entry);
    }
}

} // namespace

MenuAction::MenuAction(const ActionTexts& texts, std::function<void()> work)
    : DzAction(tr(texts.text), tr(texts.description)), _menu(QLatin1String(texts.menu)), _keys(texts.keys),
      _startsGroup(texts.startsGroup), _work(std::move(work))
{
}

void MenuAction::executeAction()
{
    _work();
}

void ArrangeMenus(QMainWindow& window, QMenu& panes)
{
    QMenuBar& bar = *window.menuBar();
    QList<QAction*> menus = bar.actions();
    std::stable_sort(menus.begin(), menus.end(),
                     [](const QAction* a, const QAction* b) { return Rank(a) < Rank(b); });
    bar.addActions(menus); // moves those that are there
    const bool endsInHelp = !menus.isEmpty() && Rank(menus.last()) == 3;
    bar.insertMenu(endsInHelp ? menus.last() : nullptr, &panes);
    for (const QAction* const menu : std::as_const(menus))
        DrawLines(*menu->menu());
}

} // namespace desktop
