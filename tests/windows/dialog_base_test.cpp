// The base of every dialog.
// SPDX-License-Identifier: MIT

#include "ks_dlg_base.h"

#include "ks_help.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzstyle.h>
#include <dzstyledefs.h>

namespace {

using kst::str::ToStd;

const QString settingsGroup = QStringLiteral("Test/DialogBase");
const QString settingsKey = QStringLiteral("winpos_test");

class TestDialog : public kst::DialogBase {
public:
    explicit TestDialog(const QString& key = QString(), const QString& group = settingsGroup)
        : DialogBase(nullptr)
    {
        rows = new QVBoxLayout(this);
        rows->addWidget(new QLabel(QStringLiteral("A label"), this));
        initCommon("Convert figure", group, key);
    }
    QVBoxLayout* rows;
};

class DialogBase : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        settings().removeValue(settingsKey);
    }
    static DzAppSettings& settings()
    {
        static DzAppSettings instance(settingsGroup);
        return instance;
    }
    static QString storedGeometry() { return settings().getStringValue(settingsKey); }
};

TEST_F(DialogBase, has_the_products_window_title_and_no_help_button)
{
    const TestDialog dialog;
    EXPECT_EQ(ToStd(dialog.windowTitle()),
              "Convert figure \xE2\x80\x94 Kestrom's Gantrel " + kst::daz::MakeExtendedVersionString());
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_TRUE(dialog.windowFlags() & Qt::WindowCloseButtonHint);
}

TEST_F(DialogBase, gives_up_the_close_button_instead_when_the_help_button_stays)
{
    TestDialog dialog;
    dialog.setWindowFlags(dialog.windowFlags() | Qt::WindowContextHelpButtonHint);
    dialog.setOurWindowTitle(nullptr, false);
    EXPECT_EQ(ToStd(dialog.windowTitle()), "Kestrom's Gantrel " + kst::daz::MakeExtendedVersionString());
    EXPECT_TRUE(dialog.windowFlags() & Qt::WindowContextHelpButtonHint);
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowCloseButtonHint);
}

TEST_F(DialogBase, has_margins_and_spacing_of_ten_pixels)
{
    const TestDialog dialog;
    EXPECT_EQ(dialog.layout()->contentsMargins(), QMargins(10, 10, 10, 10));
    EXPECT_EQ(dialog.layout()->spacing(), 10);
}

TEST_F(DialogBase, needs_no_layout)
{
    kst::DialogBase dialog(nullptr);
    dialog.initCommon("Empty", QString(), QString());
    dialog.dazzifyLayout();
    dialog.shrinkToFit();
    EXPECT_EQ(dialog.layout(), nullptr);
}

TEST_F(DialogBase, stores_its_geometry_when_accepted)
{
    TestDialog dialog(settingsKey);
    dialog.show();
    dialog.resize(345, 234);
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(QByteArray::fromBase64(storedGeometry().toLatin1()), dialog.saveGeometry());
    EXPECT_FALSE(storedGeometry().isEmpty());
}

TEST_F(DialogBase, stores_its_geometry_when_cancelled)
{
    TestDialog dialog(settingsKey);
    dialog.show();
    dialog.reject();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(storedGeometry().isEmpty());
}

TEST_F(DialogBase, stores_its_geometry_when_closed_by_the_windows_button)
{
    TestDialog dialog(settingsKey);
    dialog.show();
    EXPECT_TRUE(dialog.close());
    EXPECT_FALSE(storedGeometry().isEmpty());
}

TEST_F(DialogBase, stands_again_where_it_stood)
{
    {
        TestDialog dialog(settingsKey);
        dialog.show();
        dialog.setGeometry(60, 70, 345, 234);
        dialog.accept();
    }
    const TestDialog dialog(settingsKey);
    EXPECT_EQ(dialog.geometry(), QRect(60, 70, 345, 234));
}

TEST_F(DialogBase, neither_reads_nor_writes_geometry_when_its_key_is_empty)
{
    settings().setStringValue(settingsKey, QStringLiteral("untouched"));
    TestDialog dialog;
    dialog.show();
    const QRect before = dialog.geometry();
    dialog.saveWindowPos(&settings());
    dialog.restoreWindowPos(&settings());
    dialog.accept();
    EXPECT_EQ(ToStd(storedGeometry()), "untouched");
    EXPECT_FALSE(settings().containsValue(QString()));
    EXPECT_EQ(dialog.geometry(), before);
}

TEST_F(DialogBase, remembers_nothing_without_a_group)
{
    TestDialog dialog(settingsKey, QString());
    dialog.show();
    dialog.accept();
    EXPECT_FALSE(DzAppSettings(QString()).containsValue(settingsKey));
    EXPECT_TRUE(storedGeometry().isEmpty());
}

TEST_F(DialogBase, is_not_troubled_by_stored_geometry_that_is_garbage)
{
    for (const char* const garbage : {"%%%", "AAAA", "bm90IGEgZ2VvbWV0cnk="}) {
        settings().setStringValue(settingsKey, QLatin1String(garbage));
        TestDialog dialog(settingsKey);
        dialog.show();
        EXPECT_TRUE(dialog.isVisible()) << garbage;
    }
}

