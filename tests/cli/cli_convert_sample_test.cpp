// Conversions of the sample library's characters, end to end.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "geometry/obj.h"

#include <filesystem>
#include <memory>

namespace {

using nlohmann::json;

struct Character {
    const char* name;
    const char* file;
};

const Character characters[] = {{"Vera", "Genesis 8 Female/Characters/Vera.duf"},
                                {"Gina", "Genesis 3 Female/Characters/Gina.duf"},
                                {"Magnus", "Genesis 8 Male/Characters/Magnus.duf"},
                                {"Otto", "Genesis 3 Male/Characters/Otto.duf"},
                                {"Iris", "Genesis 8.1 Female/Characters/Iris.duf"}};

/// The library takes seconds to make, so all tests of a process share it.
class SampleCharacters : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        shared = std::make_unique<Workspace>();
        ExpectSuccess(RunProgram({"sample-content", shared->path("lib")}));
    }
    static void TearDownTestSuite() { shared.reset(); }

    static std::string library(const std::string& relative) { return shared->path("lib/" + relative); }

    static json convert(const Character& character, const std::string& jobs,
                        const std::vector<std::string>& more = {})
    {
        std::vector<std::string> all{"convert",
                                     "--content",
                                     shared->path("lib"),
                                     "--source",
                                     library(std::string("People/") + character.file),
                                     "--target",
                                     library("People/Genesis 9/Genesis 9.duf"),
                                     "--jobs",
                                     jobs,
                                     "--name",
                                     character.name,
                                     "--json"};
        all.insert(all.end(), more.begin(), more.end());
        const ProgramResult result = RunProgram(all);
        ExpectSuccess(result);
        return result.exitCode == 0 ? json::parse(result.out) : json();
    }

    static double meanDistance(const json& told) { return told.at("surface_distance_mm").at("mean"); }

    static std::unique_ptr<Workspace> shared;
};

std::unique_ptr<Workspace> SampleCharacters::shared;

} // namespace

TEST_F(SampleCharacters, have_single_morphs_that_are_converted_as_if_each_were_a_character)
{
    constexpr float hundredthMillimetre = 0.001f; // cm
    const std::string source = library("People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf"),
                      target = library("People/Genesis 9/Genesis 9.duf"), saved = shared->path("single");
    ExpectSuccess(RunProgram({"convert-morphs", "--content", shared->path("lib"), "--source", source,
                              "--target", target, "--morphs", "PHMLongNose", "FBMShort", "--suffix", " G8",
                              "--save-library", saved, "--vendor", "Acme", "--product", "Single"}));
    const auto deltas = [&](const std::string& file) {
        return MorphDeltas(library("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"),
                           saved + "/data/DAZ 3D/Genesis 9/Base/Morphs/Acme/" + file);
    };
    for (const std::string name : {"PHMLongNose", "FBMShort"}) {
        SCOPED_TRACE(name);
        ExpectSuccess(RunProgram({"convert",        "--content", shared->path("lib"),
                                  "--source",       source,      "--dial",
                                  name + "=1",      "--base",    "clone=1",
                                  "--target",       target,      "--jobs",
                                  "full",           "--name",    name,
                                  "--save-library", saved,       "--vendor",
                                  "Acme",           "--product", "Whole"}));
        const auto whole = deltas("Whole/" + name + ".dsf");
        EXPECT_LT(LargestDifference(deltas("Single/" + name + " G8.dsf"), whole), hundredthMillimetre);
        EXPECT_GT(LargestDifference(whole, std::vector<geometry::Vec3f>(whole.size())), 1.0f);
    }
}

TEST_F(SampleCharacters, keep_their_shape_within_a_millimetre)
{
    for (const Character& character : characters)
        for (const char* jobs : {"full", "head,body"}) {
            SCOPED_TRACE(std::string(character.name) + " " + jobs);
            const json told = convert(character, jobs);
            EXPECT_LT(meanDistance(told), 1.0);
            EXPECT_EQ(told.at("missing_morphs"), json::array());
            EXPECT_EQ(told.at("warnings"), json::array());
        }
}

TEST_F(SampleCharacters, are_saved_as_files_that_load_with_the_same_shape)
{
    const std::string obj = shared->path("vera.obj");
    const std::string figure = library("data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    const json told = convert(characters[0], "full,head,body",
                              {"--save-library", shared->path("lib"), "--vendor", "Acme", "--product",
                               "Heroes", "--export-obj", obj});
    const json& created = told.at("created_morphs");
    ASSERT_EQ(created.size(), 3u);
    const auto file = [&](std::size_t i) { return created[i].at("file").get<std::string>(); };
    // Nothing else shapes the sample target, so its dialed shape is the neutral one and the morph.
    EXPECT_LT(LargestDifference(geometry::ReadObj(obj).mesh.positions, MorphedPositions(figure, file(0))),
              1e-3f);
    std::vector<geometry::Vec3f> parts = MorphDeltas(figure, file(1));
    const std::vector<geometry::Vec3f> body = MorphDeltas(figure, file(2));
    for (std::size_t v = 0; v < parts.size(); ++v)
        parts[v] = parts[v] + body[v];
    const float deltaTolerance = 0.001f; // a part below it is left out, of either
    EXPECT_LT(LargestDifference(parts, MorphDeltas(figure, file(0))), 2.0f * deltaTolerance);
}
