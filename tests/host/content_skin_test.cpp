// Skins that are bound in other ways than by one map a bone.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzbonebinding.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskinbinding.h"
#include "tests/host/foreign_fixture.h"
#include "tests/host/foreign_scene.h"
#include "tests/host/save_fixture.h"

#include <cmath>

#include <nlohmann/json.hpp>

namespace {

using namespace doll;
using Json = nlohmann::json;
namespace fs = std::filesystem;

std::string Replaced(std::string text, const std::string& what, const std::string& instead)
{
    const std::size_t at = text.find(what);
    EXPECT_NE(at, text.npos) << what;
    return at == text.npos ? text : text.replace(at, what.size(), instead);
}

const char* const settings = R"({"type": "skin_settings", "general_map_mode": "DualQuat"})";
const char* const handWeights = R"("node_weights": {"count": 4, "values": [[4,1],[5,1],[6,1],[7,1]]}})";

/// Vertices 6 and 7 are held half by each bone; 6 takes a share of 0.25 of the dual quaternions, 7 none.
std::string BlendedFigure()
{
    std::string figure = Replaced(Figure(), "[3,1]]", "[3,1],[6,0.5],[7,0.5]]");
    figure = Replaced(figure, handWeights, R"("node_weights": {"values": [[4,1],[5,1],[6,0.5],[7,0.5]]}})");
    return Replaced(figure, settings, R"({"type": "skin_settings", "general_map_mode": "DualQuat",
        "binding_mode": "Blended", "blend_mode": "BlendLinearDualQuat", "blend_vertex_count": 8,
        "blend_weights": {"count": 1, "values": [[6, 0.25]]}})");
}

/// The hand's scale acts on vertex 7 alone.
std::string ScaledFigure()
{
    const std::string figure = Replaced(Figure(), handWeights,
                                        std::string(handWeights, std::string(handWeights).size() - 1) +
                                            R"(, "scale_weights": {"values": [[7,1]]}})");
    return Replaced(figure, settings, R"({"type": "skin_settings", "scale_mode": "ScaleMaps"})");
}

const char* const hipWeights = R"("node_weights": {"count": 4, "values": [[0,1],[1,1],[2,1],[3,1]]}})";
const char* const hipAxes = R"("local_weights": {"x": {"values": [[0,1],[1,1],[2,1],[3,1],[4,1],[5,1],[6,1]]},
    "z": {"values": [[0,1],[1,1],[2,1],[3,1],[7,0.5]]}}})";

/// Of the hand's vertices 7 alone turns with it about X; about Z all do, but 7 by half.
std::string AxisFigure(const std::string& modes)
{
    const auto with = [](const std::string& weights, const std::string& axes) {
        return weights.substr(0, weights.size() - 1) + ", " + axes;
    };
    std::string figure = Replaced(Figure(), hipWeights, with(hipWeights, hipAxes));
    figure = Replaced(figure, handWeights, with(handWeights, R"("local_weights": {
        "x": {"values": [[7,1]]}, "y": {"values": []}, "z": {"values": [[4,1],[5,1],[6,1],[7,0.5]]}}})"));
    return Replaced(figure, settings, R"({"type": "skin_settings", )" + modes + "}");
}

class Skins : public ForeignTest {
protected:
    DzFigure* open(const std::string& figure)
    {
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
        return openDoll();
    }
    static void turnHand(const DzFigure& figure)
    {
        BoneOf(figure, "hand")->getZRotControl()->setValue(90.0f);
    }
};

/// Skins in scene files, which hold all that they say.
class SavedSkins : public SaveTest {
protected:
    void SetUp() override { SaveTest::SetUp(); }
    std::string saved(const std::string& figure)
    {
        const std::string node = R"({"id": "Doll-i", "url": "#Doll", "label": "Doll",
            "geometries": [{"id": "Doll-i-g", "url": "#Doll-1"}]})";
        WriteBytes(_library / "Scenes/Own.duf",
                   File(figure + R"(, "scene": {"nodes": [)" + node + "]}", "scene"));
        EXPECT_TRUE(open(_library / "Scenes/Own.duf")) << log().toStdString();
        EXPECT_EQ(save("DzSceneAssetFilter", file("Again.duf")), 0) << log().toStdString();
        return ReadBytes(file("Again.duf"));
    }
    /// The mesh when the hand is turned about all axes.
    static std::vector<float> turned()
    {
        const DzFigure& figure = *qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Doll")));
        BoneOf(figure, "hand")->getXRotControl()->setValue(33.0f);
        BoneOf(figure, "hand")->getYRotControl()->setValue(-20.0f);
        BoneOf(figure, "hand")->getZRotControl()->setValue(71.0f);
        std::vector<float> positions;
        for (int v = 0; v < 8; ++v)
            for (int axis = 0; axis < 3; ++axis)
                positions.push_back(VertexAt(figure, v)[axis]);
        return positions;
    }
    static Json skinOf(const fs::path& file)
    {
        const Json document = Json::parse(ReadBytes(file));
        for (const Json& modifier : document.at("modifier_library"))
            if (modifier.contains("skin"))
                return modifier;
        ADD_FAILURE() << "there is no skin";
        return Json();
    }
};

} // namespace

