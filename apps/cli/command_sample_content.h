// The subcommand `sample-content`.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

void AddSampleContentCommand(CLI::App& program, CommandContext& context);

} // namespace cli
