// Morph Loader Pro with files of subdivided meshes.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzenumproperty.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "tests/host/tools_fixture.h"
#include "tools/morph_loader.h"

#include <cmath>

using geometry::Vec3f;

namespace {

/// Bumps as fine as the vertices, larger along the way.
std::vector<Vec3f> Wrinkled(std::vector<Vec3f> positions, float size = 0.1f)
{
    for (std::size_t v = 0; v < positions.size(); ++v) {
        const float t = static_cast<float>(v);
        positions[v] += Vec3f{0.3f * std::sin(t), std::cos(1.7f * t), std::sin(2.3f * t)} * size;
    }
    return positions;
}

/// Moves everything below X = 0 up, smoothly.
std::vector<Vec3f> Lifted(std::vector<Vec3f> positions)
{
    for (Vec3f& p : positions)
        p.y += p.x < 0.0f ? 0.01f * p.x * p.x : 0.0f;
    return positions;
}

constexpr float tolerance = 0.001f; // cm, of the loader
/// What the loader may leave out, and single precision on coordinates of some 20 cm.
constexpr float allowed = tolerance + 2e-5f;

class SubdividedMorph : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        tube = std::make_unique<TubeFigure>("Tube", true, 8, true);
        view(2);
        loader.setMorphName(QStringLiteral("New"));
        loader.setDeltaTolerance(tolerance);
        loader.setOverwriteExisting(DzMorphLoader::DeltasOnly);
        loader.setMorphSubdivision(true);
        loader.setSubdivisionBuiltResolution(2);
        loader.setReverseDeformations(true);
    }

    DzFacetShape& shape() const
    {
        return *qobject_cast<DzFacetShape*>(tube->figure->getObject()->getCurrentShape());
    }
    void view(int level) const
    {
        shape().getLODControl()->setValue(1);
        shape().getSubDLevelControl()->setValue(level);
    }
    std::vector<Vec3f> seen() const { return WorldPositions(*tube->figure); }
    QString load(const std::vector<Vec3f>& positions)
    {
        loader.setFilename(WritePositions("fine.obj", positions));
        return loader.createMorph(nullptr, tube->figure, true, true);
    }
    DzMorph* morph(const char* name = "New") const
    {
        return qobject_cast<DzMorph*>(tube->figure->getObject()->findModifier(QString::fromUtf8(name)));
    }
    static void dial(DzMorph* morph, float value) { morph->getValueControl()->setValue(value); }
    static const geometry::MultiresDetail& detail(const DzMorph& morph)
    {
        return openhost::DeltasAccess::detail(*morph.getDeltas());
    }
    /// Loads a wrinkled shape as a morph of its own and dials it.
    void addWrinkles(const char* name, float value)
    {
        loader.setMorphName(QString::fromUtf8(name));
        EXPECT_EQ(load(Wrinkled(seen())), QString());
        dial(morph(name), value);
        loader.setMorphName(QStringLiteral("New"));
    }

    std::unique_ptr<TubeFigure> tube;
    DzMorphLoader loader;
};

} // namespace

TEST_F(SubdividedMorph, gives_the_file_again_at_every_level)
{
    for (const int level : {1, 2, 3}) {
        view(level);
        loader.setSubdivisionBuiltResolution(level);
        const std::vector<Vec3f> file = Wrinkled(Lifted(seen()));
        EXPECT_EQ(load(file), QString());
        ASSERT_NE(morph(), nullptr);
        EXPECT_EQ(detail(*morph()).levels.size(), std::size_t(level));
        dial(morph(), 1.0f);
        EXPECT_LE(LargestDistance(seen(), file), allowed) << "level " << level;
        dial(morph(), 0.0f);
    }
}

TEST_F(SubdividedMorph, gives_the_file_again_under_a_pose_and_other_dials)
{
    addWrinkles("Present", 0.6f);
    dial(tube->addMorph("Cage", {3, 20, 21}, {{0, 1, 0}, {1, 0, 0}, {0, 0, -2}}), 0.8f);
    tube->lower->getZRotControl()->setValue(35.0f);
    tube->figure->getXRotControl()->setValue(20.0f);
    tube->figure->getYPosControl()->setValue(-7.0f);
    tube->figure->getScaleControl()->setValue(1.5f);
    const std::vector<Vec3f> file = Wrinkled(Lifted(seen()), 0.2f);
    EXPECT_EQ(load(file), QString());
    dial(morph(), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), 1.5f * allowed); // the figure is scaled
}

TEST_F(SubdividedMorph, replaces_one_that_is_dialed_in_as_if_it_were_not_there)
{
    addWrinkles("New", 1.0f);
    const std::vector<Vec3f> file = Lifted(seen());
    EXPECT_EQ(load(file), QString());
    EXPECT_LE(LargestDistance(seen(), file), allowed);
}

