// The logs of a batch's runs, also of those on other machines, as one.
// SPDX-License-Identifier: MIT

#include "batch/merged_logs.h"

#include "base/counted.h"
#include "batch/log_lines.h"
#include "dson/reader.h"
#include "shell_command.h"

#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

bool IsResult(const Json& line)
{
    return line.is_object() && line.contains("row") && line["row"].is_number_unsigned() &&
           line.contains("line") && line["line"].is_number_unsigned() && line.contains("status") &&
           line["status"].is_string() && (!line.contains("busy") || line["busy"].is_boolean()) &&
           (!line.contains("error") || line["error"].is_string()) &&
           (!line.contains("source") || line["source"].is_string()) &&
           (!line.contains("seconds") || line["seconds"].is_number()) &&
           (!line.contains("report") || line["report"].is_object());
}

/// What it says of itself, which a row of another table has differently.
std::string CommandOf(const RowResult& result)
{
    const auto command = result.find("command");
    return command != result.end() && command->is_string() ? command->get<std::string>() : std::string();
}

class MergedLogs {
public:
    MergedLogs(bool keepsReports, const std::function<void(const RowResult&)>& hears,
               base::Diagnostics& diagnostics)
        : _keepsReports(keepsReports), _hears(hears), _diagnostics(diagnostics)
    {
    }

    void read(const std::string& file)
    {
        std::vector<std::size_t> unusable;
        LogLines lines(file);
        while (const std::optional<std::string> line = lines.next()) {
            Json result = Json::parse(*line, nullptr, false);
            if (IsResult(result))
                take(std::move(result));
            else
                unusable.push_back(lines.number());
        }
        if (!unusable.empty())
            warn(file, fmt::format("line {} is not the result of a row, left out{}", unusable.front(),
                                   andOthers(unusable.size(), "line", "lines")));
    }

    std::vector<RowResult> results()
    {
        if (!_mixed.empty())
            warn({},
                 fmt::format("the logs are of different tables: row {} is another one in a later log, which "
                             "counts{}",
                             *_mixed.begin(), andOthers(_mixed.size(), "row", "rows")));
        std::vector<RowResult> results;
        for (auto& [row, result] : _byRow)
            results.push_back(std::move(result));
        return results;
    }

private:
    void take(RowResult result)
    {
        RowResult& known = _byRow[result["row"].get<std::size_t>()];
        if (known.is_null())
            return keep(known, std::move(result));
        if (CommandOf(known) != CommandOf(result) && !CommandOf(known).empty() && !CommandOf(result).empty())
            _mixed.insert(result["row"].get<std::size_t>());
        const bool staysDone = result["status"] == "skipped" && known["status"] == "done";
        const bool saysNothing = result.value("busy", false);
        if (!staysDone && !saysNothing)
            keep(known, std::move(result));
    }

    void keep(RowResult& known, RowResult result)
    {
        _hears(result);
        if (!_keepsReports)
            KeepLittle(result);
        known = std::move(result);
    }

    static std::string andOthers(std::size_t count, const char* one, const char* many)
    {
        return count == 1 ? std::string()
                          : fmt::format("; the same of {}", base::Counted(count - 1, one, many));
    }

    void warn(const std::string& file, const std::string& what)
    {
        _diagnostics.push_back({base::Severity::Warning, file, {}, what});
    }

    bool _keepsReports;
    const std::function<void(const RowResult&)>& _hears;
    base::Diagnostics& _diagnostics;
    std::map<std::size_t, RowResult> _byRow;
    std::set<std::size_t> _mixed; ///< rows that were another command in an earlier log
};

/// "2, 5-7 and 11 others", of numbers that ascend.
std::string Ranges(const std::vector<std::size_t>& numbers)
{
    constexpr std::size_t most = 8;
    std::string text;
    std::size_t shown = 0, ranges = 0;
    for (std::size_t i = 0; i < numbers.size() && ranges < most; ++ranges) {
        std::size_t last = i;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1)
            ++last;
        text += (text.empty() ? "" : ", ") + std::to_string(numbers[i]);
        if (last > i)
            text += '-' + std::to_string(numbers[last]);
        shown += last - i + 1;
        i = last + 1;
    }
    if (shown < numbers.size())
        text += fmt::format(" and {}", base::Counted(numbers.size() - shown, "other", "others"));
    return text;
}

} // namespace

std::vector<RowResult> ReadLogs(const std::vector<std::string>& files, bool keepsReports,
                                const std::function<void(const RowResult&)>& hears,
                                base::Diagnostics& diagnostics)
{
    MergedLogs merged(keepsReports, hears, diagnostics);
    for (const std::string& file : files)
        merged.read(file);
    return merged.results();
}

std::size_t CompareWithTable(std::vector<RowResult>& results, const std::vector<BatchRow>& rows,
                             const std::string& name, base::Diagnostics& diagnostics)
{
    std::set<std::size_t> known;
    std::vector<std::size_t> others;
    const auto isOther = [&](const RowResult& result) {
        const auto number = result["row"].get<std::size_t>();
        const bool isRow =
            number >= 1 && number <= rows.size() &&
            (CommandOf(result).empty() || CommandOf(result) == ShellCommand(rows[number - 1].arguments));
        if (isRow)
            known.insert(number);
        else
            others.push_back(number);
        return !isRow;
    };
    results.erase(std::remove_if(results.begin(), results.end(), isOther), results.end());
    std::vector<std::size_t> missing;
    for (const BatchRow& row : rows)
        if (known.count(row.number) == 0)
            missing.push_back(row.number);
    const auto warn = [&](const std::string& what) {
        diagnostics.push_back({base::Severity::Warning, name, {}, what});
    };
    if (!others.empty())
        warn(fmt::format("the logs have {} of other commands than the table, left out: {}",
                         base::Counted(others.size(), "row", "rows"), Ranges(others)));
    if (!missing.empty())
        warn(fmt::format("{} in no log: {}", base::Counted(missing.size(), "row is", "rows are"),
                         Ranges(missing)));
    return missing.size();
}

} // namespace cli
