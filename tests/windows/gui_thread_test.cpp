// What belongs to the GUI thread, called from another one.
// SPDX-License-Identifier: MIT

#include "ks_clickaway.h"
#include "ks_critical-box.h"
#include "ks_daz-managers.h"
#include "ks_dlg_action-box.h"
#include "ks_dlg_timed-notice.h"
#include "ks_gui.h"
#include "ks_progress.h"
#include "ks_timer.h"
#include "ks_wait-cursor.h"
#include "tests/host/host_fixture.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <dzmainwindow.h>
#include <dzviewport.h>
#include <dzviewportmgr.h>

#include <functional>
#include <thread>

#include <unistd.h>

namespace {

using namespace kst;

/// Runs the call, in the process that is to end. A box that opens nevertheless would wait for ever.
void CallElsewhere(const std::function<void()>& call)
{
    alarm(30);
    std::thread(call).join();
}

class GuiThreadDeathTest : public HostTest {
protected:
    static void expectDeath(const char* what, const std::function<void()>& call)
    {
        EXPECT_DEATH(CallElsewhere(call), "ks_gui.*AssertGuiThread.*QThread::currentThread\\(\\) == "
                                          "QCoreApplication::instance\\(\\)->thread\\(\\)")
            << what;
    }
};

TEST_F(GuiThreadDeathTest, is_the_one_of_dialogs_and_boxes)
{
    expectDeath("dialog", [] { DialogBase dialog(nullptr); });
    expectDeath("action box", [] {
        ActionBoxDialog box(nullptr, ActionBoxDialog::Question, "a", "b", nullptr, ActionBoxDialog::OK);
    });
    expectDeath("notice", [] { new TimedNoticeBox(nullptr, "a", 1000); });
    expectDeath("critical box", [] { daz::CriticalBox("a", "b", nullptr, false); });
    expectDeath("information", [] { daz::InfoBox("a", "b", nullptr); });
    expectDeath("question", [] { gui::AskCustomActionOrCancel(nullptr, "a", "b", "c"); });
}

TEST_F(GuiThreadDeathTest, is_the_one_of_the_cursor)
{
    expectDeath("push", [] { const WaitCursor cursor; });
    WaitCursor cursor;
    expectDeath("pop", [&] { cursor.restore(); });
    cursor.restore();
    expectDeath("push again", [&] { cursor.again(); });
}

TEST_F(GuiThreadDeathTest, is_the_one_of_the_main_window_and_its_viewports)
{
    expectDeath("window", [] { daz::GetMainWindow(false); });
    expectDeath("manager", [] { daz::GetViewportMgr(false); });
    expectDeath("view", [] { daz::GetActive3dViewport_X(); });
    expectDeath("activation", [] { daz::SetMainViewportActive_X(); });
    expectDeath("tool", [] { daz::FindTool(daz::Tool::Universal, false); });
    const DzViewport& viewport = daz::GetMainViewport_X();
    expectDeath("camera", [&] { daz::GetViewportCamera_X(viewport); });
}

TEST_F(GuiThreadDeathTest, is_the_one_of_watchers_and_timers)
{
    expectDeath("windows", [] { const Snapshot windows; });
    expectDeath("watcher", [] { const Clickaway watcher(false); });
    expectDeath("sleep", [] { const GuiSleep sleep(1); });
    Timer timer;
    expectDeath("single", [&] { timer.launchSingle(1, [] {}); });
    expectDeath("repeat", [&] { timer.launchRepeat(1, [] {}); });
}

TEST_F(GuiThreadDeathTest, is_the_one_of_the_progress)
{
    expectDeath("start", [] { const daz::SimpleProgress progress({"a"}); });
    const daz::SimpleProgress progress({"a", "b"});
    expectDeath("step", [&] { progress.step_X(false); });
    expectDeath("end", [&] { progress.done(); });
}

TEST_F(GuiThreadDeathTest, is_the_one_of_widgets)
{
    QPushButton button;
    expectDeath("click", [&] { gui::PushButtonClick(button); });
    QHBoxLayout layout;
    expectDeath("layout", [&] { gui::ShowHideLayout(layout, true); });
}

} // namespace
