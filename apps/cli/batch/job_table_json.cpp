// Tables of work as lists of objects.
// SPDX-License-Identifier: MIT

#include "batch/job_table_json.h"

#include "batch/job_table_text.h"

#include <algorithm>
#include <cstring>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

std::size_t LineAt(std::string_view text, std::size_t offset)
{
    std::size_t line = 1;
    for (std::size_t at = 0; at < text.size();) {
        at += LineLength(text.substr(at));
        if (at > offset)
            break;
        line += at < text.size();
    }
    return line;
}

/// The line at which each element of the outermost list begins. The text is JSON.
std::vector<std::size_t> ElementLines(std::string_view text)
{
    std::vector<std::size_t> lines;
    std::size_t depth = 0, line = 1;
    bool isInText = false, isExpected = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        line += c == '\n' || (c == '\r' && text.substr(at + 1, 1) != "\n");
        if (isInText) {
            at += c == '\\';
            isInText = c != '"';
            continue;
        }
        if (isExpected && !std::strchr(" \t\r\n]", c)) {
            lines.push_back(line);
            isExpected = false;
        }
        isInText = c == '"';
        if (c == '[' || c == '{')
            isExpected = ++depth == 1;
        else if (c == ']' || c == '}')
            --depth;
        else if (c == ',' && depth == 1)
            isExpected = true;
    }
    return lines;
}

/// A parser keeps the last of several members of the same name, which nobody may have meant.
class Names {
public:
    void take(int depth, Json::parse_event_t event, const Json& parsed)
    {
        constexpr int ofList = 1, ofObject = 2;
        if (event == Json::parse_event_t::object_start && depth == ofList) {
            _twice.emplace_back();
            _seen.clear();
        }
        if (event == Json::parse_event_t::key && depth == ofObject && !_twice.empty() &&
            !_seen.insert(parsed.get<std::string>()).second)
            _twice.back().push_back(parsed.get<std::string>());
    }
    /// Of each object of the list, those that it has more than once.
    const std::vector<std::vector<std::string>>& twice() const { return _twice; }

private:
    std::set<std::string> _seen;
    std::vector<std::vector<std::string>> _twice;
};

bool IsScalar(const Json& value)
{
    return value.is_string() || value.is_number();
}

std::string TextOf(const Json& value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

/// False where the value cannot be meant.
bool AddList(JobRow& row, const JobColumn& column, const Json& value)
{
    std::vector<std::string> values;
    for (const auto& item : value.items()) {
        if (!IsScalar(item.value()))
            return false;
        values.push_back(value.is_object() ? item.key() + '=' + TextOf(item.value()) : TextOf(item.value()));
    }
    if (!values.empty())
        row.cells.push_back({column.name, std::move(values)});
    return true;
}

void AddValue(JobRow& row, const JobColumn& column, const Json& value, std::vector<TableProblem>& problems)
{
    const bool isEmpty =
        value.is_null() || (value.is_string() && value.get_ref<const std::string&>().empty());
    if (isEmpty)
        return;
    const bool isList = column.kind == JobColumn::Kind::List;
    if (IsScalar(value) || (value.is_boolean() && column.kind == JobColumn::Kind::Flag))
        AddCell(row, column, TextOf(value), problems);
    else if (!isList || !value.is_structured() || !AddList(row, column, value))
        problems.push_back(
            {row.line, fmt::format("{} is {}, which is neither a text nor a number{}", column.name,
                                   Shown(value.dump()), isList ? ", and no list of them" : "")});
}

JobRow ReadRow(const Json& object, std::size_t line, const std::vector<JobColumn>& columns,
               std::vector<TableProblem>& problems)
{
    JobRow row;
    row.line = line;
    std::set<std::string> named;
    for (const auto& member : object.items())
        if (const JobColumn* const column = FindColumn(columns, member.key(), line, problems)) {
            if (named.insert(column->name).second)
                AddValue(row, *column, member.value(), problems);
            else
                problems.push_back({line, fmt::format("\"{}\" is there twice", column->name)});
        }
    return row;
}

} // namespace

JobTable ReadJsonTable(std::string_view text, const std::vector<JobColumn>& columns)
{
    JobTable table;
    Names names;
    Json list;
    try {
        list = Json::parse(text, [&names](int depth, Json::parse_event_t event, Json& parsed) {
            names.take(depth, event, parsed);
            return true;
        });
    } catch (const Json::parse_error& error) {
        const std::size_t offset = std::max<std::size_t>(error.byte, 1) - 1;
        table.problems.push_back({LineAt(text, offset), "this is no JSON"});
        return table;
    } catch (const Json::out_of_range&) {
        table.problems.push_back({1, "the list holds a number that is too large for any use"});
        return table;
    }
    const std::vector<std::size_t> lines = ElementLines(text);
    std::size_t objects = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (!list[i].is_object()) {
            table.problems.push_back({lines.at(i), "this is no object, as rows are"});
            continue;
        }
        for (const std::string& name : names.twice().at(objects++))
            table.problems.push_back({lines.at(i), fmt::format("{} is there twice", Shown(name))});
        if (JobRow row = ReadRow(list[i], lines.at(i), columns, table.problems); !row.cells.empty())
            table.rows.push_back(std::move(row));
    }
    return table;
}

} // namespace cli
