// The host's sliders, by mouse and key.
// SPDX-License-Identifier: MIT

#include "dzfloatslider.h"
#include "dzintslider.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <cmath>
#include <limits>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

class SliderTest : public HostTest {
protected:
    SliderTest() : slider(&window)
    {
        slider.setMinMax(-1.0f, 1.0f);
        slider.resize(300, slider.sizeHint().height());
        window.resize(320, 60);
        window.show();
        window.activateWindow();
        slider.setFocus();
        QApplication::processEvents();
    }

    QPoint at(int x) const { return QPoint(x, slider.height() / 2); }
    QPoint onText() const { return at(slider.width() - 8); }

    void drag(int from, int to, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const auto send = [&](QEvent::Type type, int x, Qt::MouseButtons buttons) {
            QMouseEvent event(type, at(x), Qt::LeftButton, buttons, modifiers);
            QApplication::sendEvent(&slider, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton);
        send(QEvent::MouseMove, to, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, to, Qt::NoButton);
    }

    QLineEdit* openEditor()
    {
        QTest::mouseDClick(&slider, Qt::LeftButton, Qt::NoModifier, onText());
        return slider.findChild<QLineEdit*>();
    }

    void type(const char* text)
    {
        QLineEdit* const editor = openEditor();
        ASSERT_NE(editor, nullptr);
        editor->clear();
        QTest::keyClicks(editor, QLatin1String(text));
        QTest::keyClick(editor, Qt::Key_Return);
    }

    QWidget window;
    DzFloatSlider slider;
};

TEST_F(SliderTest, tells_every_change_once_also_of_a_set_value)
{
    const QSignalSpy spy(&slider, SIGNAL(valueChanged(float)));
    slider.setValue(0.5f);
    slider.setValue(0.5f);
    ASSERT_EQ(spy.size(), 1);
    EXPECT_EQ(spy.at(0).at(0).toFloat(), 0.5f);
}

TEST_F(SliderTest, goes_past_its_limits_unless_clamped)
{
    slider.setValue(3.0f);
    EXPECT_EQ(slider.getValue(), 3.0f);
    slider.setClamped(true);
    EXPECT_EQ(slider.getValue(), 1.0f);
    slider.setValue(-7.0f);
    EXPECT_EQ(slider.getValue(), -1.0f);
    slider.setMinMax(0.0f, 0.25f);
    EXPECT_EQ(slider.getValue(), 0.0f);
}

TEST_F(SliderTest, follows_a_drag_and_reaches_its_limits_exactly)
{
    const QSignalSpy started(&slider, SIGNAL(editStart()));
    const QSignalSpy ended(&slider, SIGNAL(editEnd()));
    drag(100, 130);
    const float moved = slider.getValue();
    EXPECT_GT(moved, 0.0f);
    drag(100, 100 - 2000);
    EXPECT_EQ(slider.getValue(), -1.0f);
    drag(100, 100 + 2000);
    EXPECT_EQ(slider.getValue(), 1.0f);
    EXPECT_EQ(started.size(), 3);
    EXPECT_EQ(ended.size(), 3);
    slider.setValue(0.0f);
    drag(100, 130, Qt::ShiftModifier);
    EXPECT_NEAR(slider.getValue(), moved / 10.0f, 1e-5f);
}

TEST_F(SliderTest, takes_a_drag_back_on_escape)
{
    slider.setValue(0.25f);
    const QSignalSpy cancelled(&slider, SIGNAL(editCancelled()));
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, at(100));
    QMouseEvent move(QEvent::MouseMove, at(160), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&slider, &move);
    EXPECT_NE(slider.getValue(), 0.25f);
    QTest::keyClick(&slider, Qt::Key_Escape);
    EXPECT_EQ(slider.getValue(), 0.25f);
    EXPECT_EQ(cancelled.size(), 1);
}