TEST_F(SubdividedMorph, without_reversal_is_the_file_on_the_plain_base_mesh)
{
    const std::vector<Vec3f> file = Wrinkled(Lifted(seen()));
    loader.setReverseDeformations(false);
    tube->lower->getZRotControl()->setValue(35.0f);
    dial(tube->addMorph("Other", {3}, {{0, 1, 0}}), 1.0f);
    EXPECT_EQ(load(file), QString());
    tube->lower->getZRotControl()->setValue(0.0f);
    dial(morph("Other"), 0.0f);
    dial(morph(), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), allowed);
}

TEST_F(SubdividedMorph, of_a_shape_that_the_cage_can_make_is_all_cage)
{
    dial(tube->addMorph("Cage", {3, 20, 21}, {{0, 1, 0}, {1, 0, 0}, {0, 0, -2}}), 1.0f);
    const std::vector<Vec3f> file = seen();
    dial(morph("Cage"), 0.0f);
    EXPECT_EQ(load(file), QString());
    EXPECT_TRUE(detail(*morph()).empty());
    const geometry::SparseDeltas& deltas = openhost::DeltasAccess::deltas(*morph()->getDeltas());
    EXPECT_EQ(deltas.vertices, (std::vector<std::uint32_t>{3, 20, 21}));
}

TEST_F(SubdividedMorph, shows_its_coarser_part_at_the_levels_below)
{
    const std::vector<Vec3f> smooth = seen();
    EXPECT_EQ(load(Wrinkled(smooth)), QString());
    view(1);
    const std::vector<Vec3f> before = seen();
    dial(morph(), 1.0f);
    EXPECT_GT(LargestDistance(seen(), before), 0.01f);
    shape().getLODControl()->setValue(0);
    EXPECT_EQ(seen().size(), Tube(8).positions.size());
    view(3);
    EXPECT_EQ(seen().size(), std::size_t(8 * (8 * 8 + 1) * 8)) << "finer than the file: smooth between";
}

TEST_F(SubdividedMorph, shows_up_to_its_own_limit_of_levels)
{
    EXPECT_EQ(load(Wrinkled(seen())), QString());
    dial(morph(), 1.0f);
    const std::vector<Vec3f> whole = seen();
    morph()->setHDLimit(0);
    const std::vector<Vec3f> cageOnly = seen();
    EXPECT_GT(LargestDistance(whole, cageOnly), 0.05f);
    morph()->setHDLimit(-1);
    EXPECT_EQ(seen(), whole);
}

TEST_F(SubdividedMorph, moves_with_the_pose_of_the_figure)
{
    EXPECT_EQ(load(Wrinkled(seen())), QString());
    dial(morph(), 1.0f);
    const std::vector<Vec3f> rest = seen();
    tube->upper->getZRotControl()->setValue(90.0f); // all of the tube about (-20, 0, 0)
    std::vector<Vec3f> turned = rest;
    for (Vec3f& p : turned)
        p = {-20.0f - p.y, p.x + 20.0f, p.z};
    EXPECT_LE(LargestDistance(seen(), turned), 1e-4f);
}

TEST_F(SubdividedMorph, parts_of_a_map_and_of_its_complement_add_up_to_the_whole)
{
    auto* const former = new DzDForm;
    former->setName(QStringLiteral("D-Former_1"));
    dzScene->addNode(former);
    auto* const map = new DzWeightMap(72, QStringLiteral("Influence Weights"));
    for (int v = 0; v < 72; ++v)
        map->setFloatWeight(v, static_cast<float>(v / 8) / 8.0f);
    former->applyToNode(tube->figure)->setInfluenceWeights(map);
    const std::vector<Vec3f> before = seen(), file = Wrinkled(Lifted(before));

    loader.setAttenuateMapPath(QStringLiteral("D-Former_1::weightmap::Tube/Influence Weights"));
    loader.setMorphName(QStringLiteral("Head"));
    loader.setAttenuateStrength(1.0f);
    EXPECT_EQ(load(file), QString());
    loader.setMorphName(QStringLiteral("Body"));
    loader.setAttenuateStrength(-1.0f);
    EXPECT_EQ(load(file), QString());
    dial(morph("Head"), 1.0f);
    // The map is 0 at the end where the file is lifted most; what its wrinkles add there is not in this part.
    std::size_t untouched = 0;
    const std::vector<Vec3f> withHead = seen();
    for (std::size_t v = 0; v < before.size(); ++v)
        untouched += geometry::Length(withHead[v] - before[v]) < 1e-6f;
    EXPECT_GE(untouched, 8u);
    dial(morph("Body"), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), allowed);
}

