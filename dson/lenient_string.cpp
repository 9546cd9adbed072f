// Strings of JSON texts that others wrote.
// SPDX-License-Identifier: MIT

#include "lenient_string.h"

#include "utf8.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include <fmt/format.h>

namespace dson {

namespace {

/// The sixteen bits of an escape "\uXXXX" at that place.
std::optional<std::uint32_t> UnitAt(std::string_view text, std::size_t at)
{
    if (text.substr(at, 2) != "\\u" || text.size() < at + 6)
        return std::nullopt;
    const char *const begin = text.data() + at + 2, *const end = begin + 4;
    std::uint32_t unit = 0;
    if (const auto read = std::from_chars(begin, end, unit, 16); read.ec != std::errc() || read.ptr != end)
        return std::nullopt;
    return unit;
}

bool IsHigh(std::uint32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLow(std::uint32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

/// Copies what begins with a backslash.
void TakeEscape(std::string_view text, std::size_t& at, std::string& result, Oddities& oddities)
{
    std::size_t length = 2;
    if (const auto unit = UnitAt(text, at)) {
        length = 6;
        const auto next = UnitAt(text, at + 6);
        if (IsHigh(*unit) && next && IsLow(*next)) {
            length = 12;
        } else if (IsHigh(*unit) || IsLow(*unit)) {
            oddities.add(Oddity::HalfCharacter, at);
            result += "\xEF\xBF\xBD";
            at += length;
            return;
        }
    } else if (at + 1 >= text.size() ||
               std::string_view("\"\\/bfnrt").find(text[at + 1]) == std::string_view::npos) {
        // As in a path of a system that has them between its folders.
        oddities.add(Oddity::Backslash, at);
        result += "\\\\";
        ++at;
        return;
    }
    result += text.substr(at, length);
    at += length;
}

/// What Windows-1252 has between 0x80 and 0x9F; the five that it leaves open are as in Latin-1.
constexpr std::uint16_t windowsCharacters[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

void TakeCharacter(std::string_view text, std::size_t& at, std::string& result, Oddities& oddities)
{
    if (const std::size_t length = Utf8Length(text, at)) {
        result += text.substr(at, length);
        at += length;
        return;
    }
    oddities.add(Oddity::ForeignByte, at);
    const auto byte = static_cast<unsigned char>(text[at]);
    AppendUtf8(result, byte < 0xA0 ? windowsCharacters[byte - 0x80] : byte);
    ++at;
}

} // namespace

bool MendString(std::string_view text, std::size_t& at, std::string& result, Oddities& oddities)
{
    const char quote = text[at++];
    result += '"';
    while (at < text.size() && text[at] != quote) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (quote == '\'' && text.substr(at, 2) == "\\'") {
            result += quote;
            at += 2;
        } else if (byte == '\\') {
            TakeEscape(text, at, result, oddities);
        } else if (byte == '"') {
            result += "\\\"";
            ++at;
        } else if (byte < 0x20) {
            oddities.add(Oddity::ControlCharacter, at);
            result += fmt::format("\\u{:04x}", byte);
            ++at;
        } else if (byte < 0x80) {
            result += text[at++];
        } else {
            TakeCharacter(text, at, result, oddities);
        }
    }
    if (at >= text.size())
        return false;
    result += '"';
    ++at;
    return true;
}

} // namespace dson
