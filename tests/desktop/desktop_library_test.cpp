// The Content Library in the desktop application's window.
// SPDX-License-Identifier: MIT

#include "openhost/content_pictures.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/picture.h"

#include <QDir>
#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzmainwindow.h>
#include <dzpane.h>

#include <memory>

namespace {

class DesktopLibrary : public DesktopTest {
protected:
    void TearDown() override
    {
        openhost::ContentPictures::Shared().setDrawing({});
        DesktopTest::TearDown();
    }
    static QListWidget& list() { return *pane("DzContentLibraryPane").findChild<QListWidget*>(); }
    static void browse(const char* folder)
    {
        bool isFound = false;
        QMetaObject::invokeMethod(&pane("DzContentLibraryPane"), "browseToCategory",
                                  Q_RETURN_ARG(bool, isFound), Q_ARG(QString, QLatin1String(folder)));
        ASSERT_TRUE(isFound) << folder;
    }
};

TEST_F(DesktopLibrary, draws_pictures_of_figures_with_the_command_lines_program)
{
    start();
    openhost::ContentPictures& pictures = openhost::ContentPictures::Shared();
    pictures.setDrawing({QStringLiteral(GANTREL_CLI), TestFolder() + QStringLiteral("/drawn pictures")});
    pictures.picture(pathOf(targetFile));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pictures.isBusy(); }, 120000));
    const QImage drawn = pictures.picture(pathOf(targetFile)).toImage();
    ASSERT_EQ(drawn.size(), QSize(256, 256));
    EXPECT_NE(drawn.pixelColor(128, 128), drawn.pixelColor(2, 2)) << "a figure before its background";
    browse("People/Genesis 9");
    QCoreApplication::processEvents();
    SavePicture(window(), "desktop-library");
}

TEST_F(DesktopLibrary, loads_at_once_what_is_dragged_to_the_view)
{
    start();
    browse("People/Genesis 9");
    ASSERT_GT(list().count(), 0);
    const std::unique_ptr<QMimeData> dragged(list().model()->mimeData({list().model()->index(0, 0)}));
    QWidget& view = *window().getViewportMgr();
    const QPoint place = view.mapTo(&window(), view.rect().center());
    QDragEnterEvent enter(place, Qt::CopyAction, dragged.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, dragged.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window(), &drop);
    EXPECT_TRUE(QTest::qWaitFor([] { return dzScene->getNumSkeletons() == 1; }));
    EXPECT_FALSE(window().findChild<QWidget*>(QStringLiteral("StartPage"))->isVisible());
}

} // namespace
