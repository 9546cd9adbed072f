// The Parameters pane, by mouse and keys.
// SPDX-License-Identifier: MIT

#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dzfloatslider.h"
#include "dzintslider.h"
#include "dzstringproperty.h"
#include "host/ui/pane_property_row.h"
#include "host/ui/pane_property_rows.h"
#include "host/ui/parameters_pane.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>
#include <QWheelEvent>

#include <limits>
#include <memory>

namespace {

using openhost::PropertyRow;
using openhost::PropertyRows;

class ParametersPaneTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        pane.reset(new DzParametersPane);
        pane->resize(420, 640);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
    }
    void TearDown() override { pane.reset(); }

    static DzNode& addNode(const char* label) { return *AddNode(label); }

    template <class Property>
    static Property& add(DzNode& node, const char* name, const char* path)
    {
        auto* const property = new Property(QLatin1String(name), true, true);
        property->setPath(QLatin1String(path));
        EXPECT_EQ(node.addProperty(property), DZ_NO_ERROR);
        return *property;
    }

    static DzFloatProperty& addDial(DzNode& node, const char* name, const char* path = "/Actor")
    {
        DzFloatProperty& dial = add<DzFloatProperty>(node, name, path);
        dial.setMinMax(0.0f, 1.0f);
        dial.setIsClamped(true);
        return dial;
    }

    QTreeWidget& tree() const { return *pane->findChild<QTreeWidget*>(); }
    PropertyRows& rows() const { return *pane->findChild<PropertyRows*>(); }
    PropertyRow* rowOf(const DzProperty& property) const { return rows().rowOf(property); }
    template <class Widget>
    Widget& editorOf(const DzProperty& property) const
    {
        return *rowOf(property)->findChild<Widget*>();
    }
    /// Lets the pane catch up with the scene.
    static void settle() { QCoreApplication::processEvents(); }
    QTreeWidgetItem* item(const char* text) const
    {
        const auto found = tree().findItems(QLatin1String(text), Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }
    QObjectList picked() const { return widget().getPropertySelections(); }
    openhost::ParametersWidget& widget() const
    {
        return *pane->findChild<openhost::ParametersWidget*>(QStringLiteral("ParametersWgt"));
    }

    std::unique_ptr<DzParametersPane> pane;
};

TEST_F(ParametersPaneTest, shows_the_groups_of_what_is_selected)
{
    DzNode& chair = addNode("Chair");
    DzNode& table = addNode("Table");
    addDial(chair, "Height", "/Shape/Legs");
    settle();
    EXPECT_EQ(tree().topLevelItemCount(), 0);
    chair.select();
    settle();
    ASSERT_EQ(tree().topLevelItemCount(), 1);
    EXPECT_EQ(tree().topLevelItem(0)->text(0), QLatin1String("Chair"));
    ASSERT_NE(item("Legs"), nullptr);
    EXPECT_EQ(item("Legs")->parent(), item("Shape"));
    EXPECT_NE(item("General"), nullptr);
    table.select();
    settle();
    EXPECT_EQ(tree().topLevelItemCount(), 2);
    EXPECT_EQ(widget().getNodeSelections(), (QObjectList{&chair, &table}));
}

TEST_F(ParametersPaneTest, shows_the_chosen_groups_properties_and_those_below)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& shape = addDial(chair, "Size", "/Shape");
    DzFloatProperty& legs = addDial(chair, "Height", "/Shape/Legs");
    chair.select();
    settle();
    tree().setCurrentItem(item("Shape"));
    EXPECT_EQ(rows().count(), 2);
    EXPECT_NE(rowOf(shape), nullptr);
    EXPECT_NE(rowOf(legs), nullptr);
    tree().setCurrentItem(item("Legs"));
    EXPECT_EQ(rows().count(), 1);
    tree().setCurrentItem(item("Chair"));
    EXPECT_GT(rows().count(), 10) << "translations and the like";
}

