// What is told of a text that had to be mended.
// SPDX-License-Identifier: MIT

#include "oddities.h"

#include "base/counted.h"
#include "dson/reader.h"
#include "lenient_json.h"

#include <algorithm>

#include <fmt/format.h>

namespace dson {

namespace {

struct Wording {
    const char *one, *many, *done;
};

/// In the order of the kinds.
constexpr Wording wordings[] = {
    {"stray comma", "stray commas", "left out"},
    {"missing comma", "missing commas", "put in"},
    {"member without a value", "members without a value", "left out"},
    {"comment", "comments", "left out"},
    {"number that is not finite", "numbers that are not finite", "left out"},
    {"whole number beyond 64 bits", "whole numbers beyond 64 bits", "rounded"},
    {"value in a notation of its own", "values in a notation of their own", "read as what was meant"},
    {"number with a comma for its point", "numbers with commas for their points", "read as with a point"},
    {"text in single quotes", "texts in single quotes", "read as any other"},
    {"name without quotes", "names without quotes", "read as any other"},
    {"branch that is nested too deeply", "branches that are nested too deeply", "left out"},
    {"half of a character", "halves of characters", "replaced"},
    {"raw control character in a string", "raw control characters in strings", "kept"},
    {"backslash that stands for nothing", "backslashes that stand for nothing", "kept"},
    {"byte that is not UTF-8", "bytes that are not UTF-8", "read as Windows-1252"},
    {"stretch of padding behind its end", "", "left out"},
    {"stretch of text behind its end", "", "left out"},
};

std::string Phrase(const Wording& wording, std::size_t count, const TextPlace& place)
{
    return fmt::format("has {}, {}: {}line {}, column {}", base::Counted(count, wording.one, wording.many),
                       wording.done, count == 1 ? "" : "the first at ", place.line, place.column);
}

} // namespace

void Oddities::add(Oddity kind, std::size_t at)
{
    Tally& tally = _tallies[static_cast<std::size_t>(kind)];
    if (tally.count++ == 0 || at < tally.first)
        tally.first = at;
}

std::vector<std::string> Oddities::phrases(std::string_view text) const
{
    static_assert(std::size(wordings) == std::tuple_size_v<decltype(_tallies)>);
    std::vector<std::size_t> met;
    for (std::size_t kind = 0; kind < _tallies.size(); ++kind)
        if (_tallies[kind].count > 0)
            met.push_back(kind);
    std::stable_sort(met.begin(), met.end(),
                     [&](std::size_t a, std::size_t b) { return _tallies[a].first < _tallies[b].first; });
    std::vector<std::string> phrases;
    for (const std::size_t kind : met)
        phrases.push_back(Phrase(wordings[kind], _tallies[kind].count, PlaceOf(text, _tallies[kind].first)));
    return phrases;
}

} // namespace dson
