// Content files that others made, or broke.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/reader.h"
#include "tests/host/content_fixture.h"

#include "dzfigure.h"
#include "dzfloatproperty.h"

#include <cmath>
#include <functional>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

class HostileFile : public testing::Test {
protected:
    fs::path library() const { return _folder.path().toStdString(); }
    fs::path file() const { return library() / "file.dsf"; }
    dson::Document read(const std::string& text) const
    {
        WriteBytes(file(), text);
        return dson::ReadDocument(file());
    }
    std::string error(const std::string& text) const
    {
        return ErrorOf([&] { read(text); });
    }
    std::string errorIn(const Json& json) const { return error(json.dump()); }
    std::string endsTooEarly(const std::string& text, std::size_t size) const
    {
        const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
        const auto characters =
            std::count_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size), isFirstByte);
        return file().string() + ": ends too early, at line 1, column " + std::to_string(characters + 1);
    }
    std::string named(const char* text) const { return file().string() + ": " + text; }
    base::Diagnostic warning(const char* asset, const char* what) const
    {
        return {base::Severity::Warning, file().string(), asset, what};
    }
    Json figure() const { return Json::parse(ReadBytes(dson::WriteFigure(mini::Figure(), library()))); }
    Json morph() const
    {
        dson::Modifier modifier = mini::Morph("Up", 1, {0, 1, 0});
        modifier.formulas = {
            dson::MakeDeltaAdd(mini::NodeChannel("arm", "center_point/x"), mini::Dial("Up"), 2.0)};
        return Json::parse(ReadBytes(mini::WriteMorph(modifier, library())));
    }
    Json character() const
    {
        return Json::parse(ReadBytes(mini::WriteCharacter(library(), {{"#x", "x", "", 1.0}})));
    }

    QTemporaryDir _folder;
};

const char* const output = "arm:/data/Acme/Mini/Base/Mini.dsf#arm?center_point/x";

const std::vector<Json>& OtherValues()
{
    static const std::vector<Json> values{nullptr,      true,          -1,
                                          1e300,        1.5,           4294967296.0,
                                          "text",       Json::array(), Json::object(),
                                          {{1}, {"x"}}, {{"id", 1}},   {{"values", {1, nullptr, {0, "x"}}}}};
    return values;
}

/// Calls visit(json) with every member and item replaced, in turn, by values of every kind.
void ForEachSpoilt(Json& json, Json& at, const std::function<void(const Json&)>& visit)
{
    for (Json& child : at) {
        const Json kept = child;
        for (const Json& other : OtherValues()) {
            child = other;
            visit(json);
        }
        child = kept;
        if (child.is_structured())
            ForEachSpoilt(json, child, visit);
    }
}

} // namespace

TEST_F(HostileFile, any_member_of_any_other_type_gives_a_document)
{
    std::size_t documents = 0;
    for (Json json : {morph(), character()})
        ForEachSpoilt(json, json, [&](const Json& spoilt) {
            EXPECT_EQ(errorIn(spoilt), "no error");
            ++documents;
        });
    EXPECT_GT(documents, 100u);
}

TEST_F(HostileFile, any_part_of_a_figure_of_any_other_type_gives_a_document)
{
    Json json = figure();
    json["node_library"].erase(1); // the bones are alike
    std::size_t documents = 0;
    ForEachSpoilt(json, json, [&](const Json& spoilt) {
        EXPECT_EQ(errorIn(spoilt), "no error");
        ++documents;
    });
    EXPECT_GT(documents, 1000u);
}

TEST_F(HostileFile, every_beginning_of_a_good_file_is_refused)
{
    for (const Json& json : {morph(), character()}) {
        const std::string text = json.dump();
        for (std::size_t size = 1; size < text.size(); ++size)
            EXPECT_EQ(error(text.substr(0, size)), endsTooEarly(text, size));
    }
    const std::string text = figure().dump();
    for (std::size_t size = 1; size < text.size(); size += 13)
        EXPECT_EQ(error(text.substr(0, size)), endsTooEarly(text, size));
}

