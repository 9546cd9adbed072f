// Saving parts of a scene, wearables and poses.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzerclink.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "figure/mesh_access.h"
#include "tests/host/save_fixture.h"
#include "tests/host/scene_text.h"

#include <nlohmann/json.hpp>

#include <set>
#include <tuple>

namespace {

using nlohmann::json;

class SavedPart : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        makeScene();
    }
    static DzNode& node(const char* label) { return *dzScene->findNodeByLabel(QString::fromUtf8(label)); }
    static std::vector<std::string> rootLabels()
    {
        std::vector<std::string> labels;
        for (int i = 0; i < dzScene->getNumNodes(); ++i)
            if (dzScene->getNode(i)->isRootNode())
                labels.push_back(dzScene->getNode(i)->getLabel().toStdString());
        return labels;
    }
    /// Of the second Mini.
    static DzFigure& second() { return static_cast<DzFigure&>(node("Mini (2)")); }
};

using Strings = std::vector<std::string>;

} // namespace

TEST_F(SavedPart, a_subset_holds_the_selected_trees)
{
    node("Stone").select();
    second().findBone(QStringLiteral("arm"))->select();
    node("Sword").select();
    const std::string before = TreeText(second());
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Part.duf")), 0) << log().toStdString();
    const json saved = json::parse(ReadBytes(file("Part.duf")));
    EXPECT_EQ(saved["asset_info"]["type"], "scene_subset");
    EXPECT_EQ(saved["scene"]["nodes"].size(), 5u);
    ASSERT_TRUE(reload(file("Part.duf"))) << log().toStdString();
    EXPECT_EQ(rootLabels(), (Strings{"Mini (2)", "Stone"}));
    EXPECT_EQ(TreeText(node("Mini (2)")), before);
}

TEST_F(SavedPart, a_subset_of_nothing_selected_is_the_whole_scene)
{
    const std::string before = SceneText();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Part.duf")), 0);
    ASSERT_TRUE(reload(file("Part.duf")));
    EXPECT_EQ(SceneText(), before);
}

TEST_F(SavedPart, a_subset_merges_beside_the_same_nodes)
{
    node("Gr\xC3\xBCppe #1/50%").select();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Part.duf")), 0);
    ASSERT_TRUE(open(file("Part.duf")));
    EXPECT_EQ(rootLabels(),
              (Strings{"Mini", "Mini (2)", "Gr\xC3\xBCppe #1/50%", "Shirt", "Gr\xC3\xBCppe #1/50% (2)"}));
}

TEST_F(SavedPart, wearables_go_to_the_figure_that_is_selected_when_they_are_loaded)
{
    makeProp("Ring", static_cast<DzFigure&>(node("Mini")).findBone(QStringLiteral("hip")));
    ASSERT_EQ(save("DzWearablesAssetFilter", file("Worn.duf"), false, "Mini"), 0) << log().toStdString();
    const json saved = json::parse(ReadBytes(file("Worn.duf")));
    EXPECT_EQ(saved["asset_info"]["type"], "wearable");
    ASSERT_EQ(saved["scene"]["nodes"].size(), 4u);
    EXPECT_EQ(saved["scene"]["nodes"][0]["conform_target"], "name://@selection:");
    EXPECT_EQ(saved["scene"]["nodes"][3]["parent"], "name://@selection/hip:");

    TestHost().reset();
    use(_library);
    openMini();
    DzFigure* const wearer = openMini();
    ASSERT_NE(wearer, nullptr);
    ASSERT_TRUE(open(file("Worn.duf"))) << log().toStdString();
    const auto* const shirt = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Shirt")));
    ASSERT_NE(shirt, nullptr);
    EXPECT_EQ(shirt->getFollowTarget(), wearer);
    EXPECT_EQ(DialOf(*shirt, "Puff")->getValue(), 0.5f);
    const DzNode* const ring = dzScene->findNodeByLabel(QStringLiteral("Ring"));
    ASSERT_NE(ring, nullptr);
    EXPECT_EQ(ring->getNodeParent(), wearer->findBone(QStringLiteral("hip")));
}

