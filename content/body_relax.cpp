// Evening out a mesh along the canonical body.
// SPDX-License-Identifier: MIT

#include "body_relax.h"

#include "base/cancellation.h"
#include "body_solid.h"

#include <tbb/parallel_for.h>

namespace content {

using base::Span;

namespace {

/// Faces around each vertex, in compressed rows.
struct Incidence {
    std::vector<std::uint32_t> offsets, faces;

    explicit Incidence(const geometry::Topology& topology) : offsets(topology.vertexCount + 1, 0)
    {
        for (const std::uint32_t vertex : topology.cornerVertices)
            ++offsets[vertex + 1];
        for (std::size_t v = 0; v < topology.vertexCount; ++v)
            offsets[v + 1] += offsets[v];
        faces.resize(topology.cornerCount());
        std::vector<std::uint32_t> next(offsets.begin(), offsets.end() - 1);
        for (std::uint32_t f = 0; f < topology.faceCount(); ++f)
            for (const std::uint32_t vertex : topology.face(f))
                faces[next[vertex]++] = f;
    }
    base::Span<const std::uint32_t> around(std::size_t v) const
    {
        return {faces.data() + offsets[v], offsets[v + 1] - offsets[v]};
    }
};

/// Twice the corner's area, negative where the corner is turned against the normal.
float CornerArea(base::Span<const Vec3f> positions, base::Span<const std::uint32_t> quad, std::size_t corner,
                 Vec3f normal)
{
    const Vec3f here = positions[quad[corner]];
    return Dot(Cross(positions[quad[(corner + 1) & 3]] - here, positions[quad[(corner + 3) & 3]] - here),
               normal);
}

bool IsFolded(base::Span<const Vec3f> positions, base::Span<const Vec3f> normals,
              base::Span<const std::uint32_t> quad)
{
    for (std::size_t corner = 0; corner < 4; ++corner)
        if (CornerArea(positions, quad, corner, normals[quad[corner]]) <= 0.0f)
            return true;
    return false;
}

std::vector<Vec3f> Normals(Solid solid, base::Span<const Vec3f> positions)
{
    std::vector<Vec3f> normals(positions.size());
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        normals[v] = Normalized(Gradient(solid, positions[v]));
    });
    return normals;
}

/// Mean offset to the vertices of the quads around, rolled out into the tangent plane: each keeps its length,
/// or the rims of ears and the tips of fingers would slide off towards where the body is thick.
Vec3f RolledOutPull(const geometry::Topology& topology, const Incidence& incidence,
                    base::Span<const Vec3f> positions, std::size_t v, Vec3f normal)
{
    Vec3f sum;
    for (const std::uint32_t f : incidence.around(v))
        for (const std::uint32_t other : topology.face(f)) {
            const Vec3f offset = positions[other] - positions[v];
            sum += Normalized(offset - normal * Dot(offset, normal)) * Length(offset);
        }
    return sum * (0.25f / static_cast<float>(incidence.around(v).size()));
}

std::vector<char> VerticesOfFoldedQuads(const geometry::Topology& topology, base::Span<const Vec3f> positions,
                                        base::Span<const Vec3f> normals)
{
    std::vector<char> marked(positions.size(), 0);
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        if (IsFolded(positions, normals, topology.face(f)))
            for (const std::uint32_t v : topology.face(f))
                marked[v] = 1;
    return marked;
}

/// Back towards the surface after a small step along it, by the gradient before the step.
Vec3f StepBack(Solid solid, Vec3f p, Vec3f gradient)
{
    const float slope = std::max(LengthSquared(gradient), 0.1f);
    for (int step = 0; step < 2; ++step)
        p -= gradient * std::clamp(solid(p) / slope, -0.6f, 0.6f);
    return p;
}

/// One round over the marked vertices (all without marks).
void RelaxOnce(Solid solid, const geometry::Topology& topology, const Incidence& incidence,
               std::vector<Vec3f>& positions, const std::vector<char>* marked)
{
    const std::vector<Vec3f> before = positions;
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        if (marked && !(*marked)[v])
            return;
        const Vec3f gradient = Gradient(solid, before[v]);
        const Vec3f pull = RolledOutPull(topology, incidence, before, v, Normalized(gradient));
        positions[v] = StepBack(solid, before[v] + pull * 0.7f, gradient);
    });
}

void ProjectAll(Solid solid, std::vector<Vec3f>& positions)
{
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        positions[v] = Project(solid, positions[v]);
    });
}

/// Rounds over what is folded and its neighbours, until nothing is.
void Unfold(Solid solid, const geometry::Topology& topology, const Incidence& incidence,
            std::vector<Vec3f>& positions, int rounds)
{
    std::vector<Vec3f> normals = Normals(solid, positions);
    for (int round = 0; round < rounds; ++round) {
        std::vector<char> folded = VerticesOfFoldedQuads(topology, positions, normals);
        if (std::find(folded.begin(), folded.end(), 1) == folded.end())
            break;
        WidenByAFace(topology, folded);
        RelaxOnce(solid, topology, incidence, positions, &folded);
        for (std::size_t v = 0; v < positions.size(); ++v)
            if (folded[v])
                normals[v] = Normalized(Gradient(solid, positions[v]));
    }
}

} // namespace

void WidenByAFace(const geometry::Topology& topology, std::vector<char>& marked)
{
    const std::vector<char> before = marked;
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        for (const std::uint32_t v : topology.face(f))
            if (before[v])
                for (const std::uint32_t other : topology.face(f))
                    marked[other] = 1;
}

std::vector<Vec3f> RelaxOn(Solid solid, const geometry::Topology& topology, std::vector<Vec3f> positions,
                           int rounds)
{
    const Incidence incidence(topology);
    ProjectAll(solid, positions);
    for (int round = 0; round < rounds; ++round)
        RelaxOnce(solid, topology, incidence, positions, nullptr);
    Unfold(solid, topology, incidence, positions, 2 * rounds);
    ProjectAll(solid, positions);
    return positions;
}

void RelaxSome(Solid solid, const geometry::Topology& topology, const std::vector<char>& marked, int rounds,
               std::vector<Vec3f>& positions)
{
    const Incidence incidence(topology);
    for (int round = 0; round < rounds; ++round)
        RelaxOnce(solid, topology, incidence, positions, &marked);
    ProjectAll(solid, positions);
}

std::size_t CountFoldedQuads(const geometry::PolygonMeshView& mesh)
{
    const std::vector<Vec3f> normals = Normals(BodyDistance, mesh.positions);
    std::size_t count = 0;
    for (std::size_t f = 0; f < mesh.faceCount(); ++f)
        count += IsFolded(mesh.positions, normals, mesh.face(f));
    return count;
}

} // namespace content
