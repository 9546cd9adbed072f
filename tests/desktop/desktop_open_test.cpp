// Files that come by the list of the last ones, by drag and drop, or by mistake.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzmainwindow.h>

namespace {

constexpr int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

class DesktopOpen : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
    }
    QString file(const QString& name) const { return _folder.filePath(name); }
    QString file(const char* name) const { return file(QString::fromUtf8(name)); }
    /// A figure of the library under another name.
    QString figure(const QString& name) const
    {
        EXPECT_TRUE(QFile::copy(pathOf(targetFile), file(name)));
        return file(name);
    }
    bool open(const QString& path) { return desktop->files().openFile(path); }
    static QMenu& recent() { return *entry("Open Recent")->menu(); }
    /// The entries' texts, without the command at the end.
    static QStringList recentTexts()
    {
        QStringList texts;
        for (const QAction* const action : recent().actions())
            if (!action->data().toString().isEmpty())
                texts << action->text();
        return texts;
    }
    /// What a window of the file manager sends.
    template <class Event>
    static bool send(const QMimeData& data)
    {
        Event event(QPoint(9, 9), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        event.ignore();
        QCoreApplication::sendEvent(&window(), &event);
        EXPECT_TRUE(!event.isAccepted() || event.dropAction() == Qt::CopyAction)
            << "the file would be moved here, and so be deleted there";
        return event.isAccepted();
    }
    static bool drop(const QStringList& files)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : files)
            urls << QUrl::fromLocalFile(path);
        data.setUrls(urls);
        const bool isWelcome = send<QDragEnterEvent>(data);
        EXPECT_EQ(send<QDragMoveEvent>(data), isWelcome);
        EXPECT_EQ(send<QDropEvent>(data), isWelcome);
        return isWelcome;
    }
    static bool hasFigures(int count)
    {
        return QTest::qWaitFor([=] { return dzScene->getNumSkeletons() == count; }, patienceMilliseconds);
    }
    /// What is told when the file is opened.
    QString toldAbout(const QString& path)
    {
        ModalAnswer box(Press("OK"));
        EXPECT_FALSE(open(path));
        EXPECT_TRUE(box.seen) << path.toStdString();
        return box.text;
    }

    QTemporaryDir _folder;
};

TEST_F(DesktopOpen, lists_what_was_opened_or_saved_with_the_newest_first)
{
    EXPECT_FALSE(entry("Open Recent")->isEnabled());
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    EXPECT_TRUE(open(figure(QStringLiteral("B & C.duf"))));
    {
        ModalAnswer dialog(TypeFile(file("Scene.duf")));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    EXPECT_TRUE(open(file("A.duf")));
    EXPECT_EQ(recentTexts(), (QStringList{QStringLiteral("&1 A.duf"), QStringLiteral("&2 Scene.duf"),
                                          QStringLiteral("&3 B && C.duf")}));
    EXPECT_TRUE(entry("Open Recent")->isEnabled());
    EXPECT_EQ(recent().actions().first()->toolTip(), file("A.duf"));
}

TEST_F(DesktopOpen, keeps_the_last_eight_until_the_next_start)
{
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(open(figure(QStringLiteral("%1.duf").arg(i))));
    const QStringList texts = recentTexts();
    EXPECT_EQ(texts.size(), 8);
    EXPECT_EQ(texts.first().toStdString(), "&1 9.duf");
    EXPECT_EQ(texts.last().toStdString(), "&8 2.duf");
    desktop.reset();
    TestHost().reset();
    desktop.reset(new desktop::DesktopWindow(attendant));
    EXPECT_EQ(recentTexts(), texts);
}

TEST_F(DesktopOpen, tells_files_of_the_same_name_apart_by_their_folders)
{
    ASSERT_TRUE(QDir(_folder.path()).mkdir(QStringLiteral("sub")));
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    EXPECT_TRUE(open(figure(QStringLiteral("sub/A.duf"))));
    EXPECT_NE(recentTexts()[0].mid(2), recentTexts()[1].mid(2));
    EXPECT_TRUE(recentTexts()[0].contains(QStringLiteral("A.duf"))) << recentTexts()[0].toStdString();
}

TEST_F(DesktopOpen, opens_a_file_of_the_list_again)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    EXPECT_TRUE(open(figure(QStringLiteral("B.duf"))));
    recent().actions().at(1)->trigger();
    EXPECT_EQ(dzScene->getNumSkeletons(), 3);
    QCoreApplication::processEvents();
    EXPECT_EQ(recentTexts().first().toStdString(), "&1 A.duf");
}

