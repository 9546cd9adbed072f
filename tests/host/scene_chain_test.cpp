// Nodes that hang on each other in very long chains.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "tests/host/host_fixture.h"

#include <QPointer>

namespace {

class Chain : public HostTest {
protected:
    void make(int length)
    {
        figure->setName(QStringLiteral("Snake"));
        DzNode* above = figure;
        for (int i = 0; i < length; ++i) {
            last = new DzBone;
            last->getXPosControl()->setValue(1.0f);
            above->addNodeChild(last);
            above = last;
        }
        last->setName(QStringLiteral("tail"));
        last->setLabel(QStringLiteral("Tail"));
        dzScene->addNode(figure);
    }

    DzFigure* const figure = new DzFigure;
    DzBone* last = nullptr;
};

} // namespace

TEST_F(Chain, of_any_length_stands_is_moved_found_and_taken_down)
{
    // A stack could not be as deep, and work that grows with the square of it would take minutes.
    constexpr int length = 60000;
    make(length);
    EXPECT_EQ(dzScene->getNumNodes(), length + 1);
    EXPECT_EQ(last->getWSPos().m_x, float(length));
    figure->getXPosControl()->setValue(5.0f);
    EXPECT_EQ(last->getWSPos().m_x, float(length + 5));
    EXPECT_EQ(figure->findNodeChild(QStringLiteral("tail"), true), last);
    EXPECT_EQ(figure->findNodeChildByLabel(QStringLiteral("Tail"), true), last);
    EXPECT_EQ(figure->findNodeChild(QStringLiteral("tail"), false), nullptr);
    EXPECT_EQ(figure->findBone(QStringLiteral("tail")), last);
    EXPECT_EQ(figure->getNodeChildren(true).size(), length);
    EXPECT_EQ(figure->getNodeChildren(false).size(), 1);
    const QPointer<DzNode> top(figure), bottom(last);
    dzScene->clear();
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_FALSE(bottom->isInScene());
    dzScene->purgeRemoved();
    EXPECT_TRUE(top.isNull());
    EXPECT_TRUE(bottom.isNull());
}

TEST_F(Chain, tells_each_node_once_when_it_is_moved)
{
    make(10);
    last->getWSPos();
    int told = 0;
    const auto count = [&told] { ++told; };
    QObject::connect(figure, &DzNode::transformChanged, figure, count);
    QObject::connect(last, &DzNode::transformChanged, last, count);
    figure->getXPosControl()->setValue(2.0f);
    EXPECT_EQ(told, 2);
    figure->getXPosControl()->setValue(3.0f); // what is below knows
    EXPECT_EQ(told, 3);
}

TEST_F(Chain, is_given_in_order_parents_first)
{
    make(10);
    const QObjectList below = figure->getNodeChildren(true);
    ASSERT_EQ(below.size(), 10);
    for (int i = 1; i < below.size(); ++i)
        ASSERT_EQ(static_cast<DzNode*>(below.at(i))->getNodeParent(), below.at(i - 1));
}
