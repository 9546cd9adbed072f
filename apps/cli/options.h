// Options that several subcommands share.
// SPDX-License-Identifier: MIT

#pragma once

#include "dials.h"

#include <filesystem>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace cli {

CLI::Option* AddJsonOption(CLI::App& command, bool& json);
/// The option takes these words alone; the help, the manual and completion in shells list them.
void AllowWords(CLI::Option& option, const std::vector<std::string>& words);
/// They are listed likewise, of an option that has them in a list or in front of "="; whoever reads it judges
/// it.
void ListWords(CLI::Option& option, const std::vector<std::string>& words);
/// `--content DIR`, once for each directory.
CLI::Option* AddContentOption(CLI::App& command, std::vector<std::string>& directories);
/// `--resolution`: "base" or "subd".
CLI::Option* AddResolutionOption(CLI::App& command, std::string& resolution);
/// `--register`: the match is to be one of features, not only of surfaces.
CLI::Option* AddRegisterOption(CLI::App& command, bool& registers);
/// `--dial NAME=VALUE`, once for each dial; wrong syntax is wrong use.
CLI::Option* AddDialOption(CLI::App& command, std::vector<std::string>& dials);

std::vector<NameValue> ParseDials(const std::vector<std::string>& texts);
std::vector<std::filesystem::path> ToPaths(const std::vector<std::string>& texts);

} // namespace cli
