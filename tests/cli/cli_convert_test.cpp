// What `gantrel convert` makes and tells.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "geometry/obj.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>

namespace {

using nlohmann::json;

class Convert : public ConversionTest {
protected:
    std::string saved(const std::string& name) const
    {
        return library(std::string("/") + savedFolder + "/" + name + ".dsf");
    }
    std::string figureFile() const { return library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"); }

    /// The picture's bytes.
    std::string render(const std::vector<std::string>& more) const
    {
        std::vector<std::string> all{"render", targetFile(), "--out", workspace.path("picture.png"),
                                     "--size", "60x80"};
        all.insert(all.end(), more.begin(), more.end());
        ExpectSuccess(RunProgram(all));
        return workspace.read("picture.png");
    }

    static json inspect(const std::string& file)
    {
        const ProgramResult result = RunProgram({"inspect", "--json", file});
        ExpectSuccess(result);
        return json::parse(result.out);
    }
};

void ExpectSaved(const json& morph, const std::string& file)
{
    EXPECT_EQ(morph.at("file"), file);
    EXPECT_TRUE(std::filesystem::is_regular_file(file)) << file;
}

} // namespace

TEST_F(Convert, tells_the_figures_their_kind_and_the_jobs)
{
    const json told = report({"--jobs", "full,head,body"});
    const json& source = told.at("figures").at("source");
    EXPECT_EQ(source.at("label"), "Genesis 8 Female");
    EXPECT_EQ(source.at("kind"), "genesis8female");
    EXPECT_EQ(source.at("vertices"), 6 * 9 * 9 + 2);
    const json& target = told.at("figures").at("target");
    EXPECT_EQ(target.at("label"), "Genesis 9");
    EXPECT_EQ(target.at("kind"), "genesis9");
    EXPECT_EQ(target.at("vertices"), 6 * 12 * 12 + 2);
    EXPECT_EQ(told.at("kind"), "genesis8female");
    EXPECT_EQ(told.at("active_morphs"), 2);
    EXPECT_EQ(told.at("jobs"), json({"full", "head", "body"}));
    EXPECT_EQ(told.at("missing_morphs"), json::array());
    EXPECT_EQ(told.at("warnings"), json::array());
    EXPECT_EQ(told.at("diagnostics"), json::array());
}

TEST_F(Convert, tells_each_created_morph)
{
    const json created = report({"--jobs", "full,head,body", "--base", "clone=1"}).at("created_morphs");
    ASSERT_EQ(created.size(), 3u);
    const char* const names[] = {"Vera", "Vera Head", "Vera Body"};
    const char* const kinds[] = {"full", "head", "body"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(created[i].at("name"), names[i]);
        EXPECT_EQ(created[i].at("kind"), kinds[i]);
        EXPECT_EQ(created[i].at("path"), "/Gantrel");
        EXPECT_FALSE(created[i].contains("file"));
        EXPECT_GT(created[i].at("vertices_moved").get<int>(), 0);
        // The dials widen a blob of 30 cm by a fifth and push its head forward by 2.5 cm; the clone shape
        // does the rest. The blobs' facets differ by no more than 1.3 cm.
        EXPECT_GT(created[i].at("largest_displacement_mm").get<double>(), 10.0);
        EXPECT_LT(created[i].at("largest_displacement_mm").get<double>(), 65.0 + 13.0);
    }
    EXPECT_GT(created[0].at("vertices_moved"), created[1].at("vertices_moved"));
}

TEST_F(Convert, tells_seconds_for_each_step_and_in_all)
{
    const json seconds = report({"--jobs", "full"}).at("seconds");
    double sum = 0.0;
    std::vector<std::string> names;
    for (const json& step : seconds.at("steps")) {
        EXPECT_GE(step.at("seconds").get<double>(), 0.0);
        sum += step.at("seconds").get<double>();
        names.push_back(step.at("step"));
    }
    EXPECT_NE(std::find(names.begin(), names.end(), "Exporting source as OBJ"), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), "Creating full figure morph"), names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "Creating head morph"), names.end());
    // Each figure is rounded on its own.
    EXPECT_LE(sum, seconds.at("total").get<double>() + 1e-4 * double(names.size()));
}

