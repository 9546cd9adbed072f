// Scenes, clothes and presets that other programs wrote.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzcontentmgr.h"
#include "dzdformmodifier.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzselectionmap.h"
#include "dzweightmap.h"
#include "host/content/content_paths.h"
#include "host/content/gzip.h"
#include "tests/host/foreign_fixture.h"

#include <chrono>

namespace {

namespace fs = std::filesystem;
using namespace doll;

class ForeignScene : public ForeignTest {
protected:
    /// A prop of one quad at the origin, /data/Nord/Hat.dsf#Hat, with a child node "Brim".
    void writeHat() const { write("data/Nord/Hat.dsf", File(hatMembers("Hat", "Brim"), "prop")); }
    static std::string hatMembers(const std::string& id, const std::string& child)
    {
        return R"("geometry_library": [{"id": ")" + id +
               R"(-g", "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
            "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Felt"]},
            "polylist": {"values": [[0,0,0,1,2,3]]}}],
            "node_library": [{"id": ")" +
               id + R"(", "type": "node", "label": ")" + id + R"("}, {"id": ")" + child +
               R"(", "type": "node", "parent": "#)" + id + R"("}])";
    }
    /// A second figure like the Doll, /data/Nord/Shirt/Shirt.dsf.
    void writeShirt() const { write("data/Nord/Shirt/Shirt.dsf", File(Figure(), "figure")); }
    static std::string shirt(const std::string& more)
    {
        return Instance("-s", R"(, "name": "Shirt", "label": "Shirt")" + more, "",
                        "/data/Nord/Shirt/Shirt.dsf");
    }
    /// A morph of the Shirt.
    void writeShirtMorph(const std::string& name, const std::string& more = "") const
    {
        std::string morph = Morph(name, 3, 2.0, more);
        morph.replace(morph.find("/data/Nord/Doll/Doll.dsf"), 24, "/data/Nord/Shirt/Shirt.dsf");
        write("data/Nord/Shirt/Morphs/" + name + ".dsf", ModifierFile(morph));
    }
    bool loadPreset(const std::string& scene, const std::string& type = "preset_pose")
    {
        return load("Presets/Preset.duf", File("\"scene\": {" + scene + "}", type));
    }
};

const char* const selfFollowing = R"({"id": "value", "type": "float", "auto_follow": true})";

} // namespace

TEST_F(ForeignScene, a_subset_is_added_to_what_is_there)
{
    ASSERT_NE(openDoll(), nullptr);
    ASSERT_TRUE(load("Scenes/Part.duf", Scene(Instance("-x", R"(, "label": "Other")"), "", "scene_subset")));
    EXPECT_NE(labelled("Doll"), nullptr);
    EXPECT_NE(labelled("Other"), nullptr);
    EXPECT_EQ(dzScene->getNumNodes(), 6);
}

TEST_F(ForeignScene, takes_the_place_of_what_is_there_only_when_it_can_be_loaded)
{
    ASSERT_NE(openDoll(), nullptr);
    const auto replaceBy = [&](const std::string& text) {
        const fs::path file = write("Scenes/New.duf", text);
        return dzApp->getContentMgr()->openFile(QString::fromStdString(file.string()), false);
    };
    EXPECT_FALSE(replaceBy(Scene(Instance("", "", "", "/data/Nord/Gone.dsf"))));
    EXPECT_FALSE(replaceBy("{"));
    EXPECT_FALSE(replaceBy(Scene("")));
    EXPECT_NE(labelled("Doll"), nullptr);
    EXPECT_TRUE(replaceBy(Scene(Instance("", R"(, "label": "New")"))));
    EXPECT_EQ(labelled("Doll"), nullptr);
    EXPECT_NE(labelled("New"), nullptr);
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}

TEST_F(ForeignScene, parents_may_stand_behind_their_children)
{
    const char* const nodes = R"({"id": "hand", "url": "/data/Nord/Doll/Doll.dsf#hand", "parent": "#hip",
         "rotation": [{"id": "z", "current_value": 90}]},
        {"id": "hip", "url": "/data/Nord/Doll/Doll.dsf#hip", "parent": "#Doll"},
        {"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": "Late"})";
    ASSERT_TRUE(load("Scenes/Order.duf", Scene(nodes)));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    ExpectAt(VertexAt(*labelled("Late"), 6), -10, 20, 0);
}

TEST_F(ForeignScene, parents_in_a_circle_are_cut)
{
    const char* const nodes =
        R"({"id": "A", "parent": "#B"}, {"id": "B", "parent": "#C"}, {"id": "C", "parent": "#A"},
        {"id": "Self", "parent": "#Self"})";
    ASSERT_TRUE(load("Scenes/Ring.duf", Scene(nodes)));
    EXPECT_EQ(dzScene->getNumNodes(), 4);
    EXPECT_TRUE(logged(" is below itself; its parent is left out")) << log().toStdString();
}

TEST_F(ForeignScene, bones_without_a_figure_are_left_out_with_one_line)
{
    const std::string bones = R"(, {"id": "b1", "url": "/data/Nord/Doll/Doll.dsf#hip"},
        {"id": "b2", "url": "/data/Nord/Doll/Doll.dsf#hand", "parent": "#nowhere"})";
    ASSERT_TRUE(load("Scenes/Bones.duf", Scene(Instance() + bones)));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    EXPECT_EQ(timesLogged("Bones.duf: 2 bones hang on no figure and are left out"), 1) << log().toStdString();
}

TEST_F(ForeignScene, a_prop_hangs_on_a_bone_and_moves_with_it)
{
    writeHat();
    const char* const hat =
        R"(, {"id": "hat", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat", "parent": "#hand",
        "translation": [{"id": "y", "current_value": 5}], "geometries": [{"id": "g", "url": "/data/Nord/Hat.dsf#Hat-g"}]})";
    ASSERT_TRUE(load("Scenes/Hat.duf",
                     Scene(Instance("", "", R"(, "rotation": [{"id": "z", "current_value": 90}])") + hat)));
    const DzNode* const node = dzScene->findNodeByLabel(QStringLiteral("Hat"));
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->getNodeParent()->getName(), QStringLiteral("hand"));
    EXPECT_NE(BoneOf(*node, "Brim"), nullptr);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    const DzFigure* const figure = qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    ASSERT_NE(figure, nullptr);
    // A prop's centre is absolute too: the origin, 20 below the hand's, and 5 above by its own translation.
    const DzVec3 place = node->getWSPos();
    ExpectAt(place, 15, 20, 0);
    ExpectAt(VertexAt(*node, 1), 15, 21, 0);
}

