// Bones that no figure of a scene has a place for: they stay, and stay when the scene is saved.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "tests/host/keep_fixture.h"

using nlohmann::ordered_json;

namespace {

std::string Node(const std::string& id, const std::string& url, const std::string& more = "")
{
    return R"({"id": ")" + id + R"(", "url": ")" + url + "\"" + more + "}";
}

std::string Below(const std::string& parent)
{
    return R"(, "parent": "#)" + parent + "\"";
}

const std::string turned = R"(, "rotation": [{"id": "z", "current_value": 30}])";

class LoneBones : public KeepTest {
protected:
    static std::string inDoll(const std::string& id) { return std::string(doll::path) + "#" + id; }
    /// What the scene is made of, in its order.
    static std::string outline()
    {
        std::string text;
        for (int i = 0; i < dzScene->getNumNodes(); ++i) {
            const DzNode& node = *dzScene->getNode(i);
            const DzNode* const parent = node.getNodeParent();
            text += node.getName().toStdString() + (parent ? "<" + parent->getName().toStdString() : "") +
                    (node.getObject() ? "+mesh " : " ");
        }
        return text;
    }
    /// Loads the nodes, saves, loads and saves again.
    void expectKept(const std::string& nodes, const std::string& expected, const std::string& top = "")
    {
        ASSERT_TRUE(load("Scenes/Lone.duf", doll::File(top + scene(nodes, "")))) << log().toStdString();
        EXPECT_EQ(outline(), expected) << log().toStdString();
        saved();
        const std::string first = Saving::untimed(target());
        TestHost().reset();
        use(_library);
        ASSERT_TRUE(open(target())) << log().toStdString();
        EXPECT_EQ(outline(), expected) << log().toStdString();
        saved();
        EXPECT_EQ(Saving::untimed(target()), first);
    }
};

} // namespace

TEST_F(LoneBones, of_a_figure_whose_definition_is_missing_stay_with_their_poses)
{
    expectKept(Node("Doll", inDoll("Dull")) + ", " + Node("hip", inDoll("hip"), Below("Doll") + turned) +
                   ", " + Node("hand", inDoll("hand"), Below("hip")),
               "hip hand<hip ");
    ASSERT_EQ(dzScene->getNumNodes(), 2);
    EXPECT_EQ(dzScene->getNode(0)->getZRotControl()->getValue(), 30.0f);
    EXPECT_NE(qobject_cast<DzBone*>(dzScene->getNode(0)), nullptr);
    EXPECT_TRUE(logged("2 bones hang on no figure and are nodes by themselves, such as hip and hand"))
        << log().toStdString();
}

TEST_F(LoneBones, in_another_letter_case_do_not_take_the_figures_mesh)
{
    for (const std::string& geometries :
         {std::string(), R"(, "geometries": [{"id": "g", "url": ")" + inDoll("Doll-1") + "\"}]"}) {
        dzScene->clear();
        expectKept(Node("hip-2", inDoll("hIp"), Below("Nobody") + geometries) + ", " +
                       Node("hand-2", inDoll("hAnd"), Below("hip-2")),
                   "hip hand<hip ");
    }
}

TEST_F(LoneBones, of_a_missing_figure_are_not_given_to_another)
{
    expectKept(Node("Dull", inDoll("Dull")) + ", " + Node("b1", inDoll("hip"), Below("Dull") + turned) +
                   ", " + Node("b2", inDoll("hand"), Below("b1") + turned) + ", " +
                   Node("Doll", inDoll("Doll"),
                        R"(, "geometries": [{"id": "g", "url": ")" + inDoll("Doll-1") + "\"}]"),
               "Doll+mesh hip<Doll hand<hip hip hand<hip ");
    ASSERT_GT(dzScene->getNumNodes(), 1);
    EXPECT_EQ(dzScene->getNode(1)->getZRotControl()->getValue(), 0.0f);
}

