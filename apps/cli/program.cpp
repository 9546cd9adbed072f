// The command line as its parser understands it.
// SPDX-License-Identifier: MIT

#include "program.h"

#include "color.h"
#include "command.h"
#include "commands.h"
#include "options.h"

#include <memory>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

namespace cli {

namespace {

const char* const versionText = "gantrel " GANTREL_VERSION;

/// A subcommand is required, although the parser leaves it to others to say so.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        std::string usage = CLI::Formatter::make_usage(app, std::move(name));
        const std::string optional = "[SUBCOMMAND]";
        if (const std::size_t at = usage.find(optional); at != usage.npos)
            usage.replace(at, optional.size(), "SUBCOMMAND");
        return usage;
    }
};

/// In front of the subcommand and behind it.
void AddTellingOptions(CLI::App& app, CommandContext& context)
{
    app.add_flag("--verbose", context.verbose, "Show the log");
    app.add_flag("--quiet", context.quiet, "Tell nothing but errors, and what is asked for as output");
    CLI::Option* const color = app.add_option_function<std::string>(
        "--color",
        [](const std::string& when) {
            UseColor(when == "always"  ? ColorUse::Always
                     : when == "never" ? ColorUse::Never
                                       : ColorUse::Auto);
        },
        "Colour what is told; auto, on a terminal alone (auto)");
    color->type_name("WHEN");
    AllowWords(*color, {"auto", "always", "never"});
}

void AddThreadsOption(CLI::App& command, CommandContext& context)
{
    command
        .add_option("--threads", context.threads, "Processors to keep busy; all that there are without it")
        ->type_name("N")
        ->check(CLI::Range(1, 1024));
}

void TellExitCodes(CLI::App& app)
{
    const std::string example = app.get_footer();
    app.footer(
        example + (example.empty() ? "" : "\n\n") +
        "Exit codes: 0 all went well, 1 something could not be done, 2 wrong use, 130 ended by Ctrl+C, 143 "
        "ended by the system");
}

/// A script's variable that is not set must not quietly mean no file, or the folder one is in.
void RefuseEmptyNames(CLI::App& command)
{
    for (CLI::Option* const option : command.get_options()) {
        const std::string type = option->get_type_name();
        const bool isName = type.find("FILE") != type.npos || type.find("DIR") != type.npos;
        if (isName)
            option->check([](const std::string& name) {
                return name.empty() ? std::string("the name is empty") : std::string();
            });
    }
}

} // namespace

void DescribeProgram(CLI::App& program, CommandContext& context)
{
    program.name("gantrel");
    program.description("Gantrel: shapes of older figure generations as morphs on Genesis 9.");
    program.formatter(std::make_shared<HelpFormatter>()); // its subcommands take it over
    program.require_subcommand(0, 1); // none is found out later, when what was there instead has been named
    program.set_version_flag("--version", versionText, "Print the version");
    AddTellingOptions(program, context);
    program.footer("Example:\n"
                   "  gantrel sample-content ~/sample-library\n"
                   "  figures=~/sample-library/People\n"
                   "  gantrel list-dials --content ~/sample-library \\\n"
                   "      \"$figures/Genesis 8 Female/Characters/Vera.duf\"\n"
                   "  gantrel convert --content ~/sample-library --name Vera \\\n"
                   "      --source \"$figures/Genesis 8 Female/Characters/Vera.duf\" \\\n"
                   "      --target \"$figures/Genesis 9/Genesis 9.duf\" \\\n"
                   "      --save-library ~/sample-library --vendor Me --product Shapes");
    TellExitCodes(program);
    AddCommands(program, context);
    for (CLI::App* const command : program.get_subcommands({})) {
        command->set_version_flag("--version", versionText, "Print the version");
        AddTellingOptions(*command, context);
        TellExitCodes(*command);
        const bool hasOwn = command->get_option_no_throw("--threads") != nullptr; // batches: of each worker
        if (!hasOwn && command->get_name() != "config")
            AddThreadsOption(*command, context);
        RefuseEmptyNames(*command);
    }
}

} // namespace cli
