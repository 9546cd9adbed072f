// The subcommand `config`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddConfigCommand(CLI::App& program, CommandContext& context);

} // namespace cli