TEST_F(LoneBones, leave_a_figure_that_hangs_on_a_missing_one_at_the_root)
{
    const std::string figure = Node("Doll-0", inDoll("Doll"), R"(, "label": "Left", "geometries": [{"id": "g",
        "url": ")" + inDoll("Doll-1") + "\"}]" + Below("Dull"));
    expectKept(Node("Dull", inDoll("Dull")) + ", " + Node("b1", inDoll("hand"), Below("Dull")) + ", " +
                   figure,
               "Doll+mesh hip<Doll hand<hip hand ");
    EXPECT_TRUE(logged("1 node hangs on nothing that is there and is at the root, such as Left"))
        << log().toStdString();
}

TEST_F(LoneBones, carry_props_and_come_behind_all_other_roots)
{
    writeHat();
    expectKept(Node("b", inDoll("hand"), Below("Nobody")) + ", " +
                   Node("Hat", "/data/Nord/Hat.dsf#Hat", Below("b")) + ", " +
                   Node("Cap", "/data/Nord/Hat.dsf#Hat", Below("Gone") + R"(, "name": "Cap")") + ", " +
                   Node("Gone", "/data/Nord/Gone.dsf#Gone", Below("b")),
               "Cap+mesh Brim<Cap hand Hat<hand+mesh Brim<Hat ");
    EXPECT_FALSE(logged("Gone and")) << "what is not made is not at the root" << log().toStdString();
}

TEST_F(LoneBones, of_the_scenes_own_definitions_stay)
{
    expectKept(Node("f", "#F") + ", " + Node("b", "#b", Below("f")) + ", " +
                   Node("c", "#c", Below("b") + turned),
               "b c<b ",
               R"("node_library": [{"id": "b", "name": "b", "type": "bone", "parent": "#F"},
            {"id": "c", "name": "c", "type": "bone", "parent": "#b"}], )");
}

TEST_F(LoneBones, that_a_figure_has_already_are_told_and_change_nothing)
{
    ASSERT_TRUE(load("Scenes/Twice.duf", doll::Scene(doll::Instance() + ", " +
                                                     Node("hip", inDoll("hip"), Below("Doll") + turned))));
    EXPECT_EQ(outline(), "Doll+mesh hip<Doll hand<hip ");
    EXPECT_EQ(dzScene->getNode(1)->getZRotControl()->getValue(), 0.0f);
    EXPECT_TRUE(logged("1 bone is listed once more and counts as it was first, such as hip"))
        << log().toStdString();
}

TEST_F(LoneBones, and_those_of_figures_keep_the_geometries_that_a_scene_puts_on_them)
{
    const std::string geometry =
        R"(, "geometries": [{"id": "Plate-1", "url": "/data/Nord/Plate.dsf#Plate", "vendor": [1]}])";
    const std::string alone = R"(, "geometries": [{"id": "Plate-2", "url": ")" + inDoll("Doll-1") + "\"}]";
    const ordered_json file = resaved(scene(Node("Doll", inDoll("Doll")) + ", " +
                                                Node("hip", inDoll("hip"), Below("Doll") + geometry) + ", " +
                                                Node("b", inDoll("hand"), Below("Nobody")) + ", " +
                                                Node("hip-2", inDoll("hip"), Below("Nobody") + alone),
                                            ""));
    EXPECT_TRUE(
        logged("2 geometries are on bones or on nodes without meshes and are kept for saving only, such "
               "as Plate-1 and Plate-2"))
        << log().toStdString();
    const ordered_json hip = entry(file["scene"]["nodes"], "hip");
    EXPECT_EQ(hip.value("geometries", ordered_json()),
              parsed(R"([{"id": "Plate-1", "url": "/data/Nord/Plate.dsf#Plate", "vendor": [1]}])"))
        << file["scene"].dump(1);
    const ordered_json lone = file["scene"]["nodes"].back();
    EXPECT_EQ(lone["name"], "hip");
    ASSERT_EQ(lone.value("geometries", ordered_json()).size(), 1u) << file["scene"].dump(1);
    EXPECT_EQ(lone["geometries"][0]["id"], "Plate-2");
    expectStable();
}
