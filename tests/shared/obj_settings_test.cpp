// OBJ option sets.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "dzfileiosettings.h"
#include "shared/ks_obj-settings.h"
#include "tests/host/host_fixture.h"

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
