// New scenes, and saving without anybody's loss.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/host/content_fixture.h"
#include "tests/host/hostile_disk.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QAction>
#include <QDateTime>
#include <QFile>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzmainwindow.h>

namespace {

class DesktopSave : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
    }
    QString file(const char* name) const { return _folder.filePath(QString::fromUtf8(name)); }
    QByteArray bytesOf(const char* name) const
    {
        QFile read(file(name));
        EXPECT_TRUE(read.open(QIODevice::ReadOnly)) << name;
        return read.readAll();
    }
    bool isChanged() const { return desktop->files().isChanged(); }
    void addFigure() { EXPECT_TRUE(desktop->files().openFile(pathOf(sourceFile))); }
    /// A changed scene that was saved to the file before.
    void haveSceneIn(const char* name)
    {
        addFigure();
        ModalAnswer dialog(TypeFile(file(name)));
        EXPECT_TRUE(desktop->files().saveAs());
        dzScene->getSkeleton(0)->getXPosControl()->setValue(5.0f);
        EXPECT_TRUE(isChanged());
    }
    /// The changed scene cannot be saved while the trouble lasts, and can afterwards.
    template <class MakeTrouble>
    void expectKeeps(const char* name, const MakeTrouble& makeTrouble)
    {
        const QByteArray before = bytesOf(name);
        ModalAnswer box(Press("OK"));
        {
            const auto trouble = makeTrouble();
            EXPECT_FALSE(desktop->files().save());
        }
        EXPECT_TRUE(box.text.startsWith(
            QStringLiteral("The scene could not be saved as \u201C%1\u201D: ").arg(file(name))))
            << box.text.toStdString();
        EXPECT_EQ(bytesOf(name), before);
        EXPECT_TRUE(isChanged());
        EXPECT_EQ(QDir(_folder.path()).entryList(QDir::Files).size(), 1) << "nothing half written";
        EXPECT_TRUE(desktop->files().save()) << "when it is over";
    }
    static void press(Qt::Key key)
    {
        // A dialog may have had the keys before.
        window().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
        QTest::keyClick(&window(), key, Qt::ControlModifier);
    }
    static void pressSave() { press(Qt::Key_S); }
    /// A scene that refers to what is in no content folder. It is changed after it was opened.
    void openLossyScene(const char* name)
    {
        WriteBytes(file(name).toStdString(), R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x",
            "type": "scene"}, "scene": {"nodes": [{"id": "a", "label": "Kept"},
            {"id": "b", "url": "/no/such.dsf#b"}], "materials": [{"id": "m"}]}})");
        ModalAnswer missing;
        EXPECT_TRUE(desktop->files().openFile(file(name)));
        EXPECT_EQ(missing.title.toStdString(), "Missing Files");
        EXPECT_EQ(dzScene->getNumNodes(), 1);
        dzScene->getNode(0)->getXPosControl()->setValue(5.0f);
    }

    QTemporaryDir _folder;
};

TEST_F(DesktopSave, begins_a_new_scene_after_a_question)
{
    haveSceneIn("One.duf");
    {
        ModalAnswer question(Press("Cancel"));
        press(Qt::Key_N);
        EXPECT_EQ(question.text.toStdString(), "The scene has been changed. Would you like to save it?");
    }
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_EQ(desktop->files().filename(), file("One.duf"));
    ModalAnswer question(Press("Discard"));
    press(Qt::Key_N);
    EXPECT_TRUE(question.seen);
    EXPECT_EQ(dzScene->getNumNodes(), 0);
    EXPECT_FALSE(isChanged());
    EXPECT_EQ(window().windowTitle().toStdString(), "Untitled[*] \u2014 Gantrel");
}

TEST_F(DesktopSave, begins_a_new_scene_without_a_question_when_nothing_would_be_lost)
{
    ModalAnswer question;
    entry("New")->trigger();
    addFigure();
    dzScene->removeNode(dzScene->getSkeleton(0));
    EXPECT_TRUE(isChanged());
    entry("New")->trigger();
    EXPECT_FALSE(question.seen) << "what came and went was never in a file";
    EXPECT_FALSE(isChanged());
}

TEST_F(DesktopSave, does_not_take_a_file_s_name_for_a_new_scene_that_is_added_to)
{
    haveSceneIn("One.duf");
    pressSave();
    entry("New")->trigger();
    addFigure();
    EXPECT_TRUE(desktop->files().filename().isEmpty());
}

