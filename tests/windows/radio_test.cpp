// Radio groups, check boxes and checkable group boxes with callbacks.
// SPDX-License-Identifier: MIT

#include "ks_gui_check_radio.h"

#include "ks_exception.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>
#include <QtTest/QTest>

namespace {

using kst::str::ToStd;

enum class Resolution { Base = 0, High = 1, Highest = 2 };

class RadioGroup : public HostTest {
protected:
    RadioGroup()
    {
        for (QRadioButton* const button : {&highest, &base, &high})
            rows.addWidget(button);
    }
    void init(Resolution initial, std::string_view help = {})
    {
        group.init(
            {{Resolution::Highest, &highest}, {Resolution::Base, &base}, {Resolution::High, &high}}, initial,
            [this](const Resolution& value) { changes.push_back(value); }, help);
        window.show();
    }
    static void click(QRadioButton& button)
    {
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button.height() / 2));
    }

    QWidget window;
    QVBoxLayout rows{&window};
    QRadioButton highest{QStringLiteral("Highest")}, base{QStringLiteral("Base")},
        high{QStringLiteral("High")};
    kst::RadioGroup<Resolution> group;
    std::vector<Resolution> changes;
};

TEST_F(RadioGroup, checks_the_initial_button_without_calling_back)
{
    init(Resolution::High);
    EXPECT_TRUE(high.isChecked());
    EXPECT_EQ(group.getValue(), Resolution::High);
    EXPECT_TRUE(changes.empty());
}

TEST_F(RadioGroup, calls_back_once_for_each_change_in_either_direction)
{
    init(Resolution::Base);
    click(highest);
    EXPECT_EQ(group.getValue(), Resolution::Highest);
    click(base);
    EXPECT_EQ(changes, (std::vector<Resolution>{Resolution::Highest, Resolution::Base}));
}

TEST_F(RadioGroup, does_not_call_back_when_the_checked_button_is_clicked_again)
{
    init(Resolution::High);
    click(high);
    EXPECT_TRUE(changes.empty());
}

TEST_F(RadioGroup, takes_the_lowest_enumerator_when_several_buttons_are_checked)
{
    for (QRadioButton* const button : {&highest, &base, &high})
        button->setAutoExclusive(false);
    init(Resolution::High);
    highest.setChecked(true);
    EXPECT_TRUE(changes.empty()); // high is lower and is the value already
    base.setChecked(true);
    EXPECT_EQ(changes, std::vector<Resolution>{Resolution::Base});
}

TEST_F(RadioGroup, keeps_its_value_when_no_button_is_checked)
{
    for (QRadioButton* const button : {&highest, &base, &high})
        button->setAutoExclusive(false);
    init(Resolution::High);
    high.setChecked(false);
    EXPECT_EQ(group.getValue(), Resolution::High);
    EXPECT_TRUE(changes.empty());
}

TEST_F(RadioGroup, works_without_a_callback)
{
    kst::RadioGroup<Resolution> silent;
    silent.init({{Resolution::Base, &base}, {Resolution::High, &high}}, Resolution::Base, {});
    window.show();
    click(high);
    EXPECT_EQ(silent.getValue(), Resolution::High);
}

TEST_F(RadioGroup, gives_every_button_the_help)
{
    init(Resolution::Base, "%% is the ``subd'' level.");
    EXPECT_EQ(ToStd(high.toolTip()),
              "<b>\xE2\x80\x9CHigh\xE2\x80\x9D</b> is the \xE2\x80\x9Csubd\xE2\x80\x9D level.");
    EXPECT_EQ(ToStd(base.toolTip()), "<b>\xE2\x80\x9C"
                                     "Base\xE2\x80\x9D</b> is the \xE2\x80\x9Csubd\xE2\x80\x9D level.");
}

TEST_F(RadioGroup, shows_what_its_callback_throws)
{
    kst::RadioGroup<Resolution> throwing;
    throwing.init({{Resolution::Base, &base}, {Resolution::High, &high}}, Resolution::Base,
                  [](const Resolution&) { throw kst::Exception("invalid enum value"); });
    window.show();
    ModalAnswer box(Press("OK"));
    click(high);
    EXPECT_EQ(ToStd(box.text),
              "<p><b>Unhandled exception in radio button handler.</b></p>\n<p>Invalid enum value.</p>");
}

class CheckBox : public HostTest {
protected:
    QCheckBox box{QStringLiteral("Vera Head")};
    kst::CheckBox handler;
    std::vector<bool> states;
};

TEST_F(CheckBox, is_set_to_its_initial_state_without_calling_back)
{
    handler.connect(
        box, true, [this](bool checked) { states.push_back(checked); }, "Check the box.");
    EXPECT_TRUE(box.isChecked());
    EXPECT_TRUE(states.empty());
    EXPECT_EQ(ToStd(box.toolTip()), "Check the box.");
}

TEST_F(CheckBox, calls_back_with_each_new_state)
{
    handler.connect(box, false, [this](bool checked) { states.push_back(checked); });
    box.show();
    QTest::keyClick(&box, Qt::Key_Space);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(states, (std::vector<bool>{true, false}));
}

TEST_F(CheckBox, shows_what_its_callback_throws)
{
    handler.connect(box, false, [](bool) { throw kst::Exception("missing morph name"); });
    box.show();
    ModalAnswer answer(Press("OK"));
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(ToStd(answer.text),
              "<p><b>Unhandled exception in check box handler.</b></p>\n<p>Missing morph name.</p>");
}

class CheckableGroupBox : public HostTest {
protected:
    CheckableGroupBox() { box.setCheckable(true); }
    QGroupBox box{QStringLiteral("Resolution")};
    kst::CheckableGroupBox handler;
    std::vector<bool> states;
};

TEST_F(CheckBox, is_known_to_the_toolkit_by_the_name_of_its_base)
{
    const QObject& object = handler;
    EXPECT_STREQ(object.metaObject()->className(), "KsCheckOrRadioBase");
    EXPECT_TRUE((std::is_base_of<::KsCheckOrRadioBase, kst::RadioGroupBase>::value));
}

TEST_F(CheckableGroupBox, calls_back_with_each_new_state)
{
    handler.connect(box, [this](bool checked) { states.push_back(checked); });
    box.show();
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Space);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(states, (std::vector<bool>{false, true}));
}

TEST_F(CheckableGroupBox, shows_what_its_callback_throws)
{
    handler.connect(box, [](bool) { throw kst::Exception("missing morph name"); });
    ModalAnswer answer(Press("OK"));
    box.setChecked(false);
    EXPECT_EQ(ToStd(answer.text),
              "<p><b>Unhandled exception in group box handler.</b></p>\n<p>Missing morph name.</p>");
}

} // namespace
