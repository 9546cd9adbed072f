// Colours that stand for distances.
// SPDX-License-Identifier: MIT

#include "page/color_scale.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

using namespace cli;

namespace {

/// CIE lightness, 0 to 100.
double Lightness(const LinearRgb& color)
{
    const double y = 0.2126 * color[0] + 0.7152 * color[1] + 0.0722 * color[2];
    return y > 0.008856 ? 116.0 * std::cbrt(y) - 16.0 : 903.3 * y;
}

double Distance(const LinearRgb& a, const LinearRgb& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

} // namespace

TEST(ColorAt, gets_darker_all_the_way_so_that_the_order_shows_in_grey)
{
    double before = Lightness(ColorAt(0.0));
    EXPECT_GT(before, 90.0);
    for (int i = 1; i <= 50; ++i) {
        const double now = Lightness(ColorAt(i / 50.0));
        EXPECT_LT(now, before - 0.4) << i;
        EXPECT_GT(now, before - 4.0) << i << ": no step stands out";
        before = now;
    }
    EXPECT_LT(before, 30.0);
}

TEST(ColorAt, stays_on_the_screen_and_takes_the_ends_for_what_is_beyond)
{
    for (int i = 0; i <= 100; ++i)
        for (const float part : ColorAt(i / 100.0)) {
            EXPECT_GE(part, 0.0f);
            EXPECT_LE(part, 1.0f);
        }
    EXPECT_EQ(ColorAt(-1.0), ColorAt(0.0));
    EXPECT_EQ(ColorAt(2.0), ColorAt(1.0));
}

TEST(ColorAt, has_neither_the_colour_for_what_lies_beyond_nor_that_for_nothing)
{
    for (int i = 0; i <= 100; ++i) {
        EXPECT_GT(Distance(ColorAt(i / 100.0), ColorBeyond()), 0.2) << i;
        EXPECT_GT(Distance(ColorAt(i / 100.0), ColorOfNothing()), 0.1) << i;
    }
}

TEST(ChooseScale, ends_at_a_round_number_that_99_of_100_do_not_exceed)
{
    std::vector<float> values;
    for (int i = 1; i <= 1000; ++i)
        values.push_back(static_cast<float>(i) * 1e-3f); // to 10 mm
    values.back() = 50.0f;
    const ColorScale scale = ChooseScale(values);
    EXPECT_DOUBLE_EQ(scale.topMm, 10.0);
    EXPECT_EQ(scale.beyondCount, 1u);
    EXPECT_EQ(scale.count, 1000u);
    EXPECT_NEAR(scale.largestMm, 500.0, 1e-6);
    EXPECT_EQ(scale.color(50.0f), ColorBeyond());
    EXPECT_EQ(scale.step(50.0f), 255);
    EXPECT_EQ(scale.step(1.0f), 253);
    EXPECT_EQ(scale.step(0.0f), 0);
}

TEST(ChooseScale, leaves_out_what_is_no_number)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinite = INFINITY;
    const ColorScale scale = ChooseScale(std::vector<float>{0.1f, nan, infinite});
    EXPECT_EQ(scale.count, 1u);
    EXPECT_NEAR(scale.largestMm, 1.0, 1e-6);
    EXPECT_EQ(scale.step(nan), 254);
    EXPECT_EQ(scale.color(infinite), ColorOfNothing());
}

TEST(ChooseScale, has_an_end_where_all_are_alike_or_there_are_none)
{
    EXPECT_GT(ChooseScale(std::vector<float>{}).topMm, 0.0);
    EXPECT_GT(ChooseScale(std::vector<float>(5, 0.0f)).topMm, 0.0);
}

TEST(DescribeScale, says_whether_anything_lies_beyond_its_end)
{
    ColorScale scale{1.5, 1.25, 200, 0};
    EXPECT_EQ(DescribeScale(scale, "Distance.").at("text"),
              "Distance. Nothing lies beyond the end of the scale; the largest is 1.25 mm.");
    scale.largestMm = 12.0;
    scale.beyondCount = 1234;
    scale.count = 123456;
    EXPECT_EQ(
        DescribeScale(scale, "Distance.").at("text"),
        "Distance. The end of the scale is a round number that at least 99 of 100 vertices do not exceed; "
        "1\u202f234 of 123\u202f456 lie beyond, the farthest at 12 mm, in a colour of their own.");
    EXPECT_EQ(DescribeScale(scale, "").at("over"), 1234);
}

TEST(ScaleTo, ends_at_or_above_the_largest)
{
    for (const float cm : {0.0001f, 0.0333f, 0.1f, 1.01f, 20.6f, 100.0f}) {
        const ColorScale scale = ScaleTo(cm);
        EXPECT_GE(scale.topMm, 10.0 * static_cast<double>(cm));
        EXPECT_LE(scale.topMm, std::max(0.01, 15.1 * static_cast<double>(cm)));
        EXPECT_NE(scale.step(cm), 255);
    }
}
