// Rows of numbers in JSON.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_view.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace dson {

/// Numbers of a row, at most as many as there is room for; returns how many the row has.
inline std::size_t ReadRow(const Element& row, double* numbers, std::size_t room)
{
    std::size_t count = 0;
    if (!row.is_array())
        return 0;
    for (const Element item : Items(row)) {
        if (count < room)
            numbers[count] = AsNumber(item).value_or(NAN);
        ++count;
    }
    return count;
}

/// Reads a row of just so many finite numbers.
/// @return false when it is none
inline bool IsRow(const Element& row, double* numbers, std::size_t count)
{
    return ReadRow(row, numbers, count) == count &&
           std::all_of(numbers, numbers + count, [](double number) { return std::isfinite(number); });
}

/// Returns how many there were.
inline std::size_t TakeNoNumbersAsZero(double* numbers, std::size_t count)
{
    std::size_t taken = 0;
    for (double* number = numbers; number != numbers + count; ++number)
        if (!std::isfinite(*number)) {
            *number = 0.0;
            ++taken;
        }
    return taken;
}

/// Above every index that 32 bits hold.
inline constexpr double unlimited = 4294967295.0;

inline bool IsIndex(double number, double limit)
{
    return number >= 0.0 && number < limit && number == std::floor(number);
}

} // namespace dson
