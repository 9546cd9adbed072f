// The subcommand `script`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddScriptCommand(CLI::App& program, CommandContext& context);

} // namespace cli
