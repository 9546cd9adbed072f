// Finding nodes, objects and properties.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "ks_daz-helpers.h"
#include "ks_daz-managers.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

using namespace kst::daz;

namespace {

class HelpersTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        figure = new DzFigure;
        figure->setName(QLatin1String("Mini"));
        figure->setLabel(QLatin1String("Mini One"));
        auto* const bone = new DzBone;
        bone->setName(QLatin1String("l_thigh"));
        figure->addNodeChild(bone);
        auto* const object = new DzObject;
        auto* const shape = new DzFacetShape;
        auto* const mesh = new DzFacetMesh;
        for (const float x : {0.0f, 1.0f, 2.0f})
            mesh->addVertex(x, x * x, 0.0f);
        const int corners[4] = {0, 1, 2, -1};
        mesh->addFacet(corners);
        mesh->enableSubDivision(true);
        shape->setFacetMesh(mesh);
        object->addShape(shape);
        figure->setObject(object);
        dzScene->addNode(figure);
        prop = new DzNode;
        prop->setName(QLatin1String("Chair"));
        prop->setLabel(QLatin1String("Chair"));
        dzScene->addNode(prop);
    }

    DzFloatProperty* addFloat(DzElement& owner, const char* name)
    {
        auto* const property = new DzFloatProperty(QLatin1String(name), true, true);
        owner.addProperty(property);
        return property;
    }

    DzFigure* figure = nullptr;
    DzNode* prop = nullptr;
};

TEST_F(HelpersTest, select_makes_a_node_the_only_one)
{
    figure->select(true);
    prop->select(true);
    EXPECT_TRUE(SetSceneSelection(*prop));
    EXPECT_EQ(GetSceneSelection(), std::vector<DzNode*>{prop});
    EXPECT_FALSE(SetSceneSelection(*prop));
    EXPECT_EQ(GetPrimarySceneSelection(true), prop);
    dzScene->selectAllNodes(false);
    EXPECT_EQ(GetPrimarySceneSelection(false), nullptr);
    EXPECT_EQ(MessageOf([] { GetPrimarySceneSelection(true); }), "nothing selected in scene");
}

TEST_F(HelpersTest, selection_comes_in_the_order_of_selecting)
{
    dzScene->selectAllNodes(false);
    prop->select(true);
    figure->select(true);
    EXPECT_EQ(GetSceneSelection(), (std::vector<DzNode*>{prop, figure}));
}

TEST_F(HelpersTest, a_bone_stands_for_its_figure)
{
    EXPECT_EQ(ResolveBone(figure->findBone(QLatin1String("l_thigh"))), figure);
    EXPECT_EQ(ResolveBone(prop), prop);
    EXPECT_EQ(ResolveBone(nullptr), nullptr);
    EXPECT_EQ(&ResolveToFigure_X(*figure), figure);
    EXPECT_EQ(MessageOf([&] { ResolveToFigure_X(*prop); }), "node " + Quoted("Chair") + " is not a DzFigure");
}

TEST_F(HelpersTest, stock_figures_are_known_by_address_whatever_the_case)
{
    EXPECT_EQ(GetBaseFigure("/data/daz%203d/genesis%209/base/genesis9.dsf#genesis9"), BaseFigure::Genesis9);
    EXPECT_EQ(GetBaseFigure("/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Eyes"), BaseFigure::None);
    EXPECT_EQ(GetBaseFigure("/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female"),
              BaseFigure::Genesis8_1Female);
    EXPECT_EQ(GetBaseFigure(""), BaseFigure::None);
}

TEST_F(HelpersTest, every_stock_figure_has_its_address)
{
    const std::pair<const char*, BaseFigure> figures[] = {
        {"/data/DAZ%203D/Genesis%203/Female/Genesis3Female.dsf#Genesis3Female", BaseFigure::Genesis3Female},
        {"/data/Daz%203D/Genesis%208/Female/Genesis8Female.dsf#Genesis8Female", BaseFigure::Genesis8Female},
        {"/data/Daz%203D/Genesis%208/Female%208_1/Genesis8_1Female.dsf#Genesis8_1Female",
         BaseFigure::Genesis8_1Female},
        {"/data/DAZ%203D/Genesis%203/Male/Genesis3Male.dsf#Genesis3Male", BaseFigure::Genesis3Male},
        {"/data/Daz%203D/Genesis%208/Male/Genesis8Male.dsf#Genesis8Male", BaseFigure::Genesis8Male},
        {"/data/Daz%203D/Genesis%208/Male%208_1/Genesis8_1Male.dsf#Genesis8_1Male",
         BaseFigure::Genesis8_1Male},
        {"/data/DAZ%203D/Genesis%209/Base/Genesis9.dsf#Genesis9", BaseFigure::Genesis9}};
    for (const auto& [uri, base] : figures) {
        EXPECT_EQ(GetBaseFigure(uri), base);
        EXPECT_EQ(GetBaseFigure(QString::fromUtf8(uri).toUpper().toStdString()), base);
        EXPECT_EQ(GetBaseFigure(std::string(uri) + "x"), BaseFigure::None);
    }
    EXPECT_EQ(static_cast<int>(BaseFigure::Genesis9), 7);
}

