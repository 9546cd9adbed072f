// How numbers look in a file.
// SPDX-License-Identifier: MIT

#include "number_text.h"

#include "base/errors.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include <nlohmann/json.hpp>

namespace dson {

namespace {

bool IsSpelledOut(double value)
{
    const bool isMinusZero = value == 0.0 && std::signbit(value);
    return value == std::floor(value) && std::abs(value) < 1e9 && !isMinusZero;
}

/// Where two shortest texts are equally near, std::to_chars takes the one that ends in an even digit, and
/// files hold the other: saved again unchanged, they are to stay the same to the byte.
char* PrintSingle(char* first, char* last, float value)
{
    return nlohmann::detail::to_chars(first, last, value);
}

} // namespace

void AppendNumber(std::string& text, double value, NumberStyle style)
{
    const auto single = static_cast<float>(value);
    if (!std::isfinite(style == NumberStyle::Exact ? value : double{single}))
        throw base::FormatError("a value of a channel or formula is not a finite number");
    char digits[64];
    char* end = digits;
    if (style != NumberStyle::ListEntry && IsSpelledOut(value))
        end = std::to_chars(digits, std::end(digits), static_cast<std::int64_t>(value)).ptr;
    else if (style == NumberStyle::Exact && value != 0.0)
        end = std::to_chars(digits, std::end(digits), value).ptr;
    else
        end = PrintSingle(digits, std::end(digits), single);
    text.append(digits, end);
}

} // namespace dson
