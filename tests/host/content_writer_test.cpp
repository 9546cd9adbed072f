// Written content files.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/reader.h"
#include "tests/host/content_fixture.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using OrderedJson = nlohmann::ordered_json;

class DsonWriter : public testing::Test {
protected:
    fs::path library() const { return _folder.path().toStdString(); }
    /// The file's JSON, read by another parser.
    static OrderedJson parse(const fs::path& file) { return OrderedJson::parse(ReadBytes(file)); }

    QTemporaryDir _folder;
};

std::vector<std::string> Keys(const OrderedJson& json)
{
    std::vector<std::string> keys;
    for (auto item = json.begin(); item != json.end(); ++item)
        keys.push_back(item.key());
    return keys;
}

bool SameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

const std::vector<float>& AwkwardNumbers()
{
    static const std::vector<float> numbers{
        0.1f,        -0.0f,           1.0f / 3.0f,
        16777217.0f, 1e-38f,          -123456.789f,
        3.4e38f,     1.17549435e-38f, std::numeric_limits<float>::denorm_min(),
        -9.99999905f};
    return numbers;
}

using Strings = std::vector<std::string>;

} // namespace

TEST_F(DsonWriter, a_figure_reads_back_bit_for_bit)
{
    dson::FigureAsset figure = mini::Figure();
    for (std::size_t v = 0; v < mini::vertexCount; ++v)
        figure.geometry.mesh.positions[v] = {AwkwardNumbers()[v], AwkwardNumbers()[(v + 3) % 10],
                                             -AwkwardNumbers()[v]};
    figure.nodes[2].centerPoint = {0.1f, -2.5, 3.0};
    figure.nodes[2].orientation = {1.25, -0.0, -90};
    figure.nodes[2].rotationOrder = "YZX";
    figure.nodes[2].rotation[1].min = -12.5;
    figure.nodes[2].rotation[1].clamped = true;
    figure.nodes[2].formulas = {
        dson::MakeDeltaAdd(mini::NodeChannel("arm", "center_point/x"), "Mini:#Long?value", 2.5)};
    figure.skin.joints[1].weights[2] = 1.0f / 3.0f;
    const dson::Document read = dson::ReadDocument(dson::WriteFigure(figure, library()));

    ASSERT_EQ(read.diagnostics.size(), 1u) << "that some of it is far out";
    EXPECT_EQ(read.diagnostics[0].what,
              "2 vertices lie farther than 1e+09 cm, which is nothing real: the first is 3");
    EXPECT_EQ(read.info.id, figure.info.id);
    EXPECT_EQ(read.info.author, "Acme");
    EXPECT_EQ(read.info.modified, "2024-05-01T10:20:30Z");
    ASSERT_EQ(read.geometries.size(), 1u);
    const geometry::PolygonMesh& mesh = read.geometries[0].mesh;
    ASSERT_EQ(mesh.positions.size(), figure.geometry.mesh.positions.size());
    for (std::size_t v = 0; v < mesh.positions.size(); ++v)
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_TRUE(SameBits(mesh.positions[v][axis], figure.geometry.mesh.positions[v][axis])) << v;
    EXPECT_EQ(mesh.topology->cornerVertices, figure.geometry.mesh.topology->cornerVertices);
    EXPECT_EQ(mesh.topology->groupNames, (Strings{"hip", "arm"}));
    EXPECT_EQ(mesh.topology->faceGroups, figure.geometry.mesh.topology->faceGroups);
    ASSERT_EQ(read.nodes.size(), 3u);
    EXPECT_EQ(read.nodes[0].presentationType, "Actor/Character");
    EXPECT_EQ(read.nodes[2].parent, "hip");
    EXPECT_EQ(read.nodes[2].rotationOrder, "YZX");
    EXPECT_EQ(read.nodes[2].orientation, figure.nodes[2].orientation);
    EXPECT_TRUE(std::signbit(read.nodes[2].orientation[1]));
    EXPECT_FLOAT_EQ(static_cast<float>(read.nodes[2].centerPoint[0]), 0.1f);
    EXPECT_EQ(read.nodes[2].rotation[1].min, -12.5);
    EXPECT_TRUE(read.nodes[2].rotation[1].clamped);
    EXPECT_EQ(read.nodes[2].scale[0].value, 1.0);
    ASSERT_EQ(read.nodes[2].formulas.size(), 1u);
    EXPECT_EQ(read.nodes[2].formulas[0].operations[1].value, 2.5);
    ASSERT_EQ(read.skins.size(), 1u);
    EXPECT_EQ(read.skins[0].binding.vertexCount, 10u);
    EXPECT_EQ(read.skins[0].binding.joints[1].vertices, figure.skin.joints[1].vertices);
    EXPECT_EQ(read.skins[0].binding.joints[1].weights, figure.skin.joints[1].weights);
    EXPECT_TRUE(read.skins[0].binding.dualQuaternion);
}

