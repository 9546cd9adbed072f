// Single morphs of a figure as morphs of the Genesis 9 figure.
// SPDX-License-Identifier: MIT

#include "cli_morph_library.h"

#include <filesystem>

namespace {

using nlohmann::json;

constexpr float hundredthMillimetre = 0.001f; // cm

using ConvertedMorphs = MorphLibraryTest;

} // namespace

TEST_F(ConvertedMorphs, are_those_that_whole_conversions_make)
{
    for (const char* const source : {"/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf",
                                     "/People/Genesis 3 Male/Genesis 3 Male.duf"}) {
        SCOPED_TRACE(source);
        const std::string single = workspace.path("single"), whole = workspace.path("whole");
        ExpectSuccess(convertMorphs({"--morphs", "Wide", "Bulge"}, single, library(source)));
        for (const char* const name : {"Wide", "Bulge"}) {
            ExpectSuccess(RunProgram(
                argumentsFor(library(source), targetFile(),
                             saving(whole, {"--dial", std::string(name) + "=1", "--base", "clone=1", "--jobs",
                                            "full", "--name", name, "--overwrite"}))));
            const auto expected = deltasOf(whole, name);
            EXPECT_LT(LargestDifference(deltasOf(single, name), expected), hundredthMillimetre);
            EXPECT_GT(LargestDifference(expected, std::vector<geometry::Vec3f>(expected.size())), 3.0f);
        }
        std::filesystem::remove_all(single);
    }
}

TEST_F(ConvertedMorphs, are_those_that_whole_conversions_make_of_subdivided_figures)
{
    const std::string single = workspace.path("single"), whole = workspace.path("whole");
    ExpectSuccess(convertMorphs({"--morphs", "Bulge", "--resolution", "subd"}, single));
    ExpectSuccess(
        RunProgram(argumentsFor(sourceFile(), targetFile(),
                                saving(whole, {"--dial", "Bulge=1", "--base", "clone=1", "--jobs", "full",
                                               "--name", "Bulge", "--resolution", "subd"}))));
    EXPECT_LT(LargestDifference(deltasOf(single, "Bulge"), deltasOf(whole, "Bulge")), hundredthMillimetre);
    ASSERT_FALSE(detailOf(whole, "Bulge").empty());
    // Offsets up to that length are dropped, of those about as long perhaps from one of the two only.
    constexpr float rounding = 1e-5f;
    EXPECT_LT(LargestDifference(detailOf(single, "Bulge"), detailOf(whole, "Bulge")),
              hundredthMillimetre + rounding);
}

TEST_F(ConvertedMorphs, do_not_depend_on_each_other)
{
    const std::string together = workspace.path("together"), alone = workspace.path("alone");
    ExpectSuccess(convertMorphs({"--morphs", "*"}, together));
    ExpectSuccess(convertMorphs({"--morphs", "Wide"}, alone));
    EXPECT_EQ(morphIn(together, "Wide").at("morph"), morphIn(alone, "Wide").at("morph"));
}

TEST_F(ConvertedMorphs, leave_out_what_the_source_wears_and_say_so)
{
    const std::string plain = workspace.path("plain"), worn = workspace.path("worn");
    ExpectSuccess(convertMorphs({"--morphs", "Wide"}, plain));
    const std::string scene = writeScene("Wearing.duf", R"({"id": "Bulge-1", "parent": "#Genesis8Female-1",
        "url": "/data/Daz%203D/Genesis%208/Female/Morphs/Test/Base/Bulge.dsf#Bulge",
        "channel": {"id": "value", "current_value": 0.5}})",
                                         R"([{"id": "y", "current_value": 30}])");
    const json told = report({"--morphs", "Wide"}, worn, scene);
    EXPECT_EQ(morphIn(worn, "Wide").at("morph"), morphIn(plain, "Wide").at("morph"));
    EXPECT_EQ(
        told.at("warnings"),
        json::array({scene + ": Genesis 8 Female: its own shape and pose are set aside: 2 dials are not "
                             "at rest"}));
}

