// The page that `--report` writes of a conversion.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_page.h"

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::size_t Count(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

class ConversionPage : public ConversionTest {
protected:
    std::string page() const { return workspace.path("report.html"); }
    std::string text() const { return workspace.read("report.html"); }
    std::string dataText() const { return PageDataText(text()); }
    json data(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> all{"--report", page()};
        all.insert(all.end(), more.begin(), more.end());
        told = report(all);
        return PageData(text());
    }
    /// The program fails before it begins, and files and folders are as before.
    void expectRefused(const std::string& file, int exitCode, const std::string& part,
                       const std::vector<std::string>& more = {}) const
    {
        const std::vector<std::string> before = workspace.entries();
        std::vector<std::string> all = saving(workspace.path("saved"), {"--report", file});
        all.insert(all.end(), more.begin(), more.end());
        expectFailureWith(convert(all), exitCode, part);
        EXPECT_EQ(workspace.entries(), before);
    }

    mutable json told;
};

} // namespace

TEST_F(ConversionPage, tells_what_the_command_tells)
{
    const json shown =
        data(saving(workspace.path("saved"), {"--jobs", "full,head,body", "--base", "feminine=0.5"}));
    for (const char* const key :
         {"figures", "dials", "created_morphs", "missing_morphs", "surface_distance_mm", "warnings", "files",
          "report", "resolution", "active_morphs"})
        EXPECT_EQ(shown.at("report").at(key), told.at(key)) << key;
    EXPECT_EQ(told.at("report"), page());
    EXPECT_EQ(told.at("files"), json({page()}));
    EXPECT_EQ(shown.at("bases"), json({"feminine=0.5"}));
    EXPECT_EQ(shown.at("version"), GANTREL_VERSION);
    EXPECT_EQ(shown.at("title"), "Conversion of Genesis 8 Female");
    EXPECT_EQ(shown.at("command").get<std::string>().find("gantrel convert --content "), 0u);
    EXPECT_NE(shown.at("command").get<std::string>().find("--source '" + sourceFile() + "'"),
              std::string::npos);
}

TEST_F(ConversionPage, has_pictures_of_both_figures_and_their_difference_from_all_sides)
{
    const json shown = data({"--jobs", "full"});
    ASSERT_EQ(shown.at("pictures").size(), 3u);
    EXPECT_EQ(shown["pictures"][2].at("title"), "Difference");
    for (const json& row : shown["pictures"]) {
        std::vector<std::string> views;
        for (const json& image : row.at("images")) {
            views.push_back(image.at("view"));
            EXPECT_EQ(image.at("image").get<std::string>().find("data:image/png;base64,iVBORw0KGgo"), 0u);
        }
        EXPECT_EQ(views, (std::vector<std::string>{"front", "three-quarter", "side", "back", "face"}));
    }
    EXPECT_NE(shown["pictures"][0]["images"][0], shown["pictures"][2]["images"][0]);
}

TEST_F(ConversionPage, counts_every_measured_vertex_once)
{
    const json shown = data({"--jobs", "full"});
    const json& histogram = shown.at("histogram");
    std::size_t counted = 0;
    for (const json& count : histogram.at("counts"))
        counted += count.get<std::size_t>();
    const std::size_t vertices = 6 * 9 * 9 + 2 + 6 * 12 * 12 + 2;
    EXPECT_LE(counted, vertices);
    EXPECT_GE(counted, vertices * 98 / 100) << "the others lie beyond the end";
    EXPECT_NE(histogram.at("text").get<std::string>().find("The 1\u202f354 vertices"), std::string::npos);
    const double end = histogram.at("step").get<double>() * static_cast<double>(histogram["counts"].size());
    EXPECT_GE(end * 1.0001, told.at("surface_distance_mm").at("p95").get<double>());
}

TEST_F(ConversionPage, carries_the_figure_its_morphs_and_the_source)
{
    const json shown = data({"--jobs", "full,head,body"});
    const json& figure = shown.at("figure");
    const std::size_t target = 6 * 12 * 12 + 2, source = 6 * 9 * 9 + 2;
    EXPECT_EQ(PackedBytes(figure.at("positions")), target * 3 * 2);
    EXPECT_EQ(PackedBytes(figure.at("faces")), 6 * 12 * 12 * 4 * 2u);
    EXPECT_EQ(PackedBytes(figure.at("distances").at("values")), target);
    EXPECT_EQ(PackedBytes(figure.at("source").at("positions")), source * 3 * 2);
    ASSERT_EQ(figure.at("morphs").size(), 3u);
    for (const json& morph : figure["morphs"]) {
        const std::size_t moved = PackedBytes(morph.at("deltas")) / 6;
        EXPECT_GT(moved, 0u);
        EXPECT_EQ(morph.at("vertices").is_null() ? target : PackedBytes(morph["vertices"]) / 2, moved);
    }
    EXPECT_EQ(figure["morphs"][0].at("value"), 1.0);
    EXPECT_EQ(figure["morphs"][1].at("value"), 0.0) << "the full morph has the head's";
}

