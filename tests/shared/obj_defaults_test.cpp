// Whether a set of OBJ options is the table's or somebody's own.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "ks_obj-settings.h"
#include "tests/host/host_fixture.h"

namespace {

class ObjDefaults : public HostTest {
protected:
    /// Takes over options that are stored.
    template <class Settings>
    static void loadStored(Settings& settings)
    {
        DzAppSettings store(QLatin1String("ObjDefaults"));
        store.setStringValue(QLatin1String("obj"), QLatin1String("{\"Scale\": 2.5}"));
        ASSERT_TRUE(settings.loadFromAppSettings(store, "obj"));
        ASSERT_FALSE(settings.isUsingDefaults());
    }
};

TEST_F(ObjDefaults, are_in_use_again_when_loaded_over_the_stored_options)
{
    kst::ObjExportSettings out;
    loadStored(out);
    out.loadBlenderDefaults();
    EXPECT_TRUE(out.isUsingDefaults());
    kst::ObjImportSettings in;
    loadStored(in);
    in.loadBlenderDefaults();
    EXPECT_TRUE(in.isUsingDefaults());
}

TEST_F(ObjDefaults, are_in_use_again_when_loaded_over_what_the_user_chose)
{
    kst::ObjExportSettings settings;
    ASSERT_TRUE(settings.showDialogOrThrow());
    ASSERT_FALSE(settings.isUsingDefaults());
    settings.loadBlenderDefaults();
    EXPECT_TRUE(settings.isUsingDefaults());
}

} // namespace
