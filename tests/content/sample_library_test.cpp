// The sample library on disk.
// SPDX-License-Identifier: MIT

#include "sample_content/sample_library.h"

#include "base/errors.h"
#include "content/sample_figures.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "tests/base/counted_asks.h"
#include "tests/content/sample_topologies.h"
#include "tests/content/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace content;

namespace {

namespace fs = std::filesystem;

/// Written once for all tests of the program.
const fs::path& Library()
{
    static const TempFolder folder;
    static const bool written = [] {
        WriteSampleLibrary(folder.path(), nullptr);
        return true;
    }();
    (void)written;
    return folder.path();
}

dson::Document ReadMorph(const std::string& name)
{
    return dson::ReadDocument(Library() / "data/DAZ 3D/Genesis 9/Base/Morphs/Gantrel/Base Shapes" /
                              (name + ".dsf"));
}

TEST(SampleLibrary, is_given_up_while_the_bodies_are_shaped)
{
    const CountedAsks asks(1000);
    EXPECT_THROW(MakeSampleTopology(FigureKind::Genesis9), base::Cancelled);
}

TEST(SampleLibrary, has_each_kinds_figure_and_loading_files)
{
    for (const FigureKindInfo& info : FigureKinds()) {
        EXPECT_TRUE(fs::exists(Library() / info.figurePath.substr(1))) << info.figurePath;
        for (const std::string& path : info.characterPaths)
            EXPECT_TRUE(fs::exists(Library() / path.substr(1))) << path;
    }
}

TEST(SampleLibrary, reads_back_the_newest_figure)
{
    const dson::Document figure = dson::ReadDocument(Library() / "data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    EXPECT_TRUE(figure.diagnostics.empty()) << base::ToLine(figure.diagnostics.front());
    ASSERT_EQ(figure.geometries.size(), 1u);
    EXPECT_EQ(figure.geometries[0].mesh.positions,
              NeutralPositions(FigureKind::Genesis9, NewTopology().canonical.positions));
    EXPECT_EQ(figure.geometries[0].mesh.topology->surfaceNames.size(), 10u);
    ASSERT_EQ(figure.nodes.size(), BodyBones().size() + 1);
    const auto thigh = std::find_if(figure.nodes.begin(), figure.nodes.end(),
                                    [](const dson::Node& node) { return node.id == "l_thigh"; });
    ASSERT_NE(thigh, figure.nodes.end());
    EXPECT_EQ(thigh->rotation[2].name, "ZRotate");
    ASSERT_EQ(figure.skins.size(), 1u);
    EXPECT_EQ(figure.skins[0].binding.vertexCount, NewTopology().canonical.vertexCount());
}

TEST(SampleLibrary, writes_a_clone_with_its_exact_deltas_and_joints)
{
    const dson::Document file = ReadMorph("CloneGenesis8Female");
    ASSERT_EQ(file.modifiers.size(), 1u);
    const CloneShape clone = MakeClone(FigureKind::Genesis8Female, NewTopology());
    const auto deltas = geometry::ToDense(file.modifiers[0].morph->deltas, clone.deltas.size());
    for (std::size_t v = 0; v < deltas.size(); ++v)
        ASSERT_LT(Length(deltas[v] - clone.deltas[v]), 2e-4f) << v;
    EXPECT_TRUE(
        std::any_of(file.modifiers[0].formulas.begin(), file.modifiers[0].formulas.end(),
                    [](const dson::Formula& formula) {
                        return formula.output ==
                               "l_shin:/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#l_shin?center_point/x";
                    }));
}

TEST(SampleLibrary, has_base_dials_that_drive_a_head_and_a_body_shape)
{
    const dson::Document file = ReadMorph(baseFeminineName);
    ASSERT_EQ(file.modifiers.size(), 1u);
    EXPECT_FALSE(file.modifiers[0].morph.has_value());
    EXPECT_EQ(file.modifiers[0].formulas.size(), 2u);
}

TEST(SampleLibrary, lets_the_height_go_both_ways)
{
    const dson::Document file = ReadMorph(proportionHeightName);
    EXPECT_EQ(file.modifiers.at(0).channel.min, -1.0);
    EXPECT_EQ(file.modifiers.at(0).channel.max, 1.0);
}

TEST(SampleLibrary, has_characters_with_dials_of_head_and_body)
{
    for (const char* path :
         {"People/Genesis 8 Female/Characters/Vera.duf", "People/Genesis 3 Female/Characters/Gina.duf",
          "People/Genesis 8 Male/Characters/Magnus.duf", "People/Genesis 3 Male/Characters/Otto.duf",
          "People/Genesis 8.1 Female/Characters/Iris.duf"}) {
        const dson::Document character = dson::ReadDocument(Library() / path);
        int head = 0, body = 0;
        for (const dson::ModifierInstance& dial : character.modifierInstances) {
            if (!dial.value || *dial.value == 0.0)
                continue;
            head += dial.name.rfind("PHM", 0) == 0 || dial.id.rfind("PHM", 0) == 0;
            body += dial.name.rfind("PHM", 0) != 0 && dial.id.rfind("PHM", 0) != 0;
        }
        EXPECT_GE(head, 1) << path;
        EXPECT_GE(body, 1) << path;
    }
}

TEST(SampleLibrary, has_every_morph_that_a_character_dials)
{
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(Library() / "People")) {
        if (entry.path().parent_path().filename() != "Characters")
            continue;
        for (const dson::ModifierInstance& dial : dson::ReadDocument(entry.path()).modifierInstances) {
            const dson::Uri uri = dson::ParseUri(dial.url);
            EXPECT_TRUE(fs::exists(Library() / uri.path.substr(1))) << dial.url;
        }
    }
}

TEST(SampleLibrary, splits_the_head_off_smoothly)
{
    const dson::Document preset =
        dson::ReadDocument(Library() / "People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf");
    ASSERT_EQ(preset.influenceMaps.size(), 1u);
    const dson::InfluenceMap& map = preset.influenceMaps[0];
    EXPECT_EQ(map.owner, "D-Former_1");
    EXPECT_TRUE(std::any_of(map.weights.begin(), map.weights.end(), [](float w) { return w == 1.0f; }));
    EXPECT_TRUE(
        std::any_of(map.weights.begin(), map.weights.end(), [](float w) { return w > 0.2f && w < 0.8f; }));
    EXPECT_LT(map.vertices.size(), NewTopology().canonical.vertexCount() / 2);
}

TEST(SampleLibrary, tells_what_it_is_making)
{
    // A folder where the second figure's file should be: told of the work, then of the failure.
    const TempFolder folder;
    fs::create_directories(folder.path() / "data/DAZ 3D/Genesis 3/Male/Genesis3Male.dsf");
    std::vector<std::string> told;
    EXPECT_THROW(WriteSampleLibrary(folder.path(), [&](const std::string& text) { told.push_back(text); }),
                 base::IoError);
    EXPECT_EQ(told, (std::vector<std::string>{"Shaping the bodies", "Writing Genesis 3 Female",
                                              "Writing Genesis 3 Male"}));
    EXPECT_FALSE(fs::exists(folder.path() / "People")) << "which had been written whole";
}

} // namespace
