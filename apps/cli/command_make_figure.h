// The subcommand `make-figure`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddMakeFigureCommand(CLI::App& program, CommandContext& context);

} // namespace cli
