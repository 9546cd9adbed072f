// Options that a person may set before a file is written or read.
// SPDX-License-Identifier: MIT

#include "scene/option_table.h"

namespace openhost {

namespace {

OptionsAsker g_asker = nullptr;

} // namespace

bool AskOptions(const QString& title, const std::vector<OptionRow>& rows, DzFileIOSettings& options)
{
    return !g_asker || g_asker(title, rows, options);
}

void SetOptionsAsker(OptionsAsker asker)
{
    g_asker = asker;
}

} // namespace openhost
