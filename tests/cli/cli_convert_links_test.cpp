// Morphs that drive each other, and what becomes of that when they are converted.
// SPDX-License-Identifier: MIT

#include "cli_morph_library.h"

#include <filesystem>

namespace {

using geometry::Vec3f;
using nlohmann::json;

constexpr float hundredthMillimetre = 0.001f; // cm

/// "Both" has no shape; it drives Wide by a half and Bulge by 1.
class ConvertedLinks : public MorphLibraryTest {
protected:
    ConvertedLinks()
    {
        writeControl("Both", formula("Wide", push("Both") + half) + ", " + formula("Bulge", push("Both")));
    }

    /// Hidden; Wide times Bulge, as two formulas of which one multiplies.
    void writeCorrective(const std::string& second) const
    {
        writeMorph("Fix", R"("visible": false)",
                   R"("formulas": [)" + formula("Fix", push("Wide")) + ", " +
                       formula("Fix", push(second), R"("stage": "mult")") + "]");
    }
    /// What the morph's dial is at when another one is at a value; of the target as it loads now.
    double valueOf(const std::string& dial, const std::string& setting) const
    {
        const ProgramResult listed =
            RunProgram({"script", writeScript(dial, setting), "--content", library()});
        ExpectSuccess(listed);
        return std::stod(listed.out);
    }
    std::string writeScript(const std::string& dial, const std::string& settings) const
    {
        return workspace.write(
            "value.js",
            "var m = App.getContentMgr();\n"
            "m.openFile(m.getAbsolutePath('People/Genesis 9/Genesis 9.duf', true), true);\n"
            "var o = Scene.getPrimarySelection().getObject();\n"
            "function set(name, value) { o.findModifier(name).getValueControl().setValue(value); }\n" +
                settings + "\nprint(o.findModifier('" + dial + "').getValueControl().getValue());\n");
    }
    static std::vector<Vec3f> sum(std::vector<Vec3f> a, float factor, const std::vector<Vec3f>& b)
    {
        for (std::size_t v = 0; v < a.size(); ++v)
            a[v] = a[v] * factor + b[v];
        return a;
    }

    /// What a whole conversion makes of a dial alone.
    std::vector<Vec3f> whole(const std::string& dial) const
    {
        const std::string saved = workspace.path("whole");
        ExpectSuccess(RunProgram(argumentsFor(sourceFile(), targetFile(),
                                              saving(saved, {"--dial", dial + "=1", "--base", "clone=1",
                                                             "--jobs", "full", "--name", "Whole " + dial}))));
        return deltasOf(saved, "Whole " + dial);
    }

    const std::string front = "[[440, 0, 1, 0], [441, 0, 1, 0]]", back = "[[443, 1, 0, 0], [444, 1, 0, 0]]";
    const std::string half = R"(, {"op": "push", "val": 0.5}, {"op": "mult"})";
};

} // namespace

TEST_F(ConvertedLinks, are_not_asked_for_and_a_controller_takes_what_it_drives)
{
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "*"}, saved);
    EXPECT_LT(LargestDifference(deltasOf(saved, "Both"),
                                sum(deltasOf(saved, "Wide"), 0.5f, deltasOf(saved, "Bulge"))),
              3 * hundredthMillimetre);
    for (const char* const name : {"Both", "Wide", "Bulge"})
        EXPECT_FALSE(morphIn(saved, name).contains("formulas")) << name;
}

TEST_F(ConvertedLinks, make_a_controller_drive_the_new_morphs)
{
    const json told = report({"--morphs", "Both", "Wide", "Bulge", "--controllers"}, library());
    EXPECT_EQ(told.at("warnings"), json::array());
    ASSERT_EQ(told.at("created").size(), 3u);
    EXPECT_EQ(told.at("created").at(0).at("name"), "Both") << "drivers come first";
    EXPECT_EQ(told.at("created").at(0).at("vertices_moved"), 0);
    EXPECT_EQ(told.at("created").at(1).at("drivers"), json::array({"Both"}));
    EXPECT_DOUBLE_EQ(valueOf("Wide", "set('Both', 0.5)"), 0.25);
    EXPECT_DOUBLE_EQ(valueOf("Bulge", "set('Both', 0.5)"), 0.5);
}

TEST_F(ConvertedLinks, last_from_those_that_are_saved_first_to_those_that_are_saved_last)
{
    constexpr int count = 70; // more than are saved together
    std::string formulas;
    for (int i = 0; i < count; ++i) {
        const std::string name = "Shape" + std::to_string(i);
        writeMorph(name);
        formulas += (i > 0 ? ", " : "") + formula(name, push("Many"));
    }
    writeControl("Many", formulas);
    const std::string saved = workspace.path("saved");
    report({"--morphs", "Many", "Shape*", "--controllers"}, saved);
    for (int i = 0; i < count; ++i)
        EXPECT_TRUE(morphIn(saved, "Shape" + std::to_string(i)).contains("formulas")) << i;
}

TEST_F(ConvertedLinks, leave_the_shape_of_what_does_not_come_over_with_the_driver)
{
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Both", "Wide", "--controllers"}, saved);
    const std::string bulge = workspace.path("bulge");
    ExpectSuccess(convertMorphs({"--morphs", "Bulge"}, bulge));
    EXPECT_LT(LargestDifference(deltasOf(saved, "Both"), deltasOf(bulge, "Bulge")), hundredthMillimetre);
    EXPECT_EQ(morphIn(saved, "Wide").at("formulas").size(), 1u);
}

