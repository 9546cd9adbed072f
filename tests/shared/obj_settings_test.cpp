// OBJ option sets.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "dzfileiosettings.h"
#include "ks_obj-settings.h"
#include "tests/host/host_fixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

class ObjSettingsTest : public HostTest {};

TEST_F(ObjSettingsTest, start_empty_with_the_defaults_in_use)
{
    const kst::ObjExportSettings settings;
    EXPECT_TRUE(settings.isUsingDefaults());
    EXPECT_EQ(settings.getScale(), 0.0f);
    EXPECT_EQ(settings.getDzFileIOSettings().getNumValues(), 0);
}

TEST_F(ObjSettingsTest, export_and_import_spell_the_inversions_differently)
{
    kst::ObjExportSettings out;
    out.loadBlenderDefaults();
    kst::ObjImportSettings in;
    in.loadBlenderDefaults();
    EXPECT_EQ(out.getDzFileIOSettings().getNumValues(), 36);
    EXPECT_EQ(in.getDzFileIOSettings().getNumValues(), 16);
    EXPECT_GE(out.getDzFileIOSettings().hasKey(QLatin1String("InvertLatAxis")), 0);
    EXPECT_GE(in.getDzFileIOSettings().hasKey(QLatin1String("InvertLat")), 0);
    EXPECT_LT(in.getDzFileIOSettings().hasKey(QLatin1String("InvertLatAxis")), 0);
    EXPECT_EQ(out.getDzFileIOSettings().getIntValue(QLatin1String("FloatPrecision")), 8);
    EXPECT_EQ(out.getScale(), 50.0f);
}

/// An option as a text that tells its type too.
std::string Described(const DzFileIOSettings& options, int index)
{
    const QString key = options.getKey(index);
    switch (options.getValueType(index)) {
    case DzSettings::StringValue:
        return ("string " + key.toStdString() + " " + options.getStringValue(key).toStdString());
    case DzSettings::FloatValue:
        return ("float " + key.toStdString() + " " + std::to_string(options.getFloatValue(key)));
    case DzSettings::BoolValue:
        return ("bool " + key.toStdString() + (options.getBoolValue(key) ? " true" : " false"));
    case DzSettings::IntValue:
        return ("int " + key.toStdString() + " " + std::to_string(options.getIntValue(key)));
    default:
        return "nested " + key.toStdString();
    }
}

std::vector<std::string> Described(const DzFileIOSettings& options)
{
    std::vector<std::string> lines;
    for (int i = 0; i < options.getNumValues(); ++i)
        lines.push_back(Described(options, i));
    return lines;
}

TEST_F(ObjSettingsTest, start_an_export_with_these_values_in_this_order)
{
    kst::ObjExportSettings settings;
    settings.loadBlenderDefaults();
    const std::vector<std::string> expected{"string Preset Custom",
                                            "string LatAxis X",
                                            "string VertAxis Y",
                                            "string DepthAxis Z",
                                            "float Scale 50.000000",
                                            "bool InvertLatAxis false",
                                            "bool InvertVertAxis false",
                                            "bool InvertDepthAxis false",
                                            "bool IgnoreInvisible true",
                                            "bool WeldSeams false",
                                            "bool RemoveUnusedVerts false",
                                            "bool TriangulateNgons false",
                                            "bool CollapseUVTiles false",
                                            "bool WriteVT true",
                                            "bool WriteVN false",
                                            "bool WriteF true",
                                            "bool WriteL true",
                                            "bool WriteO false",
                                            "bool WriteG true",
                                            "bool GroupGeom true",
                                            "bool GroupNodes false",
                                            "bool GroupSurfaces false",
                                            "bool GroupSingle false",
                                            "bool WriteUsemtl true",
                                            "bool NoMaps false",
                                            "bool OriginalMaps true",
                                            "bool CollectMaps false",
                                            "bool ConvertMaps false",
                                            "bool WriteMtllib false",
                                            "bool QuoteMapPathsWithSpaces true",
                                            "bool SelectedOnly false",
                                            "bool PrimaryRootOnly false",
                                            "bool SelectedRootsOnly true",
                                            "bool IncludeParented false",
                                            "int FloatPrecision 8",
                                            "int RunSilent 0"};
    EXPECT_EQ(Described(settings.getDzFileIOSettings()), expected);
}

