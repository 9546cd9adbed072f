// Meshes and morphs as pages carry them.
// SPDX-License-Identifier: MIT

#include "page/page_mesh.h"

#include "geometry/polygon_mesh.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <QByteArray>

#include <cmath>

using namespace cli;
using geometry::Vec3f;

namespace {

template <typename Number>
std::vector<Number> Unpacked(const Json& text)
{
    const QByteArray bytes = QByteArray::fromBase64(QByteArray::fromStdString(text.get<std::string>()));
    std::vector<Number> numbers(static_cast<std::size_t>(bytes.size()) / sizeof(Number));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        std::uint64_t bits = 0;
        for (std::size_t b = 0; b < sizeof(Number); ++b)
            bits |= std::uint64_t{static_cast<unsigned char>(bytes[static_cast<int>(i * sizeof(Number) + b)])}
                    << (8 * b);
        numbers[i] = static_cast<Number>(bits);
    }
    return numbers;
}

geometry::PolygonMesh Mesh(const std::vector<std::vector<std::uint32_t>>& faces, std::vector<Vec3f> positions)
{
    geometry::Topology topology;
    topology.vertexCount = static_cast<std::uint32_t>(positions.size());
    for (const auto& face : faces)
        topology.addFace(face);
    return {std::make_shared<geometry::Topology>(topology), std::move(positions)};
}

std::vector<Vec3f> Positions(std::size_t count)
{
    std::vector<Vec3f> positions;
    for (std::size_t i = 0; i < count; ++i)
        positions.push_back({std::sin(static_cast<float>(i)) * 90.0f, static_cast<float>(i) * 0.01f, 7.0f});
    return positions;
}

} // namespace

TEST(Join, cuts_faces_into_quads_and_counts_vertices_on)
{
    const geometry::PolygonMesh a = Mesh({{0, 1, 2}, {0, 1, 2, 3}}, Positions(4)),
                                b = Mesh({{0, 1, 2, 3, 4}, {5, 4, 3, 2, 1, 0}}, Positions(6));
    const JoinedMesh joined = Join({a.view(), b.view()});
    EXPECT_EQ(joined.positions.size(), 10u);
    EXPECT_EQ(joined.faces, (std::vector<std::uint32_t>{0, 1, 2, 2, 0, 1, 2, 3, 4, 5, 6, 7, 4, 7, 8, 8, //
                                                        9, 8, 7, 6, 9, 6, 5, 4}));
}

TEST(PackMesh, keeps_positions_to_a_65535th_of_the_box)
{
    const geometry::PolygonMesh mesh = Mesh({{0, 1, 2}}, Positions(500));
    const Json packed = PackMesh(Join({mesh.view()}));
    const std::vector<std::uint16_t> steps = Unpacked<std::uint16_t>(packed.at("positions"));
    ASSERT_EQ(steps.size(), 1500u);
    for (std::size_t v = 0; v < 500; ++v) {
        const float expected[] = {mesh.positions[v].x, mesh.positions[v].y, mesh.positions[v].z};
        for (std::size_t k = 0; k < 3; ++k) {
            const double size = packed.at("size")[k];
            EXPECT_NEAR(packed.at("low")[k].get<double>() + size * steps[3 * v + k] / 65535.0, expected[k],
                        0.51 * size / 65535.0 + 1e-4);
        }
    }
    EXPECT_EQ(packed.at("isWide"), false);
    EXPECT_EQ(Unpacked<std::uint16_t>(packed.at("faces")), (std::vector<std::uint16_t>{0, 1, 2, 2}));
}

TEST(PackMesh, has_wide_indices_for_many_vertices)
{
    const geometry::PolygonMesh mesh = Mesh({{0, 70000, 1, 69999}}, Positions(70001));
    const Json packed = PackMesh(Join({mesh.view()}));
    EXPECT_EQ(packed.at("isWide"), true);
    EXPECT_EQ(Unpacked<std::uint32_t>(packed.at("faces")), (std::vector<std::uint32_t>{0, 70000, 1, 69999}));
}

TEST(PackMesh, takes_a_position_that_is_no_number_for_the_origin)
{
    geometry::PolygonMesh mesh = Mesh({{0, 1, 2}}, {{0, 0, 0}, {1, 1, 1}, {NAN, 0, INFINITY}});
    const Json packed = PackMesh(Join({mesh.view()}));
    EXPECT_EQ(packed.at("size"), Json({1.0, 1.0, 1.0}));
    EXPECT_EQ(Unpacked<std::uint16_t>(packed.at("positions"))[6], 0);
}

TEST(PackDeltas, names_the_vertices_that_move_and_keeps_how_far)
{
    const std::vector<Vec3f> deltas{{0, 0, 0}, {1, -2, 0.5f}, {0, 0, 0}, {0, 0, 0.001f}};
    const Json packed = PackDeltas(deltas);
    const std::vector<std::uint16_t> vertices = Unpacked<std::uint16_t>(packed.at("vertices"));
    const std::vector<std::int16_t> steps = Unpacked<std::int16_t>(packed.at("deltas"));
    const double scale = packed.at("scale");
    ASSERT_EQ(vertices, (std::vector<std::uint16_t>{1, 3}));
    ASSERT_EQ(steps.size(), 6u);
    const double expected[] = {1, -2, 0.5, 0, 0, 0.001};
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(scale * steps[i], expected[i], 0.51 * scale);
}

TEST(PackDeltas, names_no_vertices_where_all_move)
{
    EXPECT_TRUE(PackDeltas({{1, 0, 0}, {0, 1, 0}}).at("vertices").is_null());
    EXPECT_EQ(PackDeltas({{0, 0, 0}, {0, 0, 0}}).at("deltas"), "");
}
