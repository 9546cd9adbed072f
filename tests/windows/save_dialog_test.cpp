// Saving scenes and poses with windows that ask.
// SPDX-License-Identifier: MIT

#include "dzassetiomgr.h"
#include "dzcontentmgr.h"
#include "dzfileiosettings.h"
#include "ks_exception.h"
#include "ks_filtered-save.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>

namespace {

class SaveDialogTest : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        ASSERT_NE(openMini(), nullptr);
    }
    QString place(const char* name) const { return QString::fromStdString((_library / name).string()); }
};

QCheckBox& Box(const QWidget& window, const char* key)
{
    auto* const box = window.findChild<QCheckBox*>(QLatin1String(key));
    EXPECT_NE(box, nullptr) << key;
    return *box;
}

TEST_F(SaveDialogTest, the_pose_options_show_the_frame_and_the_compression)
{
    ModalAnswer answer([](QWidget& window) {
        EXPECT_TRUE(Box(window, "SaveCurFrame").isChecked());
        EXPECT_TRUE(Box(window, "CompressOutput").isChecked());
        SavePicture(window, "save-pose-options");
        static_cast<QDialog&>(window).accept();
    });
    EXPECT_TRUE(kst::FilteredSave::SavePosePreset_X(place("Pose").toStdString(), false, true));
    EXPECT_TRUE(answer.seen);
    EXPECT_EQ(answer.title, QStringLiteral("Pose Preset Save Options"));
    EXPECT_TRUE(std::filesystem::exists(_library / "Pose.duf"));
}

TEST_F(SaveDialogTest, refused_options_end_the_save)
{
    const LargeFont large;
    ModalAnswer answer([](QWidget& window) {
        SavePicture(window, "save-scene-options-large");
        static_cast<QDialog&>(window).reject();
    });
    EXPECT_THROW(kst::FilteredSave::SaveSceneSubset_X(place("Part").toStdString(), false, true),
                 kst::CanceledException);
    EXPECT_TRUE(answer.seen);
    EXPECT_FALSE(std::filesystem::exists(_library / "Part.duf"));
}

TEST_F(SaveDialogTest, without_the_wish_for_options_nothing_asks)
{
    ModalAnswer answer;
    EXPECT_TRUE(kst::FilteredSave::SavePosePreset_X(place("Pose.duf").toStdString(), false, false));
    EXPECT_TRUE(kst::FilteredSave::SaveScene_X(place("Scene.duf").toStdString(), false));
    EXPECT_FALSE(answer.seen);
}

TEST_F(SaveDialogTest, a_name_is_asked_for_and_gets_its_extension)
{
    const std::unique_ptr<ModalAnswer> answer(new ModalAnswer([this](QWidget& window) {
        auto& dialog = static_cast<QFileDialog&>(window);
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.directory().absolutePath(), QString::fromStdString(_library.string()))
            << "there is no folder for scenes yet";
        const auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(name->text(), QString());
        SavePicture(window, "save-scene-file");
        dialog.selectFile(place("Named"));
        static_cast<QDialog&>(window).accept();
    }));
    EXPECT_EQ(dzScene->saveScene(QString()), 0);
    EXPECT_EQ(answer->title, QStringLiteral("Save Scene"));
    EXPECT_TRUE(std::filesystem::exists(_library / "Named.duf"));
}

TEST_F(SaveDialogTest, no_name_is_a_cancelled_save)
{
    ModalAnswer answer([](QWidget& window) { static_cast<QDialog&>(window).reject(); });
    EXPECT_EQ(dzScene->saveScene(QString()), DZ_USER_CANCELLED_OPERATION);
    EXPECT_TRUE(answer.seen);
}

} // namespace
