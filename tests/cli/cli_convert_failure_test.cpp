// Conversions that cannot be done: one sentence, and nothing half-written.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "geometry/vec3.h"

#include <climits>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

const char* const headSplit = "/People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf";
const char* const otherStock = "/People/Genesis 3 Male/Genesis 3 Male.duf";

class ConvertFailure : public ConversionTest {
protected:
    std::string writeProp() const
    {
        fs::create_directories(library("/data/Acme/Box"));
        workspace.write("lib/data/Acme/Box/Box.dsf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/data/Acme/Box/Box.dsf", "type": "prop"},
            "geometry_library": [{"id": "Box-1", "name": "Box", "type": "polygon_mesh",
                "vertices": {"count": 4, "values": [[0, 0, 0], [10, 0, 0], [10, 20, 0], [0, 20, 0]]},
                "polygon_groups": {"count": 1, "values": ["all"]},
                "polygon_material_groups": {"count": 1, "values": ["wood"]},
                "polylist": {"count": 1, "values": [[0, 0, 0, 1, 2, 3]]}}],
            "node_library": [{"id": "Box", "name": "Box", "label": "Box", "type": "node"}]})");
        return workspace.write("lib/People/Box.duf", R"({"file_version": "0.6.0.0",
            "asset_info": {"id": "/People/Box.duf", "type": "scene_subset"},
            "scene": {"nodes": [{"id": "Box", "url": "/data/Acme/Box/Box.dsf#Box", "label": "Box",
                                 "geometries": [{"id": "Box-g", "url": "/data/Acme/Box/Box.dsf#Box-1"}]}]}})");
    }
    std::string writeTruncatedGzip() const
    {
        // A header and the beginning of a stored block that promises a hundred bytes.
        const unsigned char bytes[] = {0x1f, 0x8b, 8, 0, 0, 0, 0, 0, 0, 3, 0x01, 100, 0, 155, 255, '{', '"'};
        return workspace.write("cut.duf", std::string(std::begin(bytes), std::end(bytes)));
    }
    ProgramResult convertFrom(const std::string& source, const std::vector<std::string>& more = {}) const
    {
        return RunProgram(argumentsFor(source, targetFile(), more));
    }
    ProgramResult convertTo(const std::string& target) const
    {
        return RunProgram(argumentsFor(sourceFile(), target, {"--dial", "Wide=1"}));
    }
    /// The program fails, and files and folders are as before.
    void expectNothingMade(const std::vector<std::string>& more, int exitCode, const std::string& part) const
    {
        const std::vector<std::string> before = workspace.entries();
        expectFailureWith(convert(more), exitCode, part);
        EXPECT_EQ(workspace.entries(), before);
    }
    /// Another displacement for the first vertex of the source's shape "Wide".
    /// @return the shape's file
    std::string writeDisplacement(const std::string& text) const
    {
        for (const std::string& entry : workspace.entries()) {
            if (fs::path(entry).filename() != "Wide.dsf" || entry.find("Genesis 8/Female/") == entry.npos)
                continue;
            std::string shape = workspace.read(entry);
            const std::size_t rows = shape.find('[', shape.find("\"values\"", shape.find("\"deltas\"")));
            const std::size_t row = shape.find('[', rows + 1);
            return workspace.write(entry, shape.replace(row, shape.find(']', row) + 1 - row, text));
        }
        throw std::runtime_error("there is no such shape");
    }
    bool hasSaved(const std::string& name) const
    {
        return workspace.has(std::string("saved/") + savedFolder + "/" + name + ".dsf");
    }
};

} // namespace

TEST_F(ConvertFailure, wants_figures_of_the_right_kinds)
{
    expectFailure(convertTo(sourceFile()), 1,
                  sourceFile() + ": has no Genesis 9 figure to convert to, only \"Genesis 8 Female (2)\".");
    expectFailure(convertFrom(targetFile()), 1,
                  targetFile() + ": has no Genesis 3, 8 or 8.1 figure to convert from, only \"Genesis 9\".");
    const std::string prop = writeProp();
    expectFailure(convertFrom(prop), 1,
                  prop + ": has no Genesis 3, 8 or 8.1 figure to convert from, only \"Box\".");
    expectFailure(convertTo(prop), 1, prop + ": has no Genesis 9 figure to convert to, only \"Box\".");
}

