// The log, for the rooms of the host.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// To the application's log as a plain line; nowhere while there is no application. What somebody should know
/// is a diagnostic instead.
void LogNote(const QString& line);

} // namespace openhost
