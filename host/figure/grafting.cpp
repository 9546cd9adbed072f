// Meshes that replace a part of the figure that they are fitted to.
// SPDX-License-Identifier: MIT

#include "geometry/grafting.h"

#include "app/guard.h"
#include "dzfacetshape.h"
#include "dzskeleton.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "geometry/errors.h"
#include "geometry/incidence.h"
#include "grafted_mesh.h"
#include "openhost/diagnostics.h"
#include "subdivision_cache.h"

#include <array>
#include <map>
#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

using geometry::IndexLists;
using geometry::Vec3f;

bool FollowsInCircle(const DzSkeleton& skeleton)
{
    std::set<const DzSkeleton*> met;
    const DzSkeleton* next = &skeleton;
    while (next && met.insert(next).second)
        next = next->getFollowTarget();
    return next;
}

/// The faces of a level by the face of the cage that they lie on, in their order.
IndexLists FacesOfCageFaces(const geometry::Subdivision& subdivision, int level)
{
    const std::size_t cageFaces = subdivision.topology(0)->faceCount();
    const auto faces = static_cast<std::uint32_t>(subdivision.topology(level)->faceCount());
    IndexLists lists;
    lists.offsets.assign(cageFaces + 1, 0);
    for (std::uint32_t f = 0; f < faces; ++f)
        ++lists.offsets[subdivision.cageFace(level, f) + 1];
    for (std::size_t f = 0; f < cageFaces; ++f)
        lists.offsets[f + 1] += lists.offsets[f];
    std::vector<std::uint32_t> next(lists.offsets.begin(), lists.offsets.end() - 1);
    lists.indices.resize(faces);
    for (std::uint32_t f = 0; f < faces; ++f)
        lists.indices[next[subdivision.cageFace(level, f)]++] = f;
    return lists;
}

/// For each vertex of the grafted mesh at the level, the figure's own vertex of that place; UINT32_MAX where
/// it has none. Faces are cut into the same parts in both.
std::vector<std::uint32_t> FigureVertices(const GraftedMesh& grafted, const geometry::Subdivision& own,
                                          int level)
{
    const geometry::Subdivision& joined = *grafted.subdivision;
    const IndexLists ownFaces = FacesOfCageFaces(own, level), faces = FacesOfCageFaces(joined, level);
    std::vector<std::uint32_t> vertices(joined.topology(level)->vertexCount, UINT32_MAX);
    for (std::size_t f = 0; f < grafted.joined.facesOfFirst.size(); ++f) {
        const base::Span<const std::uint32_t> from = ownFaces[grafted.joined.facesOfFirst[f]], to = faces[f];
        for (std::size_t part = 0; part < to.size(); ++part)
            for (std::size_t c = 0; c < 4; ++c)
                vertices[joined.topology(level)->face(to[part])[c]] =
                    own.topology(level)->face(from[part])[c];
    }
    return vertices;
}

const std::vector<geometry::Crease>* CreasesOf(const DzSkeleton& figure)
{
    const auto* const shape = qobject_cast<DzFacetShape*>(figure.getObject()->getCurrentShape());
    const MeshExtras* const extras = MeshAccess::extras(*shape->getFacetMesh());
    return extras ? &extras->creases : nullptr;
}

using JoinedVertices = std::map<std::array<std::uint32_t, 2>, std::uint32_t>;

JoinedVertices VerticesByOrigin(const geometry::GraftedTopology& joined)
{
    JoinedVertices vertices;
    for (std::uint32_t v = 0; v < joined.origins.size(); ++v)
        vertices.emplace(joined.origins[v], v);
    return vertices;
}

/// Without those whose vertices the joined mesh does not have.
std::vector<geometry::Crease> JoinedCreases(const geometry::GraftedTopology& joined,
                                            const std::vector<const DzSkeleton*>& figures)
{
    JoinedVertices vertices;
    std::vector<geometry::Crease> creases;
    for (std::uint32_t part = 0; part < figures.size(); ++part) {
        const std::vector<geometry::Crease>* const own = CreasesOf(*figures[part]);
        if (!own || own->empty())
            continue;
        if (vertices.empty())
            vertices = VerticesByOrigin(joined);
        for (const geometry::Crease& crease : *own) {
            const auto a = vertices.find({part, crease.a}), b = vertices.find({part, crease.b});
            if (a != vertices.end() && b != vertices.end())
                creases.push_back({a->second, b->second, crease.sharpness});
        }
    }
    return creases;
}

} // namespace