TEST_F(ParametersPaneTest, shows_both_ends_of_names_that_have_no_room)
{
    DzNode& chair = addNode("Chair");
    const std::string longName(60, 'n');
    DzFloatProperty& head = addDial(chair, (longName + " Head").c_str());
    DzFloatProperty& body = addDial(chair, (longName + " Body").c_str());
    chair.select();
    settle();
    tree().setCurrentItem(item("Actor"));
    ASSERT_NE(rowOf(head), nullptr);
    ASSERT_NE(rowOf(body), nullptr);
    EXPECT_NE(rowOf(head)->grab().toImage(), rowOf(body)->grab().toImage());
}

TEST_F(ParametersPaneTest, has_dials_of_one_length_whatever_their_limits_are)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& part = addDial(chair, "Part");
    part.setDisplayAsPercent(true);
    DzFloatProperty& angle = addDial(chair, "Angle");
    angle.setMinMax(-180.0f, 180.0f);
    DzFloatProperty& place = addDial(chair, "Place");
    place.setMinMax(-10000.0f, 10000.0f);
    auto& count = add<DzIntProperty>(chair, "Count", "/Actor");
    count.setMinMax(0, 4);
    chair.select();
    settle();
    tree().setCurrentItem(item("Actor"));
    const int width = editorOf<DzFloatSlider>(part).sizeHint().width(); // the bar's wanted length is the same
    EXPECT_EQ(editorOf<DzFloatSlider>(angle).sizeHint().width(), width);
    EXPECT_EQ(editorOf<DzFloatSlider>(place).sizeHint().width(), width);
    EXPECT_EQ(editorOf<DzIntSlider>(count).sizeHint().width(), width);
}

TEST_F(ParametersPaneTest, follows_a_number_both_ways)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    dial.setValue(0.25f);
    chair.select();
    pane->jumpToProperty(&dial);
    auto& slider = editorOf<DzFloatSlider>(dial);
    EXPECT_EQ(slider.getValue(), 0.25f);
    EXPECT_EQ(slider.getLabel(), QLatin1String("Height"));
    dial.setValue(0.5f);
    EXPECT_EQ(slider.getValue(), 0.5f);
    slider.setFocus();
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_GT(dial.getValue(), 0.5f);
    EXPECT_EQ(slider.getValue(), dial.getValue());
    dial.setLabel(QStringLiteral("Seat height"));
    EXPECT_EQ(slider.getLabel(), QLatin1String("Seat height"));
    dial.setMinMax(0.0f, 0.25f);
    EXPECT_EQ(slider.getMax(), 0.25f);
    EXPECT_EQ(slider.getValue(), dial.getValue());
}

TEST_F(ParametersPaneTest, follows_a_whole_number_both_ways)
{
    DzNode& chair = addNode("Chair");
    auto& count = add<DzIntProperty>(chair, "Legs", "/Actor");
    count.setMinMax(3, 8);
    count.setValue(4);
    chair.select();
    pane->jumpToProperty(&count);
    auto& slider = editorOf<DzIntSlider>(count);
    EXPECT_EQ(slider.getValue(), 4);
    EXPECT_EQ(slider.getMin(), 3);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(count.getValue(), 5);
    count.setValue(7);
    EXPECT_EQ(slider.getValue(), 7);
}

TEST_F(ParametersPaneTest, follows_a_switch_both_ways)
{
    DzNode& chair = addNode("Chair");
    auto& flag = add<DzBoolProperty>(chair, "Folded & stacked", "/Actor");
    chair.select();
    pane->jumpToProperty(&flag);
    auto& box = editorOf<QCheckBox>(flag);
    EXPECT_EQ(box.accessibleName(), QLatin1String("Folded & stacked"));
    EXPECT_FALSE(box.isChecked());
    flag.setBoolValue(true);
    EXPECT_TRUE(box.isChecked());
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_FALSE(flag.getBoolValue());
}

