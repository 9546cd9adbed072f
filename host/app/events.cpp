// What happens in the host, told to whoever connects.
// SPDX-License-Identifier: MIT

#include "openhost/events.h"

#include "app/app_access.h"
#include "dzapp.h"

namespace openhost {

HostEvents::HostEvents() = default;
HostEvents::~HostEvents() = default;

HostEvents& Events()
{
    static HostEvents unheard;
    return dzApp ? AppAccess::Events(*dzApp) : unheard;
}

} // namespace openhost
