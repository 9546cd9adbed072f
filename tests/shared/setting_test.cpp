// Settings and flag sets.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "ks_flag-set.h"
#include "ks_property-setting.h"

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

TEST(FlagSet, is_combined_and_cut)
{
    using Fruits = kst::FlagSet<Fruit>;
    const Fruits all = Fruits(Fruit::Apple) | Fruit::Pear | Fruit::Plum;
    EXPECT_EQ((all & Fruit::Pear).toInt(), 2);
    EXPECT_TRUE((Fruits(Fruit::Apple) & Fruit::Pear).empty());
    Fruits set;
    EXPECT_TRUE(set.empty());
    EXPECT_EQ(set.toInt(), 0);
    set |= Fruit::Plum;
    set |= Fruits(Fruit::Apple) | Fruit::Plum;
    EXPECT_EQ(set.toInt(), 5);
    EXPECT_FALSE(set.empty());
    EXPECT_TRUE(set != all);
}

TEST(NumericSetting, tests_its_lower_limit_before_its_upper_one)
{
    kst::NumericSetting<int> setting(0, 0, 10, -10); // limits the wrong way round
    setting.set(5);
    EXPECT_EQ(setting.get(), -10);
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

TEST(Setting, has_the_default_as_its_first_value)
{
    kst::SettingBase<std::string> setting("Vera");
    EXPECT_EQ(setting.get(), "Vera");
    setting.set("Nora");
    EXPECT_EQ(setting.get(), "Nora");
    EXPECT_EQ(setting.getDefault(), "Vera");
}

TEST(Setting, lets_a_listener_add_others)
{
    kst::SettingBase<int> setting(0);
    int late = 0;
    setting.addListener([&] {
        for (int i = 0; i < 100; ++i)
            setting.addListener([&] { ++late; });
    });
    EXPECT_TRUE(setting.setAndNotify(1));
    EXPECT_EQ(late, 0) << "they hear of the next change";
    EXPECT_TRUE(setting.setAndNotify(2));
    EXPECT_EQ(late, 100);
}

TEST(Setting, has_no_use_for_an_empty_listener)
{
    kst::SettingBase<int> setting(0);
    setting.addListener(nullptr);
    EXPECT_THROW(setting.notifyListeners(), std::bad_function_call);
}

TEST(Setting, keeps_a_number_within_its_limits)
{
    kst::NumericSetting<float> setting(0.5f, 0.5f, 0.0f, 1.0f);
    setting.set(1.5f);
    EXPECT_EQ(setting.get(), 1.0f);
    setting.set(-0.5f);
    EXPECT_EQ(setting.get(), 0.0f);
    EXPECT_EQ(setting.getMin(), 0.0f);
    EXPECT_EQ(setting.getMax(), 1.0f);
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
    EXPECT_EQ(setting.getInitialValue(), 20);
    EXPECT_EQ(property.getValue(), 20);
    EXPECT_EQ(&setting.getProperty(), &property);
}

TEST(PropertySetting, has_the_property_of_its_numbers_type)
{
    DzIntProperty level(QLatin1String("Level"), true, true, 7);
    DzFloatProperty size(QLatin1String("Size"), true, true, 0.25f);
    kst::IntPropertySetting levelSetting(level);
    kst::FloatPropertySetting sizeSetting(size);
    const kst::NumericPropertySetting<int>& anyInt = levelSetting;
    const kst::NumericPropertySetting<float>& anyFloat = sizeSetting;
    EXPECT_EQ(&anyInt.getProperty(), &level);
    EXPECT_EQ(&anyFloat.getProperty(), &size);
}

TEST(PropertySetting, keeps_what_the_property_was_when_it_was_made)
{
    DzFloatProperty property(QLatin1String("Size"), true, true, 0.25f);
    property.setMinMax(-1.0f, 2.0f);
    property.setValue(0.5f);
    kst::FloatPropertySetting setting(property);
    property.setValue(1.5f);
    property.setMinMax(0.0f, 5.0f);
    EXPECT_EQ(setting.get(), 0.5f);
    EXPECT_EQ(setting.getDefault(), 0.25f);
    EXPECT_EQ(setting.getMin(), -1.0f);
    EXPECT_EQ(setting.getMax(), 2.0f);
    EXPECT_EQ(setting.getInitialValue(), 0.5f);
    setting.set(3.0f);
    EXPECT_EQ(setting.get(), 2.0f);
}

} // namespace