TEST_F(DsonWriter, a_morph_reads_back_bit_for_bit_plain_and_compressed)
{
    for (const bool compress : {false, true}) {
        dson::Modifier morph = mini::Morph("Mini Gr\xC3\xB6\xC3\x9F"
                                           "e",
                                           0, {});
        morph.id = morph.name;
        morph.region = "Head";
        morph.channel.label = "\"Quoted\\\" \t label";
        morph.channel.min = -1.0;
        morph.morph->deltas = {};
        for (std::uint32_t v = 0; v < mini::vertexCount; ++v) {
            morph.morph->deltas.vertices.push_back(v);
            morph.morph->deltas.deltas.push_back(
                {AwkwardNumbers()[v], -AwkwardNumbers()[v], AwkwardNumbers()[9 - v]});
        }
        dson::WriteOptions options;
        options.compress = compress;
        const fs::path file = dson::WriteMorph(mini::MorphInfo("Round Head"), morph, library(), options);
        EXPECT_EQ(file, library() / "data/Acme/Mini/Base/Morphs/Acme/Shapes/Round Head.dsf");
        EXPECT_EQ(ReadBytes(file).substr(0, 2) == "\x1F\x8B", compress);
        const dson::Document read = dson::ReadDocument(file);
        EXPECT_EQ(read.info.id, mini::MorphInfo("Round Head").id);
        ASSERT_EQ(read.modifiers.size(), 1u);
        EXPECT_EQ(read.modifiers[0].name, morph.name);
        EXPECT_EQ(read.modifiers[0].channel.label, morph.channel.label);
        EXPECT_EQ(read.modifiers[0].channel.min, -1.0);
        EXPECT_EQ(read.modifiers[0].region, "Head");
        EXPECT_EQ(read.modifiers[0].group, "/Actor/Acme");
        const geometry::SparseDeltas& deltas = read.modifiers[0].morph->deltas;
        ASSERT_EQ(deltas.vertices, morph.morph->deltas.vertices);
        for (std::size_t i = 0; i < deltas.size(); ++i)
            for (int axis = 0; axis < 3; ++axis)
                EXPECT_TRUE(SameBits(deltas.deltas[i][axis], morph.morph->deltas.deltas[i][axis])) << i;
        EXPECT_EQ(dson::ReadDeltas(file, morph.id).vertices, deltas.vertices);
        EXPECT_EQ(ErrorOf([&] { dson::ReadDeltas(library() / "none.dsf", "x"); }).substr(0, 12),
                  "cannot read ");
    }
}

