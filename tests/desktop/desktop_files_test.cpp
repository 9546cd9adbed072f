// Files and content folders of the desktop application.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "apps/desktop/folders_dialog.h"
#include "apps/desktop/preferences.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QFile>
#include <QListWidget>
#include <QPushButton>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>

namespace {

class DesktopFilesTest : public DesktopTest {
protected:
    QString file(const char* name) const { return _folder.filePath(QString::fromUtf8(name)); }
    std::string title() const { return window().windowTitle().toStdString(); }
    void change() { EXPECT_TRUE(desktop->files().openFile(pathOf(sourceFile))); }
    bool saveAs(const QString& path)
    {
        ModalAnswer dialog(TypeFile(path));
        entry("Save Scene As...")->trigger();
        return dialog.seen && !desktop->files().isChanged();
    }

    QTemporaryDir _folder;
};

TEST_F(DesktopFilesTest, opens_a_figure_through_the_file_dialog)
{
    start();
    ModalAnswer dialog(TypeFile(pathOf(sourceFile)));
    QTest::keyClick(&window(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(dialog.title.toStdString(), "Open");
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_TRUE(desktop->files().isChanged());
}

TEST_F(DesktopFilesTest, merges_a_scene_into_the_present_one)
{
    start();
    change();
    ASSERT_TRUE(saveAs(file("One.duf")));
    ModalAnswer dialog(TypeFile(file("One.duf")));
    entry("Merge...")->trigger();
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_TRUE(desktop->files().isChanged());
    EXPECT_EQ(title(), "One.duf[*] \u2014 Gantrel");
}

TEST_F(DesktopFilesTest, does_nothing_when_the_file_dialog_is_cancelled)
{
    start();
    for (const char* const text : {"Open...", "Merge...", "Save Scene As..."}) {
        ModalAnswer dialog(PressKey(Qt::Key_Escape));
        entry(text)->trigger();
        EXPECT_TRUE(dialog.seen) << text;
    }
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_TRUE(desktop->files().filename().isEmpty());
}

TEST_F(DesktopFilesTest, saves_the_scene_and_shows_its_name)
{
    start();
    EXPECT_EQ(title(), "Untitled[*] \u2014 Gantrel");
    EXPECT_FALSE(window().isWindowModified());
    change();
    EXPECT_TRUE(window().isWindowModified());
    EXPECT_TRUE(saveAs(file("Caf\u00E9")));
    EXPECT_TRUE(QFile::exists(file("Caf\u00E9.duf")));
    EXPECT_EQ(title(), "Caf\u00E9.duf[*] \u2014 Gantrel");
    EXPECT_FALSE(window().isWindowModified());
}

TEST_F(DesktopFilesTest, replaces_the_scene_by_one_that_is_opened)
{
    start();
    change();
    ASSERT_TRUE(saveAs(file("One.duf")));
    EXPECT_TRUE(desktop->files().openFile(file("One.duf")));
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_FALSE(desktop->files().isChanged());
    dzScene->getSkeleton(0)->getXPosControl()->setValue(5.0f);
    EXPECT_TRUE(desktop->files().isChanged());
}

TEST_F(DesktopFilesTest, keeps_a_changed_scene_when_opening_another_is_cancelled)
{
    start();
    change();
    ASSERT_TRUE(saveAs(file("One.duf")));
    change();
    ModalAnswer question(Press("Cancel"));
    EXPECT_FALSE(desktop->files().openFile(file("One.duf")));
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
}

TEST_F(DesktopFilesTest, asks_too_before_a_scene_is_opened_elsewhere_in_the_program)
{
    start();
    change();
    ASSERT_TRUE(saveAs(file("One.duf")));
    change();
    DzContentMgr& content = *dzApp->getContentMgr();
    {
        ModalAnswer question(Press("Cancel"));
        EXPECT_FALSE(content.openFile(file("One.duf"), false));
        EXPECT_TRUE(question.seen);
    }
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_TRUE(desktop->files().isChanged());
    ModalAnswer question(Press("Discard"));
    EXPECT_TRUE(content.openFile(file("One.duf"), false));
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_FALSE(desktop->files().isChanged());
}

TEST_F(DesktopFilesTest, keeps_its_file_when_a_scene_cannot_be_opened)
{
    start();
    change();
    ASSERT_TRUE(saveAs(file("One.duf")));
    WriteBytes(file("Broken.duf").toStdString(), R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x",
        "type": "scene"}, "scene": {"nodes": [{"id": "a", "url": "/no/such.dsf#a"}]}})");
    std::unique_ptr<ModalAnswer> second;
    ModalAnswer told([&second](QWidget&) { second.reset(new ModalAnswer); });
    EXPECT_FALSE(desktop->files().openFile(file("Broken.duf")));
    EXPECT_TRUE(told.seen);
    EXPECT_EQ(desktop->files().filename(), file("One.duf"));
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
}

TEST_F(DesktopFilesTest, tells_when_the_scene_cannot_be_saved)
{
    start();
    change();
    Recorder refusing;
    refusing.refused = openhost::Operation::SaveAsset;
    QString told;
    // The box comes when the dialog is done.
    ModalAnswer dialog(TypeFile(file("One.duf")));
    std::unique_ptr<ModalAnswer> box;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (dialog.seen && !box)
            box.reset(new ModalAnswer(Press("OK")));
    });
    watch.start(1);
    EXPECT_FALSE(desktop->files().saveAs());
    ASSERT_TRUE(box && box->seen);
    EXPECT_TRUE(box->text.startsWith(QStringLiteral("The scene could not be saved as \u201C")))
        << box->text.toStdString();
    EXPECT_TRUE(desktop->files().isChanged());
}