TEST_F(ParametersPaneTest, follows_a_choice_both_ways)
{
    DzNode& chair = addNode("Chair");
    auto& kind = add<DzEnumProperty>(chair, "Kind", "/Actor");
    for (const char* const name : {"Stool", "Bench", "Throne"})
        kind.addItem(QLatin1String(name));
    chair.select();
    pane->jumpToProperty(&kind);
    auto& box = editorOf<QComboBox>(kind);
    EXPECT_EQ(box.count(), 3);
    kind.setValue(2);
    EXPECT_EQ(box.currentText(), QLatin1String("Throne"));
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(kind.getValue(), 1);
}

TEST_F(ParametersPaneTest, follows_a_text_both_ways)
{
    DzNode& chair = addNode("Chair");
    auto& maker = add<DzStringProperty>(chair, "Maker", "/Actor");
    maker.setValue(QStringLiteral("Acme"));
    chair.select();
    pane->jumpToProperty(&maker);
    auto& line = editorOf<QLineEdit>(maker);
    EXPECT_EQ(line.text(), QLatin1String("Acme"));
    line.selectAll();
    QTest::keyClicks(&line, QStringLiteral("Other"));
    EXPECT_EQ(maker.getValue(), QLatin1String("Acme")) << "not before Return";
    QTest::keyClick(&line, Qt::Key_Return);
    EXPECT_EQ(maker.getValue(), QLatin1String("Other"));
    maker.setValue(QStringLiteral("Third"));
    EXPECT_EQ(line.text(), QLatin1String("Third"));
}

TEST_F(ParametersPaneTest, shows_the_old_value_when_a_new_one_is_refused)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    chair.select();
    pane->jumpToProperty(&dial);
    Recorder recorder;
    recorder.refused = openhost::Operation::SetValue;
    auto& slider = editorOf<DzFloatSlider>(dial);
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(dial.getValue(), 0.0f);
    EXPECT_EQ(slider.getValue(), 0.0f);
}

TEST_F(ParametersPaneTest, greys_out_what_is_locked)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    chair.select();
    pane->jumpToProperty(&dial);
    EXPECT_TRUE(editorOf<DzFloatSlider>(dial).isEnabled());
    dial.lock(true);
    EXPECT_FALSE(editorOf<DzFloatSlider>(dial).isEnabled());
    dial.lock(false);
    EXPECT_TRUE(editorOf<DzFloatSlider>(dial).isEnabled());
}

TEST_F(ParametersPaneTest, leaves_out_what_is_hidden)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    chair.select();
    settle();
    ASSERT_NE(item("Actor"), nullptr);
    dial.setHidden(true);
    settle();
    EXPECT_EQ(item("Actor"), nullptr) << "the group is empty";
    EXPECT_EQ(rowOf(dial), nullptr);
    dial.setHidden(false);
    settle();
    EXPECT_NE(item("Actor"), nullptr);
}

TEST_F(ParametersPaneTest, follows_properties_that_come_and_go)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    chair.select();
    pane->jumpToProperty(&dial);
    auto& later = addDial(chair, "Width");
    settle();
    EXPECT_EQ(rows().count(), 2);
    EXPECT_NE(rowOf(later), nullptr);
    EXPECT_EQ(picked(), QObjectList{&dial}) << "what was picked stays so";
    auto& slider = editorOf<DzFloatSlider>(dial);
    chair.removeProperty(&dial);
    QTest::keyClick(&slider, Qt::Key_End); // before the pane has caught up
    settle();
    EXPECT_EQ(rows().count(), 1);
    EXPECT_TRUE(picked().isEmpty());
}

TEST_F(ParametersPaneTest, outlives_a_node_whose_rows_are_shown)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    chair.select();
    pane->jumpToProperty(&dial);
    auto& slider = editorOf<DzFloatSlider>(dial);
    dzScene->removeNode(&chair);
    dzScene->purgeRemoved();
    QTest::keyClick(&slider, Qt::Key_End);
    settle();
    EXPECT_EQ(tree().topLevelItemCount(), 0);
    EXPECT_EQ(rows().count(), 0);
    EXPECT_TRUE(widget().getNodeSelections().isEmpty());
}

