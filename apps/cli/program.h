// The command line as its parser understands it.
// SPDX-License-Identifier: MIT

#pragma once

namespace CLI {
class App;
} // namespace CLI

namespace cli {

struct CommandContext;

/// Makes an empty parser that of the program, with all subcommands. The context has to outlive it.
void DescribeProgram(CLI::App& program, CommandContext& context);

} // namespace cli
