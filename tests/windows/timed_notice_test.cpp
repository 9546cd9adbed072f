// The notice that goes away by itself.
// SPDX-License-Identifier: MIT

#include "ks_dlg_timed-notice.h"

#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QtTest/QTest>

namespace {

const int patienceMilliseconds = 20000; // far beyond what a loaded machine needs

class TimedNoticeBox : public HostTest {};

TEST_F(TimedNoticeBox, shows_its_text_at_once_without_buttons_and_without_waiting)
{
    QWidget parent;
    auto* const box = new kst::TimedNoticeBox(&parent, "Conversion complete", 60000);
    EXPECT_TRUE(box->isVisible());
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(kst::str::ToStd(box->windowTitle()), "Kestrom's Gantrel");
    EXPECT_EQ(kst::str::ToStd(box->text()), "<h2>Conversion complete</h2>");
    EXPECT_EQ(box->textFormat(), Qt::RichText);
    EXPECT_TRUE(box->buttons().isEmpty());
    EXPECT_TRUE(box->testAttribute(Qt::WA_DeleteOnClose));
    SavePicture(*box, "timed-notice");
}

TEST_F(TimedNoticeBox, has_room_for_its_text_at_a_large_font_too)
{
    const LargeFont large;
    QWidget parent;
    auto* const box = new kst::TimedNoticeBox(&parent, "Saving morph assets, please wait", 60000);
    const auto* const label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    ASSERT_TRUE(label);
    EXPECT_GE(label->width(), label->sizeHint().width());
    EXPECT_GE(label->height(), label->sizeHint().height());
    SavePicture(*box, "timed-notice-18pt");
}

TEST_F(TimedNoticeBox, disappears_after_two_seconds_and_is_deleted)
{
    QWidget parent;
    QElapsedTimer clock;
    clock.start();
    const QPointer<kst::TimedNoticeBox> box(new kst::TimedNoticeBox(&parent, "Conversion complete", 2000));
    ASSERT_TRUE(box->isVisible());
    ASSERT_TRUE(QTest::qWaitFor([&] { return box.isNull(); }, patienceMilliseconds));
    // The toolkit may fire a timer of two seconds a twentieth early.
    EXPECT_GE(clock.elapsed(), 1900);
}

TEST_F(TimedNoticeBox, may_lose_its_parent_before_its_time)
{
    QPointer<kst::TimedNoticeBox> box;
    {
        QWidget parent;
        box = new kst::TimedNoticeBox(&parent, "Conversion complete", 1);
    }
    EXPECT_TRUE(box.isNull());
    bool isLater = false;
    QTimer::singleShot(10, qApp, [&] { isLater = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isLater; }, patienceMilliseconds)); // and nobody was called
}

} // namespace
