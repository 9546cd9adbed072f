// What the user wishes of all runs.
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop_settings.h"
#include "openhost/length_unit.h"

#include <QString>
#include <QStringList>

#include <dzauthor.h>

namespace desktop {

struct Preferences {
    QStringList contentFolders;
    DzAuthor author; ///< without a name as long as nobody gave one
    openhost::LengthUnit lengths = openhost::LengthUnit::Centimetre;
    int pictureCacheMiB = 64;
    int undoMiB = 512; ///< of steps that can be undone
    int threads = 0;   ///< processors to keep busy; 0 for all
    LookChoice look = LookChoice::Dark;
    QString language; ///< from the next start; as RememberedLanguage has it
};

constexpr int mostPictureCacheMiB = 4096;
constexpr int leastUndoMiB = 16, mostUndoMiB = 65536;
constexpr int mostThreads = 1024; ///< as the command line takes them

/// Content folders, the author's name and the threads are those of `gantrel config`; where that has none,
/// those that earlier versions kept apart.
/// @param troubles  receives why something of it cannot be had, in sentences
Preferences RememberedPreferences(QStringList* troubles = nullptr);
/// What has changed since.
/// @return why something of it could not be kept, in sentences
QStringList RememberPreferences(const Preferences& before, const Preferences& now);

/// The variables of the environment that go before what is kept, by the setting's name: "content", "author",
/// "threads".
/// @return its name; empty where it is not set
QString VariableBefore(const char* setting);

/// Units, pictures, steps, threads and look: from now on.
void ApplyPreferences(const Preferences& preferences);

} // namespace desktop
