// What is the same in all tables of work, however they are written.
// SPDX-License-Identifier: MIT

#include "batch/job_table_text.h"

#include "base/ascii.h"

#include <algorithm>
#include <initializer_list>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

bool IsUtf8(const std::string& text)
{
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return true;
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

std::string Trimmed(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n"), end = text.find_last_not_of(" \t\r\n");
    return begin == text.npos ? std::string() : text.substr(begin, end - begin + 1);
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), base::ToLowerAscii);
    return text;
}

std::string ColumnName(const std::string& text)
{
    std::string name = Lower(Trimmed(text));
    name.erase(0, std::min(name.find_first_not_of('-'), name.size()));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == ' ' || c == '_'; }, '-');
    return name;
}

std::vector<std::string> ListIn(const std::string& text)
{
    std::vector<std::string> values;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(';', at), text.size());
        if (std::string value = Trimmed(text.substr(at, end - at)); !value.empty())
            values.push_back(std::move(value));
        at = end + 1;
    }
    return values;
}

bool IsOneOf(const std::string& text, std::initializer_list<const char*> words)
{
    return std::find(words.begin(), words.end(), text) != words.end();
}

} // namespace

std::size_t LineLength(std::string_view text)
{
    const std::size_t end = text.find_first_of("\r\n");
    if (end == text.npos)
        return text.size();
    return text.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
}

std::string_view WithoutByteOrderMark(std::string_view text)
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.substr(0, mark.size()) == mark ? text.substr(mark.size()) : text;
}

std::vector<TableProblem> FindUnreadable(std::string_view text)
{
    for (const std::string_view mark : {std::string_view("\xFF\xFE"), std::string_view("\xFE\xFF")})
        if (text.substr(0, mark.size()) == mark)
            return {{1, "the text is UTF-16; it has to be UTF-8"}};
    std::vector<TableProblem> problems;
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::string one(text.substr(0, LineLength(text)));
        text.remove_prefix(one.size());
        if (one.find('\0') != one.npos)
            problems.push_back({line, "has a zero byte, which no text has"});
        else if (!IsUtf8(one))
            problems.push_back({line, "is not UTF-8"});
    }
    return problems;
}

std::string Shown(const std::string& text)
{
    constexpr std::size_t most = 60;
    if (text.size() <= most)
        return '"' + text + '"';
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end; // not within a character
    return '"' + text.substr(0, end) + "...\"";
}

const JobColumn* FindColumn(const std::vector<JobColumn>& columns, const std::string& name, std::size_t line,
                            std::vector<TableProblem>& problems)
{
    const std::string wanted = ColumnName(name);
    std::string known;
    for (const JobColumn& column : columns) {
        if (column.name == wanted)
            return &column;
        known += (known.empty() ? "" : ", ") + column.name;
    }
    problems.push_back(
        {line, fmt::format("there is no column called {}; those known are {}", Shown(name), known)});
    return nullptr;
}

void AddCell(JobRow& row, const JobColumn& column, const std::string& text,
             std::vector<TableProblem>& problems)
{
    if (column.kind == JobColumn::Kind::Text || column.kind == JobColumn::Kind::Words) {
        row.cells.push_back({column.name, {text}});
    } else if (column.kind == JobColumn::Kind::List) {
        if (std::vector<std::string> values = ListIn(text); !values.empty())
            row.cells.push_back({column.name, std::move(values)});
    } else if (const std::string word = Lower(Trimmed(text)); IsOneOf(word, {"yes", "true", "1", "on"})) {
        row.cells.push_back({column.name, {"yes"}});
    } else if (IsOneOf(word, {"no", "false", "0", "off"})) {
        row.cells.push_back({column.name, {"no"}});
    } else {
        problems.push_back(
            {row.line, fmt::format("{} is {}; it can be yes or no", column.name, Shown(text))});
    }
}

} // namespace cli
