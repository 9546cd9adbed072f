// Poses, shapes and other presets of others.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzdformmodifier.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzweightmap.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

} // namespace

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
    EXPECT_EQ(timesLogged("Preset.duf: left out: 1 value of materials"), 1);
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
    EXPECT_EQ(timesLogged("Preset.duf: holds nothing to load into a scene but what is left out: 1 material, "
                          "1 value that is "
                          "no number, 1 value of materials"),
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
