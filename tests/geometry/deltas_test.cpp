// Sparse morph deltas.
// SPDX-License-Identifier: MIT

#include "geometry/deltas.h"

#include "geometry/errors.h"
#include "throws.h"

#include <random>

using namespace geometry;

TEST(MakeDeltas, keeps_what_is_longer_than_the_tolerance)
{
    const std::vector<Vec3f> neutral{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}},
        morphed{{0, 0.001f, 0}, {1, 1, 1}, {2, 5, 2}};
    const SparseDeltas deltas = MakeDeltas(neutral, morphed, 0.01f);
    EXPECT_EQ(deltas.vertices, (std::vector<std::uint32_t>{2}));
    EXPECT_EQ(deltas.deltas[0], (Vec3f{0, 3, 0}));
    EXPECT_EQ(LargestLength(deltas), 3.0f);
    EXPECT_EQ(LargestLength({}), 0.0f);
}

TEST(MakeDeltas, refuses_shapes_of_different_length)
{
    EXPECT_THROW_MSG(MakeDeltas(std::vector<Vec3f>(2), std::vector<Vec3f>(3), 0.0f), TopologyError,
                     "neutral shape has 2 vertices but morphed shape has 3");
}

TEST(AddDeltas, refuses_a_vertex_out_of_range_and_changes_nothing)
{
    std::vector<Vec3f> positions(2);
    const SparseDeltas deltas{{0, 2}, {{1, 1, 1}, {1, 1, 1}}};
    EXPECT_THROW_MSG(AddDeltas(positions, deltas, 1.0f), TopologyError,
                     "delta names vertex 2 but only 2 are defined");
    EXPECT_EQ(positions[0], Vec3f{});
}

TEST(ToDense, undoes_making_sparse)
{
    const std::vector<Vec3f> dense{{0, 0, 0}, {1, 2, 3}, {0, 0, 0}, {4, 5, 6}};
    EXPECT_EQ(ToDense(MakeDeltas(dense, 0.0f), dense.size()), dense);
}

TEST(WithPreserved, keeps_old_deltas_where_the_fresh_ones_name_no_vertex)
{
    const SparseDeltas old{{1, 3, 4, 9}, {{1, 0, 0}, {3, 0, 0}, {4, 0, 0}, {9, 0, 0}}};
    const SparseDeltas fresh{{0, 3, 9}, {{0, 5, 0}, {0, 6, 0}, {0, 7, 0}}};
    const SparseDeltas merged = WithPreserved(old, fresh);
    EXPECT_EQ(merged.vertices, (std::vector<std::uint32_t>{0, 1, 3, 4, 9}));
    EXPECT_EQ(merged.deltas, (std::vector<Vec3f>{{0, 5, 0}, {1, 0, 0}, {0, 6, 0}, {4, 0, 0}, {0, 7, 0}}));
    EXPECT_EQ(WithPreserved({}, fresh).vertices, fresh.vertices);
    EXPECT_EQ(WithPreserved(old, {}).vertices, old.vertices);
}

TEST(DropShort, drops_only_what_is_shorter)
{
    SparseDeltas deltas{{1, 4, 7}, {{0.5f, 0, 0}, {0.1f, 0, 0}, {0, 0, 2}}};
    DropShort(deltas, 0.25f);
    EXPECT_EQ(deltas.vertices, (std::vector<std::uint32_t>{1, 7}));
}

TEST(Attenuate, gives_head_and_body_parts_that_add_up_to_the_whole)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> weight(0.0f, 1.0f), length(-10.0f, 10.0f);
    SparseDeltas whole;
    std::vector<float> weights;
    for (std::uint32_t v = 0; v < 1000; ++v) {
        whole.vertices.push_back(v);
        whole.deltas.push_back({length(random), length(random), length(random)});
        weights.push_back(weight(random));
    }
    SparseDeltas head = whole, body = whole;
    Attenuate(head, weights, 1.0f);
    Attenuate(body, weights, -1.0f);
    ASSERT_EQ(head.size() + body.size(), 2 * whole.size());
    for (std::size_t i = 0; i < whole.size(); ++i) // one rounding of the sum: half a float step at 10
        EXPECT_LE(Length(head.deltas[i] + body.deltas[i] - whole.deltas[i]), 1e-6f);
}

TEST(Attenuate, goes_from_weight_over_one_to_the_complement)
{
    const std::vector<float> weights{0.25f};
    const auto factor = [&](float strength) {
        SparseDeltas deltas{{0}, {{1, 0, 0}}};
        Attenuate(deltas, weights, strength);
        return deltas.deltas[0].x;
    };
    EXPECT_EQ(factor(1.0f), 0.25f);
    EXPECT_EQ(factor(0.5f), 0.625f);
    EXPECT_EQ(factor(0.0f), 1.0f);
    EXPECT_EQ(factor(-0.5f), 0.875f);
    EXPECT_EQ(factor(-1.0f), 0.75f);
}

TEST(Attenuate, counts_a_vertex_beyond_the_map_as_weight_zero)
{
    SparseDeltas deltas{{9}, {{1, 0, 0}}};
    Attenuate(deltas, std::vector<float>{1.0f}, -1.0f);
    EXPECT_EQ(deltas.deltas[0], (Vec3f{1, 0, 0}));
}

TEST(Attenuate, drops_deltas_of_which_nothing_remains)
{
    SparseDeltas deltas{{2, 5, 9}, {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}}};
    Attenuate(deltas, std::vector<float>{0, 0, 0, 0, 0, 0.5f}, 1.0f);
    EXPECT_EQ(deltas.vertices, std::vector<std::uint32_t>{5});
    EXPECT_EQ(deltas.deltas, (std::vector<Vec3f>{{1, 0, 0}}));
}
