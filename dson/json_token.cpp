// Words and numbers of JSON texts that others wrote.
// SPDX-License-Identifier: MIT

#include "json_token.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>

#include <fmt/format.h>

namespace dson {

namespace {

using Kind = JsonToken::Kind;

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool StartsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

std::string_view TakeDigits(std::string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
    const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

/// The parts of a decimal number in any notation; without its sign.
struct Decimal {
    std::string_view whole, fraction, exponent; ///< the exponent with its sign, if it has one
    bool hasPoint = false;
};

std::optional<Decimal> TakeApart(std::string_view text)
{
    Decimal number;
    number.whole = TakeDigits(text);
    if (StartsWith(text, ".")) {
        number.hasPoint = true;
        text.remove_prefix(1);
        number.fraction = TakeDigits(text);
    }
    if (number.whole.empty() && number.fraction.empty())
        return std::nullopt;
    if (StartsWith(text, "e")) {
        text.remove_prefix(1);
        const std::string_view all = text;
        if (StartsWith(text, "+") || StartsWith(text, "-"))
            text.remove_prefix(1);
        if (TakeDigits(text).empty())
            return std::nullopt;
        number.exponent = all.substr(0, all.size() - text.size());
    }
    return text.empty() ? std::optional<Decimal>(number) : std::nullopt;
}

/// In strict notation; unchanged where it has been in it.
std::string Written(const Decimal& number)
{
    const std::size_t first = std::min(number.whole.find_first_not_of('0'), number.whole.size());
    std::string text(number.whole.substr(first));
    if (text.empty())
        text = '0';
    if (!number.fraction.empty())
        text.append(1, '.').append(number.fraction);
    if (!number.exponent.empty())
        text.append(1, 'e').append(number.exponent);
    return text;
}

enum class Size { Fits, Tiny, Huge };

/// The parser of numbers tells too small from too large by no sign; the place of the first digit does.
Size SizeOf(const Decimal& number, const std::string& written)
{
    double value = 0.0;
    if (std::from_chars(written.data(), written.data() + written.size(), value).ec == std::errc())
        return Size::Fits;
    std::int64_t power = 0;
    std::string_view exponent = number.exponent;
    if (StartsWith(exponent, "+"))
        exponent.remove_prefix(1);
    constexpr std::int64_t farAway = 1000000000000;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec ==
        std::errc::result_out_of_range)
        power = StartsWith(exponent, "-") ? -farAway : farAway;
    const std::size_t first = number.whole.find_first_not_of('0');
    if (first != std::string_view::npos)
        power += static_cast<std::int64_t>(number.whole.size() - first);
    else
        power -= static_cast<std::int64_t>(
            std::min(number.fraction.find_first_not_of('0'), number.fraction.size()));
    return power > 0 ? Size::Huge : Size::Tiny;
}

bool Holds64Bits(const std::string& whole, bool isNegative)
{
    const char *const begin = whole.data(), *const end = begin + whole.size();
    std::uint64_t value = 0;
    if (std::from_chars(begin, end, value).ec != std::errc())
        return false;
    return !isNegative || value <= std::uint64_t{1} << 63;
}

/// The digits of a whole number in decimal notation; all of a double's where 64 bits do not hold it. Nothing
/// where there are others than hexadecimal ones; "inf" where there are too many.
std::string DecimalDigits(std::string_view hexadecimal)
{
    const char *const begin = hexadecimal.data(), *const end = begin + hexadecimal.size();
    std::uint64_t whole = 0;
    const auto read = std::from_chars(begin, end, whole, 16);
    if (read.ptr != end || read.ec == std::errc::invalid_argument)
        return {};
    if (read.ec == std::errc())
        return std::to_string(whole);
    double rounded = std::numeric_limits<double>::infinity();
    std::from_chars(begin, end, rounded, std::chars_format::hex);
    return fmt::format("{:.0f}", rounded);
}

JsonToken ReadNumber(std::string_view word, const Decimal& number, bool isNegative)
{
    const std::string digits = Written(number);
    const std::string sign = isNegative ? "-" : "";
    const Size size = SizeOf(number, digits);
    if (size == Size::Huge)
        return {Kind::NotFinite, "null"};
    if (size == Size::Tiny)
        return {Kind::Plain, sign + "0.0"};
    const bool isWhole = !number.hasPoint && number.exponent.empty();
    if (isWhole && !Holds64Bits(digits, isNegative))
        return {Kind::Rounded, sign + digits + ".0"};
    std::string text = sign + digits;
    const bool isSame = std::equal(text.begin(), text.end(), word.begin(), word.end(),
                                   [](char a, char b) { return a == b || (a == 'e' && b == 'E'); });
    return {isSame ? Kind::Plain : Kind::Renamed, std::move(text)};
}

/// As the runtime libraries of several systems print them: nan, -nan(ind), inf, Infinity, 1.#IND, 1.#QNAN.
bool IsNotFinite(std::string_view lower)
{
    if (lower == "inf" || lower == "infinity" || lower == "nan" || StartsWith(lower, "nan("))
        return true;
    const std::string_view digits = TakeDigits(lower);
    if (digits.empty() || !StartsWith(lower, ".#"))
        return false;
    lower.remove_prefix(2);
    for (const std::string_view name : {"ind", "inf", "nan", "qnan", "snan", "j"})
        if (StartsWith(lower, name))
            return lower.find_first_not_of("0123456789", name.size()) == std::string_view::npos;
    return false;
}

} // namespace

JsonToken ReadToken(std::string_view word)
{
    if (word == "true" || word == "false" || word == "null")
        return {Kind::Plain, std::string(word)};
    std::string lower(word);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (lower == "true" || lower == "false" || lower == "null")
        return {Kind::Renamed, lower};
    if (lower == "none" || lower == "undefined")
        return {Kind::Renamed, "null"};
    std::string_view magnitude = lower;
    const bool isNegative = StartsWith(magnitude, "-");
    if (isNegative || StartsWith(magnitude, "+"))
        magnitude.remove_prefix(1);
    std::string digits;
    if (StartsWith(magnitude, "0x"))
        magnitude = digits = DecimalDigits(magnitude.substr(2));
    if (IsNotFinite(magnitude))
        return {Kind::NotFinite, "null"};
    if (const auto number = TakeApart(magnitude))
        return ReadNumber(word, *number, isNegative);
    return {};
}

bool IsTokenCharacter(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           std::string_view("+-.#()_").find(c) != std::string_view::npos;
}

} // namespace dson