TEST_F(DesktopSave, saves_to_the_file_that_the_scene_was_saved_to_before)
{
    haveSceneIn("One.duf");
    const QByteArray before = bytesOf("One.duf");
    ModalAnswer nothing;
    pressSave();
    EXPECT_FALSE(nothing.seen) << nothing.text.toStdString();
    EXPECT_FALSE(isChanged());
    EXPECT_NE(bytesOf("One.duf"), before);
}

TEST_F(DesktopSave, saves_to_the_scene_that_was_opened)
{
    haveSceneIn("One.duf");
    pressSave();
    entry("New")->trigger();
    EXPECT_TRUE(desktop->files().openFile(file("One.duf")));
    EXPECT_FLOAT_EQ(dzScene->getSkeleton(0)->getXPosControl()->getValue(), 5.0f);
    dzScene->getSkeleton(0)->getXPosControl()->setValue(7.0f);
    ModalAnswer nothing;
    pressSave();
    EXPECT_FALSE(nothing.seen) << "nothing was left out: " << nothing.text.toStdString();
    EXPECT_TRUE(desktop->files().openFile(file("One.duf")));
    EXPECT_FLOAT_EQ(dzScene->getSkeleton(0)->getXPosControl()->getValue(), 7.0f);
}

TEST_F(DesktopSave, asks_where_to_when_the_scene_has_no_file)
{
    addFigure();
    ModalAnswer dialog(TypeFile(file("First.duf")));
    pressSave();
    EXPECT_EQ(dialog.title.toStdString(), "Save Scene As");
    EXPECT_TRUE(QFile::exists(file("First.duf")));
    EXPECT_FALSE(isChanged());
}

TEST_F(DesktopSave, never_writes_over_a_figure_that_was_opened_or_a_scene_that_was_merged)
{
    haveSceneIn("One.duf");
    pressSave();
    entry("New")->trigger();
    ASSERT_TRUE(QFile::copy(pathOf(targetFile), file("Figure.duf")));
    const QByteArray figure = bytesOf("Figure.duf"), scene = bytesOf("One.duf");
    EXPECT_TRUE(desktop->files().openFile(file("Figure.duf")));
    {
        ModalAnswer dialog(TypeFile(file("One.duf")));
        entry("Merge...")->trigger();
    }
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    ModalAnswer dialog(PressKey(Qt::Key_Escape));
    pressSave();
    EXPECT_EQ(dialog.title.toStdString(), "Save Scene As");
    EXPECT_EQ(bytesOf("Figure.duf"), figure);
    EXPECT_EQ(bytesOf("One.duf"), scene);
}

TEST_F(DesktopSave, saves_to_the_scene_s_own_file_before_the_scene_is_replaced)
{
    haveSceneIn("One.duf");
    const QByteArray before = bytesOf("One.duf");
    ModalAnswer question(Press("Save"));
    entry("New")->trigger();
    EXPECT_EQ(question.title.toStdString(), "Unsaved Scene");
    EXPECT_NE(bytesOf("One.duf"), before);
    EXPECT_EQ(dzScene->getNumNodes(), 0);
}

TEST_F(DesktopSave, says_that_there_is_nothing_to_save)
{
    for (const char* const text : {"Save Scene", "Save Scene As..."}) {
        ModalAnswer box(Press("OK"));
        entry(text)->trigger();
        EXPECT_EQ(box.text.toStdString(), "The scene is empty: there is nothing to save.") << text;
    }
}

TEST_F(DesktopSave, keeps_the_old_file_whole_when_the_disk_is_full)
{
    haveSceneIn("One.duf");
    ASSERT_GT(bytesOf("One.duf").size(), 64);
    expectKeeps("One.duf", [] { return std::make_unique<FullDisk>(64); });
}

TEST_F(DesktopSave, keeps_the_old_file_where_nothing_may_be_written)
{
    haveSceneIn("One.duf");
    expectKeeps("One.duf", [this] { return std::make_unique<ReadOnlyFolder>(_folder.path()); });
}

TEST_F(DesktopSave, stays_changed_when_a_file_stands_where_the_folder_was)
{
    ASSERT_TRUE(QDir(_folder.path()).mkdir(QStringLiteral("sub")));
    haveSceneIn("sub/One.duf");
    ASSERT_TRUE(QDir(file("sub")).removeRecursively());
    WriteBytes(file("sub").toStdString(), "no folder");
    ModalAnswer box(Press("OK"));
    EXPECT_FALSE(desktop->files().save());
    EXPECT_EQ(box.icon, QMessageBox::Warning);
    EXPECT_TRUE(isChanged());
}

TEST_F(DesktopSave, makes_a_folder_that_is_gone_anew)
{
    ASSERT_TRUE(QDir(_folder.path()).mkdir(QStringLiteral("sub")));
    haveSceneIn("sub/One.duf");
    ASSERT_TRUE(QDir(file("sub")).removeRecursively());
    EXPECT_TRUE(desktop->files().save());
    EXPECT_TRUE(QFile::exists(file("sub/One.duf")));
}

