// The subcommand `script`.
// SPDX-License-Identifier: MIT

#include "command_script.h"

#include "base/cancellation.h"
#include "command.h"
#include "dzapp.h"
#include "dzscript.h"
#include "host_session.h"
#include "interrupt.h"
#include "openhost/diagnostics.h"
#include "openhost/script_bounds.h"
#include "options.h"
#include "report.h"
#include "script_conversion.h"
#include "standard_streams.h"
#include "worker_process.h"

#include <QByteArray>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <stdexcept>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cli {

namespace {

/// Enough for scripts that do little.
constexpr int leastMegabytes = 64;

struct ScriptArguments {
    std::string file;
    std::vector<std::string> arguments;
    std::vector<std::string> content, allowedFolders;
    double timeout = 0.0; ///< seconds; 0 for none
    int megabytes = DefaultMegabytes();
    bool verbose = false, overwrite = false;
};

QByteArray ReadScriptText()
{
    constexpr std::size_t longestScript = std::size_t{1} << 29; // as much as of a file
    const std::string text = ReadStandardInput(longestScript);
    return QByteArray(text.data(), static_cast<int>(text.size()));
}

/// What the script is made of is beside it.
QString OwnFolder(const ScriptArguments& arguments)
{
    return QFileInfo(QString::fromStdString(InputText(arguments.file))).absolutePath();
}

/// @param typed  what came on standard input, if that is the script
/// @throws std::runtime_error  the file cannot be read; the text has the host's reason
void Load(DzScript& script, const ScriptArguments& arguments, const std::optional<QByteArray>& typed)
{
    const QString name = QString::fromStdString(InputText(arguments.file));
    if (typed) {
        // The toolkit takes a NUL in an array for its end.
        script.setCode(QString::fromUtf8(typed->constData(), typed->size()));
        script.setFilename(name);
        return;
    }
    const openhost::DiagnosticsCollector reasons(dzApp->diagnostics());
    if (!script.loadFromFile(name))
        throw std::runtime_error(base::ToLine(reasons.all().at(0)));
}

std::string ErrorOf(const DzScript& script)
{
    const std::string message = script.errorMessage().toStdString();
    const std::string file =
        (script.errorFile().isEmpty() ? script.getFilename() : script.errorFile()).toStdString();
    return script.errorLine() > 0 ? fmt::format("{}, line {}: {}", file, script.errorLine(), message)
                                  : fmt::format("{}: {}", file, message);
}

/// The host tells of a script's error as well.
base::Diagnostics Without(const std::string& error, base::Diagnostics met)
{
    met.erase(std::remove_if(met.begin(), met.end(),
                             [&](const base::Diagnostic& one) { return base::ToLine(one) == error; }),
              met.end());
    return met;
}

void RunScript(const ScriptArguments& arguments)
{
    constexpr double millisecondsPerSecond = 1000.0;
    if (std::isnan(arguments.timeout))
        throw UsageError("--timeout is no number");
    const int milliseconds = static_cast<int>(arguments.timeout * millisecondsPerSecond);
    // A process in the background may not read from the terminal.
    const std::optional<QByteArray> typed =
        IsStandardStream(arguments.file) ? std::make_optional(ReadScriptText()) : std::nullopt;
    // What a script can ask of the engine's own functions, nothing inside the process can end.
    const WorkerProcess worker(
        {InputText(arguments.file), std::chrono::milliseconds(milliseconds), arguments.megabytes});
    HostSession session(ToPaths(arguments.content), arguments.verbose);
    session.allowOverwriting(arguments.overwrite);
    openhost::ScriptRights rights;
    for (const std::string& folder : arguments.allowedFolders)
        rights.folders.append(QString::fromStdString(folder));
    rights.toRead << OwnFolder(arguments);
    openhost::SetScriptRights(rights);
    const openhost::ScriptBounds bounds;
    const ScriptConversions conversions(session, arguments.overwrite);
    DzScript script;
    Load(script, arguments, typed);
    script.setTimeLimit(milliseconds);
    QVariantList scriptArguments;
    for (const std::string& argument : arguments.arguments)
        scriptArguments.append(QString::fromStdString(argument));

    const InterruptAction stopScripts(DzScript::stopAll);
    DzScript().execute(); // what the engine sets aside, gigabytes, is not counted against the script
    worker.startClock();
    const bool succeeded = script.execute(scriptArguments);
    base::ThrowIfCancelled();
    const std::string error = succeeded ? std::string() : ErrorOf(script);
    TellWarnings(Without(error, session.diagnostics()));
    EndOutput(DzScript::outputError());
    if (script.exitStatus() != 0)
        throw ExitRequest{script.exitStatus()};
    if (!succeeded)
        throw std::runtime_error(error);
}

} // namespace

void AddScriptCommand(CLI::App& program, CommandContext& context)
{
    const auto arguments = std::make_shared<ScriptArguments>();
    CLI::App* const command = program.add_subcommand("script", "Run a script in the host");
    command->footer("Example:\n"
                    "  gantrel script report.dsa --content ~/library --allow-files ~/reports");
    command->add_option("FILE", arguments->file, "The script; - reads it from standard input")
        ->type_name("FILE.dsa|FILE.js")
        ->required();
    command->add_option("ARG", arguments->arguments, "What getArguments() gives the script")
        ->type_name("TEXT");
    AddContentOption(*command, arguments->content);
    command
        ->add_option("--allow-files", arguments->allowedFolders,
                     "Folder that the script may read and write in besides content folders, once for each")
        ->type_name("DIR")
        ->allow_extra_args(false);
    command->add_flag("--overwrite", arguments->overwrite, "Replace saved morphs that have the same name");
    command->add_option("--timeout", arguments->timeout, "End the script after this time")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 1e6));
    command
        ->add_option("--memory", arguments->megabytes,
                     "End the script when it takes more memory (half of the machine's)")
        ->type_name("MEGABYTES")
        ->check(CLI::Range(leastMegabytes, 1 << 24));
    command->callback([arguments, &context] {
        context.work = [arguments, &context] {
            arguments->verbose = context.verbose;
            RunScript(*arguments);
        };
    });
}

} // namespace cli
