// What reading a document meets all over it.
// SPDX-License-Identifier: MIT

#include "reading_tally.h"

#include "parts.h"

#include <charconv>

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
    if (count++ == 0)
        example = what;
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
    if (youngest && youngest->_noLists.find(member) == youngest->_noLists.end())
        youngest->_noLists.emplace(member);
}

void ReadingTally::tell(ParseContext& context) const
{
    if (_texts.count > 0)
        context.warn({}, fmt::format("has {} as texts, read as what they say, such as \"{}\"",
                                     Counted(_texts.count, "number", "numbers"), _texts.example));
    if (_spoilt.count > 0)
        context.warn(
            {}, fmt::format("has {}, not taken over{}",
                            Counted(_spoilt.count, "value that is no number", "values that are no numbers"),
                            _spoilt.example.empty() ? std::string() : ", such as of " + _spoilt.example));
    if (!_noLists.empty())
        context.warn(
            {}, fmt::format("has members that should be lists and are none: {}", fmt::join(_noLists, ", ")));
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
