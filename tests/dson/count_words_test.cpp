// Messages in which something is there once.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/dhdm.h"
#include "geometry/multires_detail.h"
#include "geometry/polygon_mesh.h"
#include "odd_document.h"
#include "tests/content/throws.h"

#include <regex>

namespace {

using OneOfSomething = OddDocument;

geometry::Topology Square()
{
    geometry::Topology cage;
    cage.vertexCount = 4;
    cage.addFace(std::vector<std::uint32_t>{0, 1, 2, 3});
    return cage;
}

/// Of one displacement on a square.
std::string OneEdit()
{
    geometry::MultiresDetail detail;
    detail.levels.emplace_back();
    detail.levels[0].corners = {0};
    detail.levels[0].offsets = {{0, 1, 0}};
    std::size_t leftOut = 0;
    return dson::EncodeDhdm(detail, Square(), &leftOut);
}

/// With another number in place of a word of 32 bits.
std::string With(std::string bytes, std::size_t word, std::uint32_t number)
{
    return bytes.replace(word * sizeof number, sizeof number, reinterpret_cast<const char*>(&number),
                         sizeof number);
}

} // namespace

TEST_F(OneOfSomething, is_told_as_one_of_detail)
{
    const std::string whole = OneEdit();
    const geometry::Topology square = Square();
    EXPECT_THROW_MSG(dson::DecodeDhdm(whole + "x", square, "file"), base::FormatError,
                     "file: 1 byte follows behind the last level");
    EXPECT_THROW_MSG(dson::DecodeDhdm(With(whole, 4, 1 + 1), square, "file"), base::FormatError,
                     "file: is for 2 faces but the figure has 1");
    geometry::Topology both = square;
    both.addFace(std::vector<std::uint32_t>{3, 2, 1, 0});
    EXPECT_THROW_MSG(dson::DecodeDhdm(whole, both, "file"), base::FormatError,
                     "file: is for 1 face but the figure has 2");
    // The first word behind the level's own four is the face that has the edits.
    EXPECT_THROW_MSG(dson::DecodeDhdm(With(whole, 8, 7), square, "file"), base::FormatError,
                     "file: level 1 holds 1 edit of face 7");
}

TEST_F(OneOfSomething, is_told_as_one_of_documents)
{
    const dson::Document document = read(R"("geometry_library": [{"id": "Mesh", "type": "polygon_mesh",
            "vertices": {"count": 3, "values": [[0, 0, 0], [1, 0, "x"], [0, 1, 0]]},
            "polygon_groups": {"count": 1, "values": ["All"]},
            "polygon_material_groups": {"count": 1, "values": ["Skin"]},
            "polylist": {"count": 2, "values": [[0, 0, 0, 1, 2], [0, 0, 0, 1, 9]]}}],
        "modifier_library": [{"id": "Up", "parent": "#Mesh", "morph": {"vertex_count": 3,
                "deltas": {"count": 3, "values": [[7, 0, 1, 0], [1, 0, 1, 0], [1, 0, 2, 0]]}},
                "formulas": [{"output": "#Up?value", "operations": [{"op": "nothing"}]}]},
            {"id": "Skin", "parent": "#Mesh", "skin": {"node": "#Fig", "geometry": "#Mesh", "vertex_count": 1,
                "joints": [{"id": "j", "node": "#Fig", "node_weights": {"count": 2, "values": [[0, 1], [5, 1]]}}]}}],
        "image_library": [{"id": "a"}], "material_library": [{"id": "b"}], "uv_set_library": [{"id": "c"}])");
    std::string all = told(document);
    for (const std::string& one : document.leftOut)
        all += "\n" + one;
    EXPECT_NE(all.find("is for 1 vertex but its mesh has 3"), all.npos) << all;
    EXPECT_NE(all.find("1 vertex with coordinates that are no numbers"), all.npos) << all;
    const std::regex wrong(R"(\b1 ([a-z]+ies|vertices|[a-z]+[^s]s) )"), right(R"(\b1 [a-z]+)");
    std::smatch found;
    EXPECT_FALSE(std::regex_search(all, found, wrong)) << found.str() << "\n" << all;
    EXPECT_GE(std::distance(std::sregex_iterator(all.begin(), all.end(), right), std::sregex_iterator()), 5)
        << all;
}
