// Files that have something else where a list of things belongs.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "tests/content/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using Strings = std::vector<std::string>;

class OddLists : public ::testing::Test {
protected:
    dson::Document read(const std::string& members) const
    {
        return dson::ReadDocument(
            _folder.write("odd.duf", R"({"file_version": "0.6.0.0", )" + members + "}"));
    }
    static Strings told(const dson::Document& document)
    {
        Strings lines;
        for (const base::Diagnostic& diagnostic : document.diagnostics)
            lines.push_back(diagnostic.what);
        return lines;
    }
    static Strings ids(const dson::Document& document)
    {
        Strings ids;
        for (const dson::NodeInstance& node : document.nodeInstances)
            ids.push_back(node.id);
        for (const dson::ModifierInstance& modifier : document.modifierInstances)
            ids.push_back(modifier.id);
        for (const dson::Node& node : document.nodes)
            ids.push_back(node.id);
        return ids;
    }

private:
    TempFolder _folder;
};

} // namespace

TEST_F(OddLists, are_read_from_the_members_of_an_object)
{
    const dson::Document document = read(R"("node_library": {"hip": {"id": "hip"}},
        "scene": {"nodes": {"0": {"id": "A"}, "1": {"id": "B"}}, "modifiers": {"m": {"id": "M"}}})");
    EXPECT_EQ(ids(document), (Strings{"A", "B", "M", "hip"}));
    EXPECT_EQ(told(document),
              (Strings{"3 lists are objects, the members of which are read: node_library, nodes, "
                       "modifiers"}));
}

TEST_F(OddLists, are_read_from_one_thing_by_itself)
{
    const dson::Document document = read(R"("scene": {"nodes": {"id": "A", "geometries": {"id": "G",
        "url": "#G"}}, "animations": {"url": "#A?value", "keys": [[0, 1]]}})");
    EXPECT_EQ(ids(document), Strings{"A"});
    ASSERT_EQ(document.nodeInstances[0].geometries.size(), 1u);
    EXPECT_EQ(document.nodeInstances[0].geometries[0].id, "G");
    EXPECT_EQ(document.animations.size(), 1u);
    EXPECT_EQ(told(document),
              (Strings{"3 lists are one thing by themselves, which is read: nodes, geometries, "
                       "animations"}));
}

TEST_F(OddLists, lose_what_is_no_thing)
{
    const dson::Document document =
        read(R"("scene": {"nodes": [null, {"id": "A"}, 5, "B"], "modifiers": "none", "animations": {}})");
    EXPECT_EQ(ids(document), Strings{"A"});
    EXPECT_EQ(told(document), (Strings{"3 entries of lists are no objects and left out: nodes",
                                       "1 list is something else and left out: modifiers"}));
}

TEST_F(OddLists, are_read_within_lists)
{
    const dson::Document document = read(
        R"("scene": {"nodes": [{"id": "A"}, [{"id": "B"}, [{"id": "C"}, 1]]], "modifiers": [[{"id": "M"}]]})");
    EXPECT_EQ(ids(document), (Strings{"A", "B", "C", "M"}));
    EXPECT_EQ(told(document),
              (Strings{"3 lists are within others, and their entries are read: nodes, modifiers",
                       "1 entry of a list is no object and left out: nodes"}));
}

TEST_F(OddLists, are_read_each_time_that_they_are_there)
{
    const dson::Document document = read(R"("asset_info": {"id": "/first.duf"}, "scene": {},
        "scene": {"nodes": [{"id": "A"}], "nodes": [{"id": "B"}]}, "asset_info": {"id": "/second.duf"},
        "node_library": [{"id": "C"}], "node_library": [{"id": "D"}])");
    EXPECT_EQ(ids(document), (Strings{"A", "B", "C", "D"}));
    EXPECT_EQ(document.info.id, "/first.duf");
    EXPECT_EQ(told(document),
              (Strings{"3 members are there more than once, and read each time: node_library, scene, nodes",
                       "has 1 member more than once; the first counts: \"asset_info\" in line 2"}));
}

TEST_F(OddLists, of_scenes_are_all_read)
{
    const dson::Document document =
        read(R"("scene": [{"nodes": [{"id": "A"}]}, {"nodes": [{"id": "B"}]}, 7])");
    EXPECT_EQ(ids(document), (Strings{"A", "B"}));
    EXPECT_EQ(told(document), (Strings{"1 object is a list, the entries of which are read: scene",
                                       "1 entry of a list is no object and left out: scene"}));
}

