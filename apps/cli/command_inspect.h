// The subcommand `inspect`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddInspectCommand(CLI::App& program, CommandContext& context);

} // namespace cli
