// Shapes that fitted figures take over of the figure they follow.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/fitting.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "figure/skin_access.h"
#include "openhost/scene_picture.h"
#include "tests/host/host_fixture.h"

using geometry::Vec3f;

namespace {

/// A square sheet of 4 x 4 quads, 40 cm wide, at this height above the ground.
geometry::PolygonMesh Sheet(float height)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    for (int y = 0; y <= 4; ++y)
        for (int x = 0; x <= 4; ++x)
            mesh.positions.push_back({10.0f * float(x), 10.0f * float(y), height});
    for (std::uint32_t y = 0; y < 4; ++y)
        for (std::uint32_t x = 0; x < 4; ++x)
            topology->addFace(
                std::vector<std::uint32_t>{5 * y + x, 5 * y + x + 1, 5 * y + x + 6, 5 * y + x + 5});
    topology->vertexCount = 25;
    mesh.topology = topology;
    return mesh;
}

void ExpectNear(Vec3f a, Vec3f b)
{
    EXPECT_LT(geometry::Length(a - b), 1e-4f) << a.x << " " << a.y << " " << a.z;
}

class FollowingTest : public HostTest {
protected:
    static DzFigure* makeFigure(const char* label, float height)
    {
        auto* const figure = new DzFigure;
        figure->setName(QLatin1String(label));
        figure->setLabel(QLatin1String(label));
        auto* const shape = new DzFacetShape;
        shape->setFacetMesh(openhost::MeshAccess::create(Sheet(height)));
        auto* const object = new DzObject;
        object->addShape(shape);
        figure->setObject(object);
        dzScene->addNode(figure);
        return figure;
    }
    /// Moves all vertices.
    static DzMorph* addMorph(const DzFigure& figure, const char* name, Vec3f by)
    {
        std::vector<std::uint32_t> vertices;
        for (std::uint32_t v = 0; v < 25; ++v)
            vertices.push_back(v);
        auto* const morph =
            new DzMorph(openhost::DeltasAccess::create({vertices, std::vector<Vec3f>(25, by)}, 25));
        morph->setName(QLatin1String(name));
        morph->getValueControl()->setCanAutoFollow(true);
        figure.getObject()->addModifier(morph);
        return morph;
    }
    static void dial(DzMorph* morph, float value) { morph->getValueControl()->setValue(value); }
    static openhost::Pipeline& pipeline(const DzFigure& figure) { return figure.getObject()->pipeline(); }
    /// Where a vertex in the middle of a sheet is in the world.
    static Vec3f middle(const DzFigure& figure) { return pipeline(figure).world().positions[12]; }

    void SetUp() override
    {
        HostTest::SetUp();
        body = makeFigure("Body", 0.0f);
        shirt = makeFigure("Shirt", 1.0f);
        heavy = addMorph(*body, "Heavy", {0, 0, 4});
    }
    DzFigure *body = nullptr, *shirt = nullptr;
    DzMorph* heavy = nullptr;
};

TEST_F(FollowingTest, a_shift_of_the_figure_moves_what_is_fitted_to_it)
{
    openhost::FitTo(*shirt, *body);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    dial(heavy, 0.5f);
    ExpectNear(middle(*shirt), {20, 20, 3});
    dial(heavy, 0.0f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, a_shape_acts_where_it_is)
{
    openhost::FitTo(*shirt, *body);
    auto* const bump = new DzMorph(openhost::DeltasAccess::create({{12}, {{0, 0, 6}}}, 25));
    body->getObject()->addModifier(bump);
    dial(bump, 1.0f);
    // Above the moved vertex nearly all of it arrives, in the corner hardly anything.
    EXPECT_GT(middle(*shirt).z, 6.0f);
    EXPECT_NEAR(pipeline(*shirt).world().positions[0].z, 1.0f, 0.1f);
}

TEST_F(FollowingTest, an_own_morph_of_the_name_wins)
{
    DzMorph* const own = addMorph(*shirt, "Heavy", {0, 0, 10});
    openhost::FitTo(*shirt, *body);
    dial(heavy, 0.5f);
    EXPECT_FLOAT_EQ(own->getValueControl()->getValue(), 0.5f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 6}));
    EXPECT_EQ(pipeline(*shirt).followingWork().projections, 0);
    dial(addMorph(*body, "Tall", {0, 3, 0}), 1.0f);
    ExpectNear(middle(*shirt), {20, 23, 6});
}