TEST_F(Skins, mix_linear_and_dual_quaternion_blending_by_their_weights)
{
    DzFigure* const figure = open(BlendedFigure());
    ASSERT_NE(figure, nullptr);
    turnHand(*figure);
    const double half = std::sqrt(0.5);
    // Half way on the chord from (0, 30) to (-10, 20), and half the angle about the hand.
    ExpectAt(VertexAt(*figure, 6), 0.75 * -5.0 + 0.25 * -10.0 * half,
             0.75 * 25.0 + 0.25 * (20.0 + 10.0 * half), 0);
    ExpectAt(VertexAt(*figure, 7), 0.5 * (5.0 - 10.0), 0.5 * (30.0 + 25.0), 0);
}

TEST_F(Skins, scale_by_maps_of_their_own)
{
    DzFigure* const figure = open(ScaledFigure());
    ASSERT_NE(figure, nullptr);
    BoneOf(*figure, "hand")->getScaleControl()->setValue(2.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 30, 0);
    ExpectAt(VertexAt(*figure, 7), 10, 40, 0);
    turnHand(*figure);
    ExpectAt(VertexAt(*figure, 7), -20, 30, 0);
}

TEST_F(Skins, turn_by_weights_of_their_own_for_each_axis)
{
    DzFigure* const figure = open(AxisFigure(R"("binding_mode": "Local")"));
    ASSERT_NE(figure, nullptr);
    turnHand(*figure);
    const double half = std::sqrt(0.5);
    ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
    ExpectAt(VertexAt(*figure, 7), -5 * half, 20 + 15 * half, 0); // half the angle
    BoneOf(*figure, "hand")->getZRotControl()->setValue(0.0f);
    BoneOf(*figure, "hand")->getXRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 30, 0);
    ExpectAt(VertexAt(*figure, 7), 5, 20, 10);
    EXPECT_TRUE(log().isEmpty()) << log().toStdString();
}

TEST_F(Skins, that_have_weights_for_each_axis_alone_turn_by_them)
{
    std::string figure = Replaced(Figure(), hipWeights, hipAxes);
    figure = Replaced(figure, handWeights, R"("local_weights": {"x": {"values": [[7,1]]}}})");
    DzFigure* const loaded = open(figure);
    ASSERT_NE(loaded, nullptr);
    BoneOf(*loaded, "hand")->getXRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*loaded, 6), 0, 30, 0);
    ExpectAt(VertexAt(*loaded, 7), 5, 20, 10);
}

TEST_F(Skins, of_which_some_joints_have_weights_for_each_axis_alone_take_their_mean)
{
    DzFigure* const figure = open(Replaced(Figure(), handWeights, R"("local_weights": {
        "x": {"values": [[6,1],[7,1]]}, "y": {"values": [[6,1]]}, "z": {"values": [[6,1],[7,1]]}}})"));
    ASSERT_NE(figure, nullptr);
    turnHand(*figure);
    ExpectAt(VertexAt(*figure, 6), -10, 20, 0);
    EXPECT_TRUE(logged("1 joint has weights for each axis alone; the mean of the three is used"));
}

TEST_F(Skins, mix_weights_for_each_axis_with_general_ones)
{
    DzFigure* const figure = open(AxisFigure(R"("binding_mode": "Blended", "blend_mode": "BlendLocalGeneral",
        "blend_vertex_count": 8, "blend_weights": {"count": 1, "values": [[6, 0.25]]})"));
    ASSERT_NE(figure, nullptr);
    BoneOf(*figure, "hand")->getXRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 0.75 * 30 + 0.25 * 20, 0.25 * 10);
}

TEST_F(Skins, without_a_word_on_the_mixture_use_general_weights)
{
    DzFigure* const figure =
        open(AxisFigure(R"("binding_mode": "Blended", "blend_mode": "BlendLocalGeneral")"));
    ASSERT_NE(figure, nullptr);
    BoneOf(*figure, "hand")->getXRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 6), 0, 20, 10);
    EXPECT_TRUE(logged("mixes weights for each axis with others but does not say how; the others are used"));
}

