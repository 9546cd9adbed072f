// The menu of the windows' colours.
// SPDX-License-Identifier: MIT

#include "look_menu.h"

#include "desktop_settings.h"
#include "openhost/look.h"

#include <QActionGroup>

#include <utility>

namespace desktop {

void TakeLook(LookChoice choice)
{
    using openhost::Look;
    const Look wanted = choice == LookChoice::System  ? openhost::SystemLook()
                        : choice == LookChoice::Light ? Look::Light
                                                      : Look::Dark;
    if (wanted != openhost::CurrentLook())
        openhost::SetLook(wanted);
}

LookMenu::LookMenu() : QMenu(tr("&Look"))
{
    auto* const looks = new QActionGroup(this);
    for (const auto& [text, choice] : {std::pair{tr("&Dark"), LookChoice::Dark},
                                       {tr("&Light"), LookChoice::Light},
                                       {tr("&System"), LookChoice::System}}) {
        QAction* const entry = addAction(text);
        entry->setCheckable(true);
        entry->setData(int(choice));
        looks->addAction(entry);
    }
    TakeLook(RememberedLook());
    showChoice();
    connect(looks, SIGNAL(triggered(QAction*)), SLOT(choose(QAction*)));
    connect(this, SIGNAL(aboutToShow()), SLOT(showChoice()));
}

void LookMenu::choose(QAction* entry)
{
    const auto choice = LookChoice(entry->data().toInt());
    TakeLook(choice);
    RememberLook(choice);
}

void LookMenu::showChoice()
{
    const LookChoice remembered = RememberedLook();
    for (QAction* const entry : actions())
        entry->setChecked(LookChoice(entry->data().toInt()) == remembered);
}

} // namespace desktop
