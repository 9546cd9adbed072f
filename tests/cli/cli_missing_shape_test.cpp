// Conversions of characters whose shapes are not all there, or not as they should be.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

const char* const folder = "/data/Daz 3D/Genesis 8/Female/Morphs/";
const char* const folderUrl = "/data/Daz%203D/Genesis%208/Female/Morphs/";

/// A shape that an instance dials, by its file below the Morphs folder.
struct Dialed {
    std::string file, id;
    double value = 1.0;
};

std::string Modifier(const std::string& name, const std::string& more)
{
    return R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf", "type": "modifier"},
        "modifier_library": [{"id": ")" +
           name + R"(", "name": ")" + name + R"(",
            "parent": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female",
            "channel": {"id": "value", "type": "float", "name": "Value", "label": ")" +
           name + R"(", "value": 0, "min": -1, "max": 1})" + more + "}]}";
}

/// Lifts one vertex so far that the result shows which shape was worn.
std::string Lifting(double height, const std::string& vertexCount = "488", int vertex = 40)
{
    return R"(, "morph": {"vertex_count": )" + vertexCount + R"(, "deltas": {"count": 1, "values": [[)" +
           std::to_string(vertex) + ", 0, " + std::to_string(height) + ", 0]]}}";
}

std::string Driving(const std::string& file, const std::string& id, const std::string& by)
{
    return R"(, "formulas": [{"output": "Genesis8Female:)" + std::string(folderUrl) + file + "#" + id +
           R"(?value", "operations": [{"op": "push", "url": "Genesis8Female:#)" + by +
           R"(?value"}, {"op": "push", "val": 0.5}, {"op": "mult"}]}])";
}

class MissingShape : public ConversionTest {
protected:
    static std::string place(const std::string& file) { return std::string("lib") + folder + file; }
    std::string write(const std::string& file, const std::string& text) const
    {
        fs::create_directories(fs::path(workspace.path(place(file))).parent_path());
        return workspace.write(place(file), text);
    }
    std::string textOf(const std::string& file) const { return workspace.read(place(file)); }
    void replaceIn(const std::string& file, const std::string& what, const std::string& by) const
    {
        std::string text = textOf(file);
        const std::size_t at = text.rfind(what);
        ASSERT_NE(at, text.npos) << what;
        write(file, text.replace(at, what.size(), by));
    }
    /// "Wide" then has displacements of the subdivided mesh, in a file that is nowhere.
    void loseDetailOfWide() const
    {
        replaceIn("Test/Base/Wide.dsf", "\"vertex_count\" : 488",
                  "\"hd_url\": \"" + std::string(folderUrl) +
                      "Test/Base/Wide.dhdm\", \"vertex_count\" : 488");
    }

    /// A character file that dials these, as a saved scene would.
    std::string character(const std::vector<Dialed>& shapes, const std::string& parent = "#g") const
    {
        std::string modifiers;
        for (const Dialed& shape : shapes)
            modifiers += (modifiers.empty() ? R"({"id": ")" : R"(, {"id": ")") + shape.id +
                         R"(-1", "parent": ")" + parent + R"(", "url": ")" + folderUrl + shape.file + "#" +
                         shape.id + R"(", "channel": {"id": "value", "current_value": )" +
                         std::to_string(shape.value) + "}}";
        const std::string url = R"("url": "/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#)";
        const std::string male = R"("url": "/data/Daz%203D/Genesis%208/Male/Genesis8Male.dsf#)";
        return workspace.write("lib/People/Hero.duf",
                               R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/Hero.duf", "type": "character"},
            "scene": {"nodes": [
                {"id": "hero", "label": "Hero", )" +
                                   url + R"(Genesis8Female", "geometries": [{"id": "g", )" + url +
                                   R"(Genesis8Female-1"}]},
                {"id": "friend", "label": "Friend", )" +
                                   male + R"(Genesis8Male", "geometries": [{"id": "f", )" + male +
                                   R"(Genesis8Male-1"}]}],
            "modifiers": [)" + modifiers +
                                   "]}}");
    }

    ProgramResult convertFrom(const std::string& source, std::vector<std::string> more = {}) const
    {
        more.insert(more.end(), {"--jobs", "full", "--name", "Vera"});
        return RunProgram(argumentsFor(source, targetFile(), more));
    }
    json reportFrom(const std::string& source, std::vector<std::string> more = {}) const
    {
        more.push_back("--json");
        const ProgramResult result = convertFrom(source, more);
        ExpectSuccess(result);
        return result.exitCode == 0 ? json::parse(result.out) : json::object();
    }
    std::string refusal(const std::string& source, const std::string& shapes) const
    {
        return source + ": worn shapes are missing: " + shapes + "; --accept-missing converts without them.";
    }

    static bool warns(const json& told, const std::string& part)
    {
        return told.value("warnings", json::array()).dump().find(part) != std::string::npos;
    }
    static double displacement(const json& told)
    {
        return told.at("created_morphs").at(0).at("largest_displacement_mm");
    }
};