TEST_F(Convert, tells_peak_memory_and_the_surface_distance)
{
    const json told = report();
    EXPECT_GT(told.at("peak_memory_mib").get<double>(), 1.0);
    const json& distance = told.at("surface_distance_mm");
    EXPECT_GT(distance.at("mean").get<double>(), 0.0);
    EXPECT_LE(distance.at("mean"), distance.at("p95"));
    EXPECT_LE(distance.at("p95"), distance.at("max"));
    // No vertex is further off than the sagitta between the coarser blob's vertices, 10 degrees of 85 cm
    // apart.
    EXPECT_LT(distance.at("max").get<double>(), 850.0 * (1.0 - std::cos(10.0 * 3.14159265 / 180.0)));
}

TEST_F(Convert, measures_no_distance_of_a_part)
{
    EXPECT_EQ(report({"--jobs", "head"}).at("surface_distance_mm"), nullptr);
    EXPECT_EQ(report({"--jobs", "body"}).at("surface_distance_mm"), nullptr);
}

TEST_F(Convert, tells_people_the_same_without_json)
{
    const ProgramResult result = convert();
    ExpectSuccess(result);
    for (const char* part : {"Vera Head", "genesis8female", "surface distance mm", "peak memory mib"})
        EXPECT_NE(result.out.find(part), std::string::npos) << part;
}

TEST_F(Convert, names_the_morphs_after_the_source_by_default)
{
    const ProgramResult result = RunProgram(
        argumentsFor(sourceFile(), targetFile(), {"--dial", "Wide=1", "--jobs", "full", "--json"}));
    ExpectSuccess(result);
    EXPECT_EQ(json::parse(result.out).at("created_morphs").at(0).at("name"),
              "Genesis 8 Female converted to G9");
}

TEST_F(Convert, puts_the_dials_under_the_path_wanted)
{
    EXPECT_EQ(report({"--path", "/Actor/Heroes"}).at("created_morphs").at(0).at("path"), "/Actor/Heroes");
}

TEST_F(Convert, saves_morphs_that_a_new_process_finds)
{
    const json created = report(saving(library(), {"--jobs", "full,head,body"})).at("created_morphs");
    const char* const files[] = {"Vera", "Vera Head", "Vera Body"};
    for (std::size_t i = 0; i < 3; ++i) {
        ExpectSaved(created.at(i), saved(files[i]));
        const json modifier = inspect(saved(files[i])).at("modifiers").at(0);
        EXPECT_EQ(modifier.at("name"), files[i]);
        EXPECT_EQ(modifier.at("label"), created[i].at("name"));
        EXPECT_EQ(modifier.at("moved_vertices"), created[i].at("vertices_moved"));
        EXPECT_NEAR(modifier.at("largest_displacement_mm").get<double>(),
                    created[i].at("largest_displacement_mm").get<double>(), 1e-3);
    }
    const json dials = inspect(targetFile()).at("figures").at(0).at("dials");
    for (const char* file : files)
        EXPECT_EQ(std::count_if(dials.begin(), dials.end(),
                                [&](const json& dial) { return dial.at("name") == file; }),
                  1)
            << file;
}

TEST_F(Convert, saves_morphs_that_are_dialed_by_name_and_label_in_a_new_process)
{
    report(saving(library()));
    const std::string plain = render({}), byName = render({"--dial", "Vera Head=1"});
    EXPECT_NE(byName, plain);
    EXPECT_EQ(render({"--dial", "Vera Head=1"}), byName);
    EXPECT_NE(render({"--dial", "Vera Body=1"}), byName);
}

TEST_F(Convert, saves_the_shape_that_it_exports)
{
    const std::string obj = workspace.path("converted.obj");
    const json told = report(saving(library(), {"--jobs", "full", "--export-obj", obj}));
    EXPECT_EQ(told.at("files"), json({obj}));
    const std::vector<geometry::Vec3f> exported = geometry::ReadObj(obj).mesh.positions;
    // Six decimals in the one file, single precision in the other.
    EXPECT_LT(LargestDifference(exported, MorphedPositions(figureFile(), saved("Vera"))), 1e-4f);
}

TEST_F(Convert, exports_the_texture_coordinates_of_the_figure)
{
    const std::string relative = figureFile().substr(workspace.path("").size());
    json figure = json::parse(workspace.read(relative));
    json uvs = json::array();
    for (int v = 0; v < 866; ++v)
        uvs.push_back({v / 1000.0, 0.25});
    figure["uv_set_library"] =
        json::array({{{"id", "flat"}, {"vertex_count", 866}, {"uvs", {{"count", 866}, {"values", uvs}}}}});
    figure["geometry_library"][0]["default_uv_set"] = "#flat";
    workspace.write(relative, figure.dump());
    report({"--jobs", "full", "--export-obj", workspace.path("textured.obj")});
    const geometry::ObjContent worn = geometry::ReadObj(workspace.path("textured.obj"));
    ASSERT_EQ(worn.texCoords.cornerIndices.size(), worn.mesh.topology->cornerCount());
    const std::uint32_t first = worn.mesh.topology->cornerVertices[0];
    EXPECT_FLOAT_EQ(worn.texCoords.coordinates[worn.texCoords.cornerIndices[0]].u,
                    static_cast<float>(first) / 1000.0f);
}