TEST_F(Skins, tell_which_weights_stand_in_for_others)
{
    const std::string local = AxisFigure(R"("binding_mode": "Local")");
    ASSERT_NE(open(Replaced(local, hipAxes, R"("bulges": [{"id": "positive-left", "value": 0.5}]})")),
              nullptr);
    EXPECT_TRUE(logged("1 joint has no weights for each axis; the general ones are used for all three"));
    EXPECT_TRUE(logged("1 joint bulges when turned, which has no effect here and is kept"));
}

TEST_F(Skins, of_old_figures_bind_whole_face_groups)
{
    std::string figure = Figure();
    const std::size_t joints = figure.find(R"(, "joints": [)"), end = figure.find("}}]},", joints);
    ASSERT_TRUE(joints != figure.npos && end != figure.npos);
    figure.replace(joints, end + 3 - joints, "");
    DzFigure* const loaded = open(Replaced(figure, "\"skin\": {", "\"legacy_skin\": {"));
    ASSERT_NE(loaded, nullptr) << log().toStdString();
    turnHand(*loaded);
    ExpectAt(VertexAt(*loaded, 3), 5, 10, 0);
    ExpectAt(VertexAt(*loaded, 5), 2.5, 22.5, 0); // between the groups
    ExpectAt(VertexAt(*loaded, 6), -10, 20, 0);
}

TEST_F(Skins, know_bones_that_inherit_scales_by_what_they_hang_on)
{
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(BoneOf(*figure, "hip")->inheritsScale());
    EXPECT_FALSE(BoneOf(*figure, "hand")->inheritsScale());
}

TEST_F(Skins, whose_weights_are_not_to_be_normalised_are_drawn_so_all_the_same)
{
    std::string figure = Replaced(Figure(), "[3,1]]", "[3,1],[7,0.25]]");
    figure = Replaced(figure, "[7,1]]", "[7,0.5]]");
    figure = Replaced(figure, settings, R"({"type": "skin_settings", "general_map_mode": "Linear",
        "auto_normalize_general": false, "auto_normalize_local": false, "auto_normalize_scale": 0})");
    DzFigure* const loaded = open(figure);
    ASSERT_NE(loaded, nullptr);
    turnHand(*loaded);
    // A third stays at (5, 30), two thirds go to (-10, 25).
    ExpectAt(VertexAt(*loaded, 7), -5, (30.0 + 2 * 25.0) / 3, 0);
    EXPECT_TRUE(logged("says that its weights are not to be normalised: general; that is kept, and they are "
                       "drawn normalised all the same"))
        << log().toStdString();
}

TEST_F(Skins, tell_of_all_weights_that_are_not_to_be_normalised)
{
    const std::string figure =
        Replaced(AxisFigure(R"("binding_mode": "Local",
        "auto_normalize_local": false, "auto_normalize_scale": false)"),
                 hipAxes, R"("scale_weights": {"values": [[0,1]]}, )" + std::string(hipAxes));
    ASSERT_NE(open(figure), nullptr);
    EXPECT_TRUE(logged("are not to be normalised: local, scale; that is kept")) << log().toStdString();
}

TEST_F(SavedSkins, keep_which_weights_are_not_to_be_normalised)
{
    const std::string axes =
        saved(AxisFigure(R"("auto_normalize_general": false, "auto_normalize_local": true)"));
    EXPECT_NE(axes.find("\"auto_normalize_general\" : false"), axes.npos) << axes;
    EXPECT_NE(axes.find("\"auto_normalize_local\" : true"), axes.npos);
    EXPECT_NE(axes.find("\"auto_normalize_scale\" : true"), axes.npos);
}

TEST_F(SavedSkins, with_weights_for_each_axis_alone_have_no_others_and_turn_alike)
{
    // Weights that 16 bits do not hold.
    std::string figure = Replaced(Figure(), hipWeights, hipAxes);
    figure = Replaced(figure, handWeights, R"("local_weights": {"x": {"values": [[5,0.3],[7,0.1]]},
        "y": {"values": [[5,0.123456],[6,0.7]]}, "z": {"values": [[4,1],[5,0.777],[6,1],[7,0.33333]]}}})");
    const std::string first = saved(figure);
    EXPECT_EQ(first.find("node_weights"), first.npos);
    EXPECT_NE(first.find("local_weights"), first.npos);
    const std::vector<float> before = turned();
    ASSERT_TRUE(reload(file("Again.duf")));
    EXPECT_EQ(turned(), before);
    ASSERT_EQ(save("DzSceneAssetFilter", file("Third.duf")), 0);
    EXPECT_EQ(skinOf(file("Third.duf")), skinOf(file("Again.duf")));
}