TEST_F(FollowingTest, an_own_dial_of_the_name_stands_for_the_shape_too)
{
    shirt->addProperty(new DzFloatProperty(QStringLiteral("Heavy"), true, true));
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, a_dial_that_may_not_be_followed_still_shapes_what_has_none_of_its_own)
{
    heavy->getValueControl()->setCanAutoFollow(false);
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    ExpectNear(middle(*shirt), {20, 20, 5});
    shirt->setFollowTarget(nullptr);
    DzMorph* const own = addMorph(*shirt, "Heavy", {0, 0, 10});
    openhost::FitTo(*shirt, *body);
    EXPECT_EQ(own->getValueControl()->getValue(), 0.0f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, ends_with_the_fit)
{
    DzFigure* const thin = makeFigure("Thin", 0.0f);
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    ExpectNear(middle(*shirt), {20, 20, 5});
    shirt->setFollowTarget(nullptr);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    openhost::FitTo(*shirt, *body);
    ExpectNear(middle(*shirt), {20, 20, 5});
    openhost::FitTo(*shirt, *thin);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    openhost::FitTo(*shirt, *body);
    ExpectNear(middle(*shirt), {20, 20, 5});
    dzScene->removeNode(body);
    TestHost().purge();
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, several_followers_take_over_what_each_has_no_dial_for)
{
    DzFigure* const shoes = makeFigure("Shoes", -1.0f);
    addMorph(*shoes, "Heavy", {0, 0, -2});
    openhost::FitTo(*shirt, *body);
    openhost::FitTo(*shoes, *body);
    dial(heavy, 1.0f);
    dial(addMorph(*body, "Tall", {0, 3, 0}), 1.0f);
    ExpectNear(middle(*shirt), {20, 23, 5});
    ExpectNear(middle(*shoes), {20, 23, -3});
}

TEST_F(FollowingTest, a_follower_of_a_follower_is_taken_along)
{
    DzFigure* const button = makeFigure("Button", 1.5f);
    openhost::FitTo(*shirt, *body);
    openhost::FitTo(*button, *shirt);
    dial(heavy, 1.0f);
    ExpectNear(middle(*button), {20, 20, 5.5f});
    dial(addMorph(*shirt, "Loose", {0, 1, 0}), 1.0f);
    ExpectNear(middle(*button), {20, 21, 5.5f});
    dial(heavy, 0.5f);
    ExpectNear(middle(*button), {20, 21, 3.5f});
}

TEST_F(FollowingTest, a_morph_made_or_taken_away_later_counts)
{
    openhost::FitTo(*shirt, *body);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    DzMorph* const made = addMorph(*body, "Made", {5, 0, 0});
    dial(made, 1.0f);
    ExpectNear(middle(*shirt), {25, 20, 1});
    made->getDeltas()->addDelta(12, DzVec3(0, 0, 0));
    EXPECT_LT(middle(*shirt).x, 24.0f);
    body->getObject()->removeModifier(made);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, the_shape_is_posed_with_the_followers_own_skin)
{
    auto* const bone = new DzBone;
    bone->setName(QStringLiteral("all"));
    shirt->addNodeChild(bone);
    auto* const skin = new DzSkinBinding;
    skin->setTargetVertexCount(25);
    std::vector<std::uint32_t> all;
    for (std::uint32_t v = 0; v < 25; ++v)
        all.push_back(v);
    openhost::SkinAccess::bind(*skin, *bone, all, std::vector<float>(25, 1.0f));
    shirt->getObject()->addModifier(skin);
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    bone->getXRotControl()->setValue(90.0f);
    ExpectNear(pipeline(*shirt).formedCage()[12], {20, 20, 5});
    ExpectNear(middle(*shirt), {20, -5, 20});
}

TEST_F(FollowingTest, d_formers_of_the_follower_act_on_the_shape)
{
    auto* const former = new DzDForm;
    dzScene->addNode(former);
    auto* const map = new DzWeightMap(25);
    for (int v = 0; v < 25; ++v)
        map->setFloatWeight(v, 1.0f);
    former->applyToNode(shirt)->setInfluenceWeights(map);
    former->getYPosControl()->setValue(7.0f);
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    ExpectNear(middle(*shirt), {20, 27, 5});
    // What pushes the figure itself about is no shape of it.
    former->applyToNode(body)->setInfluenceWeights(map);
    ExpectNear(middle(*body), {20, 27, 4});
    ExpectNear(middle(*shirt), {20, 27, 5});
}

TEST_F(FollowingTest, a_dial_costs_one_projection_and_no_match)
{
    openhost::FitTo(*shirt, *body);
    const auto& work = pipeline(*shirt).followingWork();
    middle(*shirt);
    EXPECT_EQ(work.matches, 0);
    for (int i = 1; i <= 5; ++i) {
        dial(heavy, 0.1f * float(i));
        middle(*shirt);
        middle(*body);
        middle(*shirt);
    }
    EXPECT_EQ(work.matches, 1);
    EXPECT_EQ(work.projections, 5);
    body->getXPosControl()->setValue(7.0f);
    dial(addMorph(*shirt, "Loose", {0, 1, 0}), 1.0f);
    middle(*shirt);
    EXPECT_EQ(work.matches, 1);
    const auto& unfitted = pipeline(*body).followingWork();
    EXPECT_EQ(unfitted.matches + unfitted.projections, 0);
}

TEST_F(FollowingTest, another_base_mesh_is_matched_anew)
{
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    middle(*shirt);
    auto* const mesh = qobject_cast<DzFacetShape*>(body->getObject()->getCurrentShape())->getFacetMesh();
    openhost::MeshAccess::assign(*mesh, Sheet(0.5f), 0);
    ExpectNear(middle(*shirt), {20, 20, 5});
    EXPECT_EQ(pipeline(*shirt).followingWork().matches, 2);
    body->setObject(new DzObject);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
}

TEST_F(FollowingTest, a_mesh_that_comes_after_the_fit_follows)
{
    openhost::FitTo(*shirt, *body);
    dial(heavy, 1.0f);
    auto* const shape = new DzFacetShape;
    shape->setFacetMesh(openhost::MeshAccess::create(Sheet(2.0f)));
    auto* const object = new DzObject;
    object->addShape(shape);
    EXPECT_EQ(object->pipeline().world().positions[12], (Vec3f{20, 20, 2}));
    shirt->setObject(object);
    ExpectNear(middle(*shirt), {20, 20, 6});
}

TEST_F(FollowingTest, a_mesh_that_cannot_be_matched_is_told_once)
{
    geometry::PolygonMesh broken = Sheet(0.0f);
    broken.positions[3].x = NAN;
    openhost::FitTo(*shirt, *body);
    auto* const mesh = qobject_cast<DzFacetShape*>(body->getObject()->getCurrentShape())->getFacetMesh();
    openhost::MeshAccess::assign(*mesh, broken, 0);
    const int before = LogText().count(QStringLiteral("cannot follow the shape of Body"));
    dial(heavy, 0.5f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    dial(heavy, 1.0f);
    EXPECT_EQ(middle(*shirt), (Vec3f{20, 20, 1}));
    EXPECT_EQ(LogText().count(QStringLiteral("WARNING: Shirt: cannot follow the shape of Body: source mesh: "
                                             "position of vertex 3 is not finite")),
              before + 1);
}

TEST_F(FollowingTest, pictures_of_a_figure_show_what_is_fitted_to_it)
{
    DzFigure *const button = makeFigure("Button", 1.5f), *const hat = makeFigure("Hat", 3.0f);
    const auto nodes = [this] { return openhost::FigureItems(*body).nodes; };
    EXPECT_EQ(nodes(), std::vector<DzNode*>{body});
    openhost::FitTo(*shirt, *body);
    openhost::FitTo(*button, *shirt);
    openhost::FitTo(*hat, *body);
    hat->setVisible(false);
    body->setVisible(false);
    EXPECT_EQ(nodes(), (std::vector<DzNode*>{body, shirt, button}));
    openhost::FitTo(*body, *button);
    EXPECT_EQ(nodes().size(), 3u);
    dial(heavy, 1.0f);
    EXPECT_EQ(openhost::FigureItems(*body).items[1].mesh.positions[12], middle(*shirt));
}

TEST_F(FollowingTest, in_a_circle_comes_to_an_end)
{
    openhost::FitTo(*shirt, *body);
    openhost::FitTo(*body, *shirt);
    dial(heavy, 1.0f);
    EXPECT_TRUE(geometry::IsFinite(middle(*shirt)));
    EXPECT_TRUE(geometry::IsFinite(middle(*body)));
}

} // namespace
