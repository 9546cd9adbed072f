// Scenes as other programs write them.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzselectionmap.h"
#include "tests/host/foreign_scene.h"

namespace {

namespace fs = std::filesystem;
using namespace doll;

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
    EXPECT_TRUE(logged("2 nodes are below themselves; their parents are left out, such as A and Self"))
        << log().toStdString();
}

TEST_F(ForeignScene, bones_without_a_figure_are_nodes_by_themselves_and_one_line_says_so)
{
    const std::string bones = R"(, {"id": "b1", "url": "/data/Nord/Doll/Doll.dsf#hip"},
        {"id": "b2", "url": "/data/Nord/Doll/Doll.dsf#hand", "parent": "#nowhere"})";
    ASSERT_TRUE(load("Scenes/Bones.duf", Scene(Instance() + bones)));
    EXPECT_EQ(dzScene->getNumNodes(), 5);
    EXPECT_EQ(timesLogged("Bones.duf: 2 bones hang on no figure and are nodes by themselves, such as hip and "
                          "hand"),
              1)
        << log().toStdString();
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
    EXPECT_TRUE(logged("1 alias names what is not installed and is hidden, such as Doll:#Gone?value"))
        << log().toStdString();
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
             "morph": {"vertex_count": 8, "deltas": {"values": [[1, 0, 1, 0], [2, 1], [3, "x", 0, 0]]}}},
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
    EXPECT_EQ(timesLogged("Bump: 2 rows of deltas are not four numbers and left out"), 1)
        << log().toStdString();
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
    EXPECT_EQ(timesLogged("Painted.duf: kept for saving and without effect here: 2 materials, 1 UV set, 1 "
                          "script to be run after loading, "
                          "such as data/x.dse, 1 value "
                          "that is no number"),
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
    EXPECT_TRUE(logged("1 morph belongs to another figure and is left out, such as ")) << log().toStdString();
    EXPECT_FALSE(logged("taken and get"));
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
    EXPECT_TRUE(
        logged("Doll.dsf: Skin: 1 joint has weights for each axis alone; the mean of the three is used"));
}