TEST_F(SavedPart, of_wearables_without_a_label_are_those_of_the_selected_figure)
{
    second().findBone(QStringLiteral("hip"))->select();
    ASSERT_EQ(save("DzWearablesAssetFilter", file("Worn.duf")), 0) << log().toStdString();
    const json nodes = json::parse(ReadBytes(file("Worn.duf")))["scene"]["nodes"];
    ASSERT_EQ(nodes.size(), 1u);
    EXPECT_EQ(nodes[0]["name"], "Sword");
    EXPECT_EQ(nodes[0]["parent"], "name://@selection/arm:");
}

TEST_F(SavedPart, a_pose_brings_bones_and_pose_dials_back_whatever_they_were_before)
{
    ASSERT_EQ(save("DzPoseAssetFilter", file("Pose.duf"), true, "Mini (2)"), 0) << log().toStdString();
    const auto pose = [](const DzFigure& figure) {
        std::vector<double> values{DialOf(figure, "Bend")->getDoubleValue(),
                                   figure.getScaleControl()->getDoubleValue()};
        for (const DzBone* const bone : figure.bones())
            for (const DzFloatProperty* const property :
                 {bone->getXRotControl(), bone->getYRotControl(), bone->getZRotControl(),
                  bone->getXPosControl(), bone->getYPosControl(), bone->getZPosControl()})
                values.push_back(property->getDoubleValue());
        return values;
    };
    const std::vector<double> before = pose(second());
    EXPECT_EQ(second().findBone(QStringLiteral("arm"))->getZRotControl()->getDoubleValue(), 20.0)
        << "driven by the pose dial";
    auto& first = static_cast<DzFigure&>(node("Mini"));
    DialOf(first, "Bend")->setValue(1.0f);
    const float shape = DialOf(first, "Up")->getValue();
    delete first.findBone(QStringLiteral("arm"))->getXRotControl()->getController(0);
    dzScene->setPrimarySelection(&first);
    ASSERT_TRUE(open(file("Pose.duf"))) << log().toStdString();
    EXPECT_EQ(pose(first), before);
    EXPECT_EQ(DialOf(first, "Up")->getValue(), shape) << "shapes are no part of a pose";
}

TEST_F(SavedPart, a_pose_names_bones_and_dials_below_the_selection)
{
    node("Mini (2)").select();
    ASSERT_EQ(save("DzPoseAssetFilter", file("Pose.duf")), 0);
    const json saved = json::parse(ReadBytes(file("Pose.duf")));
    EXPECT_EQ(saved["asset_info"]["type"], "preset_pose");
    EXPECT_FALSE(saved["scene"].contains("nodes"));
    const json& values = saved["scene"]["animations"];
    ASSERT_EQ(values.size(), 1u + 3u * 10u);
    EXPECT_EQ(values[0], json({{"url", "name://@selection#Bend:?value/value"}, {"keys", {{0, 0.5}}}}));
    EXPECT_EQ(values[1]["url"], "name://@selection:?translation/x/value");
    EXPECT_EQ(values[11]["url"], "name://@selection/hip:?translation/x/value");
    EXPECT_EQ(values[26]["url"], "name://@selection/arm:?rotation/z/value");
}

TEST_F(SavedPart, faces_of_many_corners_are_cut_into_triangles)
{
    DzNode* const prop = makeProp("Pebble", nullptr, true);
    prop->select();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Pebble.duf")), 0) << log().toStdString();
    ASSERT_TRUE(reload(file("Pebble.duf")));
    const auto* const shape = qobject_cast<DzFacetShape*>(node("Pebble").getObject()->getCurrentShape());
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->getFacetMesh()->getNumPolygons(), 4);
    EXPECT_EQ(shape->getFacetMesh()->getNumVertices(), 6);
    EXPECT_EQ(shape->getFacetMesh()->getFacet(2).m_vertIdx[1], 3);
}

TEST_F(SavedPart, a_figure_whose_data_file_is_gone_is_described_whole)
{
    DialOf(second(), "Bend")->setValue(0.25f);
    second().select();
    std::filesystem::rename(_library / "data", _library / "elsewhere");
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Whole.duf")), 0) << log().toStdString();
    ASSERT_TRUE(reload(file("Whole.duf"))) << log().toStdString();
    auto& figure = static_cast<DzFigure&>(node("Mini (2)"));
    ASSERT_NE(DialOf(figure, "Up"), nullptr);
    EXPECT_EQ(DialOf(figure, "Up")->getLabel(), QStringLiteral("Upper"));
    EXPECT_EQ(DialOf(figure, "Bend")->getValue(), 0.25f);
    EXPECT_EQ(figure.findBone(QStringLiteral("arm"))->getZRotControl()->getDoubleValue(), 10.0);
    EXPECT_TRUE(figure.getAssetUri().isEmpty());
}