TEST_F(ConvertFailure, wants_files_that_can_be_loaded)
{
    const std::string none = workspace.path("none.duf");
    expectFailure(convertFrom(none), 1, "Cannot open " + none + ": No such file or directory.");
    expectFailure(convertTo(none), 1, "Cannot open " + none + ": No such file or directory.");
    expectFailure(convertFrom(library()), 1, "Cannot read " + library() + ": Is a directory.");
    for (const char* text : {"", "hello", "{", "[1, 2]", "{}", "\x89PNG"}) {
        SCOPED_TRACE(text);
        const std::string file = workspace.write("bad.duf", text);
        expectFailureWith(convertFrom(file), 1, file + ": ");
        expectFailureWith(convertTo(file), 1, file + ": ");
    }
    const std::string cut = writeTruncatedGzip();
    expectFailure(convertFrom(cut), 1, cut + ": the compressed data is cut off.");
}

TEST_F(ConvertFailure, wants_a_source_that_is_shaped)
{
    expectFailure(
        convertFrom(sourceFile()), 1,
        "Source figure \xE2\x80\x9CGenesis 8 Female\xE2\x80\x9D has no morphs dialed in; nothing to do.");
}

TEST_F(ConvertFailure, wants_dials_that_the_source_has)
{
    expectFailureWith(convert({"--dial", "Wid=1"}), 1, "has no dial \"Wid\"; the closest are \"Wide\"");
    expectFailureWith(convert({"--dial", "Wide"}), 2, "\"Wide\"");
}

TEST_F(ConvertFailure, wants_the_stock_figures)
{
    fs::remove(library(otherStock));
    expectNothingMade(saving(workspace.path("saved")), 1, "Genesis 3 Male.duf");
}

TEST_F(ConvertFailure, wants_the_file_of_the_head_split)
{
    const std::string text = workspace.read(std::string("lib") + headSplit);
    for (const std::string& broken : {std::string("hello"), text.substr(0, text.size() / 2)}) {
        workspace.write(std::string("lib") + headSplit, broken);
        expectNothingMade(saving(workspace.path("saved"), {"--jobs", "full,head"}), 1,
                          "G9 HeadSplit DFormer.duf");
    }
    fs::remove(library(headSplit));
    expectNothingMade(saving(workspace.path("saved"), {"--jobs", "full,head"}), 1,
                      "G9 HeadSplit DFormer.duf");
    ExpectSuccess(convert({"--jobs", "full"}));
}

TEST_F(ConvertFailure, wants_stock_files_that_are_whole)
{
    for (const char* const stock : {"/People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf",
                                    "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"}) {
        const std::string name = std::string("lib") + stock, whole = workspace.read(name);
        const std::pair<std::string, std::string> damages[] = {
            {"", "is empty."},
            {whole.substr(0, whole.size() / 2), "ends too early, at line "},
            {"{}", "is not a DSON file: it has no file_version."}};
        for (const auto& [text, damage] : damages) {
            workspace.write(name, text);
            expectNothingMade(saving(workspace.path("saved")), 1, library(stock) + ": " + damage);
        }
        workspace.write(name, whole);
    }
}

TEST_F(ConvertFailure, wants_vendor_and_product_with_a_library_and_the_other_way_round)
{
    const std::string place = workspace.path("saved");
    expectNothingMade({"--save-library", place}, 2, "--vendor");
    expectNothingMade({"--save-library", place, "--product", "Heroes"}, 2, "--vendor");
    expectNothingMade({"--save-library", place, "--vendor", "Acme"}, 2, "--product");
    expectNothingMade({"--vendor", "Acme", "--product", "Heroes"}, 2, "--save-library");
    expectNothingMade({"--compress"}, 2, "--save-library");
}

TEST_F(ConvertFailure, wants_names_that_can_be_folders)
{
    const std::string place = workspace.path("saved");
    for (const char* name : {"", " ", ".", "..", "../up", "a/b", "a\\b", "a:b", "a\nb", " a", "a ", "end.",
                             "CON", "nul.x", "Com1", "LPT\xC2\xB3", "aux .txt"}) {
        SCOPED_TRACE(name);
        expectNothingMade({"--save-library", place, "--vendor", name, "--product", "Heroes"}, 2,
                          "cannot be the name of a folder.");
        expectNothingMade({"--save-library", place, "--vendor", "Acme", "--product", name}, 2,
                          "cannot be the name of a folder.");
    }
}