TEST_F(HostileFile, errors_say_what_is_wrong_and_where)
{
    EXPECT_EQ(error("{\n\"a\": 1,\n\"b\": what\n}"), named("line 3, column 6 is not valid JSON"));
    EXPECT_EQ(error("{\n\"\xC3\xA4\xC3\xB6\": ]\n}"), named("line 2, column 7 is not valid JSON"));
    EXPECT_EQ(error(""), named("is empty"));
    EXPECT_EQ(error(" \r\n\t"), named("is empty"));
    EXPECT_EQ(error("[]"), named("is not a DSON file"));
    EXPECT_EQ(error("{}"), named("is not a DSON file: it has no file_version"));
    EXPECT_EQ(error(std::string(1000, '[')), named("ends too early, at line 1, column 1001"));
    EXPECT_EQ(error("{\"a\":" + std::string(2000, '[') + std::string(2000, ']') + "}"),
              named("is not a DSON file: it has no file_version"));
    EXPECT_EQ(error("{\"file_version\": \"0.6.0.0\"}"), "no error");
    EXPECT_EQ(read("{\"file_version\": \"1.2\"}").diagnostics,
              base::Diagnostics{warning("", "has the newer format version 1.2")});
}

TEST_F(HostileFile, coordinates_that_are_no_numbers_are_told_and_read_as_zero)
{
    Json json = figure();
    json["geometry_library"][0]["vertices"]["values"][4] = {3, 1e39, 2};
    json["geometry_library"][0]["vertices"]["values"][7] = {nullptr, 0, "x"};
    const dson::Document document = read(json.dump());
    EXPECT_EQ(document.geometries[0].mesh.positions.at(4), (geometry::Vec3f{3, 0, 2}));
    EXPECT_EQ(document.geometries[0].mesh.positions.at(7), (geometry::Vec3f{0, 0, 0}));
    EXPECT_EQ(document.diagnostics,
              base::Diagnostics{
                  warning(document.geometries[0].id.c_str(),
                          "2 vertices with coordinates that are no numbers, taken as 0: the first is 4")});
}

TEST_F(HostileFile, counts_are_not_believed)
{
    Json json = figure();
    json["geometry_library"][0]["vertices"]["count"] = 4000000000u;
    json["geometry_library"][0]["polylist"]["count"] = -5;
    EXPECT_EQ(read(json.dump()).geometries[0].mesh.positions.size(), 10u);
    json = morph();
    json["modifier_library"][0]["morph"]["deltas"]["count"] = 1e18;
    EXPECT_EQ(read(json.dump()).modifiers[0].morph->deltas.size(), 1u);
}

TEST_F(HostileFile, deltas_that_make_no_sense_are_left_out_with_a_warning)
{
    Json json = morph();
    Json& rows = json["modifier_library"][0]["morph"]["deltas"]["values"];
    rows = Json::parse("[[7,1,1,1],[2,0,0,1],[10,1,1,1],[-1,1,1,1],[2.5,1,1,1],[3,1e39,0,0],[4,1,1],[5,null,"
                       "0,0],[7,2,2,2]]");
    dson::Document document = read(json.dump());
    EXPECT_EQ(document.modifiers[0].morph->deltas.vertices, (std::vector<std::uint32_t>{2, 7}));
    EXPECT_EQ(document.modifiers[0].morph->deltas.deltas[1], (geometry::Vec3f{2, 2, 2}));
    EXPECT_EQ(
        document.diagnostics,
        (base::Diagnostics{warning("Up", "3 rows of deltas are not four numbers and left out"),
                           warning("Up", "3 deltas are of vertices that the mesh does not have and left out"),
                           warning("Up", "1 delta is replaced by later ones of the same vertices")}));
    json["modifier_library"][0]["morph"]["vertex_count"] = -1;
    document = read(json.dump());
    EXPECT_EQ(document.modifiers[0].morph->deltas.vertices, (std::vector<std::uint32_t>{2, 7, 10}));
}

