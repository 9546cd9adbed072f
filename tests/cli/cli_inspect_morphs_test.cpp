// Looking into the morphs of a figure: what they are, and which cannot be used.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

#include <cstdint>
#include <cstring>
#include <filesystem>

#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;
using Strings = std::vector<std::string>;

/// Two quads on six vertices.
const char* const figureText = R"({"file_version": "0.6.0.0",
    "asset_info": {"id": "/data/Acme/Box/Box.dsf", "type": "figure"},
    "geometry_library": [{"id": "Box-g",
        "vertices": {"values": [[0, 0, 0], [9, 0, 0], [9, 9, 0], [0, 9, 0], [18, 0, 0], [18, 9, 0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["skin"]},
        "polylist": {"values": [[0, 0, 0, 1, 2, 3], [0, 0, 1, 4, 5, 2]]}}],
    "node_library": [{"id": "Box", "label": "Box", "type": "figure"}]})";

std::string Modifier(const std::string& name, const std::string& members, const std::string& label = "")
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf", "type": "modifier"}, "modifier_library": [{
        "id": ")" +
           name + R"(", "parent": "/data/Acme/Box/Box.dsf#Box-g", "label": ")" + label + "\"" + members +
           "}]}";
}

std::string Morph(int vertex, int vertexCount, const std::string& more = "")
{
    return R"(, "morph": {"vertex_count": )" + std::to_string(vertexCount) + R"(, "deltas": {"values": [[)" +
           std::to_string(vertex) + ", 0, 1, 0]]}" + more + "}";
}

template <class T>
void Put(std::string& bytes, T value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// Detail of one level: an edit of face 0 and two of face 1, at corner 2 both.
std::string Detail(std::uint32_t faceCount)
{
    std::string bytes;
    for (const std::uint32_t word : {0xD0D0D0D0u, 1u, 0x3F800000u, 1u, faceCount, 1u, 3u, 3 * 14u + 2 * 8u})
        Put(bytes, word);
    const auto putFace = [&](std::uint32_t face, std::initializer_list<std::uint16_t> paths) {
        Put(bytes, face);
        Put(bytes, static_cast<std::uint32_t>(paths.size()));
        for (const std::uint16_t path : paths) {
            Put(bytes, 0.5f);
            Put(bytes, path);
            Put(bytes, 0.25f);
            Put(bytes, 0.0f);
        }
    };
    putFace(0, {0x20B0});
    putFace(1, {0x20B0, 0x20B0});
    return bytes;
}

class InspectMorphs : public ::testing::Test {
protected:
    InspectMorphs()
    {
        for (const char* const made :
             {"lib/data/Acme/Box/Morphs/Acme", "lib/People", "more/data/acme/box/morphs/Own"})
            std::filesystem::create_directories(workspace.path(made));
        figure = workspace.write("lib/data/Acme/Box/Box.dsf", figureText);
        writeShape("Tall", Modifier("PHMTall", Morph(2, 6), "Tall Box"));
        writeShape("Wide", Modifier("PHMWide",
                                    Morph(3, -1, R"(, "hd_url": "/data/acme/Box/Morphs/Acme/Wide.dhdm")")));
        writeShape("Wide.dhdm", Detail(2));
        writeShape("Bend",
                   Modifier("CTRLBend", R"(, "formulas": [)" + driving("Tall?value") + "," +
                                            driving("hip?rotation/x") + "," + driving("hip?rotation/x") +
                                            "," + driving("CTRLBend?value") + "]"));
        writeShape("alias_hip_Tall", Modifier("PHMTall", R"(, "channel": {"id": "value", "type": "alias",
            "label": "Tall Box", "target_channel": "Box:#PHMTall?value"})"));
        character = workspace.write("lib/People/Boxer.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/Boxer.duf", "type": "character"}, "scene": {
            "nodes": [{"id": "Box", "url": "/data/acme/Box/Box.dsf#Box", "geometries": [{"id": "g",
                       "url": "/data/Acme/Box/Box.dsf#Box-g"}]}]}})");
    }

    static std::string driving(const std::string& property)
    {
        return R"({"output": "Box:/data/Acme/Box/Box.dsf#)" + property +
               R"(", "operations": [{"op": "push", "url": "Box:#CTRLBend?value"}]})";
    }
    std::string writeShape(const std::string& name, const std::string& text) const
    {
        const bool isMorph = name.find('.') == std::string::npos;
        return workspace.write("lib/data/Acme/Box/Morphs/Acme/" + name + (isMorph ? ".dsf" : ""), text);
    }
    ProgramResult run(Strings more) const
    {
        more.insert(more.begin(), {"inspect", "--json"});
        return RunProgram(more);
    }
    json report(const Strings& more) const
    {
        const ProgramResult result = run(more);
        ExpectSuccess(result);
        return json::parse(result.out);
    }
    static Strings names(const json& report)
    {
        Strings names;
        for (const json& morph : report.at("morphs"))
            names.push_back(morph.at("name"));
        return names;
    }

    Workspace workspace;
    std::string figure, character;
};

} // namespace

