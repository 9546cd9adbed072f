// How numbers look in a file.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace dson {

enum class NumberStyle {
    ListEntry, ///< of positions, deltas and weights: single precision, 3 as `3.0`
    Setting,   ///< of definitions: single precision, 3 as `3`
    Exact      ///< of scenes and formulas: double precision, 3 as `3`
};

/// Appends a number as the shortest text that reads back to the same one in the style's precision. Whole
/// settings are spelled out below 10^9. Minus zero is `-0.0` in every style, as `-0` would read back without
/// its sign.
/// @throws base::FormatError  it is not finite in that precision
void AppendNumber(std::string& text, double value, NumberStyle style);

} // namespace dson