TEST_F(ConvertedLinks, stay_behind_with_their_drivers_and_are_told)
{
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Wide", "Bulge", "--controllers"}, saved);
    EXPECT_EQ(told.at("warnings"),
              json::array({sourceFile() + ": 2 links stay behind, whose drivers are not among the morphs "
                                          "converted here: \"Bulge\" is driven by \"Both\", and so on"}));
    EXPECT_FALSE(morphIn(saved, "Wide").contains("formulas"));
}

TEST_F(ConvertedLinks, carry_the_suffix_of_the_new_names)
{
    ExpectSuccess(convertMorphs({"--morphs", "Both", "Wide", "--controllers", "--suffix", " G8"}, library()));
    EXPECT_DOUBLE_EQ(valueOf("Wide G8", "set('Both G8', 0.5)"), 0.25);
}

TEST_F(ConvertedLinks, make_a_corrective_follow_both_its_drivers)
{
    writeCorrective("Bulge");
    const std::string shape = workspace.path("shape");
    ExpectSuccess(convertMorphs({"--morphs", "Fix"}, shape));
    const json told = report({"--morphs", "Wide", "Bulge", "Fix", "--correctives"}, library());
    EXPECT_EQ(told.at("created").back().at("drivers"), json::array({"Bulge", "Wide"}));
    EXPECT_FALSE(morphIn(library(), "Fix").at("channel").at("visible").get<bool>());
    EXPECT_DOUBLE_EQ(valueOf("Fix", "set('Wide', 0.5); set('Bulge', 0.5)"), 0.25);
    EXPECT_DOUBLE_EQ(valueOf("Fix", "set('Wide', 0.5)"), 0.0);
    EXPECT_EQ(deltasOf(library(), "Fix"), deltasOf(shape, "Fix")) << "at its own full strength";
}

TEST_F(ConvertedLinks, of_joints_leave_a_corrective_behind)
{
    writeMorph("Bend", R"("visible": false)",
               R"("formulas": [{"output": ")" + uriOf("Bend") +
                   R"(", "operations": [{"op": "push",
                   "url": "hip:/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#hip?rotation/x"},
                   {"op": "push", "val": 0.01}, {"op": "mult"}]}])");
    writeCorrective("Bend"); // which goes with it
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "*", "--correctives"}, saved);
    EXPECT_EQ(
        told.at("skipped"),
        (json::array(
            {{{"name", "Bend"},
              {"reason", "is driven by \"XRotate of hip\", which is not among the morphs converted here"}},
             {{"name", "Fix"},
              {"reason", "is driven by \"Bend\", which is not among the morphs converted here"}}})));
    EXPECT_FALSE(std::filesystem::exists(fileOf(saved, "Bend")));
    ExpectSuccess(convertMorphs({"--morphs", "Bend"}, saved));
    EXPECT_GT(LargestDifference(deltasOf(saved, "Bend"), std::vector<Vec3f>(deltasOf(saved, "Bend").size())),
              0.5f)
        << "by its name, as a dial of its own";
}

TEST_F(ConvertedLinks, in_a_cycle_stay_behind_and_what_they_did_is_part_of_each_shape)
{
    const char* const clamped = R"("clamped": true)";
    writeMorph("A", clamped, R"("formulas": [)" + formula("A", push("B") + half) + "]", front);
    writeMorph("B", clamped, R"("formulas": [)" + formula("B", push("A") + half) + "]");
    // Which A drives, and goes on driving.
    writeMorph("C", clamped, R"("formulas": [)" + formula("C", push("A")) + "]", back);
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "A", "B", "C", "--controllers"}, saved);
    EXPECT_EQ(told.at("created").size(), 3u);
    EXPECT_NE(told.at("warnings").dump().find("2 links stay behind, which form a cycle"), std::string::npos)
        << told.at("warnings");
    EXPECT_EQ(told.at("warnings").dump().find("not among the morphs"), std::string::npos);
    EXPECT_EQ(morphIn(saved, "C").at("formulas").size(), 1u);
    EXPECT_LT(LargestDifference(sum(deltasOf(saved, "C"), 1.0f, deltasOf(saved, "A")), whole("A")),
              2 * hundredthMillimetre)
        << "which turns C";
    EXPECT_LT(LargestDifference(deltasOf(saved, "B"), whole("B")), hundredthMillimetre)
        << "which takes along A, and with it C";
}

TEST_F(ConvertedLinks, that_come_over_behind_one_that_stays_leave_their_shape_with_its_driver)
{
    // Wide drives Last in sight of nobody, but is not itself to be driven: correctives alone come over.
    writeMorph("Last", R"("visible": false)", R"("formulas": [)" + formula("Last", push("Wide")) + "]", back);
    const std::string saved = workspace.path("saved");
    report({"--morphs", "Both", "Wide", "Bulge", "Last", "--correctives"}, saved);
    EXPECT_EQ(morphIn(saved, "Last").at("formulas").size(), 1u);
    EXPECT_LT(LargestDifference(deltasOf(saved, "Both"), whole("Both")), hundredthMillimetre);
}
