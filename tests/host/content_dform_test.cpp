// D-Formers that move something, in scenes and presets of other programs.
// SPDX-License-Identifier: MIT

#include "dzassetiofilter.h"
#include "dzassetiomgr.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "figure/pipeline.h"
#include "geometry/deform_field.h"
#include "tests/host/foreign_fixture.h"

namespace {

using namespace doll;

std::string Vector(const char* member, double x, double y, double z)
{
    return ", \"" + std::string(member) + R"(": [{"id": "x", "value": )" + std::to_string(x) +
           R"(}, {"id": "y", "value": )" + std::to_string(y) + R"(}, {"id": "z", "value": )" +
           std::to_string(z) + "}]";
}

/// The parts of a D-Former at (0, 20, 0), whose handle stands 4 cm further along Z; its field reaches 12 cm.
std::string Parts(const std::string& zoneMore = "")
{
    return R"("node_library": [
        {"id": "Bend Base", "type": "node", "extra": [{"type": "studio/node/dform_base"}])" +
           Vector("translation", 0, 20, 0) +
           R"(}, {"id": "Bend", "type": "node", "parent": "#Bend Base", "extra": [{"type": "studio/node/dform"}])" +
           Vector("translation", 0, 0, 4) +
           R"(}, {"id": "Bend Field", "type": "node", "parent": "#Bend Base",
            "extra": [{"type": "studio/node/dform_zone")" +
           zoneMore + "}]" + Vector("scale", 12, 12, 12) + "}]";
}

const char* const instances =
    R"({"id": "b", "url": "#Bend Base", "label": "Bend Base"}, {"id": "f", "url": "#Bend", "parent": "#b", "label": "Bend"},
       {"id": "z", "url": "#Bend Field", "parent": "#b", "label": "Bend Field"})";

class DFormers : public ForeignTest {
protected:
    /// The Doll with a D-Former on it.
    /// @param dform  what the modifier says
    DzFigure* loadScene(const std::string& dform, const std::string& zoneMore = "",
                        const std::string& more = "")
    {
        const std::string text =
            Parts(zoneMore) + R"(, "modifier_library": [{"id": "Bend", "name": "Bend", "parent": "#Doll-1",
            "dform": )" +
            dform + more + R"(}], "scene": {"nodes": [)" + Instance("", R"(, "label": "Doll")") + ", " +
            instances + R"(], "modifiers": [{"id": "Bend-1", "url": "#Bend", "parent": "#Doll-1"}]})";
        return load("Scenes/Bend.duf", File(text, "scene")) ? labelled("Doll") : nullptr;
    }

    static DzDForm* former()
    {
        return qobject_cast<DzDForm*>(dzScene->findNodeByLabel(QLatin1String("Bend")));
    }
};

} // namespace

TEST_F(DFormers, move_what_lies_within_their_field_with_the_handle)
{
    const DzFigure* const figure = loadScene("{}");
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(former(), nullptr);
    EXPECT_EQ(former()->getNumModifiers(), 1);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 4);
    // 5 and 10 of 12 cm from the centre.
    const geometry::Falloff falloff;
    ExpectAt(VertexAt(*figure, 5), 5, 20, float(4 * falloff.at(5.0 / 12.0)));
    ExpectAt(VertexAt(*figure, 2), 0, 10, float(4 * falloff.at(10.0 / 12.0)));
    ExpectAt(VertexAt(*figure, 0), 0, 0, 0);
}

TEST_F(DFormers, follow_their_nodes_and_let_go_when_the_handle_is_back_on_its_base)
{
    const DzFigure* const figure = loadScene("{}");
    ASSERT_NE(figure, nullptr);
    former()->getZPosControl()->setValue(-1.0f);
    ExpectAt(VertexAt(*figure, 4), 0, 20, -1);
    former()->getBase()->getYPosControl()->setValue(30.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 30, -1);
    former()->getZPosControl()->setValue(0.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 30, 0);
    openhost::Pipeline& pipeline = figure->getObject()->pipeline();
    EXPECT_EQ(pipeline.formedCage().data(), pipeline.morphedCage().data()) << "nothing is copied";
}

TEST_F(DFormers, stay_in_the_world_when_the_figure_moves_away)
{
    DzFigure* const figure = loadScene("{}");
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 4);
    figure->getYPosControl()->setValue(20.0f);
    ExpectAt(VertexAt(*figure, 0), 0, 20, 4);
    ExpectAt(VertexAt(*figure, 4), 0, 40, 0);
}

TEST_F(DFormers, use_influence_weights_in_place_of_the_field)
{
    const DzFigure* const figure =
        loadScene(R"({"influence_vertex_count": 8, "influence_weights": {"values": [[0, 1], [7, 0.5]]}})",
                  R"(, "influence_mode": "weight_map")");
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 0), 0, 0, 4);
    ExpectAt(VertexAt(*figure, 7), 5, 30, 2);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 0);
    former()->getZone()->setInfluenceMode(DzDFormZone::Sphere);
    ExpectAt(VertexAt(*figure, 0), 0, 0, 0);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 4);
}

TEST_F(DFormers, fade_along_the_knots_of_the_field)
{
    const DzFigure* const figure =
        loadScene("{}", R"(, "influence_mode": 0, "falloff": {"values": [[0, 1], [0.5, 0.5], [1, 0.5]]})");
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 2), 0, 10, 2);
    ExpectAt(VertexAt(*figure, 5), 5, 20, float(4 * (1 - 5.0 / 12.0)));
}

