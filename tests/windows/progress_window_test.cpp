// The window of long work, and steps that a person confirms.
// SPDX-License-Identifier: MIT

#include "host/ui/progress_window.h"

#include "dzmainwindow.h"
#include "dzprogress.h"
#include "ks_exception.h"
#include "ks_progress.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <stdexcept>

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

namespace {

class ProgressWindowTest : public HostTest {
protected:
    static openhost::ProgressWindow* window()
    {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const found = qobject_cast<openhost::ProgressWindow*>(widget))
                return found;
        return nullptr;
    }
    static QPushButton& button() { return *window()->findChild<QPushButton*>(); }

    /// Text and value of every row, from top to bottom.
    static std::vector<std::string> rows()
    {
        std::vector<std::string> lines;
        const QList<QProgressBar*> bars = window()->findChildren<QProgressBar*>();
        const QList<QLabel*> labels = window()->findChildren<QLabel*>();
        for (QProgressBar* const bar : bars)
            for (QLabel* const label : labels)
                if (label->isVisible() && label->y() < bar->y() && bar->y() - label->y() < 2 * bar->height())
                    lines.push_back(
                        (label->text() + QStringLiteral(" %1/%2").arg(bar->value()).arg(bar->maximum()))
                            .toStdString());
        return lines;
    }
};

TEST_F(ProgressWindowTest, shows_every_progress_and_goes_with_the_last)
{
    {
        DzProgress outer(QStringLiteral("Converting"), 3);
        ASSERT_NE(window(), nullptr);
        EXPECT_TRUE(window()->isVisible());
        EXPECT_EQ(window()->parentWidget(), dzApp->getInterface());
        outer.step();
        EXPECT_EQ(rows(), std::vector<std::string>{"Converting 1/3"});
        {
            DzProgress inner(QStringLiteral("Loading"), 10);
            inner.update(4);
            QApplication::processEvents();
            EXPECT_EQ(rows(), (std::vector<std::string>{"Converting 1/3", "Loading 4/10"}));
            SavePicture(*window(), "progress-nested");
        }
        outer.setInfo(QStringLiteral("Saving"));
        QApplication::processEvents();
        EXPECT_EQ(rows(), std::vector<std::string>{"Saving 1/3"});
    }
    EXPECT_EQ(window(), nullptr);
}

TEST_F(ProgressWindowTest, is_as_high_as_what_it_shows)
{
    DzProgress outer(QStringLiteral("Converting"), 3);
    QApplication::processEvents();
    const int height = window()->height();
    {
        const DzProgress inner(QStringLiteral("Loading"), 10);
        QApplication::processEvents();
        EXPECT_GT(window()->height(), height);
    }
    outer.step();
    QApplication::processEvents();
    EXPECT_EQ(window()->height(), height);
    const QProgressBar& bar = *window()->findChild<QProgressBar*>();
    EXPECT_LT(window()->height() - bar.geometry().bottom(), bar.height()) << "nothing empty below";
    SavePicture(*window(), "progress-one");
}

TEST_F(ProgressWindowTest, goes_when_the_work_fails)
{
    try {
        const DzProgress progress(QStringLiteral("Failing"), 3);
        ASSERT_NE(window(), nullptr);
        throw std::runtime_error("failed");
    } catch (const std::runtime_error&) {
        EXPECT_EQ(window(), nullptr);
    }
}

TEST_F(ProgressWindowTest, cannot_be_closed_when_the_work_cannot_be_cancelled)
{
    DzProgress progress(QStringLiteral("Converting"), 3);
    EXPECT_FALSE(button().isVisible());
    EXPECT_FALSE(window()->isModal());
    window()->close();
    QTest::keyClick(window(), Qt::Key_Escape);
    EXPECT_TRUE(window()->isVisible());
    progress.step();
    EXPECT_FALSE(progress.isCancelled());
}

TEST_F(ProgressWindowTest, cancels_work_that_allows_it_once)
{
    DzProgress progress(QStringLiteral("Rendering"), 0, true, true);
    ASSERT_TRUE(button().isVisible());
    EXPECT_TRUE(window()->isModal());
    EXPECT_EQ(button().text(), QLatin1String("Cancel"));
    SavePicture(*window(), "progress-cancellable");
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_TRUE(progress.isCancelled());
    EXPECT_FALSE(button().isEnabled());
    progress.step();
    EXPECT_FALSE(button().isEnabled()) << "the work has not ended yet";
}

TEST_F(ProgressWindowTest, takes_closing_for_cancelling)
{
    DzProgress progress(QStringLiteral("Rendering"), 5, true);
    window()->close();
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(progress.isCancelled());
}

TEST_F(ProgressWindowTest, stays_until_closed_when_told_so)
{
    {
        DzProgress progress(QStringLiteral("Rendering"), 5);
        progress.setCloseOnFinish(false);
    }
    const QPointer<openhost::ProgressWindow> left = window();
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(button().text(), QLatin1String("Close"));
    {
        const DzProgress next(QStringLiteral("Next"), 2);
        EXPECT_EQ(left->findChildren<QProgressBar*>().size(), 1) << "another window's";
    }
    ASSERT_NE(left, nullptr);
    QTest::mouseClick(left->findChild<QPushButton*>(), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(left, nullptr);
}

TEST_F(ProgressWindowTest, asks_before_each_step_when_steps_are_to_be_confirmed)
{
    const kst::daz::SimpleProgress progress({"one", "two", "three"});
    {
        ModalAnswer answer(Press("Continue"));
        progress.step_X(true);
        EXPECT_EQ(answer.title, QLatin1String("Next step?"));
        EXPECT_EQ(answer.text, QLatin1String("Next step: two"));
        EXPECT_TRUE(answer.buttons.contains(QLatin1String("Continue")));
        EXPECT_TRUE(answer.buttons.contains(QLatin1String("Cancel")));
        EXPECT_NE(answer.parent, nullptr);
    }
    EXPECT_EQ(progress.getStep(), 3u);
    ModalAnswer answer(Press("Cancel"));
    try {
        progress.stepAssert_X(true, 4);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const kst::CanceledException& error) {
        EXPECT_STREQ(error.what(), "operation canceled");
    }
}

TEST_F(ProgressWindowTest, ends_when_a_step_is_refused)
{
    ModalAnswer answer(Press("Cancel"));
    EXPECT_THROW(
        {
            const kst::daz::SimpleProgress progress({"one", "two"});
            progress.step_X(true);
        },
        kst::CanceledException);
    EXPECT_EQ(window(), nullptr);
}

} // namespace
