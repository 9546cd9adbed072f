// Settings that live in the host's store.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "ks_app-setting.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"

#include <type_traits>

namespace {

enum class Job : int { Head = 1, Body = 2, Both = 4 };
using Jobs = kst::FlagSet<Job>;

const QString key = QStringLiteral("Key");

class AppSettingTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        store.removeValue(key);
    }

    DzAppSettings store{QStringLiteral("Kestrom/AppSettingTest")};
};

TEST_F(AppSettingTest, gives_the_default_for_a_key_that_is_absent)
{
    EXPECT_TRUE(kst::BoolAppSetting(store, "Key", true).get());
    EXPECT_FALSE(kst::BoolAppSetting(store, "Key", false).get());
    EXPECT_EQ(kst::IntAppSetting(store, "Key", -7).get(), -7);
    EXPECT_EQ(kst::FloatAppSetting(store, "Key", 0.1f).get(), 0.1f);
    EXPECT_EQ(kst::StringAppSetting(store, "Key", "Vera").get(), "Vera");
    EXPECT_EQ(kst::FlagAppSetting<Job>(store, "Key", Job::Body).get(), Jobs(Job::Body));
    EXPECT_FALSE(store.containsValue(key)) << "reading stores nothing";
}

TEST_F(AppSettingTest, has_its_default_at_hand_when_the_store_has_another_value)
{
    store.setIntValue(key, 5);
    kst::IntAppSetting setting(store, "Key", 7);
    EXPECT_EQ(setting.get(), 5);
    EXPECT_EQ(setting.getDefault(), 7);
}

TEST_F(AppSettingTest, loads_and_stores_a_number_or_a_text_for_whoever_keeps_it)
{
    kst::IntAppSetting setting(store, "Key", 0);
    kst::AppSettingsStorageInt& integer = setting;
    int count = 1;
    integer.loadInt(count, 7);
    EXPECT_EQ(count, 7);
    integer.storeInt(count, 3);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(store.getIntValue(key, -1), 3);

    kst::FloatAppSetting floatSetting(store, "Key", 0.0f);
    float share = 0.0f;
    floatSetting.loadFloat(share, 1.0f);
    EXPECT_EQ(share, 3.0f);
    floatSetting.storeFloat(share, 0.5f);
    EXPECT_EQ(store.getFloatValue(key, -1), 0.5);

    kst::StringAppSetting textSetting(store, "Text", "");
    std::string text = "before";
    textSetting.loadString(text, "Vera");
    EXPECT_EQ(text, "Vera");
    textSetting.storeString(text, "Otto");
    EXPECT_EQ(store.getStringValue(QStringLiteral("Text")), QStringLiteral("Otto"));
    store.removeValue(QStringLiteral("Text"));
}

TEST_F(AppSettingTest, writes_every_change_at_once)
{
    {
        kst::BoolAppSetting setting(store, "Key", false);
        EXPECT_FALSE(setting.get());
        setting.set(true);
        EXPECT_TRUE(store.getBoolValue(key, false));
    }
    EXPECT_TRUE(store.getBoolValue(key, false)) << "also when nobody accepts";
    store.removeValue(key);
    kst::IntAppSetting(store, "Key", 0).set(3);
    EXPECT_EQ(store.getIntValue(key, -1), 3);
    kst::FloatAppSetting(store, "Key", 0).set(0.5f);
    EXPECT_EQ(store.getFloatValue(key, -1), 0.5);
    kst::StringAppSetting(store, "Key", "").set("\xC3\xA4");
    EXPECT_EQ(store.getStringValue(key, QString()), QString(QChar(0xE4)));
}

TEST_F(AppSettingTest, stores_flags_as_one_number)
{
    kst::FlagAppSetting<Job>(store, "Key", Jobs()).set(Jobs(Job::Head) | Job::Both);
    EXPECT_EQ(store.getIntValue(key, 0), 5);
    kst::FlagAppSetting<Job> setting(store, "Key", Jobs());
    EXPECT_TRUE(setting.get().test(Job::Both));
    EXPECT_FALSE(setting.get().test(Job::Body));
    setting.set(Jobs());
    EXPECT_TRUE(setting.get().empty());
    EXPECT_EQ(store.getIntValue(key, 9), 0);
}

TEST_F(AppSettingTest, reads_the_store_once)
{
    kst::IntAppSetting numbers[] = {{store, "Key", 1}, {store, "Key", 2}};
    EXPECT_EQ(numbers[0].get(), 1);
    EXPECT_EQ(numbers[1].get(), 2);
    numbers[0].set(8);
    EXPECT_EQ(numbers[1].get(), 2) << "it was loaded before";
    EXPECT_EQ(kst::IntAppSetting(store, "Key", 3).get(), 8);

    store.removeValue(key);
    kst::BoolAppSetting flag(store, "Key", false);
    kst::FloatAppSetting real(store, "Key", 1.5f);
    kst::StringAppSetting text(store, "Key", "old");
    kst::FlagAppSetting<Job> jobs(store, "Key", Job::Head);
    flag.get(), real.get(), text.get(), jobs.get();
    store.setIntValue(key, 7);
    EXPECT_FALSE(flag.get());
    EXPECT_EQ(real.get(), 1.5f);
    EXPECT_EQ(text.get(), "old");
    EXPECT_EQ(jobs.get(), Jobs(Job::Head));
}

TEST_F(AppSettingTest, does_not_read_what_was_set_before)
{
    kst::IntAppSetting number(store, "Key", 0);
    number.set(4);
    store.setIntValue(key, 5);
    EXPECT_EQ(number.get(), 4);
    kst::StringAppSetting text(store, "Key", "default");
    text.set("");
    store.setStringValue(key, kst::str::ToQ("other"));
    EXPECT_EQ(text.get(), "") << "an empty text is kept while the setting lives";
}

TEST_F(AppSettingTest, reads_an_empty_text_as_the_default)
{
    kst::StringAppSetting(store, "Key", "").set("");
    EXPECT_TRUE(store.containsValue(key));
    EXPECT_EQ(kst::StringAppSetting(store, "Key", "Vera").get(), "Vera");
}

TEST_F(AppSettingTest, tells_listeners_of_a_change_against_the_stored_value)
{
    store.setBoolValue(key, true);
    kst::BoolAppSetting setting(store, "Key", false);
    int calls = 0;
    setting.addListener([&] { ++calls; });
    EXPECT_FALSE(setting.setAndNotify(true)) << "the store has it already";
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(setting.setAndNotify(false));
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(store.getBoolValue(key, true));
}

TEST_F(AppSettingTest, finds_a_key_beyond_ascii)
{
    kst::IntAppSetting(store,
                       "Gr\xC3\xB6\xC3\x9F"
                       "e",
                       0)
        .set(6);
    const QString wide = QString::fromUtf8("Gr\xC3\xB6\xC3\x9F"
                                           "e");
    EXPECT_EQ(store.getIntValue(wide, 0), 6);
    store.removeValue(wide);
}

TEST_F(AppSettingTest, cannot_be_copied)
{
    EXPECT_FALSE(std::is_copy_constructible<kst::BoolAppSetting>::value);
    EXPECT_FALSE(std::is_copy_assignable<kst::StringAppSetting>::value);
}

} // namespace
