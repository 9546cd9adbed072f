// The Transfer Utility.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzenumproperty.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "ks_transfer-utility.h"
#include "tests/host/tools_fixture.h"
#include "tools/transfer_utility.h"

#include <cmath>

using geometry::Vec3f;

namespace {

class Transfer : public HostTest {
protected:
    bool transfer(DzNode* source, DzNode* target, const QStringList& names = QStringList())
    {
        _utility.setSource(source);
        _utility.setTarget(target);
        _utility.setTransferBinding(true);
        _utility.setTransferSelectionMap(true);
        _utility.setTransferFaceGroups(true);
        _utility.setTransferMorphs(true);
        _utility.setTransferSourceMorphs(names.isEmpty() ? DzTransferUtility::AllMorphs
                                                         : DzTransferUtility::NameList);
        _utility.setMorphTransferList(names);
        return _utility.doTransfer();
    }
    static DzMorph* morph(const DzNode& node, const char* name)
    {
        return qobject_cast<DzMorph*>(node.getObject()->findModifier(QString::fromUtf8(name)));
    }
    static std::vector<Vec3f> dense(const DzNode& node, const char* name, std::size_t count)
    {
        return geometry::ToDense(openhost::DeltasAccess::deltas(*morph(node, name)->getDeltas()), count);
    }

    DzTransferUtility _utility;
};

/// Deltas that grow along the tube, so that they mean the same on any mesh of it.
DzMorph* AddSlope(const TubeFigure& tube, const char* name, const std::vector<Vec3f>& positions)
{
    std::vector<std::uint32_t> vertices;
    std::vector<Vec3f> deltas;
    for (std::uint32_t v = 0; v < positions.size(); ++v) {
        vertices.push_back(v);
        deltas.push_back({0, 0.05f * (positions[v].x + 30.0f), 0});
    }
    return tube.addMorph(name, vertices, deltas);
}

} // namespace

TEST_F(Transfer, a_prop_becomes_a_figure_of_the_same_label_with_the_listed_morphs)
{
    TubeFigure tube;
    const std::vector<Vec3f> positions = Tube(8).positions;
    for (const char* const name : {"A", "B", "C"})
        AddSlope(tube, name, positions)->getValueControl()->setPath(QStringLiteral("/Actor/Slopes"));
    morph(*tube.figure, "A")->getValueControl()->setValue(1.0f);
    DzNode* const prop = AddProp("Target", Tube(12));
    ASSERT_TRUE(
        transfer(tube.figure, prop, {QStringLiteral("C"), QStringLiteral("None"), QStringLiteral("A")}));
    auto* const made = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Target")));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(_utility.getTargetOutputFigure(), made);
    EXPECT_EQ(dzScene->getPrimarySelection(), made);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    EXPECT_EQ(morph(*made, "B"), nullptr);
    EXPECT_EQ(morph(*made, "None"), nullptr);
    for (const char* const name : {"A", "C"}) {
        ASSERT_NE(morph(*made, name), nullptr);
        EXPECT_EQ(morph(*made, name)->getValueControl()->getValue(), 0.0f);
        EXPECT_EQ(morph(*made, name)->getValueControl()->getPath(), QStringLiteral("/Actor/Slopes"));
        EXPECT_EQ(morph(*made, name)->getDeltas()->getTargetVertexCount(), 13 * 8);
    }
}

TEST_F(Transfer, to_the_same_mesh_is_the_identity)
{
    TubeFigure tube;
    const std::vector<Vec3f> positions = Tube(8).positions;
    std::vector<std::uint32_t> vertices;
    std::vector<Vec3f> deltas;
    for (std::uint32_t v = 0; v < positions.size(); ++v) {
        vertices.push_back(v);
        const float t = static_cast<float>(v);
        deltas.push_back({std::sin(t), std::cos(t), 0.1f * std::sin(3 * t)});
    }
    tube.addMorph("Wild", vertices, deltas);
    ASSERT_TRUE(transfer(tube.figure, AddProp("Target", Tube(8))));
    const DzNode* const made = _utility.getTargetOutputFigure();
    const std::vector<Vec3f> result = dense(*made, "Wild", positions.size());
    for (std::size_t v = 0; v < positions.size(); ++v)
        EXPECT_LT(geometry::Length(result[v] - deltas[v]), 1e-4f) << v;
}