TEST_F(ConvertedMorphs, bring_along_what_the_dial_is_like)
{
    writeMorph("Nose", R"("label": "Long Nose", "min": -2, "max": 1.5, "clamped": false,
        "display_as_percent": false, "step_size": 0.05)",
               R"("region": "Head", "group": "/Face/Nose")");
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Long No?e", "--suffix", " G8", "--path", "Old Figures/"}, saved);
    const json morph = morphIn(saved, "Nose G8");
    EXPECT_EQ(morph.at("id"), "Nose G8");
    EXPECT_EQ(morph.at("name"), "Nose G8");
    EXPECT_EQ(morph.at("region"), "Head");
    EXPECT_EQ(morph.at("group"), "/Old Figures/Face/Nose");
    const json& channel = morph.at("channel");
    EXPECT_EQ(channel.at("label"), "Long Nose");
    EXPECT_EQ(channel.at("min"), -2);
    EXPECT_EQ(channel.at("max"), 1.5);
    EXPECT_FALSE(channel.value("clamped", false));
    EXPECT_FALSE(channel.value("display_as_percent", false));
    EXPECT_NEAR(channel.at("step_size").get<double>(), 0.05, 1e-6);
    EXPECT_EQ(channel.at("value"), 0);
    const json& created = told.at("created").at(0);
    EXPECT_EQ(created.at("name"), "Nose G8");
    EXPECT_EQ(created.at("path"), "/Old Figures/Face/Nose");
    EXPECT_EQ(created.at("file"), fileOf(saved, "Nose G8"));
    EXPECT_GT(created.at("vertices_moved"), 0);
    EXPECT_GT(created.at("largest_displacement_mm").get<double>(), 5.0);
}

TEST_F(ConvertedMorphs, bring_along_icons_that_are_there)
{
    const auto withIcon = [](const std::string& icon) {
        return R"("presentation": {"type": "Modifier/Shape", "label": "", "description": "", "icon_large": ")" +
               icon + R"(", "colors": [[1, 0, 0], [1, 1, 1]]})";
    };
    std::filesystem::create_directories(library("/data/Icons"));
    workspace.write("lib/data/Icons/My Nose.png", "");
    writeMorph("Nose", "", withIcon("/data/Icons/My%20Nose.png"));
    writeMorph("Ear", "", withIcon("/data/Icons/Ear.png"));
    writeMorph("Lip", "", withIcon(""));
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Nose", "Ear", "Lip"}, saved);
    const json presentation = morphIn(saved, "Nose").at("presentation");
    EXPECT_EQ(presentation.at("icon_large"), "/data/Icons/My%20Nose.png");
    EXPECT_EQ(presentation.at("colors").at(0), json::parse("[1, 0, 0]"));
    EXPECT_EQ(morphIn(saved, "Ear").at("presentation").at("icon_large"), "");
    EXPECT_EQ(morphIn(saved, "Lip").at("presentation").at("icon_large"), "");
    EXPECT_EQ(told.at("warnings"),
              json::array(
                  {sourceFile() + ": 1 icon is in no content directory and left out: /data/Icons/Ear.png"}));
}

TEST_F(ConvertedMorphs, are_found_by_every_later_load_of_the_figure)
{
    ExpectSuccess(convertMorphs({"--morphs", "Bulge"}, library()));
    const ProgramResult listed =
        RunProgram({"list-dials", targetFile(), "--content", library(), "--search", "Bulge", "--json"});
    ExpectSuccess(listed);
    const json dials = json::parse(listed.out).at("dials");
    ASSERT_EQ(dials.size(), 1u) << listed.out;
    EXPECT_EQ(dials[0].at("name"), "Bulge");
    EXPECT_EQ(dials[0].at("group"), "/Actor");
}

