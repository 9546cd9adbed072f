// Lids, lips and jaw.
// SPDX-License-Identifier: MIT

#include "content/body_landmarks.h"
#include "content/body_lashes.h"
#include "content/shape_fields.h"
#include "tests/content/sample_topologies.h"

#include <gtest/gtest.h>

using namespace content;
using geometry::PolygonMesh;

namespace {

TEST(EyesClosed, brings_the_lids_together_and_leaves_the_balls)
{
    for (const char* const surface : {"Sclera", "Irises", "Pupils"})
        for (const std::uint32_t v : VerticesOf(OldTopology().canonical, surface))
            ASSERT_EQ(Length(shapes::EyesClosed(OldTopology().canonical.positions[v])), 0.0f) << v;
    const float x = landmarks::eye.x, ball = landmarks::eyeRadius + landmarks::socketGap + 0.1f;
    const landmarks::LidLine line = landmarks::LidLineAt(x);
    const auto onLid = [&](float height) {
        const float up = line.middle + height - landmarks::eye.y;
        return Vec3f{x, line.middle + height, landmarks::eye.z + std::sqrt(ball * ball - up * up)};
    };
    const Vec3f upper = onLid(line.up), lower = onLid(-line.down);
    const float open = Length(upper - lower);
    const float closed = (upper + shapes::EyesClosed(upper) - lower - shapes::EyesClosed(lower)).y;
    EXPECT_GT(open, 0.8f);
    EXPECT_LT(closed, 0.0f);
    EXPECT_GT(closed, -0.12f) << "what is rounded off a lid's edge";
}

TEST(EyesClosed, takes_the_lashes_along_and_bends_none)
{
    for (const bool isUpper : {true, false})
        for (float root = isUpper ? 2.2f : 2.8f; root < 4.3f; root += 0.25f) {
            const auto moved = [&](float rise) {
                const Vec3f p = FromLash({isUpper, root, rise});
                return p + shapes::EyesClosed(p);
            };
            const Vec3f base = FromLash({isUpper, root, 0.3f}), tip = FromLash({isUpper, root, 0.8f});
            // The lid turns about an axis from side to side, so lengths remain, but for the skin's nearness.
            EXPECT_NEAR(Length(moved(0.8f) - moved(0.3f)), Length(tip - base), 0.02f) << root;
            if (isUpper)
                EXPECT_LT(shapes::EyesClosed(tip).y, -0.5f) << root;
            else
                EXPECT_GT(shapes::EyesClosed(tip).y, 0.05f) << root;
        }
}

TEST(MouthOpen, moves_the_lower_teeth_as_one_and_leaves_the_upper_ones)
{
    const PolygonMesh& mesh = NewTopology().canonical;
    int moved = 0, stayed = 0;
    for (const std::uint32_t v : VerticesOf(mesh, "Teeth")) {
        const Vec3f p = mesh.positions[v], way = shapes::MouthOpen(p);
        if (p.y > 151.5f) {
            ASSERT_EQ(Length(way), 0.0f) << v;
            ++stayed;
        } else {
            ASSERT_LT(way.y, -1.0f) << v;
            ++moved;
        }
    }
    EXPECT_GT(moved, 100);
    EXPECT_GT(stayed, 100);
}

TEST(MouthOpen, parts_the_lips_and_leaves_the_nose)
{
    const float line = landmarks::LipLine(0.0f);
    const Vec3f upper{0.0f, line + landmarks::lipGap, 8.9f}, lower{0.0f, line - landmarks::lipGap, 8.9f};
    EXPECT_GT((upper + shapes::MouthOpen(upper) - lower - shapes::MouthOpen(lower)).y, 2.0f);
    EXPECT_EQ(Length(shapes::MouthOpen({0.0f, 155.2f, 10.5f})), 0.0f);
}

} // namespace