const geometry::Graft* Pipeline::graft()
{
    const DzSkeleton* const target = followTarget();
    if (!hasMesh() || !target || !target->getObject() || !target->getObject()->pipeline().hasMesh())
        return nullptr;
    const MeshExtras* const extras = MeshAccess::extras(*shape()->getFacetMesh());
    if (!extras || extras->graft.empty() ||
        FollowsInCircle(*static_cast<const DzSkeleton*>(_object.getNode())))
        return nullptr;
    const Pipeline& followed = target->getObject()->pipeline();
    const std::pair<std::uint64_t, std::uint64_t> serials(followed._baseSerial, _baseSerial);
    if (_graftSerials != serials) {
        _graftSerials = serials;
        const DzFacetShape* const onto = followed.shape();
        fitGraft(extras->graft, *followed.base().topology, MeshAccess::extras(*onto->getFacetMesh()),
                 *target);
    }
    return _usableGraft.get();
}

void Pipeline::fitGraft(const geometry::Graft& graft, const geometry::Topology& onto,
                        const MeshExtras* ontoExtras, const DzSkeleton& target)
{
    _usableGraft.reset();
    _graftProblem.clear();
    const std::string label = _object.getNode()->getLabel().toStdString();
    geometry::GraftLosses losses;
    try {
        _usableGraft = std::make_unique<geometry::Graft>(
            geometry::UsableGraft(graft, *base().topology, onto,
                                  ontoExtras ? ontoExtras->leftOutFaces : geometry::LeftOutFaces(), losses));
        if (losses.pairs > 0 || losses.hiddenFaces > 0)
            _graftProblem = fmt::format("is grafted onto {} without {} pairs of vertices and {} hidden faces "
                                        "that are not there or named twice",
                                        target.getLabel().toStdString(), losses.pairs, losses.hiddenFaces);
    } catch (const geometry::TopologyError& error) {
        _graftProblem = fmt::format("follows {} without being grafted onto it: {}",
                                    target.getLabel().toStdString(), error.what());
    }
    if (!_graftProblem.empty())
        Report({base::Severity::Warning, {}, label, _graftProblem});
}

const geometry::PolygonMesh& Pipeline::grafted(const std::vector<DzSkeleton*>& grafts)
{
    std::vector<const DzSkeleton*> figures{static_cast<const DzSkeleton*>(_object.getNode())};
    std::vector<geometry::GraftPart> parts{{base().topology}};
    std::vector<std::uint64_t> serials{_baseSerial};
    std::vector<base::Span<const Vec3f>> cages{worldCage()};
    for (const DzSkeleton* const figure : grafts) {
        Pipeline& pipeline = figure->getObject()->pipeline();
        const auto onto = std::find(figures.begin(), figures.end(), figure->getFollowTarget());
        parts.push_back(
            {pipeline.base().topology, pipeline.graft(), static_cast<std::size_t>(onto - figures.begin())});
        figures.push_back(figure);
        serials.push_back(pipeline._baseSerial);
        cages.push_back(pipeline.worldCage());
    }
    if (!_grafted || _grafted->serials != serials) {
        _grafted.reset(new GraftedMesh{serials, geometry::JoinGrafts(parts), {}, nullptr, {}});
        _grafted->creases = JoinedCreases(_grafted->joined, figures);
    }
    _grafted->mesh.topology = _grafted->joined.topology;
    _grafted->mesh.positions.clear();
    for (const std::array<std::uint32_t, 2>& origin : _grafted->joined.origins)
        _grafted->mesh.positions.push_back(cages[origin[0]][origin[1]]);
    if (level() > 0)
        GuardHostCall({{},
                       _object.getName().toStdString(),
                       "cannot be subdivided with what is grafted onto it",
                       base::Severity::Warning},
                      [this] {
                          refineGrafted();
                          return true;
                      });
    return _grafted->mesh;
}

void Pipeline::refineGrafted()
{
    _grafted->subdivision = FindSubdivision(
        {_grafted->joined.topology, MeshAccess::boundaryRule(*shape()->getFacetMesh()), _grafted->creases},
        level());
    std::vector<Vec3f> positions = _grafted->subdivision->refine(_grafted->mesh.positions, 0, level());
    if (!activeDetails().empty()) {
        // The detail counts the figure's own fine vertices.
        const auto own = subdivision(level());
        const std::vector<Vec3f> plain = own->refine(worldCage(), 0, level());
        const std::vector<std::uint32_t> vertices = FigureVertices(*_grafted, *own, level());
        for (std::size_t v = 0; v < vertices.size(); ++v)
            if (vertices[v] != UINT32_MAX)
                positions[v] += world().positions[vertices[v]] - plain[vertices[v]];
    }
    _grafted->mesh.topology = _grafted->subdivision->topology(level());
    _grafted->mesh.positions = std::move(positions);
}

} // namespace openhost
