// The process that rows of a batch are converted in, one after the other.
// SPDX-License-Identifier: MIT

#include "batch/batch_worker.h"

#include "base/cancellation.h"
#include "base/folder_search.h"
#include "base/reason.h"
#include "batch/batch_row.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "progress_line.h"
#include "report.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <memory>
#include <new>
#include <optional>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sys/prctl.h>
#include <tbb/global_control.h>
#include <unistd.h>

namespace cli {

namespace {

const char* const workerCommand = "batch-worker";
const char* const progressOption = "--progress-lines";

struct WorkerArguments {
    int parent = 0, threads = 1;
    bool tellsProgress = false;
};

/// Standard input and what was standard output, which is for nobody else.
class Lines {
public:
    Lines() : _output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
    {
        if (_output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
            throw std::runtime_error(
                fmt::format("cannot reach the first process: {}", base::ReasonOf(errno)));
    }
    ~Lines() { close(_output); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    /// Nothing when there will be none any more.
    std::optional<std::string> next()
    {
        std::size_t end;
        while ((end = _bytes.find('\n')) == _bytes.npos) {
            base::ThrowIfCancelled();
            char piece[1 << 12];
            const ssize_t count = read(STDIN_FILENO, piece, sizeof piece);
            if (count > 0)
                _bytes.append(piece, static_cast<std::size_t>(count));
            else if (count == 0 || errno != EINTR)
                return std::nullopt;
        }
        std::string line = _bytes.substr(0, end);
        _bytes.erase(0, end + 1);
        return line;
    }

    /// Text that is not UTF-8 is written with replacement characters.
    void write(const Json& answer) const
    {
        const std::string bytes = answer.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
        for (std::size_t at = 0; at < bytes.size();) {
            const ssize_t count = ::write(_output, bytes.data() + at, bytes.size() - at);
            if (count < 0 && errno != EINTR)
                throw std::runtime_error(
                    fmt::format("cannot reach the first process: {}", base::ReasonOf(errno)));
            at += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
    }

private:
    int _output;
    std::string _bytes;
};

/// From now on the peak is that of what follows; where the system has no such thing, of the whole process.
void ForgetPeakMemory()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

double HeldMebibytes()
{
    double all = 0, held = 0;
    std::ifstream("/proc/self/statm") >> all >> held;
    return held * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

Json Failure(const std::string& text)
{
    Json answer{{"error", app::ErrorSentence(text)}};
    AddDiagnostics(answer, TakeKeptForError(), true);
    return answer;
}

RowTask TaskIn(const Json& line, Lines& lines, const WorkerTraits& traits)
{
    RowTask task;
    task.arguments = line.at("arguments").get<std::vector<std::string>>();
    task.mayReplace = line.at("may_replace").get<bool>();
    task.ownFiles = line.at("own_files").get<std::vector<std::string>>();
    task.wantsPicture = line.at("wants_picture").get<bool>();
    task.isDryRun = line.at("dry_run").get<bool>();
    task.tellsProgress = traits.tellsProgress;
    task.verbose = traits.verbose;
    task.beforeSaving = [&lines](const std::vector<std::string>& files) {
        lines.write({{"saving", files}});
        const std::optional<std::string> reply = lines.next();
        if (!reply)
            throw base::Cancelled(); // nobody is there who could keep what becomes of it
        const std::string refusal = Json::parse(*reply).at("refusal").get<std::string>();
        if (!refusal.empty())
            throw std::runtime_error(refusal);
    };
    return task;
}

Json Answer(const Json& task, Lines& lines, const WorkerTraits& traits)
{
    try {
        return ConvertRow(TaskIn(task, lines, traits));
    } catch (const std::bad_alloc&) {
        return Failure("there is not enough memory");
    } catch (const std::exception& error) {
        base::ThrowIfCancelled(); // a call that was interrupted may have been taken for one that failed
        return Failure(error.what());
    }
}

/// The one who started us may be gone already when this is heard.
bool GoWith(pid_t parent)
{
    prctl(PR_SET_NAME, "gantrel"); // what was started has the name of a link
    return prctl(PR_SET_PDEATHSIG, SIGTERM) == 0 && getppid() == parent;
}

void Work(const WorkerArguments& arguments, bool verbose)
{
    if (!GoWith(arguments.parent))
        return;
    const tbb::global_control threads(tbb::global_control::max_allowed_parallelism,
                                      static_cast<std::size_t>(arguments.threads));
    const WorkerTraits traits{static_cast<std::size_t>(arguments.threads), arguments.tellsProgress, verbose};
    if (traits.tellsProgress)
        ProgressLine::tellInLines();
    base::SearchFoldersOnce(); // a folder may come to hold the morphs of all rows
    Lines lines;
    try {
        while (const std::optional<std::string> line = lines.next()) {
            ForgetPeakMemory();
            ForgetNotes();
            Json answer = Answer(Json::parse(*line), lines, traits);
            answer["peak_memory_mib"] = Rounded(PeakMemoryMebibytes(), 1);
            answer["held_mib"] = HeldMebibytes();
            lines.write(answer);
        }
    } catch (const base::Cancelled&) {
        // The first process says what is to be said, where it is still there.
        if (!WrittenSoFar().empty())
            lines.write({{"written", WrittenSoFar()}});
        if (InterruptSignal() != 0)
            EndBySignal(InterruptSignal());
    }
}

} // namespace

std::vector<std::string> BatchWorkerArguments(const WorkerTraits& traits)
{
    std::vector<std::string> arguments{workerCommand, fmt::format("--parent={}", getpid()),
                                       fmt::format("--threads={}", traits.threads)};
    if (traits.tellsProgress)
        arguments.push_back(progressOption);
    if (traits.verbose)
        arguments.push_back("--verbose");
    return arguments;
}

void AddBatchWorkerCommand(CLI::App& program, CommandContext& context)
{
    CLI::App* const command = program.add_subcommand(workerCommand)->group("");
    const auto arguments = std::make_shared<WorkerArguments>();
    command->add_option("--parent", arguments->parent)->required();
    command->add_option("--threads", arguments->threads)->required()->check(CLI::PositiveNumber);
    command->add_flag(progressOption, arguments->tellsProgress);
    command->callback([arguments, &context] {
        context.work = [arguments, &context] { Work(*arguments, context.verbose); };
    });
}

} // namespace cli
