// Pages of the manual for `man`.
// SPDX-License-Identifier: MIT

#pragma once

#include "command_tree.h"

#include <string>

namespace documents {

struct PageFacts {
    std::string version, date; ///< "1.0.5", "2026-11-23"
    std::string program;       ///< "gantrel"
};

/// Of a program, with a list of its subcommands where it has some, in the language of `man`.
std::string ProgramPage(const Command& program, const PageFacts& facts);
/// Of one of its subcommands, as "gantrel-convert".
std::string SubcommandPage(const Command& command, const Command& program, const PageFacts& facts);

} // namespace documents
