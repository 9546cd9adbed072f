// Widgets bound to settings.
// SPDX-License-Identifier: MIT

#include "ks_ctl_checkbox.h"
#include "ks_ctl_flag-set.h"
#include "ks_ctl_slider.h"
#include "ks_exception.h"
#include "ks_gui_button.h"
#include "ks_property-setting.h"
#include "ks_string.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzintslider.h>

namespace {

using namespace kst;
using str::ToStd;

void ClickBox(QCheckBox& box)
{
    box.show();
    QTest::keyClick(&box, Qt::Key_Space);
}

class CheckBoxController : public HostTest {
protected:
    CheckBoxController()
    {
        setting.addListener([this] { ++notifications; });
    }
    SettingBase<bool> setting{true};
    QCheckBox box{QStringLiteral("Auto-adjust proportional height")};
    std::vector<bool> changes;
    int notifications = 0;
    kst::CheckBoxController controller{box, setting, "If %% is on, ``all'' is well.",
                                       [this](const bool& value) { changes.push_back(value); }};
};

TEST_F(CheckBoxController, shows_the_setting_without_calling_back)
{
    EXPECT_TRUE(box.isChecked());
    EXPECT_TRUE(controller.getWidgetValue());
    EXPECT_TRUE(changes.empty());
}

TEST_F(CheckBoxController, reports_a_toggle_at_once_and_stores_it_on_acceptance)
{
    ClickBox(box);
    EXPECT_EQ(changes, std::vector<bool>{false});
    EXPECT_TRUE(setting.get());
    EXPECT_EQ(notifications, 0);
    controller.acceptValue();
    EXPECT_FALSE(setting.get());
    EXPECT_EQ(notifications, 1);
}

TEST_F(CheckBoxController, neither_stores_nor_notifies_after_two_toggles)
{
    ClickBox(box);
    ClickBox(box);
    controller.acceptValue();
    EXPECT_EQ(changes, (std::vector<bool>{false, true}));
    EXPECT_TRUE(setting.get());
    EXPECT_EQ(notifications, 0);
}

TEST_F(CheckBoxController, reports_what_the_program_sets_as_a_users_change)
{
    controller.setWidgetValue(false);
    EXPECT_EQ(changes, std::vector<bool>{false});
}

TEST_F(CheckBoxController, gives_the_box_its_help)
{
    EXPECT_EQ(ToStd(box.toolTip()), "If <b>\xE2\x80\x9C"
                                    "Auto-adjust proportional height\xE2\x80\x9D</b> is on, \xE2\x80\x9C"
                                    "all\xE2\x80\x9D is well.");
}

TEST_F(CheckBoxController, enables_and_disables_the_box)
{
    controller.setEnabled(false);
    EXPECT_FALSE(box.isEnabled());
    controller.setEnabled(true);
    EXPECT_TRUE(box.isEnabled());
}

TEST_F(CheckBoxController, works_without_callback_and_help)
{
    QCheckBox plain;
    kst::CheckBoxController silent(plain, setting, "", {});
    ClickBox(plain);
    silent.acceptValue();
    EXPECT_FALSE(setting.get());
    EXPECT_TRUE(plain.toolTip().isEmpty());
}

TEST_F(CheckBoxController, shows_what_its_callback_throws)
{
    QCheckBox throwing;
    const kst::CheckBoxController bad(throwing, setting, "",
                                      [](const bool&) { throw Exception("missing morph name"); });
    ModalAnswer answer(Press("OK"));
    ClickBox(throwing);
    EXPECT_EQ(ToStd(answer.text),
              "<p><b>Unhandled exception in check box handler.</b></p>\n<p>Missing morph name.</p>");
}

class SliderController : public HostTest {
protected:
    QWidget window;
    QHBoxLayout row{&window};
    QLabel label;
};

TEST_F(SliderController, sets_the_host_slider_up_from_the_setting)
{
    NumericSetting<float> setting(0.0f, 0.25f, -1.0f, 1.0f);
    const FloatSliderController controller(row, &label, setting, "Proportion height",
                                           SliderControllerRoot::DisplayAsPercent, {}, "Moves the ``dial''.");
    DzFloatSlider& slider = controller.getWidget();
    EXPECT_EQ(slider.getValue(), 0.25f);
    EXPECT_EQ(slider.getMin(), -1.0f);
    EXPECT_EQ(slider.getMax(), 1.0f);
    slider.setValue(7.0f);
    EXPECT_EQ(slider.getValue(), 1.0f); // it obeys the limits
    EXPECT_EQ(ToStd(label.text()), "<b>Proportion height</b>");
    EXPECT_EQ(row.itemAt(0)->widget(), &label);
    EXPECT_EQ(row.itemAt(1)->widget(), &slider);
    EXPECT_EQ(slider.parentWidget(), &window);
    EXPECT_EQ(ToStd(slider.accessibleName()), "Proportion height");
    EXPECT_EQ(ToStd(slider.toolTip()), "Moves the \xE2\x80\x9C"
                                       "dial\xE2\x80\x9D.");
}

TEST_F(SliderController, can_set_its_slider_up_anew)
{
    NumericSetting<int> setting(0, 5, 0, 10);
    IntSliderController controller(row, nullptr, setting, "Level", SliderControllerRoot::EditableText, {});
    NumericSetting<int> other(0, 40, 20, 50);
    controller.setUpSlider(other, SliderControllerRoot::DisplayAsPercent);
    const DzIntSlider& slider = controller.getWidget();
    EXPECT_EQ(slider.getMin(), 20);
    EXPECT_EQ(slider.getMax(), 50);
    EXPECT_EQ(slider.getValue(), 40);
    EXPECT_FALSE(slider.isTextEditable());
    EXPECT_TRUE(slider.isDisplayedAsPercent());
}

TEST_F(SliderController, turns_its_flags_into_the_sliders_options)
{
    typedef SliderControllerRoot Root;
    EXPECT_EQ(Root::EditableText, 2);
    EXPECT_EQ(Root::DisplayAsPercent, 4);
    EXPECT_EQ(Root::HideText, 8);
    for (const int bits : {0, 2, 4, 8, 2 | 4, 2 | 4 | 8}) {
        NumericSetting<int> setting(0, 5, 0, 10);
        const IntSliderController controller(row, nullptr, setting, "Level", Root::Flags::fromInt(bits), {});
        const DzIntSlider& slider = controller.getWidget();
        EXPECT_EQ(slider.isTextEditable(), (bits & 2) != 0) << bits;
        EXPECT_EQ(slider.isDisplayedAsPercent(), (bits & 4) != 0) << bits;
        EXPECT_EQ(slider.isTextVisible(), (bits & 8) == 0) << bits;
        EXPECT_TRUE(slider.isClamped()) << bits;
    }
}

TEST_F(SliderController, reports_a_change_at_once_and_stores_it_on_acceptance)
{
    NumericSetting<int> setting(0, 2, 0, 10);
    int notifications = 0;
    setting.addListener([&] { ++notifications; });
    std::vector<int> changes;
    IntSliderController controller(row, nullptr, setting, "Level", {},
                                   [&](const int& value) { changes.push_back(value); });
    EXPECT_EQ(row.count(), 1);
    window.show();
    QTest::keyClick(&controller.getWidget(), Qt::Key_End);
    EXPECT_EQ(changes, std::vector<int>{10});
    EXPECT_EQ(setting.get(), 2);
    controller.acceptValue();
    EXPECT_EQ(setting.get(), 10);
    EXPECT_EQ(notifications, 1);
    controller.setWidgetValue(3);
    controller.setWidgetValue(10);
    controller.acceptValue();
    EXPECT_EQ(notifications, 1);
    controller.setEnabled(false);
    EXPECT_FALSE(controller.getWidget().isEnabled());
}

TEST_F(SliderController, shows_what_its_callback_throws)
{
    NumericSetting<float> setting(0.0f, 0.0f, 0.0f, 1.0f);
    FloatSliderController controller(row, nullptr, setting, "Level", {},
                                     [](const float&) { throw Exception("missing morph name"); });
    ModalAnswer answer(Press("OK"));
    controller.setWidgetValue(1.0f);
    EXPECT_EQ(ToStd(answer.text),
              "<p><b>Unhandled exception in slider handler.</b></p>\n<p>Missing morph name.</p>");
}

/// A dial from -1 to 1 in a row with its three buttons.
class DialRow : public SliderController {
protected:
    DialRow()
    {
        property.setMinMax(-1.0f, 1.0f);
        property.setDefaultValue(0.0f);
        property.setValue(0.5f);
        setting = std::make_shared<FloatPropertySetting>(property);
        controller = std::make_shared<FloatSliderController>(
            row, &label, *setting, "Base feminine",
            SliderControllerRoot::Flags(SliderControllerRoot::EditableText) |
                SliderControllerRoot::DisplayAsPercent,
            [this](const float& value) { changes.push_back(value); });
        buttons.addLeftDefaultRightToolButtons(row, "Base feminine", setting, controller);
        window.show();
    }
    QToolButton& button(const char* text)
    {
        for (QToolButton* const found : window.findChildren<QToolButton*>())
            if (found->text() == QLatin1String(text))
                return *found;
        throw Exception("missing button {}", text);
    }

