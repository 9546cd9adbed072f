// The settings of Morph Loader Pro, its list and its settings files.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "ks_morph-loader.h"
#include "tests/host/tools_fixture.h"
#include "tools/morph_loader.h"
#include "tools/morph_loader_batch.h"

#include <QFile>
#include <QMetaMethod>
#include <QSignalSpy>

namespace {

class MorphLoaderSettings : public HostTest {
protected:
    static QString fresh(const char* name)
    {
        QFile::remove(TestFile(name));
        return TestFile(name);
    }
};

/// A setter of the table and what is handed to it; the getter must then answer the same.
struct Setting {
    QByteArray name; ///< behind "set" and "get"
    QByteArray type;
};

/// All setters that the driver's table names, but the load mode, which has no getter.
std::vector<Setting> SettingsOfTheTable()
{
    std::vector<Setting> settings;
    for (const QByteArray signature : kst::MorphLoader::Signatures()) {
        if (!signature.startsWith("set") || signature.startsWith("setLoadMode"))
            continue;
        const int open = signature.indexOf('(');
        settings.push_back(
            {signature.mid(3, open - 3), signature.mid(open + 1, signature.size() - open - 2)});
    }
    return settings;
}

template <class T>
bool SetAndGet(QObject& loader, const Setting& setting, T value)
{
    T answer{};
    const QByteArray getter = "get" + setting.name;
    return QMetaObject::invokeMethod(&loader, "set" + setting.name, Qt::DirectConnection,
                                     QGenericArgument(setting.type, &value)) &&
           QMetaObject::invokeMethod(&loader, getter, Qt::DirectConnection,
                                     QGenericReturnArgument(setting.type, &answer)) &&
           answer == value;
}

TEST_F(MorphLoaderSettings, are_kept_one_by_one)
{
    const std::vector<Setting> settings = SettingsOfTheTable();
    ASSERT_EQ(settings.size(), 29u);
    DzMorphLoader loader;
    DzNode node;
    DzFloatProperty property(QStringLiteral("Control"), true, true);
    float number = 0.125f;
    int whole = 1;
    for (const Setting& setting : settings) {
        const QString text = QLatin1String(setting.name) + QStringLiteral(" text");
        number += 0.125f;
        bool isKept = false;
        if (setting.type == "QString")
            isKept = SetAndGet(loader, setting, text);
        else if (setting.type == "float")
            isKept = SetAndGet(loader, setting, number);
        else if (setting.type == "bool")
            isKept = SetAndGet(loader, setting, true) && SetAndGet(loader, setting, false);
        else if (setting.type == "DzNode*")
            isKept = SetAndGet<DzNode*>(loader, setting, &node);
        else if (setting.type == "DzNumericProperty*")
            isKept = SetAndGet<DzNumericProperty*>(loader, setting, &property);
        else // int and the enumerations
            isKept = SetAndGet(loader, setting, ++whole % 3);
        EXPECT_TRUE(isKept) << setting.name.constData();
    }
    EXPECT_EQ(loader.getFilename(), QLatin1String("Filename text")) << "no setting took another's place";
    EXPECT_EQ(loader.getMorphName(), QLatin1String("MorphName text"));
}

TEST_F(MorphLoaderSettings, come_back_from_a_file_all_of_them)
{
    DzMorphLoader loader;
    loader.setDisplayName(QStringLiteral("A caption"));
    loader.setFilename(QStringLiteral(u"/a b/\u00fc.obj"));
    loader.setMorphName(QStringLiteral("Name"));
    loader.setPropertyGroupPath(QStringLiteral("/Actor/Head"));
    loader.setMorphSubdivision(true);
    loader.setSubdivisionBuiltResolution(3);
    loader.setSubdivisionMinResolution(1);
    loader.setSubdivisionMaxResolution(4);
    loader.setSubdivisionSmoothCage(false);
    loader.setSubdivisionMapping(DzMorphLoader::ZbrushCage);
    loader.setDeltaTolerance(0.0625f);
    loader.setCreateControlProperty(true);
    loader.setControlPropertyERCType(DzERCLink::ERCMultiply);
    loader.setControlPropertyERCUseCustomValue(true);
    loader.setControlPropertyERCCustomValue(2.5f);
    loader.setControlPropertyUseCustomLabel(true);
    loader.setControlPropertyCustomLabel(QStringLiteral("Label"));
    loader.setHideSecondaryProperties(true);
    loader.setReverseDeformations(true);
    loader.setPreserveExistingDeltas(true);
    loader.setReverseDeformationsPose(QStringLiteral("pose.duf"));
    loader.setOverwriteExisting(DzMorphLoader::DeltasOnly);
    loader.setCleanUpOrphans(true);
    loader.setMorphMirroring(DzMorphLoader::ZNegToPos);
    loader.setAttenuateMapPath(QStringLiteral("D-Former_1::weightmap::Tube/Influence Weights"));
    loader.setAttenuateStrength(-1.0f);
    loader.setAttenuateEdgeStrength(0.25f);
    const QString file = fresh("all.dsx"), again = fresh("again.dsx");
    ASSERT_TRUE(loader.saveObjectSettingsToConfigFile(file, QStringLiteral("Tube"), false));
    DzMorphLoader other;
    ASSERT_TRUE(other.readObjectSettingsFromConfigFile(file, QStringLiteral("Tube")));
    EXPECT_EQ(other.getDisplayName(), loader.getDisplayName());
    EXPECT_EQ(other.getFilename(), loader.getFilename());
    EXPECT_EQ(other.getControlPropertyERCType(), DzERCLink::ERCMultiply);
    EXPECT_EQ(other.getDeltaTolerance(), 0.0625f);
    // What was read writes the same file, so nothing was lost on the way.
    ASSERT_TRUE(other.saveObjectSettingsToConfigFile(again, QStringLiteral("Tube"), false));
    EXPECT_EQ(FileText(again), FileText(file));
    DzMorphLoader defaults;
    ASSERT_TRUE(defaults.saveObjectSettingsToConfigFile(again, QStringLiteral("Tube"), false));
    EXPECT_NE(FileText(again), FileText(file));
}

TEST_F(MorphLoaderSettings, of_a_project_leave_each_object_its_file_and_name)
{
    const QString file = fresh("common.dsx");
    DzMorphLoader common;
    common.setFilename(QStringLiteral("other.obj"));
    common.setMorphName(QStringLiteral("Other"));
    common.setDeltaTolerance(0.5f);
    ASSERT_TRUE(common.saveObjectSettingsToConfigFile(file, QString(), true));
    DzMorphLoader loader;
    loader.setFilename(QStringLiteral("mine.obj"));
    loader.setMorphName(QStringLiteral("Mine"));
    ASSERT_TRUE(loader.readObjectCommonSettingsFromConfigFile(file));
    EXPECT_EQ(loader.getDeltaTolerance(), 0.5f);
    EXPECT_EQ(loader.getFilename(), QLatin1String("mine.obj"));
    EXPECT_EQ(loader.getMorphName(), QLatin1String("Mine"));
}

TEST_F(MorphLoaderSettings, that_no_version_knows_are_left_as_they_are)
{
    const QString file = fresh("strange.dsx");
    DzFileIOSettings all;
    DzSettings& section = *all.setSettingsValue(QStringLiteral("Common"));
    section.setIntValue(QStringLiteral("OverwriteExisting"), 17);
    section.setIntValue(QStringLiteral("MorphMirroring"), -2);
    QFile stream(file);
    ASSERT_TRUE(stream.open(QIODevice::WriteOnly));
    stream.write(all.toString().toUtf8());
    stream.close();
    DzMorphLoader loader;
    loader.setOverwriteExisting(DzMorphLoader::DeltasAndERCLinks);
    loader.setMorphMirroring(DzMorphLoader::XSwap);
    EXPECT_TRUE(loader.readObjectCommonSettingsFromConfigFile(file));
    EXPECT_EQ(loader.getOverwriteExisting(), DzMorphLoader::DeltasAndERCLinks);
    EXPECT_EQ(loader.getMorphMirroring(), DzMorphLoader::XSwap);
    EXPECT_FALSE(loader.readObjectCommonSettingsFromConfigFile(TestFile("missing.dsx")));
    EXPECT_FALSE(loader.saveObjectSettingsToConfigFile(TestFile("no/such/folder.dsx"), QString(), true));
}

TEST_F(MorphLoaderSettings, tell_whether_the_morph_is_there_already)
{
    const TubeFigure tube;
    tube.addMorph("There", {1}, {{1, 0, 0}});
    DzMorphLoader loader;
    loader.setMorphName(QStringLiteral("There"));
    EXPECT_TRUE(loader.morphAlreadyExists(tube.figure));
    loader.setMorphName(QStringLiteral("Elsewhere"));
    EXPECT_FALSE(loader.morphAlreadyExists(tube.figure));
    EXPECT_FALSE(loader.morphAlreadyExists(nullptr));
}

TEST_F(MorphLoaderSettings, allow_subdivided_morphs_with_the_add_on_only)
{
    DzMorphLoader loader;
    EXPECT_TRUE(loader.allowMultiResolutionMorphs());
    openhost::SetHdMorphSupport(false);
    EXPECT_FALSE(loader.allowMultiResolutionMorphs());
    openhost::SetHdMorphSupport(true);
    EXPECT_TRUE(loader.allowMultiResolutionMorphs());
}

/// So that a spy can keep them.
const int loaderType = qRegisterMetaType<DzMorphLoader*>();

class MorphLoaderList : public HostTest {
protected:
    MorphLoaderList()
        : changed(&batch, SIGNAL(morphListChanged())), added(&batch, SIGNAL(morphAdded(DzMorphLoader*))),
          removed(&batch, SIGNAL(morphRemoved(DzMorphLoader*, int))),
          moved(&batch, SIGNAL(morphMoved(int, int)))
    {
        EXPECT_GT(loaderType, 0);
    }

