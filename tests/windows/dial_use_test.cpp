// What can be done to dials in the Parameters pane: units, limits, memory, whole shapes.
// SPDX-License-Identifier: MIT

#include "dzboolproperty.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzfloatslider.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "host/ui/dial_values.h"
#include "host/ui/pane_property_row.h"
#include "host/ui/pane_property_rows.h"
#include "host/ui/parameters_pane.h"
#include "host/ui/slider_picture.h"
#include "openhost/length_unit.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QToolButton>
#include <QToolTip>
#include <QTreeWidget>

#include <memory>

namespace {

using openhost::PropertyRow;
using openhost::PropertyRows;

class DialUseTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        openhost::ShowLengthsIn(openhost::LengthUnit::Centimetre);
        pane.reset(new DzParametersPane);
        pane->resize(420, 640);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
    }
    void TearDown() override
    {
        openhost::ShowLengthsIn(openhost::LengthUnit::Centimetre);
        pane.reset();
    }

    static DzNode& addNode(const char* label) { return *AddNode(label); }
    static DzFloatProperty& addDial(DzNode& node, const char* name)
    {
        auto* const dial = new DzFloatProperty(QLatin1String(name), true, true);
        dial->setPath(QStringLiteral("/Actor"));
        EXPECT_EQ(node.addProperty(dial), DZ_NO_ERROR);
        dial->setMinMax(0.0f, 1.0f);
        dial->setIsClamped(true);
        return *dial;
    }
    /// Its slider, in sight.
    DzFloatSlider& sliderOf(DzProperty& dial) const
    {
        pane->jumpToProperty(&dial);
        QCoreApplication::processEvents();
        return *rowOf(dial)->findChild<DzFloatSlider*>();
    }
    PropertyRows& rows() const { return *pane->findChild<PropertyRows*>(); }
    PropertyRow* rowOf(const DzProperty& dial) const { return rows().rowOf(dial); }
    /// With Return at the end.
    static void type(DzFloatSlider& slider, const char* text)
    {
        QTest::keyClick(&slider, Qt::Key_F2);
        auto* const editor = slider.findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        editor->clear();
        editor->insert(QString::fromUtf8(text)); // simulated keys are of ASCII alone
        QTest::keyClick(editor, Qt::Key_Return);
    }
    static std::string refusal(DzFloatSlider& slider, const char* text)
    {
        type(slider, text);
        auto* const editor = slider.findChild<QLineEdit*>();
        EXPECT_TRUE(editor->isVisible()) << text;
        const std::string told = editor->accessibleDescription().toStdString();
        QTest::keyClick(editor, Qt::Key_Escape);
        return told;
    }
    /// Of the menu that the menu key opens on the slider.
    static void choose(QWidget& widget, const char* text)
    {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, widget.rect().center(),
                                widget.mapToGlobal(widget.rect().center()));
        QCoreApplication::sendEvent(&widget, &event);
        const QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        trigger(*menu, text);
        if (menu) // a dialog closes it
            menu->close();
    }
    static void trigger(QMenu& menu, const char* text)
    {
        for (QAction* const entry : menu.actions())
            if (entry->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return entry->trigger();
        ADD_FAILURE() << text;
    }
    QMenu& dialMenu() const { return *pane->findChild<QToolButton*>(QStringLiteral("DialMenu"))->menu(); }
    std::string notice() const
    {
        for (const QLabel* const label : pane->findChildren<QLabel*>())
            if (label->isVisible())
                return label->text().toStdString();
        return {};
    }

    std::unique_ptr<DzParametersPane> pane;
};

TEST_F(DialUseTest, takes_lengths_in_any_usual_unit)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& place = *chair.getXPosControl();
    DzFloatSlider& slider = sliderOf(place);
    for (const auto& [text, cm] : {std::pair<const char*, float>{"12 cm", 12.0f},
                                   {"12", 12.0f},
                                   {"0.5m", 50.0f},
                                   {"25 MM", 2.5f},
                                   {"10 in", 25.4f},
                                   {"2\"", 5.08f},
                                   {"-1 ft", -30.48f},
                                   {"\u22123", -3.0f},
                                   {"1e1 cm", 10.0f}}) {
        type(slider, text);
        EXPECT_FLOAT_EQ(place.getValue(), cm) << text;
    }
    EXPECT_EQ(slider.getText(), QLatin1String("10.0 cm"));
    EXPECT_EQ(refusal(slider, "5 kg"), "Lengths are in cm, mm, m, in or ft, and not in \u201Ckg\u201D.");
    EXPECT_EQ(refusal(slider, "5%"), "Lengths are in cm, mm, m, in or ft, and not in \u201C%\u201D.");
    EXPECT_EQ(refusal(slider, "0,5"), "\u201C0,5\u201D has a comma: write a point, such as 0.5.");
    EXPECT_FLOAT_EQ(place.getValue(), 10.0f);
}

