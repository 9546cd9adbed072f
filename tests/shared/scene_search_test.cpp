// How far look-ups in the scene reach, and where they stop.
// SPDX-License-Identifier: MIT

#include "dzenumproperty.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "ks_daz-helpers.h"
#include "ks_node-list.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

namespace {

using kst::daz::FindProperty;
using kst::daz::PropertyLocation;
using Nodes = std::vector<DzNode*>;

/// A node with a mesh, and with a property of its own.
class PropertySearch : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        node = AddNode("Chair");
        auto* const shape = new DzFacetShape;
        auto* const mesh = new DzFacetMesh;
        mesh->enableSubDivision(true); // gives the shape its properties
        shape->setFacetMesh(mesh);
        auto* const object = new DzObject;
        object->addShape(shape);
        node->setObject(object);
        node->addProperty(new DzFloatProperty(QLatin1String("Height"), true, true));
    }

    DzNode* node = nullptr;
};

TEST_F(PropertySearch, reaches_the_shape_when_any_place_will_do)
{
    DzProperty* const level = kst::daz::FindNodeResolutionEnumProperty(*node, true);
    ASSERT_NE(level, nullptr);
    EXPECT_EQ(FindProperty(*node, PropertyLocation::Any, "lodlevel", true), level);
}

TEST_F(PropertySearch, finds_nothing_in_a_place_that_there_is_not)
{
    for (const int number : {4, 5, 100}) {
        const auto place = static_cast<PropertyLocation>(number);
        EXPECT_EQ(FindProperty(*node, place, "Height", false), nullptr) << number;
        EXPECT_EQ(FindProperty(*node, place, "lodlevel", false), nullptr) << number;
        EXPECT_EQ(MessageOf([&] { FindProperty(*node, place, "Height", true); }),
                  "node " + Quoted("Chair") + " (" + Quoted("Chair") + ") has no property named " +
                      Quoted("Height"));
    }
}

using NodeSearch = HostTest;

TEST_F(NodeSearch, takes_a_snapshot_of_what_is_below_the_root_it_is_given)
{
    DzNode* const root = AddNode("Root");
    DzNode* const other = AddNode("Other");
    AddNode("Below", AddNode("Child", root));
    kst::NodeList list;
    list.snapshot(root);
    EXPECT_EQ(list.getNew(), (std::set<DzNode*>{root, other}));
}

TEST_F(NodeSearch, tells_what_is_new_below_the_root_it_is_given)
{
    DzNode* const root = AddNode("Root");
    DzNode* const child = AddNode("Child", root);
    kst::NodeList list;
    list.snapshot();
    AddNode("Fresh elsewhere");
    DzNode* const fresh = AddNode("Fresh below", child);
    EXPECT_EQ(list.getNew(root), std::set<DzNode*>{fresh});
}

TEST_F(NodeSearch, goes_no_further_once_it_is_stopped_further_down)
{
    DzNode* const root = AddNode("Root");
    DzNode* const first = AddNode("First", root);
    DzNode* const below = AddNode("Below", first);
    AddNode("Second", root);
    Nodes visited;
    EXPECT_FALSE(kst::NodeList::ForEachNode(root, [&](DzNode& node) {
        visited.push_back(&node);
        return &node != below;
    }));
    EXPECT_EQ(visited, (Nodes{first, below}));
}

using ObjFiles = HostTest;

TEST_F(ObjFiles, are_written_without_asking)
{
    kst::daz::SetSceneSelection(*AddNode("Chair"));
    DzFileIOSettings settings;
    MessageOf([&] { kst::daz::ExportOneObj_X(settings, "/proc/none/x.obj"); });
    EXPECT_EQ(settings.getIntValue(QLatin1String("RunSilent")), 1);
}

TEST_F(ObjFiles, are_read_without_asking)
{
    DzFileIOSettings settings;
    MessageOf([&] { kst::daz::ImportOneObj_X(settings, "/proc/none/x.obj"); });
    EXPECT_EQ(settings.getIntValue(QLatin1String("RunSilent")), 1);
}

} // namespace