TEST_F(SavedPart, a_link_that_no_formula_can_say_is_left_out_with_a_line_in_the_log)
{
    DzFloatProperty* const up = DialOf(node("Mini"), "Up");
    node("Stone").getXPosControl()->insertController(new DzERCLink(up, 2.0, 0.0));
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    EXPECT_TRUE(log().contains(QStringLiteral("1 link between properties cannot be kept in a file")));
}

TEST_F(SavedPart, a_d_former_comes_back_with_its_weights)
{
    node("Mini").select();
    ASSERT_TRUE(open(writeDForm(10, {1})));
    ASSERT_EQ(save("DzSceneAssetFilter", file("All.duf")), 0);
    const std::vector<std::string> before = rootLabels();
    ASSERT_TRUE(reload(file("All.duf")));
    EXPECT_EQ(rootLabels(), before);
    auto* const former = qobject_cast<DzDForm*>(&node("D-Former_1"));
    ASSERT_NE(former, nullptr);
    EXPECT_EQ(former->getBase(), &node("D-Former_1 Base"));
    EXPECT_EQ(former->getZone(), &node("D-Former_1 Field"));
    const DzDFormModifier* const modifier = former->getModifierForNode(&node("Mini"));
    ASSERT_NE(modifier, nullptr);
    EXPECT_NEAR(modifier->getInfluenceWeights()->getFloatWeight(1), 0.25, 1e-4);
    EXPECT_EQ(modifier->getInfluenceWeights()->getFloatWeight(2), 0.0f);
}

TEST_F(SavedPart, a_d_former_that_is_no_part_of_the_file_is_left_out_with_a_line_in_the_log)
{
    node("Mini").select();
    ASSERT_TRUE(open(writeDForm(10, {1})));
    dzScene->selectAllNodes(false);
    node("Mini").select();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Part.duf")), 0);
    EXPECT_TRUE(log().contains(QStringLiteral("1 D-Former that is no part of it cannot be kept in a file")));
    EXPECT_EQ(ReadBytes(file("Part.duf")).find("dform"), std::string::npos);
}

TEST_F(SavedPart, a_figure_with_another_mesh_than_its_file_s_is_described_whole)
{
    second().setObject(nullptr);
    DzNode* const prop = makeProp("Mesh");
    DzObject* const object = prop->getObject();
    auto* const shape = new DzFacetShape;
    shape->setName(QStringLiteral("Mesh"));
    shape->setFacetMesh(qobject_cast<DzFacetShape*>(object->getCurrentShape())->getFacetMesh());
    auto* const other = new DzObject;
    other->addShape(shape);
    second().setObject(other);
    second().select();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("Other.duf")), 0) << log().toStdString();
    const json nodes = json::parse(ReadBytes(file("Other.duf")))["scene"]["nodes"];
    ASSERT_EQ(nodes.size(), 4u);
    EXPECT_EQ(nodes[1]["url"], "#hip");
    ASSERT_TRUE(reload(file("Other.duf")));
    auto& figure = static_cast<DzFigure&>(node("Mini (2)"));
    EXPECT_EQ(figure.bones().size(), 2);
    EXPECT_EQ(figure.getObject()->getCachedGeom()->getNumVertices(), 6);
}

TEST_F(SavedPart, a_node_without_a_name_is_kept)
{
    auto* const nameless = new DzNode;
    nameless->setLabel(QStringLiteral("Nameless"));
    dzScene->addNode(nameless);
    makeProp("Hat", nameless);
    nameless->select();
    ASSERT_EQ(save("DzSceneSubsetAssetFilter", file("N.duf")), 0);
    ASSERT_TRUE(reload(file("N.duf"))) << log().toStdString();
    EXPECT_EQ(node("Hat").getNodeParent(), &node("Nameless"));
    EXPECT_TRUE(node("Nameless").getName().isEmpty());
}