TEST_F(DialUseTest, shows_lengths_in_the_unit_of_the_users_choice)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& place = *chair.getYPosControl();
    place.setValue(254.0f);
    DzFloatSlider& slider = sliderOf(place);
    openhost::ShowLengthsIn(openhost::LengthUnit::Metre);
    EXPECT_EQ(slider.getText(), QLatin1String("2.540 m"));
    type(slider, "1.5");
    EXPECT_FLOAT_EQ(place.getValue(), 150.0f);
    openhost::ShowLengthsIn(openhost::LengthUnit::Inch);
    type(slider, "10");
    EXPECT_FLOAT_EQ(place.getValue(), 25.4f);
    EXPECT_EQ(slider.getText(), QLatin1String("10.0 in"));
    type(slider, "10 cm");
    EXPECT_FLOAT_EQ(place.getValue(), 10.0f);
}

TEST_F(DialUseTest, takes_angles_and_percent)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& turn = *chair.getYRotControl();
    type(sliderOf(turn), "45 deg");
    EXPECT_FLOAT_EQ(turn.getValue(), 45.0f);
    type(sliderOf(turn), "30\u00B0");
    EXPECT_FLOAT_EQ(turn.getValue(), 30.0f);
    EXPECT_EQ(refusal(sliderOf(turn), "3 cm"), "Angles are in degrees, and not in \u201Ccm\u201D.");
    DzFloatProperty& dial = addDial(chair, "Height");
    dial.setDisplayAsPercent(true);
    dial.setMinMax(0.0f, 2.0f);
    type(sliderOf(dial), "150%");
    EXPECT_FLOAT_EQ(dial.getValue(), 1.5f);
    EXPECT_EQ(refusal(sliderOf(dial), "3 cm"),
              "This dial is a plain number or has %, and not in \u201Ccm\u201D.");
}

TEST_F(DialUseTest, tells_that_a_typed_value_was_held_at_a_limit)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    type(sliderOf(dial), "7");
    EXPECT_EQ(dial.getValue(), 1.0f);
    EXPECT_EQ(QToolTip::text(), QLatin1String("The dial goes from 0.00 to 1.00."));
}

TEST_F(DialUseTest, keeps_slider_and_number_at_any_width)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "A dial whose label is longer than any pane is wide, far longer");
    dial.setDisplayAsPercent(true);
    dial.setValue(1.0f);
    DzFloatSlider* slider = &sliderOf(dial);
    const int least = pane->minimumSizeHint().width();
    EXPECT_LT(least, 30 * pane->fontMetrics().averageCharWidth());
    for (int width = least; width < 700; width += 7) {
        pane->resize(width, 640);
        QCoreApplication::processEvents();
        slider = rowOf(dial)->findChild<DzFloatSlider*>();
        openhost::SliderLook look;
        look.text = slider->getText();
        look.widestText = QStringLiteral("-10000.0");
        const openhost::SliderParts parts = openhost::LayOutSlider(*slider, look);
        const QFontMetrics metrics = slider->fontMetrics();
        EXPECT_GE(parts.bar.width(), 2 * metrics.height()) << width;
        EXPECT_GE(parts.text.width(), metrics.horizontalAdvance(look.text)) << width;
        const QRect inRow(slider->mapTo(rowOf(dial), QPoint()), slider->size());
        EXPECT_TRUE(rowOf(dial)->rect().contains(inRow)) << width;
        EXPECT_LE(rowOf(dial)->width(), rows().viewport()->width()) << width;
        if (width == least || width == least + 98 || width == least + 196)
            SavePicture(*pane, qPrintable(QStringLiteral("parameters-%1").arg(width)));
    }
}

TEST_F(DialUseTest, resets_and_memorizes_one_dial_from_its_menu)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    DzFloatSlider& slider = sliderOf(dial);
    dial.setValue(0.25f);
    choose(slider, "Memorize");
    dial.setValue(0.75f);
    choose(slider, "Restore Memorized");
    EXPECT_EQ(dial.getValue(), 0.25f);
    choose(slider, "Reset");
    EXPECT_EQ(dial.getValue(), 0.0f);
    EXPECT_EQ(notice(), "1 dial was set.");
    dial.setValue(0.5f);
    choose(slider, "Locked");
    EXPECT_TRUE(dial.isLocked());
    choose(*rowOf(dial), "Reset");
    EXPECT_EQ(dial.getValue(), 0.5f);
    EXPECT_EQ(notice(), "0 dials were set. Locked, and left as they are: Height.");
}

