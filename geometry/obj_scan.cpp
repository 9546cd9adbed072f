// The slower ways through OBJ records: continued lines, unusual numbers, names.
// SPDX-License-Identifier: MIT

#include "obj_scan.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace geometry {

bool ObjScanner::atContinuation(const char*& behind) const
{
    const char* next = _at + 1;
    if (next != _end && *next == '\r')
        ++next;
    if (next == _end || *next != '\n')
        return false;
    behind = next + 1;
    return true;
}

std::string_view ObjScanner::tokenFrom(const char* start) const
{
    const char* last = start;
    while (last != _end && static_cast<unsigned char>(*last) > ' ')
        ++last;
    // A backslash that continues the line is no part of the token.
    if (last != start && last[-1] == '\\' && last != _end && (*last == '\n' || *last == '\r'))
        --last;
    return {start, static_cast<std::size_t>(last - start)};
}

std::string_view ObjScanner::token() const
{
    return tokenFrom(_at);
}

std::string_view ObjScanner::takeToken()
{
    const std::string_view result = token();
    _at += result.size();
    return result;
}

void ObjScanner::skipLine()
{
    const void* newline = std::memchr(_at, '\n', static_cast<std::size_t>(_end - _at));
    _at = newline ? static_cast<const char*>(newline) + 1 : _end;
}

void ObjScanner::skipRecord()
{
    while (_at != _end) {
        const char* const start = _at;
        skipLine();
        const char* last = _at;
        if (last == start || last[-1] != '\n')
            return;
        --last;
        if (last != start && last[-1] == '\r')
            --last;
        if (last == start || last[-1] != '\\')
            return;
    }
}

std::string_view ObjScanner::takeText()
{
    if (!nextToken())
        return {};
    const char* const start = _at;
    const void* newline = std::memchr(_at, '\n', static_cast<std::size_t>(_end - _at));
    _at = newline ? static_cast<const char*>(newline) : _end;
    const char* last = _at;
    while (last != start && static_cast<unsigned char>(last[-1]) <= ' ')
        --last;
    return {start, static_cast<std::size_t>(last - start)};
}

double ObjScanner::slowNumber(const char* start)
{
    _at = start;
    // A comment may follow at once; names alone may hold its sign.
    const std::string_view text = token().substr(0, token().find('#'));
    _at += text.size();
    const char* first = text.data();
    const char* const last = first + text.size();
    if (first != last && *first == '+' && first + 1 != last && first[1] != '-')
        ++first;
    double value = 0.0;
    const std::from_chars_result result = std::from_chars(first, last, value);
    const bool isTiny = text.find("e-") != text.npos || text.find("E-") != text.npos;
    if (result.ec == std::errc::result_out_of_range && isTiny && result.ptr == last)
        return 0.0;
    if (result.ec != std::errc() || result.ptr != last || !std::isfinite(value))
        throw ObjFault{start, "bad number \"" + std::string(text) + "\""};
    return value;
}

} // namespace geometry
