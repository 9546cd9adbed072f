// Asking for the file to save.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// Who asks for a file to write; an empty answer is a refusal.
/// @param title        names what is saved
/// @param startingDir  folder to begin in
using SaveFileAsker = QString (*)(const QString& title, const QString& startingDir);
/// Null for nobody, as without a display.
void SetSaveFileAsker(SaveFileAsker asker);
SaveFileAsker CurrentSaveFileAsker();

} // namespace openhost
