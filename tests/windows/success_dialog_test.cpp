// What the success dialog shows, and its dials.
// SPDX-License-Identifier: MIT

#include "host/ui/parameters_pane.h"
#include "ks_string.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"
#include "tests/windows/success_dialog_scene.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzintproperty.h>
#include <dzmainwindow.h>
#include <dzmorph.h>
#include <dzobject.h>
#include <dzpane.h>
#include <dzpanemgr.h>

#include <algorithm>
#include <memory>

namespace {

using kst::str::ToStd;

/// Lets events that are due happen, deletions too.
void Settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

std::string Introduction(const char* made, const char* note = "")
{
    return std::string(
               "<p>The source figure \xE2\x80\x9CVera\xE2\x80\x9D has been converted successfully.</p>"
               "<p>The target figure <b>\xE2\x80\x9CNova\xE2\x80\x9D</b> now contains ") +
           made + ":</p><p>Time taken: 12 seconds</p>" + note;
}

TEST_F(SuccessDialogTest, tells_of_one_morph)
{
    open({"Vera"});
    EXPECT_EQ(ToStd(intro().text()), Introduction("one new morph"));
    EXPECT_TRUE(intro().wordWrap());
    EXPECT_EQ(dialog->layout()->indexOf(&intro()), 0);
}

TEST_F(SuccessDialogTest, tells_of_three_morphs_and_adds_the_note)
{
    const char* const note = "<p><b>Note:</b> one is missing</p>";
    open({"Vera", "Vera Head", "Vera Body"}, note);
    EXPECT_EQ(ToStd(intro().text()), Introduction("3 new morphs", note));
    EXPECT_EQ(intro().textFormat(), Qt::RichText);
}

TEST_F(SuccessDialogTest, stands_on_its_own_under_its_title_and_blocks_nothing)
{
    open({"Vera"});
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_TRUE(dialog->windowTitle().startsWith(
        QStringLiteral("Conversion complete \u2014 Kestrom's Gantrel V" GANTREL_VERSION)))
        << ToStd(dialog->windowTitle());
    EXPECT_EQ(dialog->layout()->contentsMargins(), QMargins(10, 10, 10, 10));
}

TEST_F(SuccessDialogTest, lists_a_row_a_morph_under_the_introduction)
{
    open({"Vera Head", "Vera Body"});
    EXPECT_EQ(ToStd(morphGroup().title()), "Newly created morphs");
    EXPECT_EQ(ToStd(box(0).text()), "Vera Head");
    EXPECT_EQ(ToStd(box(1).text()), "Vera Body");
    for (const int row : {0, 1}) {
        EXPECT_FALSE(box(row).isChecked());
        EXPECT_EQ(ToStd(box(row).toolTip()),
                  "Check the box if you would like to save this morph as a support "
                  "asset using the below settings.");
        EXPECT_EQ(ToStd(showButton(row).text()), "Show in Parameters");
        EXPECT_EQ(
            ToStd(showButton(row).toolTip()),
            "Press <b>\xE2\x80\x9CShow in Parameters\xE2\x80\x9D</b> to reveal the new morph dial in the "
            "\xE2\x80\x9CParameters\xE2\x80\x9D pane.");
    }
}

TEST_F(SuccessDialogTest, names_the_buttons_of_a_dial_after_the_propertys_label)
{
    addMorph("other").getValueChannel()->setLabel(QLatin1String("Shape of Vera"));
    DzMorph& morph = addMorph("Vera");
    morph.setLabel(QLatin1String("Shape of Vera"));
    created = {{GntFull, "Vera", morph.getValueChannel()}};
    openAgain();
    EXPECT_EQ(ToStd(box(0).text()), "Vera");
    const std::string dialName = "\xE2\x80\x9CShape of Vera\xE2\x80\x9D";
    EXPECT_EQ(ToStd(dialButton(0, "Min").toolTip()),
              "<b>Min:</b> Sets the " + dialName + " dial to the minimum value (0.0%).");
    EXPECT_EQ(ToStd(dialButton(0, "Default").toolTip()),
              "<b>Default:</b> Sets the " + dialName + " dial to the default value (0.0%).");
    EXPECT_EQ(ToStd(dialButton(0, "Max").toolTip()),
              "<b>Max:</b> Sets the " + dialName + " dial to the maximum value (100.0%).");
    EXPECT_EQ(ToStd(slider(0).accessibleName()), "Shape of Vera");
}

TEST_F(SuccessDialogTest, has_the_texts_of_the_saving)
{
    open({"Vera"});
    const auto text = [this](const char* name) {
        return ToStd(dialog->findChild<QLabel*>(QLatin1String(name))->text());
    };
    EXPECT_EQ(ToStd(dialog->findChild<QGroupBox*>(QLatin1String("groupBox"))->title()),
              "Save checked morphs as support assets");
    EXPECT_EQ(text("plblContentLibrary"), "Content library: ");
    EXPECT_EQ(text("plblVendorName"), "Vendor name: ");
    EXPECT_EQ(text("plblProductName"), "Product name: ");
    EXPECT_EQ(ToStd(compress().text()), "Compress files");
    EXPECT_EQ(ToStd(saveButton().text()), "Save morph assets");
    EXPECT_EQ(ToStd(saveButton().toolTip()),
              "<p><b>\xE2\x80\x9CSave morph assets\xE2\x80\x9D</b>: Saves the selected new morphs as support "
              "morph assets for the Genesis 9 figure.</p><p>The button is disabled if no morphs have been "
              "selected with the checkboxes above.</p>");
}

TEST_F(SuccessDialogTest, has_the_saving_below_the_morphs)
{
    open({"Vera"});
    EXPECT_EQ(ToStd(dialog->objectName()), "SuccessDialog");
    EXPECT_EQ(ToStd(dialog->layout()->objectName()), "pvertMain");
    const auto& group = *dialog->findChild<QGroupBox*>(QLatin1String("groupBox"));
    EXPECT_EQ(dialog->layout()->itemAt(2)->widget(), &group);
    const QGridLayout& grid = *dialog->findChild<QGridLayout*>(QLatin1String("gridLayout"));
    EXPECT_EQ(group.layout()->itemAt(0)->layout(), &grid);
    const char* const labels[] = {"plblContentLibrary", "plblVendorName", "plblProductName"};
    const QWidget* const fields[] = {&library(), &vendor(), &product()};
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(ToStd(grid.itemAtPosition(row, 0)->widget()->objectName()), labels[row]);
        EXPECT_EQ(grid.itemAtPosition(row, 1)->widget(), fields[row]);
    }
    const QHBoxLayout& last = *dialog->findChild<QHBoxLayout*>(QLatin1String("horizontalLayout"));
    EXPECT_EQ(group.layout()->itemAt(1)->layout(), &last);
    EXPECT_GE(last.indexOf(&compress()), 0);
    EXPECT_GT(last.indexOf(&saveButton()), last.indexOf(&compress()));
}

