// Texture coordinates and polylines in files of others.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "tests/host/content_fixture.h"

namespace {

/// Two triangles that share an edge.
class ForeignUvs : public LibraryTest {
protected:
    dson::Document read(const std::string& uvSet, const std::string& lines = "[]") const
    {
        const std::filesystem::path file = folder("uv") / "Uv.dsf";
        WriteBytes(file,
                   R"({"file_version": "0.6.0.0", "asset_info": {"id": "/Uv.dsf"}, "geometry_library": [{
            "id": "Mesh", "default_uv_set": "#My%20Set",
            "vertices": {"count": 4, "values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
            "polygon_groups": {"count": 1, "values": ["all"]},
            "polygon_material_groups": {"count": 1, "values": ["Skin"]},
            "polylist": {"count": 2, "values": [[0,0,0,1,2],[0,0,0,2,3]]},
            "polyline_list": )" +
                       lines + R"(}], "uv_set_library": [{"id": "Other"}, )" + uvSet + "]}");
        return dson::ReadDocument(file);
    }
    static std::vector<float> us(const dson::Document& document)
    {
        std::vector<float> values;
        const geometry::TexCoords& uvs = document.geometries.front().texCoords;
        for (const std::uint32_t index : uvs.cornerIndices)
            values.push_back(uvs.coordinates[index].u);
        return values;
    }
};

TEST_F(ForeignUvs, are_those_of_the_vertex_unless_a_corner_says_otherwise)
{
    EXPECT_EQ(us(read(R"({"id": "My Set", "uvs": [[0,0],[0.25,0],[0.5,1],[0.75,1],[1,1]],
                          "polygon_vertex_indices": [[1, 2, 4]]})")),
              (std::vector<float>{0.0f, 0.25f, 0.5f, 0.0f, 1.0f, 0.75f}));
    EXPECT_EQ(us(read(R"({"id": "My Set", "uvs": {"count": 9, "values": [[0,0],[0.25,0],[0.5,1],[0.75,1]]},
                          "polygon_vertex_indices": {"count": 0, "values": []}})"))
                  .size(),
              6u);
}

TEST_F(ForeignUvs, that_do_not_fit_are_left_out_and_told)
{
    const dson::Document document = read(R"({"id": "My Set", "uvs": [[0,0]]})");
    EXPECT_TRUE(us(document).empty());
    ASSERT_EQ(document.diagnostics.size(), 1u);
    EXPECT_EQ(document.diagnostics[0].file, document.file.string());
    EXPECT_EQ(document.diagnostics[0].asset, "My Set");
    EXPECT_EQ(document.diagnostics[0].what, "the UV set does not fit its mesh and is left out");
}

TEST_F(ForeignUvs, lose_single_corners_that_are_not_there)
{
    const dson::Document document = read(R"({"id": "My Set",
        "uvs": [[0,0],[1,0],[1,1],[0,1],[0,0],[0,0],[0,0],[0,0],[0.5,0.5]],
        "polygon_vertex_indices": [[7, 0, 0], [0, 0, 99], [0, 7, 1], [0, 1, 8]]})");
    const geometry::TexCoords& texCoords = document.geometries.front().texCoords;
    const geometry::Topology& topology = *document.geometries.front().mesh.topology;
    ASSERT_EQ(texCoords.cornerIndices.size(), topology.cornerCount());
    for (std::size_t c = 0; c < topology.face(0).size(); ++c)
        EXPECT_EQ(texCoords.cornerIndices[c], topology.face(0)[c] == 1 ? 8u : topology.face(0)[c]);
    ASSERT_EQ(document.diagnostics.size(), 1u);
    EXPECT_EQ(document.diagnostics[0].what, "3 corners of the UV set are not there and left out");
}

TEST_F(ForeignUvs, that_are_no_numbers_are_told_and_read_as_zero)
{
    const dson::Document document =
        read(R"({"id": "My Set", "uvs": [[0,0],["x",1],[1,NaN],[0,1],[0,0],[0,0],[0,0],[0,0]]})");
    const auto& coordinates = document.geometries.front().texCoords.coordinates;
    ASSERT_EQ(coordinates.size(), 8u);
    EXPECT_EQ(coordinates[1].u, 0.0f);
    EXPECT_EQ(coordinates[1].v, 1.0f);
    EXPECT_EQ(coordinates[2].v, 0.0f);
    EXPECT_EQ(document.diagnostics.back().what, "2 texture coordinates that are no numbers, taken as 0");
}

TEST_F(ForeignUvs, in_rows_of_other_lengths_are_told_and_the_rest_is_used)
{
    const dson::Document document = read(R"({"id": "My Set", "uvs": [[0,0],[0.25],[0.5,1],[0.75,1],[1,1]],
                 "polygon_vertex_indices": [[1, 2], "x", [1, 2, 4, 5], [1, -2, 4], [1, 2, 4]]})");
    EXPECT_EQ(us(document), (std::vector<float>{0.0f, 0.25f, 0.5f, 0.0f, 1.0f, 0.75f}));
    EXPECT_EQ(document.geometries.front().texCoords.coordinates[1].v, 0.0f);
    ASSERT_EQ(document.diagnostics.size(), 2u);
    EXPECT_EQ(document.diagnostics[0].what, "1 texture coordinate that is no numbers, taken as 0");
    EXPECT_EQ(document.diagnostics[1].what,
              "4 corners are not a face, a vertex and a coordinate and left out");
}

TEST_F(ForeignUvs, are_not_needed)
{
    EXPECT_TRUE(us(read(R"({"id": "Somebody else's", "uvs": [[0]]})")).empty());
}

TEST_F(ForeignUvs, come_with_lines_whose_vertices_are_there)
{
    const dson::Document document =
        read(R"({"id": "My Set"})", R"({"count": 3, "values": [[0,0,1,3], [0,0,2,17], [0,0,3]]})");
    EXPECT_EQ(document.geometries.front().lines, (std::vector<std::vector<std::uint32_t>>{{1, 3}}));
    ASSERT_FALSE(document.diagnostics.empty());
    EXPECT_EQ(document.diagnostics[0].what, "2 lines name vertices that are not there and are left out");
}

} // namespace
