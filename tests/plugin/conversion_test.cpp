// The whole sequence of a conversion on small figures.
// SPDX-License-Identifier: MIT

#include "tests/plugin/conversion_fixture.h"
#include "tests/plugin/mini_library.h"

#include "dzfacetmesh.h"
#include "dzobject.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "geometry/surface_distance.h"
#include "gnt_convert-impl.h"
#include "ks_property-setting.h"
#include "tests/shared/throws.h"

#include <algorithm>

using kst::daz::FindBoneProperty;

namespace {

class ConversionTest : public ConversionFixture {
protected:
    geometry::DistanceSummary distance()
    {
        const geometry::PolygonMesh& from = openhost::MeshAccess::mesh(*target->getObject()->getCachedGeom());
        const geometry::PolygonMesh& to = openhost::MeshAccess::mesh(*source->getObject()->getCachedGeom());
        return geometry::Summarize(geometry::SurfaceDistances(from.positions, to.view()));
    }
};

TEST_F(ConversionTest, makes_morphs_that_give_the_target_the_source_shape)
{
    loadPairInOnePlace(genesis3Female);
    const std::vector<GntCreatedMorph> created = convert(allJobs());
    ASSERT_EQ(created.size(), 3u);
    EXPECT_EQ(created[0].kind, 0);
    EXPECT_EQ(created[1].kind, 1);
    EXPECT_EQ(created[2].kind, 2);
    EXPECT_EQ(created[1].name, "Head");
    EXPECT_EQ(created[1].property->getPath(), QLatin1String("/G/Head"));
    EXPECT_TRUE(missing.empty());
    created[0].property->setValue(1.0f);
    const auto& base = target->getObject()->pipeline().base().positions;
    const auto& shape = openhost::MeshAccess::mesh(*target->getObject()->getCachedGeom()).positions;
    for (std::size_t v = 0; v < base.size(); ++v) {
        // Both meshes approximate one ellipsoid by coarse quads, so they lie some millimetres from each
        // other.
        EXPECT_LT(geometry::Length(shape[v] - SourceShape(base[v], 1.0f, 0.5f)), 0.6f) << "vertex " << v;
    }
}

TEST_F(ConversionTest, fits_a_genesis_8_source_in_the_pose_of_its_thighs)
{
    loadPairInOnePlace(genesis8Female);
    const std::vector<GntCreatedMorph> created = convert(GntJobFlag::Full);
    EXPECT_EQ(FindBoneProperty(*target, "l_thigh", "ZRotate", true)->getValue(), 0.0f);
    EXPECT_EQ(FindBoneProperty(*target, "r_thigh", "ZRotate", true)->getValue(), 0.0f);
    created[0].property->setValue(1.0f);
    const double atRest = distance().mean;
    FindBoneProperty(*target, "l_thigh", "ZRotate", true)->setValue(6.5f);
    FindBoneProperty(*target, "r_thigh", "ZRotate", true)->setValue(-6.5f);
    const double posed = distance().mean;
    // The blobs' own coarseness is about 2 mm; at rest the thighs are centimetres away.
    EXPECT_LT(posed, 0.4);
    EXPECT_GT(atRest, 2.0 * posed);
}

TEST_F(ConversionTest, builds_the_morph_against_the_bases_that_are_dialed_in)
{
    loadPairInOnePlace(genesis3Female);
    const std::shared_ptr<GntParams> params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    params->settingBaseFeminine->getProperty().setValue(1.0f);
    const std::vector<GntCreatedMorph> created = convert(GntJobFlag::Full);
    created[0].property->setValue(1.0f);
    const double withBase = distance().mean;
    EXPECT_LT(withBase, 0.4);
    params->settingBaseFeminine->getProperty().setValue(0.0f);
    EXPECT_GT(distance().mean, 3.0 * withBase) << "without its base the morph cannot fit";
}

TEST_F(ConversionTest, splits_head_and_body_so_that_they_add_up_to_the_whole)
{
    loadPairInOnePlace(genesis8Female);
    convert(allJobs());
    MadeMorphs made = madeMorphs();
    const std::vector<geometry::Vec3f>&full = made["Full"], &head = made["Head"], &body = made["Body"];
    ASSERT_EQ(full.size(), head.size());
    ASSERT_EQ(full.size(), body.size());
    bool hasBlend = false;
    for (std::size_t v = 0; v < full.size(); ++v) {
        // Each part drops deltas below 0.001 cm on its own.
        EXPECT_LE(geometry::Length(head[v] + body[v] - full[v]), 0.0021f) << "vertex " << v;
        hasBlend = hasBlend || (geometry::Length(head[v]) > 0.01f && geometry::Length(body[v]) > 0.01f);
    }
    EXPECT_TRUE(hasBlend);
}

TEST_F(ConversionTest, puts_both_figures_back_and_names_the_target_after_the_source)
{
    loadPairInOnePlace(genesis8Female);
    transform(*source, "XTranslate").setValue(40.0f);
    transform(*source, "YRotate").setValue(30.0f);
    transform(*target, "YTranslate").setValue(25.0f);
    transform(*target, "ZTranslate").setValue(-15.0f);
    const auto before = stateOfBoth();
    const int nodes = dzScene->getNumNodes();
    convert(allJobs());
    EXPECT_EQ(stateOfBoth(), before);
    EXPECT_EQ(source->getLabel(), QLatin1String("Vera"));
    EXPECT_EQ(target->getLabel(), QLatin1String("Vera converted to G9"));
    EXPECT_EQ(dzScene->getNumNodes(), nodes) << "nothing temporary stays in the scene";
}

TEST_F(ConversionTest, leaves_the_source_resolution_as_it_was)
{
    loadPairInOnePlace(genesis3Female);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), kst::daz::NodeResolution::HighResolution);
    convert(GntJobFlag::Full);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), kst::daz::NodeResolution::HighResolution);
}

TEST_F(ConversionTest, shows_the_steps_in_order_with_one_text_per_job)
{
    loadPairInOnePlace(genesis3Female);
    const GntConverter::Impl impl(GntConverter::FindSourceAndTargetInSceneSelected_X());
    const std::vector<std::string> steps =
        impl.prepareSteps(GntResolution::Base, GntJobs(GntJobFlag::Head) | GntJobFlag::Body);
    ASSERT_EQ(steps.size(), 18u);
    EXPECT_EQ(steps.front(), "Adjusting target G9 before creating morphs");
    EXPECT_EQ(steps[1], "Exporting source as OBJ");
    EXPECT_EQ(steps[16], "Creating head morph");
    EXPECT_EQ(steps[17], "Creating body morph");
}

TEST_F(ConversionTest, refuses_a_source_without_morphs)
{
    loadPairInOnePlace(genesis3Female);
    dial(*source, "Wide").setValue(0.0f);
    dial(*source, "Bulge").setValue(0.0f);
    EXPECT_EQ(MessageOf([&] { convert(GntJobFlag::Full); }),
              "source figure " + Quoted("Vera") + " has no morphs dialed in; nothing to do");
}

TEST_F(ConversionTest, loads_the_head_split_once_for_head_and_body)
{
    loadPairInOnePlace(genesis3Female);
    const Recorder recorder;
    convert(allJobs());
    const auto isHeadSplit = [](const std::string& line) {
        return line.find("openFile") == 0 && line.find("G9 HeadSplit DFormer.duf") != std::string::npos;
    };
    EXPECT_EQ(std::count_if(recorder.lines.begin(), recorder.lines.end(), isHeadSplit), 1);
}

} // namespace
