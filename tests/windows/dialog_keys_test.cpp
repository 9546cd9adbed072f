// The product's dialogs without a mouse, and with room for every text.
// SPDX-License-Identifier: MIT

#include "gnt_convert-figure.h"
#include "gnt_dlg_convert.h"
#include "ks_dlg_morph-path.h"
#include "ks_string.h"
#include "tests/windows/dialog_room.h"
#include "tests/windows/dialog_use_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <dzappsettings.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmorph.h>

#include <set>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

/// What a user can work with.
bool IsControl(const QWidget& widget)
{
    if (!widget.isVisible() || !widget.isEnabled() || widget.isWindow())
        return false;
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QTreeWidget*>(&widget) ||
           widget.inherits("DzFloatSlider");
}

/// Parts of a control are worked through it.
bool IsPart(const QWidget& widget)
{
    for (const QWidget* parent = widget.parentWidget(); parent && !parent->isWindow();
         parent = parent->parentWidget())
        if (IsControl(*parent) && !qobject_cast<const QGroupBox*>(parent))
            return true;
    return false;
}

/// Everything that the tabulator comes to, once around.
std::set<const QWidget*> ReachedByTab(QWidget& dialog)
{
    std::set<const QWidget*> reached;
    for (const QWidget* at = dialog.focusWidget(); at && reached.insert(at).second; at = dialog.focusWidget())
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    return reached;
}

/// Radio buttons of a group are one stop, between which the arrows move.
bool IsReachedByArrow(const QWidget& widget, const std::set<const QWidget*>& reached)
{
    const auto* const radio = qobject_cast<const QRadioButton*>(&widget);
    if (!radio)
        return false;
    for (const QWidget* const other : reached)
        if (qobject_cast<const QRadioButton*>(other) && other->parentWidget() == radio->parentWidget())
            return true;
    return false;
}

void ExpectReachable(QWidget& dialog)
{
    const std::set<const QWidget*> reached = ReachedByTab(dialog);
    for (const QWidget* const widget : dialog.findChildren<QWidget*>()) {
        const bool isStop = IsControl(*widget) && !IsPart(*widget);
        EXPECT_TRUE(!isStop || reached.count(widget) || IsReachedByArrow(*widget, reached))
            << NameOf(*widget);
    }
}

/// A control looks otherwise while it has the focus. The cursor of a line blinks and does not count.
void ExpectVisibleFocus(QWidget& dialog)
{
    for (const QWidget* const found : ReachedByTab(dialog)) {
        QWidget& widget = *const_cast<QWidget*>(found);
        QWidget& other = *widget.nextInFocusChain();
        other.clearFocus();
        dialog.focusWidget() ? dialog.focusWidget()->clearFocus() : void();
        const QImage without = widget.grab().toImage();
        widget.setFocus(Qt::TabFocusReason);
        ASSERT_EQ(dialog.focusWidget(), &widget) << NameOf(widget);
        EXPECT_NE(widget.grab().toImage(), without) << NameOf(widget);
    }
}

const char* const names[] = {
    "Vera", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xC3\x84ngstr\xC3\xB6m & Zo\xC3\xAB",
    "Vera of the Long Valley with the Silver Hair and the Green Eyes, second version as "
    "of last winter with the broad shoulders"};

/// The dialogs at one of two sizes of text.
class DialogRoom : public DialogUseTest, public testing::WithParamInterface<bool> {
protected:
    DialogRoom() : _large(GetParam() ? new HalfAsLargeAgain : nullptr) {}

