// A slider's number as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace openhost {

/// What a number counts: nothing in particular, centimetres, or degrees.
enum class Quantity { Plain, Length, Angle };

/// How a number is written.
struct NumberStyle {
    bool isWhole = false;
    bool asPercent = false; ///< 1 is written "100.0%"
    double range = 1.0;     ///< between the limits; the smaller, the more decimals
    Quantity quantity = Quantity::Plain;
};

/// With a decimal point in every language, as the files have it, and with the unit. Lengths are in the unit
/// that they are shown in.
QString FormatNumber(double number, const NumberStyle& style);

/// What a person typed, with a decimal point, with or without a unit that suits. A plain number counts as
/// percent, and in the unit that is shown, where the style says so.
/// @return why it cannot be meant, in a sentence; empty where the number is set
QString ParseNumber(const QString& text, const NumberStyle& style, double& number);

} // namespace openhost
