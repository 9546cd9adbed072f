// The subcommand `render`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddRenderCommand(CLI::App& program, CommandContext& context);

} // namespace cli
