// The options with which a conversion has its OBJ files written.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"

#include "dzclassfactory.h"
#include "dzexporter.h"
#include "dzfileiosettings.h"
#include "gnt_convert-impl.h"
#include "openhost/testing.h"

#include <QFileInfo>

namespace {

DzFileIOSettings& SeenOptions()
{
    static DzFileIOSettings options;
    return options;
}

/// Writes nothing and keeps the options.
class KeepingExporter : public DzExporter {
public:
    KeepingExporter() : DzExporter(QStringLiteral("obj")) {}

protected:
    DzError write(const QString&, const DzFileIOSettings* options) override
    {
        SeenOptions() = *options;
        return DZ_NO_ERROR;
    }
};

class KeepingFactory : public DzClassFactory {
public:
    KeepingFactory() : DzClassFactory(&DzExporter::staticMetaObject, DzGuid()) {}
    QObject* createInstance() const override { return new KeepingExporter; }
    QObject* createInstance(const QVariantList&) const override { return createInstance(); }
};

class ObjExportOptions : public ConversionFixture {
protected:
    /// Of a file that a conversion writes.
    const DzFileIOSettings& exported()
    {
        loadPairInOnePlace(genesis8Female);
        SeenOptions().clear();
        const KeepingFactory factory;
        const openhost::ClassFactoryOverride override(QLatin1String("DzObjExporter"), &factory);
        GntConverter::Impl converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        converter.exportSelectedAsObj_X("stem");
        return SeenOptions();
    }
};

TEST_F(ObjExportOptions, limit_the_file_to_the_selected_roots_by_both_options)
{
    const DzFileIOSettings& options = exported();
    EXPECT_TRUE(options.getBoolValue(QLatin1String("SelectedOnly")));
    EXPECT_TRUE(options.getBoolValue(QLatin1String("SelectedRootsOnly")));
}

TEST_F(ObjExportOptions, write_the_hosts_own_unit)
{
    EXPECT_EQ(exported().getFloatValue(QLatin1String("Scale")), 1.0);
}

TEST_F(ObjExportOptions, keep_the_host_from_asking)
{
    EXPECT_EQ(exported().getIntValue(QLatin1String("RunSilent")), 1);
}

} // namespace
