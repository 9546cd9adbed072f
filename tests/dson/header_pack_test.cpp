// What morph files say besides their displacements, packed and unpacked.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dson/header_pack.h"
#include "tests/content/temp_folder.h"
#include "tests/content/throws.h"

#include <gtest/gtest.h>

namespace {

/// As another program writes it; nothing in it is what a member has anyway.
const char* const morphText = R"({"file_version": "0.6.0.0",
"asset_info": {"id": "/data/A%20B/Wide.dsf", "type": "modifier",
    "contributor": {"author": "Zoë", "email": "zoe@example.org", "website": "example.org"},
    "revision": "2.5", "modified": "2024-05-01T10:20:30Z"},
"modifier_library": [
{"id": "Wide", "name": "wide", "parent": "/data/A%20B/A.dsf#A-1", "presentation": {"type": "Modifier/Corrective"},
 "channel": {"id": "dial", "type": "enum", "name": "Wide Dial", "label": "Wide One", "value": 0.25, "current_value": 0.5,
    "min": -2, "max": 3.5, "clamped": true, "display_as_percent": true, "visible": false, "locked": true,
    "auto_follow": true, "step_size": 0.125, "enum_values": ["a", "", "c"], "target_channel": "#x?value"},
 "region": "Head", "group": "/Head/Face",
 "formulas": [{"output": "A:#Wide?value", "stage": "mult", "operations": [
    {"op": "push", "url": "A:#B?value"}, {"op": "push", "val": [0.5, 1.5, 2.5, 3.5, 4.5]}, {"op": "push", "val": 1},
    {"op": "spline_tcb"}]}],
 "morph": {"vertex_count": 25182, "hd_url": "/data/A%20B/Wide.dhdm", "deltas": {"count": 1, "values": [[1, 0, 1, 0],]}}},
{"id": "Text", "channel": {"id": "value", "type": "string", "value": "some text"},
 "morph": {"deltas": []}},
{"id": "Bare", "channel": {"id": "value"}}],
"scene": {
"modifiers": [{"id": "Wide-1", "url": "#Wide", "parent": "#A", "name": "wide one", "group": "/Other",
    "channel": {"id": "value", "label": "Wider", "min": -7, "max": 8, "clamped": true, "visible": false, "locked": true,
        "current_value": 0.75},
    "formulas": [{"output": "A:#Other?value", "operations": [{"op": "push", "url": "A:#C?value"}]}]}],
"materials": [{"id": "m"}]}})";

class PackedHeaders : public testing::Test {
protected:
    dson::Document read(const std::string& text) const
    {
        return dson::ReadDocument(_folder.write("wide.dsf", text), {false});
    }
    dson::Document repacked() const
    {
        const dson::Document document = read(morphText);
        return dson::UnpackHeaders(dson::PackHeaders(document), document.file);
    }

    const TempFolder _folder;
};

} // namespace

TEST_F(PackedHeaders, know_where_the_file_is_and_that_displacements_are_to_be_read)
{
    const dson::Document document = repacked();
    EXPECT_EQ(document.file, _folder.path() / "wide.dsf");
    EXPECT_FALSE(document.hasDeltas);
}

TEST_F(PackedHeaders, keep_who_made_the_file)
{
    const dson::AssetInfo info = repacked().info;
    EXPECT_EQ(info.id, "/data/A B/Wide.dsf");
    EXPECT_EQ(info.type, "modifier");
    EXPECT_EQ(info.author, "Zoë");
    EXPECT_EQ(info.email, "zoe@example.org");
    EXPECT_EQ(info.website, "example.org");
    EXPECT_EQ(info.revision, "2.5");
    EXPECT_EQ(info.modified, "2024-05-01T10:20:30Z");
}