TEST_F(DsonWriter, every_kind_of_operation_reads_back)
{
    using Kind = dson::Operation::Kind;
    dson::Modifier control = mini::Control("All");
    dson::Formula formula;
    formula.output = mini::Dial("Other");
    formula.stage = dson::Formula::Stage::Multiply;
    for (const Kind kind : {Kind::PushUrl, Kind::PushValue, Kind::Add, Kind::Sub, Kind::Mult, Kind::Div,
                            Kind::Inv, Kind::Neg, Kind::PushKnot, Kind::SplineLinear, Kind::SplineConstant}) {
        dson::Operation operation;
        operation.kind = kind;
        operation.url = "Mini:#x?value";
        operation.value = -0.25;
        operation.knot = {0.5, 2, 0, 0, 0};
        formula.operations.push_back(operation);
    }
    control.formulas.push_back(formula);
    dson::Operation spline;
    spline.kind = Kind::SplineTcb;
    formula.operations = {formula.operations[8], spline};
    formula.operations[0].knot = {0.5, 2, 0.25, -1, 1};
    control.formulas.push_back(formula);
    const fs::path file = mini::WriteMorph(control, library());
    const dson::Document read = dson::ReadDocument(file);
    ASSERT_EQ(read.modifiers.at(0).formulas.size(), 2u);
    for (std::size_t f = 0; f < 2; ++f) {
        EXPECT_EQ(read.modifiers[0].formulas[f].stage, dson::Formula::Stage::Multiply);
        const auto& written = control.formulas[f].operations;
        ASSERT_EQ(read.modifiers[0].formulas[f].operations.size(), written.size());
        for (std::size_t i = 0; i < written.size(); ++i) {
            const dson::Operation& operation = read.modifiers[0].formulas[f].operations[i];
            EXPECT_EQ(operation.kind, written[i].kind);
            if (operation.kind == Kind::PushKnot) {
                EXPECT_EQ(operation.knot, written[i].knot);
            }
        }
    }
    const OrderedJson formulas = parse(file)["modifier_library"][0]["formulas"];
    EXPECT_EQ(formulas[0]["stage"], "mult");
    EXPECT_EQ(formulas[0]["operations"][8]["val"].size(), 2u);
    EXPECT_EQ(formulas[1]["operations"][0]["val"].size(), 5u);
}

TEST_F(DsonWriter, a_character_lists_every_bone_and_its_dials)
{
    mini::WriteMorph(mini::Morph("Up", 1, {0, 1, 0}), library());
    const std::string uri = dson::MakeUri(mini::MorphInfo("Up").id, "Up");
    const fs::path file = mini::WriteCharacter(library(), {{uri, "Up", "Lift", 0.3}}, "Otto");
    const dson::Document read = dson::ReadDocument(file);
    ASSERT_EQ(read.nodeInstances.size(), 3u);
    EXPECT_EQ(read.nodeInstances[0].label, "Otto");
    EXPECT_EQ(read.nodeInstances[0].url, "/data/Acme/Mini/Base/Mini.dsf#Mini");
    ASSERT_EQ(read.nodeInstances[0].geometries.size(), 1u);
    EXPECT_EQ(read.nodeInstances[0].geometries[0].url, "/data/Acme/Mini/Base/Mini.dsf#Mini-1");
    EXPECT_EQ(read.nodeInstances[1].parent, "#Mini");
    EXPECT_EQ(read.nodeInstances[2].parent, "#hip");
    EXPECT_EQ(read.nodeInstances[2].url, "/data/Acme/Mini/Base/Mini.dsf#arm");
    ASSERT_EQ(read.modifierInstances.size(), 2u);
    EXPECT_EQ(read.modifierInstances[0].url, "/data/Acme/Mini/Base/Mini.dsf#SkinBinding");
    EXPECT_EQ(read.modifierInstances[1].url, uri);
    EXPECT_EQ(static_cast<float>(read.modifierInstances[1].value.value()), 0.3f);
    for (const dson::ModifierInstance& modifier : read.modifierInstances)
        EXPECT_EQ(modifier.parent, "#" + read.nodeInstances[0].geometries[0].id);
}

TEST_F(DsonWriter, a_d_former_reads_back)
{
    dson::DFormAsset dform;
    dform.info.id = "/Presets/Split.duf";
    dform.info.type = "preset_dform";
    dform.name = "D-Former_1";
    dform.vertexCount = 10;
    dform.vertices = {1, 4, 9};
    dform.weights = {1.0f, 1.0f / 3.0f, 0.5f};
    const dson::Document read = dson::ReadDocument(dson::WriteDForm(dform, library()));
    ASSERT_EQ(read.influenceMaps.size(), 1u);
    EXPECT_EQ(read.influenceMaps[0].owner, "D-Former_1");
    EXPECT_TRUE(read.influenceMaps[0].isDForm);
    EXPECT_EQ(read.influenceMaps[0].vertexCount, 10);
    EXPECT_EQ(read.influenceMaps[0].vertices, dform.vertices);
    EXPECT_EQ(read.influenceMaps[0].weights, dform.weights);
}

