// The choices that `gantrel convert` offers: content, bases and jobs.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <filesystem>

namespace {

using nlohmann::json;

class ConvertChoice : public ConversionTest {
protected:
    json jobs(const std::string& list) const
    {
        const json told = report({"--jobs", list});
        json kinds = json::array();
        for (const json& morph : told.at("created_morphs"))
            kinds.push_back(morph.at("kind"));
        return kinds;
    }

    double largestDisplacement(const std::vector<std::string>& more) const
    {
        std::vector<std::string> all{"--jobs", "full"};
        all.insert(all.end(), more.begin(), more.end());
        return report(all).at("created_morphs").at(0).at("largest_displacement_mm");
    }

    /// The library in two: the figures' data in one folder, the files that load them in the other.
    void splitLibrary() const
    {
        std::filesystem::create_directory(workspace.path("people"));
        std::filesystem::rename(library("/People"), workspace.path("people/People"));
    }
    ProgramResult convertFromSplit(const std::vector<std::string>& content) const
    {
        std::vector<std::string> all{"convert"};
        all.insert(all.end(), content.begin(), content.end());
        for (const std::string& text :
             {std::string("--source"), workspace.path("people") + sourcePath, std::string("--target"),
              workspace.path("people") + targetPath, std::string("--dial"), std::string("Wide=1")})
            all.push_back(text);
        return RunProgram(all);
    }
};

} // namespace

TEST_F(ConvertChoice, makes_head_and_body_by_default)
{
    const json told = report();
    EXPECT_EQ(told.at("jobs"), json({"head", "body"}));
    EXPECT_EQ(told.at("created_morphs").size(), 2u);
}

TEST_F(ConvertChoice, makes_the_jobs_wanted_each_once_in_the_usual_order)
{
    EXPECT_EQ(jobs("full"), json({"full"}));
    EXPECT_EQ(jobs("head"), json({"head"}));
    EXPECT_EQ(jobs("body"), json({"body"}));
    EXPECT_EQ(jobs("body,full"), json({"full", "body"}));
    EXPECT_EQ(jobs("body,head,full,head,body"), json({"full", "head", "body"}));
}

TEST_F(ConvertChoice, refuses_jobs_that_are_none)
{
    for (const char* list : {"", ",", "head,", "head,,body", "tail", "Head", "head body"}) {
        SCOPED_TRACE(list);
        expectFailureWith(convert({"--jobs", list}), 2, "; the jobs are full, head and body.");
    }
}

TEST_F(ConvertChoice, finds_content_in_a_list_of_directories)
{
    splitLibrary();
    ExpectSuccess(convertFromSplit({"--content", library(), workspace.path("people")}));
}

TEST_F(ConvertChoice, finds_content_in_directories_given_one_by_one)
{
    splitLibrary();
    ExpectSuccess(convertFromSplit({"--content", library(), "--content", workspace.path("people")}));
}

TEST_F(ConvertChoice, finds_the_directory_of_the_source_when_none_is_given)
{
    ExpectSuccess(
        RunProgram({"convert", "--source", sourceFile(), "--target", targetFile(), "--dial", "Wide=1"}));
}

TEST_F(ConvertChoice, misses_content_of_a_directory_that_is_not_given)
{
    splitLibrary();
    expectFailureWith(convertFromSplit({"--content", workspace.path("people")}), 1,
                      "Genesis8Female.dsf is in no content library; looked in " + workspace.path("people") +
                          ".");
}

TEST_F(ConvertChoice, names_the_content_folder_for_who_is_in_the_wrong_one)
{
    const std::string lib = library(), above = std::filesystem::path(lib).parent_path();
    for (const std::string& wrong : {lib + "/People", lib + "/People/Genesis 9", above})
        expectFailureWith(
            RunProgram({"convert", "--content", wrong, "--source", sourceFile(), "--target", targetFile()}),
            1, "; looked in " + wrong + "; " + lib + " has it, and is the content folder to name.");
}