TEST_F(PackedHeaders, keep_what_a_morph_is)
{
    const dson::Document document = repacked();
    ASSERT_EQ(document.modifiers.size(), 3u);
    const dson::Modifier& wide = document.modifiers.front();
    EXPECT_EQ(wide.id, "Wide");
    EXPECT_EQ(wide.name, "wide");
    EXPECT_EQ(wide.parent, "/data/A%20B/A.dsf#A-1");
    EXPECT_EQ(wide.presentationType, "Modifier/Corrective");
    EXPECT_EQ(wide.region, "Head");
    EXPECT_EQ(wide.group, "/Head/Face");
    ASSERT_TRUE(wide.morph);
    EXPECT_EQ(wide.morph->vertexCount, 25182);
    EXPECT_EQ(wide.morph->hdUrl, "/data/A%20B/Wide.dhdm");
    EXPECT_TRUE(wide.morph->deltas.empty());
    EXPECT_FALSE(document.modifiers.back().morph);
}

TEST_F(PackedHeaders, keep_what_a_dial_is)
{
    const dson::Document document = repacked();
    const dson::Channel& channel = document.modifiers.front().channel;
    EXPECT_EQ(channel.id, "dial");
    EXPECT_EQ(channel.type, "enum");
    EXPECT_EQ(channel.name, "Wide Dial");
    EXPECT_EQ(channel.label, "Wide One");
    EXPECT_EQ(channel.value, 0.25);
    EXPECT_EQ(channel.currentValue, 0.5);
    EXPECT_EQ(channel.min, -2.0);
    EXPECT_EQ(channel.max, 3.5);
    EXPECT_TRUE(channel.clamped);
    EXPECT_TRUE(channel.displayAsPercent);
    EXPECT_FALSE(channel.visible);
    EXPECT_TRUE(channel.locked);
    EXPECT_TRUE(channel.autoFollow);
    EXPECT_EQ(channel.stepSize, 0.125);
    EXPECT_EQ(channel.enumValues, (std::vector<std::string>{"a", "", "c"}));
    EXPECT_EQ(channel.targetChannel, "#x?value");
    const dson::Channel& text = document.modifiers.at(1).channel;
    EXPECT_EQ(text.text, "some text");
    EXPECT_EQ(text.otherValue, "\"some text\"");
    const dson::Channel& bare = document.modifiers.back().channel;
    EXPECT_FALSE(bare.currentValue);
    EXPECT_FALSE(bare.min);
    EXPECT_TRUE(bare.visible);
}

TEST_F(PackedHeaders, keep_formulas_with_their_knots)
{
    const dson::Document document = repacked();
    ASSERT_EQ(document.modifiers.front().formulas.size(), 1u);
    const dson::Formula& formula = document.modifiers.front().formulas.front();
    EXPECT_EQ(formula.output, "A:#Wide?value");
    EXPECT_EQ(formula.stage, dson::Formula::Stage::Multiply);
    ASSERT_EQ(formula.operations.size(), 4u);
    EXPECT_EQ(formula.operations[0].kind, dson::Operation::Kind::PushUrl);
    EXPECT_EQ(formula.operations[0].url, "A:#B?value");
    EXPECT_EQ(formula.operations[1].kind, dson::Operation::Kind::PushKnot);
    EXPECT_EQ(formula.operations[1].knot, (std::array<double, 5>{0.5, 1.5, 2.5, 3.5, 4.5}));
    EXPECT_EQ(formula.operations[2].value, 1.0);
    EXPECT_EQ(formula.operations[3].kind, dson::Operation::Kind::SplineTcb);
}

TEST_F(PackedHeaders, keep_instances)
{
    const dson::Document document = repacked();
    ASSERT_EQ(document.modifierInstances.size(), 1u);
    const dson::ModifierInstance& instance = document.modifierInstances.front();
    EXPECT_EQ(instance.id, "Wide-1");
    EXPECT_EQ(instance.url, "#Wide");
    EXPECT_EQ(instance.parent, "#A");
    EXPECT_EQ(instance.name, "wide one");
    EXPECT_EQ(instance.group, "/Other");
    EXPECT_EQ(instance.value, 0.75);
    EXPECT_EQ(instance.change.label, "Wider");
    EXPECT_EQ(instance.change.min, -7.0);
    EXPECT_EQ(instance.change.max, 8.0);
    EXPECT_EQ(instance.change.clamped, true);
    EXPECT_EQ(instance.change.visible, false);
    EXPECT_EQ(instance.change.locked, true);
    ASSERT_EQ(instance.formulas.size(), 1u);
    EXPECT_EQ(instance.formulas.front().output, "A:#Other?value");
}