TEST_F(DsonWriter, a_graft_comes_back)
{
    dson::FigureAsset figure = mini::Figure();
    figure.geometry.graft = {25, 16, {{0, 6}, {3, 11}}, {5, 9}};
    const dson::Document read = dson::ReadDocument(dson::WriteFigure(figure, library()));
    const geometry::Graft& graft = read.geometries.at(0).graft;
    EXPECT_EQ(graft.vertexCount, 25u);
    EXPECT_EQ(graft.faceCount, 16u);
    EXPECT_EQ(graft.vertexPairs, figure.geometry.graft.vertexPairs);
    EXPECT_EQ(graft.hiddenFaces, figure.geometry.graft.hiddenFaces);
}

TEST_F(DsonWriter, members_stand_in_their_documented_order)
{
    const OrderedJson figure = parse(dson::WriteFigure(mini::Figure(), library()));
    EXPECT_EQ(Keys(figure), (Strings{"file_version", "asset_info", "geometry_library", "node_library",
                                     "modifier_library"}));
    EXPECT_EQ(Keys(figure["asset_info"]), (Strings{"id", "type", "contributor", "revision", "modified"}));
    EXPECT_EQ(Keys(figure["asset_info"]["contributor"]), (Strings{"author", "email", "website"}));
    EXPECT_EQ(Keys(figure["geometry_library"][0]),
              (Strings{"id", "name", "label", "type", "edge_interpolation_mode", "vertices", "polygon_groups",
                       "polygon_material_groups", "polylist", "graft", "extra"}));
    EXPECT_EQ(
        Keys(figure["node_library"][1]),
        (Strings{"id", "name", "type", "label", "parent", "rotation_order", "inherits_scale", "center_point",
                 "end_point", "orientation", "rotation", "translation", "scale", "general_scale"}));
    dson::Modifier morph = mini::Morph("Up", 1, {0, 1, 0});
    morph.region = "Head";
    morph.formulas = {dson::MakeDeltaAdd(mini::NodeChannel("arm", "center_point/x"), mini::Dial("Up"), 2.0)};
    const OrderedJson file = parse(mini::WriteMorph(morph, library()));
    EXPECT_EQ(Keys(file), (Strings{"file_version", "asset_info", "modifier_library", "scene"}));
    EXPECT_EQ(Keys(file["modifier_library"][0]), (Strings{"id", "name", "parent", "presentation", "channel",
                                                          "region", "group", "formulas", "morph"}));
    EXPECT_EQ(Keys(file["modifier_library"][0]["morph"]), (Strings{"vertex_count", "deltas"}));
    EXPECT_EQ(Keys(file["modifier_library"][0]["formulas"][0]["operations"][0]), (Strings{"op", "url"}));
}

