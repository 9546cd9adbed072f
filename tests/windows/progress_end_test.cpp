// How the progress of fixed steps looks, and how it ends.
// SPDX-License-Identifier: MIT

#include "host/ui/progress_window.h"
#include "ks_progress.h"
#include "tests/host/host_fixture.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <optional>

namespace {

class ProgressEnd : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        progress.emplace(std::vector<std::string>{"one", "two", "three", "four"});
    }
    static QWidget& window()
    {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (qobject_cast<openhost::ProgressWindow*>(widget))
                return *widget;
        throw std::out_of_range("no progress is shown");
    }
    static std::vector<std::string> visibleTexts()
    {
        std::vector<std::string> texts;
        for (const QLabel* const label : window().findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty())
                texts.push_back(label->text().toStdString());
        return texts;
    }
    static int position() { return window().findChild<QProgressBar*>()->value(); }

    std::optional<kst::daz::SimpleProgress> progress;
};

TEST_F(ProgressEnd, goes_to_the_last_step_of_the_list)
{
    progress->done();
    EXPECT_EQ(progress->getStep(), 4u);
    progress->step_X(false);
    EXPECT_EQ(visibleTexts(), std::vector<std::string>{"four"});
}

TEST_F(ProgressEnd, moves_the_bar_by_one_step)
{
    progress->step_X(false);
    ASSERT_EQ(position(), 1);
    progress->done();
    EXPECT_EQ(position(), 2);
}

TEST_F(ProgressEnd, keeps_the_text)
{
    progress->step_X(false);
    progress->done();
    EXPECT_EQ(visibleTexts(), std::vector<std::string>{"two"});
}

TEST_F(ProgressEnd, cannot_be_brought_about_by_the_user)
{
    EXPECT_FALSE(window().findChild<QPushButton*>()->isVisible());
    EXPECT_FALSE(window().isModal());
}

TEST_F(ProgressEnd, is_not_announced_by_a_clock)
{
    progress->step_X(false);
    EXPECT_EQ(visibleTexts(), std::vector<std::string>{"two"}) << "and no time beside it";
}

} // namespace
