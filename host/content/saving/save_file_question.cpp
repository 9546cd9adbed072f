// Asking for the file to save.
// SPDX-License-Identifier: MIT

#include "saving/save_file_question.h"

namespace openhost {

namespace {

SaveFileAsker g_asker = nullptr;

} // namespace

void SetSaveFileAsker(SaveFileAsker asker)
{
    g_asker = asker;
}

SaveFileAsker CurrentSaveFileAsker()
{
    return g_asker;
}

} // namespace openhost