    QString names() const
    {
        QStringList list;
        for (int i = 0; i < batch.getNumMorphs(); ++i)
            list << batch.getMorph(i)->getMorphName();
        return list.join(QLatin1Char(' '));
    }

    DzMorphLoaderBatch batch;
    QSignalSpy changed, added, removed, moved;
};

TEST_F(MorphLoaderList, keeps_the_order_that_it_is_given)
{
    batch.addFromFiles({QStringLiteral("/x/a.obj"), QStringLiteral("/x/b.obj")});
    DzMorphLoader own;
    own.setMorphName(QStringLiteral("own"));
    batch.addMorph(&own);
    batch.addMorph(&own);
    batch.addMorph(nullptr);
    EXPECT_EQ(names(), QStringLiteral("a b own"));
    EXPECT_EQ(added.size(), 3);
    EXPECT_EQ(changed.size(), 3);
    EXPECT_EQ(batch.findMorph(&own), 2);
    EXPECT_TRUE(batch.moveMorph(&own, true));
    EXPECT_EQ(names(), QStringLiteral("a own b"));
    ASSERT_EQ(moved.size(), 1);
    EXPECT_EQ(moved[0], QVariantList({2, 1}));
    EXPECT_TRUE(batch.moveMorph(batch.getMorph(0), false));
    EXPECT_EQ(names(), QStringLiteral("own a b"));
    EXPECT_FALSE(batch.moveMorph(&own, true)) << "it is the first";
    EXPECT_FALSE(batch.moveMorph(batch.getMorph(2), false)) << "it is the last";
    EXPECT_EQ(batch.getMorph(-1), nullptr);
    EXPECT_EQ(batch.getMorph(3), nullptr);
    EXPECT_TRUE(batch.removeMorph(&own));
    EXPECT_FALSE(batch.removeMorph(&own));
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].at(1).toInt(), 0);
    EXPECT_EQ(batch.findMorph(&own), -1);
    batch.clear();
    EXPECT_EQ(batch.getNumMorphs(), 0);
    EXPECT_EQ(removed.size(), 3);
}