TEST_F(InspectMorphs, tells_what_an_alias_stands_for)
{
    const std::string alias = workspace.path("lib/data/Acme/Box/Morphs/Acme/alias_hip_Tall.dsf");
    EXPECT_EQ(report({alias}).at("aliases"),
              json::parse(R"([{"name": "PHMTall", "label": "Tall Box", "on": "Box-g",
                               "stands_for": "Box:#PHMTall?value"}])"));
    EXPECT_FALSE(report({workspace.path("lib/data/Acme/Box/Morphs/Acme/Tall.dsf")}).contains("aliases"));
}

TEST_F(InspectMorphs, tells_what_a_controller_drives)
{
    const std::string controller = workspace.path("lib/data/Acme/Box/Morphs/Acme/Bend.dsf");
    EXPECT_EQ(
        report({controller}).at("drives"),
        json::parse(R"([{"by": "CTRLBend", "count": 2, "properties": ["Tall?value", "hip?rotation/x"]}])"));
    std::string many;
    for (const char* const name : {"A", "B", "C", "D", "E"})
        many += (many.empty() ? "" : ",") + driving(std::string(name) + "?value");
    const ProgramResult result =
        RunProgram({"inspect", writeShape("Many", Modifier("Many", R"(, "formulas": [)" + many + "]"))});
    ExpectSuccess(result);
    EXPECT_NE(result.out.find("Many  5      A?value, B?value, C?value, D?value, ...\n"), std::string::npos)
        << result.out;
}

TEST_F(InspectMorphs, tells_levels_and_owners_of_a_detail_file)
{
    const json facts = report({workspace.path("lib/data/Acme/Box/Morphs/Acme/Wide.dhdm")});
    EXPECT_EQ(facts.at("bytes"), 32 + 3 * 14 + 2 * 8);
    EXPECT_EQ(facts.at("faces"), 2);
    EXPECT_EQ(facts.at("levels"),
              json::parse(R"([{"level": 1, "edits": 3, "vertices": 2, "cage_faces": 2}])"));
    EXPECT_EQ(facts.at("morph").at("name"), "PHMWide");
    EXPECT_EQ(facts.at("morph").at("names_this_file"), true);
    EXPECT_EQ(facts.at("figure").at("faces"), 2);
    EXPECT_EQ(facts.at("figure").at("fits"), true);
}

TEST_F(InspectMorphs, tells_that_a_detail_file_is_for_another_mesh_or_no_morph)
{
    EXPECT_EQ(report({writeShape("Wide.dhdm", Detail(7))}).at("figure").at("fits"), false);
    EXPECT_EQ(report({writeShape("Tall.dhdm", Detail(2))}).at("morph").at("names_this_file"), false);
    EXPECT_EQ(report({writeShape("Lone.dhdm", Detail(2))}).at("morph"), nullptr);
    const std::string broken = writeShape("Cut.dhdm", Detail(2).substr(0, 50));
    ExpectJsonError(run({broken}), 1, broken + ": level 1 is larger than the file.");
    const std::string huge = writeShape("Huge.dhdm", Detail(4000000000u));
    ExpectJsonError(run({huge}), 1, huge + ": is for 4000000000 faces, more than any figure has.");
}

TEST_F(InspectMorphs, lists_those_whose_name_or_label_fits)
{
    EXPECT_EQ(names(report({character, "--morphs", "phm*"})), (Strings{"PHMTall", "PHMTall", "PHMWide"}));
    EXPECT_EQ(names(report({figure, "--morphs", "tall ?ox", "--morphs", "CTRL*"})),
              (Strings{"PHMTall", "CTRLBend", "PHMTall"}));
    EXPECT_EQ(names(report({figure, "--morphs", "Tall"})), Strings());
    const json morphs = report({figure, "--morphs", "*"}).at("morphs");
    ASSERT_EQ(morphs.size(), 4u);
    EXPECT_EQ(morphs[0].at("kind"), "alias");
    EXPECT_EQ(morphs[1].at("kind"), "controller");
    EXPECT_EQ(morphs[2].at("kind"), "morph");
    EXPECT_EQ(morphs[2].at("detail"), false);
    EXPECT_EQ(morphs[3].at("detail"), true);
}

TEST_F(InspectMorphs, of_a_folder_leave_out_the_figures_in_it)
{
    EXPECT_EQ(report({workspace.path("lib/data"), "--check"}).at("unusable"), json::array());
}

