// How texts name options.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace cli {

/// The option as whoever gave it spells it: as on the command line, unless the program has words of its own.
/// @param option  such as "--name"
std::string OptionWord(const std::string& option);

/// From now on, for the whole process.
void SetOptionWords(std::string (*wordOf)(const std::string& option));

} // namespace cli
