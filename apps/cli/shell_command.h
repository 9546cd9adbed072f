// Commands as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace cli {

/// Of this program, so that a shell takes it as it was given.
std::string ShellCommand(const std::vector<std::string>& arguments);

} // namespace cli