TEST_F(DsonWriter, files_hold_what_readers_insist_on)
{
    const OrderedJson figure = parse(dson::WriteFigure(mini::Figure(), library()));
    for (const OrderedJson& node : figure["node_library"]) {
        for (const char* const key : {"label", "rotation_order", "center_point"})
            EXPECT_TRUE(node.contains(key)) << key;
        for (const char* const member :
             {"center_point", "end_point", "orientation", "rotation", "translation", "scale"})
            for (int axis = 0; axis < 3; ++axis) {
                const OrderedJson& channel = node[member].at(static_cast<std::size_t>(axis));
                EXPECT_EQ(channel["id"], std::string(1, static_cast<char>('x' + axis)));
                EXPECT_TRUE(channel.contains("type") && channel.contains("value"));
            }
    }
    const OrderedJson& skin = figure["modifier_library"][0];
    EXPECT_EQ(skin["parent"], "#Mini-1");
    EXPECT_EQ(skin["skin"]["node"], "#Mini");
    EXPECT_EQ(skin["skin"]["geometry"], "#Mini-1");
    EXPECT_EQ(skin["skin"]["vertex_count"], 10);
    for (const OrderedJson& joint : skin["skin"]["joints"]) {
        EXPECT_EQ(joint["node"], "#" + joint["id"].get<std::string>());
        EXPECT_EQ(joint["node_weights"]["count"], joint["node_weights"]["values"].size());
    }
    EXPECT_EQ(skin["extra"][0]["type"], "skin_settings");

    dson::Modifier morph = mini::Morph("Up", 1, {0, 1, 0});
    morph.formulas = {dson::MakeDeltaAdd(mini::NodeChannel("arm", "center_point/x"), mini::Dial("Up"), 2.0)};
    const OrderedJson file = parse(mini::WriteMorph(morph, library()));
    const OrderedJson& entry = file["modifier_library"][0];
    EXPECT_EQ(entry["parent"], "/data/Acme/Mini/Base/Mini.dsf#Mini");
    for (const char* const key : {"id", "type", "min", "max"})
        EXPECT_TRUE(entry["channel"].contains(key)) << key;
    EXPECT_EQ(entry["morph"]["vertex_count"], 10);
    EXPECT_EQ(entry["morph"]["deltas"]["count"], 1);
    const OrderedJson& operations = entry["formulas"][0]["operations"];
    EXPECT_TRUE(operations[0].contains("url") && operations[1].contains("val"));
    EXPECT_EQ(operations[2], OrderedJson({{"op", "mult"}}));
    EXPECT_FALSE(entry["formulas"][0].contains("stage"));
    const OrderedJson& instance = file["scene"]["modifiers"][0];
    EXPECT_EQ(Keys(instance), (Strings{"id", "url"}));
    EXPECT_NE(instance["id"], entry["id"]);
    EXPECT_EQ(instance["url"], "#Up");
    EXPECT_FALSE(parse(mini::WriteMorph(mini::Morph("Plain", 1, {0, 1, 0}), library()))["modifier_library"][0]
                     .contains("formulas"));
}

TEST_F(DsonWriter, the_same_content_is_the_same_text)
{
    const std::string first = ReadBytes(dson::WriteFigure(mini::Figure(), library()));
    EXPECT_EQ(ReadBytes(dson::WriteFigure(mini::Figure(), library())), first);
    EXPECT_EQ(first.find('\r'), std::string::npos);
    EXPECT_EQ(first.front(), '{');
    EXPECT_EQ(first.substr(first.size() - 2), "}\n");
}

TEST_F(DsonWriter, a_dial_without_a_number_is_refused)
{
    EXPECT_EQ(ErrorOf([&] {
                  mini::WriteCharacter(library(), {{"/data/up.dsf#Up", "Up", "Lift", NAN}}, "Otto");
              }),
              "a value of a channel or formula is not a finite number");
}

TEST_F(DsonWriter, what_cannot_be_written_is_refused_and_leaves_no_file)
{
    dson::Modifier morph = mini::Morph("Up", 1, {0, std::nanf(""), 0});
    EXPECT_EQ(ErrorOf([&] { mini::WriteMorph(morph, library()); }), "delta 0 is not a finite number");
    morph = mini::Morph("Up", 1, {0, 1, 0});
    morph.channel.max = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ErrorOf([&] { mini::WriteMorph(morph, library()); }),
              "a value of a channel or formula is not a finite number");
    morph.channel.max = 1.0;
    for (const char* const id : {"", "data/x.dsf", "/../x.dsf", "/data/../../x.dsf"}) {
        dson::AssetInfo info = mini::MorphInfo("Up");
        info.id = id;
        EXPECT_EQ(ErrorOf([&] { dson::WriteMorph(info, morph, library()); }),
                  std::string(id) + " is no path within a content directory");
    }
    dson::FigureAsset figure = mini::Figure();
    figure.geometry.mesh.positions[3].y = std::numeric_limits<float>::infinity();
    EXPECT_EQ(ErrorOf([&] { dson::WriteFigure(figure, library()); }), "vertex 3 is not a finite number");
    figure = mini::Figure();
    figure.skin.joints[0].weights.pop_back();
    EXPECT_EQ(ErrorOf([&] { dson::WriteFigure(figure, library()); }),
              "weight map has 4 vertices but 3 weights");
    EXPECT_TRUE(fs::is_empty(library()));
}