    DzFloatProperty property{QStringLiteral("feminine"), true, true};
    std::shared_ptr<FloatPropertySetting> setting;
    std::shared_ptr<FloatSliderController> controller;
    std::vector<float> changes;
    ToolButtons buttons;
};

TEST_F(DialRow, has_its_three_buttons_from_left_to_right_behind_the_slider)
{
    ASSERT_EQ(row.count(), 5);
    EXPECT_EQ(row.itemAt(2)->widget(), &button("Min"));
    EXPECT_EQ(row.itemAt(3)->widget(), &button("Default"));
    EXPECT_EQ(row.itemAt(4)->widget(), &button("Max"));
}

TEST_F(DialRow, names_the_dial_and_the_values_in_percent_in_the_tool_tips)
{
    const std::string dial = "\xE2\x80\x9C"
                             "Base feminine\xE2\x80\x9D";
    EXPECT_EQ(ToStd(button("Min").toolTip()),
              "<b>Min:</b> Sets the " + dial + " dial to the minimum value (-100.0%).");
    EXPECT_EQ(ToStd(button("Default").toolTip()),
              "<b>Default:</b> Sets the " + dial + " dial to the default value (0.0%).");
    EXPECT_EQ(ToStd(button("Max").toolTip()),
              "<b>Max:</b> Sets the " + dial + " dial to the maximum value (100.0%).");
}

TEST_F(DialRow, names_any_dial_as_it_is_called)
{
    for (const std::string name : {"%PLUGINNAME%", "A%%B", "a ``b''", "%{c}%", "{} 100%"}) {
        QWidget other;
        QHBoxLayout otherRow(&other);
        buttons.addLeftDefaultRightToolButtons(otherRow, name, setting, controller);
        const auto tip = [&otherRow](int index) {
            return ToStd(otherRow.itemAt(index)->widget()->toolTip());
        };
        EXPECT_EQ(tip(0), "<b>Min:</b> Sets the " + str::Quote(std::string_view(name)) +
                              " dial to the minimum value (-100.0%).");
        EXPECT_EQ(tip(1), "<b>Default:</b> Sets the " + str::Quote(std::string_view(name)) +
                              " dial to the default value (0.0%).");
        EXPECT_EQ(tip(2), "<b>Max:</b> Sets the " + str::Quote(std::string_view(name)) +
                              " dial to the maximum value (100.0%).");
    }
}

TEST_F(DialRow, moves_the_slider_at_a_click_and_the_setting_on_acceptance)
{
    QTest::mouseClick(&button("Max"), Qt::LeftButton);
    QTest::mouseClick(&button("Min"), Qt::LeftButton);
    QTest::mouseClick(&button("Default"), Qt::LeftButton);
    EXPECT_EQ(changes, (std::vector<float>{1.0f, -1.0f, 0.0f}));
    EXPECT_EQ(setting->get(), 0.5f);
    controller->acceptValue();
    EXPECT_EQ(setting->get(), 0.0f);
}

/// The font is large when the row is made.
class LargeDialRow : private LargeFont, public DialRow {};

TEST_F(DialRow, has_buttons_as_large_as_its_text)
{
    EXPECT_EQ(button("Min").iconSize().height(), button("Min").fontMetrics().height());
    SavePicture(window, "dial-row");
}

TEST_F(LargeDialRow, has_larger_buttons)
{
    EXPECT_EQ(button("Min").iconSize().height(), button("Min").fontMetrics().height());
    SavePicture(window, "dial-row-18pt");
}

enum class Job { Full = 1, Head = 2, Body = 4 };

class FlagSetController : public HostTest {
protected:
    FlagSetController()
    {
        setting.addListener([this] { ++notifications; });
        controller.init({{Job::Full, &full, "%%: all."}, {Job::Head, &head, ""}, {Job::Body, &body, ""}},
                        [this](bool checked) { changes.push_back(checked); });
    }
    static FlagSet<Job> headAndBody() { return FlagSet<Job>(Job::Head) | Job::Body; }

