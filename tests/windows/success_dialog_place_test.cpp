// Where success dialogs stand when several are open, and what they remember of it.
// SPDX-License-Identifier: MIT

#include "tests/windows/modal_answer.h"
#include "tests/windows/success_dialog_scene.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QtTest/QTest>

namespace {

/// Several dialogs for the same morph, and a place that was remembered before.
class SuccessDialogPlace : public SuccessDialogTest {
protected:
    void TearDown() override
    {
        for (const QPointer<GntSuccessDialog>& each : _opened)
            delete each.data();
        SuccessDialogTest::TearDown();
    }
    GntSuccessDialog& openOne()
    {
        GntSuccessDialog& opened = created.empty() ? open({"Vera"}) : openAgain();
        _opened.append(&opened);
        return opened;
    }
    /// Lets one dialog stand there and closes it.
    void remember(const QPoint& place)
    {
        GntSuccessDialog& opened = openOne();
        opened.move(place);
        ASSERT_EQ(opened.pos(), place);
        closeByButton(opened);
    }
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static void closeByButton(GntSuccessDialog& opened)
    {
        QTest::mouseClick(FindButton(opened, "Close"), Qt::LeftButton);
        settle();
    }
    static int step(const QWidget& window)
    {
        return window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    }
    static QRect screen() { return QApplication::primaryScreen()->availableGeometry(); }

    const QPoint usual{60, 40};

private:
    QList<QPointer<GntSuccessDialog>> _opened;
};

TEST_F(SuccessDialogPlace, is_a_title_bar_down_and_to_the_right_of_another_one)
{
    remember(usual);
    const GntSuccessDialog& first = openOne();
    EXPECT_EQ(first.pos(), usual);
    const GntSuccessDialog& second = openOne();
    const QPoint down(step(second), step(second));
    EXPECT_GE(down.y(), second.fontMetrics().height()) << "high enough for a title to be read";
    EXPECT_EQ(second.pos(), usual + down);
    EXPECT_EQ(openOne().pos(), usual + 2 * down);
    EXPECT_EQ(first.pos(), usual);
}

TEST_F(SuccessDialogPlace, differs_when_nothing_is_remembered_too)
{
    const QPoint first = openOne().pos();
    const GntSuccessDialog& second = openOne();
    const QPoint way = second.pos() - first; // a window manager may have put the first one a little aside
    EXPECT_TRUE(way.x() > 0 && way.y() > 0 && way.manhattanLength() >= step(second))
        << way.x() << ' ' << way.y();
}

TEST_F(SuccessDialogPlace, differs_when_another_one_stands_almost_there)
{
    remember(usual);
    openOne().move(usual + QPoint(3, -2));
    EXPECT_NE(openOne().pos(), usual);
}

TEST_F(SuccessDialogPlace, is_the_remembered_one_while_the_other_one_stands_elsewhere)
{
    remember(usual);
    GntSuccessDialog& first = openOne();
    first.move(300, 200);
    EXPECT_EQ(openOne().pos(), usual);
}

TEST_F(SuccessDialogPlace, is_free_again_once_the_other_one_is_closed)
{
    remember(usual);
    GntSuccessDialog& first = openOne();
    GntSuccessDialog& second = openOne();
    closeByButton(first);
    EXPECT_NE(second.pos(), usual);
    EXPECT_EQ(openOne().pos(), usual);
}

TEST_F(SuccessDialogPlace, is_not_taken_by_one_that_is_put_away)
{
    remember(usual);
    openOne().showMinimized();
    EXPECT_EQ(openOne().pos(), usual);
}

TEST_F(SuccessDialogPlace, stays_on_the_screen)
{
    const QSize size = openOne().frameSize();
    closeByButton(*dialog);
    const QPoint lowest(screen().right() - size.width(), screen().bottom() - size.height());
    ASSERT_TRUE(lowest.x() > 0 && lowest.y() > 0) << "the screen has room for it";
    remember(lowest);
    ASSERT_EQ(openOne().pos(), lowest);
    for (int i = 0; i < 3; ++i) {
        const GntSuccessDialog& next = openOne();
        EXPECT_TRUE(screen().contains(next.frameGeometry())) << i;
        EXPECT_NE(next.pos(), lowest) << i;
    }
}

TEST_F(SuccessDialogPlace, is_remembered_as_it_stood_however_it_is_closed)
{
    remember(usual);
    const auto waysToClose = {
        +[](GntSuccessDialog& opened) { closeByButton(opened); },
        +[](GntSuccessDialog& opened) { QTest::keyClick(&opened, Qt::Key_Escape); },
        +[](GntSuccessDialog& opened) { opened.close(); },
    };
    for (const auto close : waysToClose) {
        GntSuccessDialog& first = openOne();
        EXPECT_EQ(first.pos(), usual);
        GntSuccessDialog& second = openOne();
        const QPoint beside = second.pos();
        EXPECT_NE(beside, usual);
        close(first);
        settle();
        close(second); // the last one's place counts
        settle();
        GntSuccessDialog& third = openOne();
        EXPECT_EQ(third.pos(), beside);
        third.move(usual);
        close(third);
        settle();
    }
}

TEST_F(SuccessDialogPlace, is_remembered_as_it_is_when_the_user_moved_the_dialog)
{
    remember(usual);
    openOne();
    GntSuccessDialog& second = openOne();
    second.move(310, 220);
    closeByButton(second);
    EXPECT_EQ(openOne().pos(), QPoint(310, 220));
}

TEST_F(SuccessDialogPlace, is_remembered_with_the_size_that_the_user_gave_the_dialog)
{
    remember(usual);
    GntSuccessDialog& first = openOne();
    GntSuccessDialog& second = openOne();
    const QSize size = second.size() + QSize(40, 30);
    const QPoint beside = second.pos();
    second.resize(size);
    closeByButton(first);
    closeByButton(second); // the last one's size counts
    GntSuccessDialog& third = openOne();
    EXPECT_EQ(third.pos(), beside);
    EXPECT_EQ(third.size(), size);
}

} // namespace
