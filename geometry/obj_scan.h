// Reading the tokens of OBJ records.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace geometry {

/// What is wrong with a record, and where; the reader of the whole text turns it into a FormatError.
struct ObjFault {
    const char* where = nullptr; ///< any byte of the record's line
    std::string what;
};

/// Walks over records. Blanks are spaces, tabs, carriage returns and line ends behind a backslash.
class ObjScanner {
public:
    ObjScanner(const char* begin, const char* end) : _at(begin), _end(end) {}

    bool atEnd() const { return _at == _end; }
    const char* at() const { return _at; }

    /// Skips blanks. False at the end of the record: a line end, a comment or the end of the text.
    bool nextToken();
    /// Goes behind the record's line end.
    void skipRecord();
    /// Goes behind the line end without minding backslashes: a comment ends where its line does.
    void skipLine();

    /// The token here, without going on.
    std::string_view token() const;
    std::string_view takeToken();
    /// The rest of the record without blanks at its ends.
    std::string_view takeText();
    /// @throws ObjFault  not a finite number
    double takeNumber();
    /// One of the integers of a corner such as 3/-4/5; the caller looks for the slashes.
    /// @throws ObjFault  not an integer, zero, or beyond 31 bits
    std::int32_t takeIndex();
    bool takeSlash();
    /// Whether an index stands here, and not the next slash or the end of the token.
    bool atIndex() const { return !atTokenEnd() && *_at != '/'; }
    /// Nothing but a blank or a comment may follow here.
    /// @throws ObjFault  something else does
    void endToken(const char* start) const;

private:
    bool atContinuation(const char*& behind) const;
    bool atTokenEnd() const;
    std::string_view tokenFrom(const char* start) const;
    double slowNumber(const char* start);

    const char* _at;
    const char* _end;
};

inline bool ObjScanner::atTokenEnd() const
{
    return _at == _end || static_cast<unsigned char>(*_at) <= ' ' || *_at == '\\' || *_at == '#';
}

inline bool ObjScanner::nextToken()
{
    while (_at != _end) {
        const char c = *_at;
        const char* behind = nullptr;
        if (c == ' ' || c == '\t' || c == '\r')
            ++_at;
        else if (c == '\\' && atContinuation(behind))
            _at = behind;
        else
            return c != '\n' && c != '#';
    }
    return false;
}

inline bool ObjScanner::takeSlash()
{
    if (_at == _end || *_at != '/')
        return false;
    ++_at;
    return true;
}

inline double ObjScanner::takeNumber()
{
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const char* const start = _at;
    const bool negative = _at != _end && *_at == '-';
    if (negative)
        ++_at;
    std::uint64_t mantissa = 0;
    const char* const digits = _at;
    while (_at != _end && static_cast<unsigned>(*_at - '0') < 10)
        mantissa = mantissa * 10 + static_cast<unsigned>(*_at++ - '0');
    std::ptrdiff_t count = _at - digits, decimals = 0;
    if (_at != _end && *_at == '.') {
        const char* const point = _at++;
        while (_at != _end && static_cast<unsigned>(*_at - '0') < 10)
            mantissa = mantissa * 10 + static_cast<unsigned>(*_at++ - '0');
        decimals = _at - point - 1;
        count += decimals;
    }
    // Up to 2^53 and 10^22 both are exact doubles, so one division rounds once and right (Clinger, 1990).
    if (count == 0 || count > 19 || mantissa > (std::uint64_t{1} << 53) || !atTokenEnd())
        return slowNumber(start);
    const double value = static_cast<double>(mantissa) / powers[decimals];
    return negative ? -value : value;
}

inline std::int32_t ObjScanner::takeIndex()
{
    const char* const start = _at;
    const bool negative = _at != _end && *_at == '-';
    if (negative)
        ++_at;
    const char* const digits = _at;
    std::uint64_t value = 0;
    while (_at != _end && static_cast<unsigned>(*_at - '0') < 10 && value <= INT32_MAX)
        value = value * 10 + static_cast<unsigned>(*_at++ - '0');
    if (_at == digits)
        throw ObjFault{start, "bad index \"" + std::string(tokenFrom(start)) + "\""};
    if (value > INT32_MAX)
        throw ObjFault{start, "index \"" + std::string(tokenFrom(start)) + "\" is too large"};
    if (value == 0)
        throw ObjFault{start, "index 0 where indices start at 1"};
    return negative ? -static_cast<std::int32_t>(value) : static_cast<std::int32_t>(value);
}

inline void ObjScanner::endToken(const char* start) const
{
    if (!atTokenEnd())
        throw ObjFault{start, "bad index \"" + std::string(tokenFrom(start)) + "\""};
}

} // namespace geometry
