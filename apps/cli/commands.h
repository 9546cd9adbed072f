// All subcommands.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

/// Registers each subcommand, in the order in which the help lists them.
void AddCommands(CLI::App& program, CommandContext& context);

} // namespace cli
