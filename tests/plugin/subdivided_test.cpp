// Conversions at subdivided resolution.
// SPDX-License-Identifier: MIT

#include "dzcontentmgr.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "geometry/obj.h"
#include "geometry/surface_distance.h"
#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "ks_exception.h"
#include "ks_filtered-save.h"
#include "ks_morph-loader.h"
#include "ks_morphlist.h"
#include "ks_obj-settings.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/shared/throws.h"

#include <QDir>

#include <cmath>

using geometry::Vec3f;
using kst::daz::NodeResolution;

namespace {

const geometry::PolygonMesh& WorldMesh(const DzFigure& figure)
{
    return openhost::MeshAccess::mesh(*figure.getObject()->getCachedGeom());
}

/// Where folds put a point of the smooth shape.
Vec3f Fold(Vec3f p)
{
    return Vec3f{std::sin(0.5f * p.y), 0.0f, std::sin(0.4f * p.y + 0.3f * p.x)} * 0.4f;
}

class SubdividedConversion : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        AddMiniLibrary();
        source = &LoadMini("People/Genesis 3 Female/Genesis 3 Female.duf");
        target = &LoadMini("People/Genesis 9/Genesis 9.duf");
        source->setLabel(QStringLiteral("Vera"));
        dial(*source, "Wide").setValue(1.0f);
        level(*source).setValue(2);
    }

    static DzFloatProperty& dial(DzFigure& figure, const char* name)
    {
        return *kst::daz::FindFloatProperty(figure, kst::daz::PropertyLocation::Any, name, true);
    }
    static DzIntProperty& level(const DzFigure& figure)
    {
        return *kst::daz::FindSubdivisionLevelIntProperty(figure, true);
    }
    static void showLevel(const DzFigure& figure, int wanted)
    {
        kst::daz::SetNodeResolution(figure, NodeResolution::HighResolution, true);
        level(figure).setValue(wanted);
    }

    /// Gives the source folds a few millimetres high, narrower than its cage's faces.
    void addFolds()
    {
        geometry::PolygonMesh folded = WorldMesh(*source);
        for (Vec3f& p : folded.positions)
            p += Fold(p);
        const std::string file = TestFolder().toStdString() + "/folds.obj";
        geometry::ObjPart part;
        part.mesh = folded.view();
        geometry::WriteObj(file, {&part, 1});
        kst::ObjImportSettings options;
        options.loadBlenderDefaults();
        options.setScale(1.0f);
        kst::MorphLoaderBatch::Exec_X(source, file, "Folds", options.toJsonStringOrThrowQ(), true, 2, "/G",
                                      true, std::string_view(), 0.0f);
        kst::MorphList::FindMorphProperty_X(*source, "Folds").setValue(1.0f);
    }

    std::shared_ptr<GntParams> selected() const
    {
        dzScene->selectAllNodes(false);
        source->select(true);
        target->select(true);
        return GntConverter::FindSourceAndTargetInSceneSelected_X();
    }

    std::vector<GntCreatedMorph> convert(const std::shared_ptr<GntParams>& params, GntJobs jobs,
                                         GntResolution resolution = GntResolution::Subd)
    {
        GntConverter converter(params);
        return converter.run_X(resolution, converter.makeConvertedLabel(), {"/G/Full", "/G/Head", "/G/Body"},
                               {"Vera", "Vera Head", "Vera Body"}, jobs, missing);
    }

    geometry::DistanceSummary distance() const
    {
        return geometry::Summarize(
            geometry::SurfaceDistances(WorldMesh(*target).positions, WorldMesh(*source).view()));
    }

    const geometry::MultiresDetail& detailOf(const char* name) const
    {
        return openhost::DeltasAccess::detail(*kst::MorphList::FindMorph_X(*target, name).getDeltas());
    }

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
    GntMissingMorphs missing;
};

const GntJobs allJobs = GntJobs(GntJobFlag::Full) | GntJobFlag::Head | GntJobFlag::Body;

} // namespace

TEST_F(SubdividedConversion, carries_folds_over_that_the_cage_cannot_hold)
{
    const auto shapeAfter = [this](GntResolution resolution) {
        const std::vector<GntCreatedMorph> created = convert(selected(), GntJobFlag::Full, resolution);
        created[0].property->setValue(1.0f);
        showLevel(*source, 2);
        showLevel(*target, 2);
        std::vector<Vec3f> positions = WorldMesh(*target).positions;
        created[0].property->setValue(0.0f);
        return positions;
    };
    const std::vector<Vec3f> smooth = shapeAfter(GntResolution::Subd);
    addFolds();
    const std::vector<Vec3f> ofCage = shapeAfter(GntResolution::Base);
    const std::vector<Vec3f> folded = shapeAfter(GntResolution::Subd);
    double size = 0.0, error = 0.0, cageError = 0.0;
    for (std::size_t v = 0; v < smooth.size(); ++v) {
        const Vec3f fold = Fold(smooth[v]);
        size += double(geometry::Length(fold));
        error += double(geometry::Length(folded[v] - smooth[v] - fold));
        cageError += double(geometry::Length(ofCage[v] - smooth[v] - fold));
    }
    // At level 2 vertices are some 2.5 cm apart; between them a wave of 0.5 radians a centimetre is straight,
    // which is (0.5 * 2.5)^2 / 8 of its height off at most.
    EXPECT_LT(error, 0.2 * size);
    EXPECT_GT(cageError, 0.4 * size) << "folds that the cage can hold show nothing";
    EXPECT_FALSE(detailOf("Vera").empty());
    EXPECT_TRUE(missing.empty());
}

