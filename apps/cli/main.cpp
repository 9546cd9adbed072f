// The command line: subcommands, errors as one sentence, exit codes.
// SPDX-License-Identifier: MIT

#include "base/cancellation.h"
#include "color.h"
#include "command.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "large_arrays.h"
#include "program.h"
#include "report.h"
#include "settings_arguments.h"
#include "wrong_use.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <tbb/global_control.h>

namespace {

enum ExitCode { success = 0, failure = 1, wrongUse = 2 };

int Fail(const std::string& text, ExitCode code, bool asJson)
{
    const std::string sentence = app::ErrorSentence(text);
    std::fprintf(stderr, "%s%s\n", cli::ProgramPrefix(cli::Color::Error).c_str(), sentence.c_str());
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
    } catch (const cli::OutputClosed&) {
        cli::EndBySignal(SIGPIPE); // without a word, as other programs do
    } catch (const cli::ExitRequest& request) {
        return request.code;
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
    const CLI::App* const command = cli::CommandOf(program, arguments);
    return command && command->get_option_no_throw("--json") &&
           std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
}

/// Why there are no settings, and how that ends; an empty text when all is well.
struct SettingsFault {
    std::string text;
    ExitCode code = failure;
};

/// Leaves the arguments as they are where there are none.
SettingsFault AddSettings(const CLI::App& program, std::vector<std::string>& arguments)
{
    try {
        arguments = cli::WithSettings(program, arguments);
        return {};
    } catch (const cli::UsageError& error) {
        return {error.what(), wrongUse};
    } catch (const std::exception& error) {
        return {error.what(), failure};
    }
}

int Work(const cli::CommandContext& context, bool wantsJson)
{
    if (context.quiet && context.verbose)
        return Fail("--quiet excludes --verbose", wrongUse, wantsJson);
    if (context.quiet)
        cli::BeQuiet();
    if (context.verbose)
        cli::LeaveOutProgress();
    std::optional<tbb::global_control> threads;
    if (context.threads > 0)
        threads.emplace(tbb::global_control::max_allowed_parallelism,
                        static_cast<std::size_t>(context.threads));
    return Run(context.work, wantsJson);
}

} // namespace

int main(int argc, char** argv)
{
    cli::NoteInterrupts();
    app::TreatLargeArraysWell();
    cli::CommandContext context;
    CLI::App program;
    cli::DescribeProgram(program, context);
    context.arguments.assign(argv + std::min(argc, 1), argv + argc);
    const bool wantsJson = WantsJson(program, context.arguments);
    const SettingsFault noSettings = AddSettings(program, context.arguments);
    try {
        program.parse(std::vector<std::string>(context.arguments.rbegin(), context.arguments.rend()));
    } catch (const CLI::Success& request) {
        std::ostringstream help;
        program.exit(request, help, help);
        return Run([&] { cli::WriteOutput(help.str()); }, false);
    } catch (const CLI::ParseError& error) {
        if (!noSettings.text.empty()) // what is missing may be in them
            return Fail(noSettings.text, noSettings.code, wantsJson);
        return Fail(cli::DescribeWrongUse(program, error), wrongUse, wantsJson);
    }
    if (!context.work)
        return Fail("a subcommand is required; gantrel --help lists them", wrongUse, false);
    if (!noSettings.text.empty())
        return Fail(noSettings.text, noSettings.code, wantsJson);
    const int code = Work(context, wantsJson);
    if (code != success && cli::InterruptSignal() != 0)
        cli::EndBySignal(cli::InterruptSignal());
    return code;
}
