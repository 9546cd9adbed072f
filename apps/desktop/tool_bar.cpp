// The tool bar of the main window.
// SPDX-License-Identifier: MIT

#include "tool_bar.h"

#include "drawn_icons.h"
#include "openhost/plain_tip.h"

#include <QMainWindow>
#include <QMenu>
#include <QToolButton>

namespace desktop {

namespace {

QString WithoutMarks(QString text)
{
    text.remove(QLatin1Char('&'));
    return text.endsWith(QLatin1String("...")) ? text.chopped(3) : text;
}

QString TipOf(const QAction& entry)
{
    const QString name = WithoutMarks(entry.text());
    const QString keys = entry.shortcut().toString(QKeySequence::NativeText);
    return openhost::PlainTip(keys.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, keys));
}

} // namespace

ToolBar::ToolBar(QMainWindow& window) : QToolBar(tr("Tool Bar"), &window)
{
    setObjectName(QStringLiteral("ToolBar"));
    setAccessibleName(tr("Tool bar"));
    const int side = fontMetrics().height() + 4;
    setIconSize(QSize(side, side));
    toggleViewAction()->setText(tr("&Tool Bar"));
    window.addToolBar(Qt::TopToolBarArea, this);
}

void ToolBar::addEntry(QAction& entry, DrawnIcon icon)
{
    entry.setIcon(MakeIcon(icon));
    entry.setIconVisibleInMenu(false);
    addAction(&entry);
    widgetForAction(&entry)->setFocusPolicy(Qt::TabFocus);
    connect(&entry, SIGNAL(changed()), SLOT(updateTip()), Qt::UniqueConnection);
    entry.setToolTip(TipOf(entry));
}

void ToolBar::addMenu(QMenu& menu, DrawnIcon icon)
{
    auto* const button = new QToolButton;
    button->setIcon(MakeIcon(icon));
    button->setMenu(&menu);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(WithoutMarks(menu.title()));
    button->setToolTip(WithoutMarks(menu.title()));
    addWidget(button);
}

/// Names change: of what can be undone, and keys by the user's choice.
void ToolBar::updateTip()
{
    auto* const entry = qobject_cast<QAction*>(sender());
    if (entry && entry->toolTip() != TipOf(*entry))
        entry->setToolTip(TipOf(*entry));
}

} // namespace desktop
