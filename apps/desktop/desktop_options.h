// What the desktop application is started with.
// SPDX-License-Identifier: MIT

#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace desktop {

/// Paths are UTF-8 and as they were given.
struct Options {
    std::vector<std::string> contentFolders; ///< none: the remembered ones
    std::string pluginFolder;                ///< empty: the one beside the program
    std::vector<std::string> scriptFolders;  ///< which scripts may write into besides content folders
    bool scriptProcesses = false;            ///< scripts may start programs
    bool rightToLeft = false;                ///< windows are mirrored
    std::vector<std::string> files;          ///< opened at the start, each added to the one before
};

/// Makes an empty parser that of the program; parsing fills the options, which have to outlive it.
void DescribeProgram(CLI::App& program, Options& options);
/// Reads the command line into the options.
/// @return the exit code when there is nothing left to do: help was printed, or what is wrong
std::optional<int> ParseOptions(int argc, const char* const* argv, Options& options, std::ostream& out,
                                std::ostream& err);

} // namespace desktop
