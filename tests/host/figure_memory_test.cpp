// What is taken for the memory of a figure.
// SPDX-License-Identifier: MIT

#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "figure/deltas_access.h"
#include "figure/held_memory.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "tests/host/host_fixture.h"

namespace {

/// A square of n by n quads.
std::shared_ptr<const geometry::Topology> Grid(std::uint32_t n)
{
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = (n + 1) * (n + 1);
    for (std::uint32_t y = 0; y < n; ++y)
        for (std::uint32_t x = 0; x < n; ++x) {
            const std::uint32_t first = y * (n + 1) + x;
            topology->addFace(std::vector<std::uint32_t>{first, first + 1, first + n + 2, first + n + 1});
        }
    return topology;
}

struct GridFigure {
    DzFigure* figure = new DzFigure;
    DzFacetShape* shape = new DzFacetShape;
    DzObject* object = new DzObject;

    explicit GridFigure(const std::shared_ptr<const geometry::Topology>& topology)
    {
        geometry::PolygonMesh mesh;
        mesh.topology = topology;
        for (std::uint32_t i = 0; i < topology->vertexCount; ++i)
            mesh.positions.push_back({float(i % 7), float(i % 11), float(i)});
        DzFacetMesh* const facets = openhost::MeshAccess::create(std::move(mesh));
        facets->enableSubDivision(true);
        shape->setFacetMesh(facets);
        object->addShape(shape);
        figure->setObject(object);
        dzScene->addNode(figure);
    }
    std::size_t bytesAtLevel(int level) const
    {
        shape->getSubDLevelControl()->setValue(level);
        object->getCachedGeom();
        return openhost::HeldMemory(*figure);
    }
};

class FigureMemory : public HostTest {};

} // namespace

TEST_F(FigureMemory, has_all_that_is_made_of_the_mesh)
{
    const GridFigure test(Grid(20));
    const std::size_t fresh = openhost::HeldMemory(*test.figure);
    const std::size_t atLevel3 = test.bytesAtLevel(3);
    const auto* const world = qobject_cast<DzFacetMesh*>(test.object->getCachedGeom());
    ASSERT_EQ(world->getNumPolygons(), 20 * 20 * 64);
    // At the least the positions, and the corners of the finest level.
    const std::size_t least = static_cast<std::size_t>(world->getNumVertices()) * sizeof(geometry::Vec3f) +
                              static_cast<std::size_t>(world->getNumPolygons()) * 4 * sizeof(std::uint32_t);
    EXPECT_GE(atLevel3 - fresh, least);
    EXPECT_GT(test.bytesAtLevel(4), atLevel3 + 3 * (atLevel3 - fresh) / 2);
    test.object->pipeline().release();
    EXPECT_EQ(openhost::HeldMemory(*test.figure), fresh);
}

TEST_F(FigureMemory, leaves_out_the_refinement_that_another_figure_uses)
{
    const std::shared_ptr<const geometry::Topology> topology = Grid(20);
    const GridFigure one(topology);
    const std::size_t alone = one.bytesAtLevel(3);
    const GridFigure other(topology);
    const std::size_t second = other.bytesAtLevel(3);
    EXPECT_LT(second, alone);
    EXPECT_EQ(openhost::HeldMemory(*one.figure), second);
    dzScene->removeNode(other.figure);
    TestHost().purge();
    EXPECT_EQ(openhost::HeldMemory(*one.figure), alone);
}

TEST_F(FigureMemory, has_displacements_and_detail_that_are_read)
{
    const GridFigure test(Grid(2));
    auto* const morph = new DzMorph;
    test.object->addModifier(morph);
    DzMorphDeltas& deltas = *morph->getDeltas();
    openhost::DeltasAccess::setLoader(deltas, [](base::Diagnostics&) {
        return geometry::SparseDeltas{{1, 2}, {{}, {}}};
    });
    const std::size_t unread = openhost::HeldMemory(*test.figure);
    deltas.loadDeltas();
    const std::size_t ofOne = sizeof(std::uint32_t) + sizeof(geometry::Vec3f);
    EXPECT_EQ(openhost::HeldMemory(*test.figure), unread + 2 * ofOne);
    openhost::DeltasAccess::assignDetail(deltas, {{{{0}, {{}}}, {{1, 2}, {{}, {}}}}});
    EXPECT_EQ(openhost::HeldMemory(*test.figure), unread + 5 * ofOne);
}
