// Figures whose meshes replace a part of the figure that they are fitted to.
// SPDX-License-Identifier: MIT

#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/fitting.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "openhost/scene_picture.h"
#include "tests/host/host_fixture.h"

using geometry::Vec3f;

namespace {

/// A square sheet of so many quads of 10 cm a side, from this corner on.
geometry::PolygonMesh Sheet(std::uint32_t cells, Vec3f corner)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    const std::uint32_t row = cells + 1;
    for (std::uint32_t y = 0; y < row; ++y)
        for (std::uint32_t x = 0; x < row; ++x)
            mesh.positions.push_back(corner + Vec3f{10.0f * float(x), 10.0f * float(y), 0});
    for (std::uint32_t y = 0; y < cells; ++y)
        for (std::uint32_t x = 0; x < cells; ++x) {
            const std::uint32_t v = row * y + x;
            topology->addFace(std::vector<std::uint32_t>{v, v + 1, v + row + 1, v + row});
        }
    topology->vertexCount = row * row;
    mesh.topology = topology;
    return mesh;
}

/// Of the 4 x 4 quads of a sheet those 2 x 2 in the middle.
geometry::Graft MiddleGraft()
{
    return {25, 16, {{0, 6}, {1, 7}, {2, 8}, {3, 11}, {5, 13}, {6, 16}, {7, 17}, {8, 18}}, {5, 6, 9, 10}};
}

class GraftTest : public HostTest {
protected:
    static DzFigure* makeFigure(const char* label, geometry::PolygonMesh mesh,
                                const geometry::Graft& graft = {})
    {
        auto* const figure = new DzFigure;
        figure->setName(QLatin1String(label));
        figure->setLabel(QLatin1String(label));
        DzFacetMesh* const facets = openhost::MeshAccess::create(std::move(mesh));
        auto extras = std::make_shared<openhost::MeshExtras>();
        extras->graft = graft;
        openhost::MeshAccess::setExtras(*facets, extras);
        facets->enableSubDivision(true);
        auto* const shape = new DzFacetShape;
        shape->setFacetMesh(facets);
        shape->getSubDLevelControl()->setValue(0);
        auto* const object = new DzObject;
        object->setName(QLatin1String(label));
        object->addShape(shape);
        figure->setObject(object);
        dzScene->addNode(figure);
        return figure;
    }
    static void setLevel(const DzFigure& figure, int level)
    {
        qobject_cast<DzFacetShape*>(figure.getObject()->getCurrentShape())
            ->getSubDLevelControl()
            ->setValue(level);
    }
    static std::vector<DzNode*> drawn() { return openhost::VisibleItems(*dzScene).nodes; }
    static geometry::PolygonMeshView mesh(std::size_t item = 0)
    {
        return openhost::VisibleItems(*dzScene).items.at(item).mesh;
    }
    /// By cage face from first to last, the places of the corners of what a level has made of it.
    static std::vector<Vec3f> corners(const geometry::PolygonMeshView& view, std::size_t first,
                                      std::size_t count)
    {
        std::vector<Vec3f> places;
        for (std::size_t f = first; f < first + count; ++f)
            for (const std::uint32_t vertex : view.face(f))
                places.push_back(view.positions[vertex]);
        return places;
    }

    void SetUp() override
    {
        HostTest::SetUp();
        body = makeFigure("Body", Sheet(4, {0, 0, 0}));
        // Not quite where the body has its vertices, and raised in the middle.
        geometry::PolygonMesh patch = Sheet(2, {10, 10, 0.05f});
        patch.positions[4].z = 8.0f;
        horn = makeFigure("Horn", patch, MiddleGraft());
        openhost::FitTo(*horn, *body);
    }
    DzFigure *body = nullptr, *horn = nullptr;
};

