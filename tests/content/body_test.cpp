// The canonical body and its two topologies.
// SPDX-License-Identifier: MIT

#include "content/body_landmarks.h"
#include "content/body_mesher.h"
#include "content/body_nails.h"
#include "content/body_relax.h"
#include "content/body_skeleton.h"
#include "content/body_solid.h"
#include "geometry/normals.h"
#include "geometry/subdivision.h"
#include "geometry/surface_distance.h"
#include "tests/content/sample_topologies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

using namespace content;
using geometry::PolygonMesh;

namespace {

/// How often each directed edge is used.
std::map<std::pair<std::uint32_t, std::uint32_t>, int> DirectedEdges(const PolygonMesh& mesh)
{
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> edges;
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        const auto face = mesh.topology->face(f);
        for (std::size_t c = 0; c < face.size(); ++c)
            ++edges[{face[c], face[(c + 1) % face.size()]}];
    }
    return edges;
}

std::size_t CountPieces(const PolygonMesh& mesh)
{
    std::vector<std::uint32_t> root(mesh.vertexCount());
    for (std::uint32_t v = 0; v < root.size(); ++v)
        root[v] = v;
    const auto find = [&](std::uint32_t v) {
        while (root[v] != v)
            v = root[v] = root[root[v]];
        return v;
    };
    for (std::size_t f = 0; f < mesh.faceCount(); ++f)
        for (const std::uint32_t v : mesh.topology->face(f))
            root[find(v)] = find(mesh.topology->face(f)[0]);
    std::size_t pieces = 0;
    for (std::uint32_t v = 0; v < root.size(); ++v)
        pieces += find(v) == v;
    return pieces;
}

class BodyMesh : public testing::TestWithParam<const char*> {
protected:
    bool isOld() const { return std::string(GetParam()) == "old"; }
    const PolygonMesh& mesh() const { return isOld() ? OldTopology().body : NewTopology().body; }
};

TEST_P(BodyMesh, has_quads_only)
{
    for (std::size_t f = 0; f < mesh().faceCount(); ++f) {
        const auto face = mesh().topology->face(f);
        ASSERT_EQ(face.size(), 4u);
        for (int a = 0; a < 4; ++a)
            for (int b = 0; b < a; ++b)
                ASSERT_NE(face[a], face[b]) << "face " << f;
    }
}

TEST_P(BodyMesh, is_closed_and_manifold)
{
    const auto edges = DirectedEdges(mesh());
    for (const auto& [edge, count] : edges) {
        ASSERT_EQ(count, 1) << edge.first << " " << edge.second;
        ASSERT_EQ(edges.count({edge.second, edge.first}), 1u) << edge.first << " " << edge.second;
    }
}

TEST_P(BodyMesh, has_one_fan_of_at_least_three_faces_at_each_vertex)
{
    // Following the faces around a vertex must come past all of them: two fans that touch in a point would
    // not.
    std::vector<std::size_t> valence(mesh().vertexCount(), 0);
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t>
        before; // (vertex, next corner) -> corner before
    std::vector<std::uint32_t> first(mesh().vertexCount(), 0);
    for (std::size_t f = 0; f < mesh().faceCount(); ++f) {
        const auto face = mesh().topology->face(f);
        for (int c = 0; c < 4; ++c) {
            ++valence[face[c]];
            before[{face[c], face[(c + 1) & 3]}] = face[(c + 3) & 3];
            first[face[c]] = face[(c + 1) & 3];
        }
    }
    for (std::uint32_t v = 0; v < mesh().vertexCount(); ++v) {
        ASSERT_GE(valence[v], 3u) << v;
        std::size_t steps = 0;
        std::uint32_t at = first[v];
        do {
            at = before.at({v, at});
            ++steps;
        } while (at != first[v] && steps <= valence[v]);
        ASSERT_EQ(steps, valence[v]) << v;
    }
}

TEST_P(BodyMesh, is_one_piece_without_handles)
{
    EXPECT_EQ(CountPieces(mesh()), 1u);
    const auto vertices = static_cast<long>(mesh().vertexCount()),
               faces = static_cast<long>(mesh().faceCount());
    EXPECT_EQ(vertices - 2 * faces + faces, 2) << "Euler characteristic of a sphere";
}

TEST_P(BodyMesh, has_a_stock_figures_number_of_vertices)
{
    EXPECT_GE(mesh().vertexCount(), isOld() ? 16000u : 26000u);
    EXPECT_LE(mesh().vertexCount(), isOld() ? 18500u : 29500u);
}

