// The subcommand `list-dials`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddListDialsCommand(CLI::App& program, CommandContext& context);

} // namespace cli
