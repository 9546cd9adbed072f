// The menu of the windows' colours.
// SPDX-License-Identifier: MIT

#include "look_menu.h"

#include "desktop_settings.h"
#include "openhost/look.h"

#include <QActionGroup>

namespace desktop {

LookMenu::LookMenu() : QMenu(tr("&Look"))
{
    using openhost::Look;
    openhost::SetLook(RememberedLightLook() ? Look::Light : Look::Dark);
    auto* const looks = new QActionGroup(this);
    for (const Look look : {Look::Dark, Look::Light}) {
        QAction* const entry = addAction(look == Look::Dark ? tr("&Dark") : tr("&Light"));
        entry->setCheckable(true);
        entry->setChecked(look == openhost::CurrentLook());
        entry->setData(look == Look::Light);
        looks->addAction(entry);
    }
    connect(looks, SIGNAL(triggered(QAction*)), SLOT(choose(QAction*)));
}

void LookMenu::choose(QAction* entry)
{
    const bool isLight = entry->data().toBool();
    openhost::SetLook(isLight ? openhost::Look::Light : openhost::Look::Dark);
    RememberLightLook(isLight);
}

} // namespace desktop