TEST_F(ConvertedMorphs, are_as_strong_as_the_dial_was)
{
    const std::string full = workspace.path("full"), half = workspace.path("half");
    ExpectSuccess(convertMorphs({"--morphs", "Bulge"}, full));
    ExpectSuccess(convertMorphs({"--morphs", "Bulge", "--value", "0.5"}, half));
    std::vector<geometry::Vec3f> expected = deltasOf(full, "Bulge");
    for (geometry::Vec3f& delta : expected)
        delta = delta * 0.5f;
    EXPECT_LT(LargestDifference(deltasOf(half, "Bulge"), expected), 2 * hundredthMillimetre);
}

TEST_F(ConvertedMorphs, are_whole_also_of_dials_that_do_not_rest_at_nothing)
{
    writeMorph("Nose");
    writeMorph("Sharp Nose", R"("value": 0.75)");
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "*Nose"}, saved);
    EXPECT_EQ(told.at("warnings"), json::array());
    EXPECT_LT(LargestDifference(deltasOf(saved, "Sharp Nose"), deltasOf(saved, "Nose")), hundredthMillimetre);
}

TEST_F(ConvertedMorphs, are_hidden_ones_only_where_they_are_named)
{
    writeMorph("Hidden", R"("visible": false)");
    const std::string saved = workspace.path("saved");
    EXPECT_EQ(report({"--morphs", "*"}, saved).at("created").size(), 3u) << "Wide, Bulge and Unused";
    EXPECT_EQ(report({"--morphs", "Hidden"}, saved).at("created").size(), 1u);
    EXPECT_EQ(report({"--morphs", "H*", "--correctives", "--suffix", " 2"}, saved).at("created").size(), 1u);
    EXPECT_FALSE(morphIn(saved, "Hidden").at("channel").at("visible").get<bool>());
}

TEST_F(ConvertedMorphs, stay_within_the_limits_of_the_dial_and_say_so)
{
    const std::string full = workspace.path("full"), more = workspace.path("more");
    ExpectSuccess(convertMorphs({"--morphs", "Bulge"}, full));
    const json told = report({"--morphs", "Bulge", "Wide", "--value", "2"}, more);
    EXPECT_EQ(deltasOf(more, "Bulge"), deltasOf(full, "Bulge"));
    EXPECT_EQ(
        told.at("warnings"),
        json::array({sourceFile() + ": --value 2 is beyond the limits of 2 dials, which are taken at their "
                                    "limits: \"Bulge\", and so on"}));
}

TEST_F(ConvertedMorphs, that_move_nothing_are_listed_and_not_written)
{
    writeMorph("Nothing", "", "", "[]");
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Nothing", "Wide"}, saved);
    EXPECT_EQ(told.at("skipped"),
              (json::array({{{"name", "Nothing"}, {"reason", "moves nothing by more than 0.01 mm"}}})));
    EXPECT_EQ(told.at("created").size(), 1u);
    EXPECT_FALSE(std::filesystem::exists(fileOf(saved, "Nothing")));
}

TEST_F(ConvertedMorphs, that_their_limits_leave_at_nothing_are_listed_with_that)
{
    writeMorph("Fixed", R"("min": 0, "max": 0, "clamped": true)");
    writeMorph("Inward", R"("min": -2, "max": 0, "clamped": true)");
    const std::string saved = workspace.path("saved");
    const json told = report({"--morphs", "Fixed", "Inward"}, saved);
    EXPECT_EQ(told.at("skipped"),
              (json::array({{{"name", "Fixed"}, {"reason", "its limits leave it at 0"}},
                            {{"name", "Inward"},
                             {"reason", "its limits leave it at 0; a negative --value turns it"}}})));
    EXPECT_EQ(told.at("warnings"), json::array());
    EXPECT_EQ(report({"--morphs", "Inward", "--value", "-1"}, saved).at("created").size(), 1u);
}

