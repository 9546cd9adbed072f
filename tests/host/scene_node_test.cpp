// Nodes, selection, labels and deletion.
// SPDX-License-Identifier: MIT

#include "dzaction.h"
#include "dzactionmgr.h"
#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmainwindow.h"
#include "tests/host/host_fixture.h"

#include <QPointer>
#include <QSignalSpy>

namespace {

DzFigure* AddFigure(const char* label)
{
    auto* const figure = new DzFigure;
    figure->setLabel(QLatin1String(label));
    DzNode* parent = figure;
    for (const char* name : {"hip", "l_thigh"}) {
        auto* const bone = new DzBone;
        bone->setName(QLatin1String(name));
        parent->addNodeChild(bone);
        parent = bone;
    }
    dzScene->addNode(figure);
    return figure;
}

void ExpectNear(const DzVec3& a, float x, float y, float z)
{
    EXPECT_NEAR(a.m_x, x, 1e-4);
    EXPECT_NEAR(a.m_y, y, 1e-4);
    EXPECT_NEAR(a.m_z, z, 1e-4);
}

class Scene : public HostTest {};
class Node : public HostTest {};

} // namespace

TEST_F(Scene, primary_selection_after_clearing_leaves_exactly_one)
{
    DzNode *const a = AddNode("a"), *const b = AddNode("b");
    a->select();
    b->select();
    EXPECT_EQ(dzScene->getPrimarySelection(), b);
    dzScene->selectAllNodes(false);
    EXPECT_TRUE(dzScene->setPrimarySelection(a));
    ASSERT_EQ(dzScene->getNumSelectedNodes(), 1);
    EXPECT_EQ(dzScene->getSelectedNode(0), a);
    EXPECT_FALSE(dzScene->setPrimarySelection(a));
    DzNode stranger;
    EXPECT_FALSE(dzScene->setPrimarySelection(&stranger));
}

TEST_F(Scene, selection_keeps_its_order_and_falls_back_to_the_last)
{
    DzNode *const a = AddNode("a"), *const b = AddNode("b"), *const c = AddNode("c");
    c->select();
    a->select();
    b->select();
    EXPECT_EQ(dzScene->getSelectedNodeList(), QObjectList({c, a, b}));
    b->select(false);
    EXPECT_EQ(dzScene->getPrimarySelection(), a);
    dzScene->selectAllNodes(false);
    EXPECT_EQ(dzScene->getPrimarySelection(), nullptr);
}

TEST_F(Scene, root_labels_and_names_become_unique_when_added)
{
    AddNode("Genesis 9");
    DzNode* const second = AddNode("Genesis 9");
    DzNode* const third = AddNode("Genesis 9");
    EXPECT_EQ(second->getLabel(), QStringLiteral("Genesis 9 (2)"));
    EXPECT_EQ(second->getName(), QStringLiteral("Genesis 9 2"));
    EXPECT_EQ(third->getLabel(), QStringLiteral("Genesis 9 (3)"));
    EXPECT_EQ(DzScene::stripLabelNumber(third->getLabel()), QStringLiteral("Genesis 9"));
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("Genesis 9 (2)")), second);
    EXPECT_EQ(dzScene->findNodeByLabel(QStringLiteral("genesis 9")), nullptr);
}

TEST_F(Scene, labels_and_names_become_unique_among_what_the_roots_are_called_by_now)
{
    DzNode* const first = AddNode("Genesis 9");
    const auto added = [] {
        const DzNode* const node = AddNode("Genesis 9");
        return (node->getLabel() + QLatin1Char('|') + node->getName()).toStdString();
    };
    EXPECT_EQ(added(), "Genesis 9 (2)|Genesis 9 2");
    first->setLabel(QStringLiteral("Other"));
    EXPECT_EQ(added(), "Genesis 9|Genesis 9 3");
    first->setName(QStringLiteral("Other"));
    EXPECT_EQ(added(), "Genesis 9 (3)|Genesis 9");
    DzNode* const second = dzScene->findNodeByLabel(QStringLiteral("Genesis 9 (2)"));
    first->addNodeChild(second);
    EXPECT_EQ(added(), "Genesis 9 (2)|Genesis 9 2");
    second->setLabel(QStringLiteral("Genesis 9 (4)"));
    second->setName(QStringLiteral("Genesis 9 4"));
    first->removeNodeChild(second);
    EXPECT_EQ(added(), "Genesis 9 (5)|Genesis 9 5");
    dzScene->removeNode(dzScene->findNode(QStringLiteral("Genesis 9 3")));
    EXPECT_EQ(added(), "Genesis 9|Genesis 9 3");
    DzNode* const third = dzScene->findNode(QStringLiteral("Genesis 9 3"));
    third->addNodeChild(new DzNode);
    dzScene->removeNode(third);
    EXPECT_EQ(added(), "Genesis 9|Genesis 9 3");
    first->setLabel(QString());
    EXPECT_EQ(dzScene->getUniqueTopLevelLabel(QStringLiteral("Other")), QStringLiteral("Other (2)"));
}

