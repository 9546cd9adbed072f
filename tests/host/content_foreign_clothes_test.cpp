// Clothes of others, on the figure that wears them.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "openhost/scene_picture.h"
#include "tests/host/foreign_scene.h"

namespace {

using namespace doll;

const char* const selfFollowing = R"({"id": "value", "type": "float", "auto_follow": true})";

} // namespace

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

TEST_F(ForeignScene, clothes_take_over_the_shapes_that_they_have_no_morph_for)
{
    writeShirt();
    writeShape("Own", Morph("Own", 1, 1.0));
    ASSERT_TRUE(load("Scenes/Dressed.duf", Scene(shirt(R"(, "conform_target": "#Doll")") + ", " +
                                                 Instance("", R"(, "label": "Body")"))));
    const DzFigure &body = *labelled("Body"), &clothes = *labelled("Shirt");
    const float before = VertexAt(clothes, 1).m_y;
    DialIn(body, "Own")->setDoubleValue(0.5);
    EXPECT_FLOAT_EQ(VertexAt(clothes, 1).m_y, before + 0.5f);
    EXPECT_FLOAT_EQ(VertexAt(clothes, 7).m_y, VertexAt(body, 7).m_y);
}

TEST_F(ForeignScene, what_is_not_read_of_how_clothes_take_shapes_over_is_told)
{
    writeShirt();
    ASSERT_TRUE(load("Scenes/Dressed.duf", Scene(shirt(R"(, "conform_target": "#Doll",
        "extra": [{"type": "studio_node_channels"}, {"type": "studio_follower_projection_options"}])") +
                                                 ", " + Instance())));
    EXPECT_TRUE(logged("Dressed.duf: kept for saving and without effect here: 1 choice of how a follower "
                       "takes shapes over"));
}

TEST_F(ForeignScene, a_graft_takes_the_place_of_what_it_hides)
{
    write("data/Nord/Patch/Patch.dsf",
          File(R"("geometry_library": [{"id": "Patch-1", "type": "subdivision_surface",
        "vertices": {"count": 5, "values": [[0,10,0],[5,10,0],[0,20,0],[5,20,0],[2.5,15,3]]},
        "polygon_groups": {"count": 1, "values": ["hip"]},
        "polygon_material_groups": {"count": 1, "values": ["Horn"]},
        "polylist": {"count": 4, "values": [[0,0,0,1,4],[0,0,1,3,4],[0,0,3,2,4],[0,0,2,0,4]]},
        "graft": {"vertex_count": 8, "poly_count": 3,
            "vertex_pairs": {"count": 84, "values": [[0, 2], [1, 3], [2, 4], ["?"], [3, 5]]},
            "hidden_polys": {"count": 2, "values": [1, -4]}}}],
        "node_library": [{"id": "Patch", "type": "figure"}])",
               "figure"));
    const char* const patch =
        R"({"id": "Patch-2", "url": "/data/Nord/Patch/Patch.dsf#Patch", "label": "Patch",
        "conform_target": "#Doll",
        "geometries": [{"id": "Patch-3", "url": "/data/Nord/Patch/Patch.dsf#Patch-1"}]})";
    ASSERT_TRUE(load("Scenes/Grafted.duf", Scene(Instance() + ", " + patch)));
    DzFigure* const body = labelled("Doll");
    ASSERT_TRUE(body && labelled("Patch"));
    EXPECT_TRUE(labelled("Patch")->isGraftFollowing());
    for (const DzFigure* const figure : {body, labelled("Patch")})
        qobject_cast<DzFacetShape*>(figure->getObject()->getCurrentShape())
            ->getSubDLevelControl()
            ->setValue(0);
    const openhost::ScenePicture picture = openhost::VisibleItems(*dzScene);
    ASSERT_EQ(picture.nodes, std::vector<DzNode*>{body});
    EXPECT_EQ(picture.items[0].mesh.faceCount(), 2u + 4u);
    EXPECT_EQ(picture.items[0].mesh.vertexCount(), 8u + 1u);
    EXPECT_TRUE(logged("Patch-1: 2 entries of the graft that are no numbers of vertices or faces, left out"));
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

TEST_F(ForeignScene, what_is_farther_out_than_anything_is_left_out_of_pictures_and_told)
{
    writeHat();
    ASSERT_TRUE(
        load("Scenes/Far.duf", Scene(Instance() + R"(, {"id": "Hat-i", "url": "/data/Nord/Hat.dsf#Hat",
        "label": "Far Hat", "translation": [{"id": "x", "current_value": 1e18}]})")));
    ASSERT_NE(dzScene->findNodeByLabel(QStringLiteral("Far Hat")), nullptr);
    EXPECT_EQ(openhost::VisibleItems(*dzScene).nodes.size(), 1u);
    EXPECT_TRUE(logged("Far Hat: reaches too far out to be drawn and is left out of the picture"))
        << log().toStdString();
}
