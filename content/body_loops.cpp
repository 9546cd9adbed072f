// Rings of quads over ears and nails and around the openings of the face.
// SPDX-License-Identifier: MIT

#include "body_loops.h"

#include "base/cancellation.h"
#include "body_relax.h"
#include "body_solid.h"

#include <cassert>
#include <unordered_map>

#include <tbb/parallel_for.h>

namespace content {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

/// What is taken out for an opening: the faces, and the loop of vertices around them, counter-clockwise seen
/// from outside.
struct Cut {
    std::vector<char> isRemoved;
    std::vector<std::uint32_t> loop;
};

/// The boundary's edges by their first vertex.
using LoopEdges = std::unordered_map<std::uint32_t, std::uint32_t>;

/// @return false, and the vertex marked as inside, when the boundary touches itself there
bool ListBoundary(const geometry::Topology& topology, const std::vector<char>& isRemoved,
                  std::vector<char>& isInside, LoopEdges& edges)
{
    std::unordered_map<std::uint64_t, char> directed;
    const auto key = [](std::uint32_t a, std::uint32_t b) { return static_cast<std::uint64_t>(a) << 32 | b; };
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        for (int c = 0; isRemoved[f] && c < 4; ++c)
            directed[key(topology.face(f)[c], topology.face(f)[(c + 1) & 3])] = 1;
    edges.clear();
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        for (int c = 0; isRemoved[f] && c < 4; ++c) {
            const std::uint32_t a = topology.face(f)[c], b = topology.face(f)[(c + 1) & 3];
            if (directed.count(key(b, a)) == 0 && !edges.emplace(a, b).second) {
                isInside[a] = 1;
                return false;
            }
        }
    return true;
}

Cut FindCut(const geometry::Topology& topology, base::Span<const Vec3f> positions, const Opening& opening)
{
    std::vector<char> isInside(topology.vertexCount, 0);
    for (std::size_t v = 0; v < positions.size(); ++v)
        isInside[v] = opening.region(positions[v]) < 0.0f;
    Cut cut;
    LoopEdges edges;
    do {
        cut.isRemoved.assign(topology.faceCount(), 0);
        for (std::size_t f = 0; f < topology.faceCount(); ++f)
            for (const std::uint32_t v : topology.face(f))
                cut.isRemoved[f] |= isInside[v];
    } while (!ListBoundary(topology, cut.isRemoved, isInside, edges));
    assert(!edges.empty());
    std::uint32_t start = none;
    for (const auto& edge : edges)
        start = std::min(start, edge.first);
    std::uint32_t at = start;
    do {
        cut.loop.push_back(at);
        at = edges.at(at);
    } while (at != start);
    assert(cut.loop.size() == edges.size() && cut.loop.size() % 2 == 0);
    return cut;
}

/// How far around the opening each vertex of a ring stands: as the loop's vertices do at first, evener with
/// each call of `even`.
class Turns {
public:
    Turns(const Opening& opening, base::Span<const Vec3f> positions, const std::vector<std::uint32_t>& loop)
        : _offsets(loop.size())
    {
        const auto count = static_cast<float>(loop.size());
        float turn = 0.0f;
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const float raw = opening.turnOf(positions[loop[i]]);
            turn = i == 0 ? raw : turn + std::remainder(raw - turn, 1.0f);
            _offsets[i] = turn - static_cast<float>(i) / count;
            _mean += _offsets[i] / count;
        }
        for (float& offset : _offsets)
            offset -= _mean;
    }

    void even()
    {
        const std::vector<float> before = _offsets;
        const std::size_t count = before.size();
        for (std::size_t i = 0; i < count; ++i)
            _offsets[i] =
                0.5f * before[i] + 0.25f * (before[(i + 1) % count] + before[(i + count - 1) % count]);
    }

    float at(std::size_t i) const
    {
        const float turn = _mean + static_cast<float>(i) / static_cast<float>(_offsets.size()) + _offsets[i];
        return turn - std::floor(turn);
    }

private:
    std::vector<float> _offsets;
    float _mean = 0.0f;
};

/// An opening's rings within a mesh: ring k has the vertices first + k * loop.size() + i.
struct Rings {
    std::vector<std::uint32_t> loop;
    std::uint32_t first = 0, count = 0;
};

void AddFaces(const Rings& rings, geometry::Topology& topology)
{
    const auto size = static_cast<std::uint32_t>(rings.loop.size());
    const auto vertex = [&](std::uint32_t ring, std::uint32_t i) {
        i %= size;
        return ring == 0 ? rings.loop[i] : rings.first + (ring - 1) * size + i;
    };
    for (std::uint32_t ring = 0; ring < rings.count; ++ring)
        for (std::uint32_t i = 0; i < size; ++i) {
            const std::uint32_t quad[4] = {vertex(ring, i), vertex(ring, i + 1), vertex(ring + 1, i + 1),
                                           vertex(ring + 1, i)};
            topology.addFace({quad, 4});
        }
    for (std::uint32_t i = 0; i + 1 < size / 2; ++i) {
        const std::uint32_t quad[4] = {vertex(rings.count, i), vertex(rings.count, i + 1),
                                       vertex(rings.count, size - 2 - i), vertex(rings.count, size - 1 - i)};
        topology.addFace({quad, 4});
    }
}