TEST_F(ForeignScene, a_parent_in_place_keeps_the_place_in_the_world)
{
    writeHat();
    const char* const hat = R"(, {"id": "hat", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat",
        "parent_in_place": "#hand", "translation": [{"id": "y", "current_value": 5}]})";
    ASSERT_TRUE(load("Scenes/Hat.duf",
                     Scene(Instance("", "", R"(, "rotation": [{"id": "z", "current_value": 90}])") + hat)));
    const DzNode* const node = dzScene->findNodeByLabel(QStringLiteral("Hat"));
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->getNodeParent()->getName(), QStringLiteral("hand"));
    ExpectAt(node->getWSPos(), 0, 5, 0, 1e-3f);
}

TEST_F(ForeignScene, props_may_be_defined_in_the_scene_file_and_groups_nowhere)
{
    const std::string members = hatMembers("Hat", "Brim") + R"(, "scene": {"nodes": [
        {"id": "Group", "name": "Group", "label": "Group 1", "translation": [0, 100, 0],
         "preview": {"type": "node", "center_point": [50, 50, 50], "end_point": [60, 60, 60], "rotation_order": "ZYX"}},
        {"id": "Hat-1", "url": "#Hat", "label": "Hat", "parent": "#Group", "geometries": [{"id": "g-1", "url": "#Hat-g"}]},
        {"id": "Brim-1", "url": "#Brim", "label": "Brim 1", "parent": "#Hat-1"},
        {"id": "Hat-2", "url": "#Hat", "label": "Empty", "parent": "#Brim-1"}]})";
    ASSERT_TRUE(load("Scenes/Own.duf", File(members, "scene_subset"))) << log().toStdString();
    const DzNode* const hat = dzScene->findNodeByLabel(QStringLiteral("Hat"));
    ASSERT_NE(hat, nullptr);
    ExpectAt(VertexAt(*hat, 2), 1, 101, 0);
    EXPECT_EQ(hat->getNodeParent()->getLabel(), QStringLiteral("Group 1"));
    ExpectAt(hat->getNodeParent()->getOrigin(), 0, 0, 0);
    const DzNode* const empty = dzScene->findNodeByLabel(QStringLiteral("Empty"));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->getObject(), nullptr);
    EXPECT_EQ(empty->getNodeParent()->getLabel(), QStringLiteral("Brim 1"));
}

TEST_F(ForeignScene, an_instance_changes_what_its_definition_says)
{
    writeShape("Wide", Control("Wide", "",
                               R"({"id": "value", "label": "Wide", "min": 0, "max": 1, "clamped": true})"));
    const char* const hand = R"(, "label": "Left Hand", "rotation_order": "YZX", "inherits_scale": true,
        "center_point": [{"id": "y", "current_value": 25}],
        "rotation": [{"id": "x", "current_value": 5, "locked": true}, {"id": "z", "visible": false, "label": "Bend",
                      "min": -10, "max": 10, "clamped": true}],
        "general_scale": {"id": "general_scale", "current_value": 2})";
    const char* const modifiers = R"(, "modifiers": [
        {"id": "Wide-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Wide.dsf#Wide", "parent": "#Doll-1",
         "channel": {"id": "value", "label": "Wider", "max": 3, "current_value": 2.5, "visible": false, "locked": true}}])";
    ASSERT_TRUE(load("Scenes/Changed.duf", Scene(Instance("", "", hand), modifiers)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    const DzNode* const bone = BoneOf(*figure, "hand");
    EXPECT_EQ(bone->getLabel(), QStringLiteral("Left Hand"));
    EXPECT_EQ(bone->getRotationOrder().toString(), QStringLiteral("YZX"));
    EXPECT_TRUE(bone->inheritsScale());
    ExpectAt(bone->getOrigin(), 0, 25, 0);
    EXPECT_EQ(bone->getXRotControl()->getValue(), 5.0f);
    EXPECT_TRUE(bone->getXRotControl()->isLocked());
    EXPECT_TRUE(bone->getZRotControl()->isHidden());
    EXPECT_EQ(bone->getZRotControl()->getLabel(), QStringLiteral("Bend"));
    EXPECT_EQ(bone->getZRotControl()->getMin(), -10.0f);
    EXPECT_EQ(bone->getScaleControl()->getValue(), 2.0f);
    const DzNumericProperty* const dial = DialIn(*figure, "Wide");
    EXPECT_EQ(dial->getLabel(), QStringLiteral("Wider"));
    EXPECT_EQ(dial->getDoubleValue(), 2.5);
    EXPECT_EQ(dial->getDoubleMin(), 0.0);
    EXPECT_TRUE(dial->isHidden() && dial->isLocked());
}

TEST_F(ForeignScene, favourites_are_marked_where_the_scene_lists_them)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    writeShape("Down", Morph("Down", 1, 1.0));
    ASSERT_TRUE(load("Scenes/Liked.duf", Scene(Instance("", R"(, "extra": {"type": "studio/node", "favorites":
        ["Up/Value", "XTranslate", "Unknown", 7]})"))));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_TRUE(DialIn(*figure, "Up")->isFavorite());
    EXPECT_TRUE(figure->getXPosControl()->isFavorite());
    EXPECT_FALSE(DialIn(*figure, "Down")->isFavorite());
    EXPECT_FALSE(figure->getYPosControl()->isFavorite());
}

TEST_F(ForeignScene, an_alias_has_its_targets_value_and_limits_and_none_of_its_own)
{
    writeShape(
        "Up",
        Control("Up", R"(, "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0]]}})",
                R"({"id": "value", "min": -2, "max": 2, "clamped": true, "display_as_percent": true})"));
    const auto alias = [](const char* name, const char* target) {
        return std::string(R"({"id": ")") + name + R"(", "name": ")" + name + R"(",
            "parent": "/data/Nord/Doll/Doll.dsf#hand", "group": "/Pose/Hand", "channel": {"id": "value",
            "type": "alias", "name": "Value", "label": "Here", "target_channel": ")" +
               target + R"("}})";
    };
    writeShape("alias_a", alias("alias_a", "Doll:#alias_b?value"));
    writeShape("alias_b", alias("alias_b", "Doll:#Up?value"));
    writeShape("alias_turn", alias("alias_turn", "hand:#hand?rotation/z"));
    writeShape("alias_gone", alias("alias_gone", "Doll:#Gone?value"));
    writeShape("alias_self", alias("alias_self", "Doll:#alias_self?value"));
    writeShape("Driver", Control("Driver", Driven("Doll:#alias_b?value", "Doll:#Driver?value", "0.5")));
    const char* const modifiers = R"(, "modifiers": [
        {"id": "u", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "parent": "#Doll-1",
         "channel": {"id": "value", "current_value": 0.75}},
        {"id": "a", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/alias_a.dsf#alias_a", "parent": "#hand",
         "channel": {"id": "value", "current_value": 0}}])";
    ASSERT_TRUE(load("Scenes/Alias.duf", Scene(Instance(), modifiers)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    for (const char* const name : {"Up", "alias_a", "alias_b"})
        EXPECT_EQ(ValueIn(*figure, name), 0.75) << name;
    DzNumericProperty* const first = DialIn(*figure, "alias_a");
    EXPECT_EQ(first->getOwner(), BoneOf(*figure, "hand"));
    EXPECT_EQ(first->getPath(), QStringLiteral("/Pose/Hand"));
    EXPECT_EQ(first->getDoubleMin(), -2.0);
    EXPECT_TRUE(first->getDisplayAsPercent());
    first->setDoubleValue(9.0);
    EXPECT_EQ(ValueIn(*figure, "Up"), 2.0);
    first->setDoubleValue(0.0);
    DialIn(*figure, "Driver")->setDoubleValue(1.0);
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.5);
    DialIn(*figure, "alias_turn")->setDoubleValue(30.0);
    EXPECT_EQ(BoneOf(*figure, "hand")->getZRotControl()->getValue(), 30.0f);
    EXPECT_TRUE(DialIn(*figure, "alias_gone")->isHidden());
    EXPECT_TRUE(DialIn(*figure, "alias_self")->isHidden());
    EXPECT_TRUE(logged("2 aliases name what is not installed and are hidden")) << log().toStdString();
}