    GntConvertDialog& openConvert(const QString& name)
    {
        source->setLabel(name);
        target->setLabel(name);
        selectOnly({source, target});
        params = GntConverter::FindSourceAndTargetInSceneSelected_X();
        convertDialog.reset(new GntConvertDialog(nullptr, *params, 1, ToStd(name), _settings));
        convertDialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(convertDialog.get()));
        return *convertDialog;
    }
    GntSuccessDialog& openSuccess(const QString& name)
    {
        source->setLabel(name);
        Wish wish;
        wish.head = {true, name + QStringLiteral(" Head"), QString()};
        wish.body = {true, name + QStringLiteral(" Body"), QString()};
        GntSuccessDialog* const dialog = convert(wish);
        if (!dialog)
            throw std::runtime_error(ToStd(boxText));
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        return *dialog;
    }
    kst::MorphPathDialog& openPicker(const QString& path)
    {
        picker.reset(new kst::MorphPathDialog(nullptr, *target, ToStd(path), "winpos_morph_path"));
        picker->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(picker.get()));
        return *picker;
    }
    void TearDown() override
    {
        convertDialog.reset();
        picker.reset();
        params.reset();
        DialogUseTest::TearDown();
    }
    static std::string picture(const char* dialog, int number)
    {
        return std::string("use-") + dialog + std::to_string(number) + (GetParam() ? "-150" : "");
    }

    std::shared_ptr<GntParams> params;
    std::unique_ptr<GntConvertDialog> convertDialog;
    std::unique_ptr<kst::MorphPathDialog> picker;

private:
    std::unique_ptr<HalfAsLargeAgain> _large;
    DzAppSettings _settings{QStringLiteral("Kestrom's Gantrel")};
};

TEST_P(DialogRoom, is_enough_for_every_name_in_the_convert_dialog)
{
    openhost::SetHdMorphSupport(true);
    int number = 0;
    for (const char* const name : names) {
        const QWidget& dialog = openConvert(ToQ(name));
        SCOPED_TRACE(name);
        ExpectNothingCutOff(dialog);
        SavePicture(*convertDialog, picture("convert", ++number).c_str());
    }
}

TEST_P(DialogRoom, is_enough_for_every_name_in_the_success_dialog)
{
    int number = 0;
    for (const char* const name : names) {
        GntSuccessDialog& dialog = openSuccess(ToQ(name));
        SCOPED_TRACE(name);
        QTest::keyClick(&box(dialog, 1), Qt::Key_Space);
        ExpectNothingCutOff(dialog);
        EXPECT_LE(dialog.width(), 1366) << "small screens have no more";
        SavePicture(dialog, picture("success", ++number).c_str());
        delete &dialog;
    }
}

TEST_P(DialogRoom, is_enough_for_every_path_in_the_picker)
{
    int number = 0;
    for (const char* const name : names) {
        const QWidget& dialog = openPicker(QLatin1String("/Gantrel/") + ToQ(name));
        SCOPED_TRACE(name);
        ExpectNothingCutOff(dialog);
        SavePicture(*picker, picture("picker", ++number).c_str());
    }
}

TEST_P(DialogRoom, has_every_control_on_the_way_of_the_tabulator)
{
    openhost::SetHdMorphSupport(true);
    ExpectReachable(openConvert(ToQ("Vera")));
    convertDialog.reset();
    ExpectReachable(openPicker(ToQ("/Gantrel")));
    picker.reset();
    GntSuccessDialog& dialog = openSuccess(ToQ("Vera"));
    ExpectReachable(dialog);
    QTest::keyClick(&box(dialog, 0), Qt::Key_Space);
    ExpectReachable(dialog);
}

TEST_P(DialogRoom, shows_what_has_the_focus)
{
    openhost::SetHdMorphSupport(true);
    ExpectVisibleFocus(openConvert(ToQ("Vera")));
    convertDialog.reset();
    ExpectVisibleFocus(openPicker(ToQ("/Gantrel")));
    picker.reset();
    GntSuccessDialog& dialog = openSuccess(ToQ("Vera"));
    QTest::keyClick(&box(dialog, 0), Qt::Key_Space);
    ExpectVisibleFocus(dialog);
    FindButton(dialog, "Close")->setFocus(Qt::TabFocusReason);
    SavePicture(dialog, picture("focus", 1).c_str());
}

INSTANTIATE_TEST_SUITE_P(Texts, DialogRoom, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& parameter) {
                             return parameter.param ? "LargeTexts" : "UsualTexts";
                         });

