// Leaving out of a text what is read later.
// SPDX-License-Identifier: MIT

#include "delta_skip.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace dson {

namespace {

constexpr std::size_t none = std::string_view::npos;
/// Several times what four numbers need.
constexpr std::size_t longestRow = 512;

/// A place in a text, and what may come next there.
class Cursor {
public:
    Cursor(std::string_view text, std::size_t at) : _text(text), _at(at) {}

    std::size_t at() const { return _at; }

    /// Steps over white space and, if it is there, the word behind it.
    bool take(std::string_view word)
    {
        _at = std::min(_text.find_first_not_of(" \t\r\n", _at), _text.size());
        if (_text.compare(_at, word.size(), word) != 0)
            return false;
        _at += word.size();
        return true;
    }
    /// Steps behind the closing bracket of a list without lists in it. Only so far: where brackets are never
    /// closed, each would be looked for to the end of the text.
    bool takeRest()
    {
        const char* const begin = _text.data() + _at;
        const void* const found = std::memchr(begin, ']', std::min(longestRow, _text.size() - _at));
        if (!found)
            return false;
        const auto size = static_cast<std::size_t>(static_cast<const char*>(found) - begin);
        _at += size + 1;
        return !std::memchr(begin, '[', size);
    }
    void skipNumber() { _at = std::min(_text.find_first_not_of("0123456789", _at), _text.size()); }

private:
    std::string_view _text;
    std::size_t _at;
};

/// The list behind a name: its opening bracket, or none where something else is there.
std::size_t ListBehind(std::string_view text, std::size_t name)
{
    Cursor cursor(text, name);
    if (!cursor.take(":"))
        return none;
    if (cursor.take("{")) {
        if (cursor.take("\"count\"")) {
            if (!cursor.take(":") || !cursor.take(""))
                return none;
            cursor.skipNumber();
            if (!cursor.take(","))
                return none;
        }
        if (!cursor.take("\"values\"") || !cursor.take(":"))
            return none;
    }
    return cursor.take("[") ? cursor.at() - 1 : none;
}

/// The closing bracket of a list of rows; none where it is no such list.
std::size_t EndOfRows(std::string_view text, std::size_t list)
{
    Cursor cursor(text, list + 1);
    do {
        if (!cursor.take("[") || !cursor.takeRest())
            return none;
    } while (cursor.take(","));
    return cursor.take("]") ? cursor.at() - 1 : none;
}

/// Brackets within strings or comments would have been taken for those of rows.
bool HoldsRowsAlone(std::string_view rows)
{
    return !std::memchr(rows.data(), '"', rows.size()) && !std::memchr(rows.data(), '/', rows.size());
}

} // namespace

bool SkipDeltas(const std::string& text, std::string& shorter)
{
    constexpr std::string_view name = "\"deltas\"";
    std::size_t copied = 0, at = 0;
    // Looks for quotes first, which lists of numbers do not have.
    while ((at = text.find(name, at)) != std::string::npos) {
        at += name.size();
        const std::size_t list = ListBehind(text, at);
        const std::size_t end = list == none ? none : EndOfRows(text, list);
        if (end == none || !HoldsRowsAlone(std::string_view(text).substr(list, end - list)))
            continue;
        if (copied == 0)
            shorter.clear();
        shorter.append(text, copied, list + 1 - copied);
        copied = at = end;
    }
    if (copied == 0)
        return false;
    shorter.append(text, copied, std::string::npos);
    return true;
}

} // namespace dson