Rings Insert(const Opening& opening, geometry::Topology& topology, std::vector<Vec3f>& positions)
{
    const Cut cut = FindCut(topology, positions, opening);
    geometry::Topology kept;
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        if (!cut.isRemoved[f])
            kept.addFace(topology.face(f));
    Rings rings;
    rings.loop = cut.loop;
    rings.first = topology.vertexCount;
    rings.count = static_cast<std::uint32_t>(opening.rings.size());
    AddFaces(rings, kept);
    const std::size_t size = cut.loop.size();
    kept.vertexCount = rings.first + rings.count * static_cast<std::uint32_t>(size);
    topology = std::move(kept);
    Turns turns(opening, positions, cut.loop);
    positions.resize(topology.vertexCount);
    for (std::uint32_t ring = 0; ring < rings.count; ++ring) {
        for (int round = 0; round < 4; ++round)
            turns.even();
        tbb::parallel_for(std::size_t(0), size, [&](std::size_t i) {
            base::ThrowIfCancelled();
            positions[rings.first + ring * size + i] =
                Project(BodyDistance, opening.rings[ring](turns.at(i)));
        });
    }
    return rings;
}

void PairRings(const Rings& a, const Rings& b, std::vector<std::uint32_t>& twin)
{
    const std::size_t size = a.loop.size();
    assert(b.loop.size() == size);
    std::unordered_map<std::uint32_t, std::size_t> placeInB;
    for (std::size_t j = 0; j < size; ++j)
        placeInB[b.loop[j]] = j;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t j = placeInB.at(twin[a.loop[i]]);
        for (std::size_t ring = 0; ring < a.count; ++ring) {
            twin[a.first + ring * size + i] = static_cast<std::uint32_t>(b.first + ring * size + j);
            twin[b.first + ring * size + j] = static_cast<std::uint32_t>(a.first + ring * size + i);
        }
    }
}

/// The soft rings and the surface up to two faces away from them.
void MarkSoft(const geometry::Topology& topology, const Rings& rings, int softRings,
              std::vector<char>& marked)
{
    const std::size_t size = rings.loop.size();
    std::vector<char> around(marked.size(), 0);
    for (const std::uint32_t v : rings.loop)
        around[v] = 1;
    WidenByAFace(topology, around);
    WidenByAFace(topology, around);
    for (std::size_t v = 0; v < marked.size(); ++v)
        if (around[v] && (v < rings.first || v >= rings.first + rings.count * size))
            marked[v] = 1;
    for (std::size_t v = rings.first; v < rings.first + static_cast<std::size_t>(softRings) * size; ++v)
        marked[v] = 1;
}

void DropUnused(MirroredMesh& mesh)
{
    std::vector<std::uint32_t> number(mesh.topology.vertexCount, none);
    for (const std::uint32_t v : mesh.topology.cornerVertices)
        number[v] = 0;
    MirroredMesh kept;
    for (std::uint32_t v = 0; v < number.size(); ++v)
        if (number[v] != none) {
            number[v] = static_cast<std::uint32_t>(kept.positions.size());
            kept.positions.push_back(mesh.positions[v]);
        }
    for (std::uint32_t v = 0; v < mesh.twin.size(); ++v)
        if (number[v] != none)
            kept.twin.push_back(number[mesh.twin[v]]);
    for (std::uint32_t& v : mesh.topology.cornerVertices)
        v = number[v];
    mesh.topology.vertexCount = static_cast<std::uint32_t>(kept.positions.size());
    mesh.positions = std::move(kept.positions);
    mesh.twin = std::move(kept.twin);
}

} // namespace

MirroredMesh WithLoops(const MirroredMesh& closed)
{
    constexpr int softRounds = 10;
    MirroredMesh mesh = closed;
    std::vector<Opening> openings;
    for (const Opening& left : LeftOpenings()) {
        openings.push_back(left);
        openings.push_back(MirrorImage(left));
    }
    const std::size_t pairs = openings.size();
    for (Opening& middle : MiddleOpenings())
        openings.push_back(std::move(middle));
    std::vector<Rings> rings;
    rings.reserve(openings.size());
    for (const Opening& opening : openings)
        rings.push_back(Insert(opening, mesh.topology, mesh.positions));
    if (!mesh.twin.empty()) {
        mesh.twin.resize(mesh.topology.vertexCount, none);
        for (std::size_t i = 0; i < pairs; i += 2)
            PairRings(rings[i], rings[i + 1], mesh.twin);
        for (std::size_t i = pairs; i < rings.size(); ++i)
            PairRings(rings[i], rings[i], mesh.twin);
    }
    std::vector<char> marked(mesh.positions.size(), 0);
    for (std::size_t i = 0; i < rings.size(); ++i)
        MarkSoft(mesh.topology, rings[i], openings[i].softRings, marked);
    RelaxSome(BodyDistance, mesh.topology, marked, softRounds, mesh.positions);
    DropUnused(mesh);
    return mesh;
}

} // namespace content
