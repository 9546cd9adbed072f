// Conversions onto a figure whose eyes, mouth or clothes are figures of their own.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

using nlohmann::json;

namespace {

class BodyParts : public ConversionTest {
protected:
    /// What is told of the distance when the target wears a square a metre in front of it.
    json distanceWith(const std::string& presentationType) const
    {
        const std::string file = workspace.write("Dressed.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/Dressed.duf", "type": "scene"},
            "geometry_library": [{"id": "Eyes-1", "type": "polygon_mesh",
                "vertices": {"values": [[0, 150, 100], [1, 150, 100], [1, 151, 100], [0, 151, 100]]},
                "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Eye"]},
                "polylist": {"values": [[0, 0, 0, 1, 2, 3]]}}],
            "node_library": [{"id": "Eyes", "type": "figure", "name": "Eyes", "label": "Eyes",
                "presentation": {"type": ")" + presentationType + R"(", "label": "Eyes"}}],
            "scene": {"nodes": [
                {"id": "G9", "url": "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9", "label": "Genesis 9",
                 "geometries": [{"id": "G9-1",
                     "url": "/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9-1"}]},
                {"id": "Eyes-i", "url": "#Eyes", "label": "Eyes", "conform_target": "#G9",
                 "geometries": [{"id": "Eyes-i-1", "url": "#Eyes-1"}]}]}})");
        const ProgramResult result =
            RunProgram(argumentsFor(sourceFile(), file, {"--dial", "Wide=1", "--jobs", "full", "--json"}));
        ExpectSuccess(result);
        return json::parse(result.out).at("surface_distance_mm");
    }
};

} // namespace

TEST_F(BodyParts, count_in_the_distance)
{
    const json distance = distanceWith("Follower/Attachment/Head/Face/Eyes");
    EXPECT_EQ(distance.at("parts"), json::array({"Eyes"}));
    EXPECT_GT(distance.at("max").get<double>(), 500.0);
}

TEST_F(BodyParts, are_not_clothes_or_hair)
{
    for (const char* const type : {"Follower/Wardrobe/Shirt", "Follower/Hair", "Prop"}) {
        const json distance = distanceWith(type);
        EXPECT_EQ(distance.at("parts"), json::array()) << type;
        EXPECT_LT(distance.at("max").get<double>(), 500.0) << type;
    }
}
