// How numbers look in files.
// SPDX-License-Identifier: MIT

#include "dson/number_text.h"

#include "base/errors.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>

#include <fmt/format.h>
#include <gtest/gtest.h>

using dson::NumberStyle;

namespace {

constexpr NumberStyle styles[] = {NumberStyle::ListEntry, NumberStyle::Setting, NumberStyle::Exact};

std::string Text(double value, NumberStyle style)
{
    std::string text;
    dson::AppendNumber(text, value, style);
    return text;
}

/// All finite ones, of any size.
template <class Number, class Bits>
Number AnyNumber(std::mt19937_64& random)
{
    for (;;) {
        const Bits bits = static_cast<Bits>(random());
        Number number;
        std::memcpy(&number, &bits, sizeof number);
        if (std::isfinite(number))
            return number;
    }
}

/// What the text says, whatever the locale.
template <class Number>
Number Read(const std::string& text)
{
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Digits before the exponent, without zeros at either end.
std::size_t SignificantDigits(const std::string& text)
{
    std::string digits;
    for (const char c : text.substr(0, text.find('e')))
        if (c >= '0' && c <= '9')
            digits += c;
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? 0 : digits.find_last_not_of('0') + 1 - first;
}

} // namespace

TEST(NumberText, looks_as_its_style_says)
{
    const struct {
        double value;
        const char *entry, *setting, *exact;
    } cases[] = {
        {0.0, "0.0", "0", "0"},
        {-0.0, "-0.0", "-0.0", "-0.0"},
        {3.0, "3.0", "3", "3"},
        {-10000.0, "-10000.0", "-10000", "-10000"},
        {0.1, "0.1", "0.1", "0.1"},
        {-12.5, "-12.5", "-12.5", "-12.5"},
        {1.0 / 3.0, "0.33333334", "0.33333334", "0.3333333333333333"},
        {0.0001, "0.0001", "0.0001", "1e-04"},
        {0.00001, "1e-05", "1e-05", "1e-05"},
        {123456789.0, "1.2345679e+08", "123456789", "123456789"},
        {1e9, "1e+09", "1e+09", "1e+09"},
        {DBL_MIN, "0.0", "0.0", "2.2250738585072014e-308"},
        {FLT_MAX, "3.4028235e+38", "3.4028235e+38", "3.4028234663852886e+38"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(Text(one.value, NumberStyle::ListEntry), one.entry);
        EXPECT_EQ(Text(one.value, NumberStyle::Setting), one.setting);
        EXPECT_EQ(Text(one.value, NumberStyle::Exact), one.exact);
    }
}

TEST(NumberText, reads_back_to_the_same_single_precision_number)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const float value = AnyNumber<float, std::uint32_t>(random);
        for (const NumberStyle style : {NumberStyle::ListEntry, NumberStyle::Setting}) {
            const std::string text = Text(double{value}, style);
            ASSERT_EQ(Read<float>(text), value) << text;
            ASSERT_EQ(std::signbit(Read<float>(text)), std::signbit(value)) << text;
        }
    }
}

TEST(NumberText, reads_back_to_the_same_double_precision_number)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 100000; ++i) {
        const double value = AnyNumber<double, std::uint64_t>(random);
        const std::string text = Text(value, NumberStyle::Exact);
        ASSERT_EQ(Read<double>(text), value) << text;
    }
}

TEST(NumberText, has_no_digit_too_many)
{
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> coordinate(-300.0, 300.0); // cm, as in figures
    for (int i = 0; i < 100000; ++i) {
        const double value = coordinate(random);
        const auto single = static_cast<float>(value);
        const std::string entry = Text(value, NumberStyle::ListEntry),
                          exact = Text(value, NumberStyle::Exact);
        const std::string shorterEntry = fmt::format("{:.{}g}", single, SignificantDigits(entry) - 1);
        const std::string shorterExact = fmt::format("{:.{}g}", value, SignificantDigits(exact) - 1);
        ASSERT_NE(Read<float>(shorterEntry), single) << entry;
        ASSERT_NE(Read<double>(shorterExact), value) << exact;
    }
}

TEST(NumberText, ends_as_in_older_files_where_two_texts_are_equally_near)
{
    EXPECT_EQ(Text(176.453125, NumberStyle::ListEntry), "176.45313");
    EXPECT_EQ(Text(-1.17578125, NumberStyle::Setting), "-1.1757813");
}

TEST(NumberText, refuses_what_is_not_finite)
{
    const auto isRefused = [](double value, NumberStyle style) {
        try {
            Text(value, style);
        } catch (const base::FormatError& error) {
            return std::string(error.what()) == "a value of a channel or formula is not a finite number";
        }
        return false;
    };
    for (const NumberStyle style : styles)
        for (const double value : {double{NAN}, double{INFINITY}, -double{INFINITY}})
            EXPECT_TRUE(isRefused(value, style));
    EXPECT_TRUE(isRefused(1e39, NumberStyle::ListEntry));
    EXPECT_TRUE(isRefused(1e39, NumberStyle::Setting));
    EXPECT_EQ(Text(1e39, NumberStyle::Exact), "1e+39");
}
