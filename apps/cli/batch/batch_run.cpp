// One run of a batch: its rows through workers, with what is known of them kept.
// SPDX-License-Identifier: MIT

#include "batch/batch_run.h"

#include "base/cancellation.h"
#include "base/counted.h"
#include "batch/batch_brief.h"
#include "batch/batch_pool.h"
#include "batch/morph_claims.h"
#include "batch/row_keeper.h"
#include "batch/save_libraries.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "error_sentence.h"
#include "interrupt.h"
#include "progress.h"
#include "standard_streams.h"
#include "worker_process.h"

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <tbb/info.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

constexpr int mostTries = 2;
const char* const busy = "another program is at work on this row";

struct RowWork {
    int tries = 0;
    bool wasDone = false;             ///< by an earlier run, from the same files
    bool hasBegunSaving = false;      ///< in this run
    bool isOthers = false;            ///< another program has taken it while it was converted
    std::vector<std::string> claimed; ///< files that it said then
    RowState state;
};

fs::path DetailOf(fs::path morph)
{
    return morph.replace_extension(".dhdm");
}

/// All files that the report of a row names, of a character or of single morphs.
std::vector<fs::path> FilesIn(const Json& report)
{
    std::vector<fs::path> files;
    for (const Json& morph : report.contains("created") ? report["created"] : report.at("created_morphs"))
        if (morph.contains("file")) {
            files.emplace_back(morph["file"].get<std::string>());
            std::error_code error;
            if (const fs::path detail = DetailOf(files.back()); fs::exists(detail, error))
                files.push_back(detail);
        }
    for (const Json& file : report.value("files", Json::array()))
        files.emplace_back(file.get<std::string>());
    return files;
}

/// What may be put in place is not there yet, or is no longer what it was.
KeptFiles Expected(const std::vector<std::string>& files)
{
    KeptFiles expected;
    for (const std::string& file : files)
        expected.emplace_back(file, std::string());
    return expected;
}

