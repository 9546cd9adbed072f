// Morphs loaded onto figures that D-Formers and smoothing deform.
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
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "figure/fitting.h"
#include "tests/host/tools_fixture.h"
#include "tools/morph_loader.h"

using geometry::Vec3f;

namespace {

class Reversal : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        tube = std::make_unique<TubeFigure>("Tube", true, 8, true);
        loader.setMorphName(QStringLiteral("New"));
        loader.setDeltaTolerance(0.001f);
        loader.setReverseDeformations(true);
        tube->lower->getZRotControl()->setValue(50.0f);
    }
    void useLevel(int level) const
    {
        auto* const shape = qobject_cast<DzFacetShape*>(tube->figure->getObject()->getCurrentShape());
        shape->getLODControl()->setValue(level > 0 ? 1 : 0);
        if (level > 0)
            shape->getSubDLevelControl()->setValue(level);
        loader.setMorphSubdivision(level > 0);
        loader.setSubdivisionBuiltResolution(level);
        loader.setSubdivisionMaxResolution(level);
    }
    /// Loads what is seen, moved along Y by 3 cm, and dials it in.
    /// @return the file's positions
    std::vector<Vec3f> loadMoved() const
    {
        std::vector<Vec3f> file = WorldPositions(*tube->figure);
        for (Vec3f& p : file)
            p.y += 3.0f;
        loader.setFilename(WritePositions("morph.obj", file));
        const QString told = loader.createMorph(nullptr, tube->figure, false, true);
        EXPECT_TRUE(told.contains(QStringLiteral("successfully"))) << told.toStdString();
        if (auto* const made =
                qobject_cast<DzMorph*>(tube->figure->getObject()->findModifier(QStringLiteral("New"))))
            made->getValueControl()->setValue(1.0f);
        return file;
    }

    std::unique_ptr<TubeFigure> tube;
    mutable DzMorphLoader loader;
};

} // namespace

TEST_F(Reversal, leaves_out_what_smoothing_adds)
{
    for (const int level : {0, 1}) {
        SetUp();
        const std::vector<Vec3f> sharp = WorldPositions(*tube->figure);
        tube->figure->getObject()->addModifier(new openhost::SmoothingModifier);
        useLevel(0);
        ASSERT_GT(LargestDistance(WorldPositions(*tube->figure), sharp), 0.1f);
        useLevel(level);
        const std::vector<Vec3f> file = loadMoved();
        EXPECT_LT(LargestDistance(WorldPositions(*tube->figure), file), 4e-3f) << level;
    }
}

TEST_F(Reversal, leaves_out_what_d_formers_add)
{
    for (const int level : {0, 1}) {
        SetUp();
        useLevel(0);
        auto* const former = new DzDForm;
        dzScene->addNode(former);
        auto* const map = new DzWeightMap(72);
        for (int v = 0; v < 72; ++v)
            map->setFloatWeight(v, static_cast<float>(v) / 72.0f);
        const std::vector<Vec3f> straight = WorldPositions(*tube->figure);
        former->applyToNode(tube->figure)->setInfluenceWeights(map);
        former->getZPosControl()->setValue(5.0f);
        ASSERT_GT(LargestDistance(WorldPositions(*tube->figure), straight), 4.0f);
        useLevel(level);
        const std::vector<Vec3f> file = loadMoved();
        EXPECT_LT(LargestDistance(WorldPositions(*tube->figure), file), 4e-3f) << level;
    }
}

TEST_F(Reversal, leaves_out_the_shape_of_the_figure_that_is_followed)
{
    for (const int level : {0, 1}) {
        SetUp();
        const TubeFigure body("Body", true, 8, true);
        std::vector<std::uint32_t> vertices;
        std::vector<Vec3f> deltas;
        for (std::uint32_t v = 20; v < 50; ++v) {
            vertices.push_back(v);
            deltas.push_back({0.0f, 0.1f * static_cast<float>(v), 1.0f});
        }
        DzMorph* const heavy = body.addMorph("Heavy", vertices, deltas);
        useLevel(level);
        const std::vector<Vec3f> plain = WorldPositions(*tube->figure);
        openhost::FitTo(*tube->figure, *body.figure);
        heavy->getValueControl()->setValue(1.0f);
        ASSERT_GT(LargestDistance(WorldPositions(*tube->figure), plain), 1.0f);
        const std::vector<Vec3f> file = loadMoved();
        EXPECT_LT(LargestDistance(WorldPositions(*tube->figure), file), 4e-3f) << level;
        heavy->getValueControl()->setValue(0.0f);
        // Only what the file adds to what was seen is the morph's own.
        std::vector<Vec3f> expected = plain;
        for (Vec3f& p : expected)
            p.y += 3.0f;
        EXPECT_LT(LargestDistance(WorldPositions(*tube->figure), expected), 4e-3f) << level;
    }
}