TEST_F(ForeignScene, dials_are_filed_under_their_group_and_region)
{
    writeShape("Filed", Control("Filed", R"(, "group": "Actor/Head/Nord/", "region": "Head")"));
    writeShape("Root", Control("Root"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(DialIn(*figure, "Filed")->getPath(), QStringLiteral("/Actor/Head/Nord"));
    EXPECT_EQ(DialIn(*figure, "Filed")->getRegion(), QStringLiteral("Head"));
    EXPECT_EQ(DialIn(*figure, "Root")->getPath(), QStringLiteral("/"));
}

TEST_F(ForeignScene, has_controls_morphs_and_formulas_of_its_own)
{
    const std::string members = R"("modifier_library": [
            {"id": "Own", "parent": "#Doll-1", "channel": {"id": "value", "type": "float", "label": "Own Dial"},
             "formulas": [{"output": "hand:#hand?rotation/z", "operations": [{"op": "push", "url": "Doll:#Own?value"},
                {"op": "push", "val": 90}, {"op": "mult"}]}]},
            {"id": "Bump", "parent": "#Doll-1", "channel": {"id": "value", "type": "float"},
             "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0]]}}},
            {"id": "Misfit", "parent": "#Doll-1", "channel": {"id": "value", "type": "float"},
             "morph": {"vertex_count": 9, "deltas": {"values": [[1, 0, 1, 0]]}}}],
        "scene": {"nodes": [)" + Instance("", R"(, "label": "A")") +
                                ", " + Instance("-2", R"(, "label": "B",
            "formulas": [{"output": "hip-2:#hip-2?rotation/x", "operations": [{"op": "push", "url": "Doll:#Own-1?value"},
                {"op": "push", "val": 10}, {"op": "mult"}]}])") +
                                R"(],
         "modifiers": [{"id": "Own-1", "url": "#Own", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}},
            {"id": "Bump-1", "url": "#Bump", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 2}},
            {"id": "Misfit-1", "url": "#Misfit", "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}}]})";
    ASSERT_TRUE(load("Scenes/Own.duf", File(members, "scene"))) << log().toStdString();
    const DzFigure* const first = labelled("A");
    const DzFigure* const second = labelled("B");
    ASSERT_TRUE(first && second);
    EXPECT_EQ(DialIn(*first, "Own")->getLabel(), QStringLiteral("Own Dial"));
    EXPECT_EQ(BoneOf(*first, "hand")->getZRotControl()->getValue(), 90.0f);
    ExpectAt(VertexAt(*first, 1), 5, 2, 0);
    EXPECT_EQ(ValueIn(*first, "Bump"), 2.0);
    EXPECT_EQ(FindMorph(*first, "Misfit"), nullptr);
    EXPECT_EQ(DialIn(*second, "Own"), nullptr);
    EXPECT_EQ(BoneOf(*second, "hand")->getZRotControl()->getValue(), 0.0f);
    EXPECT_EQ(BoneOf(*second, "hip")->getXRotControl()->getValue(), 10.0f);
}

TEST_F(ForeignScene, that_repeats_a_formula_of_the_figures_own_files_counts_it_once)
{
    const std::string formula = Driven("hand:#hand?rotation/z", "Doll:#Lever?value", "20");
    const std::string other = Driven("hand:#hand?rotation/x", "Doll:#Lever?value", "20");
    for (const std::string& repeated : {formula, other}) {
        SetUp();
        writeShape("Lever", Control("Lever", formula));
        ASSERT_TRUE(load("Scenes/Repeated.duf", Scene(Instance("", R"(, "label": "A")" + repeated))));
        DialIn(*labelled("A"), "Lever")->setDoubleRawValue(1.0);
        EXPECT_EQ(BoneOf(*labelled("A"), "hand")->getZRotControl()->getValue(), 20.0f);
        EXPECT_EQ(BoneOf(*labelled("A"), "hand")->getXRotControl()->getValue(),
                  repeated == other ? 20.0f : 0.0f);
    }
}

TEST_F(ForeignScene, that_moves_is_loaded_as_it_is_at_its_beginning)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    const char* const more =
        R"(, "modifiers": [{"id": "Up-7", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up",
            "parent": "#Doll-1", "channel": {"id": "value", "current_value": 1}}],
        "animations": [{"url": "#hand?rotation/z/value", "keys": [[1, 5], [0, 90], [-1, 3]]},
            {"url": "Doll:#Up?value/value", "keys": [[-1, 0], [1, 1]]},
            {"url": "hip:?rotation/x/value", "keys": [[2, 12], [4, 40]]},
            {"url": "hip:?rotation/y/value", "keys": [[-4, 40], [-2, 12, ["TCB", 0, 0, 0]]]},
            {"url": "name://@selection/hip:?translation/x/value", "keys": [[0, 3]]},
            {"url": "#nothing?rotation/x/value", "keys": [[0, 3]]}])";
    ASSERT_TRUE(load("Scenes/Moving.duf", Scene(Instance(), more)));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_EQ(BoneOf(*figure, "hand")->getZRotControl()->getValue(), 90.0f);
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.5);
    EXPECT_EQ(BoneOf(*figure, "hip")->getXRotControl()->getValue(), 12.0f);
    EXPECT_EQ(BoneOf(*figure, "hip")->getYRotControl()->getValue(), 12.0f);
    EXPECT_EQ(BoneOf(*figure, "hip")->getXPosControl()->getValue(), 3.0f);
}