TEST_F(ConvertFailure, wants_a_folder_for_pictures)
{
    for (const char* const name : {"out.duf", "out.DSF", "out.png"}) {
        const std::string place = workspace.path(name);
        expectNothingMade({"--pictures", place}, 2,
                          "The pictures go into a folder as .png files, and " + place +
                              " is the name of a file.");
    }
}

TEST_F(ConvertFailure, wants_names_of_folders_that_are_text)
{
    expectNothingMade({"--save-library", workspace.path("saved"), "--vendor", "\xff", "--product", "Heroes"},
                      2, "--vendor is not UTF-8.");
    expectNothingMade(saving(workspace.path("saved"), {"--path", "/\xff"}), 2, "--path is not UTF-8.");
}

TEST_F(ConvertFailure, wants_names_of_folders_that_are_not_too_long)
{
    const std::string place = workspace.path("saved"), tooLong(256, 'v');
    expectNothingMade({"--save-library", place, "--vendor", tooLong, "--product", "Heroes"}, 2,
                      "--vendor is too long for the name of a folder: 256 bytes, of 255 at most.");
    expectNothingMade({"--save-library", place, "--vendor", "Acme", "--product", tooLong}, 2,
                      "--product is too long for the name of a folder");
    ExpectSuccess(convert({"--save-library", place, "--vendor", tooLong.substr(1), "--product", "Heroes"}));
}

TEST_F(ConvertFailure, wants_places_that_can_be_written_to)
{
    const std::string below = workspace.write("file", "text") + "/below";
    expectNothingMade(saving(below), 1, "annot create folder " + below + ": Not a directory.");
    expectNothingMade(saving(workspace.path("file")), 1, "Not a directory.");
    expectNothingMade({"--pictures", below}, 1, "annot create folder " + below + ": Not a directory.");
    expectNothingMade({"--export-obj", below + ".obj"}, 1, "");
    expectNothingMade({"--export-obj", workspace.path("none/a.obj")}, 1,
                      "there is no folder " + workspace.path("none"));
    expectNothingMade({"--export-obj", library()}, 1, "Is a directory.");
    for (const std::string& input : {sourceFile(), targetFile()})
        expectNothingMade({"--export-obj", input}, 1,
                          "annot write " + input + ": it is the same file as the input " + input + ".");
    const std::string tooLong = workspace.path(std::string(252, 'o') + ".obj");
    expectNothingMade({"--export-obj", tooLong, "--dial", "No=1"}, 1,
                      "annot write " + tooLong + ": File name too long.");
    ExpectSuccess(convert({"--export-obj", workspace.path(std::string(251, 'o') + ".obj")}));
    for (const char* option : {"--save-library", "--export-obj", "--pictures"})
        expectNothingMade({option, ""}, 2, option);
}

TEST_F(ConvertFailure, makes_no_folders_for_a_conversion_that_fails)
{
    expectNothingMade(
        saving(workspace.path("saved"), {"--pictures", workspace.path("drawn"), "--dial", "No=1"}), 1, "No");
}

TEST_F(ConvertFailure, to_make_the_library_s_folder_names_it)
{
    // The superuser may write into it, and it takes nothing all the same.
    expectFailureWith(convert(saving("/proc/none")), 1, "annot create folder /proc/none: ");
    fs::create_symlink(workspace.path("gone"), workspace.path("link"));
    expectFailureWith(convert(saving(workspace.path("link"))), 1,
                      "annot create folder " + workspace.path("link"));
}

TEST_F(ConvertFailure, behind_a_link_that_leads_nowhere_names_the_link)
{
    const auto lost = [](const std::string& link) {
        return "the link " + link + " leads to gone, which is not there.";
    };
    const std::string link = workspace.path("link");
    fs::create_symlink("gone", link);
    // Told before the figures are loaded, of which there are none.
    for (const std::vector<std::string>& places :
         {saving(link), std::vector<std::string>{"--pictures", link}}) {
        std::vector<std::string> all = places;
        all.insert(all.end(), {"--dial", "No=1"});
        expectFailure(convert(all), 1, "Cannot create folder " + link + ": " + lost(link));
    }
    ExpectError(RunProgram({"sample-content", link + "/inner"}), 1,
                "Cannot create folder " + link + "/inner: " + lost(link));
    const fs::path folder = workspace.path("saved/") + savedFolder, vendor = folder.parent_path();
    fs::create_directories(vendor.parent_path());
    fs::create_symlink("gone", vendor);
    expectFailure(convert(saving(workspace.path("saved"))), 1,
                  "Cannot save the morphs: cannot create folder " + folder.string() + ": " +
                      lost(vendor.string()));
}