TEST_F(DesktopFilesTest, ends_without_a_question_when_nothing_was_changed)
{
    start();
    QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(DesktopFilesTest, asks_before_a_changed_scene_is_lost)
{
    start();
    change();
    {
        ModalAnswer question(Press("Cancel"));
        EXPECT_FALSE(window().close());
        EXPECT_EQ(question.text.toStdString(), "The scene has been changed. Would you like to save it?");
        EXPECT_EQ(question.icon, QMessageBox::Question);
    }
    {
        ModalAnswer question(PressKey(Qt::Key_Escape));
        EXPECT_FALSE(window().close());
    }
    EXPECT_TRUE(window().isVisible());
    ModalAnswer question(Press("Discard"));
    EXPECT_TRUE(window().close());
}

TEST_F(DesktopFilesTest, saves_before_it_ends_when_asked_to)
{
    start();
    change();
    std::unique_ptr<ModalAnswer> dialog;
    ModalAnswer question([&](QWidget& box) {
        dialog.reset(new ModalAnswer(TypeFile(file("Last.duf"))));
        Press("Save")(box);
    });
    EXPECT_TRUE(window().close());
    EXPECT_TRUE(QFile::exists(file("Last.duf")));
}

TEST_F(DesktopFilesTest, remembers_the_content_folders_that_are_chosen)
{
    desktop::Options remembered = smallLibrary();
    desktop::RememberContentFolders({file(""), QString::fromStdString(remembered.contentFolders.front())});
    remembered.contentFolders.clear();
    start(remembered);
    ASSERT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 2);
    ModalAnswer dialog([](QWidget& window) {
        auto& list = *window.findChild<QListWidget*>();
        EXPECT_EQ(list.count(), 2);
        QTest::mouseClick(FindButton(window, "Move Down"), Qt::LeftButton);
        EXPECT_EQ(list.currentRow(), 1);
        QTest::mouseClick(FindButton(window, "Remove"), Qt::LeftButton);
        QTest::mouseClick(FindButton(window, "OK"), Qt::LeftButton);
    });
    entry("Content Folders...")->trigger();
    EXPECT_TRUE(dialog.seen);
    EXPECT_EQ(desktop::RememberedPreferences().contentFolders.size(), 1);
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 1);
    EXPECT_FALSE(pathOf(sourceFile).isEmpty());
}

TEST_F(DesktopFilesTest, uses_given_content_folders_without_remembering_them)
{
    start();
    EXPECT_TRUE(desktop::RememberedPreferences().contentFolders.isEmpty());
    ModalAnswer dialog(Press("Cancel"));
    entry("Content Folders...")->trigger();
    EXPECT_TRUE(desktop::RememberedPreferences().contentFolders.isEmpty());
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 1);
}

TEST_F(DesktopFilesTest, adds_a_content_folder_once)
{
    desktop::FoldersDialog dialog(nullptr, {QStringLiteral("/a")});
    dialog.show();
    for (int i = 0; i < 2; ++i) {
        ModalAnswer choice(TypeFile(_folder.path()));
        QTest::mouseClick(FindButton(dialog, "Add..."), Qt::LeftButton);
    }
    EXPECT_EQ(dialog.folders(), (QStringList{QStringLiteral("/a"), _folder.path()}));
    EXPECT_FALSE(FindButton(dialog, "Move Down")->isEnabled());
    QTest::mouseClick(FindButton(dialog, "Move Up"), Qt::LeftButton);
    EXPECT_EQ(dialog.folders().first(), _folder.path());
    EXPECT_FALSE(FindButton(dialog, "Move Up")->isEnabled());
    SavePicture(dialog, "content-folders");
}

} // namespace