TEST_F(ParametersPaneTest, jumps_to_a_property_of_a_node_that_is_not_selected)
{
    DzNode& chair = addNode("Chair");
    DzNode& table = addNode("Table");
    for (int i = 0; i < 100; ++i)
        addDial(chair, ("Dial" + std::to_string(i)).c_str());
    DzFloatProperty& dial = addDial(chair, "Height");
    table.select();
    settle();
    pane->findChild<QLineEdit*>()->setText(QStringLiteral("translate"));
    pane->jumpToProperty(&dial);
    EXPECT_EQ(dzScene->getPrimarySelection(), &chair);
    EXPECT_FALSE(table.isSelected());
    EXPECT_EQ(tree().currentItem(), item("Actor"));
    ASSERT_NE(rowOf(dial), nullptr) << "it has been scrolled to";
    EXPECT_TRUE(rows().viewport()->rect().contains(rowOf(dial)->geometry()));
    EXPECT_EQ(picked(), QObjectList{&dial});
    EXPECT_EQ(pane->findChild<QLineEdit*>()->text(), QString());
    EXPECT_GT(rows().verticalScrollBar()->value(), 0);
}

TEST_F(ParametersPaneTest, keeps_the_selection_that_the_property_is_in)
{
    DzNode& chair = addNode("Chair");
    DzNode& table = addNode("Table");
    chair.select();
    table.select();
    pane->jumpToProperty(chair.getXPosControl());
    EXPECT_TRUE(table.isSelected());
    EXPECT_EQ(dzScene->getPrimarySelection(), &chair);
}

TEST_F(ParametersPaneTest, does_not_jump_to_what_is_not_there)
{
    pane->jumpToProperty(nullptr);
    DzFloatProperty ownerless(QStringLiteral("Ownerless"), true, true);
    pane->jumpToProperty(&ownerless);
    DzNode outside;
    pane->jumpToProperty(outside.getXPosControl());
    DzNode& chair = addNode("Chair");
    dzScene->removeNode(&chair);
    pane->jumpToProperty(chair.getXPosControl());
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 0);
    settle();
    EXPECT_TRUE(picked().isEmpty());

    DzNode& table = addNode("Table");
    DzFloatProperty& hidden = addDial(table, "Hidden");
    hidden.setHidden(true);
    pane->jumpToProperty(&hidden);
    EXPECT_TRUE(table.isSelected());
    EXPECT_TRUE(picked().isEmpty());
}

TEST_F(ParametersPaneTest, does_not_jump_when_the_selection_is_refused)
{
    DzNode& chair = addNode("Chair");
    Recorder recorder;
    recorder.refused = openhost::Operation::Select;
    pane->jumpToProperty(chair.getXPosControl());
    EXPECT_TRUE(picked().isEmpty());
}

TEST_F(ParametersPaneTest, finds_dials_by_words_of_their_labels)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& seat = addDial(chair, "Height");
    seat.setLabel(QStringLiteral("Height of the Seat"));
    addDial(chair, "Width");
    chair.select();
    settle();
    tree().setCurrentItem(item("Actor"));
    auto& search = *pane->findChild<QLineEdit*>();
    QTest::keyClicks(&search, QStringLiteral("seat hei"));
    EXPECT_EQ(rows().count(), 1);
    EXPECT_NE(rowOf(seat), nullptr);
    search.clear();
    EXPECT_EQ(rows().count(), 2);
}

TEST_F(ParametersPaneTest, makes_favorites_and_shows_them_alone)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    addDial(chair, "Width");
    chair.select();
    pane->jumpToProperty(&dial);
    QTest::mouseClick(rowOf(dial)->findChild<QToolButton*>(QStringLiteral("Favorite")), Qt::LeftButton);
    EXPECT_TRUE(dial.isFavorite());
    for (QToolButton* const button : pane->findChildren<QToolButton*>())
        if (button->text() == QLatin1String("Favorites"))
            QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(rows().count(), 1);
    EXPECT_NE(rowOf(dial), nullptr);
}