TEST_F(DialUseTest, shows_and_changes_limits_on_demand)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    dial.setDisplayAsPercent(true);
    std::string refused;
    const auto edit = [&](const char* from, const char* to, bool isKept) {
        ModalAnswer answer([&](QWidget& dialog) {
            const QList<QLineEdit*> lines = dialog.findChildren<QLineEdit*>();
            lines[0]->setText(QLatin1String(from));
            lines[1]->setText(QLatin1String(to));
            dialog.findChild<QCheckBox*>()->setChecked(isKept);
            SavePicture(dialog, "limits");
            QTest::keyClick(lines[1], Qt::Key_Return);
            for (const QLabel* const label : dialog.findChildren<QLabel*>())
                if (dialog.isVisible() && label->isVisible() && label->text().endsWith(QLatin1Char('.')))
                    refused = label->text().toStdString();
        });
        choose(sliderOf(dial), "Limits...");
        EXPECT_TRUE(answer.seen);
        EXPECT_EQ(answer.title, QLatin1String("Limits of Height"));
    };
    edit("-50%", "200", false);
    EXPECT_FLOAT_EQ(dial.getMin(), -0.5f);
    EXPECT_FLOAT_EQ(dial.getMax(), 2.0f);
    EXPECT_FALSE(dial.isClamped());
    edit("200%", "100%", true);
    EXPECT_EQ(refused, "The first limit has to be below the second one.");
    edit("0", "1,5", true);
    EXPECT_EQ(refused, "\u201C1,5\u201D has a comma: write a point, such as 0.5.");
    EXPECT_FLOAT_EQ(dial.getMax(), 2.0f);
    EXPECT_FALSE(dial.isClamped());
}

TEST_F(DialUseTest, does_to_all_shown_dials_what_its_menu_says)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& height = addDial(chair, "Height");
    DzFloatProperty& width = addDial(chair, "Width");
    DzFloatProperty& depth = addDial(chair, "Depth");
    sliderOf(height);
    height.setValue(0.5f);
    width.setValue(0.25f);
    trigger(dialMenu(), "Changed Dials Only");
    EXPECT_EQ(rows().count(), 2);
    EXPECT_EQ(rowOf(depth), nullptr);
    trigger(dialMenu(), "Memorize Shown Dials");
    EXPECT_EQ(notice(), "The values of 2 dials are memorized.");
    trigger(dialMenu(), "Reset Shown Dials");
    EXPECT_EQ(height.getValue() + width.getValue(), 0.0f);
    EXPECT_EQ(notice(), "2 dials were set.");
    trigger(dialMenu(), "Restore Memorized Dials");
    EXPECT_EQ(height.getValue(), 0.5f);
    EXPECT_EQ(width.getValue(), 0.25f);
    trigger(dialMenu(), "Changed Dials Only");
    EXPECT_EQ(rows().count(), 3);
}

TEST_F(DialUseTest, forgets_what_was_memorized_of_a_dial_that_is_gone)
{
    for (int i = 0; i < 100; ++i) { // one of them is made where another one was
        auto dial = std::make_unique<DzFloatProperty>(QStringLiteral("Dial"), true, true);
        EXPECT_FALSE(openhost::IsMemorized(*dial));
        openhost::MemorizeDials({dial.get()});
        EXPECT_TRUE(openhost::IsMemorized(*dial));
    }
}

TEST_F(DialUseTest, carries_a_shape_to_another_figure_and_tells_what_that_does_not_have)
{
    DzNode& one = addNode("One");
    DzNode& other = addNode("Other");
    addDial(one, "Height").setValue(0.5f);
    addDial(one, "Tail").setValue(0.75f);
    addDial(one, "Horns").setValue(1.0f);
    one.getXPosControl()->setValue(30.0f);
    DzFloatProperty& height = addDial(other, "Height");
    DzFloatProperty& width = addDial(other, "Width");
    width.setValue(1.0f);
    one.select();
    sliderOf(*one.findProperty(QStringLiteral("Height")));
    trigger(dialMenu(), "Copy Shape");
    EXPECT_EQ(notice(), "The shape of One is copied.");
    sliderOf(height);
    trigger(dialMenu(), "Paste Shape");
    EXPECT_EQ(height.getValue(), 0.5f);
    EXPECT_EQ(width.getValue(), 0.0f) << "the shape as a whole";
    EXPECT_EQ(other.getXPosControl()->getValue(), 0.0f) << "no place";
    EXPECT_EQ(notice(), "2 dials were set. Not on this figure: Horns, Tail.");
}

TEST_F(DialUseTest, takes_nothing_for_a_shape_that_is_none)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    dial.setValue(0.5f);
    sliderOf(dial);
    for (const char* const text :
         {"", "hello", "{}", "[1]", R"({"shape":1})", R"({"shape":{"dials":"x"}})", "{\"shape\""}) {
        QApplication::clipboard()->setText(QLatin1String(text));
        emit dialMenu().aboutToShow();
        trigger(dialMenu(), "Copy Shape"); // what can be chosen still works
        QApplication::clipboard()->setText(QLatin1String(text));
        emit dialMenu().aboutToShow();
        for (const QAction* const entry : dialMenu().actions())
            if (entry->text().contains(QLatin1String("Paste"))) {
                EXPECT_FALSE(entry->isEnabled()) << text;
            }
    }
    const QByteArray odd =
        R"({"shape":{"dials":[1,{"name":""},{"name":"Height","value":"x"},{"name":"Height","value":1e308}]}})";
    EXPECT_TRUE(openhost::IsShape(odd));
    openhost::PasteShape(odd, chair);
    EXPECT_EQ(dial.getValue(), 1.0f) << "held within its limits";
}

} // namespace
