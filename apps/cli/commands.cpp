// All subcommands.
// SPDX-License-Identifier: MIT

#include "apps/cli/commands.h"

#include "apps/cli/command_convert.h"
#include "apps/cli/command_inspect.h"
#include "apps/cli/command_make_figure.h"
#include "apps/cli/command_render.h"
#include "apps/cli/command_sample_content.h"
#include "apps/cli/command_script.h"
#include "apps/cli/command_transfer.h"

namespace cli {

void AddCommands(CLI::App& program, CommandContext& context)
{
    AddSampleContentCommand(program, context);
    AddMakeFigureCommand(program, context);
    AddConvertCommand(program, context);
    AddTransferCommand(program, context);
    AddInspectCommand(program, context);
    AddRenderCommand(program, context);
    AddScriptCommand(program, context);
}

} // namespace cli