TEST_F(SavedSkins, with_weights_for_each_axis_at_some_joints_have_their_mean_again)
{
    const std::string first = saved(Replaced(Figure(), handWeights, R"("local_weights": {
        "x": {"values": [[6,0.1],[7,1]]}, "y": {"values": [[6,0.2]]}, "z": {"values": [[6,1],[7,0.5]]}}})"));
    EXPECT_NE(first.find("\"node_weights\""), first.npos) << "of the hip";
    EXPECT_EQ(first.find("\"node_weights\""), first.rfind("\"node_weights\"")) << first;
    const std::vector<float> before = turned();
    ASSERT_TRUE(reload(file("Again.duf")));
    EXPECT_EQ(turned(), before);
}

TEST_F(SavedSkins, keep_general_weights_that_are_the_mean_of_those_for_each_axis)
{
    const std::string all = R"({"values": [[4,1],[5,1],[6,1],[7,1]]})";
    saved(Replaced(Figure(), handWeights,
                   "\"node_weights\": " + all + ", \"bulges\": [], \"local_weights\": {\"x\": " + all +
                       ", \"y\": " + all + ", \"z\": " + all + "}}"));
    EXPECT_TRUE(skinOf(file("Again.duf")).at("skin").at("joints").at(1).contains("node_weights"));
}

TEST_F(SavedSkins, keep_a_mean_that_somebody_has_changed)
{
    saved(Replaced(Figure(), handWeights, R"("local_weights": {"x": {"values": [[6,1],[7,1]]}}})"));
    const DzFigure& figure = *qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Doll")));
    for (int i = 0; i < figure.getObject()->getNumModifiers(); ++i)
        if (const auto* const skin = qobject_cast<DzSkinBinding*>(figure.getObject()->getModifier(i)))
            skin->getBoneBinding(1)->getWeights()->setFloatWeight(7, 0.5f);
    ASSERT_EQ(save("DzSceneAssetFilter", file("Third.duf")), 0);
    EXPECT_FALSE(skinOf(file("Again.duf")).at("skin").at("joints").at(1).contains("node_weights"));
    EXPECT_TRUE(skinOf(file("Third.duf")).at("skin").at("joints").at(1).contains("node_weights"));
}

TEST_F(SavedSkins, keep_bulges_as_they_were)
{
    const std::string bulges =
        R"("bulge_weights": {"x": {"count": 1, "values": [[7, 0.5]]}}, "left_map": [[99, 2]],
        "bulges": [{"id": "positive-left", "value": 0.5}, {"id": "own", "deep": [{"x": null}]}]})";
    saved(Replaced(Figure(), handWeights,
                   std::string(handWeights, std::string(handWeights).size() - 1) + ", " + bulges));
    const Json joint = skinOf(file("Again.duf")).at("skin").at("joints").at(1);
    const Json expected = Json::parse("{" + bulges);
    for (const char* const member : {"bulge_weights", "left_map", "bulges"})
        EXPECT_EQ(joint.value(member, Json()), expected[member]) << member;
    EXPECT_TRUE(joint.contains("node_weights"));
    EXPECT_EQ(log().count(QStringLiteral("1 joint bulges when turned, which has no effect here and is kept")),
              1);
}

TEST_F(SavedSkins, keep_how_they_blend_and_scale)
{
    const std::string blended = saved(BlendedFigure());
    for (const char* const part :
         {"\"Blended\"", "\"BlendLinearDualQuat\"", "\"blend_vertex_count\"", "\"blend_weights\""})
        EXPECT_NE(blended.find(part), blended.npos) << part;
    const std::string axes = saved(AxisFigure(R"("binding_mode": "Local")"));
    for (const char* const part : {"\"Local\"", "\"local_weights\""})
        EXPECT_NE(axes.find(part), axes.npos) << part;
    const std::string mixed =
        saved(AxisFigure(R"("binding_mode": "Blended", "blend_mode": "BlendLocalGeneral",
        "blend_weights": {"values": [[6, 0.25]]})"));
    for (const char* const part : {"\"Blended\"", "\"BlendLocalGeneral\"", "\"blend_weights\""})
        EXPECT_NE(mixed.find(part), mixed.npos) << part;
    const std::string scaled = saved(ScaledFigure());
    for (const char* const part : {"\"ScaleMaps\"", "\"scale_weights\""})
        EXPECT_NE(scaled.find(part), scaled.npos) << part;
}
