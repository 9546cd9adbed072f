// The Scene pane, by mouse and keys.
// SPDX-License-Identifier: MIT

#include "host/ui/hierarchy_pane.h"

#include "dzprogress.h"
#include "dzscene.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QTest>
#include <QTreeWidget>

#include <memory>

namespace {

class HierarchyPaneTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        pane.reset(new DzHierarchyPane);
        pane->resize(320, 400);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
        settle();
    }
    void TearDown() override { pane.reset(); }

    static DzNode& addNode(const char* label, DzNode* parent = nullptr) { return *AddNode(label, parent); }
    static void settle() { QCoreApplication::processEvents(); }

    QTreeWidget& tree() const { return *pane->findChild<QTreeWidget*>(); }
    QTreeWidgetItem* item(const char* text) const
    {
        const auto found = tree().findItems(QLatin1String(text), Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }
    void click(const char* text, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QPoint place = tree().visualItemRect(item(text)).center();
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, modifiers, place);
    }

    std::unique_ptr<DzHierarchyPane> pane;
};

TEST_F(HierarchyPaneTest, shows_the_tree_of_nodes_as_it_changes)
{
    DzNode& figure = addNode("Figure");
    DzNode& hip = addNode("Hip", &figure);
    settle();
    ASSERT_NE(item("Hip"), nullptr);
    EXPECT_EQ(item("Hip")->parent(), item("Figure"));
    addNode("Head", &hip);
    settle();
    ASSERT_NE(item("Head"), nullptr);
    EXPECT_EQ(item("Head")->parent(), item("Hip"));
    hip.setLabel(QStringLiteral("Pelvis"));
    EXPECT_NE(item("Pelvis"), nullptr);
    figure.removeNodeChild(&hip);
    settle();
    ASSERT_NE(item("Pelvis"), nullptr);
    EXPECT_EQ(item("Pelvis")->parent(), nullptr);
    dzScene->removeNode(&figure);
    settle();
    EXPECT_EQ(item("Figure"), nullptr);
}

TEST_F(HierarchyPaneTest, outlives_the_nodes_that_it_shows)
{
    DzNode& figure = addNode("Figure");
    settle();
    dzScene->removeNode(&figure);
    dzScene->purgeRemoved();
    click("Figure"); // before the pane has caught up
    item("Figure")->setCheckState(1, Qt::Unchecked);
    settle();
    EXPECT_EQ(item("Figure"), nullptr);
}

TEST_F(HierarchyPaneTest, keeps_open_what_was_open)
{
    DzNode& figure = addNode("Figure");
    addNode("Hip", &figure);
    settle();
    EXPECT_FALSE(item("Figure")->isExpanded());
    item("Figure")->setExpanded(true);
    addNode("Other");
    settle();
    EXPECT_TRUE(item("Figure")->isExpanded());
}

TEST_F(HierarchyPaneTest, selects_in_the_scene)
{
    DzNode& chair = addNode("Chair");
    DzNode& table = addNode("Table");
    DzNode& lamp = addNode("Lamp");
    settle();
    click("Chair");
    EXPECT_EQ(dzScene->getPrimarySelection(), &chair);
    click("Lamp", Qt::ControlModifier);
    EXPECT_EQ(dzScene->getSelectedNodeList(), (QObjectList{&chair, &lamp}));
    EXPECT_EQ(dzScene->getPrimarySelection(), &lamp);
    click("Table");
    EXPECT_EQ(dzScene->getSelectedNodeList(), QObjectList{&table});
}

TEST_F(HierarchyPaneTest, shows_what_the_scene_has_selected)
{
    DzNode& chair = addNode("Chair");
    DzNode& hidden = addNode("Hidden", &chair);
    addNode("Table");
    settle();
    hidden.select();
    EXPECT_TRUE(item("Hidden")->isSelected());
    EXPECT_FALSE(item("Chair")->isSelected());
    EXPECT_TRUE(item("Chair")->isExpanded()) << "so that it can be seen";
    dzScene->selectAllNodes(true);
    EXPECT_TRUE(item("Table")->isSelected());
    dzScene->selectAllNodes(false);
    EXPECT_TRUE(tree().selectedItems().isEmpty());
}

TEST_F(HierarchyPaneTest, shows_that_a_selection_was_refused)
{
    addNode("Chair");
    settle();
    Recorder recorder;
    recorder.refused = openhost::Operation::Select;
    click("Chair");
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
    EXPECT_TRUE(tree().selectedItems().isEmpty());
}

TEST_F(HierarchyPaneTest, hides_and_shows_nodes)
{
    DzNode& chair = addNode("Chair");
    settle();
    EXPECT_EQ(item("Chair")->checkState(1), Qt::Checked);
    item("Chair")->setCheckState(1, Qt::Unchecked);
    EXPECT_FALSE(chair.isVisible());
    chair.setVisible(true);
    EXPECT_EQ(item("Chair")->checkState(1), Qt::Checked);
}

TEST_F(HierarchyPaneTest, takes_a_new_label)
{
    DzNode& chair = addNode("Chair");
    settle();
    item("Chair")->setText(0, QStringLiteral(" Stool "));
    EXPECT_EQ(chair.getLabel(), QLatin1String("Stool"));
    EXPECT_NE(item("Stool"), nullptr);
    item("Stool")->setText(0, QStringLiteral("  "));
    EXPECT_EQ(chair.getLabel(), QLatin1String("Stool"));
    EXPECT_NE(item("Stool"), nullptr);
}

TEST_F(HierarchyPaneTest, shows_nothing_that_comes_and_goes_within_long_work)
{
    DzNode& figure = addNode("Figure");
    settle();
    {
        DzProgress progress(QStringLiteral("Converting"), 2);
        DzNode& helper = addNode("Helper");
        addNode("Result", &figure);
        QTest::qWait(200);
        EXPECT_EQ(item("Helper"), nullptr);
        dzScene->removeNode(&helper);
        progress.step();
    }
    EXPECT_TRUE(QTest::qWaitFor([this] { return item("Result") != nullptr; }));
    EXPECT_EQ(item("Helper"), nullptr);
}

TEST_F(HierarchyPaneTest, shows_both_ends_of_names_that_have_no_room)
{
    const std::string longName(80, 'n');
    addNode((longName + " Head").c_str());
    addNode((longName + " Body").c_str());
    settle();
    const auto pictureOf = [this](int row) {
        return tree().viewport()->grab(tree().visualItemRect(tree().topLevelItem(row))).toImage();
    };
    EXPECT_NE(pictureOf(0), pictureOf(1));
}

TEST_F(HierarchyPaneTest, looks_well_at_any_font)
{
    DzNode& figure = addNode("Figure with a label that is too long for the pane to show");
    DzNode& hip = addNode("Hip", &figure);
    addNode("Left Thigh", &hip).setVisible(false);
    addNode("Right Thigh", &hip).select();
    addNode("Camera");
    pane->refresh();
    settle();
    SavePicture(*pane, "hierarchy_pane");
    const LargeFont large;
    pane->resize(420, 400);
    settle();
    SavePicture(*pane, "hierarchy_pane_large");
    EXPECT_TRUE(item("Right Thigh")->isSelected());
}

} // namespace
