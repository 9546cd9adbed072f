// What reading a document meets all over it.
// SPDX-License-Identifier: MIT

#include "reading_tally.h"

#include "base/counted.h"
#include "parts.h"

#include <charconv>
#include <utility>

#include <fmt/format.h>

namespace dson {

namespace {

thread_local ReadingTally* youngest = nullptr;

} // namespace

ReadingTally::ReadingTally() : _outer(youngest)
{
    youngest = this;
}

ReadingTally::~ReadingTally()
{
    youngest = _outer;
}

void ReadingTally::Kind::add(std::string_view what)
{
    if (count++ > 0)
        return;
    example = what;
    part = PartBeingRead::id();
}

void ReadingTally::addText(std::string_view text)
{
    if (youngest)
        youngest->_texts.add(text);
}

void ReadingTally::addSpoilt(std::string_view channel)
{
    if (youngest)
        youngest->_spoilt.add(channel);
}

void ReadingTally::addNoList(std::string_view member)
{
    if (!youngest)
        return;
    youngest->_noLists.emplace(member);
    if (std::string part = PartBeingRead::id(); !part.empty())
        youngest->_partsWithNoLists.insert(std::move(part));
}

void ReadingTally::addOdd(const Element& owner, std::string_view member, OddMembers::Wanted wanted)
{
    if (youngest)
        youngest->_odd.add(owner, member, wanted);
}

bool ReadingTally::isUnread(std::string_view name)
{
    return youngest && youngest->_odd.hasUnread(name);
}

void ReadingTally::tell(ParseContext& context) const
{
    if (_texts.count > 0)
        context.warn({}, fmt::format("has {} as texts, read as what they say, such as \"{}\"",
                                     base::Counted(_texts.count, "number", "numbers"), _texts.example));
    tellSpoilt(context);
    if (!_noLists.empty())
        context.warn(
            _partsWithNoLists.size() == 1 ? *_partsWithNoLists.begin() : std::string(),
            fmt::format("has members that should be lists and are none: {}", fmt::join(_noLists, ", ")));
    _odd.tell(context);
}

void ReadingTally::tellSpoilt(ParseContext& context) const
{
    if (_spoilt.count == 0)
        return;
    std::string example = _spoilt.example.empty() ? std::string() : ", such as of " + _spoilt.example;
    if (_spoilt.count > 1 && !example.empty() && !_spoilt.part.empty())
        example += " of " + _spoilt.part;
    context.warn(
        _spoilt.count == 1 ? _spoilt.part : std::string(),
        fmt::format("has {}, not taken over{}",
                    base::Counted(_spoilt.count, "value that is no number", "values that are no numbers"),
                    example));
}

std::optional<double> NumberInText(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == text.npos)
        return std::nullopt;
    const std::string_view inner = text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
    double number = 0.0;
    const auto read = std::from_chars(inner.data(), inner.data() + inner.size(), number);
    if (read.ec != std::errc() || read.ptr != inner.data() + inner.size() || !FitsDial(number))
        return std::nullopt;
    ReadingTally::addText(text);
    return number;
}

} // namespace dson
