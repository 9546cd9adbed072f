// A slider's number as text.
// SPDX-License-Identifier: MIT

#include "slider_text.h"

#include "openhost/length_unit.h"

#include <QCoreApplication>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace openhost {

namespace {

/// What one of the number's own stands for, and how it is written.
struct Unit {
    const char* name;
    double size;
};

constexpr Unit lengths[] = {{"cm", 1.0},    {"mm", 0.1},  {"m", 100.0}, {"in", 2.54},
                            {"inch", 2.54}, {"\"", 2.54}, {"ft", 30.48}};
constexpr Unit angles[] = {{"\u00B0", 1.0}, {"deg", 1.0}, {"degrees", 1.0}};

Unit ShownLength()
{
    switch (ShownLengthUnit()) {
    case LengthUnit::Metre:
        return {"m", 100.0};
    case LengthUnit::Inch:
        return {"in", 2.54};
    case LengthUnit::Centimetre:
        break;
    }
    return {"cm", 1.0};
}

/// The unit that the style's numbers are shown in; its size is that of 1.
Unit ShownUnit(const NumberStyle& style)
{
    if (style.quantity == Quantity::Length)
        return ShownLength();
    if (style.quantity == Quantity::Angle)
        return {"\u00B0", 1.0};
    return style.asPercent ? Unit{"%", 0.01} : Unit{"", 1.0};
}

/// Enough of them to tell a hundredth of the range from the next, and a few more for comfort.
int Decimals(const NumberStyle& style)
{
    if (style.isWhole)
        return 0;
    const double range = style.range / ShownUnit(style).size;
    if (!(range > 0.0))
        return style.asPercent ? 1 : 2;
    // Single precision's 0.01 lies a little below the power of ten.
    constexpr double slack = 1e-6;
    const int digits = static_cast<int>(std::floor(std::log10(range) + slack));
    const int decimals = std::clamp(digits <= 0 ? 2 - digits : digits == 1 ? 2 : 1, 1, 6);
    return style.quantity == Quantity::Length && ShownLengthUnit() == LengthUnit::Metre
               ? std::max(3, decimals)
               : decimals;
}

template <std::size_t count>
const Unit* Find(const Unit (&units)[count], const QString& name)
{
    for (const Unit& unit : units)
        if (name.compare(QString::fromUtf8(unit.name), Qt::CaseInsensitive) == 0)
            return &unit;
    return nullptr;
}

/// What 1 of the unit is; 0 for a unit that the style has no use for.
double SizeOf(const QString& unit, const NumberStyle& style)
{
    if (unit.isEmpty())
        return ShownUnit(style).size;
    if (style.quantity == Quantity::Plain)
        return unit == QLatin1String("%") ? 0.01 : 0.0;
    const Unit* const found = style.quantity == Quantity::Length ? Find(lengths, unit) : Find(angles, unit);
    return found ? found->size : 0.0;
}

QString Tr(const char* text)
{
    return QCoreApplication::translate("openhost", text);
}

QString WrongUnit(const QString& unit, const NumberStyle& style)
{
    const QString what = style.quantity == Quantity::Length  ? Tr("Lengths are in cm, mm, m, in or ft")
                         : style.quantity == Quantity::Angle ? Tr("Angles are in degrees")
                                                             : Tr("This dial is a plain number or has %");
    return Tr("%1, and not in \u201C%2\u201D.").arg(what, unit);
}

} // namespace

QString FormatNumber(double number, const NumberStyle& style)
{
    const int decimals = Decimals(style);
    const Unit unit = ShownUnit(style);
    const double shown = number / unit.size;
    // A fraction of the last place below zero would be written "-0.0".
    const double last = std::pow(10.0, -decimals);
    const bool isZero = std::abs(shown) < 0.5 * last;
    QString text = QString::number(isZero ? 0.0 : shown, 'f', decimals);
    if (style.quantity == Quantity::Length)
        text += QLatin1Char(' ');
    return text + QString::fromUtf8(unit.name);
}

QString ParseNumber(const QString& text, const NumberStyle& style, double& number)
{
    static const QRegularExpression form(
        QStringLiteral("^([+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:e[+-]?\\d+)?)\\s*(\\D*)$"),
        QRegularExpression::CaseInsensitiveOption);
    QString plain = text.trimmed();
    plain.replace(QChar(0x2212), QLatin1Char('-')); // the minus sign of text
    if (plain.isEmpty())
        return Tr("There is no number.");
    // In some languages it ends the whole numbers, in others it stands between thousands.
    if (plain.contains(QLatin1Char(',')))
        return Tr("\u201C%1\u201D has a comma: write a point, such as 0.5.").arg(text.trimmed());
    const QRegularExpressionMatch match = form.match(plain);
    if (!match.hasMatch())
        return Tr("\u201C%1\u201D is no number.").arg(text.trimmed());
    bool isNumber = false;
    const double typed = QLocale::c().toDouble(match.captured(1), &isNumber);
    if (!isNumber || !std::isfinite(typed))
        return Tr("\u201C%1\u201D is too large.").arg(text.trimmed());
    const QString unit = match.captured(2).trimmed();
    const double size = SizeOf(unit, style);
    if (size == 0.0)
        return WrongUnit(unit, style);
    number = typed * size;
    return QString();
}

} // namespace openhost