TEST_F(Convert, saves_a_head_and_a_body_that_add_up_to_the_whole)
{
    report(saving(library(), {"--jobs", "full,head,body"}));
    std::vector<geometry::Vec3f> sum = MorphDeltas(figureFile(), saved("Vera Head"));
    const std::vector<geometry::Vec3f> body = MorphDeltas(figureFile(), saved("Vera Body"));
    for (std::size_t v = 0; v < sum.size(); ++v)
        sum[v] = sum[v] + body[v];
    const float deltaTolerance = 0.001f; // a part below it is left out, of either
    EXPECT_LT(LargestDifference(sum, MorphDeltas(figureFile(), saved("Vera"))), 2.0f * deltaTolerance);
}

TEST_F(Convert, compresses_what_it_saves_when_asked_to)
{
    report(saving(workspace.path("plain")));
    report(saving(workspace.path("packed"), {"--compress"}));
    const std::string relative = std::string("/") + savedFolder + "/Vera Head.dsf";
    EXPECT_EQ(workspace.read("plain" + relative).front(), '{');
    EXPECT_EQ(workspace.read("packed" + relative).compare(0, 2, "\x1f\x8b"), 0);
    EXPECT_EQ(MorphDeltas(figureFile(), workspace.path("plain" + relative)),
              MorphDeltas(figureFile(), workspace.path("packed" + relative)));
}

TEST_F(Convert, replaces_what_an_earlier_run_saved_when_asked_to)
{
    report(saving(library(), {"--jobs", "full"}));
    const std::vector<geometry::Vec3f> before = MorphDeltas(figureFile(), saved("Vera"));
    report(saving(library(), {"--jobs", "full", "--dial", "Wide=0", "--overwrite"}));
    EXPECT_GT(LargestDifference(before, MorphDeltas(figureFile(), saved("Vera"))), 1.0f);
    report(saving(library(), {"--jobs", "full", "--overwrite"}));
    EXPECT_LT(LargestDifference(before, MorphDeltas(figureFile(), saved("Vera"))), 1e-4f);
}

TEST_F(Convert, draws_pictures_into_a_new_folder)
{
    const json files = report({"--pictures", workspace.path("new/pictures")}).at("files");
    ASSERT_FALSE(files.empty());
    for (const json& file : files) {
        const std::string name = std::filesystem::path(file.get<std::string>()).filename();
        EXPECT_EQ(workspace.read("new/pictures/" + name).compare(1, 3, "PNG"), 0) << name;
    }
}

TEST_F(Convert, draws_what_is_fitted_to_the_figure)
{
    // A slab in front of the figure, 40 cm wide.
    std::filesystem::create_directories(library("/data/Nord"));
    std::ofstream(library("/data/Nord/Slab.dsf")) << R"({"file_version": "0.6.0.0",
        "asset_info": {"id": "/data/Nord/Slab.dsf", "type": "figure"},
        "geometry_library": [{"id": "g", "vertices": {"values": [[-20,50,60],[20,50,60],[20,90,60],[-20,90,60]]},
            "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["all"]},
            "polylist": {"values": [[0,0,0,1,2,3]]}}],
        "node_library": [{"id": "Slab", "type": "figure", "label": "Slab"}]})";
    const json plain = json::parse(std::ifstream(targetFile()));
    const auto converted = [&](const char* name, const std::string& conformTarget) {
        json scene = plain;
        const std::string id = scene["scene"]["nodes"][0]["id"];
        json slab = json::parse(R"({"id": "Slab-1", "url": "/data/Nord/Slab.dsf#Slab",
            "geometries": [{"id": "g-1", "url": "/data/Nord/Slab.dsf#g"}]})");
        slab["conform_target"] = conformTarget.empty() ? "" : conformTarget + id;
        scene["scene"]["nodes"].push_back(slab);
        const std::string file = workspace.write(std::string(name) + ".duf", scene.dump());
        ExpectSuccess(RunProgram(
            argumentsFor(sourceFile(), file, {"--dial", "Wide=1", "--pictures", workspace.path(name)})));
        return workspace.read(std::string(name) + "/converted.png");
    };
    EXPECT_NE(converted("fitted", "#"), converted("beside", ""));
}