TEST_F(ParametersPaneTest, tells_which_rows_were_picked)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& one = addDial(chair, "One");
    DzFloatProperty& two = addDial(chair, "Two");
    DzFloatProperty& three = addDial(chair, "Three");
    chair.select();
    pane->jumpToProperty(&three);
    const auto click = [&](const DzProperty& property, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(rowOf(property), Qt::LeftButton, modifiers, QPoint(1, 1));
    };
    click(one, Qt::NoModifier);
    EXPECT_EQ(picked(), QObjectList{&one});
    click(three, Qt::ControlModifier);
    EXPECT_EQ(picked(), (QObjectList{&one, &three}));
    click(one, Qt::ControlModifier);
    EXPECT_EQ(picked(), QObjectList{&three});
    click(one, Qt::NoModifier);
    click(three, Qt::ShiftModifier);
    EXPECT_EQ(picked(), (QObjectList{&one, &two, &three}));
    QTest::mouseClick(&editorOf<DzFloatSlider>(two), Qt::LeftButton);
    EXPECT_EQ(picked(), QObjectList{&two}) << "a click on the slider picks too";
}

TEST_F(ParametersPaneTest, scrolls_by_the_wheel_and_leaves_values_alone)
{
    DzNode& chair = addNode("Chair");
    auto& kind = add<DzEnumProperty>(chair, "Kind", "/Actor");
    for (const char* const name : {"Stool", "Bench", "Throne"})
        kind.addItem(QLatin1String(name));
    for (int i = 0; i < 50; ++i)
        addDial(chair, ("Dial" + std::to_string(i)).c_str());
    chair.select();
    pane->jumpToProperty(&kind);
    settle();
    auto& box = editorOf<QComboBox>(kind);
    const QPoint place = box.rect().center();
    QWheelEvent down(place, box.mapToGlobal(place), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&box, &down);
    EXPECT_EQ(kind.getValue(), 0);
    EXPECT_GT(rows().verticalScrollBar()->value(), 0);
}

TEST_F(ParametersPaneTest, makes_rows_only_for_what_is_in_sight)
{
    DzNode& figure = addNode("Figure");
    DzFloatProperty* last = nullptr;
    for (int i = 0; i < 10000; ++i)
        last = &addDial(figure, ("Morph" + std::to_string(i)).c_str(), "/Actor/Morphs");
    figure.select();
    settle();
    tree().setCurrentItem(item("Morphs"));
    EXPECT_EQ(rows().count(), 10000);
    const auto rowCount = [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return rows().viewport()->findChildren<PropertyRow*>().size();
    };
    EXPECT_LT(rowCount(), 100);
    rows().verticalScrollBar()->setValue(rows().verticalScrollBar()->maximum() / 2);
    EXPECT_LT(rowCount(), 100);
    EXPECT_EQ(rowOf(*last), nullptr);
    pane->jumpToProperty(last);
    EXPECT_NE(rowOf(*last), nullptr);
    EXPECT_LT(rowCount(), 100);
    while (figure.findProperty(QStringLiteral("Morph9999")))
        figure.removeProperty(last);
    settle();
    EXPECT_EQ(rows().count(), 9999);
}

TEST_F(ParametersPaneTest, does_nothing_as_long_as_it_is_hidden)
{
    DzParametersPane hidden;
    DzNode& chair = addNode("Chair");
    chair.select();
    settle();
    EXPECT_EQ(hidden.findChild<QTreeWidget*>(), nullptr);
    const auto* const inside = hidden.findChild<openhost::ParametersWidget*>(QStringLiteral("ParametersWgt"));
    EXPECT_EQ(inside->getNodeSelections(), QObjectList{&chair}) << "but it answers";
}