TEST_F(ConvertedMorphs, leave_those_out_that_cannot_be_had_whole)
{
    writeMorph("Half", "", "", "[[440, 0, 0, 2]]", "/data/none.dhdm");
    writeMorph("Far", "", "", "[[5, 0, 3e9, 0]]");
    const std::string saved = workspace.path("saved");
    const ProgramResult result =
        convertMorphs({"--morphs", "Far", "Half", "Wide", "--resolution", "subd", "--json"}, saved);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: 2 morphs were not converted; 1 is saved.\n");
    const json told = json::parse(result.out);
    ASSERT_EQ(told.at("skipped").size(), 2u);
    EXPECT_EQ(told.at("skipped").at(0).at("name"), "Far");
    EXPECT_EQ(told.at("skipped").at(0).at("reason"),
              "moves vertices by more than 1e+09 cm, which is nothing real");
    EXPECT_EQ(told.at("skipped").at(1).at("name"), "Half");
    EXPECT_EQ(told.at("skipped").at(1).at("reason"),
              "/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/Half.dsf: Half: cannot load the detail for "
              "subdivided meshes: cannot read /data/none.dhdm: no content directory has it");
    EXPECT_TRUE(std::filesystem::exists(fileOf(saved, "Wide")));
    EXPECT_FALSE(std::filesystem::exists(fileOf(saved, "Half")));
}

TEST_F(ConvertedMorphs, that_cannot_be_saved_end_the_run_with_the_reason)
{
    const std::string saved = workspace.path("saved");
    std::filesystem::create_directories(saved + "/data/DAZ 3D/Genesis 9/Base/Morphs");
    workspace.write("saved/data/DAZ 3D/Genesis 9/Base/Morphs/Acme", "no folder");
    const ProgramResult result = convertMorphs({"--morphs", "Wide"}, saved);
    expectFailureWith(result, 1, "Cannot save the morphs: ");
    EXPECT_NE(result.err.find("; nothing was saved"), std::string::npos) << result.err;
}

TEST_F(ConvertedMorphs, do_not_take_names_that_others_have)
{
    writeMorph("head"); // a bone of the target
    writeMorph("CloneGenesis3Male");
    const std::string saved = workspace.path("saved");
    ExpectSuccess(convertMorphs({"--morphs", "Wide"}, saved));
    const std::string before = read(fileOf(saved, "Wide"));
    const ProgramResult result = convertMorphs({"--morphs", "Clone*", "Wide", "Bulge", "--json"}, saved);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: 2 morphs were not converted; 1 is saved.\n");
    const json told = json::parse(result.out);
    const std::string clone = "/data/DAZ 3D/Genesis 9/Base/Morphs/Test/Base/CloneGenesis3Male.dsf";
    EXPECT_EQ(told.at("skipped"),
              (json::array({{{"name", "CloneGenesis3Male"},
                             {"reason", "there is a morph \"CloneGenesis3Male\" already, in " + clone +
                                            "; --suffix gives another name"}},
                            {{"name", "Wide"},
                             {"reason", "there is a morph \"Wide\" already, in " + fileOf(saved, "Wide") +
                                            "; --overwrite replaces it"}}})));
    EXPECT_EQ(told.at("created").at(0).at("name"), "Bulge");
    EXPECT_EQ(read(fileOf(saved, "Wide")), before);
    ExpectSuccess(convertMorphs({"--morphs", "Wide", "--value", "0.5", "--overwrite"}, saved));
    EXPECT_NE(read(fileOf(saved, "Wide")), before);
    EXPECT_EQ(convertMorphs({"--morphs", "Clone*", "--suffix", " G8"}, saved).exitCode, 0);
}

TEST_F(ConvertedMorphs, with_names_that_many_disks_take_for_one_are_not_both_written)
{
    std::filesystem::rename(writeMorph("wide"), writeMorph("Another"));
    const std::string saved = workspace.path("saved");
    const ProgramResult result = convertMorphs({"--morphs", "Wide", "--json"}, saved);
    EXPECT_EQ(result.exitCode, 1);
    const json told = json::parse(result.out);
    EXPECT_EQ(told.at("created").size(), 1u);
    ASSERT_EQ(told.at("skipped").size(), 1u);
    EXPECT_EQ(told.at("skipped").at(0).at("reason"),
              "another one of the morphs is to be called \"" +
                  told.at("skipped").at(0).at("name").get<std::string>() + "\" too");
}