TEST_F(DesktopOpen, takes_a_file_that_is_gone_from_the_list_and_says_so)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    ASSERT_TRUE(QFile::remove(file("A.duf")));
    ModalAnswer box(Press("OK"));
    recent().actions().first()->trigger();
    EXPECT_EQ(box.text, QStringLiteral("There is no file \u201C%1\u201D any more.").arg(file("A.duf")));
    EXPECT_TRUE(recentTexts().isEmpty());
    EXPECT_FALSE(entry("Open Recent")->isEnabled());
}

TEST_F(DesktopOpen, clears_the_list)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    QAction* const clear = recent().actions().last();
    EXPECT_EQ(clear->text().toStdString(), "&Clear List");
    clear->trigger();
    EXPECT_TRUE(recentTexts().isEmpty());
    EXPECT_TRUE(desktop::RememberedRecentFiles().isEmpty());
}

TEST_F(DesktopOpen, does_not_list_what_could_not_be_opened)
{
    WriteBytes(file("Broken.duf").toStdString(), "{");
    toldAbout(file("Broken.duf"));
    EXPECT_TRUE(recentTexts().isEmpty());
}

TEST_F(DesktopOpen, takes_the_files_that_are_dropped_on_the_window)
{
    EXPECT_TRUE(drop({figure(QStringLiteral("A.duf")), figure(QStringLiteral("B.DUF"))}));
    EXPECT_TRUE(hasFigures(2));
}

TEST_F(DesktopOpen, refuses_what_it_could_not_open_when_it_is_dragged_over_the_window)
{
    EXPECT_FALSE(drop({file("Notes.txt")}));
    QMimeData text;
    text.setText(QStringLiteral("People/A.duf"));
    EXPECT_FALSE(send<QDragEnterEvent>(text));
    QMimeData remote;
    remote.setUrls({QUrl(QStringLiteral("https://example.org/A.duf"))});
    EXPECT_FALSE(send<QDragEnterEvent>(remote));
}

TEST_F(DesktopOpen, tells_in_one_box_of_what_was_dropped_and_is_no_file)
{
    ASSERT_TRUE(QDir(_folder.path()).mkdir(QStringLiteral("Folder.duf")));
    ModalAnswer box(Press("OK"));
    EXPECT_TRUE(drop({file("Folder.duf"), figure(QStringLiteral("A.duf")), file("Gone.duf")}));
    EXPECT_TRUE(hasFigures(1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return box.seen; }, patienceMilliseconds));
    EXPECT_EQ(box.text, QStringLiteral("\u201C%1\u201D is a folder, not a file.\n"
                                       "There is no file \u201C%2\u201D.")
                            .arg(file("Folder.duf"), file("Gone.duf")));
}

TEST_F(DesktopOpen, tells_what_it_leaves_out_of_files_that_are_dropped_together)
{
    ASSERT_TRUE(QDir(_folder.path()).mkdir(QStringLiteral("Maps")));
    WriteBytes(file("Skin.png").toStdString(), "no picture");
    ModalAnswer box(Press("OK"));
    EXPECT_TRUE(drop({file("Skin.png"), figure(QStringLiteral("A.duf")), file("Maps/")}));
    EXPECT_TRUE(hasFigures(1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return box.seen; }, patienceMilliseconds));
    EXPECT_EQ(box.text, QStringLiteral("Only .duf, .dsf and .obj files can be opened, not "
                                       "\u201CSkin.png\u201D, \u201CMaps\u201D."));
}

TEST_F(DesktopOpen, opens_what_is_dropped_during_a_question_after_its_answer)
{
    {
        ModalAnswer dialog(TypeFile(file("Scene.duf")));
        EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    EXPECT_TRUE(open(figure(QStringLiteral("B.duf"))));
    int figuresMeanwhile = 0;
    ModalAnswer question([&](QWidget& box) {
        // The toolkit lets none through to a window below a question; a drop may be on its way though.
        EXPECT_TRUE(drop({file("A.duf")}));
        QCoreApplication::processEvents();
        figuresMeanwhile = dzScene->getNumSkeletons();
        Press("Discard")(box);
    });
    EXPECT_TRUE(drop({file("Scene.duf")}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return question.seen; }, patienceMilliseconds));
    EXPECT_EQ(figuresMeanwhile, 2);
    EXPECT_TRUE(hasFigures(2)) << "one of the scene and the one that came later";
    EXPECT_EQ(desktop->files().filename(), file("Scene.duf"));
    EXPECT_TRUE(desktop->files().isChanged());
}