TEST_F(SliderTest, steps_by_keys_clicks_and_wheel)
{
    slider.setSensitivity(0.05f);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_FLOAT_EQ(slider.getValue(), 0.05f);
    QTest::keyClick(&slider, Qt::Key_Down);
    EXPECT_FLOAT_EQ(slider.getValue() + 1.0f, 1.0f);
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_FLOAT_EQ(slider.getValue(), 0.5f);
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(slider.getValue(), -1.0f);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, at(200));
    EXPECT_FLOAT_EQ(slider.getValue(), -0.95f);
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(slider.getValue(), 1.0f);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.getValue(), 1.0f);
    QWheelEvent down(QPointF(at(50)), QPointF(at(50)), QPoint(), QPoint(0, -120), Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider, &down);
    EXPECT_FLOAT_EQ(slider.getValue(), 0.95f);
}

TEST_F(SliderTest, leaves_the_wheel_to_others_without_focus)
{
    slider.clearFocus();
    QWheelEvent up(QPointF(at(50)), QPointF(at(50)), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider, &up);
    EXPECT_EQ(slider.getValue(), 0.0f);
}

TEST_F(SliderTest, takes_a_typed_number_only_where_text_may_be_edited)
{
    EXPECT_EQ(openEditor(), nullptr);
    slider.setTextEditable(true);
    type("0.5");
    EXPECT_EQ(slider.getValue(), 0.5f);
    type("-0.25");
    EXPECT_EQ(slider.getValue(), -0.25f);
    type("75 %");
    EXPECT_EQ(slider.getValue(), 0.75f);
    slider.setDisplayAsPercent(true);
    type("12.5");
    EXPECT_EQ(slider.getValue(), 0.125f);
    type("33%");
    EXPECT_FLOAT_EQ(slider.getValue(), 0.33f);
}

TEST_F(SliderTest, keeps_its_value_over_garbage_and_escape)
{
    slider.setTextEditable(true);
    slider.setValue(0.123456f);
    const QSignalSpy cancelled(&slider, SIGNAL(editCancelled()));
    QLineEdit* const editor = openEditor();
    for (const char* const text : {"abc", "", "1e999", "nan", "5 m", "0,5", "1,000", "5%%", "1 2", "0x10"}) {
        editor->clear();
        QTest::keyClicks(editor, QLatin1String(text));
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_TRUE(editor->isVisible()) << text << " can be put right";
        EXPECT_TRUE(editor->accessibleDescription().endsWith(QLatin1Char('.'))) << text;
        EXPECT_EQ(QToolTip::text(), editor->accessibleDescription()) << text;
    }
    EXPECT_EQ(slider.getValue(), 0.123456f);
    editor->clear();
    QTest::keyClicks(editor, QLatin1String("0.9"));
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_EQ(slider.getValue(), 0.123456f);
    EXPECT_EQ(cancelled.size(), 1);
}

TEST_F(SliderTest, keeps_the_digits_that_it_does_not_show_when_the_text_is_not_touched)
{
    slider.setTextEditable(true);
    slider.setValue(0.123456f);
    QTest::keyClick(openEditor(), Qt::Key_Return);
    EXPECT_EQ(slider.getValue(), 0.123456f);
}

TEST_F(SliderTest, restores_its_default)
{
    slider.setDefaultValue(0.25f);
    slider.setValue(0.9f);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::AltModifier, at(100));
    EXPECT_EQ(slider.getValue(), 0.25f);
    slider.setValue(0.9f);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at(50), slider.mapToGlobal(at(50)));
    QApplication::sendEvent(&slider, &event);
    auto* const menu = slider.findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->actions().at(0)->text().toStdString(), "Restore default");
    menu->actions().at(0)->trigger();
    EXPECT_EQ(slider.getValue(), 0.25f);
    slider.setRestorable(false);
    slider.setValue(0.9f);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::AltModifier, at(100));
    EXPECT_EQ(slider.getValue(), 0.9f);
    menu->close();
}

