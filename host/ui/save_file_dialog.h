// The dialog for the file to save.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// A SaveFileAsker over the application's dialog parent.
QString AskForSaveFile(const QString& title, const QString& startingDir);

} // namespace openhost