TEST_F(MorphLoaderList, forgets_a_loader_that_is_deleted)
{
    {
        DzMorphLoader own;
        batch.addMorph(&own);
    }
    EXPECT_EQ(batch.getNumMorphs(), 0);
}

TEST_F(MorphLoaderList, makes_all_its_morphs_from_files_and_meshes_on_its_node)
{
    const TubeFigure tube;
    std::vector<geometry::Vec3f> positions = Tube(8).positions;
    positions[3].y += 2.0f;
    batch.addFromFile(WritePositions("list-file.obj", positions));
    positions[5].z += 1.0f;
    geometry::PolygonMesh shape = Tube(8);
    shape.positions = positions;
    const DzFacetMeshPtr mesh(openhost::MeshAccess::create(shape));
    mesh->setName(QStringLiteral("list-mesh"));
    ASSERT_NE(batch.addFromMesh(mesh), nullptr);
    EXPECT_EQ(batch.addFromMesh(nullptr), nullptr);
    for (int i = 0; i < batch.getNumMorphs(); ++i)
        ASSERT_TRUE(batch.getMorph(i)->setLoadMode(DzMorphLoader::SingleSkinFigure, tube.figure));
    batch.setNode(tube.figure);
    EXPECT_EQ(batch.getNode(), tube.figure);
    DzFileIOSettings settings;
    settings.setIntValue(QStringLiteral("RunSilent"), 1);
    EXPECT_EQ(batch.createMorphs(&settings, nullptr, true, true).toStdString(), "");
    const auto* const fromFile =
        qobject_cast<DzMorph*>(tube.figure->getObject()->findModifier(QStringLiteral("list-file")));
    const auto* const fromMesh =
        qobject_cast<DzMorph*>(tube.figure->getObject()->findModifier(QStringLiteral("list-mesh")));
    ASSERT_TRUE(fromFile && fromMesh);
    EXPECT_EQ(fromFile->getDeltas()->getNumDeltas(), 1);
    EXPECT_EQ(fromMesh->getDeltas()->getNumDeltas(), 2);
}