TEST_F(SubdividedConversion, leaves_the_target_at_the_source_s_level_and_the_source_as_it_was)
{
    convert(selected(), GntJobFlag::Full);
    EXPECT_EQ(kst::daz::GetNodeResolution(*target), NodeResolution::HighResolution);
    EXPECT_EQ(level(*target).getValue(), 2);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), NodeResolution::HighResolution);
    EXPECT_EQ(level(*source).getValue(), 2);
    EXPECT_EQ(source->getLabel(), QStringLiteral("Vera"));
}

TEST_F(SubdividedConversion, splits_head_and_body_so_that_they_add_up_to_the_whole)
{
    addFolds();
    const std::vector<GntCreatedMorph> created = convert(selected(), allJobs);
    ASSERT_EQ(created.size(), 3u);
    created[0].property->setValue(1.0f);
    const std::vector<Vec3f> whole = WorldMesh(*target).positions;
    created[0].property->setValue(0.0f);
    created[1].property->setValue(1.0f);
    created[2].property->setValue(1.0f);
    const std::vector<Vec3f>& parts = WorldMesh(*target).positions;
    // Each is made with the loader's tolerance of 0.001 cm.
    for (std::size_t v = 0; v < whole.size(); ++v)
        EXPECT_LE(geometry::Length(whole[v] - parts[v]), 0.002f) << v;
}

TEST_F(SubdividedConversion, takes_the_level_of_the_moment_of_selection)
{
    const std::shared_ptr<GntParams> params = selected();
    EXPECT_EQ(params->iSubdLevelSource, 2);
    level(*source).setValue(1);
    EXPECT_EQ(params->iSubdLevelSource, 2);
    // The source is exported at the level that it has now, which the other files do not have.
    EXPECT_THROW(convert(params, GntJobFlag::Full), kst::Exception);
    EXPECT_EQ(level(*source).getValue(), 1);
}

TEST_F(SubdividedConversion, raises_the_largest_level_of_the_figures_where_the_source_s_is_beyond_it)
{
    level(*target).setMax(1);
    level(*target).setValue(1);
    convert(selected(), GntJobFlag::Full);
    EXPECT_EQ(level(*target).getMax(), 2);
    EXPECT_EQ(level(*target).getValue(), 2);
    level(*source).setValue(1);
    convert(selected(), GntJobFlag::Full);
    EXPECT_EQ(level(*target).getMax(), 2) << "it is never lowered";
    EXPECT_EQ(level(*target).getValue(), 1);
}

TEST_F(SubdividedConversion, of_level_0_is_one_of_the_cage)
{
    level(*source).setValue(0);
    const std::vector<GntCreatedMorph> created = convert(selected(), GntJobFlag::Full);
    EXPECT_TRUE(detailOf("Vera").empty());
    created[0].property->setValue(1.0f);
    EXPECT_LT(distance().mean, 0.4); // the blobs' own coarseness is about 2 mm
}

TEST_F(SubdividedConversion, fails_for_a_source_at_base_resolution_and_puts_it_back)
{
    kst::daz::SetNodeResolution(*source, NodeResolution::BaseResolution, true);
    // The source's file holds the cage's vertices only.
    const std::string message = MessageOf([this] { convert(selected(), GntJobFlag::Full); });
    const std::string start = "failed to find new morph " + Quoted("Temporary high-res morph") + " in node ";
    const std::string end = " figure after conversion; Morph Loader Pro returned: ";
    ASSERT_GT(message.size(), start.size() + end.size()) << message;
    EXPECT_EQ(message.substr(0, start.size()), start);
    EXPECT_EQ(message.substr(message.size() - end.size()), end);
    EXPECT_EQ(source->getLabel(), QStringLiteral("Vera"));
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), NodeResolution::BaseResolution);
}

TEST_F(SubdividedConversion, fails_in_a_host_without_the_add_on_when_the_target_s_morph_is_made)
{
    openhost::SetHdMorphSupport(false);
    EXPECT_EQ(MessageOf([this] { convert(selected(), GntJobFlag::Full); }),
              "failed to find new morph " + Quoted("Vera") + " in node " + Quoted("Vera converted to G9") +
                  " figure after conversion; Morph Loader Pro returned: ");
    EXPECT_TRUE(
        LogText().contains(QStringLiteral("need the plug-in Morph Loader Pro SubDivision Resolution")));
}

TEST_F(SubdividedConversion, is_saved_and_dialed_again_in_a_fresh_scene)
{
    addFolds();
    std::vector<GntCreatedMorph> created = convert(selected(), GntJobFlag::Full);
    created[0].property->setValue(1.0f);
    const std::vector<Vec3f> whole = WorldMesh(*target).positions;
    const QString folder = TestFolder() + QStringLiteral("/subdivided");
    ASSERT_TRUE(QDir().mkpath(folder));
    kst::FilteredSave::SaveMorphSupportAsset_X(*target, folder.toStdString(), "Acme", "Vera", {"Vera"}, true,
                                               false);
    TestHost().reset();
    AddMiniLibrary();
    dzApp->getContentMgr()->addContentDirectory(folder, false);
    DzFigure& fresh = LoadMini("People/Genesis 9/Genesis 9.duf");
    showLevel(fresh, 2);
    kst::MorphList::FindMorphProperty_X(fresh, "Vera").setValue(1.0f);
    EXPECT_EQ(WorldMesh(fresh).positions, whole);
}