TEST_F(OddLists, that_are_lists_are_not_told)
{
    EXPECT_EQ(told(read(R"("modifier_library": [], "scene": {"nodes": [{"id": "A", "geometries": []}],
        "modifiers": null})")),
              Strings());
}

TEST_F(OddLists, of_joints_have_the_joints_names)
{
    const dson::Document document = read(R"("modifier_library": [{"id": "Skin", "skin": {"node": "#Doll",
        "vertex_count": 2, "joints": {"hip": {"node_weights": {"values": [[0, 1]]}},
        "hand": {"node": "#arm", "node_weights": {"values": [[1, 1]]}}}}}])");
    ASSERT_EQ(document.skins.size(), 1u);
    const std::vector<dson::JointBinding>& joints = document.skins[0].binding.joints;
    ASSERT_EQ(joints.size(), 2u);
    EXPECT_EQ(joints[0].node, "hip");
    EXPECT_EQ(joints[0].vertices, std::vector<std::uint32_t>{0});
    EXPECT_EQ(joints[1].node, "arm");
    EXPECT_EQ(told(document), (Strings{"1 list is an object, the members of which are read: joints"}));
}

TEST_F(OddLists, hold_displacements_all_the_same)
{
    const dson::Document document = read(R"("modifier_library": {"Up": {"id": "Up", "parent": "#Doll",
        "morph": {"vertex_count": 3, "deltas": {"count": 1, "values": [[2, 0, 1, 0]]}}}})");
    EXPECT_EQ(dson::ReadDeltas(document.file, "Up").size(), 1u);
}

TEST_F(OddLists, that_are_no_lists_of_nodes_are_told_once)
{
    EXPECT_EQ(told(read(R"("scene": {"nodes": "abc"})")),
              Strings{"1 list is something else and left out: nodes"});
}

TEST_F(OddLists, in_place_of_a_number_of_a_vector_are_told_once)
{
    for (const char* const member :
         {"center_point", "end_point", "orientation", "rotation", "translation", "scale"}) {
        const auto lines = [&](const std::string& vector) {
            return told(read(R"("node_library": [{"id": "A", "inherits_scale": true, ")" +
                             std::string(member) + "\": " + vector + "}]"));
        };
        const Strings noNumber{"has 1 value that is no number, not taken over, such as of a vector"};
        EXPECT_EQ(lines(R"([[], {"id": "y", "value": 1}, {"id": "z", "value": 1}])"), noNumber);
        EXPECT_EQ(lines("[1, [], 1]"), noNumber);
        EXPECT_EQ(lines("[1, \"left\", 1]"), noNumber);
        EXPECT_EQ(lines("[1, 1]"), Strings{"has a member " + std::string(member) +
                                           " that does not give one value for each of x, y and z"});
        EXPECT_EQ(lines("[1, []]").size(), 2u) << "one is no number, and another is not there";
    }
}

TEST_F(OddLists, of_keys_that_say_nothing_are_told)
{
    const auto animated = [this](const char* keys) {
        return read(R"("scene": {"nodes": [{"id": "A"}], "animations": [{"url": "#A?value", "keys": )" +
                    std::string(keys) + "}]}");
    };
    for (const char* const keys :
         {"{}", "[{}]", "[7]", R"([["abc", 1]])", "[[0, {}]]", "[[0]]", "[[0, null]]"}) {
        const dson::Document document = animated(keys);
        EXPECT_EQ(told(document), Strings{"1 key of animations is not a time and a number and left out"})
            << keys;
        EXPECT_TRUE(document.kept->idle.empty()) << keys;
    }
    EXPECT_EQ(told(animated("[{}, 7]")),
              Strings{"2 keys of animations are not a time and a number and left out"});
}

TEST_F(OddLists, are_no_keys_of_colours_and_texts)
{
    for (const char* const keys : {"[[0, [1, 0, 0]]]", R"([[0, "red.png"]])"}) {
        const dson::Document document =
            read(R"("scene": {"nodes": [{"id": "A"}], "animations": [{"url": "#A?value", "keys": )" +
                 std::string(keys) + "}]}");
        EXPECT_EQ(told(document), Strings{}) << keys;
        EXPECT_EQ(document.kept->idle, Strings{"1 value that is no number"}) << keys;
    }
}
