// Making figures from plain files.
// SPDX-License-Identifier: MIT

#include "sample_content/make_figure.h"

#include "base/errors.h"
#include "dson/reader.h"
#include "sample_content/figure_kinds.h"
#include "tests/content/throws.h"
#include "tests/content/tiny_figure.h"
#include "tests/geometry/humans.h"

#include <algorithm>
#include <optional>

using namespace content;

namespace {

namespace fs = std::filesystem;

fs::path MorphFile(const fs::path& library, const std::string& name)
{
    return library / "data/DAZ 3D/Genesis 9/Base/Morphs/Gantrel/Base Shapes" / (name + ".dsf");
}

TEST(MakeFigure, writes_the_figure_under_the_kinds_own_address)
{
    TinyFigure tiny;
    const MadeFigure made = MakeFigure(tiny.options);
    EXPECT_EQ(made.vertexCount, 8u);
    EXPECT_EQ(made.boneCount, 3u);
    EXPECT_EQ(made.joints, "only");
    const dson::Document figure =
        dson::ReadDocument(tiny.options.contentDirectory / "data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    ASSERT_EQ(figure.geometries.size(), 1u);
    EXPECT_EQ(figure.geometries[0].mesh.vertexCount(), 8u);
    ASSERT_EQ(figure.nodes.size(), 4u);
    EXPECT_EQ(figure.nodes[0].id, "Genesis9");
    EXPECT_EQ(figure.nodes[2].parent, "hip");
    EXPECT_TRUE(fs::exists(tiny.options.contentDirectory / "People/Genesis 9/Genesis 9.duf"));
    EXPECT_TRUE(
        fs::exists(tiny.options.contentDirectory / "People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf"));
}

TEST(MakeFigure, names_the_thighs_of_the_newest_kind)
{
    TinyFigure tiny;
    MakeFigure(tiny.options);
    const dson::Document figure =
        dson::ReadDocument(tiny.options.contentDirectory / "data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    EXPECT_EQ(figure.nodes[2].id, "l_thigh");
    EXPECT_EQ(figure.nodes[3].id, "r_thigh");
}

TEST(MakeFigure, keeps_the_bone_names_of_older_kinds)
{
    TinyFigure tiny("genesis8female");
    MakeFigure(tiny.options);
    const dson::Document figure =
        dson::ReadDocument(tiny.options.contentDirectory / "data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf");
    EXPECT_EQ(figure.nodes[2].id, "upperleg.L");
}

TEST(MakeFigure, gives_the_newest_kind_the_dials_that_conversions_need)
{
    TinyFigure tiny;
    EXPECT_EQ(MakeFigure(tiny.options).morphCount, 7u);
    for (const char* name :
         {baseFeminineName, baseMasculineName, proportionHeightName, cloneNames[0], cloneNames[3]})
        EXPECT_TRUE(fs::exists(MorphFile(tiny.options.contentDirectory, name))) << name;
}

TEST(MakeFigure, takes_an_obj_as_the_difference_to_the_neutral)
{
    TinyFigure tiny;
    tiny.options.morphs = {{"Pulled", tiny.folder.write("pulled.obj", TinyFigure::objText("v 0 1 3\n"))}};
    MakeFigure(tiny.options);
    const geometry::SparseDeltas deltas =
        dson::ReadDeltas(MorphFile(tiny.options.contentDirectory, "Pulled"), "Pulled");
    ASSERT_EQ(deltas.vertices, std::vector<std::uint32_t>{7});
    EXPECT_EQ(deltas.deltas[0], (geometry::Vec3f{0, 0, 2}));
}

TEST(MakeFigure, takes_a_table_of_deltas)
{
    TinyFigure tiny;
    tiny.options.morphs = {
        {"CloneGenesis8Male", tiny.folder.write("d.csv", "vertex,dx,dy,dz\n2,0.5,-1e-1,0\n")}};
    EXPECT_EQ(MakeFigure(tiny.options).morphCount, 7u);
    const geometry::SparseDeltas deltas =
        dson::ReadDeltas(MorphFile(tiny.options.contentDirectory, "CloneGenesis8Male"), "CloneGenesis8Male");
    ASSERT_EQ(deltas.vertices, std::vector<std::uint32_t>{2});
    EXPECT_EQ(deltas.deltas[0], (geometry::Vec3f{0.5f, -0.1f, 0}));
}

TEST(MakeFigure, binds_skin_that_no_bone_claims_to_the_first_bone)
{
    TinyFigure tiny;
    MakeFigure(tiny.options);
    const dson::Document figure =
        dson::ReadDocument(tiny.options.contentDirectory / "data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    ASSERT_EQ(figure.skins.size(), 1u);
    const auto& hip = figure.skins[0].binding.joints.at(0);
    EXPECT_EQ(hip.node, "hip");
    EXPECT_EQ(hip.vertices, (std::vector<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(hip.weights[5], 0.5f);
    EXPECT_EQ(hip.weights[7], 1.0f);
}

TEST(MakeFigure, makes_the_head_split_of_a_weight_map_called_head)
{
    TinyFigure tiny;
    tiny.options.weightMaps = {{"head", tiny.folder.write("head.csv", "vertex,weight\n1,0.25\n7,1\n")}};
    MakeFigure(tiny.options);
    const dson::Document preset = dson::ReadDocument(
        tiny.options.contentDirectory / "People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf");
    ASSERT_EQ(preset.influenceMaps.size(), 1u);
    EXPECT_EQ(preset.influenceMaps[0].vertices, (std::vector<std::uint32_t>{1, 7}));
}

TEST(MakeFigure, refuses_a_weight_map_without_use)
{
    TinyFigure tiny("genesis3male");
    const auto file = tiny.folder.write("head.csv", "vertex,weight\n1,0.25\n");
    tiny.options.weightMaps = {{"head", file}};
    EXPECT_THROW_MSG(MakeFigure(tiny.options), base::FormatError,
                     file.string() + ": weight map 'head' has no use; genesis9 takes one called head");
}

TEST(MakeFigure, refuses_an_unknown_kind)
{
    TinyFigure tiny("genesis7");
    EXPECT_THROW_MSG(
        MakeFigure(tiny.options), base::FormatError,
        "unknown figure kind 'genesis7'; known are genesis3female, genesis3male, genesis8female, "
        "genesis8male, genesis8_1female, genesis8_1male, genesis9");
}

TEST(MakeFigure, refuses_a_morph_of_another_mesh)
{
    TinyFigure tiny;
    const auto file = tiny.folder.write("other.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    tiny.options.morphs = {{"Other", file}};
    EXPECT_THROW_MSG(MakeFigure(tiny.options), base::FormatError,
                     file.string() + ": has 3 vertices but the neutral mesh has 8");
}

TEST(MakeFigure, refuses_a_mesh_without_faces)
{
    TinyFigure tiny;
    tiny.options.mesh = tiny.folder.write("points.obj", "v 0 0 0\n");
    EXPECT_THROW_MSG(MakeFigure(tiny.options), base::FormatError,
                     tiny.options.mesh.string() + ": has no faces");
}

TEST(MakeFigure, refuses_two_morphs_of_one_name)
{
    TinyFigure tiny;
    const auto file = tiny.folder.write("d.csv", "vertex,dx,dy,dz\n2,0.5,0,0\n");
    tiny.options.morphs = {{"A", file}, {"A", file}};
    EXPECT_THROW_MSG(MakeFigure(tiny.options), base::FormatError, file.string() + ": name 'A' is used twice");
}

TEST(MakeFigure, needs_both_thighs_on_the_newest_kind)
{
    TinyFigure tiny;
    std::string text = TinyFigure::skeletonText();
    for (std::size_t at; (at = text.find("RightThigh")) != std::string::npos;)
        text.replace(at, 10, "tail");
    tiny.folder.write("skeleton.json", text);
    EXPECT_THROW_MSG(MakeFigure(tiny.options), base::FormatError,
                     tiny.options.skeleton.string() + ": has no bone 'r_thigh'");
}

TEST(MakeFigure, writes_nothing_when_an_input_is_wrong)
{
    TinyFigure tiny;
    tiny.options.morphs = {{"A", tiny.folder.write("d.csv", "vertex,dx,dy,dz\n8,0,0,0\n")}};
    EXPECT_THROW(MakeFigure(tiny.options), base::FormatError);
    EXPECT_FALSE(fs::exists(tiny.options.contentDirectory));
}

TEST(MakeFigure, puts_nothing_in_place_unless_all_of_it_can_be)
{
    TinyFigure tiny;
    tiny.options.morphs = {{"Up", tiny.options.mesh}, {"Down", tiny.options.mesh}};
    const fs::path& library = tiny.options.contentDirectory;
    fs::create_directories(MorphFile(library, "Down"));
    EXPECT_THROW(MakeFigure(tiny.options), base::IoError);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(library))
        EXPECT_TRUE(entry.is_directory()) << entry.path();
    EXPECT_FALSE(fs::exists(library / "People"));
}

TEST(MakeFigure, makes_a_source_and_a_target_of_real_people)
{
    const std::optional<fs::path> folderOfHumans = humans::Folder();
    if (!folderOfHumans)
        GTEST_SKIP()
            << "the real human meshes are no part of the project; set GANTREL_HUMANS to their folder";
    const fs::path& meshes = *folderOfHumans;
    const TempFolder folder;
    MakeFigureOptions source;
    source.kind = "genesis8female";
    source.mesh = meshes / "source/neutral.obj";
    source.skeleton = meshes / "skeleton.json";
    source.weights = meshes / "source/weights.json.gz";
    source.morphs = {{"heavy_full", meshes / "source/morphs/heavy_full.csv.gz"}};
    source.contentDirectory = folder.path();
    const MadeFigure madeSource = MakeFigure(source);
    EXPECT_EQ(madeSource.vertexCount, 13380u);
    EXPECT_EQ(madeSource.joints, "source_neutral");

    MakeFigureOptions target = source;
    target.kind = "genesis9";
    target.mesh = meshes / "target/default.obj";
    target.weights = meshes / "target/weights.json.gz";
    target.morphs = {{"CloneGenesis8Female", meshes / "target/clone.csv.gz"}};
    target.weightMaps = {{"head", meshes / "target/head_map.csv.gz"}};
    const MadeFigure madeTarget = MakeFigure(target);
    EXPECT_EQ(madeTarget.vertexCount, 25996u);
    EXPECT_EQ(madeTarget.joints, "target_default");
    EXPECT_EQ(madeTarget.morphCount, 7u);

    const dson::Document figure =
        dson::ReadDocument(folder.path() / "data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    EXPECT_EQ(figure.geometries.at(0).mesh.vertexCount(), 25996u);
    EXPECT_TRUE(std::any_of(figure.nodes.begin(), figure.nodes.end(),
                            [](const dson::Node& node) { return node.id == "l_thigh"; }));
    const dson::Document morph = dson::ReadDocument(
        folder.path() / "data/Daz 3D/Genesis 8/Female/Morphs/Gantrel/Base Shapes/heavy_full.dsf");
    EXPECT_EQ(morph.modifiers.at(0).morph->deltas.size(), 6180u);
    EXPECT_FALSE(morph.modifiers.at(0).formulas.empty()) << "the skeleton knows this morph's joints";
}

} // namespace