const Dialed wide{"Test/Base/Wide.dsf", "Wide"};
const Dialed bulge{"Test/Base/Bulge.dsf", "Bulge"};
const Dialed unused{"Test/Base/Unused.dsf", "Unused"};

} // namespace

TEST_F(MissingShape, is_none_in_a_whole_character)
{
    const json told = reportFrom(character({wide}));
    ASSERT_EQ(told.at("warnings").size(), 1u) << told;
    EXPECT_TRUE(warns(told, "has 2 figures that could be taken"));
    EXPECT_EQ(told.at("active_morphs"), 1);
}

TEST_F(MissingShape, is_refused_by_one_sentence_that_names_all_and_their_files)
{
    const std::string hero = character({wide, bulge, unused});
    fs::remove(workspace.path(place(wide.file)));
    fs::remove(workspace.path(place(bulge.file)));
    const std::string at = folder;
    expectFailure(convertFrom(hero), 1,
                  refusal(hero, "\"Wide\" (" + at + wide.file + ": is in no content library), \"Bulge\" (" +
                                    at + bulge.file + ": is in no content library)"));
}

TEST_F(MissingShape, can_be_accepted_and_is_a_warning_then)
{
    const std::string hero = character({wide, bulge, unused});
    fs::remove(workspace.path(place(wide.file)));
    fs::remove(workspace.path(place(bulge.file)));
    const json told = reportFrom(hero, {"--accept-missing"});
    EXPECT_EQ(told.at("active_morphs"), 1);
    for (const Dialed& lost : {wide, bulge}) {
        const std::string file = folder + lost.file;
        EXPECT_TRUE(warns(told, file + ": " + lost.id + ": is in no content library")) << told.at("warnings");
        const json expected = {{"severity", "warning"},
                               {"file", file},
                               {"asset", lost.id},
                               {"what", "is in no content library"}};
        const json& all = told.at("diagnostics");
        EXPECT_NE(std::find(all.begin(), all.end(), expected), all.end()) << all;
    }
}

TEST_F(MissingShape, that_is_not_dialed_or_of_another_figure_is_not_missed)
{
    const json told = reportFrom(character({wide, {"Test/Gone.dsf", "Gone", 0.0}}));
    EXPECT_TRUE(warns(told, "Gone.dsf is in no content library")) << told;
    const std::string hero = character({{"Test/Gone.dsf", "Gone", 1.0}}, "#f");
    EXPECT_TRUE(warns(reportFrom(hero, {"--dial", "Wide=1"}), "Gone.dsf is in no content library"));
}

