// Completion in shells.
// SPDX-License-Identifier: MIT

#pragma once

#include "command_tree.h"

#include <string>

namespace documents {

/// A function for bash, with the package bash-completion.
std::string BashCompletion(const Command& program);
/// A function for zsh.
std::string ZshCompletion(const Command& program);
/// Lines for fish.
std::string FishCompletion(const Command& program);

} // namespace documents
