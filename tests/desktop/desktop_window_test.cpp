// Working in the desktop application's window, by mouse and keys.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzaction.h>
#include <dzapp.h>
#include <dzappsettings.h>
#include <dzbasiccamera.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzviewport.h>

namespace {

class DesktopWindowTest : public DesktopTest {
protected:
    DzFigure& openFigure(const char* file)
    {
        EXPECT_TRUE(desktop->files().openFile(pathOf(file)));
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    static DzFloatProperty& dialOf(const DzFigure& figure, const char* morph)
    {
        return *qobject_cast<DzMorph*>(figure.getObject()->findModifier(QLatin1String(morph)))
                    ->getValueChannel();
    }
    /// The slider of a property in the Parameters pane.
    static DzFloatSlider* sliderOf(DzFloatProperty& property)
    {
        DzPane& parameters = pane("DzParametersPane");
        EXPECT_TRUE(QMetaObject::invokeMethod(&parameters, "jumpToProperty", Q_ARG(DzProperty*, &property)));
        QCoreApplication::processEvents();
        for (DzFloatSlider* const slider : parameters.findChildren<DzFloatSlider*>())
            if (slider->isVisible() && slider->getLabel() == property.getLabel())
                return slider;
        return nullptr;
    }
    static bool inSight(const char* paneClass) { return !pane(paneClass).visibleRegion().isEmpty(); }
};

TEST_F(DesktopWindowTest, docks_its_panes_around_the_viewport)
{
    start();
    window().resize(1280, 800);
    for (const char* const name : {"DzHierarchyPane", "DzParametersPane", "DzContentLibraryPane"})
        EXPECT_TRUE(inSight(name)) << name;
    const DzViewport& viewport = *window().getViewportMgr()->getActiveViewport();
    EXPECT_GE(viewport.width(), 400);
    const auto left = [](const QWidget& widget) { return widget.mapToGlobal(QPoint()).x(); };
    EXPECT_LT(left(pane("DzContentLibraryPane")), left(viewport));
    EXPECT_LT(left(viewport), left(pane("DzParametersPane")));
}

TEST_F(DesktopWindowTest, shows_a_figure_and_turns_its_dials)
{
    start();
    DzFigure& figure = openFigure(sourceFile);
    EXPECT_NE(sceneItem(figure), nullptr);
    click(figure);
    EXPECT_EQ(dzScene->getPrimarySelection(), &figure);
    DzFloatProperty& dial = dialOf(figure, "Wide");
    DzFloatSlider* const slider = sliderOf(dial);
    ASSERT_NE(slider, nullptr);
    QTest::keyClick(slider, Qt::Key_End);
    EXPECT_FLOAT_EQ(dial.getValue(), dial.getMax());
}

TEST_F(DesktopWindowTest, orbits_the_view_without_changing_the_scene)
{
    start();
    DzCamera& camera = *window().getViewportMgr()->getPerspectiveView();
    const DzVec3 before = camera.getWSPos();
    QWidget& view = *window().getViewportMgr()->getActiveViewport()->get3DViewport();
    const QPoint middle = view.rect().center();
    QTest::mousePress(&view, Qt::LeftButton, Qt::AltModifier, middle);
    QMouseEvent move(QEvent::MouseMove, middle + QPoint(80, 0), Qt::NoButton, Qt::LeftButton,
                     Qt::AltModifier);
    QApplication::sendEvent(&view, &move);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::AltModifier, middle + QPoint(80, 0));
    EXPECT_NE(camera.getWSPos().m_x, before.m_x);
    EXPECT_FALSE(desktop->files().isChanged());
}

TEST_F(DesktopWindowTest, converts_two_figures_that_are_selected_by_clicks)
{
    start();
    const DzFigure& source = openFigure(sourceFile);
    const DzFigure& target = openFigure(targetFile);
    click(source);
    click(target, Qt::ControlModifier);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 2);
    int times = 0;
    auto* const action = qobject_cast<DzAction*>(entry("Convert selected Genesis 3 / 8 / 8.1 figure..."));
    ASSERT_NE(action, nullptr);
    QObject::connect(action, &DzAction::preExecute, [&times] { ++times; });
    ModalAnswer dialog(PressKey(Qt::Key_Escape));
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(times, 1);
    EXPECT_TRUE(dialog.seen);
}

TEST_F(DesktopWindowTest, tells_that_two_figures_are_needed)
{
    start();
    ModalAnswer box(Press("OK"));
    QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(box.text.contains(QStringLiteral("You must select two figures"), Qt::CaseInsensitive))
        << box.text.toStdString();
}

