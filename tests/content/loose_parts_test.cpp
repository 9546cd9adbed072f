// Eyeballs, teeth and lashes.
// SPDX-License-Identifier: MIT

#include "content/loose_parts.h"

#include "content/body_landmarks.h"
#include "content/body_lashes.h"
#include "content/body_solid.h"
#include "tests/content/sample_topologies.h"

#include <gtest/gtest.h>

#include <map>

using namespace content;
using geometry::PolygonMesh;

namespace {

/// Cubic centimetres within the faces of one surface, positive when they face outwards.
double VolumeOf(const PolygonMesh& mesh, const std::string& surface)
{
    const geometry::Topology& topology = *mesh.topology;
    double volume = 0.0;
    for (std::size_t f = 0; f < mesh.faceCount(); ++f) {
        if (topology.surfaceNames[topology.faceSurfaces[f]] != surface)
            continue;
        const auto q = topology.face(f);
        const auto& p = mesh.positions;
        volume += Dot(p[q[0]], Cross(p[q[1]], p[q[2]])) / 6.0 + Dot(p[q[0]], Cross(p[q[2]], p[q[3]])) / 6.0;
    }
    return volume;
}

TEST(LooseParts, are_closed_and_face_outwards)
{
    const PolygonMesh parts = MakeLooseParts({});
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> edges;
    for (std::size_t f = 0; f < parts.faceCount(); ++f)
        for (int c = 0; c < 4; ++c)
            ++edges[{parts.topology->face(f)[c], parts.topology->face(f)[(c + 1) & 3]}];
    for (const auto& [edge, count] : edges) {
        ASSERT_EQ(count, 1);
        ASSERT_EQ(edges.count({edge.second, edge.first}), 1u);
    }
    // Two balls of 1.2 cm radius less their pupils; two rows of a few cubic centimetres.
    const double balls = 2.0 * 4.0 / 3.0 * 3.14159 * std::pow(landmarks::eyeRadius, 3.0);
    const double volume = VolumeOf(parts, "Sclera") + VolumeOf(parts, "Irises") + VolumeOf(parts, "Pupils");
    EXPECT_LT(volume, balls);
    EXPECT_GT(volume, 0.85 * balls);
    EXPECT_GT(VolumeOf(parts, "Teeth"), 1.0);
    EXPECT_GT(VolumeOf(parts, "Eyelashes"), 0.0);
}

TEST(LooseParts, lie_outside_the_body_in_its_openings)
{
    for (const SampleTopology* topology : {&OldTopology(), &NewTopology()})
        for (const char* const surface : {"Sclera", "Irises", "Pupils"})
            for (const std::uint32_t v : VerticesOf(topology->canonical, surface))
                ASSERT_GT(BodyDistance(topology->canonical.positions[v]), 0.01f) << v;
    for (const std::uint32_t v : VerticesOf(OldTopology().canonical, "Teeth"))
        ASSERT_GT(BodyDistance(OldTopology().canonical.positions[v]), 0.0f) << v;
}

TEST(Lashes, have_their_roots_in_the_lids_and_their_tips_outside)
{
    for (const bool isUpper : {true, false})
        for (float root = isUpper ? 2.0f : 2.8f; root < 4.3f; root += 0.1f) {
            EXPECT_LT(BodyDistance(FromLash({isUpper, root, -0.15f})), 0.0f) << root;
            EXPECT_GT(BodyDistance(FromLash({isUpper, root, 0.5f})), 0.05f) << root;
        }
}

TEST(Lashes, are_found_again_from_any_place_on_them)
{
    for (const bool isUpper : {true, false})
        for (float root = isUpper ? 2.0f : 2.8f; root < 4.35f; root += 0.15f)
            for (const float rise : {0.0f, 0.3f, 1.0f}) {
                const LashPlace found = LashAt(FromLash({isUpper, root, rise}));
                EXPECT_EQ(found.isUpper, isUpper);
                EXPECT_NEAR(found.root, root, 1e-3f);
                EXPECT_NEAR(found.rise, rise, 1e-3f);
            }
}

} // namespace
