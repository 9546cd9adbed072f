// Random texts for property tests. Conditions with || or && stand in parentheses of their own there:
// RC_ASSERT takes an expression apart, and then both sides are evaluated. SPDX-License-Identifier: MIT

#pragma once

#include <rapidcheck.h>

#include <string>

/// Texts of any length made of the given characters, which so meet often.
inline rc::Gen<std::string> TextOf(const std::string& characters)
{
    return rc::gen::container<std::string>(rc::gen::elementOf(characters));
}

inline rc::Gen<std::string> NonEmptyTextOf(const std::string& characters)
{
    return rc::gen::nonEmpty(TextOf(characters));
}

/// A code point as UTF-8.
inline std::string Utf8(std::uint32_t point)
{
    const auto tail = [point](int shift) { return static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80)
        return {static_cast<char>(point)};
    if (point < 0x800)
        return {static_cast<char>(0xC0 | point >> 6), tail(0)};
    if (point < 0x10000)
        return {static_cast<char>(0xE0 | point >> 12), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | point >> 18), tail(12), tail(6), tail(0)};
}

/// The numbers that stand for no letter ever, which the older toolkit does not take from UTF-8.
inline bool IsNonCharacter(std::uint32_t point)
{
    return (point >= 0xFDD0 && point <= 0xFDEF) || (point & 0xFFFE) == 0xFFFE;
}

/// Valid UTF-8 with letters of every length, the zero included. No byte order mark: at the start of a text
/// the toolkit takes it for none of the text's.
inline rc::Gen<std::string> Utf8Text()
{
    using Point = std::uint32_t;
    const auto points =
        rc::gen::oneOf(rc::gen::inRange<Point>(0, 0x80), rc::gen::inRange<Point>(0x80, 0x800),
                       rc::gen::inRange<Point>(0x800, 0xD800), rc::gen::inRange<Point>(0xE000, 0xFEFF),
                       rc::gen::inRange<Point>(0xFF00, 0x10000), rc::gen::inRange<Point>(0x10000, 0x110000));
    return rc::gen::map(rc::gen::container<std::vector<Point>>(points), [](const std::vector<Point>& all) {
        std::string text;
        for (const Point point : all)
            text += IsNonCharacter(point) ? "?" : Utf8(point);
        return text;
    });
}
