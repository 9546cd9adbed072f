// Modal windows of a host without a display.
// SPDX-License-Identifier: MIT

#include "tests/host/host_fixture.h"

#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

namespace {

class HeadlessDialogTest : public HostTest {};

TEST_F(HeadlessDialogTest, a_message_is_closed_at_once_and_told_in_the_log)
{
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Title"),
                    QStringLiteral("<p>All is <b>lost</b>.</p>"), QMessageBox::Ok);
    EXPECT_EQ(box.exec(), QMessageBox::Ok);
    EXPECT_TRUE(
        LogText().contains(QStringLiteral("WARNING: not shown without display: Title: All is lost.")));
}

TEST_F(HeadlessDialogTest, a_question_is_answered_as_if_it_was_closed)
{
    EXPECT_EQ(QMessageBox::question(nullptr, QStringLiteral("Title"), QStringLiteral("Go on?"),
                                    QMessageBox::Yes | QMessageBox::Cancel),
              QMessageBox::Cancel);
    EXPECT_EQ(QMessageBox::question(nullptr, QStringLiteral("Title"), QStringLiteral("Go on?"),
                                    QMessageBox::Yes | QMessageBox::No),
              QMessageBox::No);
    QMessageBox box(QMessageBox::Question, QStringLiteral("Title"), QStringLiteral("Which?"));
    box.addButton(QStringLiteral("First"), QMessageBox::AcceptRole);
    const QAbstractButton* const last = box.addButton(QStringLiteral("Last"), QMessageBox::AcceptRole);
    box.exec();
    EXPECT_EQ(box.clickedButton(), last);
}

TEST_F(HeadlessDialogTest, a_dialog_is_rejected)
{
    QDialog dialog;
    dialog.setWindowTitle(QStringLiteral("Options"));
    new QLabel(QStringLiteral("<b>What</b> now?"), &dialog);
    EXPECT_EQ(dialog.exec(), QDialog::Rejected);
    EXPECT_TRUE(LogText().contains(QStringLiteral("WARNING: not shown without display: Options: What now?")));
}

TEST_F(HeadlessDialogTest, a_dialog_ends_as_by_escape_so_that_it_can_tidy_up)
{
    class Tidy : public QDialog {
    public:
        void reject() override
        {
            hasTidied = true;
            QDialog::reject();
        }
        bool hasTidied = false;
    };
    Tidy dialog;
    dialog.exec();
    EXPECT_TRUE(dialog.hasTidied);
}

TEST_F(HeadlessDialogTest, a_dialog_that_refuses_to_close_ends_too)
{
    class Stubborn : public QDialog {
    public:
        void reject() override {}
        void done(int) override {}
    };
    EXPECT_EQ(Stubborn().exec(), QDialog::Rejected);
    QMessageBox box(QMessageBox::Question, QStringLiteral("Title"), QStringLiteral("Wait?"));
    box.addButton(QStringLiteral("Later"), QMessageBox::AcceptRole)->setEnabled(false);
    box.exec();
    EXPECT_FALSE(box.isVisible());
}

TEST_F(HeadlessDialogTest, a_dialog_that_asks_on_closing_is_answered_as_well)
{
    class Asking : public QDialog {
    public:
        void reject() override
        {
            answer = QMessageBox::question(this, QStringLiteral("Title"), QStringLiteral("Really?"));
            QDialog::reject();
        }
        QMessageBox::StandardButton answer = QMessageBox::NoButton;
    };
    Asking dialog;
    EXPECT_EQ(dialog.exec(), QDialog::Rejected);
    EXPECT_EQ(dialog.answer, QMessageBox::No);
}

TEST_F(HeadlessDialogTest, a_box_without_any_button_ends_too)
{
    QMessageBox box;
    box.setStandardButtons(QMessageBox::NoButton);
    box.exec();
    EXPECT_FALSE(box.isVisible());
}

TEST_F(HeadlessDialogTest, windows_that_wait_for_nobody_stay)
{
    QDialog modeless;
    modeless.show();
    QProgressDialog progress;
    progress.setModal(true);
    progress.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(modeless.isVisible());
    EXPECT_FALSE(progress.wasCanceled());
}

} // namespace