TEST_F(HelpersTest, missing_objects_are_null_or_named)
{
    EXPECT_EQ(GetObject(*prop, false), nullptr);
    EXPECT_EQ(MessageOf([&] { GetObject(*prop, true); }),
              "node " + Quoted("Chair") + " (" + Quoted("Chair") + ") has no DzObject");
    prop->setObject(new DzObject);
    EXPECT_EQ(GetCurrentShape(*prop, false), nullptr);
    EXPECT_EQ(MessageOf([&] { GetCurrentShape(*prop, true); }),
              "node " + Quoted("Chair") + " has no DzShape");
}

TEST_F(HelpersTest, any_prefers_the_node_over_its_modifiers)
{
    auto* const morph = new DzMorph;
    morph->setName(QLatin1String("Round"));
    figure->getObject()->addModifier(morph);
    EXPECT_EQ(FindProperty(*figure, PropertyLocation::Any, "Round", true), morph->getValueControl());
    DzFloatProperty* const own = addFloat(*figure, "Round");
    EXPECT_EQ(FindProperty(*figure, PropertyLocation::Any, "Round", true), own);
}

TEST_F(HelpersTest, a_modifier_with_two_properties_is_searched_by_property_name)
{
    auto* const modifier = new DzModifier;
    modifier->setName(QLatin1String("Smooth"));
    addFloat(*modifier, "Strength");
    DzFloatProperty* const amount = addFloat(*modifier, "Amount");
    figure->getObject()->addModifier(modifier);
    EXPECT_EQ(FindProperty(*figure, PropertyLocation::Modifiers, "Smooth", false), nullptr);
    EXPECT_EQ(FindProperty(*figure, PropertyLocation::Modifiers, "Amount", false), amount);
}

TEST_F(HelpersTest, a_property_of_another_kind_is_null_or_named)
{
    auto* const level = new DzIntProperty(QLatin1String("Count"), true, true, 1);
    figure->addProperty(level);
    EXPECT_EQ(FindFloatProperty(*figure, PropertyLocation::Node, "Count", false), nullptr);
    EXPECT_EQ(MessageOf([&] { FindFloatProperty(*figure, PropertyLocation::Node, "Count", true); }),
              "expected property " + Quoted("Count") + " in node " + Quoted("Mini") + " (" +
                  Quoted("Mini One") + ") to be a DzFloatProperty but it is DzIntProperty instead");
    EXPECT_EQ(MessageOf([&] { FindFloatProperty(*figure, PropertyLocation::Node, "Nope", true); }),
              "node " + Quoted("Mini") + " (" + Quoted("Mini One") + ") has no property named " +
                  Quoted("Nope"));
}

TEST_F(HelpersTest, a_property_is_found_by_its_class_or_the_class_it_has_is_named)
{
    auto* const count = new DzIntProperty(QLatin1String("Count"), true, true, 1);
    auto* const kind = new DzEnumProperty(QLatin1String("Kind"), true, true);
    auto* const isOn = new DzBoolProperty(QLatin1String("On"), true, true);
    figure->addProperty(count);
    figure->addProperty(kind);
    figure->addProperty(isOn);
    DzFloatProperty* const amount = addFloat(*figure, "Amount");
    const auto node = PropertyLocation::Node;
    EXPECT_EQ(FindTypedProperty<DzIntProperty>(*figure, node, "Count", true), count);
    EXPECT_EQ(FindTypedProperty<DzEnumProperty>(*figure, node, "Kind", true), kind);
    EXPECT_EQ(FindTypedProperty<DzBoolProperty>(*figure, node, "On", true), isOn);
    EXPECT_EQ(FindTypedProperty<DzFloatProperty>(*figure, node, "Amount", true), amount);
    EXPECT_EQ(FindTypedProperty<DzIntProperty>(*figure, node, "Nope", false), nullptr);
    EXPECT_EQ(FindTypedProperty<DzFloatProperty>(*figure, node, "Count", false), nullptr);
    const auto message = [](const char* name, const char* wanted, const char* actual) {
        return "expected property " + Quoted(name) + " in node " + Quoted("Mini") + " (" +
               Quoted("Mini One") + ") to be a " + wanted + " but it is " + actual + " instead";
    };
    EXPECT_EQ(MessageOf([&] { FindTypedProperty<DzFloatProperty>(*figure, node, "Count", true); }),
              message("Count", "DzFloatProperty", "DzIntProperty"));
    EXPECT_EQ(MessageOf([&] { FindTypedProperty<DzIntProperty>(*figure, node, "Amount", true); }),
              message("Amount", "DzIntProperty", "DzFloatProperty"));
    EXPECT_EQ(MessageOf([&] { FindTypedProperty<DzEnumProperty>(*figure, node, "On", true); }),
              message("On", "DzEnumProperty", "DzBoolProperty"));
    EXPECT_EQ(MessageOf([&] { FindTypedProperty<DzBoolProperty>(*figure, node, "Kind", true); }),
              message("Kind", "DzBoolProperty", "DzEnumProperty"));
}