TEST_F(ConvertFailure, to_save_one_morph_leaves_no_part_of_it)
{
    fs::create_directories(workspace.path("saved/") + savedFolder + "/Vera Head.dsf");
    expectFailureWith(convert(saving(workspace.path("saved"))), 1, "Vera Head.dsf: Is a directory.");
}

TEST_F(ConvertFailure, to_write_the_obj_keeps_the_saved_morphs_and_says_so)
{
    // The path is short enough, but not that of what an unfinished file is called.
    std::string folder = workspace.path("deep");
    while (folder.size() < PATH_MAX - 250)
        folder += "/" + std::string(100, 'd');
    folder += "/" + std::string(PATH_MAX - 20 - folder.size(), 'd');
    fs::create_directories(folder);
    const std::string obj = folder + "/a.obj";
    expectFailureWith(convert(saving(workspace.path("saved"), {"--export-obj", obj})), 1,
                      ".obj: File name too long; the morphs are saved.");
    EXPECT_TRUE(hasSaved("Vera Head"));
    EXPECT_TRUE(hasSaved("Vera Body"));
    EXPECT_FALSE(fs::exists(obj));
}

TEST_F(ConvertFailure, to_draw_a_picture_keeps_the_saved_morphs_and_says_so)
{
    fs::create_directories(workspace.path("drawn/converted.png"));
    expectFailureWith(convert(saving(workspace.path("saved"), {"--pictures", workspace.path("drawn")})), 1,
                      "converted.png: Is a directory; the morphs are saved.");
    EXPECT_TRUE(hasSaved("Vera Head"));
    EXPECT_TRUE(hasSaved("Vera Body"));
}

TEST_F(ConvertFailure, to_write_what_is_wanted_besides_claims_no_morphs_where_none_are_saved)
{
    fs::create_directories(workspace.path("drawn/converted.png"));
    expectFailure(convert({"--pictures", workspace.path("drawn")}), 1,
                  "Cannot write " + workspace.path("drawn/converted.png") + ": Is a directory.");
}

TEST_F(ConvertFailure, names_required_arguments_that_are_missing)
{
    ExpectWrongUse(RunProgram({"convert", "--source", sourceFile()}), "--target");
    ExpectWrongUse(RunProgram({"convert", "--target", targetFile()}), "--source");
    ExpectWrongUse(RunProgram(arguments({"--resolution", "finest"})), "finest");
    ExpectWrongUse(RunProgram(arguments({"--content"})), "--content");
}

TEST_F(ConvertFailure, for_a_name_that_is_not_free_replaces_nothing)
{
    const std::vector<std::string> plain = saving(library());
    for (const char* const name : {"Zoë", "Zoé"}) {
        morphName = name;
        ExpectSuccess(convert(plain));
    }
    const std::string file = "lib/" + std::string(savedFolder) + "/Zoé Head.dsf";
    const std::string bytes = workspace.read(file);
    expectFailureWith(convert(plain), 1, "Zoé Head.dsf; --overwrite replaces it.");
    std::vector<std::string> elsewhere = plain;
    elsewhere.back() = "Others";
    expectFailureWith(convert(elsewhere), 1, "There is a morph \"Zoé Head\" already, in /data/");
    morphName = "ZOÉ";
    expectFailureWith(convert(plain), 1, "choose another name with --name.");
    morphName = "Zoé";
    EXPECT_EQ(workspace.read(file), bytes);
    ExpectSuccess(convert(saving(library(), {"--dial", "Wide=0", "--overwrite"})));
    EXPECT_NE(workspace.read(file), bytes);
}

TEST_F(ConvertFailure, for_a_name_of_the_figures_own_parts_changes_nothing)
{
    for (const char* const name :
         {"CloneGenesis8Female", "clonegenesis8female", "SkinBinding", "XTranslate"}) {
        morphName = name;
        expectNothingMade(saving(library(), {"--jobs", "full", "--overwrite"}), 1,
                          "choose another name with --name.");
    }
}