TEST_F(SavedPart, favourites_stay_favourites)
{
    DzFigure& figure = second();
    addMorph(figure, "Mine", {{1}, {{0.0f, 0.5f, 0.0f}}})->getValueControl()->setIsFavorite(true);
    figure.getYRotControl()->setIsFavorite(true);
    DzMorph* ofFile = nullptr;
    for (int i = 0; i < figure.getObject()->getNumModifiers() && !ofFile; ++i)
        ofFile = qobject_cast<DzMorph*>(figure.getObject()->getModifier(i));
    ASSERT_NE(ofFile, nullptr);
    ofFile->getValueControl()->setIsFavorite(true);
    const QString name = ofFile->getName();
    ASSERT_EQ(save("DzSceneAssetFilter", file("Marked.duf")), 0) << log().toStdString();
    ASSERT_TRUE(reload(file("Marked.duf"))) << log().toStdString();
    const DzFigure& loaded = second();
    const auto isMarked = [&](const QString& morph) {
        return qobject_cast<DzMorph*>(loaded.getObject()->findModifier(morph))
            ->getValueControl()
            ->isFavorite();
    };
    EXPECT_TRUE(isMarked(name));
    EXPECT_TRUE(isMarked(QStringLiteral("Mine")));
    EXPECT_TRUE(loaded.getYRotControl()->isFavorite());
    EXPECT_FALSE(loaded.getXRotControl()->isFavorite());
    const auto& other = static_cast<const DzFigure&>(node("Mini"));
    EXPECT_FALSE(other.getYRotControl()->isFavorite()) << "the other one's are its own";
}

TEST_F(SavedPart, texture_coordinates_and_lines_of_an_imported_mesh_are_kept)
{
    // A seam along the second edge: its vertices have other coordinates in the second face.
    WriteBytes(file("seam.obj"), "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\nv 3 2 0\n"
                                 "vt 0 0\nvt 0.5 0\nvt 0.5 1\nvt 0 1\nvt 0.25 0.125\nvt 0.75 0.25\nvt 1 1\n"
                                 "f 1/1 2/2 3/3 4/4\nf 2/5 5/6 7/7 6/7 3/5\nl 1 3 6\n");
    ASSERT_TRUE(open(file("seam.obj")));
    const auto cornersOf = [](const DzNode& imported) {
        auto* const shape = qobject_cast<DzFacetShape*>(imported.getObject()->getCurrentShape());
        const openhost::MeshExtras& extras = *openhost::MeshAccess::extras(*shape->getFacetMesh());
        const geometry::Topology& topology = *openhost::MeshAccess::mesh(*shape->getFacetMesh()).topology;
        std::multiset<std::tuple<std::uint32_t, float, float>> corners;
        for (std::size_t c = 0; c < topology.cornerCount(); ++c) {
            const auto& uv = extras.texCoords.coordinates[extras.texCoords.cornerIndices[c]];
            corners.emplace(topology.cornerVertices[c], uv.u, uv.v);
        }
        return std::pair(corners, extras.lines);
    };
    const auto before = cornersOf(node("seam"));
    ASSERT_EQ(before.second, (std::vector<std::vector<std::uint32_t>>{{0, 2, 5}}));
    ASSERT_EQ(save("DzSceneAssetFilter", file("Seam.duf")), 0) << log().toStdString();
    const json saved = json::parse(ReadBytes(file("Seam.duf")));
    ASSERT_EQ(saved["uv_set_library"].size(), 1u);
    const json& set = saved["uv_set_library"][0];
    EXPECT_EQ(set["vertex_count"], 7);
    EXPECT_EQ(set["uvs"]["count"], set["uvs"]["values"].size());
    EXPECT_FALSE(set["polygon_vertex_indices"].empty());
    ASSERT_TRUE(reload(file("Seam.duf"))) << log().toStdString();
    const auto after = cornersOf(node("seam"));
    EXPECT_EQ(after.second, before.second);
    // The face of five corners has become three triangles: it gained corners but none with other coordinates.
    const auto kinds = [](const auto& corners) { return std::set(corners.begin(), corners.end()); };
    EXPECT_EQ(kinds(after.first), kinds(before.first));
    EXPECT_EQ(after.first.size(), 4u + 9u);
}