TEST_F(ForeignScene, parts_that_are_no_matter_of_shape_are_told_in_one_line)
{
    const char* const more = R"(, "materials": [{"id": "m1"}, {"id": "m2"}], "uvs": [{"id": "u"}],
        "animations": [{"url": "name://@selection#materials/Skin:?diffuse/image", "keys": [[0, "x.png"]]}],
        "extra": [{"type": "scene_post_load_script", "name": "x", "script": "data/x.dse"}])";
    ASSERT_TRUE(load("Scenes/Painted.duf", Scene(Instance(), more)));
    EXPECT_EQ(
        timesLogged(
            "Painted.duf: 2 materials, 1 UV sets, what is to be run or added after loading, 1 values that "
            "are no numbers are left out"),
        1)
        << log().toStdString();
}

TEST_F(ForeignScene, morphs_of_the_8_figure_are_found_by_the_8_1_figure)
{
    fs::create_directories(_library / "data/Nord/Woman 8_1");
    write("data/Nord/Woman 8_1/Woman8_1.dsf", File(Figure()));
    const auto morph = [](const char* name, double y, const char* parent, const char* more) {
        std::string text = Morph(name, 1, y, more);
        return ModifierFile(text.replace(text.find("/data/Nord/Doll/Doll.dsf#Doll"), 29, parent));
    };
    const char* const woman = "/data/Nord/Woman/Woman.dsf#Woman";
    write("data/Nord/Woman/Morphs/Old.dsf", morph("Old", 1.0, woman, R"(, "formulas": [
        {"output": "Woman:/data/Nord/Woman/Woman.dsf#Woman?scale/general", "operations": [
            {"op": "push", "url": "Woman:#Old?value"}, {"op": "push", "val": 0.5}, {"op": "mult"}]}])"));
    write("data/Nord/Woman/Morphs/Both.dsf", morph("Both", 50.0, woman, ""));
    write("data/Nord/Woman 8_1/Morphs/Both.dsf",
          morph("Both", 2.0, "/data/Nord/Woman%208_1/Woman8_1.dsf#Doll", ""));
    write("data/Nord/Woman/Morphs/Other.dsf", morph("Other", 1.0, "/data/Nord/Man/Man.dsf#Man", ""));
    ASSERT_TRUE(load("People/Woman.duf", Scene(Instance("", "", "", "/data/Nord/Woman%208_1/Woman8_1.dsf"))));
    const DzNode* const figure = dzScene->getPrimarySelection();
    ASSERT_TRUE(DialIn(*figure, "Old") && DialIn(*figure, "Both"));
    EXPECT_EQ(FindMorph(*figure, "Other"), nullptr);
    EXPECT_TRUE(logged("1 morphs belong to other figures and are left out, such as ")) << log().toStdString();
    EXPECT_FALSE(logged("have names that are taken"));
    DialIn(*figure, "Both")->setDoubleValue(1.0);
    ExpectAt(VertexAt(*figure, 1), 5, 2, 0);
    DialIn(*figure, "Old")->setDoubleValue(1.0);
    EXPECT_NEAR(figure->getScaleControl()->getValue(), 1.5f, 1e-6);
}

TEST_F(ForeignScene, face_groups_select_the_bones_that_the_skin_names)
{
    std::string figure = Figure();
    figure.replace(figure.find("\"vertex_count\": 8, \"joints\""), 27,
                   R"("vertex_count": 8, "selection_map": [{"id": "Bones",
        "mappings": [["Palm", "hand"], ["Nail", "hand"], ["Tail", "tail"], 7]}], "joints")");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    DzFigure* const loaded = openDoll();
    ASSERT_NE(loaded, nullptr);
    const DzSelectionMap* const map = loaded->getSelectionMap();
    EXPECT_EQ(map->findNodeName(QStringLiteral("Palm")), QStringLiteral("hand"));
    EXPECT_EQ(map->findNodeName(QStringLiteral("Nail")), QStringLiteral("hand"));
    EXPECT_EQ(map->findNodeName(QStringLiteral("hip")), QStringLiteral("hip"));
    EXPECT_EQ(map->getNumPairs(), 3);
}