TEST_F(PackedHeaders, keep_what_was_met_and_left_out)
{
    const std::string odd =
        std::string(morphText).insert(std::string(morphText).find("\"scene\""), "\"x\": [1,], ");
    const dson::Document document = read(odd);
    ASSERT_FALSE(document.diagnostics.empty());
    const dson::Document unpacked = dson::UnpackHeaders(dson::PackHeaders(document), document.file);
    EXPECT_EQ(unpacked.diagnostics, document.diagnostics);
    EXPECT_EQ(unpacked.leftOut, std::vector<std::string>{"1 material"});
}

TEST_F(PackedHeaders, keep_how_grave_it_is_and_what_it_is_about)
{
    dson::Document document;
    document.diagnostics = {{base::Severity::Note, "a.dsf", "Wide", "is so"},
                            {base::Severity::Error, "a.dsf", {}, "is otherwise"}};
    EXPECT_EQ(dson::UnpackHeaders(dson::PackHeaders(document), "a.dsf").diagnostics, document.diagnostics);
}

TEST_F(PackedHeaders, of_every_length_are_read_or_refused)
{
    const std::string whole = dson::PackHeaders(read(morphText));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A block of just this size: reading beyond it is found by a sanitizer.
        const std::vector<char> block(whole.begin(), whole.begin() + std::ptrdiff_t(size));
        EXPECT_THROW_MSG(dson::UnpackHeaders({block.data(), block.size()}, "wide.dsf"), base::FormatError,
                         "packed headers are cut off");
    }
    EXPECT_THROW_MSG(dson::UnpackHeaders(whole + 'x', "wide.dsf"), base::FormatError,
                     "packed headers have more behind their end");
    // Seven texts and then a list are too long.
    for (const std::string& texts : {std::string(), std::string(7, '\0')})
        EXPECT_THROW_MSG(dson::UnpackHeaders(texts + std::string(40, '\xff'), "wide.dsf"), base::FormatError,
                         "packed headers are cut off");
}

TEST_F(PackedHeaders, keep_that_there_is_no_dial_and_what_is_to_be_loaded)
{
    const dson::Document document = read(R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Links"}],
        "scene": {"extra": [{"type": "scene_post_load_script", "files": ["/People/Eyes.duf"]}]}})");
    const dson::Document again = dson::UnpackHeaders(dson::PackHeaders(document), document.file);
    EXPECT_FALSE(again.modifiers.front().hasChannel);
    EXPECT_EQ(again.addOns, std::vector<std::string>{"/People/Eyes.duf"});
    EXPECT_TRUE(repacked().modifiers.front().hasChannel);
}

TEST_F(PackedHeaders, are_of_morphs_alone)
{
    EXPECT_TRUE(dson::CanPackHeaders(read(morphText)));
    EXPECT_FALSE(dson::CanPackHeaders(dson::ReadDocument(_folder.write("wide.dsf", morphText))));
    const std::string begin = R"({"file_version": "0.6.0.0", )";
    for (
        const char* const other :
        {R"("node_library": [{"id": "a"}]})", R"("scene": {"nodes": [{"id": "a", "url": "#a"}]}})",
         R"("scene": {"animations": [{"url": "#a?value", "keys": [[0, 1]]}]}})",
         R"("modifier_library": [{"id": "s", "skin": {"vertex_count": 1, "joints": []}}]})",
         R"("modifier_library": [{"id": "s", "extra": [{"type": "studio/modifier/smoothing"}]}]})",
         R"("scene": {"modifiers": [{"id": "s", "url": "#s", "extra": [{"type": "studio/modifier/push"}]}]}})",
         R"("geometry_library": [{"id": "g", "vertices": {"values": [[0, 0, 0]]}, "polylist": {"values": []}}]})",
         R"("modifier_library": [{"id": "c", "channel": {"id": "value", "type": "color", "value": [1, 0, 0]}}]})",
         R"("x": {"influence_weights": {"count": 1, "values": [[0, 1]]}}})"})
        EXPECT_FALSE(dson::CanPackHeaders(read(begin + other))) << other;
}
