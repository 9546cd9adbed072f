// Members that are of other kinds than they should be.
// SPDX-License-Identifier: MIT

#include "odd_members.h"

#include "parts.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace dson {

namespace {

thread_local PartBeingRead* innermost = nullptr;

struct Wording {
    const char *one, *many;
};

/// In the order of what is wanted.
constexpr Wording wordings[] = {
    {"is no text and counts for nothing", "are no texts and count for nothing"},
    {"is no number that can be used and counts for nothing",
     "are no numbers that can be used and count for nothing"},
    {"is neither true nor false and counts for nothing", "are neither true nor false and count for nothing"},
    {"is a word for true or false and read as that", "are words for true or false and read as that"},
    {"is no object and counts for nothing", "are no objects and count for nothing"},
    {"lists something else than texts, which counts for nothing",
     "list something else than texts, which counts for nothing"},
    {"lists something else than pairs of texts, which is left out",
     "list something else than pairs of texts, which is left out"},
    {"lists something else than objects, which is left out",
     "list something else than objects, which is left out"},
    {"does not give one value for each of x, y and z", "do not give one value for each of x, y and z"},
    {"is above the max and changes places with it", "are above the max and change places with it"},
    {"is beyond the limits, which hold it", "are beyond the limits, which hold them"},
    {"is no whole number that there is room for and gets the nearest",
     "are no whole numbers that there is room for and get the nearest"},
};

} // namespace

void OddMembers::add(const Element& owner, std::string_view name, Wanted wanted)
{
    static_assert(std::size(wordings) == static_cast<std::size_t>(Wanted::Whole) + 1);
    for (const auto member : Members(owner)) {
        if (member.key != name)
            continue;
        if (!_met.emplace(member.key.data(), wanted).second)
            return;
        Tally& tally = _tallies[{std::string(name), wanted}];
        ++tally.count;
        if (tally.example.empty())
            tally.example = PartBeingRead::id();
        return; // of several the first is read
    }
}

bool OddMembers::hasUnread(std::string_view name) const
{
    const auto found = _met.find(name.data());
    return found != _met.end() && (found->second == Wanted::Text || found->second == Wanted::Number ||
                                   found->second == Wanted::Flag || found->second == Wanted::Object);
}

void OddMembers::tell(ParseContext& context) const
{
    for (const auto& [about, tally] : _tallies) {
        const auto& [name, wanted] = about;
        const Wording& wording = wordings[static_cast<std::size_t>(wanted)];
        if (tally.count == 1)
            context.warn(tally.example, fmt::format("has a member {} that {}", name, wording.one));
        else
            context.warn(
                {}, fmt::format("{} members {} {}{}", tally.count, name, wording.many,
                                tally.example.empty() ? std::string() : ", such as of " + tally.example));
    }
}

PartBeingRead::PartBeingRead(const Element& part) : _part(part), _outer(innermost)
{
    innermost = this;
}

PartBeingRead::~PartBeingRead()
{
    innermost = _outer;
}

std::string PartBeingRead::id()
{
    for (const PartBeingRead* part = innermost; part; part = part->_outer)
        for (const std::string_view name : {"id", "name", "url"})
            if (const std::string_view text = QuietText(part->_part, name); !text.empty())
                return std::string(text);
    return {};
}

std::optional<bool> FlagInWord(std::string_view text)
{
    const auto is = [text](std::string_view word) {
        return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                          [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
    };
    if (is("yes") || is("true") || is("on"))
        return true;
    if (is("no") || is("false") || is("off"))
        return false;
    return std::nullopt;
}

} // namespace dson