TEST_F(Transfer, carries_bones_weights_and_face_groups)
{
    TubeFigure tube;
    ASSERT_TRUE(transfer(tube.figure, AddProp("Target", Tube(16))));
    DzFigure* const made = _utility.getTargetOutputFigure();
    DzNode* const lower = made->findNodeChild(QStringLiteral("lower"), true);
    ASSERT_NE(lower, nullptr);
    EXPECT_EQ(lower->getNodeParent()->getName(), QStringLiteral("upper"));
    EXPECT_NE(lower, tube.lower);
    ASSERT_NE(made->getSkinBinding(), nullptr);
    EXPECT_EQ(made->getSkinBinding()->getGeneralMapMode(), DzSkinBinding::DualQuat);
    // The target is twice as long: what lies beyond the source's end goes with the end.
    const std::vector<Vec3f> before = WorldPositions(*made);
    lower->getZRotControl()->setValue(90.0f);
    const std::vector<Vec3f> after = WorldPositions(*made);
    EXPECT_LT(LargestDistance({before[0]}, {after[0]}), 1e-4f);
    EXPECT_NEAR(after.back().x, -before.back().y, 1e-3f);
    EXPECT_NEAR(after.back().y, before.back().x, 1e-3f);
    const auto* const shape = qobject_cast<DzFacetShape*>(made->getObject()->getCurrentShape());
    ASSERT_EQ(shape->getFacetMesh()->getNumFacets(), 128);
    for (int face = 0; face < 128; ++face) {
        const bool touchesBoundary = face / 8 == 7 || face / 8 == 8;
        if (!touchesBoundary) {
            EXPECT_EQ(shape->getFacetMesh()->getFacet(face).m_faceGroup, face < 64 ? 0 : 1) << face;
        }
    }
}

TEST_F(Transfer, without_bones_on_the_source_the_result_has_one_or_keeps_its_own)
{
    DzNode* const source = AddProp("Source", Tube(8));
    ASSERT_TRUE(transfer(source, AddProp("Target", Tube(8))));
    DzFigure* const made = _utility.getTargetOutputFigure();
    ASSERT_NE(made->getSkinBinding(), nullptr);
    EXPECT_EQ(made->getSkinBinding()->getNumBoneBindings(), 1);
    EXPECT_EQ(made->getNumNodeChildren(), 1);
    TubeFigure tube;
    ASSERT_TRUE(transfer(source, tube.figure));
    EXPECT_EQ(_utility.getTargetOutputFigure(), tube.figure);
    EXPECT_EQ(tube.figure->getNumNodeChildren(), 1);
    EXPECT_EQ(tube.figure->getSkinBinding()->getNumBoneBindings(), 2);
}

TEST_F(Transfer, a_figure_with_the_bones_already_gets_no_second_ones)
{
    TubeFigure tube, target("Target");
    ASSERT_TRUE(transfer(tube.figure, target.figure));
    EXPECT_EQ(target.figure->getNumNodeChildren(), 1);
    EXPECT_EQ(target.upper->getNumNodeChildren(), 1);
    EXPECT_EQ(target.figure->getSkinBinding()->getNumBoneBindings(), 2);
    const Vec3f before = WorldPositions(*target.figure).back();
    target.lower->getZRotControl()->setValue(90.0f);
    EXPECT_NEAR(WorldPositions(*target.figure).back().y, before.x, 1e-3f);
}