TEST_F(Scene, a_label_with_percent_signs_is_no_pattern)
{
    AddNode("Target %2 (%1)");
    EXPECT_EQ(AddNode("Target %2 (%1)")->getLabel(), QStringLiteral("Target %2 (%1) (2)"));
}

TEST_F(Scene, removing_a_figure_removes_its_bones_and_deletes_them_later)
{
    DzFigure* const figure = AddFigure("Mini");
    DzBone* const hip = figure->findBone(QStringLiteral("hip"));
    QPointer<DzNode> kept(figure);
    EXPECT_EQ(dzScene->getNumNodes(), 3);
    hip->select();
    EXPECT_TRUE(dzScene->removeNode(figure));
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
    EXPECT_EQ(dzScene->findNodeIndex(figure), -1);
    EXPECT_EQ(dzScene->findNodeIndex(hip), -1);
    EXPECT_EQ(kept->getLabel(), QStringLiteral("Mini"));
    EXPECT_FALSE(dzScene->removeNode(figure));
    dzScene->purgeRemoved();
    EXPECT_TRUE(kept.isNull());
    EXPECT_EQ(dzScene->findNodeIndex(figure), -1);
}

TEST_F(Scene, the_delete_action_deletes_the_selection)
{
    DzNode *const a = AddNode("a"), *const b = AddNode("b");
    DzAction* const action =
        dzApp->getInterface()->getActionMgr()->findAction(QStringLiteral("DzDeleteAction"));
    ASSERT_NE(action, nullptr);
    EXPECT_FALSE(action->isEnabled());
    a->select();
    EXPECT_TRUE(action->isEnabled());
    action->trigger();
    EXPECT_EQ(dzScene->getNodeList(), QObjectList({b}));
    EXPECT_EQ(dzScene->getPrimarySelection(), nullptr);
}

TEST_F(Scene, deleting_a_parent_and_its_child_at_once_is_safe)
{
    DzFigure* const figure = AddFigure("Mini");
    dzScene->selectAllNodes(true);
    dzScene->removeSelected();
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_EQ(dzScene->findNodeIndex(figure), -1);
}

TEST_F(Scene, a_listener_sees_operations_and_can_refuse_them)
{
    DzNode* const a = AddNode("a");
    Recorder recorder;
    a->select();
    a->setVisible(false);
    recorder.refused = openhost::Operation::Remove;
    EXPECT_FALSE(dzScene->removeNode(a));
    recorder.refused = openhost::Operation::Rename;
    EXPECT_EQ(a->setLabel(QStringLiteral("b")), DZ_OPERATION_FAILED_ERROR);
    EXPECT_EQ(a->getLabel(), QStringLiteral("a"));
    recorder.refused = openhost::Operation::SetValue;
    a->getXPosControl()->setValue(3.0f);
    EXPECT_EQ(a->getXPosControl()->getValue(), 0.0f);
    EXPECT_EQ(recorder.lines, (std::vector<std::string>{"select a", "visible a=false", "property a.Visible=0",
                                                        "property a.Visible in Simulation=0", "remove a",
                                                        "rename a -> b", "property a.XTranslate=3"}));
}

TEST_F(Node, children_follow_their_parents)
{
    auto* const parent = new DzNode;
    auto* const child = new DzNode;
    parent->setOrigin(DzVec3(0, 100, 0));
    child->setOrigin(DzVec3(10, 100, 0));
    parent->addNodeChild(child);
    dzScene->addNode(parent);
    ExpectNear(child->getWSPos(), 10, 100, 0);
    parent->getZRotControl()->setValue(90.0f);
    ExpectNear(child->getWSPos(), 0, 110, 0);
    parent->getYPosControl()->setValue(5.0f);
    ExpectNear(child->getWSPos(), 0, 115, 0);
    parent->getScaleControl()->setValue(2.0f);
    ExpectNear(child->getWSPos(), 0, 125, 0);
}