    SettingBase<FlagSet<Job>> setting{headAndBody()};
    QCheckBox full{QStringLiteral("Full")}, head{QStringLiteral("Head")}, body{QStringLiteral("Body")};
    kst::FlagSetController<Job> controller{setting};
    std::vector<bool> changes;
    int notifications = 0;
};

TEST_F(FlagSetController, shows_the_settings_flags_without_calling_back)
{
    EXPECT_FALSE(full.isChecked());
    EXPECT_TRUE(head.isChecked());
    EXPECT_TRUE(body.isChecked());
    EXPECT_TRUE(changes.empty());
    EXPECT_EQ(ToStd(full.toolTip()), "<b>\xE2\x80\x9C"
                                     "Full\xE2\x80\x9D</b>: all.");
}

TEST_F(FlagSetController, reports_each_toggle_and_stores_the_flags_on_acceptance)
{
    ClickBox(full);
    ClickBox(head);
    EXPECT_EQ(changes, (std::vector<bool>{true, false}));
    EXPECT_EQ(setting.get().toInt(), 6);
    controller.acceptValue();
    EXPECT_EQ(setting.get().toInt(), 5);
    EXPECT_EQ(notifications, 1);
}

TEST_F(FlagSetController, neither_stores_nor_notifies_when_the_flags_are_the_same_again)
{
    ClickBox(body);
    ClickBox(body);
    controller.acceptValue();
    EXPECT_EQ(notifications, 0);
}

TEST_F(FlagSetController, shows_the_default_and_leaves_the_setting)
{
    setting.set(Job::Full);
    kst::FlagSetController<Job> other(setting);
    other.init({{Job::Full, &full, ""}, {Job::Head, &head, ""}, {Job::Body, &body, ""}}, {});
    EXPECT_TRUE(full.isChecked());
    other.restoreDefault();
    EXPECT_FALSE(full.isChecked());
    EXPECT_TRUE(head.isChecked());
    EXPECT_EQ(setting.get().toInt(), 1);
    EXPECT_EQ(notifications, 0);
}

TEST_F(FlagSetController, checks_a_box_of_several_bits_when_one_of_them_is_set)
{
    QCheckBox any;
    kst::FlagSetController<Job> other(setting);
    other.addMapping(5, &any, "");
    other.init({}, {});
    EXPECT_TRUE(any.isChecked()); // body alone
    other.acceptValue();
    EXPECT_EQ(setting.get().toInt(), 5);
}

TEST_F(FlagSetController, shows_what_its_callback_throws)
{
    kst::FlagSetController<Job> other(setting);
    QCheckBox box;
    other.init({{Job::Full, &box, ""}}, [](bool) { throw Exception("missing morph name"); });
    ModalAnswer answer(Press("OK"));
    ClickBox(box);
    EXPECT_EQ(ToStd(answer.text),
              "<p><b>Unhandled exception in check box handler.</b></p>\n<p>Missing morph name.</p>");
}

} // namespace