TEST_F(SliderTest, opens_its_editor_by_a_click_on_the_text_and_by_return)
{
    slider.setTextEditable(true);
    slider.setDisplayAsPercent(true);
    slider.setValue(0.42f);
    EXPECT_EQ(slider.getText().toStdString(), "42.0%");
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, onText());
    auto* const editor = slider.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_TRUE(editor->hasFocus());
    EXPECT_EQ(editor->selectedText().toStdString(), "42.0%");
    EXPECT_LT(editor->width(), slider.width() / 2);
    QTest::keyClick(editor, Qt::Key_Escape);
    EXPECT_FALSE(editor->isVisible());
    EXPECT_TRUE(slider.hasFocus());
    slider.setFullLengthEdit(true);
    QTest::keyClick(&slider, Qt::Key_Return);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(editor->width(), slider.width());
}

TEST_F(SliderTest, takes_what_was_typed_when_the_focus_goes_elsewhere)
{
    QLineEdit other(&window);
    other.show();
    slider.setTextEditable(true);
    QLineEdit* const editor = openEditor();
    const QSignalSpy ended(&slider, SIGNAL(editEnd()));
    editor->clear();
    QTest::keyClicks(editor, QStringLiteral("0.75"));
    other.setFocus();
    EXPECT_EQ(slider.getValue(), 0.75f);
    EXPECT_FALSE(editor->isVisible());
    EXPECT_TRUE(other.hasFocus());
    EXPECT_EQ(ended.size(), 1);
}

