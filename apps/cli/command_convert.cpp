// `gantrel convert`: a source figure's shape as morphs on a Genesis 9 figure.
// SPDX-License-Identifier: MIT

#include "command_convert.h"

#include "apart_cache.h"
#include "command.h"
#include "conversions/conversion_json.h"
#include "conversions/convert_options.h"
#include "options.h"
#include "progress.h"
#include "shell_command.h"

#include <memory>
#include <optional>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace cli {

void AddConvertCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command =
        program.add_subcommand("convert", "Turn a figure's shape into morphs on a Genesis 9 figure");
    command->footer("Example:\n"
                    "  gantrel convert --content ~/library \\\n"
                    "      --source \"$HOME/library/People/Genesis 8 Female/Characters/Vera.duf\" \\\n"
                    "      --target \"$HOME/library/People/Genesis 9/Genesis 9.duf\" --name Vera \\\n"
                    "      --save-library ~/library --vendor Me --product \"My Shapes\"");
    const auto arguments = std::make_shared<ConvertArguments>();
    const auto asJson = std::make_shared<bool>(false);
    AddConvertOptions(*command, *arguments, OptionUse::Whole);
    const auto isDryRun = std::make_shared<bool>(false);
    AddDryRunOption(*command, *isDryRun, "the figures are loaded and checked, and not converted");
    AddJsonOption(*command, *asJson);
    command->callback([arguments, asJson, isDryRun, &context] {
        context.work = [arguments, asJson, isDryRun, &context] {
            ConversionRequest request = MakeRequest(*arguments);
            request.isDryRun = *isDryRun;
            request.verbose = context.verbose;
            request.command = ShellCommand(context.arguments);
            std::optional<ApartCache> apart;
            if (*isDryRun)
                apart.emplace();
            Progress progress(!*asJson);
            const ConversionReport report = Convert(request, progress);
            WriteResult(DescribeConversion(report, progress, *asJson), *asJson, *isDryRun);
        };
    });
}

} // namespace cli