TEST_F(GraftTest, takes_the_place_of_the_faces_that_it_hides)
{
    ASSERT_EQ(drawn(), std::vector<DzNode*>{body});
    ASSERT_EQ(mesh().faceCount(), 12u + 4u);
    ASSERT_EQ(mesh().vertexCount(), 25u + 1u);
    EXPECT_EQ(mesh().positions[25], (Vec3f{20, 20, 8}));
    EXPECT_EQ(corners(mesh(), 12, 1)[0], (Vec3f{10, 10, 0})) << "the body's place, not the graft's";
    EXPECT_EQ(body->getObject()->getCachedGeom()->getNumVertices(), 25);
    EXPECT_EQ(body->getObject()->pipeline().world().faceCount(), 16u);
    EXPECT_EQ(openhost::FigureItems(*body).items.front().mesh.faceCount(), 16u);
    EXPECT_EQ(openhost::FigureItems(*body).nodes.size(), 1u);
}

TEST_F(GraftTest, follows_the_shape_of_the_figure)
{
    std::vector<std::uint32_t> all;
    for (std::uint32_t v = 0; v < 25; ++v)
        all.push_back(v);
    auto* const morph =
        new DzMorph(openhost::DeltasAccess::create({all, std::vector<Vec3f>(25, {0, 0, 5})}, 25));
    body->getObject()->addModifier(morph);
    mesh();
    morph->getValueControl()->setValue(1.0f);
    EXPECT_NEAR(mesh().positions[25].z, 13.0f, 1e-4f);
    EXPECT_EQ(corners(mesh(), 12, 1)[0], (Vec3f{10, 10, 5}));
}

TEST_F(GraftTest, is_subdivided_together_with_the_figure)
{
    const geometry::PolygonMesh whole = Sheet(4, {0, 0, 0});
    for (const int level : {1, 2}) {
        SetUp();
        setLevel(*body, level);
        geometry::PolygonMesh raised = whole;
        raised.positions[12].z = 8.0f;
        const geometry::Subdivision refined(whole.topology, level);
        const std::vector<Vec3f> expected = refined.refine(raised.positions, 0, level);
        const std::size_t parts = level == 1 ? 4 : 16;
        ASSERT_EQ(mesh().faceCount(), 16 * parts);
        // The first face of the graft stands for face 5 of the sheet.
        const geometry::PolygonMeshView fine{refined.topology(level).get(), expected};
        const std::vector<Vec3f> a = corners(mesh(), 12 * parts, parts), b = corners(fine, 5 * parts, parts);
        for (std::size_t i = 0; i < a.size(); ++i)
            EXPECT_LT(geometry::Length(a[i] - b[i]), 1e-4f) << level << " " << i;
    }
}

TEST_F(GraftTest, leaves_the_figures_fine_detail_where_it_is)
{
    auto* const morph = new DzMorph;
    geometry::MultiresDetail detail;
    // On the first face at level 2, outside of the graft; and on one that is hidden.
    detail.levels.resize(2);
    detail.levels[1] = {{0, 4 * 16 * 5}, {{0.5f, 0.25f, 0.75f}, {1, 1, 1}}};
    openhost::DeltasAccess::assignDetail(*morph->getDeltas(), detail);
    body->getObject()->addModifier(morph);
    setLevel(*body, 2);
    const auto own = [this] { return corners(body->getObject()->pipeline().world().view(), 0, 16); };
    const std::vector<Vec3f> plain = corners(mesh(), 0, 16), ownPlain = own();
    morph->getValueControl()->setValue(1.0f);
    const std::vector<Vec3f> fine = corners(mesh(), 0, 16), ownFine = own();
    ASSERT_GT(geometry::Length(ownFine[0] - ownPlain[0]), 0.5f);
    for (std::size_t i = 0; i < fine.size(); ++i)
        EXPECT_LT(geometry::Length((fine[i] - plain[i]) - (ownFine[i] - ownPlain[i])), 1e-4f) << i;
}

TEST_F(GraftTest, is_there_as_long_as_both_are_seen)
{
    horn->setVisible(false);
    EXPECT_EQ(drawn(), std::vector<DzNode*>{body});
    EXPECT_EQ(mesh().vertexCount(), 25u);
    horn->setVisible(true);
    body->setVisible(false);
    EXPECT_EQ(drawn(), std::vector<DzNode*>{horn});
    body->setVisible(true);
    EXPECT_EQ(mesh().vertexCount(), 26u);
    horn->setFollowTarget(nullptr);
    EXPECT_EQ(drawn(), (std::vector<DzNode*>{body, horn}));
}

