// The attendant of the running application.
// SPDX-License-Identifier: MIT

#pragma once

#include "openhost/attendant.h"

namespace openhost {

/// One that answers as nobody would where the application was started without.
Attendant& CurrentAttendant();

} // namespace openhost