TEST_F(DesktopOpen, answers_files_of_other_kinds_in_one_sentence_and_loses_nothing)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    const std::string whole = ReadBytes(file("A.duf").toStdString());
    const std::vector<std::pair<const char*, std::string>> files{
        {"Notes.txt", "Dear diary"}, {"Empty.duf", ""},
        {"Empty.dsf", ""},           {"Cut.duf", whole.substr(0, whole.size() / 2)},
        {"Text.duf", "Dear diary"},  {"Cut.gz.duf", std::string("\x1f\x8b\x08\x00\x00", 5)},
        {"List.duf", "[1, 2, 3]"},   {"Nothing", "x"},
    };
    for (const auto& [name, bytes] : files) {
        WriteBytes(file(name).toStdString(), bytes);
        const QString text = toldAbout(file(name));
        EXPECT_TRUE(text.startsWith(QStringLiteral("The file could not be opened.\n\n%1: ").arg(file(name))))
            << text.toStdString();
        EXPECT_EQ(text.count(QLatin1Char('\n')), 2) << text.toStdString();
    }
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
}

TEST_F(DesktopOpen, opens_a_mesh)
{
    WriteBytes(file("Roof.obj").toStdString(), "v 0 0 0\nv 9 0 0\nv 0 9 0\nf 1 2 3\n");
    ModalAnswer options([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); });
    EXPECT_TRUE(open(file("Roof.obj")));
    EXPECT_EQ(dzScene->getNumNodes(), 1);
    EXPECT_TRUE(desktop->files().filename().isEmpty());
}

TEST_F(DesktopOpen, merges_a_scene_into_an_empty_one_which_stays_untitled)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    {
        ModalAnswer dialog(TypeFile(file("Scene.duf")));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    entry("New")->trigger();
    ModalAnswer dialog(TypeFile(file("Scene.duf")));
    entry("Merge...")->trigger();
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_TRUE(desktop->files().filename().isEmpty());
    EXPECT_TRUE(desktop->files().isChanged());
}

TEST_F(DesktopOpen, does_not_end_below_an_open_dialog)
{
    EXPECT_TRUE(open(figure(QStringLiteral("A.duf"))));
    bool isClosed = true;
    int boxes = 0;
    ModalAnswer dialog([&](QWidget&) {
        isClosed = window().close();
        for (const QWidget* const widget : QApplication::topLevelWidgets())
            boxes += qobject_cast<const QMessageBox*>(widget) && widget->isVisible();
    });
    entry("Content Folders...")->trigger();
    EXPECT_FALSE(isClosed);
    EXPECT_EQ(boxes, 0) << "no question stands over the dialog";
    EXPECT_TRUE(window().isVisible());
}

TEST_F(DesktopTest, starts_without_any_content_folder_and_says_what_a_figure_lacks)
{
    const QString figure = pathOf(targetFile);
    desktop::Options options = smallLibrary();
    options.contentFolders.clear();
    {
        ModalAnswer nothing;
        start(options);
        EXPECT_FALSE(nothing.seen) << nothing.text.toStdString();
    }
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 0);
    ASSERT_NE(window().statusBar()->findChild<QLabel*>(), nullptr);
    EXPECT_EQ(window().statusBar()->findChild<QLabel*>()->text().toStdString(),
              "Choose File > Content Folders to say where your figures are.");
    QStringList told;
    QTimer answers;
    QObject::connect(&answers, &QTimer::timeout, [&] {
        if (QWidget* const window = QApplication::activeModalWidget()) {
            const auto* const box = qobject_cast<QMessageBox*>(window);
            told << (box ? box->text() : window->windowTitle());
            window->close();
        }
    });
    answers.start(1);
    EXPECT_FALSE(desktop->files().openFile(figure));
    ASSERT_EQ(told.size(), 2) << told.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(told[0].toStdString(), "Missing Files");
    EXPECT_TRUE(told[1].endsWith(QStringLiteral("none of its figures could be loaded")))
        << told[1].toStdString();
}

} // namespace