TEST_P(BodyMesh, lies_on_the_body_and_nowhere_twice)
{
    std::vector<std::array<float, 3>> sorted;
    for (const Vec3f p : mesh().positions) {
        // Two hundredths of a millimetre; the deepest creases stop the projection short of its own aim.
        ASSERT_LT(std::abs(BodyDistance(p)), 2e-3f) << p.x << " " << p.y << " " << p.z;
        sorted.push_back({p.x, p.y, p.z});
    }
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
}

TEST_P(BodyMesh, opens_behind_lids_and_lips)
{
    using namespace landmarks;
    int onSocket = 0, onUpperLip = 0, onLowerLip = 0;
    for (const Vec3f p : mesh().positions) {
        onSocket += std::abs(Length(p - eye) - eyeRadius - socketGap) < 5e-3f;
        const float height = p.y - LipLine(std::abs(p.x));
        if (std::abs(p.x) < 2.0f && p.z > 7.7f && std::abs(height) < lipGap + 2e-3f)
            ++(height > 0.0f ? onUpperLip : onLowerLip);
    }
    EXPECT_GT(onSocket, 60);
    EXPECT_GT(onUpperLip, 20);
    EXPECT_GT(onLowerLip, 20);
}

TEST_P(BodyMesh, faces_outwards)
{
    double volume = 0.0;
    for (std::size_t f = 0; f < mesh().faceCount(); ++f) {
        const auto q = mesh().topology->face(f);
        const auto& p = mesh().positions;
        volume += Dot(p[q[0]], Cross(p[q[1]], p[q[2]])) / 6.0 + Dot(p[q[0]], Cross(p[q[2]], p[q[3]])) / 6.0;
    }
    // An adult has 50 to 100 litres.
    EXPECT_GT(volume, 50e3);
    EXPECT_LT(volume, 100e3);
}

TEST_P(BodyMesh, folds_hardly_anywhere)
{
    EXPECT_LT(CountFoldedQuads(mesh().view()), mesh().faceCount() / 200);
}

TEST_P(BodyMesh, has_no_waves_along_the_brows_when_it_is_subdivided)
{
    // A ridge across coarse quads is cut off more here and less there. Light tells where normals are five
    // degrees off, and a morph that takes the ridge away leaves the other mesh's waves behind.
    const geometry::Subdivision subdivision(mesh().topology, 2);
    PolygonMesh fine{subdivision.topology(2), subdivision.refine(mesh().positions, 0, 2)};
    const std::vector<Vec3f> normals = geometry::VertexNormals(fine.view());
    std::vector<float> degrees;
    for (std::size_t v = 0; v < normals.size(); ++v) {
        const Vec3f p = fine.positions[v];
        const float x = std::abs(p.x);
        if (x < 0.8f || x > 5.5f || p.y < 159.8f || p.y > 163.0f || p.z < 4.0f)
            continue;
        const float cosine = Dot(normals[v], Normalized(Gradient(BodyDistance, p)));
        degrees.push_back(std::acos(std::min(cosine, 1.0f)) * 57.29578f);
    }
    ASSERT_GT(degrees.size(), 1000u);
    EXPECT_LT(geometry::Summarize(degrees).p95, 5.0);
}

TEST_P(BodyMesh, comes_out_the_same_each_time)
{
    const PolygonMesh again = MeshBody(isOld() ? OldGenerationRecipe() : NewGenerationRecipe());
    EXPECT_EQ(again.topology->cornerVertices, mesh().topology->cornerVertices);
    ASSERT_EQ(again.vertexCount(), mesh().vertexCount());
    for (std::size_t v = 0; v < again.vertexCount(); ++v)
        ASSERT_EQ(again.positions[v], mesh().positions[v]) << v;
}

INSTANTIATE_TEST_SUITE_P(Topologies, BodyMesh, testing::Values("old", "new"),
                         [](const auto& which) { return std::string(which.param); });

TEST(BodySolid, is_a_mirror_image_of_itself)
{
    for (float y = 1.0f; y < 170.0f; y += 3.7f)
        for (float x = 0.1f; x < 70.0f; x += 2.3f)
            for (float z = -12.0f; z < 18.0f; z += 4.1f)
                ASSERT_EQ(BodyDistance({x, y, z}), BodyDistance({-x, y, z})) << x << " " << y << " " << z;
}

TEST(BodySolid, has_nails_in_grooves)
{
    for (const Nail& nail : Nails())
        for (const float turn : {0.1f, 0.3f, 0.5f, 0.8f}) {
            const Vec3f plate = nail.place(turn, 0.5f), border = nail.place(turn, 1.0f);
            EXPECT_LT(BodyDistance(plate), ClosedBodyDistance(plate));
            EXPECT_GT(BodyDistance(border), ClosedBodyDistance(border));
        }
}

