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
#include "standard_streams.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

/// Nobody finds it under the name that it was made with.
void NoteSent(ConversionReport& report, const std::filesystem::path& file)
{
    const std::filesystem::path where = standardOutputText;
    std::replace(report.files.begin(), report.files.end(), file, where);
    if (report.page == file)
        report.page = where;
}

void RunConversion(ConversionRequest request, bool asJson)
{
    CheckOneAtMost({{"--export-obj", request.exportObj.u8string()}, {"--report", request.page.u8string()}});
    const OutputFile obj("--export-obj", request.exportObj.u8string(), "figure.obj", asJson);
    const OutputFile page("--report", request.page.u8string(), "page.html", asJson);
    const auto divert = [&request](std::filesystem::path& file, const OutputFile& output) {
        if (output.isStandardOutput())
            file = request.isDryRun ? std::filesystem::path() : output.path();
    };
    divert(request.exportObj, obj);
    divert(request.page, page);
    std::optional<ApartCache> apart;
    if (request.isDryRun)
        apart.emplace();
    Progress progress(!asJson);
    ConversionReport report = Convert(request, progress);
    for (const OutputFile* const made : {&obj, &page})
        if (made->isStandardOutput() && request.isDryRun) {
            PlanStandardOutput(report.planned);
        } else if (made->isStandardOutput()) {
            made->send();
            NoteSent(report, made->path());
        }
    WriteResult(DescribeConversion(report, progress, asJson), asJson, request.isDryRun);
}

} // namespace

void AddConvertCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command =
        program.add_subcommand("convert", "Turn a figure's shape into morphs on a Genesis 9 figure");
    command->footer("Example:\n"
                    "  gantrel convert --content ~/library \\\n"
                    "    --source \"$HOME/library/People/Genesis 8 Female/Characters/Vera.duf\" \\\n"
                    "    --target \"$HOME/library/People/Genesis 9/Genesis 9.duf\" --name Vera \\\n"
                    "    --save-library ~/library --vendor Me --product \"My Shapes\"");
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
            RunConversion(std::move(request), *asJson);
        };
    });
}

} // namespace cli
