// The product's dialogs in each of their states: everything shows whole, and what cannot be used looks so.
// SPDX-License-Identifier: MIT

#include "gnt_convert-figure.h"
#include "ks_daz-helpers.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/convert_dialog_scene.h"
#include "tests/windows/dialog_room.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"
#include "tests/windows/success_dialog_scene.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzintproperty.h>
#include <dzobject.h>

namespace {

/// Whether it would look otherwise if it could be used.
bool LooksDisabled(QWidget& widget)
{
    EXPECT_FALSE(widget.isEnabled()) << NameOf(widget);
    const QImage now = widget.grab().toImage();
    widget.setEnabled(true);
    const QImage enabled = widget.grab().toImage();
    widget.setEnabled(false);
    return now != enabled;
}

/// Of two sizes of text.
template <class Scene>
class DialogStates : public Scene, public testing::WithParamInterface<bool> {
protected:
    DialogStates() : _large(this->GetParam() ? new HalfAsLargeAgain : nullptr) {}

    static void check(QWidget& dialog, const char* state)
    {
        ExpectNothingCutOff(dialog);
        SavePicture(dialog, picture(state).c_str());
    }
    static std::string picture(const char* state)
    {
        return std::string("state-") + state + (testing::WithParamInterface<bool>::GetParam() ? "-150" : "");
    }

private:
    std::unique_ptr<HalfAsLargeAgain> _large;
};

std::string NameOfSize(const testing::TestParamInfo<bool>& parameter)
{
    return parameter.param ? "LargeTexts" : "UsualTexts";
}

using ConvertStates = DialogStates<ConvertDialogTest>;
INSTANTIATE_TEST_SUITE_P(Texts, ConvertStates, testing::Bool(), NameOfSize);

TEST_P(ConvertStates, at_the_first_run)
{
    open(7, "Vera converted to G9");
    check(*dialog, "convert-first");
}

TEST_P(ConvertStates, without_a_job)
{
    settings.setIntValue(QStringLiteral("last_job_flags"), 0);
    open();
    check(*dialog, "convert-no-job");
    EXPECT_TRUE(LooksDisabled(widget<QPushButton>("pbtnConvert")));
}

TEST_P(ConvertStates, with_and_without_a_choice_of_the_resolution)
{
    openhost::SetHdMorphSupport(true);
    kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::HighResolution, true);
    kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(3);
    const int heightWith = open().height();
    check(*dialog, "convert-hd");
    kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setName(QStringLiteral("Elsewhere"));
    const int heightWithoutLevel = open().minimumHeight();
    check(*dialog, "convert-no-level");
    openhost::SetHdMorphSupport(false);
    const int heightWithout = open().minimumHeight();
    check(*dialog, "convert-no-hd");
    EXPECT_LT(heightWithout, heightWith) << "nothing is left of the group";
    EXPECT_EQ(heightWithoutLevel, heightWithout);
}

TEST_P(ConvertStates, with_limits_of_several_lengths)
{
    dial(1).setMinMax(0.0f, 1.0f);
    dial(3).setMinMax(-10.0f, 10.0f);
    params = GntConverter::FindSourceAndTargetInSceneSelected_X();
    open();
    check(*dialog, "convert-limits");
}

TEST_P(ConvertStates, with_long_names)
{
    source->setLabel(QStringLiteral("Vera of the Long Valley with the Silver Hair and the Green Eyes"));
    target->setLabel(QStringLiteral("Nova of the Long Valley with the Silver Hair and the Green Eyes"));
    open(12345, "Vera of the Long Valley with the Silver Hair and the Green Eyes converted to G9");
    check(*dialog, "convert-long");
}

TEST_P(ConvertStates, under_the_picker)
{
    open();
    ModalAnswer picker([this](QWidget& window) {
        ExpectNothingCutOff(window);
        SavePictureOver(*dialog, window, picture("convert-picker"));
    });
    QTest::mouseClick(&toolButton("phorzHeadMorphPath"), Qt::LeftButton);
    EXPECT_TRUE(picker.seen);
}

class SuccessStates : public DialogStates<SuccessDialogTest> {
protected:
    void SetUp() override
    {
        SuccessDialogTest::SetUp();
        dzApp->getContentMgr()->removeAllContentDirectories();
        dzApp->getContentMgr()->addContentDirectory(_folder.path(), false);
        dzApp->setCurrentAuthor(DzAuthor(QStringLiteral("Ada"), QString(), QString()));
    }
    void TearDown() override
    {
        dzApp->setCurrentAuthor(DzAuthor());
        SuccessDialogTest::TearDown();
    }
    /// Presses the button; the picture shows the box that answers.
    void save(const char* state)
    {
        ModalAnswer answer([this, state](QWidget& box) {
            ExpectNothingCutOff(box);
            SavePictureOver(*dialog, box, picture(state));
            Press("OK")(box);
        });
        QTest::mouseClick(&saveButton(), Qt::LeftButton);
        EXPECT_TRUE(answer.seen);
    }
    QString library() const { return _folder.path(); }

private:
    QTemporaryDir _folder;
};
INSTANTIATE_TEST_SUITE_P(Texts, SuccessStates, testing::Bool(), NameOfSize);

TEST_P(SuccessStates, with_nothing_to_save)
{
    open({"Vera converted to G9"});
    check(*dialog, "success-one");
    for (const char* const name :
         {"plblContentLibrary", "pcboContentLibrary", "plblVendorName", "pledVendorName", "plblProductName",
          "pledProductName", "pchkCompressFiles", "pbtnSaveMorphAssets"})
        EXPECT_TRUE(LooksDisabled(*dialog->findChild<QWidget*>(QLatin1String(name)))) << name;
}

TEST_P(SuccessStates, with_three_morphs)
{
    open({"Vera converted to G9", "Vera converted to G9 Head", "Vera converted to G9 Body"});
    clickBox(1);
    dial(1).setValue(0.5f);
    check(*dialog, "success-three");
    for (const char* const name : {"plblContentLibrary", "plblVendorName", "plblProductName"})
        EXPECT_TRUE(dialog->findChild<QLabel*>(QLatin1String(name))->isEnabled()) << name;
}

TEST_P(SuccessStates, after_saving)
{
    open({"Vera converted to G9 Head", "Vera converted to G9 Body"});
    clickBox(0);
    save("success-saved");
}

TEST_P(SuccessStates, after_a_failure)
{
    QFile blocker(library() + QStringLiteral("/data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly)); // a file where a folder is needed
    open({"Vera converted to G9"});
    clickBox(0);
    save("success-failed");
}

TEST_P(SuccessStates, with_a_morph_that_is_gone_and_then_the_figure)
{
    open({"Vera Head", "Vera Body"});
    clickBox(1);
    const auto expectDisabledRow = [this](int row) {
        for (QWidget* const control : std::initializer_list<QWidget*>{
                 &box(row), &slider(row), &dialButton(row, "Min"), &dialButton(row, "Default"),
                 &dialButton(row, "Max"), &showButton(row)})
            EXPECT_TRUE(LooksDisabled(*control)) << NameOf(*control);
    };
    DzObject& object = *target->getObject();
    ASSERT_EQ(object.removeModifier(object.findModifier(QStringLiteral("Vera Head"))), DZ_NO_ERROR);
    TestHost().purge();
    check(*dialog, "success-morph-gone");
    expectDisabledRow(0);
    dzScene->removeNode(target);
    TestHost().purge();
    check(*dialog, "success-figure-gone");
    expectDisabledRow(1);
}

} // namespace
