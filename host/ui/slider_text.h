// A slider's number as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// How a number is written.
struct NumberStyle {
    bool isWhole = false;
    bool asPercent = false; ///< 1 is written "100.0%"
    double range = 1.0;     ///< between the limits; the smaller, the more decimals
};

/// With a decimal point in every language, as the files have it.
QString FormatNumber(double number, const NumberStyle& style);

/// What a person typed: decimal point or comma, with or without "%". A plain number counts as percent where
/// the style says so.
/// @return false for what is no finite number
bool ParseNumber(const QString& text, const NumberStyle& style, double& number);

} // namespace openhost
