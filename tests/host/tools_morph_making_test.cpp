// Morphs that programs make of shapes.
// SPDX-License-Identifier: MIT

#include "openhost/morph_making.h"

#include "base/errors.h"
#include "dzbone.h"
#include "dzenumproperty.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "openhost/shapes.h"
#include "tests/host/tools_fixture.h"
#include "tools/morph_loader.h"

using geometry::Vec3f;

namespace {

constexpr float tolerance = 0.001f; // cm

/// A bent tube that wears a morph and stands elsewhere.
class MorphMaking : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        tube = std::make_unique<TubeFigure>("Tube", true, 8, true);
        tube->lower->getZRotControl()->setValue(50.0f);
        tube->addMorph("Worn", {20, 21, 22}, {{0, 1, 0}, {0, 2, 0}, {0, 1, 0}})
            ->getValueControl()
            ->setValue(1);
        tube->figure->getXPosControl()->setValue(7.0f);
        tube->figure->getYRotControl()->setValue(30.0f);
    }
    void useLevel(int level) const
    {
        auto* const shape = qobject_cast<DzFacetShape*>(tube->figure->getObject()->getCurrentShape());
        shape->getLODControl()->setValue(level > 0 ? 1 : 0);
        shape->getSubDLevelControl()->setValue(level);
    }
    /// What is seen, with a bulge.
    std::vector<Vec3f> bulged() const
    {
        std::vector<Vec3f> shape = WorldPositions(*tube->figure);
        for (std::size_t v = 0; v < shape.size(); ++v)
            shape[v].y += 0.5f * static_cast<float>(v % 7);
        return shape;
    }

    std::unique_ptr<TubeFigure> tube;
};

} // namespace

TEST_F(MorphMaking, gives_the_figure_the_shape_at_a_dial_of_one)
{
    for (const int level : {0, 1}) {
        SetUp();
        useLevel(level);
        const std::vector<Vec3f> shape = bulged();
        const openhost::MorphMaker maker(*tube->figure, level);
        const DzMorph& morph =
            openhost::AddMorph(*tube->figure, QStringLiteral("New"), maker.make(shape, tolerance));
        EXPECT_EQ(morph.getLabel(), QStringLiteral("New"));
        ASSERT_GT(LargestDistance(WorldPositions(*tube->figure), shape), 2.0f) << "the dial is at 0";
        morph.getValueControl()->setValue(1.0f);
        EXPECT_LT(LargestDistance(WorldPositions(*tube->figure), shape), 4e-3f) << level;
    }
}

TEST_F(MorphMaking, makes_what_morph_loader_pro_makes_of_a_smoothed_figure)
{
    for (const int level : {0, 1}) {
        SetUp();
        tube->figure->getObject()->addModifier(new openhost::SmoothingModifier);
        useLevel(level);
        const std::vector<Vec3f> shape = bulged();
        const openhost::MorphMaker maker(*tube->figure, level);
        const geometry::SubdividedMorph made = maker.make(shape, tolerance);
        DzMorphLoader loader;
        loader.setMorphName(QStringLiteral("Loaded"));
        loader.setDeltaTolerance(tolerance);
        loader.setReverseDeformations(true);
        loader.setMorphSubdivision(level > 0);
        loader.setSubdivisionBuiltResolution(level);
        loader.setFilename(WritePositions("morph.obj", shape));
        loader.createMorph(nullptr, tube->figure, false, true);
        const auto* const loaded =
            qobject_cast<DzMorph*>(tube->figure->getObject()->findModifier(QStringLiteral("Loaded")));
        ASSERT_TRUE(loaded);
        const geometry::SparseDeltas& expected = openhost::MorphDeltas(*loaded);
        // The file holds six decimals.
        EXPECT_LT(LargestDistance(geometry::ToDense(made.deltas, 72), geometry::ToDense(expected, 72)),
                  1e-4f);
        ASSERT_EQ(made.detail.levels.size(), openhost::MorphDetail(*loaded).levels.size());
        for (std::size_t i = 0; i < made.detail.levels.size(); ++i)
            EXPECT_EQ(made.detail.levels[i].size(), openhost::MorphDetail(*loaded).levels[i].size());
    }
}

TEST_F(MorphMaking, leaves_out_what_moves_less_than_the_tolerance)
{
    useLevel(0);
    const openhost::MorphMaker maker(*tube->figure, 0);
    std::vector<Vec3f> shape = WorldPositions(*tube->figure);
    shape[3].y += 0.5f * tolerance;
    shape[30].y += 2.0f;
    EXPECT_EQ(maker.make(shape, tolerance).deltas.vertices, std::vector<std::uint32_t>{30});
}

TEST_F(MorphMaking, refuses_the_shape_of_another_mesh)
{
    useLevel(0);
    const openhost::MorphMaker maker(*tube->figure, 0);
    try {
        maker.make(std::vector<Vec3f>(5), tolerance);
        FAIL() << "it was taken";
    } catch (const base::FormatError& error) {
        EXPECT_STREQ(error.what(), "the shape has 5 vertices but Tube has 72");
    }
}
