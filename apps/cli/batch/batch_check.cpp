// A batch that is only looked at: what its rows would write, and which of them would fail.
// SPDX-License-Identifier: MIT

#include "batch/batch_check.h"

#include "batch/batch_pool.h"
#include "command.h"
#include "dials.h"
#include "dson/reader.h"
#include "error_sentence.h"
#include "progress.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

class Check : public BatchSource {
public:
    Check(const std::vector<BatchRow>& rows, const BatchOptions& options)
        : _rows(rows), _answers(rows.size()), _progress(options.showsProgress),
          _workers(OptionsOfPool(rows.size(), options).workers)
    {
        _progress.begin("Checking", "Looking at the rows");
        show();
    }

    std::optional<BatchTask> next() override
    {
        if (_begun == _rows.size())
            return std::nullopt;
        BatchTask task;
        task.row = _begun++;
        task.arguments = _rows[task.row].arguments;
        return task;
    }

    std::optional<std::string> beforeSaving(const BatchTask& /*task*/,
                                            const std::vector<std::string>& /*files*/) override
    {
        return "a dry run saves nothing";
    }

    void take(const BatchTask& task, BatchAnswer answer) override
    {
        _answers[task.row] = std::move(answer);
        ++_answered;
        show();
    }

    Json report(const PlannedFiles& own, bool asJson)
    {
        _progress.finish();
        Json whole = DescribePlan(own, asJson);
        for (Json& file : whole["would_write"])
            file = {{"row", nullptr}, {"replaces", file["replaces"]}, {"file", file["file"]}};
        Json failures = Json::array();
        std::map<std::string, std::size_t> owners; // of files, without case: the lines
        for (std::size_t i = 0; i < _rows.size(); ++i) {
            const std::string error = take(i, owners, whole["would_write"]);
            if (!error.empty())
                failures.push_back({{"row", _rows[i].number},
                                    {"line", _rows[i].line},
                                    {"source", FileText(_rows[i].source)},
                                    {"error", error}});
        }
        whole["rows"] = _rows.size();
        whole["failed"] = failures.size();
        if (!failures.empty() || asJson)
            whole["failures"] = std::move(failures);
        return whole;
    }

private:
    /// @return why the row would fail; empty when it would not, as far as can be seen
    std::string take(std::size_t row, std::map<std::string, std::size_t>& owners, Json& files)
    {
        const BatchAnswer& answer = _answers[row];
        if (!answer.death.empty())
            return app::ErrorSentence(answer.death);
        const Json planned = answer.said.value("report", Json::object()).value("would_write", Json::array());
        for (const Json& file : planned) {
            const auto name = file.at("file").get<std::string>();
            const auto [owner, isFirst] = owners.emplace(Folded(name), _rows[row].line);
            if (!isFirst)
                return app::ErrorSentence(
                    fmt::format("would write {}, as line {} does", name, owner->second));
            files.push_back({{"row", _rows[row].number}, {"replaces", file.at("replaces")}, {"file", name}});
        }
        return answer.said.value("error", std::string());
    }

    void show()
    {
        _progress.count({_answered, _rows.size(), _answered, _workers},
                        fmt::format("Looking at the rows: {} of {}", _answered, _rows.size()));
    }

    const std::vector<BatchRow>& _rows;
    std::vector<BatchAnswer> _answers;
    Progress _progress;
    const std::size_t _workers;
    std::size_t _begun = 0, _answered = 0;
};

} // namespace

Json CheckBatch(const std::vector<BatchRow>& rows, const BatchOptions& options, const PlannedFiles& own,
                bool asJson)
{
    Check check(rows, options);
    PoolOptions pool = OptionsOfPool(rows.size(), options);
    pool.isDryRun = true;
    RunPool(check, pool);
    return check.report(own, asJson);
}

} // namespace cli
