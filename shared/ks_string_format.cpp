// Numbers, sizes, durations and dates as texts, and random names.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <charconv>
#include <random>
#include <sstream>
#include <system_error>

#include <QDateTime>

#include <time.h>

#include <fmt/format.h>

namespace kst {
namespace str {

namespace {

const std::locale& ThousandsLocale()
{
    static const std::locale locale(std::locale::classic(), new SeparateThousands);
    return locale;
}

template <class Number>
bool ParseNumber(std::string_view text, Number* number)
{
    // Leaves the number alone when it does not fit, which is not told apart from a number that does.
    return std::from_chars(text.data(), text.data() + text.size(), *number).ec != std::errc::invalid_argument;
}

/// The remainder of the division by 60 as two digits.
QString TwoDigitsOf60(std::uint64_t number)
{
    return QString(QLatin1String("%1")).arg(static_cast<int>(number % 60), 2, 10, QLatin1Char('0'));
}

} // namespace

char SeparateThousands::do_thousands_sep() const
{
    return ',';
}

std::string SeparateThousands::do_grouping() const
{
    return "\3";
}

bool ParseInt(std::string_view text, std::int64_t* number)
{
    return ParseNumber(text, number);
}

bool ParseInt(std::string_view text, int* number)
{
    return ParseNumber(text, number);
}

std::string FormatNumberWithThousands(std::uint64_t number)
{
    std::ostringstream stream;
    stream.imbue(ThousandsLocale());
    stream << number;
    return stream.str();
}

QString FormatNumberWithThousandsQ(std::uint64_t number)
{
    return ToQ(FormatNumberWithThousands(number));
}

std::string Pluralize(std::uint64_t number, std::string_view singular, std::string_view plural)
{
    return number == 1 ? std::string(singular)
                       : FindReplaceReturn(plural, "%d", FormatNumberWithThousands(number));
}

QString PluralizeQ(std::uint64_t number, const QString& singular, const QString& plural)
{
    if (number == 1)
        return singular;
    QString text = plural;
    text.replace(QLatin1String("%d"), FormatNumberWithThousandsQ(number));
    return text.contains(QLatin1String("%L1")) ? text.arg(static_cast<qulonglong>(number)) : text;
}

std::string FormatBytes(std::uint64_t bytes)
{
    struct Unit {
        int thresholdBits; ///< the unit serves sizes from 2 to the power of this
        const char* text;  ///< with a blank of its own in front
    };
    static const Unit units[] = {{60, " EB"}, {50, " PB"}, {40, " TB"},
                                 {30, " GB"}, {20, " MB"}, {10, " KB"}};
    for (const Unit& unit : units)
        if (bytes >> unit.thresholdBits != 0)
            return fmt::format("{:03.2f} {}", static_cast<double>(bytes >> (unit.thresholdBits - 10)) / 1024,
                               unit.text);
    return fmt::format("{}{}", bytes, " bytes");
}

std::string MakeRandomString(std::size_t length)
{
    static const std::string_view alphabet = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    static std::mt19937 generator(std::random_device("/dev/urandom")());
    static std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    std::string result;
    for (std::size_t i = 0; i < length; ++i)
        result += alphabet[pick(generator)];
    return result;
}

std::string FormatSecondsElapsed(std::uint64_t seconds)
{
    const std::uint64_t hours = seconds / 3600, minutes = seconds / 60 % 60, rest = seconds % 60;
    if (hours > 0)
        return fmt::format("{}:{:02}:{:02} hours", hours, minutes, rest);
    if (minutes > 0)
        return fmt::format("{}:{:02} minutes", minutes, rest);
    return seconds == 1 ? "1 second" : fmt::format("{} seconds", seconds);
}

QString FormatSecondsElapsedQ(std::int64_t seconds)
{
    return ToQ(FormatMinutesElapsed(seconds));
}

std::string FormatMinutesElapsed(std::int64_t seconds)
{
    // Half a minute is added for rounding; to the whole number only where that cannot overflow.
    const std::int64_t rounded = seconds < 0 ? (seconds + 30) / 60 : seconds / 60 + (seconds % 60 + 30) / 60;
    const std::int64_t hours = rounded / 60, minutes = rounded % 60;
    if (seconds < -30 || seconds >= 3570)
        return fmt::format("{}:{:02} hours", hours, minutes);
    if (minutes == 0)
        return "less than a minute";
    return minutes == 1 ? "about a minute" : fmt::format("{} minutes", minutes);
}

std::string FormatMilliSecondsElapsed(std::uint64_t milliseconds)
{
    return ToStd(FormatMilliSecondsElapsedQ(milliseconds));
}

QString FormatMilliSecondsElapsedQ(std::uint64_t milliseconds)
{
    const std::uint64_t seconds = milliseconds / 1000, minutes = seconds / 60, hours = minutes / 60;
    if (hours > 0)
        return QString(QLatin1String("%1:%2:%3 hours"))
            .arg(static_cast<qulonglong>(hours))
            .arg(TwoDigitsOf60(minutes), TwoDigitsOf60(seconds));
    if (minutes > 0)
        return QString(QLatin1String("%1:%2 minutes"))
            .arg(static_cast<qulonglong>(minutes))
            .arg(TwoDigitsOf60(seconds));
    return QString(QLatin1String("%1.%2 seconds"))
        .arg(static_cast<qulonglong>(seconds))
        .arg(static_cast<int>(milliseconds % 1000), 3, 10, QLatin1Char('0'));
}

std::string FormatTimestamp(std::time_t time)
{
    struct tm parts;
    if (!localtime_r(&time, &parts))
        return std::string();
    char text[256];
    return std::string(text, std::strftime(text, sizeof text, "%A %c", &parts));
}

std::string FormatDateTime(const QDateTime& time)
{
    const QDate day = time.date();
    return fmt::format("{}-{:02}-{:02} {:02}:{:02}", day.year(), day.month(), day.day(), time.time().hour(),
                       time.time().minute());
}

QString FormatDateTimeQ(const QDateTime& time)
{
    return ToQ(FormatDateTime(time));
}

} // namespace str
} // namespace kst