TEST_F(SliderTest, keeps_return_and_escape_of_its_editor_from_the_dialog_around)
{
    QDialog dialog;
    auto* const rows = new QVBoxLayout(&dialog);
    auto* const inside = new DzFloatSlider(&dialog);
    inside->setTextEditable(true);
    rows->addWidget(inside);
    rows->addWidget(new QPushButton(QStringLiteral("Accept"), &dialog));
    dialog.show();
    dialog.activateWindow();
    inside->setFocus();
    for (const int key : {int(Qt::Key_Return), int(Qt::Key_Escape)}) {
        QTest::keyClick(inside, Qt::Key_F2);
        QTest::keyClick(inside->findChild<QLineEdit*>(), Qt::Key(key));
        EXPECT_TRUE(dialog.isVisible());
    }
    QTest::keyClick(inside, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(SliderTest, takes_typed_numbers_past_its_limits_only_unless_clamped)
{
    slider.setTextEditable(true);
    type("3");
    EXPECT_EQ(slider.getValue(), 3.0f);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.getValue(), 3.0f); // steps go back within, not further out
    slider.setClamped(true);
    type("3");
    EXPECT_EQ(slider.getValue(), 1.0f);
}

TEST_F(SliderTest, shows_dashes_for_several_values_until_one_is_set)
{
    slider.setValue(0.5f);
    const QSignalSpy spy(&slider, SIGNAL(valueChanged(float)));
    slider.setIndeterminate(true);
    EXPECT_EQ(slider.getText().toStdString(), "--");
    EXPECT_EQ(spy.size(), 0);
    slider.setValue(0.5f); // it is the value of one now
    EXPECT_EQ(spy.size(), 1);
    EXPECT_FALSE(slider.isIndeterminate());
    EXPECT_EQ(slider.getText().toStdString(), "0.50");
}

TEST_F(SliderTest, shows_as_many_decimals_as_its_range_asks_for)
{
    const struct {
        float max, value;
        bool asPercent;
        const char* text;
    } rows[] = {{1.0f, 0.125f, true, "12.5%"},     {1.0f, -1e-5f, true, "0.0%"},
                {0.01f, 0.0034f, false, "0.0034"}, {90.0f, -12.5f, false, "-12.50"},
                {2000.0f, 0.04f, false, "0.0"},    {10.0f, 3.0f, true, "300.0%"}};
    for (const auto& row : rows) {
        slider.setMinMax(0.0f, row.max);
        slider.setDisplayAsPercent(row.asPercent);
        slider.setValue(row.value);
        EXPECT_EQ(slider.getText().toStdString(), row.text) << row.max;
    }
    DzIntSlider whole(&window);
    whole.setValue(42);
    EXPECT_EQ(whole.getText().toStdString(), "42");
}

TEST_F(SliderTest, steps_by_a_hundredth_of_its_range_or_by_one)
{
    EXPECT_FLOAT_EQ(slider.getSensitivity(), 0.02f);
    slider.setSensitivity(0.25f);
    EXPECT_EQ(slider.getSensitivity(), 0.25f);
    slider.setSensitivity(-1.0f);
    EXPECT_FLOAT_EQ(slider.getSensitivity(), 0.02f);
    EXPECT_EQ(DzIntSlider(&window).getSensitivity(), 1);
}

TEST_F(SliderTest, fills_its_bar_from_the_default)
{
    slider.setDefaultValue(0.0f);
    slider.setValue(0.5f);
    slider.clearFocus();
    const QColor filling = slider.palette().color(QPalette::Highlight);
    const QImage picture = slider.grab().toImage();
    const auto filled = [&](double part) {
        // The bar is what the text leaves.
        const int width = picture.width() -
                          QFontMetrics(slider.font()).horizontalAdvance(QStringLiteral("-1.00")) -
                          4 * slider.fontMetrics().height() / 3;
        return picture.pixelColor(int(part * width), picture.height() / 2) == filling;
    };
    EXPECT_FALSE(filled(0.25));
    EXPECT_TRUE(filled(0.6));
    EXPECT_FALSE(filled(0.95));
}

TEST_F(SliderTest, tells_assistive_technology_its_name_and_value)
{
    slider.setLabel(QStringLiteral("Height"));
    slider.setDisplayAsPercent(true);
    slider.setValue(0.5f);
    QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(face->role(), QAccessible::Slider);
    EXPECT_EQ(face->text(QAccessible::Name).toStdString(), "Height");
    EXPECT_EQ(face->text(QAccessible::Value).toStdString(), "50.0%");
    ASSERT_NE(face->valueInterface(), nullptr);
    EXPECT_EQ(face->valueInterface()->maximumValue().toDouble(), 1.0);
    face->valueInterface()->setCurrentValue(0.25);
    EXPECT_EQ(slider.getValue(), 0.25f);
    slider.setAccessibleName(QStringLiteral("Proportion height"));
    EXPECT_EQ(face->text(QAccessible::Name).toStdString(), "Proportion height");
}

TEST_F(SliderTest, takes_its_second_text_as_label_and_object_name)
{
    const DzIntSlider named(&window, QStringLiteral("Level"));
    EXPECT_EQ(named.getLabel().toStdString(), "Level");
    EXPECT_EQ(named.objectName().toStdString(), "Level");
    EXPECT_TRUE(named.isLabelVisible());
}

TEST_F(SliderTest, has_the_whole_range_of_its_type)
{
    DzIntSlider whole(&window);
    const int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
    whole.setMinMax(most, least);
    whole.setTextEditable(true);
    whole.setFocus();
    QTest::keyClick(&whole, Qt::Key_End);
    EXPECT_EQ(whole.getValue(), most);
    QTest::keyClick(&whole, Qt::Key_F2);
    auto* const editor = whole.findChild<QLineEdit*>();
    editor->setText(QStringLiteral("-99999999999"));
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(whole.getValue(), least);
    EXPECT_FALSE(whole.grab().isNull());
}

TEST_F(SliderTest, refuses_what_is_no_number_and_paints_an_empty_range)
{
    slider.setValue(0.5f);
    slider.setValue(std::numeric_limits<float>::quiet_NaN());
    slider.setMinMax(std::numeric_limits<float>::infinity(), 1.0f);
    EXPECT_EQ(slider.getValue(), 0.5f);
    EXPECT_EQ(slider.getMin(), -1.0f);
    slider.setMinMax(0.5f, 0.5f);
    drag(100, 200);
    EXPECT_EQ(slider.getValue(), 0.5f);
    EXPECT_FALSE(slider.grab().isNull());
}

TEST_F(SliderTest, that_is_disabled_does_nothing)
{
    slider.setTextEditable(true);
    slider.setEnabled(false);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, at(200));
    EXPECT_EQ(openEditor(), nullptr);
    EXPECT_EQ(slider.getValue(), 0.0f);
}

