// One run of a batch: its rows through workers, with what is known of them kept.
// SPDX-License-Identifier: MIT

#include "batch_run.h"

#include "base/cancellation.h"
#include "batch_pool.h"
#include "batch_state.h"
#include "batch_table_file.h"
#include "command.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "progress.h"
#include "worker_process.h"

#include <algorithm>
#include <deque>
#include <memory>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <tbb/info.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

constexpr int mostTries = 2;

struct RowWork {
    int tries = 0;
    bool wasDone = false;        ///< by an earlier run, from the same files
    bool hasBegunSaving = false; ///< in this run
    RowState state;
};

fs::path DetailOf(fs::path morph)
{
    return morph.replace_extension(".dhdm");
}

/// All files that the report of a conversion names.
std::vector<fs::path> FilesIn(const Json& report)
{
    std::vector<fs::path> files;
    for (const Json& morph : report.at("created_morphs"))
        if (morph.contains("file")) {
            files.emplace_back(morph["file"].get<std::string>());
            std::error_code error;
            if (const fs::path detail = DetailOf(files.back()); fs::exists(detail, error))
                files.push_back(detail);
        }
    for (const Json& file : report.at("files"))
        files.emplace_back(file.get<std::string>());
    return files;
}

std::string TimeText(double seconds)
{
    const auto whole = static_cast<long>(seconds + 0.5);
    return whole < 120    ? fmt::format("{} s", whole)
           : whole < 7200 ? fmt::format("{} min", whole / 60)
                          : fmt::format("{} h", whole / 3600);
}

class Run : public BatchSource {
public:
    Run(const std::vector<BatchRow>& rows, const BatchOptions& options)
        : _rows(rows), _work(rows.size()), _options(options), _progress(options.showsProgress)
    {
        for (std::size_t i = 0; i < rows.size(); ++i)
            _waiting.push_back(i);
        if (!options.log.empty())
            _log.emplace(options.log,
                         options.skipsDone ? BatchLog::Beginning::AtEnd : BatchLog::Beginning::Anew);
        if (options.table != standardInput)
            openState();
        show();
    }

    std::optional<BatchTask> next() override
    {
        while (!_waiting.empty()) {
            base::ThrowIfCancelled();
            const std::size_t index = _waiting.front();
            _waiting.pop_front();
            if (std::optional<BatchTask> task = begin(index))
                return task;
        }
        return std::nullopt;
    }

    void beforeSaving(const BatchTask& task) override
    {
        RowWork& work = _work[task.row];
        work.state.step = RowState::Step::Saving;
        work.hasBegunSaving = true;
        keep(task.row);
    }

    void take(const BatchTask& task, BatchAnswer answer) override
    {
        RowWork& work = _work[task.row];
        if (!answer.death.empty() && work.tries < mostTries) {
            _waiting.push_front(task.row);
            return;
        }
        const bool isDone = answer.said.contains("report");
        RowResult result = BeginResult(_rows[task.row], isDone ? "done" : "failed");
        result["tries"] = work.tries;
        result["seconds"] = Rounded(answer.seconds, 4);
        if (answer.death.empty())
            result.update(answer.said);
        else
            result["error"] = app::ErrorSentence(answer.death);
        if (isDone) {
            work.state = {RowState::Step::Done, work.state.inputs, DescribeFiles(FilesIn(result["report"]))};
            keep(task.row);
        } else if (!work.wasDone && work.state.step != RowState::Step::Saving) {
            work.state.step = RowState::Step::Failed;
            keep(task.row);
        }
        end(task.row, std::move(result));
    }

    BatchOutcome outcome()
    {
        _progress.finish();
        return {std::move(_results), std::move(_diagnostics), _progress.totalSeconds()};
    }

    std::string account() const
    {
        const auto isDone = [](const RowResult& result) { return result["status"] != "failed"; };
        return fmt::format("{} of {} rows are done{}",
                           std::count_if(_results.begin(), _results.end(), isDone), _rows.size(),
                           _state ? "; --resume goes on with the others" : "");
    }

private:
    void openState()
    {
        try {
            _state = std::make_unique<BatchState>(BatchState::PlaceFor(_options.table));
            _locks = std::make_unique<RowLocks>(RowLocks::PlaceFor(_options.table));
        } catch (const StateError& error) {
            if (_options.needsState)
                throw;
            _state.reset();
            tell(fmt::format("{}; so nothing is kept for a later --resume", error.what()));
        }
    }