TEST_F(ConvertFailure, for_a_name_that_is_none_makes_nothing)
{
    const std::vector<std::string> anywhere = saving(workspace.path("saved"));
    for (const char* const blank : {"", "  ", "\t", "\xC2\xA0", "\xE2\x80\x8B"}) {
        morphName = blank;
        expectNothingMade(anywhere, 2, "--name is blank.");
    }
    morphName = "Zo\xEB";
    expectNothingMade(anywhere, 2, "--name is not UTF-8.");
    morphName = "\xEF\xBB\xBFZoe";
    expectNothingMade(anywhere, 2, "--name begins with a byte order mark (U+FEFF), which nobody sees.");
}

TEST_F(ConvertFailure, leaves_nothing_of_a_morph_that_is_replaced)
{
    ExpectSuccess(convert(saving(library(), {"--jobs", "full", "--adjust-rig"})));
    const std::string file = "lib/" + std::string(savedFolder) + "/Vera.dsf";
    EXPECT_NE(workspace.read(file).find("center_point"), std::string::npos);
    ExpectSuccess(convert(saving(library(), {"--jobs", "full", "--overwrite"})));
    EXPECT_EQ(workspace.read(file).find("center_point"), std::string::npos);
}

TEST_F(ConvertFailure, for_a_shape_that_is_damaged_names_its_file)
{
    std::string clone;
    for (const std::string& entry : workspace.entries())
        if (fs::path(entry).filename() == "CloneGenesis8Female.dsf")
            clone = entry;
    workspace.write(clone, workspace.read(clone).substr(0, 300));
    const ProgramResult result = convert();
    expectFailureWith(result, 1, "CloneGenesis8Female.dsf: ");
    EXPECT_NE(result.err.find("ends too early, at line "), result.err.npos) << result.err;
}

TEST_F(ConvertFailure, for_a_shape_beyond_anything_real_names_it_and_its_file)
{
    const std::string wide = writeDisplacement("[0, 1e30, 0, 0]");
    expectNothingMade(saving(workspace.path("saved")), 1,
                      wide + ": \"Wide\" at 1 moves vertices by more than 1e+09 cm, which is nothing real.");
}

TEST_F(ConvertFailure, for_a_stock_shape_or_mesh_beyond_anything_real_names_its_file)
{
    const std::string farther = " farther than 1e+09 cm, which is nothing real: the first is 0";
    for (const auto& [name, told] :
         {std::pair("CloneGenesis8Female.dsf", "is moved"), {"Genesis9.dsf", "lies"}}) {
        const std::vector<std::string> entries = workspace.entries();
        const auto entry =
            std::find_if(entries.begin(), entries.end(),
                         [name = name](const std::string& one) { return fs::path(one).filename() == name; });
        ASSERT_NE(entry, entries.end()) << name;
        const std::string text = workspace.read(*entry);
        nlohmann::ordered_json file = nlohmann::ordered_json::parse(text);
        if (file.contains("geometry_library"))
            file["geometry_library"][0]["vertices"]["values"][0] = {1e10, 0, 0};
        else
            file["modifier_library"][0]["morph"]["deltas"]["values"][0] = {0, 1e10, 0, 0};
        workspace.write(*entry, file.dump());
        expectFailureWith(convert(), 1, workspace.path(*entry));
        expectFailureWith(convert(), 1, std::string("1 vertex ") + told + farther);
        workspace.write(*entry, text);
    }
}

TEST_F(ConvertFailure, leaves_out_displacements_that_are_no_numbers_and_says_so)
{
    for (const char* const bad : {"1e39", "-1e39", "NaN", "1e400", "Infinity"}) {
        SCOPED_TRACE(bad);
        const std::string wide = writeDisplacement(std::string("[0, ") + bad + ", 0, 0]");
        const nlohmann::json told = report(saving(workspace.path("saved"), {"--overwrite"})).at("warnings");
        const std::string left = wide + ": Wide: 1 row of deltas is not four numbers and left out";
        EXPECT_NE(std::find(told.begin(), told.end(), left), told.end()) << told;
        for (const geometry::Vec3f delta :
             MorphDeltas(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"),
                         workspace.path("saved/") + savedFolder + "/Vera Body.dsf"))
            EXPECT_LT(geometry::Length(delta), 100.0f);
    }
}
