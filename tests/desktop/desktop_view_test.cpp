// The viewport's menu, and what can be read and reached in the window.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabBar>
#include <QTextBrowser>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzcamera.h>
#include <dzdrawstyle.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzpane.h>
#include <dzviewport.h>

#include <cmath>

namespace {

class DesktopView : public DesktopTest {
protected:
    static Dz3DViewport& view() { return *window().getViewportMgr()->getActiveViewport()->get3DViewport(); }
    DzFigure& openFigure(const char* file)
    {
        EXPECT_TRUE(desktop->files().openFile(pathOf(file)));
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    static QStringList checkedStyles()
    {
        QStringList checked;
        for (int i = 0; i < window().getViewportMgr()->getNumUserDrawStyles(); ++i)
            if (styleEntry(i).isChecked())
                checked << window().getViewportMgr()->getUserDrawStyle(i)->getDescription();
        return checked;
    }
    static QAction& styleEntry(int i)
    {
        const DzUserDrawStyle& style = *window().getViewportMgr()->getUserDrawStyle(i);
        return *entry(style.getDescription().toLatin1());
    }
    static float distance() { return view().getCamera()->getFocalDistance(); }
    /// The figure's box is in the middle of the picture.
    static void expectInTheMiddle(const DzNode& node)
    {
        const DzVec3 seen = view().getCamera()->getFocalPoint(), middle = node.getWSBoundingBox().getCenter();
        EXPECT_NEAR(seen.m_x, middle.m_x, 0.1f);
        EXPECT_NEAR(seen.m_y, middle.m_y, 0.1f);
    }
    /// Every menu of the window with what it holds, menus in menus too.
    static QList<QList<QAction*>> allMenus()
    {
        QList<QList<QAction*>> menus{window().menuBar()->actions()};
        for (int i = 0; i < menus.size(); ++i)
            for (const QAction* const action : QList<QAction*>(menus[i]))
                if (action->menu())
                    menus << action->menu()->actions();
        return menus;
    }
    void startAt(const QSize& size)
    {
        start();
        click(openFigure(sourceFile));
        window().resize(size);
        QCoreApplication::processEvents();
    }
};

TEST_F(DesktopView, chooses_the_draw_style_by_menu_and_key_and_follows_the_viewport)
{
    start();
    ASSERT_EQ(window().getViewportMgr()->getNumUserDrawStyles(), 5);
    EXPECT_EQ(checkedStyles(), QStringList{QStringLiteral("Smooth Shaded")});
    entry("Wireframe")->trigger();
    EXPECT_EQ(view().getDrawStyle()->getDescription().toStdString(), "Wireframe");
    EXPECT_EQ(checkedStyles(), QStringList{QStringLiteral("Wireframe")});
    QTest::keyClick(&window(), Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(view().getDrawStyle()->getDescription().toStdString(), "Hidden Line");
    EXPECT_TRUE(view().setUserDrawStyle(QStringLiteral("Wire Shaded")));
    EXPECT_EQ(checkedStyles(), QStringList{QStringLiteral("Wire Shaded")});
}

TEST_F(DesktopView, is_no_change_of_the_scene)
{
    start();
    openFigure(sourceFile);
    ModalAnswer dialog(TypeFile(TestFolder() + QStringLiteral("/viewed.duf")));
    ASSERT_TRUE(desktop->files().saveAs());
    entry("Wireframe")->trigger();
    entry("Frame All")->trigger();
    EXPECT_FALSE(desktop->files().isChanged());
}

TEST_F(DesktopView, brings_everything_or_what_is_selected_into_the_middle)
{
    start();
    EXPECT_FALSE(entry("Frame All")->isEnabled());
    EXPECT_FALSE(entry("Frame Selection")->isEnabled());
    DzFigure& left = openFigure(sourceFile);
    DzFigure& right = openFigure(targetFile);
    left.getXPosControl()->setValue(-200.0f);
    right.getXPosControl()->setValue(200.0f);
    QTest::keyClick(&window(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    const float ofBoth = distance();
    EXPECT_NEAR(view().getCamera()->getFocalPoint().m_x, dzScene->getBoundingBox().getCenter().m_x, 0.1f);
    click(left);
    QTest::keyClick(&window(), Qt::Key_F, Qt::ControlModifier);
    expectInTheMiddle(left);
    EXPECT_LT(distance(), ofBoth);
    dzScene->selectAllNodes(false);
    EXPECT_FALSE(entry("Frame Selection")->isEnabled());
    EXPECT_TRUE(entry("Frame All")->isEnabled());
}

TEST_F(DesktopView, frames_the_figure_of_a_selected_bone)
{
    start();
    DzFigure& figure = openFigure(sourceFile);
    figure.getXPosControl()->setValue(300.0f);
    dzScene->selectAllNodes(false);
    ASSERT_GT(figure.getNumNodeChildren(), 0);
    dzScene->setPrimarySelection(figure.getNodeChild(0));
    entry("Frame Selection")->trigger();
    EXPECT_NEAR(view().getCamera()->getFocalPoint().m_x, 300.0f, 50.0f) << "about the figure";
}

TEST_F(DesktopView, looks_from_all_sides_by_keys)
{
    start();
    click(openFigure(sourceFile));
    const DzVec3 point = view().getCamera()->getFocalPoint();
    const struct {
        Qt::Key key;
        DzVec3 place; ///< of the camera, seen from the focal point
    } views[] = {{Qt::Key_1, {0, 0, 1}},
                 {Qt::Key_2, {0, 0, -1}},
                 {Qt::Key_3, {-1, 0, 0}},
                 {Qt::Key_4, {1, 0, 0}},
                 {Qt::Key_5, {0, 1, 0}}};
    for (const auto& one : views) {
        QTest::keyClick(&window(), one.key, Qt::AltModifier);
        const DzVec3 place = (view().getCamera()->getWSPos() - point) * (1.0f / distance());
        EXPECT_LT((place - one.place).length(), 0.01f) << one.key;
        EXPECT_LT((view().getCamera()->getFocalPoint() - point).length(), 0.1f) << one.key;
    }
    QTest::keyClick(&window(), Qt::Key_7, Qt::AltModifier);
    const DzBox3 box = dzScene->getPrimarySelection()->getWSBoundingBox();
    EXPECT_GT(view().getCamera()->getFocalPoint().m_y, box.getCenter().m_y) << "the head is above the middle";
}

TEST_F(DesktopView, has_its_views_as_buttons_too)
{
    start();
    openFigure(sourceFile);
    auto* const buttons = view().findChild<QWidget*>(QStringLiteral("ViewButtons"));
    ASSERT_NE(buttons, nullptr);
    EXPECT_TRUE(buttons->isVisible());
    const QList<QToolButton*> all = buttons->findChildren<QToolButton*>();
    ASSERT_EQ(all.size(), 7);
    all[1]->setFocus(Qt::TabFocusReason);
    QTest::keyClick(all[1], Qt::Key_Space);
    EXPECT_LT(view().getCamera()->getWSPos().m_z, 0.0f) << "from the back";
    EXPECT_EQ(all[1]->accessibleName().toStdString(), "View from the back");
    EXPECT_EQ(all[1]->toolTip().toStdString(), "View from the back (Alt+2)");
    entry("View Buttons")->trigger();
    EXPECT_FALSE(buttons->isVisible());
    desktop.reset(new desktop::DesktopWindow(attendant));
    EXPECT_FALSE(view().findChild<QWidget*>(QStringLiteral("ViewButtons"))->isVisibleTo(&view()))
        << "remembered";
}

TEST_F(DesktopView, shows_the_ground_by_choice_and_remembers_it)
{
    start();
    openFigure(sourceFile);
    const QImage without = view().grab().toImage();
    entry("Ground Grid")->trigger();
    EXPECT_NE(view().grab().toImage(), without);
    desktop.reset(new desktop::DesktopWindow(attendant));
    EXPECT_TRUE(entry("Ground Grid")->isChecked());
    entry("Ground Grid")->trigger();
    EXPECT_FALSE(desktop::RememberedViewChoices().showsGround);
}

TEST_F(DesktopView, remembers_how_the_scene_is_drawn)
{
    start();
    entry("Wireframe")->trigger();
    desktop.reset();
    view().setUserDrawStyle(QStringLiteral("Smooth Shaded"));
    desktop.reset(new desktop::DesktopWindow(attendant));
    EXPECT_EQ(checkedStyles(), QStringList(QStringLiteral("Wireframe")));
    entry("Ground Grid")->trigger();
    EXPECT_EQ(desktop::RememberedViewChoices().drawStyle.toStdString(), "Wireframe");
    entry("Smooth Shaded")->trigger();
    EXPECT_EQ(desktop::RememberedViewChoices().drawStyle.toStdString(), "Smooth Shaded");
}

TEST_F(DesktopView, looks_into_the_face_of_a_figure_however_it_lies)
{
    start();
    DzFigure& figure = openFigure(sourceFile);
    const auto place = [] {
        QTest::keyClick(&window(), Qt::Key_7, Qt::AltModifier);
        return (view().getCamera()->getWSPos() - view().getCamera()->getFocalPoint()) * (1.0f / distance());
    };
    EXPECT_LT((place() - DzVec3(0, 0, 1)).length(), 0.01f);
    figure.getYRotControl()->setValue(90.0f);
    EXPECT_LT((place() - DzVec3(1, 0, 0)).length(), 0.01f) << "before the face";
    figure.getYRotControl()->setValue(0.0f);
    figure.getXRotControl()->setValue(-90.0f); // on its back
    EXPECT_LT((place() - DzVec3(0, 1, 0)).length(), 0.01f);
    const DzVec3 face = view().getCamera()->getFocalPoint();
    view().getCamera()->pan(0.0f, 10.0f);
    EXPECT_NEAR(view().getCamera()->getFocalPoint().m_z, face.m_z - 10.0f, 0.1f) << "with the head above";
}

TEST_F(DesktopView, tells_what_mouse_and_keys_do_when_asked)
{
    start();
    openFigure(sourceFile);
    auto* const help = view().findChild<QWidget*>(QStringLiteral("MouseHelp"));
    ASSERT_NE(help, nullptr);
    EXPECT_FALSE(help->isVisible());
    QTest::keyClick(&window(), Qt::Key_F1, Qt::ShiftModifier);
    EXPECT_TRUE(help->isVisible());
    EXPECT_TRUE(view().rect().contains(help->geometry()));
    const QString text = help->findChild<QTextBrowser*>()->toPlainText();
    for (const char* const word : {"Wheel", "Double click", "Ctrl+Shift+F", "Alt+7", "Difference"})
        EXPECT_TRUE(text.contains(QLatin1String(word))) << word;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(help->isVisible()) << "its button has the focus";
    EXPECT_FALSE(entry("Mouse and Keys")->isChecked());
    entry("Mouse and Keys")->trigger();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(help->isVisible());
}

TEST_F(DesktopView, has_every_letter_and_key_once)
{
    start();
    openFigure(sourceFile);
    static const QRegularExpression mnemonic(QStringLiteral("&([^&])"));
    QStringList keys;
    for (const QList<QAction*>& menu : allMenus()) {
        QStringList letters;
        for (const QAction* const action : menu) {
            const auto found = mnemonic.match(action->text().replace(QLatin1String("&&"), QString()));
            if (found.hasMatch())
                letters << found.captured(1).toLower();
            if (!action->shortcut().isEmpty())
                keys << action->shortcut().toString();
        }
        QStringList once = letters;
        once.removeDuplicates();
        EXPECT_EQ(letters, once) << letters.join(QLatin1Char(' ')).toStdString();
    }
    QStringList once = keys;
    once.removeDuplicates();
    EXPECT_EQ(keys, once) << keys.join(QLatin1Char(' ')).toStdString();
    for (const char* const key : {"Ctrl+N", "Ctrl+O", "Ctrl+S", "Ctrl+Shift+S", "Ctrl+Q", "Ctrl+F"})
        EXPECT_TRUE(keys.contains(QLatin1String(key))) << key;
}

TEST_F(DesktopView, has_room_for_the_whole_titles_of_its_panes)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        desktop.reset();
        TestHost().reset();
        SetUp();
        startAt(isLarge ? QSize(1024, 700) : QSize(1280, 800));
        int tabs = 0;
        for (const QTabBar* const bar : window().findChildren<QTabBar*>()) {
            if (!bar->isVisible() || bar->parentWidget() != &window())
                continue;
            for (int i = 0; i < bar->count(); ++i, ++tabs) {
                const QRect tab = bar->tabRect(i);
                EXPECT_GE(std::max(tab.width(), tab.height()),
                          bar->fontMetrics().horizontalAdvance(bar->tabText(i)) + 8)
                    << bar->tabText(i).toStdString();
                EXPECT_TRUE(bar->rect().contains(tab)) << bar->tabText(i).toStdString();
            }
        }
        EXPECT_GE(tabs, 3);
        SavePicture(window(), isLarge ? "desktop-view-18pt" : "desktop-view");
    }
}

TEST_F(DesktopView, calls_transforms_as_people_do)
{
    start();
    const DzNode made;
    for (const DzNode* const node : {&made, static_cast<const DzNode*>(&openFigure(sourceFile))}) {
        EXPECT_EQ(node->getXPosControl()->getLabel().toStdString(), "X Translate");
        EXPECT_EQ(node->getYRotControl()->getLabel().toStdString(), "Y Rotate");
        EXPECT_EQ(node->getZScaleControl()->getLabel().toStdString(), "Z Scale");
        EXPECT_EQ(node->getScaleControl()->getLabel().toStdString(), "Scale");
        EXPECT_EQ(node->getXPosControl()->getName().toStdString(), "XTranslate");
    }
}

TEST_F(DesktopView, shows_menus_that_can_be_read)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        desktop.reset();
        TestHost().reset();
        SetUp();
        start();
        openFigure(sourceFile);
        openFigure(targetFile);
        for (const char* const title : {"File", "View"}) {
            QMenu& menu = *[&] {
                for (QAction* const action : window().menuBar()->actions())
                    if (action->text().remove(QLatin1Char('&')) == QLatin1String(title))
                        return action->menu();
                return static_cast<QMenu*>(nullptr);
            }();
            menu.popup(window().mapToGlobal(QPoint(20, 40)));
            QCoreApplication::processEvents();
            EXPECT_LE(menu.height(), window().height());
            SavePicture(menu, qPrintable(QStringLiteral("menu-%1%2")
                                             .arg(QLatin1String(title),
                                                  isLarge ? QStringLiteral("-18pt") : QString())));
            menu.close();
        }
    }
}

} // namespace
