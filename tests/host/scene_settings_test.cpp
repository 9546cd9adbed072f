// Settings, their texts, and what is kept between runs.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "dzfileiosettings.h"
#include "dzprogress.h"
#include "openhost/diagnostics.h"
#include "scene/scene_limits.h"
#include "tests/host/host_fixture.h"

#include <QDir>
#include <QFile>

namespace {

QString Q(const char* text)
{
    return QString::fromUtf8(text);
}

void Fill(DzSettings& settings)
{
    settings.setStringValue(Q("LatAxis"), Q("X <&> \"ä\" \n line"));
    settings.setFloatValue(Q("Scale"), 1.0);
    settings.setFloatValue(Q("Tenth"), 0.1);
    settings.setIntValue(Q("FloatPrecision"), 8);
    settings.setBoolValue(Q("WriteVT"), true);
    settings.setSettingsValue(Q("NodeNames"))
        ->setSettingsValue(Q("Genesis9"))
        ->setStringValue(Q("0"), Q("Morph"));
    settings.setStringValue(Q("Empty"), QString());
}

void ExpectFilled(const DzSettings& settings)
{
    ASSERT_EQ(settings.getNumValues(), 7);
    EXPECT_EQ(settings.getKey(0), Q("LatAxis"));
    EXPECT_EQ(settings.getStringValue(Q("LatAxis")), Q("X <&> \"ä\" \n line"));
    EXPECT_EQ(settings.getValueType(1), DzSettings::FloatValue);
    EXPECT_EQ(settings.getFloatValue(Q("Scale")), 1.0);
    EXPECT_EQ(settings.getFloatValue(Q("Tenth")), 0.1);
    EXPECT_EQ(settings.getValueType(3), DzSettings::IntValue);
    EXPECT_EQ(settings.getIntValue(Q("FloatPrecision")), 8);
    EXPECT_EQ(settings.getValueType(4), DzSettings::BoolValue);
    EXPECT_TRUE(settings.getBoolValue(Q("WriteVT")));
    const DzSettings* const names = settings.getSettingsValue(Q("NodeNames"));
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(names->getSettingsValue(Q("Genesis9"))->getStringValue(Q("0")), Q("Morph"));
    EXPECT_EQ(settings.hasKey(Q("Empty")), 6);
}

class Settings : public HostTest {};
class AppSettings : public HostTest {};
class Progress : public HostTest {};

} // namespace

TEST_F(Settings, survive_the_trip_through_json_and_xml)
{
    DzFileIOSettings settings, fromJson, fromXml;
    Fill(settings);
    EXPECT_TRUE(settings.toJsonString().contains(Q("\"Scale\":1.0")));
    EXPECT_TRUE(fromJson.fromString(settings.toJsonString()));
    ExpectFilled(fromJson);
    EXPECT_TRUE(fromXml.fromString(settings.toString()));
    ExpectFilled(fromXml);
}

TEST_F(Settings, text_that_cannot_be_read_changes_nothing)
{
    DzFileIOSettings settings;
    Fill(settings);
    for (const char* text : {"", "[1]", "{\"a\":", "{\"a\":[1]}", "<Settings><Setting", "<Other/>",
                             "<Settings><Setting Key=\"a\" Type=\"Int\" Value=\"x\"/></Settings>"})
        EXPECT_FALSE(settings.fromString(Q(text))) << text;
    EXPECT_FALSE(settings.fromString(Q("{\"a\":").repeated(100000)));
    ExpectFilled(settings);
}

TEST_F(Settings, deeper_than_they_go_are_left_out_and_told)
{
    constexpr int depth = openhost::deepestSettings + 1;
    const auto deepText = [](const char* open, const char* close, const char* inner) {
        return Q(open).repeated(depth) + Q(inner) + Q(close).repeated(depth);
    };
    const QString json = deepText("{\"a\":1,\"s\":", "}", "{\"x\":1,\"y\":{\"z\":[]}}");
    const QString xml = Q("<Settings>") +
                        deepText("<Setting Key=\"a\" Type=\"Int\" Value=\"1\"/>"
                                 "<Setting Key=\"s\" Type=\"Settings\">",
                                 "</Setting>",
                                 "<Setting Key=\"x\" Type=\"Int\" Value=\"1\"/>"
                                 "<Setting Key=\"y\" Type=\"Settings\"/>") +
                        Q("</Settings>");
    for (const QString& text : {json, xml}) {
        const openhost::DiagnosticsCollector met(dzApp->diagnostics());
        DzFileIOSettings settings;
        ASSERT_TRUE(settings.fromString(text));
        DzSettings* set = &settings;
        for (int level = 0; level < depth; ++level) {
            EXPECT_EQ(set->getIntValue(Q("a")), 1) << level;
            ASSERT_TRUE(set = set->getSettingsValue(Q("s"))) << level;
        }
        EXPECT_EQ(set->getNumValues(), 0);
        ASSERT_EQ(met.all().size(), 1u);
        EXPECT_EQ(base::ToLine(met.all()[0]),
                  "settings: 2 values lie in more than 32 sets in each other, left out");
    }
}

