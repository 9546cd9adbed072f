// Where dialogs open: beside the figures, on the screen.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "apps/desktop/dialog_places.h"
#include "openhost/figure_area.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QScreen>
#include <QShowEvent>
#include <QtTest/QTest>
#include <QtTest/qtestspontaneevent.h>

#include <dz3dviewport.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>

namespace {

const QRect screen(0, 0, 1280, 800);

QRect Placed(const QRect& dialog, const QRect& figures)
{
    return {desktop::PlaceBeside(dialog, figures, screen), dialog.size()};
}

TEST(PlaceBeside, leaves_a_dialog_alone_that_covers_nothing)
{
    EXPECT_EQ(Placed({10, 20, 300, 200}, {500, 100, 200, 600}), QRect(10, 20, 300, 200));
}

TEST(PlaceBeside, chooses_a_side_of_the_figures_that_has_room)
{
    for (const QRect& figures : {QRect(400, 100, 200, 600), QRect(700, 100, 200, 600)}) {
        const QRect place = Placed(QRect(540, 300, 350, 200), figures);
        EXPECT_FALSE(place.intersects(figures)) << figures.left();
        EXPECT_TRUE(screen.contains(place)) << figures.left();
    }
}

TEST(PlaceBeside, covers_as_little_as_can_be_where_there_is_no_room)
{
    const QRect place = Placed(QRect(190, 100, 900, 500), QRect(300, 100, 200, 600));
    EXPECT_TRUE(screen.contains(place));
    EXPECT_EQ(place.right(), screen.right());
}

TEST(PlaceBeside, shows_the_upper_left_corner_of_a_dialog_that_is_larger_than_the_screen)
{
    EXPECT_EQ(Placed(QRect(-100, -50, 1500, 900), QRect(500, 100, 200, 600)).topLeft(), QPoint(0, 0));
}

class PlacesTest : public DesktopTest {
protected:
    static const Dz3DViewport& view()
    {
        return *window().getViewportMgr()->getActiveViewport()->get3DViewport();
    }
    static QRect figures() { return openhost::FigureArea(view()).translated(view().mapToGlobal(QPoint())); }
};

TEST_F(PlacesTest, of_dialogs_are_beside_the_figures)
{
    start();
    window().resize(780, 500);
    window().move(0, 0);
    QDialog dialog(&window());
    dialog.resize(120, 100);
    EXPECT_TRUE(figures().isEmpty()) << "nothing is in the scene";
    openFigure(targetFile);
    QCoreApplication::processEvents();
    ASSERT_FALSE(figures().isEmpty());
    ASSERT_TRUE(figures().contains(window().frameGeometry().center())) << "else this shows nothing";
    dialog.show();
    EXPECT_NEAR(dialog.geometry().center().y(), window().frameGeometry().center().y(), 10) << "only aside";
    EXPECT_FALSE(figures().intersects(dialog.geometry()));
    EXPECT_TRUE(window().screen()->availableGeometry().contains(dialog.geometry()));
    QMessageBox box(&window());
    box.show();
    EXPECT_TRUE(figures().intersects(box.geometry())) << "a question is where people look";
    QDialog other(&window());
    other.setGeometry(figures());
    other.show();
    EXPECT_EQ(other.geometry(), figures()) << "has a place of its own";
}

TEST_F(PlacesTest, are_on_the_screen_also_of_dialogs_that_would_be_larger)
{
    start();
    const QRect all = window().screen()->availableGeometry();
    for (const bool hasFigure : {false, true}) {
        if (hasFigure)
            openFigure(targetFile);
        QCoreApplication::processEvents();
        QDialog dialog(&window());
        dialog.resize(all.size() * 2);
        dialog.show();
        EXPECT_TRUE(all.contains(dialog.frameGeometry())) << hasFigure;
    }
}

TEST_F(PlacesTest, hang_on_figures_that_are_seen)
{
    start();
    DzFigure& figure = openFigure(targetFile);
    QCoreApplication::processEvents();
    const QRect before = openhost::FigureArea(view());
    EXPECT_TRUE(view().rect().contains(before));
    EXPECT_EQ(view().findNodeAt(before.center()), &figure);
    EXPECT_EQ(view().findNodeAt(QPoint(before.left() - 3, before.center().y())), nullptr);
    figure.setVisible(false);
    EXPECT_TRUE(openhost::FigureArea(view()).isEmpty());
}

TEST_F(PlacesTest, do_not_hang_on_what_is_behind_the_camera)
{
    start();
    openFigure(targetFile);
    QCoreApplication::processEvents();
    const QRect before = openhost::FigureArea(view());
    ASSERT_NE(before, view().rect());
    DzFigure& other = openFigure(targetFile);
    other.getZPosControl()->setValue(1e5f);
    EXPECT_EQ(openhost::FigureArea(view()), before);
}

TEST_F(PlacesTest, are_kept_by_dialogs_that_are_restored)
{
    start();
    openFigure(targetFile);
    QCoreApplication::processEvents();
    QDialog dialog(&window());
    dialog.resize(120, 100);
    dialog.show();
    QCoreApplication::processEvents();
    const QPoint moved = figures().center();
    dialog.move(moved);
    dialog.setAttribute(Qt::WA_Moved, false); // as after a window manager moved it
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(&dialog, &restored); // sendEvent() would take it for one of our own
    EXPECT_EQ(dialog.pos(), moved);
}

/// As the user sees it, who then moves it.
QRect Shown(DzMainWindow& window, const char* name, const QRect& moved = QRect())
{
    QDialog dialog(&window);
    dialog.setObjectName(QLatin1String(name));
    dialog.resize(120, 100);
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QRect place(dialog.pos(), dialog.size());
    if (moved.isValid()) {
        dialog.resize(moved.size());
        dialog.move(moved.topLeft());
    }
    return place;
}

TEST_F(PlacesTest, are_those_that_the_user_chose_the_last_time)
{
    start();
    const QRect usual = Shown(window(), "First");
    EXPECT_EQ(desktop::RememberedDialogPlace(QStringLiteral("First")), QRect()) << "nobody moved it";
    const QRect wanted(usual.topLeft() + QPoint(70, 50), QSize(310, 222));
    Shown(window(), "First", wanted);
    EXPECT_EQ(Shown(window(), "First"), wanted);
    EXPECT_EQ(Shown(window(), "Second"), usual) << "is another one";
    EXPECT_EQ(Shown(window(), ""), usual);
}

TEST_F(PlacesTest, of_the_last_time_are_forgotten_where_no_screen_shows_them)
{
    start();
    const QRect usual = Shown(window(), "First");
    for (const QRect& gone :
         {QRect(90000, 20, 300, 200), QRect(-5000, -5000, 300, 200), QRect(10, 10, -4, 7)}) {
        desktop::RememberDialogPlace(QStringLiteral("First"), gone);
        EXPECT_EQ(Shown(window(), "First"), usual);
    }
    const QRect all = window().screen()->availableGeometry();
    const QRect larger = all.adjusted(-50, -50, 100, 100);
    ASSERT_TRUE(QGuiApplication::screenAt(larger.center()));
    desktop::RememberDialogPlace(QStringLiteral("First"), larger);
    EXPECT_EQ(Shown(window(), "First"), all) << "as much of it as can be";
}

} // namespace