TEST_F(ForeignScene, weights_for_each_axis_alone_are_told)
{
    std::string figure = Figure();
    figure.replace(figure.find("\"node_weights\""), 14, "\"local_weights\"");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    ASSERT_NE(openDoll(), nullptr);
    EXPECT_TRUE(logged("Doll.dsf: 1 joints have weights for each axis alone, which move nothing"));
}

TEST_F(ForeignScene, clothes_in_a_scene_move_with_the_figure_that_they_are_fitted_to)
{
    writeShirt();
    writeShape("Fit",
               Control("Fit", R"(, "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0]]}})",
                       selfFollowing));
    writeShape("Own", Morph("Own", 1, 1.0));
    writeShirtMorph("Fit");
    writeShirtMorph("Own");
    ASSERT_TRUE(load("Scenes/Dressed.duf", Scene(shirt(R"(, "conform_target": "#Doll")") + ", " +
                                                 Instance("", R"(, "label": "Body")"))));
    DzFigure* const body = labelled("Body");
    DzFigure* const clothes = labelled("Shirt");
    ASSERT_TRUE(body && clothes);
    EXPECT_EQ(clothes->getFollowTarget(), body);
    EXPECT_TRUE(clothes->isRootNode());
    EXPECT_FALSE(clothes->getObject() == body->getObject());
    BoneOf(*body, "hand")->getZRotControl()->setValue(90.0f);
    BoneOf(*body, "hip")->getScaleControl()->setValue(2.0f);
    body->getXPosControl()->setValue(100.0f);
    body->getYRotControl()->setValue(90.0f);
    for (int vertex = 0; vertex < 8; ++vertex) {
        const DzVec3 expected = VertexAt(*body, vertex);
        ExpectAt(VertexAt(*clothes, vertex), expected.m_x, expected.m_y, expected.m_z, 1e-3f);
    }
    DialIn(*body, "Fit")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*clothes, "Fit"), 0.5);
    DialIn(*body, "Own")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*clothes, "Own"), 0.0);
    DialIn(*clothes, "Fit")->setDoubleValue(0.75);
    EXPECT_EQ(ValueIn(*clothes, "Fit"), 0.75);
    EXPECT_EQ(ValueIn(*body, "Fit"), 0.5);
    dzScene->removeNode(body);
    dzScene->purgeRemoved();
    EXPECT_EQ(clothes->getFollowTarget(), nullptr);
    EXPECT_EQ(BoneOf(*clothes, "hand")->getZRotControl()->getValue(), 0.0f);
}

