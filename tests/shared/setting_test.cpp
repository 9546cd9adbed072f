// Settings and flag sets.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "shared/ks_flag-set.h"
#include "shared/ks_property-setting.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

enum class Fruit : int { Apple = 1, Pear = 2, Plum = 4 };

TEST(FlagSet, holds_flags_as_the_bits_of_one_number)
{
    kst::FlagSet<Fruit> set = kst::FlagSet<Fruit>(Fruit::Pear) | Fruit::Plum;
    EXPECT_EQ(set.toInt(), 6);
    EXPECT_TRUE(set.test(Fruit::Pear));
    EXPECT_FALSE(set.test(Fruit::Apple));
    set.clear(Fruit::Pear);
    set.set(Fruit::Apple);
    EXPECT_EQ(set, kst::FlagSet<Fruit>::fromInt(5));
}

TEST(Setting, tells_listeners_in_order_and_only_about_changes)
{
    kst::NumericSetting<int> setting(1, 1, 0, 10);
    std::vector<int> calls;
    setting.notifyListeners();
    setting.addListener([&] { calls.push_back(1); });
    setting.addListener([&] { calls.push_back(2); });
    EXPECT_FALSE(setting.setAndNotify(1));
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(setting.setAndNotify(5));
    EXPECT_EQ(calls, (std::vector<int>{1, 2}));
    setting.set(6);
    EXPECT_EQ(calls.size(), 2u) << "a plain set is silent";
}

TEST(Setting, keeps_a_number_that_is_none)
{
    kst::NumericSetting<float> setting(0.0f, 0.0f, 0.0f, 1.0f);
    setting.set(std::nanf(""));
    EXPECT_TRUE(std::isnan(setting.get()));
}

TEST(PropertySetting, takes_limits_and_values_from_the_property_without_writing_it)
{
    DzIntProperty property(QLatin1String("Level"), true, true, 7);
    property.setMinMax(0, 100);
    property.setValue(20);
    kst::IntPropertySetting setting(property);
    EXPECT_EQ(setting.get(), 20);
    EXPECT_EQ(setting.getDefault(), 7);
    EXPECT_EQ(setting.getInitialValue(), 20);
    setting.set(250);
    EXPECT_EQ(setting.get(), 100);
    setting.set(-5);
    EXPECT_EQ(setting.get(), 0);
    EXPECT_EQ(property.getValue(), 20);
}

} // namespace