TEST_F(GraftTest, is_known_to_both_figures)
{
    EXPECT_TRUE(horn->isGraftFollowing());
    EXPECT_FALSE(body->isGraftFollowing());
    ASSERT_EQ(body->getNumGraftFigures(), 1);
    EXPECT_EQ(body->getGraftFigure(0), horn);
    EXPECT_EQ(body->getGraftFigure(1), nullptr);
    openhost::FitTo(*makeFigure("Shirt", Sheet(4, {0, 0, 1})), *body);
    EXPECT_EQ(body->getNumGraftFigures(), 1);
}

TEST_F(GraftTest, several_and_one_upon_another_grow_together)
{
    ASSERT_EQ(mesh().faceCount(), 16u);
    const geometry::Graft onHorn{9, 4, {{0, 0}, {1, 1}, {2, 3}, {3, 4}}, {0}};
    openhost::FitTo(*makeFigure("Tip", Sheet(1, {10, 10, 0}), onHorn), *horn);
    const geometry::Graft corner{25, 16, {{0, 0}, {1, 1}, {2, 5}, {3, 6}}, {0, 1}};
    openhost::FitTo(*makeFigure("Heel", Sheet(1, {0, 0, 0}), corner), *body);
    ASSERT_EQ(drawn(), std::vector<DzNode*>{body});
    EXPECT_EQ(mesh().vertexCount(), 26u);
    EXPECT_EQ(mesh().faceCount(), 16u - 4 - 2 + 4 - 1 + 1 + 1);
}

TEST_F(GraftTest, that_does_not_fit_follows_only_and_says_so_once)
{
    geometry::Graft wrong = MiddleGraft();
    wrong.vertexCount = 26;
    DzFigure* const scar = makeFigure("Scar", Sheet(2, {10, 10, 1}), wrong);
    openhost::FitTo(*scar, *body);
    const QString line =
        QStringLiteral("WARNING: Scar: follows Body without being grafted onto it: the graft "
                       "is for 26 vertices but the mesh has 25");
    EXPECT_EQ(drawn(), (std::vector<DzNode*>{body, scar}));
    drawn();
    EXPECT_FALSE(scar->isGraftFollowing());
    EXPECT_EQ(LogText().count(line), 1);
}

TEST_F(GraftTest, of_which_a_part_does_not_fit_is_grafted_by_the_rest_and_says_so_once)
{
    geometry::Graft odd = MiddleGraft();
    odd.vertexPairs.push_back({4, 25});
    odd.hiddenFaces.push_back(16);
    odd.hiddenFaces.push_back(17);
    DzFigure* const scar = makeFigure("Scar", Sheet(2, {10, 10, 1}), odd);
    delete horn;
    openhost::FitTo(*scar, *body);
    EXPECT_EQ(drawn(), std::vector<DzNode*>{body});
    EXPECT_EQ(mesh().faceCount(), 12u + 4u);
    EXPECT_TRUE(scar->isGraftFollowing());
    EXPECT_EQ(
        LogText().count(QStringLiteral("WARNING: Scar: is grafted onto Body without 1 pairs of vertices "
                                       "and 2 hidden faces that are not there or named twice")),
        1);
}

TEST_F(GraftTest, in_a_circle_is_none)
{
    openhost::FitTo(*body, *horn);
    EXPECT_EQ(drawn(), (std::vector<DzNode*>{body, horn}));
}

TEST_F(GraftTest, knows_another_base_mesh)
{
    ASSERT_EQ(mesh().vertexCount(), 26u);
    auto* const facets = qobject_cast<DzFacetShape*>(body->getObject()->getCurrentShape())->getFacetMesh();
    openhost::MeshAccess::assign(*facets, Sheet(5, {0, 0, 0}), 0);
    EXPECT_EQ(drawn(), (std::vector<DzNode*>{body, horn}));
}

} // namespace
