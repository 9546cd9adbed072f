// A save from the success dialog that the host ends as cancelled.
// SPDX-License-Identifier: MIT

#include "tests/stand_ins/noting_saver.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/success_dialog_scene.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest/QTest>

namespace {

class SaveFromDialog : public SuccessDialogTest {
protected:
    void SetUp() override
    {
        SuccessDialogTest::SetUp();
        noting::ForgetSaves();
        open({"Vera"});
        vendor().setText(QStringLiteral("Ada"));
        clickBox(0);
    }
    /// Whether a box opens at a click on the button.
    bool isToldAfter(DzError result) const
    {
        noting::saveResult = result;
        noting::orders.clear();
        const ModalAnswer box(Press("OK"));
        QTest::mouseClick(&saveButton(), Qt::LeftButton);
        EXPECT_EQ(noting::orders.size(), 1u);
        return box.seen;
    }
};

TEST_F(SaveFromDialog, is_followed_by_no_box_when_it_was_cancelled)
{
    EXPECT_FALSE(isToldAfter(100));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(canSave());
}

TEST_F(SaveFromDialog, is_followed_by_a_box_when_it_was_done_or_failed)
{
    EXPECT_TRUE(isToldAfter(DZ_NO_ERROR));
    EXPECT_TRUE(isToldAfter(DZ_OPERATION_FAILED_ERROR));
}

} // namespace
