// The subcommand `convert-morphs`.
// SPDX-License-Identifier: MIT

#include "command_convert_morphs.h"

#include "apart_cache.h"
#include "morphs/morph_json.h"
#include "morphs/morph_options.h"
#include "options.h"
#include "progress.h"
#include "report.h"
#include "shell_command.h"

#include <memory>
#include <optional>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace cli {

void AddConvertMorphsCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command = program.add_subcommand(
        "convert-morphs", "Turn single morphs of a figure into morphs on a Genesis 9 figure");
    command->footer("Example:\n"
                    "  gantrel convert-morphs --content ~/library \\\n"
                    "    --source \"$HOME/library/People/Genesis 8 Female/Characters/Vera.duf\" \\\n"
                    "    --target \"$HOME/library/People/Genesis 9/Genesis 9.duf\" \\\n"
                    "    --morphs \"PHM*\" --suffix \" G8\" \\\n"
                    "    --save-library ~/library --vendor Me --product \"My Shapes\"");
    const auto arguments = std::make_shared<ConvertMorphsArguments>();
    const auto asJson = std::make_shared<bool>(false);
    AddConvertMorphsOptions(*command, *arguments);
    const auto isDryRun = std::make_shared<bool>(false);
    AddDryRunOption(*command, *isDryRun,
                    "the figures are loaded, the morphs chosen and named, and none is converted");
    AddJsonOption(*command, *asJson);
    command->callback([arguments, asJson, isDryRun, &context] {
        context.work = [arguments, asJson, isDryRun, &context] {
            MorphConversionRequest request = MakeRequest(*arguments);
            request.isDryRun = *isDryRun;
            request.verbose = context.verbose;
            request.command = ShellCommand(context.arguments);
            std::optional<ApartCache> apart;
            if (*isDryRun)
                apart.emplace();
            Progress progress(!*asJson);
            const MorphConversionReport report = ConvertMorphs(request, progress);
            WriteResult(DescribeMorphConversion(report, progress, *asJson), *asJson, *isDryRun);
            if (const std::string failure = FailureOf(report); !failure.empty())
                throw ReportedError(failure);
        };
    });
}

} // namespace cli
