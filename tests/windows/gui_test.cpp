// Small helpers around widgets: connections, visibility, a question, the wait cursor.
// SPDX-License-Identifier: MIT

#include "ks_gui.h"

#include "ks_exception.h"
#include "ks_string.h"
#include "ks_wait-cursor.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <dzmainwindow.h>

namespace {

using namespace kst;
using str::ToStd;

/// Receives in place of a dialog: its slot counts.
class Gui : public HostTest {
protected:
    QAction receiver{nullptr};
    QSignalSpy spy{&receiver, &QAction::triggered};
    const char* const slot = SLOT(trigger());
};

TEST_F(Gui, connects_a_buttons_click)
{
    QPushButton button;
    gui::ConnectButtonClicked(button, &receiver, slot);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(Gui, connects_each_state_of_a_check_box)
{
    QCheckBox box;
    gui::ConnectCheckBoxStateChanged(box, &receiver, slot);
    box.setCheckState(Qt::PartiallyChecked);
    box.setCheckState(Qt::Checked); // no toggle, but another state
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(Gui, connects_each_change_of_a_line_edit)
{
    QLineEdit edit;
    gui::ConnectLineEditTextChanged(edit, &receiver, slot);
    QTest::keyClicks(&edit, QStringLiteral("abc"));
    EXPECT_EQ(spy.count(), 3);
}

TEST_F(Gui, connects_the_end_of_editing_and_the_return_key)
{
    QLineEdit edit;
    gui::ConnectLineEditEditingFinished(edit, &receiver, slot);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(spy.count(), 1);
    gui::ConnectLineEditReturnPressed(edit, &receiver, slot);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(spy.count(), 3); // both
}

TEST_F(Gui, connects_the_choice_in_a_combo_box)
{
    QComboBox box;
    box.addItems({QStringLiteral("a"), QStringLiteral("b")});
    gui::ConnectComboBoxIndexChanged(box, &receiver, slot);
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(Gui, connects_a_tables_selection_and_activation)
{
    QStandardItemModel model(2, 1);
    QTableView view;
    view.setModel(&model);
    gui::ConnectTableModelSelectionChanged(view, &receiver, slot);
    view.selectRow(1);
    EXPECT_EQ(spy.count(), 1);
    gui::ConnectTableActivated(view, &receiver, slot);
    view.show();
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(Gui, connects_the_request_for_a_context_menu)
{
    QWidget widget;
    widget.setContextMenuPolicy(Qt::CustomContextMenu);
    gui::ConnectCustomContextMenuRequested(widget, &receiver, slot);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1));
    QApplication::sendEvent(&widget, &event);
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(Gui, connects_a_checkable_group_box)
{
    QGroupBox box;
    box.setCheckable(true);
    gui::ConnectGroupBoxToggled(box, &receiver, slot);
    box.setChecked(false);
    EXPECT_EQ(spy.count(), 1);
}

using GuiDeathTest = Gui;

TEST_F(GuiDeathTest, ends_the_process_when_a_connection_fails)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    QPushButton button;
    EXPECT_DEATH(gui::ConnectButtonClicked(button, &receiver, SLOT(noSuchSlot())),
                 "ks_gui.*QObject::connect\\(&o, pcszSignal, pReceiver, pcszSlot\\) && "
                 "\"QObject connection failed\"");
}

TEST_F(GuiDeathTest, ends_the_process_when_a_table_has_no_selection_model)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    QTableView view;
    EXPECT_DEATH(gui::ConnectTableModelSelectionChanged(view, &receiver, slot), "ks_gui.*`pObj'");
}

TEST_F(Gui, collects_push_buttons_depth_first)
{
    QWidget window;
    auto* const frame = new QWidget(&window);
    auto* const inner = new QPushButton(frame);
    auto* const outer = new QPushButton(&window);
    new QPushButton(outer); // not looked for inside a button
    std::vector<QPushButton*> buttons;
    gui::CollectPushButtons(&window, buttons);
    EXPECT_EQ(buttons, (std::vector<QPushButton*>{inner, outer}));
    gui::CollectPushButtons(inner, buttons);
    EXPECT_EQ(buttons.back(), inner);
}

TEST_F(Gui, clicks_a_button_as_a_user_would)
{
    QPushButton button;
    gui::ConnectButtonClicked(button, &receiver, slot);
    gui::PushButtonClick(button);
    EXPECT_TRUE(button.isDown());
    EXPECT_TRUE(QTest::qWaitFor([&] { return spy.count() == 1; }, 20000));
}

TEST_F(Gui, shows_and_hides_the_widgets_of_a_layout_and_of_the_layouts_in_it)
{
    QWidget window;
    QVBoxLayout rows(&window);
    auto* const row = new QHBoxLayout;
    auto* const outer = new QLabel;
    auto* const inner = new QLabel;
    auto* const outside = new QLabel(&window);
    rows.addWidget(outer);
    rows.addStretch();
    rows.addLayout(row);
    row->addWidget(inner);
    window.show();
    gui::ShowHideLayout(rows, false);
    EXPECT_FALSE(outer->isVisible());
    EXPECT_FALSE(inner->isVisible());
    EXPECT_FALSE(outside->isHidden());
    gui::ShowHideLayout(rows, true);
    EXPECT_TRUE(outer->isVisible());
    EXPECT_TRUE(inner->isVisible());
}

TEST_F(Gui, hides_a_group_box_together_with_what_it_holds)
{
    QWidget window;
    auto* const box = new QGroupBox(&window);
    auto* const label = new QLabel;
    (new QVBoxLayout(box))->addWidget(label);
    window.show();
    gui::ShowHideGroupBox(*box, false);
    EXPECT_TRUE(box->isHidden());
    EXPECT_TRUE(label->isHidden());
    gui::ShowHideGroupBox(*box, true);
    EXPECT_TRUE(label->isVisible());
    QGroupBox empty;
    gui::ShowHideGroupBox(empty, false);
    EXPECT_TRUE(empty.isHidden());
}

TEST_F(Gui, asks_whether_to_go_on)
{
    const std::pair<std::function<void(QWidget&)>, bool> answers[] = {
        {Press("Continue"), true}, {Press("Cancel"), false}, {PressKey(Qt::Key_Escape), false}};
    for (const auto& [press, expected] : answers) {
        ModalAnswer box(press);
        EXPECT_EQ(gui::AskCustomActionOrCancel(nullptr, "Next step?", "Ready for: export", "Continue"),
                  expected);
        EXPECT_EQ(ToStd(box.title), "Next step?");
        EXPECT_EQ(ToStd(box.text), "Ready for: export");
        EXPECT_EQ(box.buttons.size(), 2);
        EXPECT_TRUE(box.buttons.contains(QStringLiteral("Continue")));
        EXPECT_TRUE(box.buttons.contains(QStringLiteral("Cancel")));
        EXPECT_EQ(box.parent, static_cast<QWidget*>(dzApp->getInterface()));
    }
}

class WaitCursor : public HostTest {
protected:
    /// -1 when there is none.
    static int shape()
    {
        const QCursor* const cursor = QApplication::overrideCursor();
        return cursor ? static_cast<int>(cursor->shape()) : -1;
    }
};

TEST_F(WaitCursor, holds_for_its_scope_and_nests)
{
    {
        const kst::WaitCursor wait;
        EXPECT_EQ(shape(), Qt::WaitCursor);
        {
            const kst::WaitCursor busy(true);
            EXPECT_EQ(shape(), Qt::BusyCursor);
        }
        EXPECT_EQ(shape(), Qt::WaitCursor);
    }
    EXPECT_EQ(shape(), -1);
}

TEST_F(WaitCursor, is_restored_on_the_way_of_an_exception)
{
    try {
        const kst::WaitCursor wait;
        throw Exception("missing morph name");
    } catch (const Exception&) {
    }
    EXPECT_EQ(shape(), -1);
}

TEST_F(WaitCursor, is_pushed_and_popped_at_most_once)
{
    kst::WaitCursor wait(true);
    wait.again();
    wait.restore();
    EXPECT_EQ(shape(), -1);
    wait.restore();
    wait.again();
    EXPECT_EQ(shape(), Qt::BusyCursor);
    wait.restore();
    EXPECT_EQ(shape(), -1);
}

} // namespace