TEST_F(HelpersTest, bones_are_turned_by_name)
{
    SetBoneValueOrThrow(*figure, "l_thigh", "ZRotate", 6.5f);
    EXPECT_EQ(FindBoneProperty(*figure, "l_thigh", "ZRotate", true)->getValue(), 6.5f);
    EXPECT_EQ(FindBoneProperty(*figure, "tail", "ZRotate", false), nullptr);
    EXPECT_EQ(MessageOf([&] { SetBoneValueOrThrow(*figure, "tail", "ZRotate", 1.0f); }),
              "cannot find bone " + Quoted("tail") + " in figure " + Quoted("Mini One"));
}

TEST_F(HelpersTest, resolution_is_read_and_set)
{
    EXPECT_EQ(GetNodeResolution(*prop), NodeResolution::Unknown);
    EXPECT_TRUE(SetNodeResolution(*figure, NodeResolution::BaseResolution, true));
    EXPECT_EQ(GetNodeResolution(*figure), NodeResolution::BaseResolution);
    EXPECT_FALSE(SetNodeResolution(*figure, NodeResolution::Unknown, false));
    EXPECT_EQ(GetNodeResolution(*figure), NodeResolution::BaseResolution);
    EXPECT_EQ(MessageOf([&] { SetNodeResolution(*figure, NodeResolution::Unknown, true); }),
              "invalid enum value");
    int level = -1;
    EXPECT_TRUE(GetSubdivisionLevel(*figure, &level));
    EXPECT_EQ(level, 1);
    EXPECT_FALSE(GetSubdivisionLevel(*prop, &level));
}

TEST_F(HelpersTest, a_failed_export_or_import_names_the_file)
{
    SetSceneSelection(*figure);
    DzFileIOSettings settings;
    const std::string path = "/proc/none/x.obj";
    EXPECT_EQ(MessageOf([&] {
                  ExportOneObj_X(settings, path);
              }).find("failed to export OBJ " + Quoted(path) + ": "),
              0u);
    EXPECT_EQ(MessageOf([&] {
                  ImportOneObj_X(settings, path);
              }).find("failed to export import OBJ " + Quoted(path) + ": "),
              0u);
    EXPECT_EQ(settings.getIntValue(QLatin1String("RunSilent")), 1);
}

TEST_F(HelpersTest, actions_are_found_by_class)
{
    EXPECT_NE(FindActionOrThrow("DzDeleteAction", true), nullptr);
    EXPECT_EQ(FindActionOrThrow("DzNoAction", false), nullptr);
    EXPECT_EQ(MessageOf([] { FindActionOrThrow("DzNoAction", true); }),
              "failed to find action " + Quoted("DzNoAction"));
}

TEST_F(HelpersTest, named_finders_look_on_modifiers_and_fail_with_the_propertys_name)
{
    auto* const modifier = new DzMorph;
    modifier->setName(QLatin1String("Smoothing"));
    figure->getObject()->addModifier(modifier);
    const auto expect = [&](const char* name, auto find, DzProperty* property) {
        EXPECT_EQ(find(*figure, false), nullptr) << name;
        EXPECT_EQ(MessageOf([&] { find(*figure, true); }), "node " + Quoted("Mini") + " (" +
                                                               Quoted("Mini One") +
                                                               ") has no property named " + Quoted(name));
        modifier->addProperty(property);
        EXPECT_EQ(find(*figure, true), property) << name;
    };
    const auto addBool = [](const char* name) { return new DzBoolProperty(QLatin1String(name), true, true); };
    const auto addInt = [](const char* name) { return new DzIntProperty(QLatin1String(name), true, true); };
    const auto expectBool = [&](const char* name, auto find) { expect(name, find, addBool(name)); };
    const auto expectInt = [&](const char* name, auto find) { expect(name, find, addInt(name)); };
    expectBool("Enable Smoothing", FindEnableSmoothingProperty);
    expectBool("Interactive Update", FindSmoothingInteractiveUpdateProperty);
    expectBool("Generate PreRender Hairs", FindGeneratePreRenderHairsProperty);
    expectBool("Preview Pre Render Hairs", FindPreviewPreRenderHairsProperty);
    expectInt("Render Line Tessellation Sides", FindRenderLineTessellationSidesProperty);
    expectInt("Viewport Line Tessellation Sides", FindViewportLineTessellationSidesProperty);
    expectBool("Freeze Simulation", FindFreezeSimulationProperty);
}

TEST_F(HelpersTest, visible_in_simulation_is_one_of_the_nodes_own_and_may_be_missing)
{
    DzProperty* const property = FindVisibleInSimulationProperty(*prop);
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(property->getOwner(), prop);
    prop->removeProperty(property);
    EXPECT_EQ(FindVisibleInSimulationProperty(*prop), nullptr);
}

} // namespace
