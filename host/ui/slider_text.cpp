// A slider's number as text.
// SPDX-License-Identifier: MIT

#include "slider_text.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace openhost {

namespace {

/// Enough of them to tell a hundredth of the range from the next, and a few more for comfort.
int Decimals(const NumberStyle& style)
{
    if (style.isWhole)
        return 0;
    const double range = style.asPercent ? style.range * 100.0 : style.range;
    if (!(range > 0.0))
        return style.asPercent ? 1 : 2;
    // Single precision's 0.01 lies a little below the power of ten.
    constexpr double slack = 1e-6;
    const int digits = static_cast<int>(std::floor(std::log10(range) + slack));
    return std::clamp(digits <= 0 ? 2 - digits : digits == 1 ? 2 : 1, 1, 6);
}

} // namespace

QString FormatNumber(double number, const NumberStyle& style)
{
    const int decimals = Decimals(style);
    const double shown = style.asPercent ? number * 100.0 : number;
    // A fraction of the last place below zero would be written "-0.0".
    const double unit = std::pow(10.0, -decimals);
    const bool isZero = std::abs(shown) < 0.5 * unit;
    QString text = QString::number(isZero ? 0.0 : shown, 'f', decimals);
    if (style.asPercent)
        text += QLatin1Char('%');
    return text;
}

bool ParseNumber(const QString& text, const NumberStyle& style, double& number)
{
    QString plain = text.trimmed();
    const bool hasSign = plain.endsWith(QLatin1Char('%'));
    if (hasSign)
        plain.chop(1);
    plain.replace(QLatin1Char(','), QLatin1Char('.'));
    bool isNumber = false;
    const double typed = QLocale::c().toDouble(plain.trimmed(), &isNumber);
    if (!isNumber || !std::isfinite(typed))
        return false;
    number = hasSign || style.asPercent ? typed / 100.0 : typed;
    return true;
}

} // namespace openhost
