// Numbers, sizes, durations and dates as texts.
// SPDX-License-Identifier: MIT

#include "ks_string.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include <array>
#include <cctype>
#include <clocale>
#include <limits>
#include <set>
#include <sstream>

using namespace kst::str;

namespace {

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

/// What ParseInt leaves in a variable that held 5.
template <class Number>
Number ParsedInto5(std::string_view text)
{
    Number number = 5;
    EXPECT_TRUE(ParseInt(text, &number)) << text;
    return number;
}

template <class Number>
bool HasNone(std::string_view text)
{
    Number number = 5;
    const bool none = !ParseInt(text, &number);
    EXPECT_EQ(number, 5) << text;
    return none;
}

/// German, where a point groups the digits, until the end of the scope.
class GermanLocale {
public:
    GermanLocale() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    ~GermanLocale() { QLocale::setDefault(_before); }

private:
    const QLocale _before;
};

/// The C library's dates as in English, until the end of the scope.
class ClassicTimeLocale {
public:
    ClassicTimeLocale() { std::setlocale(LC_TIME, "C"); }
    ~ClassicTimeLocale() { std::setlocale(LC_TIME, _before.c_str()); }

private:
    const std::string _before = std::setlocale(LC_TIME, nullptr);
};

TEST(ParseInt, reads_the_digits_at_the_start_and_ignores_the_rest)
{
    EXPECT_EQ(ParsedInto5<int>("007x"), 7);
    EXPECT_EQ(ParsedInto5<int>("-12 13"), -12);
    EXPECT_EQ(ParsedInto5<std::int64_t>("0"), 0);
    EXPECT_EQ(ParsedInto5<std::int64_t>("0x10"), 0) << "there is no base but ten";
}

TEST(ParseInt, finds_no_number_without_a_digit_at_the_start)
{
    for (const char* const text : {"", "-", "+1", " 1", "x1", "--1", "- 1"}) {
        EXPECT_TRUE(HasNone<int>(text)) << text;
        EXPECT_TRUE(HasNone<std::int64_t>(text)) << text;
    }
}

TEST(ParseInt, reads_the_limits)
{
    EXPECT_EQ(ParsedInto5<int>("2147483647"), std::numeric_limits<int>::max());
    EXPECT_EQ(ParsedInto5<int>("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(ParsedInto5<std::int64_t>("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(ParsedInto5<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(ParsedInto5<int>("00000000000000000000000000012"), 12);
}

TEST(ParseInt, says_yes_to_a_number_that_does_not_fit_but_leaves_the_output)
{
    EXPECT_EQ(ParsedInto5<std::int64_t>("1234567890123456789012345"), 5);
    EXPECT_EQ(ParsedInto5<std::int64_t>("9223372036854775808"), 5);
    EXPECT_EQ(ParsedInto5<std::int64_t>("-9223372036854775809"), 5);
    EXPECT_EQ(ParsedInto5<int>("2147483648"), 5);
    EXPECT_EQ(ParsedInto5<int>("-2147483649"), 5);
}

TEST(Thousands, are_parted_by_commas)
{
    EXPECT_EQ(FormatNumberWithThousands(0), "0");
    EXPECT_EQ(FormatNumberWithThousands(999), "999");
    EXPECT_EQ(FormatNumberWithThousands(1000), "1,000");
    EXPECT_EQ(FormatNumberWithThousands(1234567), "1,234,567");
    EXPECT_EQ(FormatNumberWithThousands(largest), "18,446,744,073,709,551,615");
    EXPECT_EQ(FormatNumberWithThousandsQ(1234567), ToQ("1,234,567"));
}

TEST(Thousands, serve_any_stream)
{
    std::ostringstream stream;
    stream.imbue(std::locale(std::locale::classic(), new SeparateThousands));
    stream << -1234567;
    EXPECT_EQ(stream.str(), "-1,234,567");
}

TEST(Pluralize, takes_the_singular_for_one_alone)
{
    EXPECT_EQ(Pluralize(1, "1 morph", "%d morphs"), "1 morph");
    EXPECT_EQ(Pluralize(1, "%d", "many"), "%d");
    EXPECT_EQ(Pluralize(0, "1 morph", "%d morphs"), "0 morphs");
    EXPECT_EQ(Pluralize(1024, "1 morph", "%d morphs"), "1,024 morphs");
    EXPECT_EQ(Pluralize(1234, "1 morph", "%d morphs"), "1,234 morphs");
    EXPECT_EQ(Pluralize(2, "", "%d of %d"), "2 of 2");
}

TEST(Pluralize, does_the_same_with_the_toolkits_texts)
{
    EXPECT_EQ(PluralizeQ(1, ToQ("1 morph"), ToQ("%d morphs")), ToQ("1 morph"));
    EXPECT_EQ(PluralizeQ(1024, ToQ("1 morph"), ToQ("%d morphs")), ToQ("1,024 morphs"));
    EXPECT_EQ(PluralizeQ(2, ToQ("1 morph"), ToQ("many %1")), ToQ("many %1"));
}

TEST(Pluralize, writes_the_toolkits_placeholder_in_the_users_locale)
{
    const GermanLocale german;
    EXPECT_EQ(PluralizeQ(1234567, QString(), ToQ("%L1 Morphs")), ToQ("1.234.567 Morphs"));
    EXPECT_EQ(PluralizeQ(1234567, QString(), ToQ("%d Morphs")), ToQ("1,234,567 Morphs"));
}

TEST(Bytes, are_counted_below_1024)
{
    EXPECT_EQ(FormatBytes(0), "0 bytes");
    EXPECT_EQ(FormatBytes(1), "1 bytes");
    EXPECT_EQ(FormatBytes(1023), "1023 bytes");
}

TEST(Bytes, are_shown_in_the_largest_unit_that_they_reach)
{
    EXPECT_EQ(FormatBytes(1024), "1.00  KB");
    EXPECT_EQ(FormatBytes(1536), "1.50  KB");
    EXPECT_EQ(FormatBytes(1048575), "1024.00  KB");
    EXPECT_EQ(FormatBytes(1048576), "1.00  MB");
    const std::array<const char*, 5> units{"MB", "GB", "TB", "PB", "EB"};
    for (std::size_t i = 0; i < units.size(); ++i)
        EXPECT_EQ(FormatBytes(std::uint64_t(3) << (19 + 10 * i)), std::string("1.50  ") + units[i]);
    EXPECT_EQ(FormatBytes(largest), "16.00  EB");
}

TEST(Seconds, are_shown_with_minutes_and_hours_where_there_are_any)
{
    EXPECT_EQ(FormatSecondsElapsed(0), "0 seconds");
    EXPECT_EQ(FormatSecondsElapsed(1), "1 second");
    EXPECT_EQ(FormatSecondsElapsed(59), "59 seconds");
    EXPECT_EQ(FormatSecondsElapsed(60), "1:00 minutes");
    EXPECT_EQ(FormatSecondsElapsed(125), "2:05 minutes");
    EXPECT_EQ(FormatSecondsElapsed(3600), "1:00:00 hours");
    EXPECT_EQ(FormatSecondsElapsed(3723), "1:02:03 hours");
    EXPECT_EQ(FormatSecondsElapsed(largest), "5124095576030431:00:15 hours");
}

TEST(Minutes, are_rounded_to_the_nearest)
{
    EXPECT_EQ(FormatMinutesElapsed(-30), "less than a minute");
    EXPECT_EQ(FormatMinutesElapsed(29), "less than a minute");
    EXPECT_EQ(FormatMinutesElapsed(30), "about a minute");
    EXPECT_EQ(FormatMinutesElapsed(89), "about a minute");
    EXPECT_EQ(FormatMinutesElapsed(90), "2 minutes");
    EXPECT_EQ(FormatMinutesElapsed(3569), "59 minutes");
    EXPECT_EQ(FormatMinutesElapsed(3570), "1:00 hours");
    EXPECT_EQ(FormatMinutesElapsed(3723), "1:02 hours");
}

TEST(Minutes, are_shown_for_every_number_of_seconds)
{
    EXPECT_EQ(FormatMinutesElapsed(-31), "0:00 hours");
    EXPECT_EQ(FormatMinutesElapsed(-3630), "-1:00 hours");
    EXPECT_EQ(FormatMinutesElapsed(std::numeric_limits<std::int64_t>::max()), "2562047788015215:30 hours");
    EXPECT_EQ(FormatMinutesElapsed(std::numeric_limits<std::int64_t>::min()), "-2562047788015215:-29 hours");
}

TEST(Minutes, are_what_the_toolkits_form_shows_of_seconds)
{
    EXPECT_EQ(FormatSecondsElapsedQ(29), ToQ("less than a minute"));
    EXPECT_EQ(FormatSecondsElapsedQ(125), ToQ("2 minutes"));
}

TEST(MilliSeconds, are_shown_behind_seconds_alone)
{
    EXPECT_EQ(FormatMilliSecondsElapsed(0), "0.000 seconds");
    EXPECT_EQ(FormatMilliSecondsElapsed(4007), "4.007 seconds");
    EXPECT_EQ(FormatMilliSecondsElapsed(59999), "59.999 seconds");
    EXPECT_EQ(FormatMilliSecondsElapsed(60000), "1:00 minutes");
    EXPECT_EQ(FormatMilliSecondsElapsed(3599999), "59:59 minutes");
    EXPECT_EQ(FormatMilliSecondsElapsed(3600000), "1:00:00 hours");
    EXPECT_EQ(FormatMilliSecondsElapsed(3723004), "1:02:03 hours");
    EXPECT_EQ(FormatMilliSecondsElapsed(largest), "5124095576030:25:51 hours");
    EXPECT_EQ(FormatMilliSecondsElapsedQ(4007), ToQ("4.007 seconds"));
}

TEST(Dates, are_shown_to_the_minute_with_two_digits_each)
{
    const QDateTime morning(QDate(2023, 6, 2), QTime(9, 5, 59));
    EXPECT_EQ(FormatDateTime(morning), "2023-06-02 09:05");
    EXPECT_EQ(FormatDateTimeQ(morning), ToQ("2023-06-02 09:05"));
    EXPECT_EQ(FormatDateTime(QDateTime(QDate(2023, 12, 31), QTime(23, 59))), "2023-12-31 23:59");
}

TEST(Dates, are_stamped_with_weekday_and_local_time)
{
    const ClassicTimeLocale classic;
    const QDateTime noon(QDate(2023, 6, 22), QTime(12, 34, 56));
    EXPECT_EQ(FormatTimestamp(noon.toSecsSinceEpoch()), "Thursday Thu Jun 22 12:34:56 2023");
}

TEST(Dates, give_nothing_for_a_year_beyond_all_calendars)
{
    EXPECT_EQ(FormatTimestamp(std::numeric_limits<std::time_t>::max()), "");
}

TEST(RandomNames, are_of_letters_and_digits)
{
    std::set<char> seen;
    for (const char c : MakeRandomString(10000)) {
        EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(c))) << c;
        seen.insert(c);
    }
    // One of the 62 is missed with a probability of 62 * (61/62)^10000, below 1e-68.
    EXPECT_EQ(seen.size(), 62u);
    EXPECT_EQ(MakeRandomString(0), "");
    EXPECT_EQ(MakeRandomString(64).size(), 64u);
}

TEST(RandomNames, differ)
{
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i)
        names.insert(MakeRandomString(8));
    // Two of them agree with a probability of about 1000^2 / 2 / 62^8, that is 2e-9.
    EXPECT_EQ(names.size(), 1000u);
}

} // namespace
