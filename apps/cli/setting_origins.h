// Which values come from settings rather than from whoever gave the command.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace cli {

/// From now on, for the whole process. To be called before threads are there.
/// @param origin  such as "the setting content of GANTREL_CONTENT"
void NoteOrigin(const std::string& value, const std::string& origin);

/// For the end of a message: " (the setting ...)"; empty for a value that is given.
std::string OriginOf(const std::string& value);

} // namespace cli