TEST_F(ObjSettingsTest, start_an_import_with_these_values_in_this_order)
{
    kst::ObjImportSettings settings;
    settings.loadBlenderDefaults();
    const std::vector<std::string> expected{
        "string Preset Custom",    "string LatAxis X",        "string VertAxis Y",
        "string DepthAxis Z",      "float Scale 50.000000",   "bool InvertLat false",
        "bool InvertVert false",   "bool InvertDepth false",  "bool IncludeVT true",
        "bool IncludeF true",      "bool IncludeL true",      "bool IncludeG true",
        "bool IncludeUsemtl true", "bool IncludeMtllib true", "bool AutoAdapt false",
        "int RunSilent 0"};
    EXPECT_EQ(Described(settings.getDzFileIOSettings()), expected);
}

TEST_F(ObjSettingsTest, of_an_import_are_all_in_its_json)
{
    kst::ObjImportSettings settings;
    settings.loadBlenderDefaults();
    settings.setScale(12.25f);
    DzFileIOSettings read;
    ASSERT_TRUE(read.fromString(settings.toJsonStringOrThrowQ()));
    std::vector<std::string> expected = Described(settings.getDzFileIOSettings());
    std::vector<std::string> lines = Described(read);
    std::sort(expected.begin(), expected.end());
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(read.getFloatValue(QLatin1String("Scale")), 12.25);
}

TEST_F(ObjSettingsTest, keep_options_that_the_table_does_not_name)
{
    kst::ObjImportSettings settings;
    settings.getDzFileIOSettings().setStringValue(QLatin1String("Mine"), QLatin1String("kept"));
    settings.loadBlenderDefaults();
    EXPECT_EQ(settings.getDzFileIOSettings().getStringValue(QLatin1String("Mine")), QLatin1String("kept"));
}

TEST_F(ObjSettingsTest, limit_the_export_by_both_options_at_once)
{
    kst::ObjExportSettings settings;
    settings.setSelectedRootsOnly(true);
    EXPECT_TRUE(settings.getDzFileIOSettings().getBoolValue(QLatin1String("SelectedOnly")));
    settings.setSelectedRootsOnly(false);
    EXPECT_FALSE(settings.getDzFileIOSettings().getBoolValue(QLatin1String("SelectedOnly"), true));
    EXPECT_FALSE(settings.getDzFileIOSettings().getBoolValue(QLatin1String("SelectedRootsOnly"), true));
}

TEST_F(ObjSettingsTest, survive_as_json_in_the_application_settings)
{
    DzAppSettings store(QLatin1String("Test"));
    store.removeValue(QLatin1String("obj"));
    kst::ObjImportSettings saved;
    EXPECT_FALSE(saved.loadFromAppSettings(store, "obj")) << "nothing is stored yet";
    saved.loadBlenderDefaults();
    saved.setScale(2.5f);
    saved.saveSettingsOrThrow(store);
    kst::ObjImportSettings loaded;
    EXPECT_TRUE(loaded.loadFromAppSettings(store, "obj"));
    EXPECT_FALSE(loaded.isUsingDefaults());
    EXPECT_EQ(loaded.getScale(), 2.5f);
    EXPECT_EQ(loaded.toJsonStringOrThrowQ(), saved.toJsonStringOrThrowQ());
}

TEST_F(ObjSettingsTest, ignore_a_stored_text_that_is_no_json)
{
    DzAppSettings store(QLatin1String("Test"));
    store.setStringValue(QLatin1String("bad"), QLatin1String("{ not json"));
    kst::ObjImportSettings settings;
    settings.loadBlenderDefaults();
    EXPECT_FALSE(settings.loadFromAppSettings(store, "bad"));
    EXPECT_TRUE(settings.isUsingDefaults());
    EXPECT_EQ(settings.getScale(), 50.0f);
}

} // namespace
