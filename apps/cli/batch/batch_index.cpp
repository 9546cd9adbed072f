// All rows of a batch on one page.
// SPDX-License-Identifier: MIT

#include "batch/batch_index.h"

#include "batch/batch_brief.h"
#include "command.h"
#include "conversions/thumbnail.h"
#include "page/page_writer.h"

#include <algorithm>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// A page of any number of rows stays one that a browser opens at once.
constexpr std::size_t mostPictures = 500, mostWarningBytes = std::size_t{1} << 22;

std::optional<double> NumberIn(const Json& object, const char* key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_number() ? std::optional<double>(found->get<double>())
                                                       : std::nullopt;
}

Json OrNull(const std::optional<double>& value, int decimals)
{
    return value ? Json(Rounded(*value, decimals)) : Json(nullptr);
}

/// Where the page of a row is seen from the page of all; a browser finds it wherever both are moved to.
std::string LinkTo(const std::string& page, const fs::path& folder)
{
    if (page.empty())
        return {};
    const fs::path link = fs::absolute(fs::u8path(page)).lexically_normal().lexically_relative(folder);
    return link.generic_u8string();
}

Json Pairs(const std::vector<std::pair<std::string, std::string>>& settings)
{
    Json pairs = Json::array();
    for (const auto& [name, value] : settings)
        pairs.push_back({name, value});
    return pairs;
}

} // namespace

std::size_t BatchIndex::textOf(const std::string& text)
{
    const auto [found, isNew] = _textIndex.emplace(text, _texts.size());
    if (isNew)
        _texts.push_back(text);
    return found->second;
}

void BatchIndex::add(const RowResult& result, const Json& earlier)
{
    const Json brief = earlier.is_object() ? earlier : BriefOf(result);
    const fs::path source = fs::u8path(result.value("source", ""));
    Row row;
    row.number = result.value("row", std::size_t{0});
    row.line = result.value("line", std::size_t{0});
    row.folder = textOf(source.parent_path().u8string());
    row.file = source.filename().u8string();
    row.name = brief.value("name", "");
    row.kind = textOf(brief.value("kind", ""));
    row.status = textOf(result.value("status", ""));
    row.error = result.value("error", "");
    row.page = brief.value("page", "");
    const Json distance = brief.value("distance", Json::object());
    row.mean = NumberIn(distance, "mean");
    row.p95 = NumberIn(distance, "p95");
    row.max = NumberIn(distance, "max");
    row.seconds = NumberIn(brief, "seconds");
    row.memory = NumberIn(brief, "peak_memory_mib");
    if (const auto morphs = NumberIn(brief, "morphs"))
        row.morphs = static_cast<std::size_t>(*morphs);
    row.leftOut = brief.value("left_out", std::size_t{0});
    row.picture = brief.value("picture", "");
    addWarnings(row, brief.value("warnings", Json::array()));
    const auto [place, isNew] = _byNumber.emplace(row.number, _rows.size());
    if (isNew)
        _rows.emplace_back();
    else
        _pictured.erase({_rows[place->second].p95.value_or(0.0), place->second});
    _rows[place->second] = std::move(row);
    keepWorstPictures(place->second);
}

void BatchIndex::keepOnly(const std::vector<RowResult>& results)
{
    std::set<std::size_t> kept;
    for (const RowResult& result : results)
        kept.insert(result.at("row").get<std::size_t>());
    const auto isOthers = [&](const Row& row) { return kept.count(row.number) == 0; };
    _rows.erase(std::remove_if(_rows.begin(), _rows.end(), isOthers), _rows.end());
}

void BatchIndex::addWarnings(Row& row, const Json& warnings)
{
    row.warningCount = warnings.size();
    for (const Json& warning : warnings) {
        const std::string text = warning.get<std::string>();
        const bool isKnown = _textIndex.count(text) > 0;
        if (!isKnown && _warningBytes + text.size() > mostWarningBytes) {
            ++_untoldWarnings;
            continue;
        }
        _warningBytes += isKnown ? 0 : text.size();
        row.warnings.push_back(textOf(text));
    }
}

void BatchIndex::keepWorstPictures(std::size_t row)
{
    if (_rows[row].picture.empty())
        return;
    _pictured.emplace(_rows[row].p95.value_or(0.0), row);
    if (_pictured.size() <= mostPictures)
        return;
    std::string().swap(_rows[_pictured.begin()->second].picture); // with its memory
    _pictured.erase(_pictured.begin());
    ++_droppedPictures;
}

/// In the order of "batch.js".
Json BatchIndex::describe(const Row& row, const fs::path& folder) const
{
    Json described{row.number,
                   row.line,
                   row.name,
                   row.folder,
                   row.file,
                   row.kind,
                   row.status,
                   OrNull(row.mean, 3),
                   OrNull(row.p95, 3),
                   OrNull(row.max, 3),
                   row.morphs ? Json(*row.morphs) : Json(nullptr),
                   row.leftOut,
                   OrNull(row.seconds, 3),
                   OrNull(row.memory, 1),
                   row.warningCount};
    // What few rows have stands behind, as it need not stand there at all.
    if (row.warnings.empty() && row.error.empty() && row.page.empty() && row.picture.empty())
        return described;
    described.push_back(row.warnings);
    described.push_back(row.error);
    described.push_back(LinkTo(row.page, folder));
    described.push_back(row.picture);
    return described;
}

void BatchIndex::write(const fs::path& file, const BatchFacts& facts) const
{
    const fs::path folder = fs::absolute(file).lexically_normal().parent_path();
    Json rows = Json::array();
    for (const Row& row : _rows)
        rows.push_back(describe(row, folder));
    base::Diagnostics told = facts.diagnostics;
    Json warnings;
    AddDiagnostics(warnings, told, false);
    Page page;
    page.title = facts.table.empty() ? "Batch" : "Batch " + fs::u8path(facts.table).filename().u8string();
    page.data = {{"title", page.title},
                 {"table", facts.table},
                 {"command", facts.command},
                 {"seconds", Rounded(facts.seconds, 2)},
                 {"isOfRows", facts.isOfRows},
                 {"settings", Pairs(facts.settings)},
                 {"warnings", warnings["warnings"]},
                 {"wasInterrupted", facts.wasInterrupted},
                 {"rowsNotBegun", facts.rowsNotBegun},
                 {"mostPictures", mostPictures},
                 {"droppedPictures", _droppedPictures},
                 {"untoldWarnings", _untoldWarnings},
                 {"texts", _texts},
                 {"rows", std::move(rows)}};
    page.data.update(ThumbnailLegend());
    page.scripts = {"batch.js"};
    page.styles = {"batch.css"};
    WritePage(file, page);
}

} // namespace cli