TEST_F(SuccessDialogTest, saves_only_while_a_box_is_checked)
{
    open({"Vera Head", "Vera Body"});
    EXPECT_FALSE(canSave());
    clickBox(0);
    EXPECT_TRUE(canSave());
    QTest::keyClick(&box(1), Qt::Key_Space);
    EXPECT_TRUE(canSave());
    clickBox(0);
    EXPECT_TRUE(canSave());
    clickBox(1);
    EXPECT_FALSE(canSave());
}

TEST_F(SuccessDialogTest, shows_names_as_they_are)
{
    open({"Tom & J\xC3\xBCrgen \xF0\x9F\x98\x80"});
    EXPECT_EQ(ToStd(box(0).text()), "Tom && J\xC3\xBCrgen \xF0\x9F\x98\x80"); // shown with one ampersand
    EXPECT_TRUE(box(0).shortcut().isEmpty());
}

TEST_F(SuccessDialogTest, starts_the_dials_where_the_morphs_are)
{
    DzMorph& morph = addMorph("Vera");
    morph.getValueChannel()->setMinMax(-0.5f, 2.0f);
    morph.getValueChannel()->setValue(0.25f);
    created = {{GntFull, "Vera", morph.getValueChannel()}};
    openAgain();
    EXPECT_FLOAT_EQ(slider(0).getValue(), 0.25f);
    EXPECT_FLOAT_EQ(slider(0).getMin(), -0.5f);
    EXPECT_FLOAT_EQ(slider(0).getMax(), 2.0f);
    EXPECT_EQ(ToStd(slider(0).getText()), "25.0%");
    EXPECT_TRUE(slider(0).isTextEditable());
    EXPECT_FLOAT_EQ(dial(0).getValue(), 0.25f);
}