TEST_F(Convert, keeps_its_temporary_files_when_told_so_and_says_where)
{
    const ProgramResult result = convert({"--keep-temp", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::filesystem::path folder =
        nlohmann::json::parse(result.out).at("temporary_folder").get<std::string>();
    EXPECT_EQ(folder.parent_path(), workspace.path("tmp"));
    std::vector<std::string> prefixes;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".obj") {
            const std::string stem = entry.path().stem().string();
            prefixes.push_back(stem.substr(0, stem.rfind('-')));
        }
    std::sort(prefixes.begin(), prefixes.end());
    EXPECT_EQ(prefixes, (std::vector<std::string>{"rigged-for-mlp", "tempg8-src1", "tempg8-src2",
                                                  "tempg8-tgt", "tempg9"}));
}

TEST_F(Convert, keeps_its_temporary_files_after_a_failure_too)
{
    std::filesystem::remove(library("/People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf"));
    const ProgramResult result = convert({"--keep-temp"});
    EXPECT_EQ(result.exitCode, 1);
    const std::string mark = "; the temporary files are in ";
    const std::size_t at = result.err.find(mark);
    ASSERT_NE(at, std::string::npos) << result.err;
    const std::string folder = result.err.substr(at + mark.size(), result.err.size() - at - mark.size() -
                                                                       2); // full stop and line end
    EXPECT_FALSE(std::filesystem::is_empty(folder)) << folder;
}

TEST_F(Convert, leaves_the_library_as_it_was_without_a_place_to_save)
{
    const std::vector<std::string> before = workspace.entries();
    const ProgramResult told = convert();
    EXPECT_EQ(workspace.entries(), before);
    EXPECT_NE(told.out.find("nothing: --save-library, "), std::string::npos) << told.out;
    EXPECT_EQ(convert({"--export-obj", workspace.path("kept.obj")}).out.find("nothing: "), std::string::npos);
    const std::string library = workspace.path("library of its own");
    std::filesystem::create_directories(library);
    const ProgramResult saved = convert({"--save-library", library, "--vendor", "Me", "--product", "Mine"});
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_EQ(saved.out.find("nothing: "), std::string::npos) << saved.out;
}

TEST_F(Convert, keeps_morphs_apart_whose_names_are_too_long_for_files)
{
    const std::string name(400, 'N');
    const ProgramResult result = RunProgram(argumentsFor(
        sourceFile(), targetFile(),
        saving(library(), {"--dial", "Wide=1", "--jobs", "full,head,body", "--name", name, "--json"})));
    ExpectSuccess(result);
    const json told = json::parse(result.out);
    std::set<std::string> files;
    for (const json& morph : told.at("created_morphs")) {
        const std::filesystem::path file = morph.at("file").get<std::string>();
        ExpectSaved(morph, file.string());
        EXPECT_EQ(file.stem().string().size(), 100u);
        files.insert(file.stem().string());
    }
    EXPECT_EQ(files.size(), 3u);
    EXPECT_EQ(told.at("warnings").size(), 3u) << told.at("warnings");
}

TEST_F(Convert, tells_where_the_dials_stood)
{
    const json dials = report({"--dial", "Wide=1", "--base", "feminine=0.25"}).at("dials");
    EXPECT_EQ(dials.at("source"), json::parse(R"([
        {"name": "Bulge", "label": "Bulge", "value": 0.5, "wanted": 0.5, "clamped": false},
        {"name": "Wide", "label": "Wide", "value": 1.0, "wanted": 1.0, "clamped": false}])"));
    EXPECT_EQ(dials.at("target"), json::parse(R"([
        {"name": "BaseFeminine_figure_ctrl_Character", "label": "BaseFeminine_figure_ctrl_Character",
         "value": 0.25, "wanted": null, "clamped": false}])"));
}

TEST_F(Convert, tells_which_dials_their_limits_held)
{
    const ProgramResult result = RunProgram(argumentsFor(
        sourceFile(), targetFile(), {"--json", "--dial", "Wide=150%", "--dial", "Bulge=0", "--dry-run"}));
    ExpectSuccess(result);
    EXPECT_EQ(json::parse(result.out).at("dials").at("source"), json::parse(R"([
        {"name": "Wide", "label": "Wide", "value": 1.0, "wanted": 1.5, "clamped": true},
        {"name": "Bulge", "label": "Bulge", "value": 0.0, "wanted": 0.0, "clamped": false}])"));
}
