// All subcommands.
// SPDX-License-Identifier: MIT

#include "commands.h"

#include "batch/batch_worker.h"
#include "command_batch.h"
#include "command_config.h"
#include "command_convert.h"
#include "command_convert_morphs.h"
#include "command_inspect.h"
#include "command_list_dials.h"
#include "command_make_figure.h"
#include "command_render.h"
#include "command_sample_content.h"
#include "command_script.h"
#include "command_transfer.h"

namespace cli {

void AddCommands(CLI::App& program, CommandContext& context)
{
    AddSampleContentCommand(program, context);
    AddMakeFigureCommand(program, context);
    AddConvertCommand(program, context);
    AddConvertMorphsCommand(program, context);
    AddBatchCommand(program, context);
    AddTransferCommand(program, context);
    AddInspectCommand(program, context);
    AddListDialsCommand(program, context);
    AddRenderCommand(program, context);
    AddScriptCommand(program, context);
    AddConfigCommand(program, context);
    AddBatchWorkerCommand(program, context);
}

} // namespace cli