TEST_F(SuccessDialogTest, moves_the_morph_with_its_dial_and_no_other)
{
    open({"Vera Head", "Vera Body"});
    slider(1).setFocus();
    QTest::keyClick(&slider(1), Qt::Key_End);
    EXPECT_FLOAT_EQ(dial(1).getValue(), 1.0f);
    EXPECT_FLOAT_EQ(dial(0).getValue(), 0.0f);
    QTest::mouseClick(&dialButton(0, "Max"), Qt::LeftButton);
    EXPECT_FLOAT_EQ(dial(0).getValue(), 1.0f);
    QTest::mouseClick(&dialButton(1, "Default"), Qt::LeftButton);
    EXPECT_FLOAT_EQ(dial(1).getValue(), 0.0f);
    QTest::mouseClick(&dialButton(0, "Min"), Qt::LeftButton);
    EXPECT_FLOAT_EQ(dial(0).getValue(), 0.0f);
}

TEST_F(SuccessDialogTest, follows_a_morph_that_is_moved_elsewhere)
{
    open({"Vera Head", "Vera Body"});
    dial(1).setValue(0.75f);
    EXPECT_FLOAT_EQ(slider(1).getValue(), 0.75f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 0.0f);
    EXPECT_FLOAT_EQ(dial(1).getValue(), 0.75f);
}

TEST_F(SuccessDialogTest, does_not_answer_a_change_with_another)
{
    open({"Vera"});
    dial(0).setIsClamped(false);
    // A dial that stops at its limit would pull the morph back, if it answered.
    dial(0).setValue(1.5f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 1.0f);
    EXPECT_FLOAT_EQ(dial(0).getValue(), 1.5f);
    // Coming from the dial, the value is the morph's own affair.
    dial(0).setIsClamped(true);
    dial(0).setMinMax(0.0f, 0.5f);
    slider(0).setValue(0.8f);
    EXPECT_FLOAT_EQ(dial(0).getValue(), 0.5f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 0.8f);
}

TEST_F(SuccessDialogTest, shows_the_morph_in_the_parameters_pane)
{
    open({"Vera Head", "Vera Body"});
    DzMainWindow& window = *dzApp->getInterface();
    window.show();
    DzPane* const pane = window.getPaneMgr()->findPane(QLatin1String("DzParametersPane"));
    ASSERT_NE(pane, nullptr);
    pane->hidePane();
    dzScene->selectAllNodes(false);
    QTest::mouseClick(&showButton(1), Qt::LeftButton);
    EXPECT_TRUE(pane->isVisible());
    EXPECT_EQ(dzScene->getPrimarySelection(), target);
    const auto revealed = [pane] {
        const auto* const inside =
            pane->findChild<openhost::ParametersWidget*>(QStringLiteral("ParametersWgt"));
        return inside->getPropertySelections();
    };
    EXPECT_EQ(revealed(), QObjectList{&dial(1)});
    QTest::mouseClick(&showButton(0), Qt::LeftButton);
    EXPECT_EQ(revealed(), QObjectList{&dial(0)});
}