TEST_F(Transfer, the_result_takes_the_props_place)
{
    TubeFigure tube;
    AddSlope(tube, "A", Tube(8).positions);
    DzNode* const table = AddProp("Table", Tube(2));
    DzNode* const prop = AddProp("Target", Tube(8));
    table->addNodeChild(prop);
    for (DzNode* const node : {static_cast<DzNode*>(tube.figure), table})
        node->getYPosControl()->setValue(100.0f);
    const std::vector<Vec3f> before = WorldPositions(*prop);
    ASSERT_TRUE(transfer(tube.figure, prop));
    const DzFigure* const made = _utility.getTargetOutputFigure();
    EXPECT_EQ(made->getNodeParent(), table);
    EXPECT_EQ(made->getLabel(), QStringLiteral("Target"));
    qobject_cast<DzFacetShape*>(made->getObject()->getCurrentShape())->getLODControl()->setValue(0);
    EXPECT_LT(LargestDistance(WorldPositions(*made), before), 1e-4f);
}

TEST_F(Transfer, morphs_of_the_target_are_replaced_only_when_asked)
{
    TubeFigure tube, target("Target");
    AddSlope(tube, "A", Tube(8).positions);
    target.addMorph("A", {0}, {{0, 0, 7}});
    _utility.setOverrideExistingMorphs(false);
    ASSERT_TRUE(transfer(tube.figure, target.figure));
    EXPECT_EQ(dense(*target.figure, "A", 72)[0], (Vec3f{0, 0, 7}));
    _utility.setOverrideExistingMorphs(true);
    ASSERT_TRUE(transfer(tube.figure, target.figure));
    EXPECT_EQ(dense(*target.figure, "A", 72)[0].z, 0.0f);
}

TEST_F(Transfer, refused_inputs_leave_the_scene_unchanged)
{
    TubeFigure tube;
    DzNode* const prop = AddProp("Target", Tube(8));
    geometry::PolygonMesh points;
    points.positions.resize(5);
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = 5;
    points.topology = topology;
    DzNode* const cloud = AddProp("Cloud", points);
    DzNode* const flat = AddProp("Flat", Tube(8));
    flat->getScaleControl()->setValue(0.0f);
    const int nodes = dzScene->getNumNodes();
    dzScene->setPrimarySelection(prop);
    EXPECT_FALSE(_utility.setSource(nullptr));
    EXPECT_FALSE(_utility.setTarget(tube.upper));
    EXPECT_FALSE(transfer(nullptr, prop));
    EXPECT_FALSE(transfer(tube.figure, nullptr));
    EXPECT_FALSE(transfer(tube.figure, tube.figure));
    EXPECT_FALSE(transfer(tube.figure, tube.upper));
    EXPECT_FALSE(transfer(tube.figure, cloud));
    EXPECT_FALSE(transfer(cloud, prop));
    EXPECT_FALSE(transfer(tube.figure, flat));
    EXPECT_EQ(dzScene->getNumNodes(), nodes);
    EXPECT_EQ(dzScene->getPrimarySelection(), prop);
    EXPECT_EQ(prop->getObject()->getNumModifiers(), 0);
}

TEST_F(Transfer, runs_as_the_driver_calls_it)
{
    TubeFigure tube;
    AddSlope(tube, "A", Tube(8).positions);
    const auto utility = kst::daz::TransferUtility::Create();
    EXPECT_TRUE(utility->setSource(tube.figure));
    EXPECT_TRUE(utility->setTarget(AddProp("Target", Tube(8))));
    EXPECT_TRUE(utility->setParentToFigure(false));
    EXPECT_TRUE(utility->setTransferBinding(true));
    EXPECT_TRUE(utility->setTransferSelectionMap(true));
    EXPECT_TRUE(utility->setTransferRegionGroups(true));
    EXPECT_TRUE(utility->setTransferFaceGroups(true));
    EXPECT_TRUE(utility->setTransferMorphs(true));
    EXPECT_TRUE(
        utility->setTransferSourceMorphs(kst::daz::TransferUtility::SourceMorphTransferType::NameList));
    utility->setMorphTransferList({QStringLiteral("A")});
    EXPECT_TRUE(utility->setOverrideExistingMorphs(true));
    EXPECT_TRUE(utility->setTargetReplacesSource(false));
    EXPECT_TRUE(utility->doTransfer());
    const DzNode* const made = dzScene->findNodeByLabel(QStringLiteral("Target"));
    ASSERT_NE(made, nullptr);
    EXPECT_NE(morph(*made, "A"), nullptr);
}