TEST_F(InspectMorphs, are_those_of_all_content_directories_and_of_folders)
{
    workspace.write("more/data/acme/box/morphs/Own/Own.dsf", Modifier("Own", Morph(1, 6)));
    workspace.write("more/data/acme/box/morphs/Own/._Own.dsf", "not for us");
    const Strings both{character,  "--content", workspace.path("lib"), "--content", workspace.path("more"),
                       "--morphs", "*"};
    EXPECT_EQ(names(report(both)), (Strings{"PHMTall", "CTRLBend", "PHMTall", "PHMWide", "Own"}));
    const json ofFolder = report({workspace.path("more")});
    EXPECT_EQ(names(ofFolder), Strings{"Own"});
    EXPECT_EQ(ofFolder.at("unusable"), json::array());
}

TEST_F(InspectMorphs, that_can_all_be_used_pass_the_check)
{
    const json checked = report({character, "--check"});
    EXPECT_EQ(checked.at("checked"), 4);
    EXPECT_EQ(checked.at("unusable"), json::array());
    EXPECT_FALSE(checked.contains("morphs"));
}

TEST_F(InspectMorphs, that_cannot_be_used_are_told_with_their_reasons)
{
    writeShape("Cut", R"({"file_version": )");
    writeShape("Other", Modifier("Other", Morph(2, 5)));
    writeShape("Beyond", Modifier("Beyond", Morph(6, -1)));
    writeShape("Nothing", R"({"file_version": "0.6.0.0"})");
    writeShape("Odd",
               Modifier("Odd", R"(, "morph": {"vertex_count": 6, "deltas": {"values": [[1, NaN, 0, 0]]}})"));
    writeShape("Lost", Modifier("Lost", Morph(1, 6, R"(, "hd_url": "/data/Lost.dhdm")")));
    writeShape("Wide.dhdm", Detail(3));
    const ProgramResult result = run({figure, "--check"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: 6 files cannot be used.\n");
    const json checked = json::parse(result.out);
    EXPECT_EQ(checked.at("error"), "6 files cannot be used.");
    EXPECT_EQ(checked.at("checked"), 10);
    const Strings expected{"Beyond.dsf: moves vertex 6 but the figure has 6",
                           "Cut.dsf: ends too early, at line 1, column 18",
                           "Lost.dhdm: cannot be read: No such file or directory",
                           "Nothing.dsf: defines no morph or controller",
                           "Other.dsf: is for a mesh of 5 vertices but the figure has 6",
                           "Wide.dhdm: is for 3 faces but the figure has 2"};
    Strings told;
    for (const json& file : checked.at("unusable"))
        told.push_back(std::filesystem::path(file.at("file").get<std::string>()).filename().string() + ": " +
                       file.at("reason").get<std::string>());
    EXPECT_EQ(told, expected);
    EXPECT_EQ(checked.at("warnings").size(), 2u) << checked; // of the morph that can be used, but for a delta
}

TEST_F(InspectMorphs, of_a_scene_without_figures_are_an_error)
{
    const std::string scene =
        workspace.write("lib/People/Empty.duf", R"({"file_version": "0.6.0.0", "scene": {}})");
    ExpectJsonError(run({scene, "--check"}), 1, scene + ": names no figure that can be found.");
}

TEST_F(InspectMorphs, of_a_scene_with_a_prop_of_its_own_are_those_of_the_figure)
{
    const std::string prop =
        R"("geometry_library": [{"id": "Ball-g", "vertices": {"values": [[0, 0, 0], [1, 0, 0], [1, 1, 0]]},
            "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["red"]},
            "polylist": {"values": [[0, 0, 0, 1, 2]]}}],
        "node_library": [{"id": "Ball", "type": "node"}])";
    const std::string ball =
        R"({"id": "Ball-1", "url": "#Ball", "geometries": [{"id": "b", "url": "#Ball-g"}]})";
    const std::string box = R"({"id": "Box", "url": "/data/acme/Box/Box.dsf#Box"})"; // its geometry is known
    for (const std::string& nodes : {box + "," + ball, ball + "," + box}) {
        const std::string scene =
            workspace.write("lib/People/Scene.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/Scene.duf", "type": "scene"}, )" +
                                                        prop + R"(, "scene": {"nodes": [)" + nodes + "]}}");
        EXPECT_EQ(report({scene, "--check"}).at("checked"), 4);
        EXPECT_EQ(names(report({scene, "--morphs", "CTRL*"})), Strings{"CTRLBend"});
    }
}

TEST_F(InspectMorphs, are_compared_with_the_mesh_that_they_are_for)
{
    std::string two = figureText;
    const std::string list = R"("geometry_library": [)";
    two.insert(two.find(list) + list.size(),
               R"({"id": "Eyes", "vertices": {"values": [[0, 0, 0], [1, 0, 0], [1, 1, 0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["red"]},
        "polylist": {"values": [[0, 0, 0, 1, 2]]}},)");
    workspace.write("lib/data/Acme/Box/Box.dsf", two);
    EXPECT_EQ(report({character, "--check"}).at("unusable"), json::array());
}