TEST(BodySolid, has_a_navel)
{
    using landmarks::navel;
    EXPECT_GT(BodyDistance(navel), ClosedBodyDistance(navel) + 0.3f);
    for (const Vec3f beside : {Vec3f{2.5f, 0, 0}, Vec3f{0, 2.5f, 0}, Vec3f{0, -2.5f, 0}})
        EXPECT_EQ(BodyDistance(navel + beside), ClosedBodyDistance(navel + beside));
}

TEST(Nails, have_a_surface_with_faces_on_every_finger_and_toe)
{
    for (const SampleTopology* topology : {&OldTopology(), &NewTopology()}) {
        const std::vector<std::uint32_t> vertices = VerticesOf(topology->canonical, "Nails");
        for (const Nail& nail : Nails())
            for (const float side : {1.0f, -1.0f})
                EXPECT_TRUE(std::any_of(vertices.begin(), vertices.end(), [&](std::uint32_t v) {
                    const Vec3f p = topology->canonical.positions[v];
                    return Length(Vec3f{side * p.x, p.y, p.z} - nail.center) < nail.halfWidth;
                }));
    }
}

TEST(BodySolid, has_a_persons_measures)
{
    const geometry::Box3f box = geometry::BoundingBox(NewTopology().canonical.positions);
    EXPECT_NEAR(box.min.y, 0.0f, 0.3f);
    EXPECT_NEAR(box.max.y, 170.0f, 1.0f);
    EXPECT_LT(BodyDistance({0.0f, 120.0f, 0.0f}), -5.0f); // chest
    EXPECT_GT(BodyDistance({0.0f, 60.0f, 0.0f}), 0.5f);   // between the legs
    EXPECT_GT(BodyDistance({24.0f, 105.0f, 0.0f}), 3.0f); // between arm and flank
}

TEST(OldTopology, is_symmetric)
{
    std::set<std::array<float, 3>> places;
    for (const Vec3f p : OldTopology().canonical.positions)
        places.insert({p.x + 0.0f, p.y, p.z});
    for (const Vec3f p : OldTopology().canonical.positions)
        ASSERT_EQ(places.count({-p.x + 0.0f, p.y, p.z}), 1u) << p.x << " " << p.y << " " << p.z;
}

TEST(NewTopology, is_not_symmetric)
{
    // Half a tenth of a millimetre: where quads are small, some vertices come that near to another one by
    // chance.
    std::size_t matched = 0, count = 0;
    const auto& positions = NewTopology().body.positions;
    for (std::size_t v = 0; v < positions.size(); v += 10, ++count)
        matched += std::any_of(positions.begin(), positions.end(),
                               [&](Vec3f q) { return LengthSquared(positions[v] - Mirrored(q)) < 2.5e-5f; });
    EXPECT_LT(matched, count / 20);
}

TEST(BodyWeights, sum_to_one_at_each_vertex)
{
    for (const SampleTopology* topology : {&OldTopology(), &NewTopology()}) {
        std::vector<float> sums(topology->canonical.vertexCount(), 0.0f);
        std::vector<int> counts(sums.size(), 0);
        for (const geometry::JointWeights& bone : topology->weights)
            for (std::size_t i = 0; i < bone.vertices.size(); ++i) {
                ASSERT_GT(bone.weights[i], 0.0f);
                sums[bone.vertices[i]] += bone.weights[i];
                ++counts[bone.vertices[i]];
            }
        for (std::size_t v = 0; v < sums.size(); ++v) {
            ASSERT_NEAR(sums[v], 1.0f, 1e-5f) << v;
            ASSERT_LE(counts[v], 8) << v;
        }
    }
}

TEST(BodyWeights, give_each_bone_some_skin)
{
    for (std::size_t b = 0; b < BodyBones().size(); ++b)
        EXPECT_FALSE(NewTopology().weights[b].vertices.empty()) << BodyBones()[b].newName;
}

TEST(BodyWeights, of_one_leg_stop_at_the_middle)
{
    for (std::size_t b = 0; b < BodyBones().size(); ++b) {
        if (BodyBones()[b].part != BonePart::Legs)
            continue;
        for (const std::uint32_t v : NewTopology().weights[b].vertices)
            ASSERT_GT(NewTopology().canonical.positions[v].x * static_cast<float>(BodyBones()[b].side), 0.0f)
                << BodyBones()[b].newName;
    }
}

TEST(BodySkeleton, lies_within_the_body)
{
    for (const BodyBone& bone : BodyBones())
        EXPECT_LT(BodyDistance(bone.center), 0.0f) << bone.newName;
}

} // namespace
