// Modifiers that smooth, push and simulate in saved scenes.
// SPDX-License-Identifier: MIT

#include "dzfigure.h"
#include "dzmodifier.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "figure/cage_modifier.h"
#include "tests/host/foreign_fixture.h"
#include "tests/host/save_fixture.h"

namespace {

/// A figure of a data file that smooths by itself, and a prop of the scene with one of each kind.
const char* const scene = R"({
    "file_version": "0.6.0.0", "asset_info": {"id": "/Scenes/All.duf", "type": "scene"},
    "geometry_library": [{"id": "Cloth-g", "vertices": {"values": [[0,0,0],[1,0,0],[1,1,0],[0,1,0]]},
        "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["Felt"]},
        "polylist": {"values": [[0,0,0,1,2,3]]}}],
    "node_library": [{"id": "Cloth", "type": "node", "label": "Cloth"}],
    "modifier_library": [
        {"id": "Soft", "name": "Soft", "parent": "#Cloth-g", "extra": [
            {"type": "studio/modifier/smoothing", "vendor": {"keep": [1, 2.5, "x"]}},
            {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "w", "type": "float", "name": "Weight", "value": 0.5, "step_size": 0.25},
                 "group": "/Own"},
                {"channel": {"id": "Collision Item", "type": "node", "value": "#Cloth"}}]}]},
        {"id": "Out", "name": "Out", "parent": "#Cloth-g",
         "channel": {"id": "value", "type": "float", "name": "Value", "label": "Offset", "value": 1},
         "extra": {"type": "studio/modifier/push", "push_post_smooth": true,
            "influence_vertex_count": 4, "influence_weights": {"count": 1, "values": [[2, 0.5]]}}},
        {"id": "Wind", "name": "Wind", "parent": "#Cloth-g", "wind": {"speed": 3}}],
    "scene": {"nodes": [
            {"id": "Doll", "url": "/data/Nord/Doll/Doll.dsf#Doll", "label": "Doll",
             "geometries": [{"id": "Doll-1", "url": "/data/Nord/Doll/Doll.dsf#Doll-1"}]},
            {"id": "Cloth-1", "url": "#Cloth", "label": "Cloth",
             "geometries": [{"id": "Cloth-1-g", "url": "#Cloth-g"}]}],
        "modifiers": [
            {"id": "Own-1", "url": "/data/Nord/Doll/Doll.dsf#Own", "parent": "#Doll-1", "extra": [
                {"type": "studio_modifier_channels", "channels": [
                    {"channel": {"id": "Weight", "type": "float", "current_value": 0.75}}]}]},
            {"id": "Soft-1", "url": "#Soft", "parent": "#Cloth-1-g", "extra": [
                {"type": "studio_modifier_channels", "channels": [
                    {"channel": {"id": "w", "type": "float", "current_value": 0.25}}]}]},
            {"id": "Out-1", "url": "#Out", "parent": "#Cloth-1-g", "channel": {"id": "value", "current_value": 4}},
            {"id": "Wind-1", "url": "#Wind", "parent": "#Cloth-1-g"}]}})";

class SavedEffects : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        ASSERT_TRUE(openBesideDoll(R"(, {"id": "Own", "name": "Own", "parent": "#Doll-1", "extra": [
            {"type": "studio/modifier/smoothing"}, {"type": "studio_modifier_channels", "channels": [
                {"channel": {"id": "Weight", "type": "float", "name": "Weight", "value": 0.5}}]}]})",
                                   scene))
            << log().toStdString();
    }

    static DzModifier* modifier(const char* node, const char* name)
    {
        const DzNode* const found = dzScene->findNodeByLabel(QLatin1String(node));
        return found ? found->getObject()->findModifier(QLatin1String(name)) : nullptr;
    }
    static double value(const char* node, const char* name, const char* property)
    {
        const DzModifier* const owner = modifier(node, name);
        const auto* const dial =
            owner ? qobject_cast<DzNumericProperty*>(owner->findProperty(QLatin1String(property))) : nullptr;
        return dial ? dial->getDoubleValue() : -1000.0;
    }
    static void expectAll()
    {
        EXPECT_EQ(value("Doll", "Own", "Weight"), 0.75);
        EXPECT_EQ(value("Cloth", "Soft", "Weight"), 0.25);
        EXPECT_EQ(value("Cloth", "Out", "Value"), 4.0);
        const auto* const push = qobject_cast<openhost::PushModifier*>(modifier("Cloth", "Out"));
        ASSERT_NE(push, nullptr);
        ASSERT_NE(push->getInfluenceWeights(), nullptr);
        EXPECT_NEAR(push->getInfluenceWeights()->getFloatWeight(2), 0.5f, 1e-5f);
        EXPECT_TRUE(push->actsLast());
        EXPECT_NE(modifier("Cloth", "Wind"), nullptr);
    }
};

} // namespace

TEST_F(SavedEffects, come_back_with_their_dials_and_weights)
{
    expectAll();
    const DzVec3 before = VertexAt(*dzScene->findNodeByLabel(QStringLiteral("Cloth")), 2);
    ASSERT_GT(before.m_z, 1.9f);
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    ASSERT_TRUE(reload(file("All.duf"))) << log().toStdString();
    expectAll();
    const DzVec3 after = VertexAt(*dzScene->findNodeByLabel(QStringLiteral("Cloth")), 2);
    ExpectAt(after, before.m_x, before.m_y, before.m_z);
    EXPECT_EQ(modifier("Cloth", "Soft")->findProperty(QLatin1String("Weight"))->getPath(),
              QLatin1String("/Own"));
}

TEST_F(SavedEffects, keep_what_only_others_understand)
{
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    std::string text = ReadBytes(file("All.duf"));
    text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\n'; }),
               text.end());
    for (const char* const part :
         {R"("vendor":{"keep":[1,2.5,"x"]})", R"("step_size":0.25)", R"("value":"#Cloth")",
          R"("push_post_smooth":true)", R"("wind":{"speed":3})", R"("current_value":0.25)"})
        EXPECT_NE(text.find(part), text.npos) << part;
    const std::size_t first = text.find("studio/modifier/smoothing");
    EXPECT_NE(first, text.npos);
    EXPECT_EQ(text.find("studio/modifier/smoothing", first + 1), text.npos)
        << "the Doll's is defined by its own file";
}

TEST_F(SavedEffects, are_written_again_as_the_same_bytes)
{
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    ASSERT_TRUE(reload(file("All.duf")));
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    const std::string second = untimed(file("All.duf"));
    ASSERT_TRUE(reload(file("All.duf")));
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    EXPECT_EQ(untimed(file("All.duf")), second);
}

TEST_F(SavedEffects, keep_dials_that_the_file_did_not_name)
{
    qobject_cast<DzNumericProperty*>(
        modifier("Cloth", "Soft")->findProperty(QLatin1String("Smoothing Iterations")))
        ->setDoubleValue(7.0);
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    ASSERT_TRUE(reload(file("All.duf")));
    EXPECT_EQ(value("Cloth", "Soft", "Smoothing Iterations"), 7.0);
}
