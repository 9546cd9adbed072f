// The log, for rooms below the application.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// To the application's log as a plain line; nowhere while there is no application.
void LogNote(const QString& line);
/// To the application's log as a warning; to stderr while there is no application.
void LogWarning(const QString& line);

} // namespace openhost
