// Running the program on a terminal, and what a person sees there.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <utility>
#include <vector>

struct TerminalResult {
    int exitCode = -1;
    std::string bytes;               ///< all that came, in order
    std::vector<std::string> screen; ///< lines as they stand at the end, without blanks at their ends
    std::size_t longestCleared = 0;  ///< columns of the longest text that was cleared again
};

/// Runs the program under test with a pseudo terminal of so many columns as its output and error output. It
/// knows colours, unless the environment says otherwise.
TerminalResult RunOnTerminal(const std::vector<std::string>& arguments, unsigned short columns,
                             const std::vector<std::pair<std::string, std::string>>& environment = {});
