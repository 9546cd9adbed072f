// The subcommand `transfer`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddTransferCommand(CLI::App& program, CommandContext& context);

} // namespace cli