TEST_F(SubdividedMorph, keeps_only_levels_within_its_range)
{
    const std::vector<Vec3f> file = Wrinkled(Lifted(seen()));
    loader.setSubdivisionMaxResolution(1);
    EXPECT_EQ(load(file), QString());
    EXPECT_FALSE(detail(*morph()).levels[0].empty());
    EXPECT_TRUE(detail(*morph()).levels[1].empty());
    loader.setSubdivisionMaxResolution(9);
    loader.setSubdivisionMinResolution(2);
    EXPECT_EQ(load(file), QString());
    EXPECT_TRUE(detail(*morph()).levels[0].empty());
    EXPECT_FALSE(detail(*morph()).levels[1].empty());
    EXPECT_FALSE(morph()->getDeltas()->hasDeltas());
}

TEST_F(SubdividedMorph, without_a_smooth_cage_has_the_places_of_its_vertices)
{
    loader.setSubdivisionSmoothCage(false);
    const std::vector<Vec3f> before = seen();
    std::vector<Vec3f> file = before;
    for (Vec3f& p : file)
        p += Vec3f{0, 0, 1};
    EXPECT_EQ(load(file), QString());
    // A tube's subdivision lies within it; its cage vertices move to where their descendants are.
    dial(morph(), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), allowed);
    EXPECT_FALSE(detail(*morph()).empty());
    shape().getLODControl()->setValue(0);
    const std::vector<Vec3f> cage = seen();
    for (const Vec3f p : cage) {
        float nearest = 1e9f;
        for (const Vec3f q : file)
            nearest = std::min(nearest, geometry::Length(p - q));
        EXPECT_LE(nearest, allowed);
    }
}

TEST_F(SubdividedMorph, mirrored_across_and_back_is_the_file_again)
{
    // The tube is its own mirror image across X = 0.
    const std::vector<Vec3f> file = Wrinkled(Lifted(seen()));
    loader.setMorphMirroring(DzMorphLoader::XSwap);
    EXPECT_EQ(load(file), QString());
    dial(morph(), 1.0f);
    const std::vector<Vec3f> mirrored = seen();
    EXPECT_GT(LargestDistance(mirrored, file), 0.5f);
    dial(morph(), 0.0f);
    EXPECT_EQ(load(mirrored), QString());
    dial(morph(), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), 2 * allowed);
}

TEST_F(SubdividedMorph, keeps_detail_of_what_the_file_does_not_move_when_asked)
{
    addWrinkles("New", 0.0f);
    const std::size_t before = detail(*morph()).levels[1].size();
    std::vector<Vec3f> file = seen();
    file[10] += Vec3f{0, 0.5f, 0};
    loader.setPreserveExistingDeltas(true);
    EXPECT_EQ(load(file), QString());
    EXPECT_GE(detail(*morph()).levels[1].size(), before - 1);
    loader.setPreserveExistingDeltas(false);
    EXPECT_EQ(load(file), QString());
    EXPECT_LT(detail(*morph()).levels[1].size(), before);
}

TEST_F(SubdividedMorph, of_level_0_is_one_of_the_cage)
{
    shape().getLODControl()->setValue(0);
    loader.setSubdivisionBuiltResolution(0);
    const std::vector<Vec3f> file = Lifted(seen());
    EXPECT_EQ(load(file), QString());
    EXPECT_TRUE(detail(*morph()).levels.empty());
    dial(morph(), 1.0f);
    EXPECT_LE(LargestDistance(seen(), file), allowed);
}

TEST_F(SubdividedMorph, refuses_files_and_settings_that_do_not_fit_and_changes_nothing)
{
    const std::vector<Vec3f> file = seen();
    const auto refusal = [&](const std::vector<Vec3f>& positions) {
        const QString text = load(positions);
        EXPECT_EQ(morph(), nullptr);
        return text.toStdString();
    };
    const std::vector<Vec3f> cut(file.begin(), file.end() - 1);
    EXPECT_EQ(refusal(cut), "New: the file has 1055 vertices, which is not Tube at subdivision level 2");
    loader.setSubdivisionBuiltResolution(1);
    EXPECT_EQ(refusal(file), "New: the file has 1056 vertices, which is not Tube at subdivision level 1");
    loader.setSubdivisionBuiltResolution(40);
    EXPECT_EQ(refusal(file), "New: the file has 1056 vertices, which is not Tube at subdivision level 40");
    loader.setSubdivisionBuiltResolution(-1);
    EXPECT_EQ(refusal(file), "New: there is no subdivision level -1");
    loader.setSubdivisionBuiltResolution(2);
    loader.setSubdivisionMapping(DzMorphLoader::ZbrushCage);
    EXPECT_EQ(refusal(file), "New: only files in the order of our own subdivision can be loaded");
    loader.setSubdivisionMapping(DzMorphLoader::Catmark);
    openhost::SetHdMorphSupport(false);
    EXPECT_EQ(refusal(file),
              "New: subdivided morphs need the plug-in Morph Loader Pro SubDivision Resolution");
    openhost::SetHdMorphSupport(true);
    EXPECT_EQ(load(file), QString());
}
