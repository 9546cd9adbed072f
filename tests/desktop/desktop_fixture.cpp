// The desktop application's window, with a small library.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"

#include "tests/plugin/mini_scene.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzmainwindow.h>
#include <dznode.h>
#include <dzpane.h>
#include <dzscene.h>

void DesktopTest::SetUp()
{
    HostTest::SetUp();
    DzAppSettings settings(QStringLiteral("Gantrel Desktop"));
    // What all programs share is kept in a folder of its own.
    qputenv("XDG_CONFIG_HOME", (TestFolder() + QStringLiteral("/shared settings")).toUtf8());
    QDir(TestFolder() + QStringLiteral("/shared settings")).removeRecursively();
    qputenv("XDG_DATA_HOME", (TestFolder() + QStringLiteral("/data of the account")).toUtf8());
    QDir(TestFolder() + QStringLiteral("/data of the account")).removeRecursively();
    for (const char* const key :
         {"length_unit", "picture_cache_mib", "undo_mib", "content_folders", "recent_files", "adjust_rig",
          "author_name", "author_email", "author_url", "window_geometry", "window_docks", "view_ground",
          "view_buttons", "view_style", "look", "light_look", "job_settings"})
        settings.removeValue(QLatin1String(key));
    settings.removeKey(QStringLiteral("Dialog Places"));
    AddMiniLibrary();
    desktop.reset(new desktop::DesktopWindow(attendant));
}

void DesktopTest::TearDown()
{
    // They stay open after a conversion until somebody closes them.
    QList<QPointer<QWidget>> dialogs;
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QLatin1String("SuccessDialog"))
            dialogs.append(widget);
    for (const QPointer<QWidget>& dialog : dialogs)
        delete dialog;
    desktop.reset();
    dzApp->setCurrentAuthor(DzAuthor());
    window().hide();
}

DzFigure& DesktopTest::openFigure(const char* file)
{
    EXPECT_TRUE(desktop->files().openFile(pathOf(file)));
    return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
}

desktop::Options DesktopTest::smallLibrary() const
{
    desktop::Options options;
    options.contentFolders = {dzApp->getContentMgr()->getContentDirectoryPath(0).toStdString()};
    // The same stories can be told with a module that was built in another way.
    const QByteArray otherPlugins = qgetenv("GANTREL_OTHER_PLUGINS");
    options.pluginFolder = otherPlugins.isEmpty() ? GANTREL_PLUGINS : otherPlugins.constData();
    return options;
}

void DesktopTest::start()
{
    start(smallLibrary());
}

void DesktopTest::start(const desktop::Options& options)
{
    desktop->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    desktop->start(options);
    QCoreApplication::processEvents();
}

void DesktopTest::restart()
{
    const desktop::Options options = smallLibrary();
    desktop.reset();
    TestHost().reset();
    desktop.reset(new desktop::DesktopWindow(attendant));
    start(options);
}

DzMainWindow& DesktopTest::window()
{
    return *dzApp->getInterface();
}

DzPane& DesktopTest::pane(const char* className)
{
    return *window().getPaneMgr()->findPane(QLatin1String(className));
}

QStringList DesktopTest::menuTitles()
{
    QStringList titles;
    for (const QAction* const menu : window().menuBar()->actions())
        titles << menu->text();
    return titles;
}

QAction* DesktopTest::entry(const char* text)
{
    for (const QAction* const menu : window().menuBar()->actions())
        for (QAction* const action : menu->menu()->actions())
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return action;
    return nullptr;
}

QTreeWidget& DesktopTest::sceneTree()
{
    return *pane("DzHierarchyPane").findChild<QTreeWidget*>();
}

QTreeWidgetItem* DesktopTest::sceneItem(const DzNode& node)
{
    QCoreApplication::processEvents();
    return sceneTree().findItems(node.getLabel(), Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

void DesktopTest::click(const DzNode& node, Qt::KeyboardModifiers modifiers)
{
    QTreeWidgetItem* const item = sceneItem(node);
    ASSERT_NE(item, nullptr);
    sceneTree().scrollToItem(item);
    QTest::mouseClick(sceneTree().viewport(), Qt::LeftButton, modifiers,
                      sceneTree().visualItemRect(item).center());
}

QString DesktopTest::pathOf(const char* relative)
{
    return dzApp->getContentMgr()->getAbsolutePath(QLatin1String(relative), true);
}

std::function<void(QWidget&)> TypeFile(const QString& file)
{
    return [file](QWidget& dialog) {
        auto* const line = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(line, nullptr);
        // Without the focus the line leaves selected what the dialog proposes.
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        line->setFocus();
        line->setText(file);
        QTest::keyClick(line, Qt::Key_Return);
    };
}
