// The command line: subcommands, errors as one sentence, exit codes.
// SPDX-License-Identifier: MIT

#include "command.h"
#include "commands.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "report.h"

#include <cstdio>
#include <exception>
#include <functional>
#include <new>
#include <sstream>
#include <string>

#include <CLI/CLI.hpp>

namespace {

enum ExitCode { success = 0, failure = 1, wrongUse = 2 };

const char* const versionText = "gantrel " GANTREL_VERSION;

int Fail(const std::string& text, ExitCode code)
{
    std::fprintf(stderr, "gantrel: %s\n", app::ErrorSentence(text).c_str());
    return code;
}

/// Everything that a subcommand can throw ends here.
int Run(const std::function<void()>& work)
{
    try {
        work();
        return success;
    } catch (const cli::UsageError& error) {
        return Fail(error.what(), wrongUse);
    } catch (const std::bad_alloc&) {
        return Fail("there is not enough memory", failure);
    } catch (const std::exception& error) {
        return Fail(cli::InterruptSignal() != 0 ? "interrupted" : error.what(), failure);
    } catch (...) {
        return Fail("unknown error", failure);
    }
}

/// A script's variable that is not set must not quietly mean no file, or the folder one is in.
void RefuseEmptyNames(CLI::App& command)
{
    for (CLI::Option* const option : command.get_options()) {
        const std::string type = option->get_type_name();
        const bool isName =
            type.find("FILE") != type.npos || type.find("DIR") != type.npos || type.find(".png") != type.npos;
        if (isName)
            option->check([](const std::string& name) {
                return name.empty() ? std::string("the name is empty") : std::string();
            });
    }
}

void Describe(CLI::App& program, cli::CommandContext& context)
{
    program.require_subcommand(0, 1); // none is found out later, when what was there instead has been named
    program.set_version_flag("--version", versionText, "Print the version");
    cli::AddCommands(program, context);
    for (CLI::App* const command : program.get_subcommands({})) {
        command->set_version_flag("--version", versionText, "Print the version");
        command->add_flag("--verbose", context.verbose, "Show the log");
        RefuseEmptyNames(*command);
    }
}

} // namespace

int main(int argc, char** argv)
{
    cli::NoteInterrupts();
    cli::CommandContext context;
    CLI::App program("Gantrel: shapes of older figure generations as morphs on Genesis 9.", "gantrel");
    Describe(program, context);
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& request) {
        std::ostringstream help;
        program.exit(request, help, help);
        return Run([&] { cli::WriteOutput(help.str()); });
    } catch (const CLI::ParseError& error) {
        return Fail(error.what(), wrongUse);
    }
    if (!context.work)
        return Fail("a subcommand is required; gantrel --help lists them", wrongUse);
    const int code = Run(context.work);
    if (code != success && cli::InterruptSignal() != 0)
        cli::EndBySignal(cli::InterruptSignal());
    return code;
}