TEST_F(ConvertChoice, refuses_content_whose_name_is_no_text)
{
    const std::string odd = workspace.path("li\xFF"
                                           "b");
    const std::string reason = "b: the name is not UTF-8, as those of content have to be.";
    std::filesystem::rename(library(), odd);
    expectFailureWith(
        RunProgram({"convert", "--content", odd, "--source", odd + sourcePath, "--target", odd + targetPath}),
        1, reason);
    expectFailureWith(RunProgram({"list-dials", odd + sourcePath, "--content", workspace.path("")}), 1,
                      ".duf: the name is not UTF-8, as those of content have to be.");
    std::filesystem::rename(odd, library());
    expectFailureWith(convert(saving(odd)), 1, reason);
    EXPECT_FALSE(std::filesystem::exists(odd));
}

TEST_F(ConvertChoice, refuses_a_content_directory_that_is_not_there)
{
    expectFailure(convert({"--content", workspace.path("none")}), 1,
                  workspace.path("none") + ": there is no such content directory.");
}

TEST_F(ConvertChoice, builds_the_morph_against_the_base_dials)
{
    const double plain = largestDisplacement({"--base", "clone=1"});
    // The target's own feminine dial widens its blob by a tenth, which the morph then has to do no more.
    EXPECT_LT(largestDisplacement({"--base", "clone=1", "--base", "feminine=1"}), plain - 10.0);
    // Taller by a tenth of up to 170 cm, which the morph has to take back.
    EXPECT_GT(largestDisplacement({"--base", "clone=1", "--base", "height=1"}), plain + 50.0);
    EXPECT_NEAR(largestDisplacement({"--base", "clone=1", "--base", "masculine=1"}), plain, 0.01);
}

TEST_F(ConvertChoice, leaves_to_the_clone_shape_what_it_holds)
{
    // The legs stand 6.5 degrees further apart, which is 9 cm at the feet; without the clone shape the morph
    // has to move them.
    EXPECT_LT(largestDisplacement({"--base", "clone=1"}), largestDisplacement({"--base", "clone=0"}) - 10.0);
}

TEST_F(ConvertChoice, wears_the_result_on_the_same_bases)
{
    const double plain = report({"--jobs", "full"}).at("surface_distance_mm").at("mean");
    const double based = report({"--jobs", "full", "--base", "feminine=0.5", "--base", "height=0.3", "--base",
                                 "masculine=0.2", "--base", "clone=1"})
                             .at("surface_distance_mm")
                             .at("mean");
    // The delta tolerance is a hundredth of a millimetre.
    EXPECT_NEAR(based, plain, 0.01);
}

TEST_F(ConvertChoice, makes_the_target_as_tall_as_the_source)
{
    // Both blobs are 170 cm high, so that the dial goes one step of 0.005, worth 0.85 mm, beyond.
    const double plain = largestDisplacement({});
    EXPECT_NEAR(largestDisplacement({"--base", "height=auto"}), plain, 1.0);
    EXPECT_EQ(report({"--base", "height=auto"}).at("warnings"), json::array());
}

TEST_F(ConvertChoice, refuses_a_base_that_is_none)
{
    for (const char* base :
         {"nose=1", "clone", "clone=", "=1", "clone=much", "clone=auto", "height=tall", ""}) {
        SCOPED_TRACE(base);
        expectFailureWith(convert({"--base", base}), 2, "gantrel: ");
    }
}

TEST_F(ConvertChoice, refuses_a_base_outside_of_its_dial)
{
    expectFailure(convert({"--base", "clone=5"}), 2,
                  "--base clone=5 is outside of -1 to 1, the range of \"CloneGenesis8Female\".");
    expectFailure(convert({"--base", "height=-1.5"}), 2,
                  "--base height=-1.5 is outside of -1 to 1, the range of \"body_bs_ProportionHeight\".");
}

TEST_F(ConvertChoice, registers_the_features_of_both_figures_when_asked_to)
{
    const auto convert = [this](const std::string& file, std::vector<std::string> more) {
        more.insert(more.end(), {"--jobs", "full", "--export-obj", workspace.path(file)});
        return report(more).at("surface_distance_mm").at("mean").get<double>();
    };
    const double plain = convert("plain.obj", {}), registered = convert("registered.obj", {"--register"});
    EXPECT_FALSE(workspace.read("plain.obj") == workspace.read("registered.obj")); // nobody wants to see them
    EXPECT_LT(registered, 2.0 * plain);
}
