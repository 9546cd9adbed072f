// The subcommand `convert-morphs`.
// SPDX-License-Identifier: MIT

#include "command_convert_morphs.h"

#include "morphs/morph_json.h"
#include "morphs/morph_options.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "shell_command.h"

#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace cli {

void AddConvertMorphsCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command = program.add_subcommand(
        "convert-morphs", "Turn single morphs of a figure into morphs on a Genesis 9 figure");
    command->footer("Example:\n"
                    "  gantrel convert-morphs --content ~/library \\\n"
                    "      --source \"$HOME/library/People/Genesis 8 Female/Characters/Vera.duf\" \\\n"
                    "      --target \"$HOME/library/People/Genesis 9/Genesis 9.duf\" --morphs \"PHM*\" "
                    "--suffix \" G8\" \\\n"
                    "      --save-library ~/library --vendor Me --product \"My Shapes\"");
    const auto arguments = std::make_shared<ConvertMorphsArguments>();
    const auto asJson = std::make_shared<bool>(false);
    AddConvertMorphsOptions(*command, *arguments);
    AddJsonOption(*command, *asJson);
    command->callback([arguments, asJson, &context] {
        context.work = [arguments, asJson, &context] {
            MorphConversionRequest request = MakeRequest(*arguments);
            request.verbose = context.verbose;
            request.command = ShellCommand(context.arguments);
            Progress progress(!*asJson);
            const MorphConversionReport report = ConvertMorphs(request, progress);
            WriteSummary(DescribeMorphConversion(report, progress, *asJson), *asJson);
            if (const std::string failure = FailureOf(report); !failure.empty())
                throw ReportedError(failure);
        };
    });
}

} // namespace cli
