// Objects that nobody owns any more, while others may still have them in their hands.
// SPDX-License-Identifier: MIT

#include "app/letting_go.h"

#include <QObject>

namespace openhost {

namespace {

Keeper* g_keeper = nullptr;

} // namespace

Keeper* CurrentKeeper()
{
    return g_keeper;
}

void SetCurrentKeeper(Keeper* keeper)
{
    g_keeper = keeper;
}

void LetGoOf(QObject* object)
{
    if (object && g_keeper)
        g_keeper->keep(*object);
    else
        delete object;
}

} // namespace openhost