TEST_F(Settings, getters_of_another_type_convert)
{
    DzFileIOSettings settings;
    settings.setBoolValue(Q("RunSilent"), true);
    EXPECT_EQ(settings.getIntValue(Q("RunSilent")), 1);
    settings.setIntValue(Q("RunSilent"), 0);
    EXPECT_FALSE(settings.getBoolValue(Q("RunSilent"), true));
    settings.setStringValue(Q("RunSilent"), Q("yes"));
    EXPECT_TRUE(settings.getBoolValue(Q("RunSilent")));
    EXPECT_EQ(settings.getIntValue(Q("Absent"), 7), 7);
    EXPECT_EQ(settings.hasKey(Q("Absent")), -1);
}

TEST_F(Settings, copies_do_not_share_nested_sets)
{
    DzFileIOSettings settings;
    Fill(settings);
    DzFileIOSettings copy(settings);
    copy.getSettingsValue(Q("NodeNames"))->clear();
    ExpectFilled(settings);
    copy.removeValue(Q("LatAxis"));
    EXPECT_EQ(copy.hasKey(Q("Scale")), 0);
}

TEST_F(AppSettings, are_in_the_file_at_once_and_grouped_by_path)
{
    DzAppSettings settings(Q("Group/Inner"));
    EXPECT_EQ(settings.getIntValue(Q("Count"), 5), 5);
    EXPECT_TRUE(settings.setIntValue(Q("Count"), 3));
    EXPECT_TRUE(settings.setStringValue(Q("Name"), Q("“x”")));
    EXPECT_TRUE(settings.setFloatValue(Q("Float"), 0.1));
    EXPECT_TRUE(settings.setBoolValue(Q("Flag"), true));
    DzAppSettings again(Q("Group"));
    EXPECT_FALSE(again.containsValue(Q("Count")));
    again.pushPath(Q("Inner"));
    EXPECT_EQ(again.getIntValue(Q("Count")), 3);
    EXPECT_EQ(again.getStringValue(Q("Name")), Q("“x”"));
    EXPECT_EQ(again.getFloatValue(Q("Float")), 0.1);
    EXPECT_TRUE(again.getBoolValue(Q("Flag")));
    EXPECT_TRUE(again.removeValue(Q("Count")));
    EXPECT_FALSE(settings.containsValue(Q("Count")));
    again.popPath();
    EXPECT_TRUE(again.removeKey(Q("Inner")));
    EXPECT_FALSE(settings.containsValue(Q("Name")));
}

TEST_F(AppSettings, a_broken_file_is_set_aside)
{
    DzAppSettings settings(Q("Group"));
    settings.setIntValue(Q("Count"), 3);
    const QString name = TestFolder() + Q("/settings/settings.json");
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("{ nonsense");
    file.close();
    EXPECT_EQ(settings.getIntValue(Q("Count"), 8), 8);
    EXPECT_TRUE(QFile::exists(name + Q(".broken")));
    EXPECT_TRUE(settings.setIntValue(Q("Count"), 4));
    EXPECT_EQ(settings.getIntValue(Q("Count")), 4);
}

TEST_F(AppSettings, that_cannot_be_read_now_are_not_written_over)
{
    DzAppSettings settings(Q("Group"));
    settings.setIntValue(Q("Count"), 3);
    // A folder can be read as a file by nobody, whoever runs this.
    const QString name = TestFolder() + Q("/settings/settings.json"), aside = name + Q(".aside");
    ASSERT_TRUE(QFile::rename(name, aside));
    ASSERT_TRUE(QDir().mkdir(name));
    EXPECT_EQ(settings.getIntValue(Q("Count"), 8), 8);
    EXPECT_FALSE(settings.setIntValue(Q("Count"), 4));
    ASSERT_TRUE(QDir().rmdir(name));
    ASSERT_TRUE(QFile::rename(aside, name));
    EXPECT_EQ(settings.getIntValue(Q("Count")), 3);
}

TEST_F(Progress, nests_and_cancels_inwards)
{
    EXPECT_EQ(DzProgress::getDepth(), 0);
    DzProgress outer(Q("outer"), 3, true);
    {
        DzProgress inner(Q("inner"), 2);
        DzProgress::setCurrentInfo(Q("now"));
        EXPECT_EQ(inner.getInfo(), Q("now"));
        inner.step(5);
        EXPECT_EQ(inner.getPosition(), 2);
        inner.cancel();
        EXPECT_FALSE(inner.isCancelled());
        outer.cancel();
        EXPECT_TRUE(inner.isCancelled());
        EXPECT_EQ(DzProgress::getDepth(), 2);
    }
    EXPECT_EQ(DzProgress::getDepth(), 1);
    outer.finish();
    EXPECT_EQ(DzProgress::getDepth(), 0);
}