TEST_F(MissingShape, may_be_there_and_broken)
{
    const std::string sound = textOf(wide.file);
    std::string others = Modifier("A", "");
    others.replace(others.rfind(']'), 1, R"(, {"id": "B", "name": "B", "parent": "#Genesis8Female"}])");
    for (const std::string& text : {std::string(), std::string("hello"), sound.substr(0, sound.size() / 2),
                                    std::string("\x1f\x8b\x08"), others}) {
        SCOPED_TRACE(text.substr(0, 40));
        const std::string file = write(wide.file, text), hero = character({wide, unused});
        expectFailureWith(convertFrom(hero), 1, "worn shapes are missing: \"Wide\" (" + file + ": ");
        const json told = reportFrom(hero, {"--accept-missing"});
        EXPECT_EQ(told.at("active_morphs"), 1);
        const json& warnings = told.at("warnings");
        EXPECT_EQ(std::count_if(warnings.begin(), warnings.end(),
                                [&](const json& line) {
                                    return line.get<std::string>().find(file + ": ") != std::string::npos;
                                }),
                  1)
            << warnings;
        EXPECT_EQ(reportFrom(character({unused})).at("active_morphs"), 1);
    }
}

TEST_F(MissingShape, may_be_one_for_another_mesh)
{
    const std::string file = workspace.path(place(wide.file));
    replaceIn(wide.file, "\"vertex_count\" : 488", "\"vertex_count\" : 487");
    const std::string reason = "\"Wide\" (" + file + ": is for a mesh of 487 vertices instead of 488)";
    const std::string hero = character({wide, unused});
    expectFailure(convertFrom(hero), 1, refusal(hero, reason));
    EXPECT_TRUE(
        warns(reportFrom(hero, {"--accept-missing"}), "is for a mesh of 487 vertices instead of 488"));
    EXPECT_TRUE(warns(reportFrom(character({unused})), "1 morph is for a mesh of another size"));
    expectFailure(convertFrom(character({unused}), {"--dial", "Wide=0.5"}), 1, refusal(hero, reason));
}

TEST_F(MissingShape, may_be_one_that_does_not_say_that_it_is_for_another_mesh)
{
    const std::string file = write("Test/Alien.dsf", Modifier("Alien", Lifting(5.0, "-1", 488)));
    const Dialed alien{"Test/Alien.dsf", "Alien"};
    const std::string hero = character({alien, unused});
    expectFailure(
        convertFrom(hero), 1,
        refusal(hero, "\"Alien\" (" + file +
                          ": 1 delta is of a vertex that the figure does not have and is left out)"));
    EXPECT_TRUE(warns(reportFrom(hero, {"--accept-missing"}), "Alien: 1 delta is of a vertex"));
    reportFrom(character({unused}));
}

TEST_F(MissingShape, is_none_that_has_lost_some_displacements_and_wears_the_others)
{
    const Dialed up{"Test/Up.dsf", "Up"};
    const std::string lifting = Lifting(5.0, "-1");
    write(up.file, Modifier("Up", lifting));
    const json whole = reportFrom(character({up}));
    std::string more = lifting;
    more.replace(more.rfind("]]"), 2, "], [99999, 1, 0, 0]]");
    const std::string file = write(up.file, Modifier("Up", more));
    const json told = reportFrom(character({up}));
    EXPECT_EQ(told.at("created_morphs"), whole.at("created_morphs"));
    const std::string line =
        file + ": Up: 1 delta is of a vertex that the figure does not have and is left out";
    EXPECT_TRUE(warns(told, line)) << told.at("warnings");
    const ProgramResult checked =
        RunProgram({"inspect", "--json", library("/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf"),
                    "--check", "--content", library()});
    ExpectSuccess(checked);
    EXPECT_TRUE(warns(json::parse(checked.out), line)) << checked.out;
}

TEST_F(MissingShape, is_missed_where_another_dial_turns_it)
{
    write("Test/Hero.dsf", Modifier("Hero", Driving(wide.file, "Wide", "Hero")));
    const Dialed control{"Test/Hero.dsf", "Hero"};
    reportFrom(character({control, unused}));
    const std::string file = workspace.path(place(wide.file)), sound = textOf(wide.file);
    const auto expectMissed = [&](const std::string& reason) {
        const std::string idle = character({{"Test/Hero.dsf", "Hero", 0.0}, unused});
        reportFrom(idle);
        expectFailureWith(convertFrom(idle, {"--dial", "Hero=1"}), 1, reason);
        const std::string hero = character({control, unused});
        expectFailureWith(convertFrom(hero), 1, reason);
        EXPECT_EQ(reportFrom(hero, {"--accept-missing"}).at("active_morphs"), 1);
    };
    replaceIn(wide.file, "\"vertex_count\" : 488", "\"vertex_count\" : 487");
    expectMissed("\"Wide\" (" + file + ": is for a mesh of 487");
    write(wide.file, "hello");
    expectMissed("\"Wide\" (" + file + ": line 1, column 1 is not valid JSON");
    fs::remove(file);
    expectMissed("\"Wide\" (" + std::string(folder) + wide.file + ": is in no content library");
}

TEST_F(MissingShape, of_a_product_elsewhere_is_not_missed_where_a_dial_would_turn_it)
{
    std::string text = Modifier("Hero", Driving("Coat.dsf", "Coat", "Hero"));
    text.replace(text.find(folderUrl), std::string(folderUrl).size(), "/data/Acme/Coat/");
    write("Test/Hero.dsf", text);
    EXPECT_TRUE(warns(reportFrom(character({{"Test/Hero.dsf", "Hero"}, unused})),
                      "1 formula names what is not installed"));
}

TEST_F(MissingShape, detail_is_missed_at_subdivided_resolution_alone)
{
    loseDetailOfWide();
    const std::string hero = character({wide});
    EXPECT_TRUE(warns(reportFrom(hero), "Wide: cannot load the detail for subdivided meshes: cannot read "));
    const std::vector<std::string> subdivided{"--resolution", "subd", "--subd", "1"};
    expectFailureWith(convertFrom(hero, subdivided), 1, "worn shapes are missing: \"Wide\" (");
    expectFailureWith(convertFrom(hero, subdivided), 1, "Wide.dhdm");
    std::vector<std::string> accepting = subdivided;
    accepting.push_back("--accept-missing");
    EXPECT_TRUE(warns(reportFrom(hero, accepting), "Wide: cannot load the detail for subdivided meshes"));
    reportFrom(character({unused}), subdivided);
    expectFailureWith(convertFrom(character({unused}), {"--dial", "Wide=0.5", "--resolution", "subd"}), 1,
                      "Wide.dhdm");
}

TEST_F(MissingShape, is_none_where_a_comma_too_many_can_be_read_over)
{
    const double whole = displacement(reportFrom(character({wide})));
    const std::string last = textOf(wide.file).find("}\n") == std::string::npos ? "}" : "}\n";
    replaceIn(wide.file, last, "," + last);
    const std::string line = workspace.path(place(wide.file)) + ": has 1 stray comma, left out: line ";
    const json worn = reportFrom(character({wide}));
    EXPECT_TRUE(warns(worn, line)) << worn;
    EXPECT_EQ(displacement(worn), whole);
    EXPECT_TRUE(warns(reportFrom(character({unused})), line));
}

TEST_F(MissingShape, is_none_where_two_vendors_have_one_of_the_same_name)
{
    const Dialed first{"Acme/Up.dsf", "Up"}, second{"Brand/Up.dsf", "Up"};
    write(first.file, Modifier("Up", Lifting(1.0)));
    const double acme = displacement(reportFrom(character({first})));
    fs::remove(workspace.path(place(first.file)));
    write(second.file, Modifier("Up", Lifting(20.0)));
    const double brand = displacement(reportFrom(character({second})));
    ASSERT_NE(acme, brand);
    write(first.file, Modifier("Up", Lifting(1.0)));
    const json ofFirst = reportFrom(character({first})), ofSecond = reportFrom(character({second}));
    EXPECT_EQ(displacement(ofFirst), acme);
    EXPECT_EQ(displacement(ofSecond), brand);
    for (const json& told : {ofFirst, ofSecond})
        EXPECT_TRUE(warns(told, "1 morph has a name that is taken and gets another")) << told;
    EXPECT_EQ(ofSecond.at("missing_morphs"), json::array());
}
