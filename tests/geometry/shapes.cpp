// Small named meshes for the tests.
// SPDX-License-Identifier: MIT

#include "shapes.h"

namespace shapes {

using geometry::PolygonMesh;
using geometry::Topology;
using geometry::Vec3f;

namespace {

PolygonMesh Finish(std::vector<Vec3f> positions, Topology topology)
{
    topology.vertexCount = static_cast<std::uint32_t>(positions.size());
    PolygonMesh mesh;
    mesh.topology = std::make_shared<const Topology>(std::move(topology));
    mesh.positions = std::move(positions);
    return mesh;
}

void AddFace(Topology& topology, std::initializer_list<std::uint32_t> corners)
{
    topology.addFace({corners.begin(), corners.size()});
}

} // namespace

PolygonMesh FromFaces(std::vector<Vec3f> positions,
                      std::initializer_list<std::initializer_list<std::uint32_t>> faces)
{
    Topology topology;
    for (const auto& face : faces)
        AddFace(topology, face);
    return Finish(std::move(positions), std::move(topology));
}

PolygonMesh Triangle()
{
    return FromFaces({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
}

PolygonMesh Cube(float edge)
{
    const float h = edge / 2;
    return FromFaces(
        {{-h, -h, -h}, {h, -h, -h}, {h, h, -h}, {-h, h, -h}, {-h, -h, h}, {h, -h, h}, {h, h, h}, {-h, h, h}},
        {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 4, 7, 3}, {1, 2, 6, 5}});
}

PolygonMesh Sphere(float radius, int rings, int segments)
{
    constexpr double pi = 3.14159265358979323846;
    std::vector<Vec3f> positions{{0, radius, 0}};
    for (int r = 1; r < rings; ++r)
        for (int s = 0; s < segments; ++s) {
            const double polar = pi * r / rings, around = 2 * pi * s / segments;
            positions.push_back({static_cast<float>(radius * std::sin(polar) * std::sin(around)),
                                 static_cast<float>(radius * std::cos(polar)),
                                 static_cast<float>(radius * std::sin(polar) * std::cos(around))});
        }
    positions.push_back({0, -radius, 0});
    const auto at = [&](int r, int s) {
        return static_cast<std::uint32_t>(1 + (r - 1) * segments + s % segments);
    };
    const auto last = static_cast<std::uint32_t>(positions.size() - 1);
    Topology topology;
    for (int s = 0; s < segments; ++s) {
        AddFace(topology, {0, at(1, s), at(1, s + 1)});
        for (int r = 1; r + 1 < rings; ++r)
            AddFace(topology, {at(r, s), at(r + 1, s), at(r + 1, s + 1), at(r, s + 1)});
        AddFace(topology, {last, at(rings - 1, s + 1), at(rings - 1, s)});
    }
    return Finish(std::move(positions), std::move(topology));
}

PolygonMesh Grid(int cells, float size)
{
    std::vector<Vec3f> positions;
    for (int y = 0; y <= cells; ++y)
        for (int x = 0; x <= cells; ++x)
            positions.push_back({size * static_cast<float>(x) / static_cast<float>(cells),
                                 size * static_cast<float>(y) / static_cast<float>(cells), 0});
    Topology topology;
    const auto at = [&](int x, int y) { return static_cast<std::uint32_t>(y * (cells + 1) + x); };
    for (int y = 0; y < cells; ++y)
        for (int x = 0; x < cells; ++x)
            AddFace(topology, {at(x, y), at(x + 1, y), at(x + 1, y + 1), at(x, y + 1)});
    return Finish(std::move(positions), std::move(topology));
}

PolygonMesh OpenCone(int segments)
{
    constexpr double pi = 3.14159265358979323846;
    std::vector<Vec3f> positions{{0, 1, 0}};
    Topology topology;
    for (int s = 0; s < segments; ++s) {
        const double around = 2 * pi * s / segments;
        positions.push_back({static_cast<float>(std::sin(around)), 0, static_cast<float>(std::cos(around))});
        AddFace(topology,
                {0, static_cast<std::uint32_t>(1 + s), static_cast<std::uint32_t>(1 + (s + 1) % segments)});
    }
    return Finish(std::move(positions), std::move(topology));
}

PolygonMesh Sliver()
{
    return FromFaces({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}}, {{0, 1, 2}, {0, 1, 3}});
}

PolygonMesh TwoIslands(int cells, float size, float shift)
{
    return Joined(Grid(cells, size), Moved(Grid(cells, size), {shift, 0, 0}));
}

PolygonMesh Lips(int cells, float size, float gap)
{
    PolygonMesh upper = Moved(Grid(cells, size), {0, 0, gap});
    auto flipped = std::make_shared<Topology>(*upper.topology);
    for (std::size_t f = 0; f < flipped->faceCount(); ++f)
        std::swap(flipped->cornerVertices[4 * f + 1], flipped->cornerVertices[4 * f + 3]);
    upper.topology = flipped;
    return Joined(Grid(cells, size), upper);
}

PolygonMesh Mixed()
{
    return FromFaces(
        {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0.5f, 0}, {0, 2, 0}, {0.5f, 2.5f, 0}, {1, 2, 0}},
        {{0, 1, 2, 3}, {1, 4, 2}, {3, 2, 7, 6, 5}});
}

PolygonMesh LooseVertex()
{
    return FromFaces({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 5}}, {{0, 1, 2}});
}

PolygonMesh Joined(const PolygonMesh& a, const PolygonMesh& b)
{
    std::vector<Vec3f> positions = a.positions;
    positions.insert(positions.end(), b.positions.begin(), b.positions.end());
    Topology topology = *a.topology;
    for (std::size_t f = 0; f < b.faceCount(); ++f) {
        std::vector<std::uint32_t> corners(b.topology->face(f).begin(), b.topology->face(f).end());
        for (std::uint32_t& corner : corners)
            corner += a.topology->vertexCount;
        topology.addFace(corners);
    }
    return Finish(std::move(positions), std::move(topology));
}

PolygonMesh Moved(PolygonMesh mesh, Vec3f by)
{
    for (Vec3f& position : mesh.positions)
        position += by;
    return mesh;
}

PolygonMesh Labelled(const PolygonMesh& mesh)
{
    Topology topology = *mesh.topology;
    topology.groupNames = {"left arm", "right"};
    topology.surfaceNames = {"Skin", "Nails"};
    for (std::uint32_t f = 0; f < topology.faceCount(); ++f) {
        topology.faceGroups.push_back(f % 2);
        topology.faceSurfaces.push_back(f / 2 % 2);
    }
    return Finish(mesh.positions, std::move(topology));
}

} // namespace shapes