TEST_F(ConversionPage, shows_displacements_where_no_distance_is_measured)
{
    const json shown = data({"--jobs", "head"});
    EXPECT_TRUE(told.at("surface_distance_mm").is_null());
    EXPECT_FALSE(shown.contains("histogram"));
    EXPECT_FALSE(shown.at("figure").contains("distances"));
    EXPECT_EQ(shown.at("pictures")[2].at("title"), "Displacement");
    EXPECT_NE(shown.at("scale").at("text").get<std::string>().find("How far the new morphs move"),
              std::string::npos);
}

TEST_F(ConversionPage, of_a_subdivided_conversion_carries_the_base_mesh_and_says_so)
{
    const json shown = data({"--jobs", "full", "--resolution", "subd", "--subd", "1"});
    EXPECT_EQ(PackedBytes(shown.at("figure").at("positions")), (6 * 12 * 12 + 2) * 3 * 2u);
    EXPECT_EQ(shown.at("figureNote")
                  .get<std::string>()
                  .find("The page carries the base mesh of a conversion at level 1;"),
              0u);
}

TEST_F(ConversionPage, takes_no_name_for_anything_but_text)
{
    const std::string name =
        "/</script><script>alert(1)</script><!--&amp;\"' %s 100 % \xe2\x80\xa8\xe2\x80\xae"
        "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d \xf0\x9f\x99\x82";
    const json shown = data({"--path", name});
    EXPECT_EQ(shown.at("report").at("created_morphs")[0].at("path"), name);
    const std::string block = dataText();
    EXPECT_EQ(block.find_first_of("<>&"), block.npos);
    EXPECT_TRUE(std::all_of(block.begin(), block.end(), [](char c) { return c >= ' ' && c < 0x7f; }));
}

TEST_F(ConversionPage, has_a_title_of_text_alone)
{
    json scene = json::parse(workspace.read(std::string("lib") + sourcePath));
    for (json& node : scene.at("scene").at("nodes"))
        if (node.value("label", "") == "Genesis 8 Female")
            node["label"] = "</title><b>\"Ann\"&\u202e";
    const std::string ann = workspace.write("lib/People/Ann.duf", scene.dump());
    ExpectSuccess(RunProgram(argumentsFor(ann, targetFile(), {"--dial", "Wide=1", "--report", page()})));
    EXPECT_EQ(Between(text(), "<title>", "</title>"),
              "Conversion of &#60;/title&#62;&#60;b&#62;&#34;Ann&#34;&#38;&#8238;");
}

TEST_F(ConversionPage, asks_nothing_of_anybody_and_runs_its_own_scripts_alone)
{
    data();
    const std::string html = text();
    const std::string policy = Between(html, R"(http-equiv="Content-Security-Policy" content=")", "\"");
    EXPECT_EQ(policy.find("default-src 'none'; img-src data:; style-src 'sha256-"), 0u) << policy;
    EXPECT_EQ(policy.find("unsafe"), policy.npos);
    EXPECT_EQ(policy.find("http"), policy.npos);
    EXPECT_EQ(Count(html, "<script>"), Count(policy.substr(policy.find("script-src")), "'sha256-"));
    const std::string markup = html.substr(0, html.find("<script type="));
    for (const char* const part : {"<link", "src=", "href=", "@import", "url("})
        EXPECT_EQ(markup.find(part), markup.npos) << part;
    EXPECT_NE(html.find("Permission is hereby granted"), html.npos) << "the licence of three.js";
}

TEST_F(ConversionPage, is_refused_before_the_work_where_it_cannot_be)
{
    workspace.write("file", "text");
    fs::create_directory(workspace.path("folder.html"));
    expectRefused(workspace.path("report.duf"), 2, "report.duf: a report is an .html file.");
    expectRefused(workspace.path("none/report.html"), 1,
                  "none/report.html: there is no folder " + workspace.path("none") + ".");
    expectRefused(workspace.path("file/report.html"), 1,
                  "there is no folder " + workspace.path("file") + ".");
    expectRefused(workspace.path("folder.html"), 1, "folder.html: Is a directory.");
    fs::create_symlink("/dev/null", workspace.path("device.html"));
    expectRefused(workspace.path("device.html"), 1, "annot write " + workspace.path("device.html"));
    fs::create_symlink(sourceFile(), workspace.path("source.html"));
    expectRefused(workspace.path("source.html"), 1, "it is the same file as the input");
    expectRefused(workspace.path("both.html"), 2, "--report and --export-obj both name",
                  {"--export-obj", workspace.path("./both.html")});
    expectRefused(workspace.path(std::string(300, 'a') + ".html"), 1, "File name too long.");
    expectRefused("", 2, "--report: the name is empty");
}

TEST_F(ConversionPage, replaces_the_one_that_is_there)
{
    workspace.write("report.html", "old");
    data();
    EXPECT_EQ(text().compare(0, 15, "<!DOCTYPE html>"), 0);
}
