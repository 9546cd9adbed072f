// The command line: subcommands, errors as one sentence, exit codes.
// SPDX-License-Identifier: MIT

#include "base/cancellation.h"
#include "command.h"
#include "commands.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "memory_need.h"
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

enum ExitCode { success = 0, failure = 1, wrongUse = 2 };

const char* const versionText = "gantrel " GANTREL_VERSION;

int Fail(const std::string& text, ExitCode code, bool asJson)
{
    const std::string sentence = app::ErrorSentence(text);
    std::fprintf(stderr, "gantrel: %s\n", sentence.c_str());
    if (asJson)
        cli::WriteError(sentence);
    return code;
}

/// Everything that a subcommand can throw ends here.
/// @param asJson  stdout is to have an object also when it fails
int Run(const std::function<void()>& work, bool asJson)
{
    try {
        work();
        return success;
    } catch (const cli::ReportedError& error) {
        return Fail(error.what(), failure, false);
    } catch (const cli::UsageError& error) {
        return Fail(error.what(), wrongUse, asJson);
    } catch (const std::bad_alloc&) {
        return Fail("there is not enough memory", failure, asJson);
    } catch (const base::Cancelled&) {
        return Fail(cli::InterruptSentence(), failure, asJson);
    } catch (const std::exception& error) {
        // A call that was interrupted may have been taken for one that failed.
        return Fail(cli::InterruptSignal() != 0 ? cli::InterruptSentence() : error.what(), failure, asJson);
    } catch (...) {
        return Fail("unknown error", failure, asJson);
    }
}

/// Whether the subcommand has the option, and it is given; also where the arguments make no sense as a whole.
bool WantsJson(const CLI::App& program, const std::vector<std::string>& arguments)
{
    const auto commands = program.get_subcommands([](const CLI::App*) { return true; });
    const auto isNamed = [&](const CLI::App* command) {
        return !arguments.empty() && command->get_name() == arguments.front();
    };
    const auto command = std::find_if(commands.begin(), commands.end(), isNamed);
    return command != commands.end() && (*command)->get_option_no_throw("--json") &&
           std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
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
    cli::GiveFreedArraysBack();
    cli::CommandContext context;
    CLI::App program("Gantrel: shapes of older figure generations as morphs on Genesis 9.", "gantrel");
    Describe(program, context);
    context.arguments.assign(argv + std::min(argc, 1), argv + argc);
    const bool wantsJson = WantsJson(program, context.arguments);
    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& request) {
        std::ostringstream help;
        program.exit(request, help, help);
        return Run([&] { cli::WriteOutput(help.str()); }, false);
    } catch (const CLI::ParseError& error) {
        return Fail(error.what(), wrongUse, wantsJson);
    }
    if (!context.work)
        return Fail("a subcommand is required; gantrel --help lists them", wrongUse, false);
    const int code = Run(context.work, wantsJson);
    if (code != success && cli::InterruptSignal() != 0)
        cli::EndBySignal(cli::InterruptSignal());
    return code;
}