TEST_F(ConvertedMorphs, are_named_by_a_file)
{
    const std::string list =
        workspace.write("list.txt", "\xEF\xBB\xBF# shapes\r\n\r\n  Wide \r\nbulge\nWide\n");
    const std::string saved = workspace.path("saved");
    const json told = report({"--list", list}, saved);
    EXPECT_EQ(told.at("created").size(), 2u);
}

TEST_F(ConvertedMorphs, are_named_before_they_are_labelled)
{
    writeMorph("Nose", R"("label": "Pointed")");
    writeMorph("Pointed", R"("label": "Sharp")");
    const std::string saved = workspace.path("saved");
    const auto created = [&](const std::string& line) {
        return report({"--list", workspace.write("list.txt", line), "--suffix", " of " + line}, saved)
            .at("created")
            .at(0)
            .at("name");
    };
    EXPECT_EQ(created("Pointed"), "Pointed of Pointed");
    EXPECT_EQ(created("sharp"), "Pointed of sharp");
    EXPECT_EQ(created("nose"), "Nose of nose");
}

TEST_F(ConvertedMorphs, of_a_file_have_to_be_there)
{
    const std::string saved = workspace.path("saved"),
                      list = workspace.write("list.txt", "# no\n\n \nWrong\nWorse\n"),
                      empty = workspace.write("empty.txt", "# nothing\n\n"),
                      binary = workspace.write("binary.txt", "Wide\n\xff\xfe\n");
    expectFailure(
        convertMorphs({"--list", list}, saved), 1,
        list + ":4: \"Genesis 8 Female\" has no morph \"Wrong\"; the same of 1 further line behind it.");
    expectFailure(convertMorphs({"--list", empty}, saved), 1, empty + ": names no morphs.");
    expectFailure(convertMorphs({"--list", binary}, saved), 1, binary + ":2: the name is not UTF-8.");
    const std::string missing = workspace.path("missing.txt");
    expectFailureWith(convertMorphs({"--list", missing}, saved), 1, missing);
    expectFailure(convertMorphs({"--morphs", "Zz*"}, saved), 1,
                  "--morphs \"Zz*\" fits no morph of \"Genesis 8 Female\".");
}

TEST_F(ConvertedMorphs, do_not_wait_for_those_that_are_not_there)
{
    writeMorph("Nose");
    const std::string small = read(writeMorph("Small")),
                      file = library("/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/Small.dsf");
    workspace.write("lib/data/Daz 3D/Genesis 8/Female/Morphs/Test/Base/Small.dsf",
                    std::string(small).replace(small.find("488"), 3, "480"));
    const std::string torn = writeMorph("Torn");
    std::filesystem::resize_file(torn, 200);
    const std::string list = workspace.write("list.txt", "Wide\nWrong\n# those:\nSmall\nTorn\nNose\n");
    const std::string saved = workspace.path("saved");
    const ProgramResult result = convertMorphs({"--list", list, "--json"}, saved);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "gantrel: 3 morphs were not converted; 2 are saved.\n");
    const json skipped = json::parse(result.out).at("skipped");
    ASSERT_EQ(skipped.size(), 3u) << skipped;
    EXPECT_EQ(skipped[0],
              (json{{"name", "Wrong"}, {"reason", list + ":2: the figure has no morph of this name"}}));
    EXPECT_EQ(skipped[1], (json{{"name", "Small"},
                                {"reason", list + ":4: " + file +
                                               ": Small: is for a mesh of 480 vertices instead of 488"}}));
    EXPECT_EQ(skipped[2].at("name"), "Torn");
    EXPECT_EQ(skipped[2].at("reason").get<std::string>().rfind(list + ":5: " + torn + ":", 0), 0u)
        << skipped[2];
}

TEST_F(ConvertedMorphs, do_not_wait_for_patterns_that_fit_nothing)
{
    const ProgramResult result =
        convertMorphs({"--morphs", "Wide", "Zz*", "Wrong", "--json"}, workspace.path("saved"));
    EXPECT_EQ(result.exitCode, 1);
    const json told = json::parse(result.out);
    EXPECT_EQ(told.at("created").size(), 1u);
    EXPECT_EQ(told.at("skipped"),
              (json::array({{{"name", "Zz*"}, {"reason", "the pattern fits no morph of the figure"}},
                            {{"name", "Wrong"}, {"reason", "the figure has no morph of this name"}}})));
}

