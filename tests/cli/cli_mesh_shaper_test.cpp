// Conversions of figures whose meshes are smoothed or pushed.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <cmath>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class MeshShaper : public ConversionTest {
protected:
    /// A character with one modifier of the kind that has one dial, as a saved scene would have it.
    std::string shaped(const std::string& name, const std::string& figure, const std::string& kind,
                       const std::string& channel) const
    {
        const std::string id = fs::path(figure).stem().string();
        std::string address = figure;
        for (std::size_t at; (at = address.find(' ')) != address.npos;)
            address.replace(at, 1, "%20");
        const std::string url = R"("url": ")" + address + "#";
        return workspace.write("lib/People/" + name + ".duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/x.duf", "type": "character"},
            "modifier_library": [{"id": "M", "name": "M", "label": "Even out", "parent": "#g", "extra": [
                {"type": "studio/modifier/)" + kind + R"("},
                {"type": "studio_modifier_channels", "channels": [{"channel": )" +
                                                                  channel + R"(}]}]}],
            "scene": {"nodes": [{"id": "n", "label": ")" + name + R"(", )" +
                                                                  url + id + R"(", "geometries":
                [{"id": "g", )" + url + id + R"(-1"}]}],
                "modifiers": [{"id": "M-1", "url": "#M", "parent": "#g"}]}})");
    }
    std::string pushed(const std::string& name, const std::string& figure, const std::string& distance) const
    {
        return shaped(name, figure, "push",
                      R"({"id": "Value", "name": "Value", "type": "float", "value": )" + distance + "}");
    }
    json reportOf(const std::string& source, const std::string& target) const
    {
        const ProgramResult result = RunProgram(
            argumentsFor(source, target, {"--dial", "Wide=1", "--jobs", "full", "--name", "Vera", "--json"}));
        ExpectSuccess(result);
        return result.exitCode == 0 ? json::parse(result.out) : json::object();
    }
    static double displacement(const json& told) // in mm
    {
        return told.at("created_morphs").at(0).at("largest_displacement_mm");
    }
};

const char* const genesis8 = "/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf";
const char* const genesis9 = "/data/Daz 3D/Genesis 9/Base/Genesis9.dsf";

} // namespace

TEST_F(MeshShaper, of_the_source_is_in_the_new_morphs_and_told)
{
    const std::string source = pushed("Vera", genesis8, "0.5");
    const json plain = reportOf(sourceFile(), targetFile()), told = reportOf(source, targetFile());
    EXPECT_EQ(plain.at("warnings"), json::array());
    EXPECT_EQ(
        told.at("warnings"),
        json({source + ": Vera: the modifier \"Even out\" moves the mesh, and the new morphs hold what it "
                       "does"}));
    EXPECT_GT(std::abs(displacement(told) - displacement(plain)), 0.5);
}

TEST_F(MeshShaper, of_the_target_has_a_bearing_on_the_new_morphs_and_is_told)
{
    const std::string target = pushed("Nine", genesis9, "0.5");
    const json plain = reportOf(sourceFile(), targetFile()), told = reportOf(sourceFile(), target);
    EXPECT_EQ(told.at("warnings"),
              json({target + ": Nine: the modifier \"Even out\" moves the mesh, and the new morphs may hold "
                             "some of what it does"}));
    EXPECT_GT(std::abs(displacement(told) - displacement(plain)), 0.5);
}

TEST_F(MeshShaper, that_moves_nothing_is_not_told)
{
    EXPECT_EQ(reportOf(pushed("Vera", genesis8, "0"), targetFile()).at("warnings"), json::array());
    EXPECT_EQ(reportOf(shaped("Soft", genesis8, "smoothing",
                              R"({"id": "Enable Smoothing", "name": "Enable Smoothing", "type": "bool",
                                  "value": false})"),
                       targetFile())
                  .at("warnings"),
              json::array());
}