TEST_F(Node, world_transform_follows_the_file_format)
{
    auto* const parent = new DzNode;
    auto* const child = new DzNode;
    parent->setOrigin(DzVec3(0, 100, 0));
    parent->getZRotControl()->setValue(90.0f);
    child->setOrigin(DzVec3(10, 100, 0));
    child->setOrientation(DzVec3(0, 0, 30));
    child->setRotationOrder(DzRotationOrder::YZX);
    child->getYRotControl()->setValue(45.0f);
    parent->addNodeChild(child);
    dzScene->addNode(parent);
    ExpectNear(child->getWSTransform().multVec(DzVec3(10, 0, 0)) + child->getWSPos(), 1.2683f, 117.8033f,
               -6.1237f);
    child->getXRotControl()->setValue(20.0f);
    child->getYRotControl()->setValue(30.0f);
    child->getZRotControl()->setValue(40.0f);
    ExpectNear(child->getWSTransform().multVec(DzVec3(10, 0, 5)) + child->getWSPos(), -7.5512f, 118.1970f,
               0.8884f);
}

TEST_F(Node, parenting_in_place_keeps_the_world_position)
{
    DzNode *const parent = AddNode("parent"), *const child = AddNode("child");
    parent->getYRotControl()->setValue(30.0f);
    parent->getXPosControl()->setValue(7.0f);
    child->getZPosControl()->setValue(4.0f);
    child->getXRotControl()->setValue(25.0f);
    const DzVec3 before = child->getWSPos();
    const DzVec3 tip = child->getWSTransform().multVec(DzVec3(1, 2, 3));
    EXPECT_EQ(parent->addNodeChild(child, true), DZ_NO_ERROR);
    ExpectNear(child->getWSPos(), before.m_x, before.m_y, before.m_z);
    ExpectNear(child->getWSTransform().multVec(DzVec3(1, 2, 3)), tip.m_x, tip.m_y, tip.m_z);
    EXPECT_EQ(child->addNodeChild(parent), DZ_CYCLIC_REFERENCE_ERROR);
}

TEST_F(Node, bones_know_their_skeleton_and_are_found_by_name)
{
    DzFigure* const figure = AddFigure("Mini");
    DzBone* const thigh = figure->findBone(QStringLiteral("l_thigh"));
    ASSERT_NE(thigh, nullptr);
    EXPECT_EQ(thigh->getSkeleton(), figure);
    EXPECT_EQ(figure->getSkeleton(), figure);
    EXPECT_EQ(figure->getAllBones().size(), 2);
    thigh->setName(QStringLiteral("thigh"));
    EXPECT_EQ(figure->findBone(QStringLiteral("l_thigh")), nullptr);
    EXPECT_EQ(figure->findBone(QStringLiteral("thigh")), thigh);
    EXPECT_TRUE(figure->inherits("DzSkeleton"));
}

TEST_F(Node, bones_are_those_of_the_last_look_with_every_change_since)
{
    DzFigure* const figure = AddFigure("Mini");
    auto *const foot = new DzBone, *const toe = new DzBone, *const heel = new DzBone;
    for (const int look : {1, 2}) {
        EXPECT_EQ(figure->getAllBones().size(), 2) << look;
        DzBone* const thigh = figure->findBone(QStringLiteral("l_thigh"));
        foot->addNodeChild(toe);
        thigh->addNodeChild(foot);
        foot->addNodeChild(heel);
        EXPECT_EQ(figure->getAllBones().size(), 5) << look;
        toe->setName(QStringLiteral("toe"));
        EXPECT_EQ(figure->findBone(QStringLiteral("toe")), toe) << look;
        toe->setName(QStringLiteral("big toe"));
        EXPECT_EQ(figure->findBone(QStringLiteral("big toe")), toe) << look;
        foot->removeNodeChild(heel);
        thigh->removeNodeChild(foot);
    }
    EXPECT_EQ(figure->getAllBones().size(), 2);
    delete heel;
    delete foot;
}