TEST_F(DsonWriter, a_folder_that_cannot_be_made_is_an_error)
{
    WriteBytes(library() / "data", "a file");
    const std::string folder = (library() / "data/Acme/Mini/Base").string();
    EXPECT_EQ(ErrorOf([&] { dson::WriteFigure(mini::Figure(), library()); }),
              "cannot create folder " + folder + ": Not a directory");
    EXPECT_EQ(ReadBytes(library() / "data"), "a file");
}

TEST_F(DsonWriter, rewriting_a_morph_keeps_what_others_put_into_the_file)
{
    dson::Modifier morph = mini::Morph("Up", 1, {0, 1, 0});
    morph.morph->hdUrl = "/data/Up.dhdm";
    const fs::path file = mini::WriteMorph(morph, library());
    OrderedJson json = parse(file);
    OrderedJson entry = json["modifier_library"][0];
    entry["extra"] = {
        {{"type", "studio_modifier_channels"}, {"number", 0.1234567890123456}, {"big", 9007199254740993}}};
    entry["presentation"]["description"] = "made by \"me\"";
    entry["formulas"] = {{{"output", "Mini:#Other?value"}}};
    entry["channel"]["mappable"] = true;
    entry["morph"]["normals"] = {1, 2};
    json["modifier_library"][0] = entry;
    json["modifier_library"].push_back({{"id", "Second"}, {"name", "Second"}});
    json["image_library"] = {{{"id", "picture"}}};
    json["scene"]["extra"] = {{"x", nullptr}};
    WriteBytes(file, json.dump());

    morph.morph->hdUrl.clear();
    morph.channel.clamped = false;
    morph.channel.label = "New label";
    morph.region = "Head";
    morph.morph->deltas = {{2, 3}, {{1, 1, 1}, {2, 2, 2}}};
    mini::WriteMorph(morph, library());
    const OrderedJson now = parse(file);
    const OrderedJson& kept = now["modifier_library"][0];
    EXPECT_EQ(kept["extra"], entry["extra"]);
    EXPECT_EQ(kept["presentation"]["description"], "made by \"me\"");
    EXPECT_EQ(kept["formulas"], entry["formulas"]);
    EXPECT_EQ(kept["channel"]["mappable"], true);
    EXPECT_EQ(kept["morph"]["normals"], entry["morph"]["normals"]);
    EXPECT_EQ(now["modifier_library"][1], json["modifier_library"][1]);
    EXPECT_EQ(now["image_library"], json["image_library"]);
    EXPECT_EQ(now["scene"]["extra"], json["scene"]["extra"]);

    EXPECT_EQ(kept["channel"]["label"], "New label");
    EXPECT_FALSE(kept["channel"].contains("clamped"));
    EXPECT_FALSE(kept["morph"].contains("hd_url"));
    EXPECT_EQ(kept["morph"]["deltas"]["count"], 2);
    EXPECT_EQ(now["scene"]["modifiers"].size(), 1u);
    EXPECT_EQ(Keys(kept), (Strings{"id", "name", "parent", "presentation", "channel", "region", "group",
                                   "morph", "extra", "formulas"}));
    const std::string text = ReadBytes(file);
    mini::WriteMorph(morph, library());
    EXPECT_EQ(ReadBytes(file), text);
}

TEST_F(DsonWriter, a_file_that_cannot_be_understood_is_replaced)
{
    const dson::Modifier morph = mini::Morph("Up", 1, {0, 1, 0});
    const std::string text = ReadBytes(mini::WriteMorph(morph, library()));
    for (const std::string& other : {std::string("not json"), std::string("[1]"), std::string("{\"a\": 1}"),
                                     std::string(100000, '['), std::string("\x1F\x8B")}) {
        const fs::path file = mini::WriteMorph(morph, library());
        WriteBytes(file, other);
        mini::WriteMorph(morph, library());
        EXPECT_EQ(ReadBytes(file), text);
    }
}