TEST_F(SliderTest, of_whole_numbers_steps_by_one_and_rounds)
{
    DzIntSlider whole(&window);
    whole.setMinMax(0, 5);
    whole.setTextEditable(true);
    whole.resize(300, whole.sizeHint().height());
    whole.show();
    const QSignalSpy spy(&whole, SIGNAL(valueChanged(int)));
    whole.setFocus();
    QTest::keyClick(&whole, Qt::Key_Right);
    EXPECT_EQ(whole.getValue(), 1);
    QTest::keyClick(&whole, Qt::Key_F2);
    auto* const editor = whole.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->text().toStdString(), "1");
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("2.7"));
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(whole.getValue(), 3);
    EXPECT_EQ(spy.size(), 2);
}

TEST_F(SliderTest, has_room_for_its_label_and_its_widest_text_at_any_font)
{
    slider.setLabel(QStringLiteral("Proportion height"));
    slider.setDisplayAsPercent(true);
    const QSize small = slider.minimumSizeHint();
    QFont font = slider.font();
    font.setPointSize(18);
    slider.setFont(font);
    const QFontMetrics metrics(font);
    EXPECT_GT(slider.minimumSizeHint().width(), small.width());
    EXPECT_GE(slider.minimumSizeHint().width(),
              metrics.horizontalAdvance(QStringLiteral("Proportion height")) +
                  metrics.horizontalAdvance(QStringLiteral("-100.0%")));
    EXPECT_GE(slider.minimumSizeHint().height(), metrics.height());
}

/// One slider in each of its states.
class SliderPage : public QWidget {
public:
    explicit SliderPage(int pointSize) : _rows(new QVBoxLayout(this))
    {
        QFont larger = font();
        larger.setPointSize(pointSize);
        setFont(larger);
        add("Plain", 0.4f)->setDisplayAsPercent(false);
        add("Percent", -0.6f);
        add("Full", 1.0f);
        add("Disabled", 0.4f)->setEnabled(false);
        add("Mixed", 0.4f)->setIndeterminate(true);
        edited = add("Typing", 0.4f);
        focused = add("", 0.2f);
        focused->setTextEditable(false);
        resize(400, sizeHint().height());
    }

    DzFloatSlider* edited;
    DzFloatSlider* focused;

private:
    DzFloatSlider* add(const char* label, float value)
    {
        auto* const row = new DzFloatSlider(this, QLatin1String(label));
        row->setMinMax(-1.0f, 1.0f);
        row->setDisplayAsPercent(true);
        row->setTextEditable(true);
        row->setValue(value);
        _rows->addWidget(row);
        return row;
    }

    QVBoxLayout* _rows;
};

TEST_F(SliderTest, shows_its_states_apart_in_dark_and_light_and_at_any_font)
{
    const QPalette dark = QApplication::palette();
    const QPalette light = QApplication::style()->standardPalette();
    for (const auto& [name, palette] : {std::pair("dark", dark), std::pair("light", light)}) {
        for (const int pointSize : {9, 18}) {
            SliderPage page(pointSize);
            page.setPalette(palette);
            page.show();
            page.activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
            const std::string title = "sliders-" + std::string(name) + "-" + std::to_string(pointSize);
            QTest::mouseDClick(page.edited, Qt::LeftButton, Qt::NoModifier,
                               QPoint(page.edited->width() - 8, 8));
            ASSERT_NE(page.edited->findChild<QLineEdit*>(), nullptr);
            SavePicture(page, (title + "-typing").c_str());
            const QImage without = page.focused->grab().toImage();
            page.focused->setFocus();
            EXPECT_NE(page.focused->grab().toImage(), without);
            SavePicture(page, (title + "-focus").c_str());
            page.focused->clearFocus();
            const QImage enabled = page.focused->grab().toImage();
            page.focused->setEnabled(false);
            EXPECT_NE(page.focused->grab().toImage(), enabled);
        }
    }
}

} // namespace