/// What keys do.
class DialogKeys : public DialogUseTest {
protected:
    GntSuccessDialog& openSuccess()
    {
        GntSuccessDialog* const dialog = convert(FullFigure("Vera Shape"));
        if (!dialog)
            throw std::runtime_error(ToStd(boxText));
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        return *dialog;
    }
    static std::string defaultButton(const QWidget& dialog)
    {
        std::string texts;
        for (const QPushButton* const button : dialog.findChildren<QPushButton*>())
            if (button->isDefault())
                texts += ToStd(button->text()) + ";";
        return texts;
    }
    static void focus(QWidget& widget)
    {
        widget.window()->activateWindow(); // nobody else does after a box was closed
        ASSERT_TRUE(QTest::qWaitForWindowActive(widget.window()));
        widget.setFocus(Qt::TabFocusReason);
        ASSERT_TRUE(widget.hasFocus());
    }
};

TEST_F(DialogKeys, return_in_a_line_of_the_success_dialog_saves_and_does_not_close)
{
    GntSuccessDialog& dialog = openSuccess();
    QTest::keyClick(&box(dialog, 0), Qt::Key_Space);
    auto& library = named<QComboBox>(dialog, "pcboContentLibrary");
    library.setCurrentIndex(library.findText(own()));
    type(named<QLineEdit>(dialog, "pledVendorName"), QStringLiteral("Acme"));
    for (const char* const line : {"pledVendorName", "pledProductName"}) {
        focus(named<QLineEdit>(dialog, line));
        EXPECT_EQ(defaultButton(dialog), "Save morph assets;");
        ModalAnswer answer(Press("OK"));
        QTest::keyClick(&named<QLineEdit>(dialog, line), Qt::Key_Return);
        EXPECT_TRUE(answer.text.contains(QStringLiteral("has been saved to"))) << ToStd(answer.text);
        EXPECT_TRUE(dialog.isVisible());
    }
}

TEST_F(DialogKeys, return_elsewhere_in_the_success_dialog_presses_what_looks_like_it)
{
    GntSuccessDialog& dialog = openSuccess();
    EXPECT_EQ(defaultButton(dialog), "Close;");
    QTest::keyClick(&box(dialog, 0), Qt::Key_Space);
    focus(named<QLineEdit>(dialog, "pledVendorName"));
    focus(named<QComboBox>(dialog, "pcboContentLibrary"));
    EXPECT_EQ(defaultButton(dialog), "Close;");
    focus(*FindButton(dialog, "Show in Parameters"));
    EXPECT_EQ(defaultButton(dialog), "Show in Parameters;");
    focus(named<QLineEdit>(dialog, "pledProductName"));
    EXPECT_EQ(defaultButton(dialog), "Save morph assets;");
    focus(*FindButton(dialog, "Close"));
    EXPECT_EQ(defaultButton(dialog), "Close;");
    focus(box(dialog, 0));
    EXPECT_EQ(defaultButton(dialog), "Close;");
}

TEST_F(DialogKeys, a_number_typed_into_a_dial_ends_with_return_and_closes_nothing)
{
    GntSuccessDialog& dialog = openSuccess();
    DzFloatSlider& dial = slider(dialog, 0);
    focus(dial);
    QTest::keyClick(&dial, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "return begins or ends the typing";
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("25"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FLOAT_EQ(morphOf(*target, QStringLiteral("Vera Shape"))->getValueChannel()->getValue(), 0.25f);
}

TEST_F(DialogKeys, a_number_typed_into_a_base_dial_does_not_convert)
{
    Wish wish = FullFigure("Vera Shape");
    wish.before = [](QWidget& dialog) {
        auto& dial = *dialog.findChild<DzFloatSlider*>();
        focus(dial);
        QTest::keyClick(&dial, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("25"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_FLOAT_EQ(dial.getValue(), 0.25f);
    };
    convert(wish);
}

TEST_F(DialogKeys, return_does_nothing_while_the_picked_path_is_too_short)
{
    kst::MorphPathDialog dialog(nullptr, *target, "/Gantrel", "winpos_morph_path");
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    type(named<QLineEdit>(dialog, "pledMorphPropertyPath"), QStringLiteral("/Head"));
    QTest::keyClick(&named<QLineEdit>(dialog, "pledMorphPropertyPath"), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    type(named<QLineEdit>(dialog, "pledMorphPropertyPath"), QStringLiteral("/Heads"));
    QTest::keyClick(&named<QLineEdit>(dialog, "pledMorphPropertyPath"), Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.getPropertyPathFromLineEdit(), "/Heads");
}

} // namespace