TEST_F(ParametersPaneTest, puts_labels_above_dials_where_it_is_narrow)
{
    DzNode& chair = addNode("Chair");
    DzFloatProperty& dial = addDial(chair, "Height");
    auto& flag = add<DzBoolProperty>(chair, "Folded", "/Actor");
    auto& kind = add<DzEnumProperty>(chair, "Kind", "/Actor");
    pane->jumpToProperty(&dial);
    settle();
    const auto left = [&](QWidget& editor) { return editor.mapTo(pane.get(), QPoint()).x(); };
    const int labelled = left(editorOf<DzFloatSlider>(dial));
    pane->resize(25 * pane->fontMetrics().averageCharWidth(), 640);
    settle();
    auto& slider = editorOf<DzFloatSlider>(dial);
    EXPECT_LT(left(slider), labelled);
    EXPECT_GT(slider.width(), rows().viewport()->width() * 3 / 4);
    EXPECT_GE(slider.mapTo(rowOf(dial), QPoint()).y(), pane->fontMetrics().ascent());
    EXPECT_GE(rowOf(dial)->height(), slider.sizeHint().height() + pane->fontMetrics().height());
    EXPECT_LT(left(editorOf<QComboBox>(kind)), labelled);
    EXPECT_GT(left(editorOf<QCheckBox>(flag)), left(slider)) << "a box takes no room";
    EXPECT_EQ(rows().picked(), QObjectList{&dial});
    SavePicture(*pane, "parameters_pane_narrow");
    pane->resize(420, 640);
    settle();
    EXPECT_EQ(left(editorOf<DzFloatSlider>(dial)), labelled);
}

TEST_F(ParametersPaneTest, keeps_what_is_at_the_top_when_it_becomes_narrow)
{
    DzNode& chair = addNode("Chair");
    for (int i = 0; i < 200; ++i)
        addDial(chair, qPrintable(QStringLiteral("Dial%1").arg(i)));
    chair.select();
    settle();
    tree().setCurrentItem(item("Actor"));
    QScrollBar& bar = *rows().verticalScrollBar();
    const auto* const row = rows().viewport()->findChild<PropertyRow*>();
    ASSERT_NE(row, nullptr);
    bar.setValue(100 * row->height());
    const DzProperty& top = *chair.findProperty(QStringLiteral("Dial100"));
    EXPECT_EQ(rowOf(top)->y(), 0);
    pane->resize(25 * pane->fontMetrics().averageCharWidth(), 640);
    settle();
    ASSERT_NE(rowOf(top), nullptr);
    EXPECT_EQ(rowOf(top)->y(), 0);
}

TEST_F(ParametersPaneTest, looks_well_at_any_font)
{
    DzNode& chair = addNode("Chair with a very long label that does not fit");
    DzFloatProperty& dial = addDial(chair, "Height");
    dial.setDisplayAsPercent(true);
    dial.setValue(0.4f);
    addDial(chair, "A dial whose label is much longer than the pane is wide, so that it is cut off");
    addDial(chair, "Locked").lock(true);
    add<DzBoolProperty>(chair, "Folded", "/Actor").setBoolValue(true);
    auto& kind = add<DzEnumProperty>(chair, "Kind", "/Actor");
    kind.addItem(QStringLiteral("Stool"));
    add<DzIntProperty>(chair, "Legs", "/Actor").setMinMax(0, 8);
    auto& unlimited = add<DzFloatProperty>(chair, "Without limits", "/Actor");
    unlimited.setMinMax(-std::numeric_limits<float>::max(), std::numeric_limits<float>::max());
    add<DzStringProperty>(chair, "Maker", "/Actor").setValue(QStringLiteral("Acme"));
    addDial(chair, "Head size", "/Actor/Head").setIsFavorite(true);
    pane->jumpToProperty(&dial);
    settle();
    SavePicture(*pane, "parameters_pane");
    EXPECT_GE(rowOf(dial)->height(), editorOf<DzFloatSlider>(dial).sizeHint().height());
    const LargeFont large;
    pane->resize(620, 900);
    settle();
    SavePicture(*pane, "parameters_pane_large");
    EXPECT_GE(rowOf(dial)->height(), editorOf<DzFloatSlider>(dial).sizeHint().height());
    EXPECT_GE(rowOf(kind)->height(), editorOf<QComboBox>(kind).sizeHint().height());
}

} // namespace
