// The whole sequence of a conversion on small figures.
// SPDX-License-Identifier: MIT

#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_library.h"
#include "tests/plugin/mini_scene.h"

#include "dzassetiomgr.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "geometry/deltas.h"
#include "geometry/surface_distance.h"
#include "host/figure/deltas_access.h"
#include "host/figure/mesh_access.h"
#include "host/figure/pipeline.h"
#include "plugin/gnt_convert-impl.h"
#include "shared/ks_exception.h"
#include "shared/ks_property-setting.h"

#include <map>

using kst::daz::FindBoneProperty;
using kst::daz::FindFloatProperty;
using kst::daz::PropertyLocation;

namespace {

/// Fails the operations whose running number is told; counts the others.
class FailAt : public openhost::OperationListener {
public:
    explicit FailAt(int number) : _number(number) { openhost::SetOperationListener(this); }
    ~FailAt() override { openhost::SetOperationListener(nullptr); }
    bool allow(const QString& operation, const QString& detail) override
    {
        // Only what tells its caller that it failed; a refused dial or label has no way to say so.
        static const std::vector<QString> telling{QStringLiteral("export"), QStringLiteral("import"),
                                                  QStringLiteral("openFile"), QStringLiteral("transfer"),
                                                  QStringLiteral("createMorph")};
        for (const QString& name : telling) {
            if (operation != name)
                continue;
            if (count++ == _number) {
                failed = (operation + QLatin1Char(' ') + detail).toStdString();
                return false;
            }
        }
        return true;
    }
    int count = 0;
    std::string failed;

private:
    int _number;
};

class ConversionTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        AddMiniLibrary();
    }

    void loadPair(const char* sourcePath)
    {
        source = &LoadMini(sourcePath);
        target = &LoadMini("People/Genesis 9/Genesis 9.duf");
        source->setLabel(QLatin1String("Vera"));
        dial(*source, "Wide").setValue(1.0f);
        dial(*source, "Bulge").setValue(0.5f);
        selectBoth();
    }

    void selectBoth()
    {
        dzScene->selectAllNodes(false);
        source->select(true);
        target->select(true);
    }

    static DzFloatProperty& dial(DzFigure& figure, const char* name)
    {
        return *FindFloatProperty(figure, PropertyLocation::Any, name, true);
    }
    static DzFloatProperty& transform(DzFigure& figure, const char* name)
    {
        return *FindFloatProperty(figure, PropertyLocation::Node, name, true);
    }

    std::vector<GntCreatedMorph> convert(GntJobs jobs)
    {
        GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
        return converter.run_X(GntResolution::Base, converter.makeConvertedLabel(),
                               {"/G/Full", "/G/Head", "/G/Body"}, {"Vera", "Vera Head", "Vera Body"}, jobs,
                               missing);
    }

    static GntJobs allJobs() { return GntJobs(GntJobFlag::Full) | GntJobFlag::Head | GntJobFlag::Body; }

    static std::vector<geometry::Vec3f> deltasOf(DzFigure& figure, const char* morph)
    {
        const DzMorph& made = kst::MorphList::FindMorph_X(figure, morph);
        return geometry::ToDense(openhost::DeltasAccess::deltas(*made.getDeltas()),
                                 figure.getObject()->pipeline().base().vertexCount());
    }

    geometry::DistanceSummary distance()
    {
        const geometry::PolygonMesh& from = openhost::MeshAccess::mesh(*target->getObject()->getCachedGeom());
        const geometry::PolygonMesh& to = openhost::MeshAccess::mesh(*source->getObject()->getCachedGeom());
        return geometry::Summarize(geometry::SurfaceDistances(from.positions, to.view()));
    }

    /// What a conversion has to leave as it was.
    std::map<std::string, double> stateOfBoth() const
    {
        std::map<std::string, double> state;
        for (DzFigure* const figure : {source, target})
            for (const char* const name :
                 {"XTranslate", "YTranslate", "ZTranslate", "XRotate", "YRotate", "ZRotate"})
                state[std::string(figure == source ? "source " : "target ") + name] =
                    transform(*figure, name).getValue();
        state["source resolution"] = static_cast<int>(kst::daz::GetNodeResolution(*source));
        for (const char* const name : {"Wide", "Bulge", "Unused"})
            state[std::string("source ") + name] = dial(*source, name).getValue();
        return state;
    }

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
    GntMissingMorphs missing;
};