class Run : public BatchSource {
public:
    Run(const std::vector<BatchRow>& rows, const BatchOptions& options)
        : _rows(rows), _work(rows.size()), _options(options), _progress(options.showsProgress), _claims(rows),
          _libraries(rows)
    {
        for (std::size_t i = 0; i < rows.size(); ++i)
            _waiting.push_back(i);
        if (!options.log.empty())
            _log.emplace(options.log,
                         options.skipsDone ? BatchLog::Beginning::AtEnd : BatchLog::Beginning::Anew);
        if (options.table != standardStream)
            _keeper.emplace(options.table,
                            options.needsState ? RowKeeper::Need::Required : RowKeeper::Need::Wanted);
        _progress.begin("Converting", "Converting the rows");
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

    std::optional<std::string> beforeSaving(const BatchTask& task,
                                            const std::vector<std::string>& files) override
    {
        if (_claims.hasToWait(task.row, files))
            return std::nullopt;
        if (const std::string reason = _libraries.whyLost(_rows[task.row]); !reason.empty())
            return reason;
        if (const std::string refusal = refusalFor(task, files); !refusal.empty())
            return refusal;
        RowWork& work = _work[task.row];
        work.isOthers = _keeper && !_keeper->isHeld(_rows[task.row]);
        if (work.isOthers)
            return busy;
        if (!files.empty())
            work.state.outputs = Expected(files);
        work.claimed = files;
        work.state.step = RowState::Step::Saving;
        work.hasBegunSaving = true;
        keep(task.row);
        return std::string();
    }

    void take(const BatchTask& task, BatchAnswer answer) override
    {
        RowWork& work = _work[task.row];
        if (!answer.death.empty() && !answer.wasLate && work.tries < mostTries) {
            _waiting.push_front(task.row);
            return;
        }
        const bool hasReport = answer.said.contains("report");
        const bool isDone = hasReport && !answer.said.contains("error");
        RowResult result = BeginResult(_rows[task.row], isDone ? "done" : "failed");
        result["tries"] = work.tries;
        result["seconds"] = Rounded(answer.seconds, 4);
        if (answer.death.empty())
            result.update(answer.said);
        else
            result["error"] = app::ErrorSentence(answer.death);
        std::vector<std::string> filesUsed;
        if (const auto used = result.find("files_used"); used != result.end()) {
            filesUsed = used->get<std::vector<std::string>>();
            result.erase(used); // which would be most of a line of the log
        }
        if (hasReport) { // also of one that has failed in part: what it has saved is its own
            work.state = {isDone ? RowState::Step::Done : RowState::Step::Failed, work.state.inputs,
                          DescribeFiles(FilesIn(result["report"])), _readings.describe(filesUsed),
                          BriefOf(result).dump(-1, ' ', false, Json::error_handler_t::replace)};
            letGoOfOthers(task.row);
            // What cannot be read again is converted again rather than taken for another's.
            if (!AreKnown(work.state.outputs))
                work.state.step = RowState::Step::Saving;
            keep(task.row);
        } else if (work.isOthers) {
            result["busy"] = true; // and its state is not ours to keep
        } else if (!work.wasDone && work.state.step != RowState::Step::Saving) {
            work.state.step = RowState::Step::Failed;
            keep(task.row);
        }
        end(task.row, std::move(result));
    }

    BatchOutcome outcome()
    {
        _progress.finish();
        return {std::move(_results), finishFiles(), _progress.totalSeconds()};
    }

    std::string account()
    {
        finishFiles();
        const auto isDone = [](const RowResult& result) { return result["status"] != "failed"; };
        return fmt::format("{} of {} done{}", std::count_if(_results.begin(), _results.end(), isDone),
                           base::Counted(_rows.size(), "row is", "rows are"),
                           _keeper && _keeper->isReliable() ? howToGoOn() : "");
    }

private:
    /// Rows that are named are left out without being asked, too, once they are done.
    const char* howToGoOn() const
    {
        if (_options.hasAllRows)
            return "; --resume goes on with the others";
        return _rows.size() > 1 ? "; the same command goes on with the others" : "";
    }

    base::Diagnostics finishFiles()
    {
        base::Diagnostics told;
        if (_keeper)
            told = _keeper->finish();
        if (_log)
            if (const std::string reason = _log->finish(); !reason.empty())
                told.push_back({base::Severity::Warning, {}, {}, reason});
        return told;
    }

    /// Nothing where the row is not to be worked on.
    std::optional<BatchTask> begin(std::size_t index)
    {
        const BatchRow& row = _rows[index];
        RowWork& work = _work[index];
        if (work.tries++ == 0) {
            if (_keeper && !_keeper->take(row)) {
                RowResult result = BeginResult(row, "failed");
                result["error"] = app::ErrorSentence(busy);
                result["busy"] = true;
                end(index, std::move(result));
                return std::nullopt;
            }
            const std::string inputs = InputsOf(row);
            work.state = known(row);
            work.wasDone = isDone(work.state, inputs);
            if (work.wasDone && _options.skipsDone) {
                work.state.files = {};
                end(index, BeginResult(row, "skipped"), std::exchange(work.state.result, {}));
                return std::nullopt;
            }
            work.state.inputs = inputs;
        }
        if (const std::string reason = _libraries.whyLost(row); !reason.empty()) {
            RowResult result = BeginResult(row, "failed");
            result["error"] = app::ErrorSentence(reason);
            end(index, std::move(result));
            return std::nullopt;
        }
        _claims.begin(index);
        return BatchTask{index, row.arguments, mayReplace(work), ownFiles(work)};
    }

    /// What the row was about to put in place, or has put there, is its own.
    bool mayReplace(const RowWork& work) const
    {
        if (!_options.skipsDone)
            return work.hasBegunSaving;
        return work.state.step == RowState::Step::Saving ||
               (!work.state.outputs.empty() && AreUnchanged(work.state.outputs));
    }

    /// Morphs that turned out to move nothing are no files; what is there stays the row's.
    void letGoOfOthers(std::size_t row)
    {
        std::set<std::string> written;
        for (const auto& file : _work[row].state.outputs)
            written.insert(Folded(FileText(file.first)));
        for (const std::string& file : _work[row].claimed)
            if (written.count(Folded(file)) == 0)
                _claims.letGo(row, file);
    }

    /// Empty when the row may write the files.
    std::string refusalFor(const BatchTask& task, const std::vector<std::string>& files)
    {
        if (const auto taken = _claims.claim(task.row, files))
            return fmt::format("would write {}, as line {} does", taken->first, _rows[taken->second].line);
        // Rows that are left out since they are done are not looked at in time.
        if (!_keeper || !_options.skipsDone)
            return {};
        const std::set<std::string> own(task.ownFiles.begin(), task.ownFiles.end());
        std::error_code unknown;
        for (const std::string& file : files)
            if (own.count(file) == 0 && fs::exists(file, unknown))
                if (const std::string owner = doneOwnerOf(file, task.row); !owner.empty())
                    return fmt::format("would write {}, as {} does, which is done", file, owner);
        return {};
    }

    /// "line 2", or empty for none. A row that the table has no more keeps nothing.
    std::string doneOwnerOf(const std::string& file, std::size_t row)
    {
        const auto found = _keeper->filesOfDone().find(Folded(file));
        if (found == _keeper->filesOfDone().end() || found->second == KeyOf(_rows[row]))
            return {};
        for (const BatchRow& other : _rows)
            if (KeyOf(other) == found->second)
                return fmt::format("line {}", other.line);
        return _options.hasAllRows ? "" : "another row";
    }

    /// The same for each file by itself, where the row did not say its files beforehand.
    std::vector<std::string> ownFiles(const RowWork& work) const
    {
        std::vector<std::string> own;
        if (!_options.skipsDone && !work.hasBegunSaving)
            return own;
        for (const auto& file : work.state.outputs)
            if (work.state.step == RowState::Step::Saving || AreUnchanged({file}))
                own.push_back(FileText(file.first));
        return own;
    }

    RowState known(const BatchRow& row)
    {
        return _keeper ? _keeper->find(row).value_or(RowState()) : RowState();
    }

    bool isDone(const RowState& state, const std::string& inputs)
    {
        return state.step == RowState::Step::Done && state.inputs == inputs && AreThere(state.outputs) &&
               AreUnchanged(state.outputs) && _readings.areUnchanged(state.files);
    }

    void keep(std::size_t index)
    {
        RowState& state = _work[index].state;
        if (!_keeper || _keeper->keep(_rows[index], state))
            std::string().swap(state.result); // with its memory, as there may be many
    }

    /// @param earlier  what the state has of it
    void end(std::size_t index, RowResult result, const std::string& earlier = {})
    {
        _claims.end(index);
        if (_keeper)
            _keeper->release(_rows[index]);
        if (_log)
            _log->write(result);
        if (_options.index)
            _options.index->add(result, Json::parse(earlier, nullptr, false));
        _worked += result["status"] != "skipped";
        if (_options.keepsReports)
            result.erase("picture");
        else
            KeepLittle(result);
        _results.push_back(std::move(result));
        show();
    }

    /// Skipped rows say nothing about how long the others take.
    void show()
    {
        _progress.count({_results.size(), _rows.size(), _worked, _workers},
                        fmt::format("Converting the rows: {} of {}", _results.size(), _rows.size()));
    }

    const std::vector<BatchRow>& _rows;
    std::vector<RowWork> _work;
    const BatchOptions& _options;
    Progress _progress;
    std::deque<std::size_t> _waiting;
    std::optional<RowKeeper> _keeper;
    std::optional<BatchLog> _log;
    FileReadings _readings;
    MorphClaims _claims;
    SaveLibraries _libraries;
    std::vector<RowResult> _results;
    const std::size_t _workers = OptionsOfPool(_rows.size(), _options).workers;
    std::size_t _worked = 0; ///< of the results, those that cost time
};

} // namespace

PoolOptions OptionsOfPool(std::size_t rows, const BatchOptions& options)
{
    const auto processors = static_cast<std::size_t>(tbb::info::default_concurrency());
    PoolOptions pool;
    pool.workers = std::min(options.workers > 0 ? options.workers : processors, rows);
    // Whoever says how many are to work means that each takes a processor, and leaves the others free.
    const std::size_t share = options.workers > 0 ? 1 : std::max<std::size_t>(processors / pool.workers, 1);
    pool.threads = options.threads > 0 ? options.threads : share;
    pool.verbose = options.verbose;
    pool.tellsProgress = options.tellsProgress;
    pool.wantsPictures = options.drawsPictures;
    pool.timeout = std::chrono::duration<double>(options.timeout);
    // All of them together stay within half of the machine between rows.
    pool.mostMebibytes = options.megabytes > 0
                             ? options.megabytes
                             : static_cast<double>(DefaultMegabytes()) / static_cast<double>(pool.workers);
    return pool;
}

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
