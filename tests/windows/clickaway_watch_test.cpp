// How often the watcher of pop-ups looks, and which answer a conversion has it give.
// SPDX-License-Identifier: MIT

#include "gnt_convert-impl.h"
#include "ks_clickaway.h"
#include "openhost/window_attendant.h"
#include "tests/windows/success_dialog_scene.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>

namespace {

using kst::Clickaway;

constexpr int patience = 20000; ///< far beyond what a loaded machine needs, so that a failure does not hang

/// Finds the timer at whose ticks the watcher handles a window.
class TimerFinder : public QObject {
public:
    explicit TimerFinder(const Clickaway& watcher) : _watcher(watcher) { qApp->installEventFilter(this); }
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        auto* const timer = qobject_cast<QTimer*>(receiver);
        if (!timer || event->type() != QEvent::Timer)
            return false;
        const auto before = _watcher.handledCount(Clickaway::OpenError);
        timer->event(event);
        if (_watcher.handledCount(Clickaway::OpenError) > before) {
            ++ticks;
            interval = timer->interval();
        }
        return true; // it has ticked
    }
    int ticks = 0;
    int interval = -1;

private:
    const Clickaway& _watcher;
};

class ClickawayWatch : public HostTest {};

TEST_F(ClickawayWatch, looks_again_and_again_after_300_milliseconds)
{
    const Clickaway watcher(false);
    TimerFinder finder(watcher);
    for (const int looks : {1, 2}) {
        QDialog error;
        error.setWindowTitle(QStringLiteral("Error opening file"));
        error.show();
        ASSERT_TRUE(QTest::qWaitFor([&] { return finder.ticks >= looks; }, patience));
        EXPECT_EQ(finder.interval, 300);
    }
}

/// Asks about limits before the options of a D-Former are asked for.
class AskingFirst : public openhost::WindowAttendant {
public:
    bool chooseDFormOptions(openhost::DFormLoadOptions& options) override
    {
        QDialog question;
        question.setWindowTitle(QStringLiteral("Preset Exceeds Limits"));
        for (const int number : {1, 2}) {
            auto* const button = new QPushButton(QString::number(number), &question);
            QObject::connect(button, &QPushButton::clicked, [&question, number] { question.done(number); });
        }
        QTimer::singleShot(patience, &question, [&question] { question.done(0); });
        pressed.push_back(question.exec());
        return openhost::WindowAttendant::chooseDFormOptions(options);
    }
    std::vector<int> pressed;

private:
    openhost::AttendantOverride _answering{*this};
};

using HeadSplitLoad = SuccessDialogTest;

TEST_F(HeadSplitLoad, answers_a_question_about_limits_by_its_second_button)
{
    kst::daz::FindFloatProperty(*source, kst::daz::PropertyLocation::Any, "Wide", true)->setValue(1.0f);
    GntConverter::Impl converter(params);
    const AskingFirst questions;
    converter.loadHeadSplitDFormerOnce_X();
    EXPECT_EQ(questions.pressed, std::vector<int>{2});
}

} // namespace
