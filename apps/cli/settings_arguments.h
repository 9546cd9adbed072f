// Settings in place of options that are not given.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace cli {

/// The subcommand that they name, also where they make no sense as a whole; null for none.
const CLI::App* CommandOf(const CLI::App& program, const std::vector<std::string>& arguments);

/// The arguments, with those settings behind the subcommand that it has an option for, unless the option is
/// given; vendor and product only where `--save-library` is.
/// @throws std::runtime_error  a setting cannot be read or meant
std::vector<std::string> WithSettings(const CLI::App& program, std::vector<std::string> arguments);

} // namespace cli