TEST_F(DesktopSave, asks_before_what_could_not_be_read_is_lost)
{
    openLossyScene("Lossy.duf");
    const QByteArray before = bytesOf("Lossy.duf");
    ModalAnswer question([](QWidget& box) {
        SavePicture(box, "save-lossy");
        Press("Cancel")(box);
    });
    pressSave();
    EXPECT_EQ(question.text,
              QStringLiteral("Not everything in \u201C%1\u201D could be read, and saving would "
                             "lose the rest:\n\n/no/such.dsf is in no content library")
                  .arg(file("Lossy.duf")));
    EXPECT_EQ(bytesOf("Lossy.duf"), before);
    EXPECT_TRUE(isChanged());
}

TEST_F(DesktopSave, saves_elsewhere_what_could_not_be_read_whole)
{
    openLossyScene("Lossy.duf");
    const QByteArray before = bytesOf("Lossy.duf");
    std::unique_ptr<ModalAnswer> dialog;
    ModalAnswer question([&](QWidget& box) {
        dialog.reset(new ModalAnswer(TypeFile(file("Other.duf"))));
        Press("Save As...")(box);
    });
    pressSave();
    EXPECT_TRUE(dialog && dialog->seen);
    EXPECT_TRUE(QFile::exists(file("Other.duf")));
    EXPECT_EQ(bytesOf("Lossy.duf"), before);
    EXPECT_EQ(desktop->files().filename(), file("Other.duf"));
}

TEST_F(DesktopSave, asks_only_once_before_it_overwrites)
{
    openLossyScene("Lossy.duf");
    {
        ModalAnswer question(Press("Overwrite"));
        pressSave();
        EXPECT_TRUE(question.seen);
    }
    EXPECT_FALSE(isChanged());
    dzScene->getNode(0)->getXPosControl()->setValue(6.0f);
    ModalAnswer nothing;
    pressSave();
    EXPECT_FALSE(nothing.seen) << nothing.text.toStdString();
    EXPECT_FALSE(isChanged());
}

TEST_F(DesktopSave, forgets_what_was_left_out_of_another_file)
{
    openLossyScene("Lossy.duf");
    {
        ModalAnswer question(Press("Discard"));
        entry("New")->trigger();
    }
    haveSceneIn("One.duf");
    ModalAnswer nothing;
    pressSave();
    EXPECT_FALSE(nothing.seen) << nothing.text.toStdString();
}

TEST_F(DesktopSave, asks_before_the_changes_of_another_program_are_lost)
{
    haveSceneIn("One.duf");
    QFile other(file("One.duf"));
    ASSERT_TRUE(other.open(QIODevice::ReadWrite));
    ASSERT_TRUE(other.setFileTime(QDateTime::currentDateTime().addSecs(60), QFile::FileModificationTime));
    other.close();
    const QByteArray before = bytesOf("One.duf");
    {
        ModalAnswer question(PressKey(Qt::Key_Escape));
        pressSave();
        EXPECT_EQ(question.text,
                  QStringLiteral("The file \u201C%1\u201D has been changed by another program. "
                                 "Saving would lose these changes.")
                      .arg(file("One.duf")));
    }
    EXPECT_EQ(bytesOf("One.duf"), before);
    ModalAnswer question(Press("Overwrite"));
    pressSave();
    EXPECT_FALSE(isChanged());
}

TEST_F(DesktopSave, completes_a_name_and_asks_about_the_file_of_that_name)
{
    addFigure();
    {
        ModalAnswer dialog(TypeFile(file("My.scene")));
        EXPECT_TRUE(desktop->files().saveAs());
    }
    EXPECT_EQ(desktop->files().filename(), file("My.scene.duf"));
    const QByteArray before = bytesOf("My.scene.duf");
    addFigure();
    std::unique_ptr<ModalAnswer> question;
    QTimer watch;
    ModalAnswer dialog(TypeFile(file("My.scene")));
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (dialog.seen && !question)
            question.reset(new ModalAnswer(Press("No")));
    });
    watch.start(1);
    EXPECT_FALSE(desktop->files().saveAs());
    ASSERT_TRUE(question && question->seen);
    EXPECT_EQ(question->text, QStringLiteral("The file \u201C%1\u201D is there already. Would you like to "
                                             "replace it?")
                                  .arg(file("My.scene.duf")));
    EXPECT_EQ(bytesOf("My.scene.duf"), before);
}

} // namespace