TEST_F(MorphLoaderList, comes_back_from_a_settings_file)
{
    const QString file = TestFile("project.dsx");
    QFile::remove(file);
    batch.addFromFiles({QStringLiteral("/x/a.obj"), QStringLiteral("/x/b.obj")});
    for (int i = 0; i < 2; ++i)
        batch.getMorph(i)->setDeltaTolerance(0.75f);
    batch.getMorph(1)->setAttenuateStrength(0.5f);
    ASSERT_TRUE(batch.saveProjectSettingsToConfigFile(file, true, true));
    DzMorphLoaderBatch other;
    ASSERT_TRUE(other.addFromConfigFile(file));
    ASSERT_EQ(other.getNumMorphs(), 2);
    EXPECT_EQ(other.getMorph(0)->getFilename(), QLatin1String("/x/a.obj"));
    EXPECT_EQ(other.getMorph(1)->getMorphName(), QLatin1String("b"));
    EXPECT_EQ(other.getMorph(0)->getDeltaTolerance(), 0.75f);
    EXPECT_EQ(other.getMorph(0)->getAttenuateStrength(), 1.0f);
    EXPECT_EQ(other.getMorph(1)->getAttenuateStrength(), 0.5f);
    EXPECT_FALSE(other.addFromConfigFile(TestFile("missing.dsx")));
}

TEST_F(MorphLoaderList, applies_a_preset_to_all_and_leaves_them_their_files)
{
    const TubeFigure tube;
    std::vector<geometry::Vec3f> positions = Tube(8).positions;
    positions[3].y += 2.0f;
    positions[4].y += 0.2f;
    const QString preset = TestFile("preset.dsx");
    QFile::remove(preset);
    DzMorphLoader rough;
    rough.setFilename(QStringLiteral("nothing.obj"));
    rough.setDeltaTolerance(1.0f);
    ASSERT_TRUE(rough.saveObjectSettingsToConfigFile(preset, QString(), true));
    EXPECT_FALSE(batch.usePresetConfiguration());
    batch.setUsePresetConfiguration(true);
    batch.setPresetConfigurationFile(preset);
    EXPECT_TRUE(batch.usePresetConfiguration());
    EXPECT_EQ(batch.presetConfigurationFile(), preset);
    DzMorphLoader& loader = *batch.addFromFile(WritePositions("preset.obj", positions));
    ASSERT_TRUE(loader.setLoadMode(DzMorphLoader::SingleSkinFigure, tube.figure));
    DzFileIOSettings settings;
    settings.setIntValue(QStringLiteral("RunSilent"), 1);
    EXPECT_EQ(batch.createMorphs(&settings, tube.figure).toStdString(), "");
    const auto* const morph =
        qobject_cast<DzMorph*>(tube.figure->getObject()->findModifier(QStringLiteral("preset")));
    ASSERT_NE(morph, nullptr);
    EXPECT_EQ(morph->getDeltas()->getNumDeltas(), 1) << "the preset drops what moves less than a centimetre";
}

} // namespace
