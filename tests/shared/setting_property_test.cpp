// Laws of flag sets and stored settings.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "ks_app-setting.h"
#include "tests/shared/text_generators.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

namespace {

enum class Bit : int { First = 1, Second = 2, Third = 4 };
using Bits = kst::FlagSet<Bit>;

/// What a new setting reads of what another one wrote.
template <class Setting, class T>
T Reread(const T& written, const T& fallback)
{
    DzAppSettings store(QStringLiteral("Kestrom/SettingLaws"));
    Setting(store, "Key", fallback).set(written);
    return Setting(store, "Key", fallback).get();
}

RC_GTEST_PROP(FlagSetLaws, every_number_comes_back, (int bits))
{
    RC_ASSERT(Bits::fromInt(bits).toInt() == bits);
    RC_ASSERT(Bits::fromInt(bits).empty() == (bits == 0));
}

RC_GTEST_PROP(FlagSetLaws, joining_and_cutting_are_those_of_the_numbers, (int a, int b))
{
    const Bits left = Bits::fromInt(a), right = Bits::fromInt(b);
    Bits joined = left;
    joined |= right;
    RC_ASSERT(joined == (left | right));
    RC_ASSERT((left | right).toInt() == (a | b));
    RC_ASSERT((left & right).toInt() == (a & b));
    RC_ASSERT((left == right) == (a == b));
    RC_ASSERT((left != right) == (a != b));
}

RC_GTEST_PROP(FlagSetLaws, setting_and_clearing_change_one_flag_alone, (int before))
{
    const Bit flag = *rc::gen::element(Bit::First, Bit::Second, Bit::Third);
    Bits set = Bits::fromInt(before);
    set.set(flag);
    RC_ASSERT(set.test(flag));
    set.clear(flag);
    RC_ASSERT(!set.test(flag));
    RC_ASSERT(set.toInt() == (before & ~static_cast<int>(flag)));
}

RC_GTEST_PROP(AppSettingLaws, numbers_come_back_from_the_store, (int number, int fallback))
{
    RC_ASSERT((Reread<kst::IntAppSetting, int>(number, fallback)) == number);
}

RC_GTEST_PROP(AppSettingLaws, truths_come_back_from_the_store, (bool value, bool fallback))
{
    RC_ASSERT((Reread<kst::BoolAppSetting, bool>(value, fallback)) == value);
}

RC_GTEST_PROP(AppSettingLaws, flags_come_back_from_the_store, (int bits, int fallback))
{
    const Bits written = Bits::fromInt(bits);
    RC_ASSERT((Reread<kst::FlagAppSetting<Bit>, Bits>(written, Bits::fromInt(fallback))) == written);
}

RC_GTEST_PROP(AppSettingLaws, finite_floats_come_back_to_the_bit, (float number, float fallback))
{
    RC_PRE(std::isfinite(number));
    const float reread = Reread<kst::FloatAppSetting, float>(number, fallback);
    RC_ASSERT(reread == number);
    RC_ASSERT(std::signbit(reread) == std::signbit(number));
}

RC_GTEST_PROP(AppSettingLaws, texts_come_back_from_the_store_and_empty_ones_as_the_default, ())
{
    const std::string text = *Utf8Text(), fallback = *Utf8Text();
    RC_ASSERT((Reread<kst::StringAppSetting, std::string>(text, fallback)) ==
              (text.empty() ? fallback : text));
}

} // namespace
