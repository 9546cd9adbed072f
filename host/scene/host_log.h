// The log, for rooms below the application.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// To the application's log as a warning; to stderr while there is no application.
void LogWarning(const QString& line);

} // namespace openhost
