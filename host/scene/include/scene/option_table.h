// Options that a person may set before a file is written or read.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <vector>

class DzFileIOSettings;

namespace openhost {

/// One option as a dialog shows it.
struct OptionRow {
    enum Kind { Flag, Choice, Number, Whole };

    const char* group; ///< heading under which rows stand together, in the table's order
    const char* key;   ///< in the option set
    const char* label;
    Kind kind = Flag;
    QStringList choices = {};    ///< of a choice: the values as they are stored
    double min = 0.0, max = 0.0; ///< of a number
};

/// Shows the option set's values in a modal dialog and takes over what the person chose. Options that the
/// table does not name are kept. Without a display nothing is asked and nothing changes.
/// @return false when cancelled, the set being as it was
bool AskOptions(const QString& title, const std::vector<OptionRow>& rows, DzFileIOSettings& options);

/// Who asks; null for nobody.
using OptionsAsker = bool (*)(const QString& title, const std::vector<OptionRow>& rows,
                              DzFileIOSettings& options);
void SetOptionsAsker(OptionsAsker asker);

} // namespace openhost