TEST_F(ForeignScene, joints_of_clothes_shift_with_the_figures_unless_a_shape_of_their_own_shifts_them)
{
    writeShirt();
    const char* const joint = R"(, "formulas": [{"output": "hand:#hand?center_point/y", "operations": [
        {"op": "push", "url": "Doll:#Long?value"}, {"op": "push", "val": 4}, {"op": "mult"}]}])";
    writeShape("Long", Control("Long", joint, selfFollowing));
    for (const bool hasOwn : {false, true}) {
        if (hasOwn)
            writeShirtMorph("Long", joint);
        dzScene->clear();
        ASSERT_TRUE(load("Scenes/Long.duf", Scene(Instance("", R"(, "label": "Body")") + ", " +
                                                  shirt(R"(, "conform_target": "#Doll")"))));
        DialIn(*labelled("Body"), "Long")->setDoubleValue(1.0);
        ExpectAt(BoneOf(*labelled("Body"), "hand")->getOrigin(), 0, 24, 0);
        ExpectAt(BoneOf(*labelled("Shirt"), "hand")->getOrigin(), 0, 24, 0);
    }
}

TEST_F(ForeignScene, a_dial_that_follows_both_ways_round_follows_once)
{
    writeShirt();
    const auto driven = Driven("Doll:#Part?value", "Doll:#Whole?value", "1");
    writeShape("Whole", Control("Whole", driven, selfFollowing));
    writeShape("Part", Control("Part", "", selfFollowing));
    writeShirtMorph("Whole", driven);
    writeShirtMorph("Part");
    ASSERT_TRUE(load("Scenes/Both.duf", Scene(Instance("", R"(, "label": "Body")") + ", " +
                                              shirt(R"(, "conform_target": "#Doll")"))));
    DzFigure* const body = labelled("Body");
    DialIn(*body, "Whole")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*labelled("Shirt"), "Part"), 0.5);
    DialIn(*body, "Part")->setDoubleRawValue(0.25);
    EXPECT_EQ(ValueIn(*body, "Part"), 0.75);
    EXPECT_EQ(ValueIn(*labelled("Shirt"), "Part"), 0.75);
}

TEST_F(ForeignScene, a_wearable_is_put_on_what_is_selected)
{
    writeShirt();
    writeHat();
    DzFigure* const body = openDoll();
    ASSERT_NE(body, nullptr);
    dzScene->setPrimarySelection(BoneOf(*body, "hand"));
    const std::string hat = R"(, {"id": "hat", "url": "/data/Nord/Hat.dsf#Hat", "label": "Hat",
        "parent": "name://@selection/hand:"})";
    ASSERT_TRUE(load("Wardrobe/Shirt.duf",
                     Scene(shirt(R"(, "conform_target": "name://@selection:")") + hat, "", "wearable")))
        << log().toStdString();
    EXPECT_EQ(labelled("Shirt")->getFollowTarget(), body);
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("Hat"))->getNodeParent(), BoneOf(*body, "hand"));
    // The next garment is for the same figure.
    EXPECT_EQ(dzScene->getPrimarySelection(), BoneOf(*body, "hand"));
}

TEST_F(ForeignScene, a_wearable_with_nobody_to_wear_it_stands_alone)
{
    writeShirt();
    ASSERT_TRUE(load("Wardrobe/Shirt.duf",
                     Scene(shirt(R"(, "conform_target": "name://@selection:")"), "", "wearable")));
    ASSERT_NE(labelled("Shirt"), nullptr);
    EXPECT_EQ(labelled("Shirt")->getFollowTarget(), nullptr);
    EXPECT_TRUE(logged("Shirt.duf: there is nothing that Shirt can be fitted to"));
    for (const char* const target : {"#Doll-s", "#Nobody"}) {
        dzScene->clear();
        dzScene->selectAllNodes(false);
        ASSERT_TRUE(load("Wardrobe/Shirt.duf",
                         Scene(shirt(std::string(R"(, "conform_target": ")") + target + "\""))));
        EXPECT_EQ(labelled("Shirt")->getFollowTarget(), nullptr) << target;
    }
    EXPECT_EQ(timesLogged("there is nothing that Shirt can be fitted to"), 3);
}

TEST_F(ForeignScene, a_pose_sets_bones_dials_of_bones_and_morphs_by_name_or_id)
{
    std::string fist = Control("Fist");
    fist.replace(fist.find("#Doll"), 5, "#hand");
    writeShape("Fist", fist);
    std::string morph = Morph("MorphId", 1, 1.0);
    morph.replace(morph.find("\"name\": \"MorphId\""), 17, "\"name\": \"MorphName\"");
    writeShape("MorphName", morph);
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_TRUE(loadPreset(R"("animations": [
        {"url": "name://@selection/hand:?rotation/z/value", "keys": [[1, 5], [0, 90]]},
        {"url": "name://@selection/hip/hand:?rotation/x/value", "keys": [[0, 7]]},
        {"url": "name://@selection/missing/hand:?rotation/y/value", "keys": [[0, 8]]},
        {"url": "name://@selection:?scale/general/value", "keys": [[0, 2]]},
        {"url": "name://@selection:?general_scale/value", "keys": [[0, 3]]},
        {"url": "name://@selection#Fist:?value/value", "keys": [[0, 0.5]]},
        {"url": "id://@selection#MorphId:?value/value", "keys": [[0, true]]},
        {"url": "name://@selection/tail:?rotation/z/value", "keys": [[0, 1]]},
        {"url": "name://@selection#Unknown:?value/value", "keys": [[0, 1]]},
        {"url": "name://@selection#materials/Skin:?diffuse/value", "keys": [[0, 1]]}])"))
        << log().toStdString();
    const DzNode* const hand = BoneOf(*figure, "hand");
    EXPECT_EQ(hand->getZRotControl()->getValue(), 90.0f);
    EXPECT_EQ(hand->getXRotControl()->getValue(), 7.0f);
    EXPECT_EQ(hand->getYRotControl()->getValue(), 8.0f);
    EXPECT_EQ(figure->getScaleControl()->getValue(), 3.0f);
    EXPECT_EQ(ValueIn(*figure, "Fist"), 0.5);
    EXPECT_EQ(ValueIn(*figure, "MorphName"), 1.0);
    EXPECT_EQ(timesLogged("Preset.duf: 2 of 9 values name nothing that Doll has, such as "
                          "name://@selection/tail:?rotation/z/value"),
              1)
        << log().toStdString();
    EXPECT_EQ(timesLogged("Preset.duf: 1 values of materials are left out"), 1);
}

TEST_F(ForeignScene, a_hierarchical_pose_reaches_what_hangs_on_the_figure)
{
    writeHat();
    ASSERT_TRUE(load("Scenes/Hat.duf",
                     Scene(Instance() + R"(, {"id": "hat", "name": "Hat", "label": "Hat", "parent": "#hand",
        "url": "/data/Nord/Hat.dsf#Hat"})")));
    const char* const pose = R"("nodes": [{"id": "Doll"}, {"id": "Hat"}], "animations": [
        {"url": "name://@selection/Hat:?translation/x/value", "keys": [[0, 12]]},
        {"url": "name://@selection/Hat/Brim:?translation/x/value", "keys": [[0, 13]]}])";
    ASSERT_TRUE(loadPreset(pose, "preset_hierarchical_pose"));
    const DzNode* const hat = dzScene->findNodeByLabel(QStringLiteral("Hat"));
    EXPECT_EQ(hat->getXPosControl()->getValue(), 12.0f);
    EXPECT_EQ(BoneOf(*hat, "Brim")->getXPosControl()->getValue(), 13.0f);
    EXPECT_EQ(dzScene->getNumNodes(), 5);
}

TEST_F(ForeignScene, a_pose_for_a_prop_does_not_move_the_figure_that_holds_it)
{
    writeHat();
    ASSERT_TRUE(
        load("Scenes/Hat.duf", Scene(Instance() + R"(, {"id": "hat", "label": "Hat", "parent": "#hand",
        "url": "/data/Nord/Hat.dsf#Hat"})")));
    DzNode* const figure = dzScene->getPrimarySelection();
    DzNode* const hat = dzScene->findNodeByLabel(QStringLiteral("Hat"));
    dzScene->setPrimarySelection(hat);
    ASSERT_TRUE(
        loadPreset(R"("animations": [{"url": "name://@selection:?translation/x/value", "keys": [[0, 9]]}])"));
    EXPECT_EQ(hat->getXPosControl()->getValue(), 9.0f);
    EXPECT_EQ(figure->getXPosControl()->getValue(), 0.0f);
}

TEST_F(ForeignScene, a_pose_leaves_locked_channels_alone)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const turn = BoneOf(*figure, "hand")->getZRotControl();
    turn->setValue(15.0f);
    turn->lock(true);
    ASSERT_TRUE(loadPreset(
        R"("animations": [{"url": "name://@selection/hand:?rotation/z/value", "keys": [[0, 90]]}])"));
    EXPECT_EQ(turn->getValue(), 15.0f);
}

TEST_F(ForeignScene, a_shape_preset_may_name_its_morphs_as_instances)
{
    writeShape("Up", Morph("Up", 1, 1.0));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    ASSERT_TRUE(loadPreset(R"("modifiers": [
        {"id": "Up-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/Up.dsf#Up", "parent": "name://@selection:",
         "channel": {"id": "value", "current_value": 0.5}},
        {"id": "No-1", "url": "/data/Nord/Doll/Morphs/Nord/Shapes/No.dsf#No", "parent": "name://@selection:"}])",
                           "preset_shape"))
        << log().toStdString();
    EXPECT_EQ(ValueIn(*figure, "Up"), 0.5);
}

TEST_F(ForeignScene, a_material_preset_is_refused_with_the_reason_and_harms_nothing)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_FALSE(loadPreset(R"("materials": [{"id": "m", "url": "#m", "geometry": "name://@selection:"}],
        "animations": [{"url": "name://@selection#materials/Skin:?diffuse/value", "keys": [[0, [1, 0.5, 0]]]},
            {"url": "name://@selection#materials/Skin:?value", "keys": [[0, 1]]}])",
                            "preset_material"));
    EXPECT_EQ(
        timesLogged(
            "Preset.duf: holds nothing to load into a scene but 1 materials, 1 values that are no numbers, 1 "
            "values of materials, which are left out"),
        1)
        << log().toStdString();
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    EXPECT_FALSE(loadPreset("", "preset_material"));
    EXPECT_TRUE(log().endsWith(QStringLiteral("Preset.duf: holds nothing to load into a scene\n")))
        << log().toStdString();
}

TEST_F(ForeignScene, a_d_former_preset_is_read_wherever_its_weights_stand)
{
    const char* const weights =
        R"("influence_vertex_count": 8, "influence_weights": {"count": 9, "values": [[7, 0.5]]})";
    const std::string presets[] = {
        std::string(R"("modifier_library": [{"id": "d", "name": "Split", "parent": "#Doll-1", "dform": {)") +
            weights +
            R"(}}], "scene": {"modifiers": [{"id": "d-1", "url": "#d", "parent": "name://@selection:"}]})",
        std::string(
            R"("scene": {"modifiers": [{"id": "d", "name": "Split", "extra": [{"type": "studio/modifier/push", )") +
            weights + "}]}]}",
        std::string(
            R"("node_library": [{"id": "n", "name": "Split", "type": "node", "extra": {"type": "studio/node/dform", )") +
            weights + "}}]"};
    for (const std::string& preset : presets) {
        dzScene->clear();
        DzFigure* const figure = openDoll();
        ASSERT_NE(figure, nullptr);
        ASSERT_TRUE(load("Presets/Split.duf", File(preset, "preset_dform"))) << log().toStdString();
        auto* const modifier =
            qobject_cast<DzDFormModifier*>(figure->getObject()->findModifier(QStringLiteral("Split")));
        ASSERT_NE(modifier, nullptr) << preset;
        EXPECT_NEAR(modifier->getInfluenceWeights()->getFloatWeight(7), 0.5, 1e-4);
        EXPECT_EQ(modifier->getInfluenceWeights()->getFloatWeight(0), 0.0f);
    }
}

TEST_F(ForeignScene, formulas_add_multiply_nest_and_bend)
{
    const auto output = [](const char* name, const std::string& operations, const char* stage = "sum") {
        return Control(name, std::string(R"(, "formulas": [{"output": "Doll:#)") + name +
                                 R"(?value", "stage": ")" + stage + R"(", "operations": [)" + operations +
                                 "]}]");
    };
    const std::string in = R"({"op": "push", "url": "Doll:#In?value"}, )";
    writeShape("In", Control("In"));
    writeShape("Constant", output("Constant", R"({"op": "push", "val": 0.25})"));
    writeShape(
        "Offset",
        output("Offset",
               in + R"({"op": "push", "val": 2}, {"op": "mult"}, {"op": "push", "val": 1}, {"op": "add"})"));
    writeShape("Inverse", output("Inverse", in + R"({"op": "inv"}, {"op": "neg"})"));
    writeShape("Quotient", output("Quotient", in + R"({"op": "push", "val": 4}, {"op": "div"})"));
    const std::string knots =
        R"({"op": "push", "val": [2, 0, 0, 0, 0]}, {"op": "push", "val": [0, 0, 0, 0, 0]},
        {"op": "push", "val": [1, 1, 0, 0, 0]}, {"op": "push", "val": 3}, )";
    writeShape("Bent", output("Bent", in + knots + R"({"op": "spline_tcb"})"));
    writeShape("Stepped", output("Stepped", in + knots + R"({"op": "spline_constant"})"));
    writeShape("Scaled", output("Scaled", in + knots + R"({"op": "spline_linear"})", "mult"));
    writeShape(
        "Nested",
        output("Nested",
               R"({"op": "push", "url": "Doll:#Offset?value"}, {"op": "push", "val": 10}, {"op": "mult"})"));
    writeShape(
        "Lost",
        output("Lost",
               R"({"op": "push", "url": "Doll:#Gone?value"}, {"op": "push", "val": 10}, {"op": "mult"})"));
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    DialIn(*figure, "Scaled")->setDoubleRawValue(8.0);
    DialIn(*figure, "In")->setDoubleValue(0.5);
    EXPECT_EQ(ValueIn(*figure, "Constant"), 0.25);
    EXPECT_EQ(ValueIn(*figure, "Offset"), 2.0);
    EXPECT_EQ(ValueIn(*figure, "Nested"), 20.0);
    EXPECT_EQ(ValueIn(*figure, "Inverse"), -2.0);
    EXPECT_EQ(ValueIn(*figure, "Quotient"), 0.125);
    // Tangents 1 at the first knot and 0 at the second: half way, 1/2 + 1/8.
    EXPECT_NEAR(ValueIn(*figure, "Bent"), 0.625, 1e-6);
    EXPECT_EQ(ValueIn(*figure, "Stepped"), 0.0);
    EXPECT_EQ(ValueIn(*figure, "Scaled"), 4.0);
    DialIn(*figure, "In")->setDoubleValue(9.0);
    EXPECT_EQ(ValueIn(*figure, "Bent"), 0.0);
    EXPECT_TRUE(logged("1 formulas name what is not installed and 0 cannot be understood"));
}

TEST_F(ForeignScene, shapes_move_joints_and_joints_drive_shapes)
{
    std::string figure = Figure();
    figure.replace(figure.find(R"("label": "Hand",)"), 16,
                   R"("label": "Hand", "formulas": [{"output": "Doll:#Corrective?value",
        "operations": [{"op": "push", "url": "hand:#hand?rotation/z"}, {"op": "push", "val": 0.01}, {"op": "mult"}]}],)");
    write("data/Nord/Doll/Doll.dsf", File(figure));
    writeShape("Corrective", Morph("Corrective", 1, 2.0));
    std::string formulas;
    const char* const outputs[] = {"hand:/data/Nord/Doll/Doll.dsf#hand?center_point/y",
                                   "hand:#hand?end_point/y", "hand:?orientation/x", "hip:#hip?scale/x",
                                   "Doll:#Doll?scale/general"};
    for (const char* const output : outputs)
        formulas +=
            (formulas.empty() ? "" : ", ") + (R"({"output": ")" + std::string(output) + R"(", "operations":
            [{"op": "push", "url": "Doll:#Tall?value"}, {"op": "push", "val": 4}, {"op": "mult"}]})");
    writeShape("Tall", Morph("Tall", 6, 4.0, ", \"formulas\": [" + formulas + "]"));
    DzFigure* const loaded = openDoll();
    ASSERT_NE(loaded, nullptr);
    DzNode* const hand = BoneOf(*loaded, "hand");
    hand->getZRotControl()->setValue(50.0f);
    EXPECT_NEAR(ValueIn(*loaded, "Corrective"), 0.5, 1e-6);
    DialIn(*loaded, "Tall")->setDoubleValue(0.5);
    ExpectAt(hand->getOrigin(), 0, 22, 0);
    ExpectAt(hand->getEndPoint(), 0, 2, 0);
    EXPECT_EQ(hand->getOrientXControl()->getValue(), 2.0f);
    EXPECT_EQ(BoneOf(*loaded, "hip")->getXScaleControl()->getValue(), 3.0f);
    EXPECT_EQ(loaded->getScaleControl()->getValue(), 3.0f);
}

TEST_F(ForeignScene, a_file_that_cannot_be_read_is_one_sentence_and_the_scene_stays)
{
    ASSERT_NE(openDoll(), nullptr);
    const std::string packed = dson::Compress(Scene(Instance()));
    struct Case {
        std::string bytes;
        const char* message;
    };
    const Case cases[] = {
        {"", "Bad.duf: line 1 is not valid JSON"},
        {"ply\nformat ascii", "Bad.duf: line 1 is not valid JSON"},
        {"{\"file_version\": \"0.6.0.0\",\n\"scene\": {\"nodes\": [}}", "Bad.duf: line 2 is not valid JSON"},
        {"[1, 2]", "Bad.duf: is not a DSON file"},
        {"{\"name\": \"package\"}", "Bad.duf: is not a DSON file: it has no file_version"},
        {packed.substr(0, packed.size() / 2), "Bad.duf: the compressed data is cut off"},
        {packed.substr(0, 5), "Bad.duf: the compressed data is cut off"},
        {"{\"a\": " + std::string(3000, '[') + std::string(3000, ']') + "}", "Bad.duf: is nested too deeply"},
        {Scene(R"({"id": "x", "url": "/People/Bad.duf#x"})"), "Bad.duf: has no node x"},
        {Scene(R"({"id": "x", "url": "#x"})"), "Bad.duf: has no node x"},
        {Scene(R"({"id": "x", "url": "/data/Nord#x"})"), "Bad.duf: /data/Nord is in no content library"},
        {File(R"("scene": [])"), "Bad.duf: holds nothing to load into a scene"},
    };
    for (const Case& one : cases) {
        EXPECT_FALSE(load("People/Bad.duf", one.bytes)) << one.message;
        EXPECT_TRUE(logged(one.message)) << one.message << "\n" << log().toStdString();
        EXPECT_EQ(dzScene->getNumNodes(), 3) << one.message;
        EXPECT_NE(labelled("Doll"), nullptr);
    }
}

TEST_F(ForeignScene, a_broken_morph_file_costs_that_morph_alone)
{
    writeShape("Good", Morph("Good", 1, 1.0));
    write(std::string(shapes) + "Empty.dsf", "");
    write(std::string(shapes) + "Cut.dsf", dson::Compress(ModifierFile(Morph("Cut", 1, 1.0))).substr(0, 40));
    fs::create_directories(_library / shapes / "Folder.dsf");
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_NE(DialIn(*figure, "Good"), nullptr);
    EXPECT_EQ(timesLogged("Empty.dsf: line 1 is not valid JSON"), 1);
    EXPECT_EQ(timesLogged("Cut.dsf: the compressed data is cut off"), 1);
    EXPECT_EQ(timesLogged("Folder.dsf"), 0);
}

TEST_F(ForeignScene, files_that_name_each_other_are_read_once_each)
{
    write("data/Nord/Ring/A.dsf",
          File(R"("node_library": [{"id": "A", "type": "node", "parent": "/data/Nord/Ring/B.dsf#B"}],
        "scene": {"nodes": [{"id": "B-1", "url": "/data/Nord/Ring/B.dsf#B"}]})"));
    write("data/Nord/Ring/B.dsf",
          File(R"("node_library": [{"id": "B", "type": "node", "parent": "/data/Nord/Ring/A.dsf#A"}],
        "scene": {"nodes": [{"id": "A-1", "url": "/data/Nord/Ring/A.dsf#A"}]})"));
    ASSERT_TRUE(open(_library / "data/Nord/Ring/A.dsf"));
    EXPECT_EQ(dzScene->getNumNodes(), 1);
}

TEST_F(ForeignScene, a_file_that_appears_later_is_found_whatever_its_case)
{
    openhost::ContentPaths paths;
    paths.add(_library);
    const fs::path shapesFolder = write(std::string(shapes) + "First.dsf", "").parent_path();
    const std::string wanted = "/DATA/nord/doll/morphs/nord/shapes/SECOND.dsf";
    // Long unchanged, so that what was read of the folder may be kept.
    fs::last_write_time(shapesFolder, fs::file_time_type::clock::now() - std::chrono::hours(1));
    EXPECT_TRUE(paths.resolve(wanted).empty());
    EXPECT_TRUE(paths.resolve(wanted).empty());
    const fs::path second = write(std::string(shapes) + "Second.dsf", "");
    EXPECT_EQ(paths.resolve(wanted), second);
    fs::remove(second);
    EXPECT_TRUE(paths.resolve(wanted).empty());
    const fs::path other = write(std::string(shapes) + "seconD.dsf", "");
    EXPECT_EQ(paths.resolve(wanted), other);
}
