// Laws of numbers and durations as texts.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/shared/text_generators.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace kst::str;

namespace {

/// Numbers of every length: plain ones tend to be small.
template <class Number>
rc::Gen<Number> NumberOfAnyLength()
{
    return rc::gen::apply([](Number number, int shift) { return static_cast<Number>(number >> shift); },
                          rc::gen::resize(2000, rc::gen::arbitrary<Number>()),
                          rc::gen::inRange<int>(0, sizeof(Number) * 8));
}

template <class Number>
void IsParsedFromItsText(Number number, const std::string& rest)
{
    const std::string text = std::to_string(number) + rest;
    Number parsed = static_cast<Number>(~number);
    RC_ASSERT(ParseInt(text, &parsed));
    RC_ASSERT(parsed == number);
}

RC_GTEST_PROP(NumberLaws, every_number_is_parsed_from_its_text_whatever_follows, ())
{
    const std::string rest = *TextOf("x- ,.+");
    IsParsedFromItsText<std::int64_t>(*NumberOfAnyLength<std::int64_t>(), rest);
    IsParsedFromItsText<int>(*NumberOfAnyLength<int>(), rest);
}

RC_GTEST_PROP(NumberLaws, any_text_is_parsed_alike_at_both_widths, ())
{
    const std::string text = *TextOf("-019x");
    std::int64_t wide = 5;
    int narrow = 5;
    RC_ASSERT(ParseInt(text, &wide) == ParseInt(text, &narrow));
    RC_ASSERT((narrow == 5 || narrow == wide));
}

RC_GTEST_PROP(NumberLaws, the_number_is_what_is_left_without_commas, ())
{
    const auto number = *NumberOfAnyLength<std::uint64_t>();
    const std::string text = FormatNumberWithThousands(number);
    RC_ASSERT(FindReplaceReturn(text, ",", "") == std::to_string(number));
    for (std::size_t fromEnd = 0; fromEnd < text.size(); ++fromEnd)
        RC_ASSERT((text[text.size() - 1 - fromEnd] == ',') == (fromEnd % 4 == 3));
}

RC_GTEST_PROP(NumberLaws, the_plural_names_the_number, ())
{
    const auto number = *NumberOfAnyLength<std::uint64_t>();
    const std::string text = Pluralize(number, "one", "%d of %d");
    const std::string digits = FormatNumberWithThousands(number);
    RC_ASSERT(text == (number == 1 ? "one" : digits + " of " + digits));
    RC_ASSERT(PluralizeQ(number, ToQ("one"), ToQ("%d of %d")) == ToQ(text));
}

RC_GTEST_PROP(DurationLaws, seconds_are_read_back_from_their_text, ())
{
    const auto seconds = *NumberOfAnyLength<std::uint64_t>();
    const std::vector<std::string> words = ExplodeVector(FormatSecondsElapsed(seconds), " ", false, true);
    RC_ASSERT(words.size() == 2u);
    std::uint64_t read = 0;
    for (const std::string& part : ExplodeVector(words[0], ":", false, false)) {
        RC_ASSERT((read == 0 || (part.size() == 2 && std::stoull(part) < 60)));
        read = read * 60 + std::stoull(part);
    }
    RC_ASSERT(read == seconds);
    RC_ASSERT(words[1] == (seconds >= 3600 ? "hours"
                           : seconds >= 60 ? "minutes"
                           : seconds == 1  ? "second"
                                           : "seconds"));
}

RC_GTEST_PROP(DurationLaws, minutes_are_off_by_half_a_minute_at_most, ())
{
    const auto seconds = *rc::gen::inRange<std::int64_t>(3570, std::int64_t(1) << 53);
    const std::vector<std::string> words = ExplodeVector(FormatMinutesElapsed(seconds), " ", false, true);
    RC_ASSERT(words.size() == 2u);
    RC_ASSERT(words[1] == "hours");
    const std::vector<std::string> parts = ExplodeVector(words[0], ":", false, true);
    RC_ASSERT(parts.size() == 2u);
    RC_ASSERT(std::abs((std::stoll(parts[0]) * 60 + std::stoll(parts[1])) * 60 - seconds) <= 30);
}

RC_GTEST_PROP(DurationLaws, every_number_of_seconds_has_a_text_in_minutes, ())
{
    const std::string text = FormatMinutesElapsed(*NumberOfAnyLength<std::int64_t>());
    RC_ASSERT((EndsWith(text, " hours") || EndsWith(text, " minutes") || EndsWith(text, " a minute")));
}

RC_GTEST_PROP(SizeLaws, a_size_is_shown_within_half_a_hundredth_of_its_unit, ())
{
    const auto bytes = *rc::gen::map(NumberOfAnyLength<std::uint64_t>(), [](std::uint64_t number) {
        return std::max<std::uint64_t>(number, 1024);
    });
    const std::vector<std::string> words = ExplodeVector(FormatBytes(bytes), " ", false, true);
    RC_ASSERT(words.size() == 2u);
    const std::string units[] = {"KB", "MB", "GB", "TB", "PB", "EB"};
    double unit = 1024;
    std::size_t i = 0;
    for (; words[1] != units[i]; unit *= 1024)
        RC_ASSERT(++i < std::size(units));
    const double shown = std::stod(words[0]);
    RC_ASSERT(shown >= 1.0);
    RC_ASSERT(shown <= 1024.0);
    // Half of the last digit shown, and as much as the division of the integer cuts off: 1 / 1024.
    RC_ASSERT(std::abs(shown - static_cast<double>(bytes) / unit) <= 0.005 + 1.0 / 1024 + 1e-9);
}

} // namespace