TEST_F(HostileFile, a_formula_that_cannot_be_read_is_left_out_with_a_warning)
{
    const std::pair<const char*, const char*> cases[] = {
        {"[]", "it has no operations"},
        {"null", "it has no operations"},
        {"{}", "an operation has no name"},
        {"[1]", "an operation has no name"},
        {"[{\"op\":\"push\",\"val\":1},{\"op\":\"jump\"},{\"op\":\"leap\"}]",
         "the operation jump is unknown"},
        {"[{\"op\":\"push\"}]", "a push has neither address nor number"},
        {"[{\"op\":\"push\",\"val\":\"x\"}]", "a push has neither address nor number"},
        {"[{\"op\":\"push\",\"val\":[0,null]}]", "a knot is not made of numbers"}};
    for (const auto& [operations, reason] : cases) {
        Json json = morph();
        json["modifier_library"][0]["formulas"][0]["operations"] = Json::parse(operations);
        const dson::Document document = read(json.dump());
        EXPECT_TRUE(document.modifiers[0].formulas.empty()) << operations;
        EXPECT_EQ(document.diagnostics,
                  base::Diagnostics{
                      warning("Up", (std::string("1 formula cannot be understood and is left out, for ") +
                                     output + ": " + reason)
                                        .c_str())})
            << operations;
    }
}

TEST_F(HostileFile, formulas_that_cannot_be_read_are_told_in_one_line)
{
    Json json = morph();
    Json& formulas = json["modifier_library"][0]["formulas"];
    Json strange = formulas[0], nowhere = formulas[0], staged = formulas[0];
    strange["operations"] = Json::parse("[{\"op\": \"sin\"}]");
    nowhere["output"] = "";
    staged["stage"] = "later";
    formulas = Json::array({strange, formulas[0], nowhere, strange, staged});
    const dson::Document document = read(json.dump());
    EXPECT_EQ(document.modifiers[0].formulas.size(), 2u);
    EXPECT_EQ(
        document.diagnostics,
        (base::Diagnostics{
            warning("Up", (std::string("3 formulas cannot be understood and are left out, the first for ") +
                           output + ": the operation sin is unknown")
                              .c_str()),
            warning("Up", "1 formula is of an unknown stage and added")}));
}

TEST_F(HostileFile, weights_that_make_no_sense_are_left_out_with_a_warning)
{
    Json json = figure();
    Json& skin = json["modifier_library"][0]["skin"];
    skin["joints"][1]["node_weights"]["values"] =
        Json::parse("[[4,1],[10,1],[-1,1],[1e30,1],[5,\"x\"],[1],\"x\",[6,0.5,0],[7,1.5],[8,-0.25],[2.5,1]]");
    const dson::Document document = read(json.dump());
    const dson::SkinBinding& binding = document.skins.at(0).binding;
    EXPECT_EQ(binding.joints[1].vertices, (std::vector<std::uint32_t>{4, 7, 8}));
    EXPECT_EQ(binding.joints[1].weights, (std::vector<float>{1, 1, 0}));
    const char* const id = binding.id.c_str();
    EXPECT_EQ(document.diagnostics,
              (base::Diagnostics{
                  warning(id, "4 rows of weights are not two numbers and left out"),
                  warning(id, "4 weights are of vertices that the mesh does not have and left out"),
                  warning(id, "2 weights are not between 0 and 1 and taken as the nearer of them")}));
}

TEST_F(HostileFile, keys_that_make_no_sense_are_left_out_with_a_warning)
{
    const dson::Document document = read(R"({"file_version": "0.6.0.0", "scene": {"animations": [
        {"url": "a", "keys": [[0, 2], [1], ["x", 1], [1, null], [-1, 3, ["LINEAR"]]]}, {"url": "b", "keys": [[0]]}]}})");
    ASSERT_EQ(document.animations.size(), 1u);
    EXPECT_EQ(document.animations[0].value, 2.0);
    EXPECT_EQ(
        document.diagnostics,
        base::Diagnostics{warning("", "4 keys of animations are not a time and a number and left out")});
    EXPECT_EQ(document.leftOut, std::vector<std::string>());
}

