// The page that `--report` writes of a library's morphs.
// SPDX-License-Identifier: MIT

#include "cli_morph_library.h"
#include "cli_page.h"

#include <filesystem>

namespace {

using nlohmann::json;

class MorphPage : public MorphLibraryTest {
protected:
    std::string page() const { return workspace.path("report.html"); }
    /// The program's own report is kept.
    json data(std::vector<std::string> more) const
    {
        more.insert(more.end(), {"--report", page()});
        told = report(more, workspace.path("saved"));
        return PageData(workspace.read("report.html"));
    }

    mutable json told;
};

} // namespace

TEST_F(MorphPage, tells_each_morph_with_where_it_is_from_and_where_it_went)
{
    writeMorph("Nose", R"("label": "Long </script> Nose")", R"("region": "Head", "group": "/Face")");
    const json shown = data({"--morphs", "Nose", "--suffix", " G8", "--path", "/Old"});
    const json& morph = shown.at("report").at("created").at(0);
    EXPECT_EQ(morph.at("name"), "Nose G8");
    EXPECT_EQ(morph.at("label"), "Long </script> Nose");
    EXPECT_EQ(morph.at("source"), "Nose");
    EXPECT_EQ(morph.at("region"), "Head");
    EXPECT_EQ(morph.at("path"), "/Old/Face");
    EXPECT_EQ(morph, told.at("created").at(0));
    EXPECT_EQ(told.at("report"), page());
    EXPECT_EQ(told.at("files"), json({page()}));
    EXPECT_EQ(shown.at("settings").at("value"), 1.0);
}

TEST_F(MorphPage, shows_the_largest_first_in_pictures_and_to_turn)
{
    writeMorph("Small", {}, {}, "[[440, 0, 0, 1], [441, 0, 0, 1]]");
    writeMorph("Large", {}, {}, "[[440, 0, 0, 3], [441, 0, 0, 3]]");
    const json shown = data({"--morphs", "Small", "Large"});
    ASSERT_EQ(shown.at("stills").size(), 2u);
    EXPECT_EQ(shown["stills"][0].at("name"), "Large");
    EXPECT_EQ(shown["stills"][1].at("name"), "Small");
    for (const json& still : shown["stills"]) {
        EXPECT_EQ(still.at("source").get<std::string>().find("data:image/png;base64,"), 0u);
        EXPECT_NE(still.at("source"), still.at("made"));
        EXPECT_GE(still.at("top").get<double>() * 1.0001, still.at("largest").get<double>());
    }
    const json& figure = shown.at("figure");
    EXPECT_TRUE(figure.at("hasPicker").get<bool>());
    ASSERT_EQ(figure.at("morphs").size(), 2u);
    EXPECT_EQ(figure["morphs"][0].at("label"), "Large");
    EXPECT_EQ(figure["morphs"][0].at("value"), 1.0);
    EXPECT_EQ(figure["morphs"][1].at("value"), 0.0);
    EXPECT_EQ(shown.at("carried"), 2);
    EXPECT_EQ(shown.at("converted"), 2);
}

TEST_F(MorphPage, shows_a_dozen_in_pictures_and_says_of_how_many)
{
    for (int i = 0; i < 14; ++i)
        writeMorph("Many" + std::to_string(i), {}, {},
                   "[[440, 0, 0, " + std::to_string(1.0 + 0.1 * i) + "]]");
    const json shown = data({"--morphs", "Many*"});
    ASSERT_EQ(shown.at("stills").size(), 12u);
    EXPECT_EQ(shown["stills"][0].at("name"), "Many13");
    EXPECT_EQ(shown["stills"][11].at("name"), "Many2");
    EXPECT_EQ(shown.at("converted"), 14);
    EXPECT_EQ(shown.at("carried"), 14);
}

TEST_F(MorphPage, notes_a_morph_that_was_taken_at_its_limit)
{
    writeMorph("Nose", R"("clamped": true)");
    const json shown = data({"--morphs", "Nose", "--value", "2"});
    EXPECT_EQ(shown.at("report").at("created")[0].at("notes"), json({"taken at the limit of its dial"}));
    EXPECT_EQ(shown.at("settings").at("value"), 2.0);
}

TEST_F(MorphPage, lists_what_was_not_converted_and_stands_without_a_figure)
{
    writeMorph("Still", {}, {}, "[]");
    const json shown = data({"--morphs", "Still"});
    EXPECT_EQ(shown.at("report").at("skipped"),
              json({{{"name", "Still"}, {"reason", "moves nothing by more than 0.01 mm"}}}));
    EXPECT_FALSE(shown.contains("stills"));
    EXPECT_FALSE(shown.contains("figure"));
}

TEST_F(MorphPage, carries_the_base_mesh_of_subdivided_morphs)
{
    writeMorph("Nose");
    const json shown = data({"--morphs", "Nose", "--resolution", "subd"});
    EXPECT_EQ(PackedBytes(shown.at("figure").at("positions")), (6 * 12 * 12 + 2) * 3 * 2u);
    EXPECT_EQ(shown.at("settings").at("resolution"), "subdivided");
    EXPECT_GT(told.at("created")[0].at("detail_vertices_moved"), 0);
}

TEST_F(MorphPage, is_refused_before_the_work_where_it_cannot_be)
{
    writeMorph("Nose");
    const std::vector<std::string> before = workspace.entries();
    const std::string saved = workspace.path("saved"), list = workspace.write("list.html", "Nose\n");
    ExpectError(convertMorphs({"--morphs", "Nose", "--report", "report.dsf"}, saved), 2,
                "Cannot write report.dsf: a report is an .html file.");
    ExpectError(convertMorphs({"--list", list, "--report", list}, saved), 1,
                "Cannot write " + list + ": it is the same file as the input " + list + ".");
    std::filesystem::remove(list);
    EXPECT_EQ(workspace.entries(), before);
}

TEST_F(MorphPage, leaves_the_smallest_out_to_stay_below_ten_megabytes)
{
    constexpr int morphs = 1150;
    for (int i = 0; i < morphs; ++i) {
        std::string deltas;
        for (int v = 0; v < 488; ++v)
            deltas += (v > 0 ? ", [" : "[") + std::to_string(v) + ", 0, 0, " +
                      std::to_string(1.0 + 0.001 * i) + "]";
        writeMorph("Many" + std::to_string(i), {}, {}, "[" + deltas + "]");
    }
    const json shown = data({"--morphs", "Many*"});
    const std::size_t carried = shown.at("carried");
    EXPECT_EQ(shown.at("converted"), morphs);
    EXPECT_EQ(shown.at("figure").at("morphs").size(), carried);
    EXPECT_LT(carried, morphs * 95u / 100u);
    EXPECT_GT(carried, morphs / 2u);
    EXPECT_EQ(shown["figure"]["morphs"][0].at("label"), "Many" + std::to_string(morphs - 1));
    EXPECT_EQ(shown["figure"]["morphs"][carried - 1].at("label"), "Many" + std::to_string(morphs - carried));
    EXPECT_LT(std::filesystem::file_size(page()), 10'000'000u);
}