TEST_F(SuccessDialogTest, tells_when_there_is_no_parameters_pane)
{
    open({"Vera"});
    openhost::RemoveManager(QLatin1String("DzPaneMgr"));
    ModalAnswer answer(Press("OK"));
    QTest::mouseClick(&showButton(0), Qt::LeftButton);
    EXPECT_TRUE(
        answer.text.startsWith(QStringLiteral("<p><b>Unhandled exception in button handler.</b></p>")))
        << ToStd(answer.text);
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(SuccessDialogTest, disables_the_row_of_a_morph_that_is_deleted)
{
    open({"Vera Head", "Vera Body"});
    clickBox(0);
    DzObject& object = *target->getObject();
    ASSERT_EQ(object.removeModifier(object.findModifier(QLatin1String("Vera Head"))), DZ_NO_ERROR);
    for (QWidget* const control : std::initializer_list<QWidget*>{&box(0), &slider(0), &dialButton(0, "Min"),
                                                                  &dialButton(0, "Max"), &showButton(0)}) {
        EXPECT_FALSE(control->isEnabled());
        EXPECT_TRUE(control->isVisible());
    }
    EXPECT_TRUE(box(1).isEnabled());
    EXPECT_TRUE(slider(1).isEnabled());
    EXPECT_TRUE(showButton(1).isEnabled());
    dial(1).setValue(0.5f);
    EXPECT_FLOAT_EQ(slider(1).getValue(), 0.5f);
    slider(0).setValue(0.5f); // nobody listens any more
}

TEST_F(SuccessDialogTest, outlives_the_figures)
{
    open({"Vera Head", "Vera Body"});
    dzScene->removeNode(target);
    TestHost().purge();
    EXPECT_FALSE(slider(0).isEnabled());
    EXPECT_FALSE(box(1).isEnabled());
    dzScene->clear();
    TestHost().purge();
    EXPECT_TRUE(dialog->isVisible());
    QTest::mouseClick(&closeButton(), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(dialog.isNull());
}

TEST_F(SuccessDialogTest, ignores_float_properties_that_it_does_not_list)
{
    open({"Vera"});
    DzFloatProperty& other = *target->getXPosControl();
    ASSERT_TRUE(QObject::connect(&other, SIGNAL(currentValueChanged()), dialog.data(),
                                 SLOT(slotPropertyValueChanged())));
    other.setValue(1.0f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 0.0f);
}

TEST_F(SuccessDialogTest, closes_and_deletes_itself_by_its_button)
{
    open({"Vera"});
    QTest::mouseClick(&closeButton(), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(dialog.isNull());
    EXPECT_NE(ToStd(stored("winpos_dlg_success")), "(nothing)");
}

TEST_F(SuccessDialogTest, closes_and_deletes_itself_by_escape_and_by_the_windows_button)
{
    open({"Vera"});
    QTest::keyClick(dialog.data(), Qt::Key_Escape);
    Settle();
    EXPECT_TRUE(dialog.isNull());
    openAgain().close();
    Settle();
    EXPECT_TRUE(dialog.isNull());
    EXPECT_NE(ToStd(stored("winpos_dlg_success")), "(nothing)");
}

TEST_F(SuccessDialogTest, goes_with_its_parent)
{
    open({"Vera"});
    QWidget parent;
    const QPointer<GntSuccessDialog> child =
        GntSuccessDialog::Create(&parent, params, created, "1 second", "");
    EXPECT_EQ(child->parentWidget(), &parent);
    EXPECT_TRUE(child->isVisible());
    EXPECT_FALSE(child->isModal());
    auto* const other = new QWidget;
    const QPointer<GntSuccessDialog> orphan =
        GntSuccessDialog::Create(other, params, created, "1 second", "");
    delete other;
    EXPECT_TRUE(orphan.isNull());
    child->close();
    Settle();
    EXPECT_TRUE(child.isNull());
}

TEST_F(SuccessDialogTest, opens_where_it_stood)
{
    open({"Vera"}).setGeometry(120, 90, dialog->width() + 60, dialog->height() + 40);
    const QRect stood = dialog->geometry();
    QTest::mouseClick(&closeButton(), Qt::LeftButton);
    Settle();
    EXPECT_EQ(openAgain().geometry(), stood);
}

TEST_F(SuccessDialogTest, grows_for_more_text_than_the_last_time)
{
    open({"Vera"});
    QTest::mouseClick(&closeButton(), Qt::LeftButton);
    Settle();
    open({"A", "B", "C"}, "<ul><li>one</li><li>two</li><li>three</li><li>four</li><li>five</li></ul>");
    EXPECT_GE(intro().height(), intro().heightForWidth(intro().width()));
}

TEST_F(SuccessDialogTest, stands_beside_another_one_for_the_same_morphs)
{
    const QPointer<GntSuccessDialog> first = &open({"Vera"});
    DzFloatSlider& firstSlider = slider(0);
    openAgain();
    slider(0).setValue(0.5f);
    EXPECT_FLOAT_EQ(firstSlider.getValue(), 0.5f);
    firstSlider.setValue(0.25f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 0.25f);
    first->close();
    Settle();
    EXPECT_TRUE(first.isNull());
    dial(0).setValue(1.0f);
    EXPECT_FLOAT_EQ(slider(0).getValue(), 1.0f);
}

TEST_F(SuccessDialogTest, goes_from_row_to_row_by_the_tabulator)
{
    open({"Vera Head", "Vera Body"});
    EXPECT_EQ(dialog->focusWidget(), &box(0));
    clickBox(0);
    std::vector<QWidget*> passed;
    do {
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
        passed.push_back(dialog->focusWidget());
    } while (passed.back() != &box(0) && passed.size() < 20);
    const auto at = [&passed](const QWidget& widget) {
        return std::find(passed.begin(), passed.end(), &widget) - passed.begin();
    };
    EXPECT_LT(at(slider(0)), at(showButton(0)));
    EXPECT_LT(at(showButton(0)), at(box(1)));
    EXPECT_LT(at(box(1)), at(slider(1)));
    EXPECT_LT(at(showButton(1)), at(library()));
    EXPECT_LT(at(library()), at(saveButton()));
    EXPECT_LT(at(saveButton()), at(closeButton()));
}

TEST_F(SuccessDialogTest, shows_all_of_its_texts)
{
    const char* const note =
        "<p><b>Note:</b> The following morphs had non-zero values in the source figure but "
        "could not be found in the target figure created by the Transfer Utility:</p>"
        "<ul><li>Bulge (50.0%)</li><li>Wide (100.0%)</li></ul>";
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        const std::string size = isLarge ? "-18pt" : "";
        open({"Vera"});
        SavePicture(*dialog, ("success-one" + size).c_str());
        delete dialog.data();
        open({"Vera of the Long Valley with the Silver Hair (Full Body)", "Vera Head", "Vera Body"}, note);
        clickBox(0);
        dial(1).setValue(0.5f);
        EXPECT_GE(intro().height(), intro().heightForWidth(intro().width()));
        for (const QWidget* const widget : dialog->findChildren<QWidget*>()) {
            const bool isPart = widget->isVisible() && !widget->isWindow();
            EXPECT_TRUE(!isPart || widget->width() >= widget->minimumSizeHint().width())
                << widget->metaObject()->className();
        }
        EXPECT_GE(box(0).width(), box(0).sizeHint().width());
        SavePicture(*dialog, ("success-three" + size).c_str());
        delete dialog.data();
    }
}

using SuccessDialogDeathTest = SuccessDialogTest;

TEST_F(SuccessDialogDeathTest, stops_at_a_sender_that_is_no_float_property)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    open({"Vera"});
    DzIntProperty number(QLatin1String("Number"), false, false);
    ASSERT_TRUE(QObject::connect(&number, SIGNAL(currentValueChanged()), dialog.data(),
                                 SLOT(slotPropertyValueChanged())));
    EXPECT_DEATH(number.setValue(3), "property");
}

} // namespace