const char* const genesis3 = "People/Genesis 3 Female/Genesis 3 Female.duf";
const char* const genesis8 = "People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf";

TEST_F(ConversionTest, makes_morphs_that_give_the_target_the_source_shape)
{
    loadPair(genesis3);
    const std::vector<GntCreatedMorph> created = convert(allJobs());
    ASSERT_EQ(created.size(), 3u);
    EXPECT_EQ(created[0].kind, 0);
    EXPECT_EQ(created[1].kind, 1);
    EXPECT_EQ(created[2].kind, 2);
    EXPECT_EQ(created[1].name, "Vera Head");
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
    loadPair(genesis8);
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
    loadPair(genesis3);
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
    loadPair(genesis8);
    convert(allJobs());
    const auto full = deltasOf(*target, "Vera"), head = deltasOf(*target, "Vera Head"),
               body = deltasOf(*target, "Vera Body");
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
    loadPair(genesis8);
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

TEST_F(ConversionTest, restores_both_figures_after_a_failure_at_any_operation)
{
    int operations = 0;
    {
        loadPair(genesis8);
        const FailAt never(-1);
        convert(allJobs());
        operations = never.count;
    }
    ASSERT_GE(operations, 12);
    for (int number = 0; number < operations; ++number) {
        TestHost().reset();
        AddMiniLibrary();
        loadPair(genesis8);
        transform(*target, "YTranslate").setValue(25.0f);
        const auto before = stateOfBoth();
        const FailAt failing(number);
        EXPECT_THROW(convert(allJobs()), kst::Exception) << failing.failed;
        EXPECT_EQ(stateOfBoth(), before) << failing.failed;
        EXPECT_EQ(source->getLabel(), QLatin1String("Vera")) << failing.failed;
    }
}

TEST_F(ConversionTest, works_again_after_a_failed_export)
{
    loadPair(genesis3);
    {
        const FailAt failing(0);
        EXPECT_THROW(convert(GntJobFlag::Full), kst::Exception);
    }
    selectBoth();
    EXPECT_EQ(convert(GntJobFlag::Full).size(), 1u);
}

TEST_F(ConversionTest, leaves_the_source_resolution_as_it_was)
{
    loadPair(genesis3);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), kst::daz::NodeResolution::HighResolution);
    convert(GntJobFlag::Full);
    EXPECT_EQ(kst::daz::GetNodeResolution(*source), kst::daz::NodeResolution::HighResolution);
}

TEST_F(ConversionTest, shows_the_steps_in_order_with_one_text_per_job)
{
    loadPair(genesis3);
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
    loadPair(genesis3);
    dial(*source, "Wide").setValue(0.0f);
    dial(*source, "Bulge").setValue(0.0f);
    try {
        convert(GntJobFlag::Full);
        FAIL() << "nothing was refused";
    } catch (const kst::Exception& error) {
        EXPECT_STREQ(error.what(), "source figure Vera has no morphs dialed in; nothing to do");
    }
}

TEST_F(ConversionTest, loads_the_head_split_once_for_head_and_body)
{
    loadPair(genesis3);
    const Recorder recorder;
    convert(allJobs());
    const auto isHeadSplit = [](const std::string& line) {
        return line.find("openFile") == 0 && line.find("G9 HeadSplit DFormer.duf") != std::string::npos;
    };
    EXPECT_EQ(std::count_if(recorder.lines.begin(), recorder.lines.end(), isHeadSplit), 1);
}

} // namespace