TEST_F(DialogBase, keeps_its_geometry_in_the_settings_that_it_is_given)
{
    DzAppSettings other(QStringLiteral("Test/Other"));
    TestDialog dialog(settingsKey);
    dialog.resize(333, 222);
    dialog.saveWindowPos(&other);
    EXPECT_TRUE(storedGeometry().isEmpty());
    dialog.resize(400, 300);
    dialog.restoreWindowPos(&other);
    EXPECT_EQ(dialog.size(), QSize(333, 222));
    other.removeValue(settingsKey);
}

TEST_F(DialogBase, makes_a_row_with_cancel_and_ok_at_the_right_edge)
{
    TestDialog dialog;
    dialog.createAndConnectStandardButtons(*dialog.rows, "Convert", "Cancel");
    dialog.show();
    const QPushButton* const ok = FindButton(dialog, "Convert");
    const QPushButton* const cancel = FindButton(dialog, "Cancel");
    ASSERT_TRUE(ok && cancel);
    EXPECT_EQ(ok->geometry().right(), dialog.rect().right() - 10);
    EXPECT_LT(cancel->geometry().right(), ok->geometry().left());
    EXPECT_TRUE(ok->isDefault());
    const QLayout* const row = dialog.rows->itemAt(dialog.rows->count() - 1)->layout();
    ASSERT_TRUE(row);
    ASSERT_EQ(row->count(), 3);
    EXPECT_NE(row->itemAt(0)->spacerItem(), nullptr);
    EXPECT_EQ(row->itemAt(1)->widget(), cancel);
    EXPECT_EQ(row->itemAt(2)->widget(), ok);
}

TEST_F(DialogBase, is_accepted_and_rejected_by_its_standard_buttons)
{
    TestDialog dialog;
    dialog.createAndConnectStandardButtons(*dialog.rows, "OK", "Cancel");
    dialog.show();
    QTest::mouseClick(FindButton(dialog, "OK"), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    dialog.show();
    QTest::mouseClick(FindButton(dialog, "Cancel"), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(DialogBase, is_accepted_by_return_and_rejected_by_escape)
{
    for (const auto& [key, result] : {std::pair(Qt::Key_Return, 1), std::pair(Qt::Key_Escape, 0)}) {
        TestDialog dialog;
        dialog.createAndConnectStandardButtons(*dialog.rows, "OK", "Cancel");
        ModalAnswer answer(PressKey(key));
        EXPECT_EQ(dialog.exec(), result);
        EXPECT_TRUE(answer.seen);
    }
}

TEST_F(DialogBase, makes_one_button_alone_when_there_is_no_text_for_cancel)
{
    TestDialog dialog;
    dialog.createAndConnectStandardButtons(*dialog.rows, "Close", "");
    dialog.show();
    EXPECT_EQ(dialog.findChildren<QPushButton*>().size(), 1);
    QTest::mouseClick(FindButton(dialog, "Close"), Qt::LeftButton);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(DialogBase, is_accepted_and_rejected_by_a_button_box)
{
    TestDialog dialog;
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    dialog.rows->addWidget(buttons);
    dialog.connectButtonBox(buttons);
    const QSignalSpy accepted(&dialog, &QDialog::accepted), rejected(&dialog, &QDialog::rejected);
    dialog.show();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    dialog.show();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    EXPECT_EQ(rejected.count(), 1);
}

TEST_F(DialogBase, shows_the_critical_box_over_itself_with_a_log_line)
{
    TestDialog dialog;
    dialog.show();
    ModalAnswer box(Press("OK"));
    dialog.criticalBox("Failed to save morph support assets", "missing morph name");
    EXPECT_EQ(box.parent, &dialog);
    EXPECT_EQ(ToStd(box.text),
              "<p><b>Failed to save morph support assets.</b></p>\n<p>Missing morph name.</p>");
    EXPECT_TRUE(
        LogText().contains(QStringLiteral("Failed to save morph support assets: missing morph name")));
}

TEST_F(DialogBase, shrinks_to_what_its_layout_likes)
{
    TestDialog dialog;
    dialog.show();
    dialog.resize(900, 700);
    dialog.shrinkToFit();
    EXPECT_EQ(dialog.size(), dialog.layout()->sizeHint());
}

TEST_F(DialogBase, takes_the_hosts_margins_when_asked)
{
    const DzStyle* const style = dzApp->getStyle();
    ASSERT_NE(style, nullptr);
    const int margin = style->pixelMetric(DZ_PM_GeneralMargin);
    TestDialog dialog;
    dialog.rows->setContentsMargins(1, 2, 3, 4);
    dialog.dazzifyLayout();
    EXPECT_EQ(dialog.rows->contentsMargins(), QMargins(margin, margin, margin, margin));
    EXPECT_EQ(dialog.rows->spacing(), margin);
}

} // namespace
