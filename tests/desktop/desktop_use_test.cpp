// A demanding user at the desktop application: small windows, large texts, and everything at the wrong
// moment. SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzprogress.h>
#include <dzviewport.h>

namespace {

class DesktopUse : public DesktopTest {
protected:
    void loadBoth()
    {
        source = &openFigure(sourceFile);
        source->setLabel(QStringLiteral("Vera"));
        qobject_cast<DzMorph*>(source->getObject()->findModifier(QStringLiteral("Wide")))
            ->getValueChannel()
            ->setValue(1.0f);
        target = &openFigure(targetFile);
        click(*source);
        click(*target, Qt::ControlModifier);
    }
    /// Converts as proposed.
    QWidget* convert()
    {
        ModalAnswer dialog(Press("Convert"));
        QTest::keyClick(&window(), Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        EXPECT_TRUE(dialog.seen);
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (widget->isVisible() && widget->objectName() == QLatin1String("SuccessDialog"))
                return widget;
        return nullptr;
    }
    static QDockWidget& dockOf(const char* paneClass)
    {
        return *qobject_cast<QDockWidget*>(pane(paneClass).parentWidget());
    }
    /// Whether the shortcut reaches the product while a widget has the focus.
    static bool convertsFrom(QWidget& focus)
    {
        focus.setFocus(Qt::MouseFocusReason);
        EXPECT_EQ(QApplication::focusWidget(), &focus) << focus.metaObject()->className();
        ModalAnswer dialog(PressKey(Qt::Key_Escape));
        QTest::keyClick(&focus, Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
        window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        return dialog.seen && dialog.title.contains(QStringLiteral("Convert figure"));
    }

    DzFigure* source = nullptr;
    DzFigure* target = nullptr;
};

TEST_F(DesktopUse, has_room_in_a_small_window_for_large_texts)
{
    const LargeFont large;
    desktop.reset();
    TestHost().reset();
    SetUp();
    start();
    loadBoth();
    window().resize(1024, 700);
    QCoreApplication::processEvents();
    SavePicture(window(), "desktop-1024x700-18pt");
    EXPECT_EQ(window().size(), QSize(1024, 700)) << "nothing in it forces it wider";
    for (const char* const name : {"DzHierarchyPane", "DzParametersPane", "DzContentLibraryPane"})
        EXPECT_FALSE(pane(name).visibleRegion().isEmpty()) << name;
    const QWidget& view = *window().getViewportMgr()->getActiveViewport()->get3DViewport();
    EXPECT_GE(view.width(), view.height() / 3) << "a standing figure is narrower than a third of its height";
    EXPECT_NE(convert(), nullptr);
}

TEST_F(DesktopUse, reads_the_names_of_deep_rows_in_a_narrow_scene_pane)
{
    start();
    loadBoth();
    window().resizeDocks({&dockOf("DzHierarchyPane")}, {60}, Qt::Horizontal);
    sceneItem(*target);
    sceneTree().expandAll();
    QCoreApplication::processEvents();
    SavePicture(window(), "desktop-narrow-scene-pane");
    const QTreeWidgetItem* row = sceneTree().topLevelItem(0);
    ASSERT_GT(row->child(0)->childCount(), 0);
    for (; row; row = sceneTree().itemBelow(row)) {
        const int width = sceneTree().visualItemRect(row).width();
        EXPECT_GE(width, sceneTree().fontMetrics().averageCharWidth() * 8) << row->text(0).toStdString();
    }
    sceneTree().collapseAll();
    QCoreApplication::processEvents();
    sceneTree().header()->resizeSection(0, 0);
    window().resizeDocks({&dockOf("DzHierarchyPane")}, {300}, Qt::Horizontal);
    QCoreApplication::processEvents();
    EXPECT_EQ(sceneTree().header()->length(), sceneTree().viewport()->width()) << "all the room is used";
}

TEST_F(DesktopUse, takes_a_pane_out_by_its_title_and_finds_it_there_again)
{
    start();
    QDockWidget& dock = dockOf("DzHierarchyPane");
    const QPoint title(dock.width() / 3, 8);
    QTest::mousePress(&dock, Qt::LeftButton, {}, title);
    for (const int step : {10, 60, 200}) {
        const QPoint at = title - QPoint(step, -step / 2);
        QMouseEvent move(QEvent::MouseMove, at, dock.mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&dock, &move);
    }
    QTest::mouseRelease(&dock, Qt::LeftButton, {}, title - QPoint(200, -100));
    EXPECT_TRUE(dock.isFloating());
    auto* const button = dock.findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_floatbutton"));
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(dock.isFloating());
    EXPECT_FALSE(pane("DzHierarchyPane").visibleRegion().isEmpty());
}

TEST_F(DesktopUse, asks_how_to_load_a_d_former_unless_long_work_does_it)
{
    start();
    openhost::DFormLoadOptions options{QStringLiteral("Split"), false};
    {
        ModalAnswer window(Press("Cancel"));
        EXPECT_FALSE(attendant.chooseDFormOptions(options));
        EXPECT_TRUE(window.seen);
    }
    const DzProgress progress(QStringLiteral("Converting"), 2);
    ModalAnswer window(Press("Cancel"));
    EXPECT_TRUE(attendant.chooseDFormOptions(options));
    EXPECT_FALSE(window.seen);
    EXPECT_EQ(options.name, QLatin1String("Split"));
}

TEST_F(DesktopUse, converts_by_the_shortcut_wherever_the_focus_is)
{
    start();
    loadBoth();
    QCoreApplication::processEvents();
    auto* const filter = pane("DzParametersPane").findChild<QLineEdit*>();
    ASSERT_NE(filter, nullptr);
    EXPECT_TRUE(convertsFrom(*filter));
    auto* const content = pane("DzContentLibraryPane").findChild<QTreeWidget*>();
    ASSERT_NE(content, nullptr);
    EXPECT_TRUE(convertsFrom(*content));
    EXPECT_TRUE(convertsFrom(sceneTree()));
    EXPECT_TRUE(convertsFrom(*window().getViewportMgr()->getActiveViewport()->get3DViewport()));
}

TEST_F(DesktopUse, disables_what_tells_of_morphs_when_another_scene_is_opened)
{
    start();
    loadBoth();
    const QString file = TestFolder() + QStringLiteral("/other.duf");
    ASSERT_EQ(dzScene->saveScene(file), DZ_NO_ERROR);
    const QPointer<QWidget> told = convert();
    ASSERT_TRUE(told);
    {
        ModalAnswer question(Press("Discard"));
        EXPECT_TRUE(desktop->files().openFile(file));
    }
    TestHost().purge();
    ASSERT_TRUE(told);
    EXPECT_TRUE(told->isVisible());
    for (const DzFloatSlider* const slider : told->findChildren<DzFloatSlider*>())
        EXPECT_FALSE(slider->isEnabled());
    EXPECT_FALSE(FindButton(*told, "Show in Parameters")->isEnabled());
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    QTest::mouseClick(FindButton(*told, "Close"), Qt::LeftButton);
    EXPECT_TRUE(told.isNull() || !told->isVisible());
}

TEST_F(DesktopUse, ends_while_it_still_tells_of_new_morphs)
{
    start();
    loadBoth();
    const QPointer<QWidget> told = convert();
    ASSERT_TRUE(told);
    constexpr int tookTooLong = 9;
    QTimer patience;
    QObject::connect(&patience, &QTimer::timeout, [] { QApplication::exit(tookTooLong); });
    patience.start(20000);
    QTimer::singleShot(0, [] {
        ModalAnswer question(Press("Discard"));
        EXPECT_TRUE(window().close());
    });
    EXPECT_EQ(TestHost().exec(), 0);
    // Each window that goes asks for the end; what is left of that would end the next test's boxes.
    QCoreApplication::removePostedEvents(qApp, QEvent::Quit);
}

TEST_F(DesktopUse, tells_of_a_broken_file_that_it_is_given_and_goes_on)
{
    const QString broken = TestFolder() + QStringLiteral("/Broken.duf");
    WriteBytes(broken.toStdString(), "{\"file_version\": \"0.6.0.0\", \"asset_info\": {");
    desktop::Options options = smallLibrary();
    options.files = {broken.toStdString(), pathOf(targetFile).toStdString()};
    ModalAnswer box(Press("OK"));
    start(options);
    ASSERT_TRUE(box.seen);
    EXPECT_TRUE(box.text.contains(QStringLiteral("Broken.duf"))) << box.text.toStdString();
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_TRUE(window().isVisible());
}

} // namespace
