// The dialog for the file to save.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// Over the application's dialog parent.
/// @return empty when it was cancelled
QString AskForSaveFile(const QString& title, const QString& startingDir);

} // namespace openhost