TEST_F(ConvertedMorphs, need_arguments_that_make_sense)
{
    const std::string saved = workspace.path("saved");
    ExpectWrongUse(convertMorphs({}, saved), "--morphs");
    ExpectWrongUse(convertMorphs({"--morphs", "Wide", "--list", "x"}, saved), "--list");
    ExpectWrongUse(convertMorphs({"--list", ""}, saved), "--list");
    ExpectWrongUse(convertMorphs({"--morphs", "Wide", "--value", "0"}, saved), "--value");
    ExpectWrongUse(convertMorphs({"--morphs", "Wide", "--value", "nan"}, saved), "--value");
    ExpectWrongUse(convertMorphs({"--morphs", "Wide", "--value", "2", "--controllers"}, saved), "--value");
    ExpectWrongUse(convertMorphs({"--morphs", "Wide", "--suffix", "\xff"}, saved), "--suffix");
    EXPECT_FALSE(workspace.has("saved"));
}

TEST_F(ConvertedMorphs, leave_no_library_behind_when_a_figure_is_not_there)
{
    expectFailureWith(convertMorphs({"--morphs", "Nothing*"}, workspace.path("saved/library")), 1,
                      "Nothing*");
    EXPECT_FALSE(workspace.has("saved"));
    const std::string lost = workspace.path("none.duf");
    const std::vector<std::string> arguments =
        saving(workspace.path("saved"), {"convert-morphs", "--content", library(), "--source", lost,
                                         "--target", targetFile(), "--morphs", "*"});
    ExpectError(RunProgram(arguments), 1, "Cannot open " + lost + ": No such file or directory.");
    EXPECT_FALSE(workspace.has("saved"));
}

TEST_F(ConvertedMorphs, are_named_when_the_run_is_interrupted)
{
    const std::string saved = workspace.path("saved");
    for (int i = 0; i < 300; ++i)
        writeMorph("Shape" + std::to_string(i));
    const std::string folder = saved + "/" + savedFolder;
    const ProgramResult result =
        InterruptProgram(argumentsOf({"--morphs", "Shape*"}, saved, sourceFile()),
                         [&] { return std::filesystem::exists(fileOf(saved, "Shape0")); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    const std::string clause = " morphs are saved in " + folder + ".\n";
    ASSERT_GT(result.err.size(), clause.size());
    EXPECT_EQ(result.err.substr(result.err.size() - clause.size()), clause);
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        count += entry.path().extension() == ".dsf" ? 1 : 0;
    EXPECT_EQ(result.err, "gantrel: Interrupted; " + std::to_string(count) + clause);
    EXPECT_LT(count, 300u);
    expectNoTraces();
}

TEST_F(ConvertedMorphs, of_a_batchs_row_are_named_when_the_batch_is_interrupted)
{
    const std::string saved = workspace.path("saved");
    for (int i = 0; i < 300; ++i)
        writeMorph("Shape" + std::to_string(i));
    workspace.write("jobs.csv", "morphs\nShape*\n");
    const ProgramResult result =
        InterruptProgram(saving(saved, {"batch", workspace.path("jobs.csv"), "--content", library(),
                                        "--source", sourceFile(), "--target", targetFile()}),
                         [&] { return std::filesystem::exists(fileOf(saved, "Shape0")); });
    EXPECT_EQ(result.signal, SIGINT) << result.err;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(saved + "/" + savedFolder))
        count += entry.path().extension() == ".dsf" ? 1 : 0;
    EXPECT_EQ(result.err, "gantrel: Interrupted; " + std::to_string(count) + " morphs are saved in " + saved +
                              "/" + savedFolder +
                              "; 0 of 1 row is done; --resume goes on with the others.\n");
    EXPECT_LT(count, 300u);
}
