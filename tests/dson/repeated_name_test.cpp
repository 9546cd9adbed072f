// Files whose objects say something twice.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "tests/content/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using Phrases = std::vector<std::string>;

class RepeatedName : public testing::Test {
protected:
    dson::Document read(const std::string& members) const
    {
        return dson::ReadDocument(
            _folder.write("odd.duf", "{\"file_version\": \"0.6.0.0\",\n" + members + "}"));
    }
    static Phrases told(const dson::Document& document)
    {
        Phrases phrases;
        for (const base::Diagnostic& diagnostic : document.diagnostics)
            phrases.push_back(diagnostic.what);
        return phrases;
    }
    Phrases toldOf(const std::string& members) const { return told(read(members)); }

    const TempFolder _folder;
};

} // namespace

TEST_F(RepeatedName, counts_the_first_time_wherever_it_stands)
{
    const dson::Document document = read(R"("modifier_library": [{"id": "Up", "label": "Over",
        "channel": {"id": "value", "value": 0.25, "max": 1,
        "value": 0.75}, "id": "Down", "formulas": [{"output": "#a", "operations": [{"op": "push", "val": 2,
        "val": 3}]}]}],
        "scene": {"nodes": [{"id": "A", "translation": [{"id": "x", "current_value": 4, "current_value": 5}]}]})");
    EXPECT_EQ(document.modifiers.at(0).id, "Up");
    EXPECT_EQ(document.modifiers.at(0).channel.value, 0.25);
    EXPECT_EQ(document.modifiers.at(0).formulas.at(0).operations.at(0).value, 2.0);
    EXPECT_EQ(document.nodeInstances.at(0).channels.at("translation/x"), 4.0);
    EXPECT_EQ(told(document), Phrases{"has 4 members more than once; the first counts: \"value\" in line 4, "
                                      "\"id\" in line 4, \"val\" in line 5"});
}

TEST_F(RepeatedName, is_the_same_one_in_another_notation)
{
    EXPECT_EQ(toldOf("\"node_library\": [{\"id\": \"A\", \"\\u0069d\": \"B\"}]"),
              Phrases{"has 1 member more than once; the first counts: \"id\" in line 2"});
    const dson::Document odd = read("\"node_library\": [{id: \"A\",}, {id: \"C\",\n'id': \"B\"}]");
    EXPECT_EQ(odd.nodes.at(1).id, "C");
    EXPECT_EQ(told(odd).back(), "has 1 member more than once; the first counts: \"id\" in line 3");
}

TEST_F(RepeatedName, is_found_within_lists_of_any_kind)
{
    const char* const lists[] = {
        R"("scene": {"nodes": [null, {"id": "A", "id": "B"}]})", R"("x": [[{"a": 1}], [{"a": 1, "a": 2}]])",
        R"("x": ["b", {"a": 1, "a": 2}])", R"("x": {"y": [[], {"a": 1}, 5, {"a": 1, "a": 2}]})"};
    for (const char* const list : lists) {
        const Phrases phrases = toldOf(list);
        ASSERT_FALSE(phrases.empty()) << list;
        EXPECT_EQ(phrases.back().find("has 1 member more than once"), 0u) << phrases.back();
    }
}

TEST_F(RepeatedName, of_another_object_is_none)
{
    EXPECT_EQ(toldOf(R"("id": "A", "modifier_library": [{"id": "A", "channel": {"id": "A"}}, {"id": "B"}])"),
              Phrases{});
}

TEST_F(RepeatedName, is_found_among_any_number_of_others)
{
    std::string members;
    for (int i = 0; i < 200000; ++i)
        members += "\"m" + std::to_string(i) + "\": 1,\n";
    EXPECT_EQ(toldOf(members + "\"last\": 1"), Phrases{});
    EXPECT_EQ(toldOf(members + "\"m0\": 1").size(), 1u);
    EXPECT_EQ(toldOf(members + "\"m199999\": 1").size(), 1u);
    EXPECT_EQ(
        toldOf(members + "\"m0\": 1,\n\"m16\": 1, \"m199999\": 1"),
        Phrases{"has 3 members more than once; the first counts: \"m0\" in line 200002, \"m16\" in line "
                "200003, \"m199999\" in line 200003"});
}

TEST_F(RepeatedName, is_told_though_displacements_are_not_read)
{
    const auto file =
        _folder.write("odd.dsf", R"({"file_version": "0.6.0.0", "modifier_library": [{"id": "Up",
        "morph": {"deltas": {"values": [[0, 1, 2, 3]]}, "vertex_count": 4, "vertex_count": 5}}]})");
    const dson::Document document = dson::ReadDocument(file, {false});
    EXPECT_EQ(document.modifiers.at(0).morph->vertexCount, 4);
    EXPECT_EQ(told(document),
              Phrases{"has 1 member more than once; the first counts: \"vertex_count\" in line 2"});
    base::Diagnostics again;
    dson::ReadDeltas(file, "Up", &again);
    EXPECT_TRUE(again.empty()) << "once is enough";
}
