// Snapshots of the scene's labels.
// SPDX-License-Identifier: MIT

#include "ks_node-list.h"
#include "tests/host/host_fixture.h"

namespace {

class NodeListTest : public HostTest {
protected:
    kst::NodeList list;
};

TEST_F(NodeListTest, finds_what_was_added_since_the_snapshot)
{
    AddNode("Old");
    list.snapshot();
    DzNode* const fresh = AddNode("Fresh");
    EXPECT_EQ(list.getNew(), std::set<DzNode*>{fresh});
    EXPECT_EQ(list.findNewByLabel("Fresh"), fresh);
    EXPECT_EQ(list.findNewByLabel("fresh"), nullptr);
}

TEST_F(NodeListTest, does_not_report_a_new_node_with_an_old_label)
{
    DzNode* const parent = AddNode("Parent");
    AddNode("Twin", parent);
    list.snapshot();
    AddNode("Twin", parent);
    EXPECT_TRUE(list.getNew().empty());
}

TEST_F(NodeListTest, takes_all_for_new_when_cleared)
{
    DzNode* const node = AddNode("Node");
    list.snapshot();
    list.clear();
    EXPECT_EQ(list.getNew(), std::set<DzNode*>{node});
}

TEST_F(NodeListTest, walks_children_below_their_parents_and_stops_on_request)
{
    DzNode* const parent = AddNode("Parent");
    DzNode* const child = AddNode("Child", parent);
    std::vector<DzNode*> visited;
    EXPECT_TRUE(kst::NodeList::ForEachNode(parent, [&](DzNode& node) {
        visited.push_back(&node);
        return true;
    }));
    EXPECT_EQ(visited, std::vector<DzNode*>{child});
    EXPECT_FALSE(kst::NodeList::ForEachNode(nullptr, [](DzNode&) { return false; }));
}

TEST_F(NodeListTest, tells_nodes_of_the_scene_from_others)
{
    const DzNode* const inside = AddNode("Inside");
    const DzNode outside;
    EXPECT_TRUE(kst::NodeList::IsSceneNode(inside));
    EXPECT_FALSE(kst::NodeList::IsSceneNode(&outside));
}

} // namespace