TEST_F(DFormers, are_as_strong_as_their_dial_says)
{
    const DzFigure* const figure = loadScene(
        "{}", "", R"(, "channel": {"id": "value", "name": "Strength", "type": "float", "value": 0.5})");
    ASSERT_NE(figure, nullptr);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 2);
    qobject_cast<DzNumericProperty*>(
        figure->getObject()->findModifier(QLatin1String("Bend"))->findProperty(QLatin1String("Strength")))
        ->setDoubleValue(0.0);
    ExpectAt(VertexAt(*figure, 4), 0, 20, 0);
}

TEST_F(DFormers, act_before_the_skin)
{
    const DzFigure* const figure = loadScene("{}");
    ASSERT_NE(figure, nullptr);
    // The hand turns about (0, 20, 0); what the D-Former has moved along Z turns to X.
    qobject_cast<DzFloatProperty*>(BoneOf(*figure, "hand")->findProperty(QLatin1String("YRotate")))
        ->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 4), 4, 20, 0);
}

TEST_F(DFormers, that_are_missing_are_told)
{
    const std::string text =
        R"("modifier_library": [{"id": "Lone", "name": "Lone", "parent": "#Doll-1", "dform": {}}],
        "scene": {"nodes": [)" +
        Instance("", R"(, "label": "Doll")") +
        R"(], "modifiers": [{"id": "Lone-1", "url": "#Lone", "parent": "#Doll-1"}]})";
    ASSERT_TRUE(load("Scenes/Lone.duf", File(text, "scene")));
    EXPECT_EQ(timesLogged("Lone has no D-Former and deforms nothing"), 1);
    ExpectAt(VertexAt(*labelled("Doll"), 4), 0, 20, 0);
}

TEST_F(DFormers, of_presets_stand_where_the_file_places_them)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    const std::string preset =
        Parts() +
        R"(, "modifier_library": [{"id": "Bend", "name": "Bend",
            "parent": "name://@selection:", "dform": {}}], "scene": {"nodes": [)" +
        instances + R"(], "modifiers": [{"id": "Bend-1", "url": "#Bend", "parent": "name://@selection:"}]})";
    ASSERT_TRUE(load("Presets/Bend.duf", File(preset, "preset_dform"))) << log().toStdString();
    ASSERT_NE(former(), nullptr);
    EXPECT_EQ(former()->getNodeParent(), former()->getBase());
    ExpectAt(VertexAt(*figure, 4), 0, 20, 4);
    dzScene->removeNode(former());
    ExpectAt(VertexAt(*figure, 4), 0, 20, 0);
}

TEST_F(DFormers, two_of_one_name_have_a_modifier_each)
{
    const std::string both =
        Parts() + R"(, "modifier_library": [{"id": "M1", "name": "Bend", "parent": "#Doll-1", "dform": {}},
            {"id": "M2", "name": "Bend", "parent": "#Doll-1", "dform": {}}], "scene": {"nodes": [)" +
        Instance("", R"(, "label": "Doll")") + ", " + instances +
        R"(, {"id": "f2", "url": "#Bend", "label": "Bend"}], "modifiers": [
            {"id": "M1-1", "url": "#M1", "parent": "#Doll-1"}, {"id": "M2-1", "url": "#M2", "parent": "#Doll-1"}]})";
    ASSERT_TRUE(load("Scenes/Two.duf", File(both, "scene")));
    int formers = 0;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        if (const auto* const one = qobject_cast<DzDForm*>(dzScene->getNode(i))) {
            EXPECT_EQ(one->getNumModifiers(), 1);
            ++formers;
        }
    EXPECT_EQ(formers, 2);
}

TEST_F(DFormers, are_saved_with_their_places_and_fields)
{
    const char* const zone = R"(, "influence_mode": "sphere", "falloff": [[0, 1], [0.5, 0.25], [1, 0]])";
    const DzFigure* const figure = loadScene(R"({"mask_bone": "hand"})", zone);
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(timesLogged("1 D-Former is evaluated without its mask bone, such as Bend"), 1);
    std::vector<DzVec3> before;
    for (int vertex = 0; vertex < 8; ++vertex)
        before.push_back(VertexAt(*figure, vertex));
    ASSERT_GT(before[2].m_z, 0.1f);
    const std::filesystem::path file = _library / "Scenes/Saved.duf";
    DzFileIOSettings options;
    options.setBoolValue(QStringLiteral("RunSilent"), true);
    options.setBoolValue(QStringLiteral("CompressOutput"), false);
    DzAssetIOMgr& manager = *dzApp->getAssetIOMgr();
    DzAssetIOFilter* const filter =
        manager.getAssetFilter(manager.findAssetFilterIndex(QStringLiteral("DzSceneAssetFilter")));
    ASSERT_EQ(manager.doSaveWithOptions(filter, &options, false, QString::fromStdString(file.string())), 0);
    EXPECT_NE(ReadBytes(file).find("mask_bone"), std::string::npos);
    dzScene->clear();
    ASSERT_TRUE(open(file)) << log().toStdString();
    const DzFigure& again = *labelled("Doll");
    for (int vertex = 0; vertex < 8; ++vertex)
        ExpectAt(VertexAt(again, vertex), before[vertex].m_x, before[vertex].m_y, before[vertex].m_z);
    EXPECT_EQ(former()->getZone()->getInfluenceMode(), DzDFormZone::Sphere);
}