    /// Nothing where the row is not to be worked on.
    std::optional<BatchTask> begin(std::size_t index)
    {
        const BatchRow& row = _rows[index];
        RowWork& work = _work[index];
        if (work.tries++ == 0) {
            if (_locks && !_locks->take(row)) {
                RowResult result = BeginResult(row, "failed");
                result["error"] = "Another program is at work on this row.";
                end(index, std::move(result), false);
                return std::nullopt;
            }
            const std::string inputs = InputsOf(row);
            work.state = known(row);
            work.wasDone = isDone(work.state, inputs);
            if (work.wasDone && _options.skipsDone) {
                end(index, BeginResult(row, "skipped"));
                return std::nullopt;
            }
            work.state.inputs = inputs;
        }
        return BatchTask{index, row.arguments, mayReplace(work)};
    }

    /// What the row was about to put in place, or has put there, is its own.
    bool mayReplace(const RowWork& work) const
    {
        if (!_options.skipsDone)
            return work.hasBegunSaving;
        return work.state.step == RowState::Step::Saving ||
               (!work.state.outputs.empty() && AreUnchanged(work.state.outputs));
    }

    RowState known(const BatchRow& row)
    {
        try {
            if (_state)
                return _state->find(row).value_or(RowState());
        } catch (const StateError& error) {
            tell(error.what());
        }
        return {};
    }

    static bool isDone(const RowState& state, const std::string& inputs)
    {
        return state.step == RowState::Step::Done && state.inputs == inputs && AreThere(state.outputs) &&
               AreUnchanged(state.outputs);
    }

    /// Without the state a later run does more than it had to, which is no reason to do less now.
    void keep(std::size_t index)
    {
        try {
            if (_state)
                _state->keep(_rows[index], _work[index].state);
        } catch (const StateError& error) {
            tell(error.what());
        }
    }

    void end(std::size_t index, RowResult result, bool wasLocked = true)
    {
        if (_locks && wasLocked)
            _locks->release(_rows[index]);
        if (_log)
            if (const std::string reason = _log->write(result); !reason.empty())
                tell(reason);
        _worked += result["status"] != "skipped";
        if (!_options.keepsReports && result.contains("report"))
            result["report"] = {{"warnings", std::move(result["report"]["warnings"])}};
        _results.push_back(std::move(result));
        show();
    }

    void tell(const std::string& what)
    {
        const base::Diagnostic told{base::Severity::Warning, {}, {}, what};
        if (std::find(_diagnostics.begin(), _diagnostics.end(), told) == _diagnostics.end())
            _diagnostics.push_back(told);
    }

    /// Skipped rows say nothing about how long the others take.
    void show()
    {
        std::string text = fmt::format("{} of {} rows", _results.size(), _rows.size());
        const double seconds = _progress.totalSeconds();
        if (_worked > 0 && seconds > 0) {
            const double rate = static_cast<double>(_worked) / seconds;
            text += rate < 1 ? fmt::format(", {:.1f} a minute", 60 * rate)
                             : fmt::format(", {:.1f} a second", rate);
            text += fmt::format(", {} left",
                                TimeText(static_cast<double>(_rows.size() - _results.size()) / rate));
        }
        _progress.begin("Converting", text);
    }

    const std::vector<BatchRow>& _rows;
    std::vector<RowWork> _work;
    const BatchOptions& _options;
    Progress _progress;
    std::deque<std::size_t> _waiting;
    std::unique_ptr<BatchState> _state;
    std::unique_ptr<RowLocks> _locks;
    std::optional<BatchLog> _log;
    std::vector<RowResult> _results;
    std::size_t _worked = 0; ///< of the results, those that cost time
    base::Diagnostics _diagnostics;
};

PoolOptions OptionsOfPool(std::size_t rows, const BatchOptions& options)
{
    const auto processors = static_cast<std::size_t>(tbb::info::default_concurrency());
    PoolOptions pool;
    pool.workers = std::min(options.workers > 0 ? options.workers : processors, rows);
    pool.threads = std::max<std::size_t>(processors / pool.workers, 1);
    pool.verbose = options.verbose;
    // All of them together stay within half of the machine between rows.
    pool.mostMebibytes = static_cast<double>(DefaultMegabytes()) / static_cast<double>(pool.workers);
    return pool;
}

} // namespace

BatchOutcome RunBatch(const std::vector<BatchRow>& rows, const BatchOptions& options)
{
    Run run(rows, options);
    try {
        RunPool(run, OptionsOfPool(rows.size(), options));
    } catch (const base::Cancelled&) {
        NoteWritten(run.account());
        throw;
    }
    return run.outcome();
}

} // namespace cli