TEST_F(HostileFile, influence_weights_are_found_in_three_places_and_checked)
{
    const char* const map =
        R"("influence_vertex_count": 4, "influence_weights": {"values": [[0, 1], [3, 7]]})";
    const std::string head = "{\"file_version\": \"0.6.0.0\", ";
    const std::string places[] = {
        std::string("\"modifier_library\": [{\"name\": \"DF\", \"dform\": {") + map + "}}]}",
        std::string("\"scene\": {\"modifiers\": [{\"label\": \"DF\", ") + map + "}]}}",
        std::string("\"node_library\": [{\"id\": \"n\", \"name\": \"DF\", \"extra\": [{\"type\": "
                    "\"studio/node/dform\", ") +
            map + "}]}]}"};
    for (const std::string& place : places) {
        const dson::Document document = read(head + place);
        ASSERT_EQ(document.influenceMaps.size(), 1u) << place;
        EXPECT_EQ(document.influenceMaps[0].owner, "DF");
        EXPECT_EQ(document.influenceMaps[0].vertexCount, 4);
        EXPECT_EQ(document.influenceMaps[0].weights, (std::vector<float>{1, 1})); // held within 0..1
        EXPECT_EQ(document.diagnostics,
                  base::Diagnostics{
                      warning("DF", "1 weight is not between 0 and 1 and taken as the nearer of them")});
    }
    for (const char* const rows :
         {"[[-1, 1]]", "[[1e30, 1]]", "[[0.5, 1]]", "[[0]]", "[[0, \"x\"]]", "[7]", "[]"})
        EXPECT_TRUE(
            read(head + "\"x\": {\"influence_weights\": {\"values\": " + rows + "}}}").influenceMaps.empty())
            << rows;
    const dson::Document partly = read(head + R"("x": {"name": "DF", "influence_vertex_count": 4,
        "influence_weights": [[0, 1], [4, 1], [-1, 1], [1], [2, 0.5]]}})");
    EXPECT_EQ(partly.influenceMaps.at(0).vertices, (std::vector<std::uint32_t>{0, 2}));
    EXPECT_EQ(partly.diagnostics,
              (base::Diagnostics{
                  warning("DF", "1 row of weights is not two numbers and left out"),
                  warning("DF", "2 weights are of vertices that the mesh does not have and left out")}));
    EXPECT_EQ(read(head + "\"x\": {\"influence_vertex_count\": 1e300, \"influence_weights\": [[0, 1]]}}")
                  .influenceMaps.at(0)
                  .vertexCount,
              -1);
}

class HostileScene : public LibraryTest {};

TEST_F(HostileScene, a_spoilt_character_loads_or_is_refused)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 1, 0}), _library);
    const std::string uri = dson::MakeUri(mini::MorphInfo("Up").id, "Up");
    const fs::path file = mini::WriteCharacter(_library, {{uri, "Up", "", 1.0}}, "Spoilt");
    Json json = Json::parse(ReadBytes(file));
    json["asset_info"] = {{"type", "character"}};
    std::size_t loaded = 0;
    ForEachSpoilt(json, json["scene"], [&](const Json& spoilt) {
        WriteBytes(file, spoilt.dump());
        if (open(file))
            ++loaded;
        for (int i = 0; i < dzScene->getNumNodes(); ++i)
            dzScene->getNode(i)->getWSBoundingBox();
        dzScene->clear();
        dzScene->purgeRemoved();
    });
    EXPECT_GT(loaded, 10u);
}

TEST_F(HostileScene, a_spoilt_morph_file_never_spoils_the_figure)
{
    const fs::path file = mini::WriteMorph(mini::Morph("Up", 1, {0, 1, 0}), _library);
    Json json = Json::parse(ReadBytes(file));
    ForEachSpoilt(json, json["modifier_library"], [&](const Json& spoilt) {
        WriteBytes(file, spoilt.dump());
        DzFigure* const figure = openMini();
        ASSERT_NE(figure, nullptr) << spoilt.dump();
        if (DzFloatProperty* const dial = DialOf(*figure, "Up")) {
            dial->setValue(1.0f);
            const DzVec3 moved = VertexAt(*figure, 1);
            EXPECT_TRUE(std::isfinite(moved.m_x) && std::isfinite(moved.m_y) && std::isfinite(moved.m_z));
        }
        dzScene->clear();
        dzScene->purgeRemoved();
    });
}