TEST_F(DesktopWindowTest, selects_all_figures_or_none_and_deletes_what_is_selected)
{
    start();
    DzFigure& source = openFigure(sourceFile);
    DzFigure& target = openFigure(targetFile);
    dzScene->selectAllNodes(false);
    QTest::keyClick(&window(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(dzScene->getSelectedNodeList(), (QObjectList{&source, &target}));
    QTest::keyClick(&window(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
    click(target);
    QTest::keyClick(&window(), Qt::Key_Delete);
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
}

TEST_F(DesktopWindowTest, hides_and_shows_panes_from_a_menu)
{
    start();
    QAction* const toggle = entry("Scene");
    ASSERT_NE(toggle, nullptr);
    toggle->trigger();
    EXPECT_FALSE(pane("DzHierarchyPane").isVisible());
    toggle->trigger();
    EXPECT_TRUE(pane("DzHierarchyPane").isVisible());
}

TEST_F(DesktopWindowTest, knows_who_saves_files_once_the_preferences_have_it)
{
    start();
    EXPECT_FALSE(dzApp->getCurrentAuthor().isValid());
    {
        ModalAnswer dialog([](QWidget& preferences) {
            preferences.findChild<QLineEdit*>(QStringLiteral("AuthorName"))->setText(QStringLiteral(" Ada "));
            preferences.findChild<QLineEdit*>(QStringLiteral("AuthorUrl"))
                ->setText(QStringLiteral("https://example.org"));
            SavePicture(preferences, "desktop-preferences");
            QTest::mouseClick(FindButton(preferences, "OK"), Qt::LeftButton);
        });
        entry("Preferences...")->trigger();
        EXPECT_TRUE(dialog.seen);
    }
    EXPECT_EQ(dzApp->getCurrentAuthor().getName(), QLatin1String("Ada"));
    const desktop::Options again = smallLibrary();
    desktop.reset();
    TestHost().reset();
    dzApp->setCurrentAuthor(DzAuthor());
    desktop.reset(new desktop::DesktopWindow(attendant));
    desktop->start(again);
    EXPECT_EQ(dzApp->getCurrentAuthor().getName(), QLatin1String("Ada")) << "also the next time";
    EXPECT_EQ(dzApp->getCurrentAuthor().getURL(), QLatin1String("https://example.org"));
    {
        ModalAnswer dialog(PressKey(Qt::Key_Escape));
        entry("Preferences...")->trigger();
    }
    EXPECT_EQ(dzApp->getCurrentAuthor().getName(), QLatin1String("Ada")) << "cancelled";
}

TEST_F(DesktopWindowTest, tells_what_it_is)
{
    start();
    ModalAnswer box(Press("OK"));
    entry("About Gantrel")->trigger();
    EXPECT_TRUE(box.text.contains(QStringLiteral("<b>Gantrel " GANTREL_VERSION "</b>")))
        << box.text.toStdString();
}

TEST_F(DesktopWindowTest, has_its_icon_in_every_size_that_desktops_ask_for)
{
    const QIcon icon = dzApp->getInterface()->windowIcon();
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
    EXPECT_LT(icon.pixmap(16).toImage().pixelColor(0, 0).alpha(), 128) << "its corners are round";
}

TEST_F(DesktopWindowTest, opens_as_it_was_left)
{
    start();
    auto* const dock = qobject_cast<QDockWidget*>(pane("DzHierarchyPane").parentWidget());
    dock->hide();
    window().resize(1100, 700);
    const QSize size = window().size();
    EXPECT_TRUE(window().close());
    desktop.reset();
    TestHost().reset();
    desktop.reset(new desktop::DesktopWindow(attendant));
    desktop->show();
    EXPECT_EQ(window().size(), size);
    EXPECT_FALSE(pane("DzHierarchyPane").isVisible());
    EXPECT_TRUE(pane("DzParametersPane").isVisible());
}

TEST_F(DesktopWindowTest, looks_well)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        desktop.reset();
        TestHost().reset();
        SetUp();
        start();
        DzFigure& figure = openFigure(sourceFile);
        click(figure);
        dialOf(figure, "Wide").setValue(1.0f);
        EXPECT_NE(sliderOf(dialOf(figure, "Wide")), nullptr);
        QCoreApplication::processEvents();
        SavePicture(window(), isLarge ? "desktop-18pt" : "desktop");
    }
}

} // namespace
