// The convert dialog as it is seen: texts, places, help and keys.
// SPDX-License-Identifier: MIT

#include "tests/windows/convert_dialog_scene.h"

#include "gnt_convert-figure.h"
#include "ks_gui_button.h"
#include "ks_help.h"
#include "ks_string.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>

#include <memory>

namespace {

using kst::str::Quote;
using kst::str::ToStd;

class ConvertDialog : public ConvertDialogTest {
protected:
    std::string intro() const { return ToStd(widget<QLabel>("plblIntro").text()); }
    std::string tip(const char* name) const { return ToStd(widget<QWidget>(name).toolTip()); }
    static std::string bold(const char* name) { return "<b>" + Quote(name) + "</b>"; }

    /// The widget at a place of the rows with the names.
    template <class Widget>
    Widget* inGrid(int row, int column) const
    {
        QLayoutItem* const item = widget<QGridLayout>("pgridCreateMorphs").itemAtPosition(row, column);
        QWidget* const found = item->layout() ? item->layout()->itemAt(0)->widget() : item->widget();
        return qobject_cast<Widget*>(found);
    }
};

TEST_F(ConvertDialog, says_what_is_going_to_happen)
{
    open(7);
    EXPECT_EQ(ToStd(dialog->windowTitle()),
              "Convert figure \xE2\x80\x94 Kestrom's Gantrel " + kst::daz::MakeExtendedVersionString());
    EXPECT_EQ(ToStd(dialog->objectName()), "ConvertFigureDialog");
    EXPECT_EQ(intro(),
              "\n<p>You are about to convert 7 active morphs in the selected <b>source figure "
              "\xE2\x80\x9CVera\xE2\x80\x9D</b> to a single\nmorph in the selected <b>target figure "
              "\xE2\x80\x9CNova\xE2\x80\x9D</b>.</p>\n<p>This will combine all currently active morphs from "
              "the source.\nIf you want only some of those morphs active, press cancel now, zero the morphs "
              "and start again.</p>");
    EXPECT_TRUE(widget<QLabel>("plblIntro").wordWrap());
}

TEST_F(ConvertDialog, counts_one_morph_in_words_and_many_with_commas)
{
    open(1);
    EXPECT_NE(intro().find("convert one active morph in the"), std::string::npos);
    open(12345);
    EXPECT_NE(intro().find("convert 12,345 active morphs in the"), std::string::npos);
}

TEST_F(ConvertDialog, shows_labels_as_they_are_whatever_they_hold)
{
    source->setLabel(QString::fromUtf8("\xC3\x84nne <b>& Co"));
    target->setLabel(QString::fromUtf8("\xE6\x98\x9F"));
    open();
    EXPECT_NE(intro().find("<b>source figure \xE2\x80\x9C\xC3\x84nne &lt;b&gt;&amp; Co\xE2\x80\x9D</b>"),
              std::string::npos);
    EXPECT_NE(intro().find("<b>target figure \xE2\x80\x9C\xE6\x98\x9F\xE2\x80\x9D</b>"), std::string::npos);
}

TEST_F(ConvertDialog, proposes_a_name_for_each_morph)
{
    open(1, "Foo");
    EXPECT_EQ(dialog->getMorphNames(), (std::vector<std::string>{"Foo", "Foo Head", "Foo Body"}));
    open(1, "\xC3\x84nne {} \xE6\x98\x9F");
    EXPECT_EQ(dialog->getMorphNames(),
              (std::vector<std::string>{"\xC3\x84nne {} \xE6\x98\x9F", "\xC3\x84nne {} \xE6\x98\x9F Head",
                                        "\xC3\x84nne {} \xE6\x98\x9F Body"}));
}

TEST_F(ConvertDialog, has_a_row_for_each_morph)
{
    open();
    EXPECT_EQ(ToStd(inGrid<QLabel>(1, 1)->text()), "Morph path");
    EXPECT_EQ(ToStd(inGrid<QLabel>(1, 2)->text()), "Morph name");
    EXPECT_EQ(inGrid<QLabel>(1, 1), &widget<QLabel>("plblHeadingMorphPath"));
    EXPECT_EQ(inGrid<QLabel>(1, 2), &widget<QLabel>("plblHeadingMorphName"));
    const char* const texts[] = {"Create full figure morph", "Create head morph", "Create body morph"};
    const char* const kinds[] = {"FullFigure", "Head", "Body"};
    for (int i = 0; i < 3; ++i) {
        const std::string kind = kinds[i];
        EXPECT_EQ(ToStd(inGrid<QCheckBox>(i + 2, 0)->text()), texts[i]);
        EXPECT_EQ(ToStd(inGrid<QCheckBox>(i + 2, 0)->objectName()), "pchkCreate" + kind + "Morph");
        EXPECT_EQ(ToStd(inGrid<QLineEdit>(i + 2, 1)->objectName()), "pled" + kind + "MorphPath");
        EXPECT_EQ(ToStd(inGrid<QLineEdit>(i + 2, 2)->objectName()), "pled" + kind + "MorphName");
        EXPECT_EQ(
            ToStd(widget<QGridLayout>("pgridCreateMorphs").itemAtPosition(i + 2, 1)->layout()->objectName()),
            "phorz" + kind + "MorphPath");
    }
    EXPECT_EQ(widget<QGridLayout>("pgridCreateMorphs").columnStretch(1), 2);
    EXPECT_EQ(widget<QGridLayout>("pgridCreateMorphs").columnStretch(2), 3);
}

TEST_F(ConvertDialog, explains_each_morph)
{
    open();
    EXPECT_EQ(tip("pchkCreateFullFigureMorph"),
              bold("Create full figure morph") +
                  ": Causes a single morph to be created that contains the sum of all morphs that are "
                  "currently dialed up in the source figure.");
    const auto partHelp = [](const char* part) {
        return ": Causes a morph to be created that contains the sum of all morphs that are currently dialed "
               "up in the source figure, but filtered through the " +
               Quote(part) + " part of the standard " + Quote("HeadSplit") +
               " D-former weight map. This ships with the Daz Studio Genesis 9 development kit.";
    };
    EXPECT_EQ(tip("pchkCreateHeadMorph"), bold("Create head morph") + partHelp("head"));
    EXPECT_EQ(tip("pchkCreateBodyMorph"), bold("Create body morph") + partHelp("body"));
}

TEST_F(ConvertDialog, has_a_dial_for_each_base)
{
    dial(0).setLabel(QString::fromUtf8("Clone \xC3\x9C"));
    open();
    EXPECT_EQ(ToStd(widget<QGroupBox>("pgrpMorphBases").title()), "G9 bases for new morph");
    const char* const labels[] = {"Clone \xC3\x9C", "Base feminine", "Base masculine", "Proportion height"};
    for (int row = 0; row < 4; ++row) {
        QLayoutItem* const item = widget<QGridLayout>("pgridMorphBases").itemAtPosition(row, 0);
        EXPECT_EQ(ToStd(qobject_cast<QLabel*>(item->widget())->text()), labels[row]);
        EXPECT_EQ(ToStd(slider(row).accessibleName()), labels[row]);
        EXPECT_TRUE(slider(row).isDisplayedAsPercent());
        EXPECT_TRUE(slider(row).isTextEditable());
        EXPECT_EQ(slider(row).getMin(), dial(row).getMin());
        EXPECT_EQ(slider(row).getMax(), dial(row).getMax());
    }
    EXPECT_EQ(ToStd(dialButton(1, "Min").toolTip()),
              "<b>Min:</b> Sets the " + Quote("Base feminine") + " dial to the minimum value (-100.0%).");
    EXPECT_EQ(ToStd(dialButton(1, "Default").toolTip()),
              "<b>Default:</b> Sets the " + Quote("Base feminine") + " dial to the default value (0.0%).");
    EXPECT_EQ(ToStd(dialButton(0, "Max").toolTip()),
              "<b>Max:</b> Sets the " + Quote("Clone \xC3\x9C") + " dial to the maximum value (100.0%).");
}

TEST_F(ConvertDialog, explains_all_dials_alike)
{
    dial(0).setLabel(QStringLiteral("Clone"));
    open();
    const std::string help =
        "\n<p>The dials in the <b>G9 bases for new morph</b> group determine what base the new morph will be "
        "built against. The dials\nare shortcuts to property dials of the selected target G9 "
        "figure.</p>\n<p>If all dials are zero, the new morph will contain the full set of vertex deltas "
        "against the default G9 figure.</p>\n<p>If any dial is not zero (or any other morph is active in the "
        "selected target G9 figure),\nthose morphs will need to be active in addition to the new morph for a "
        "G9 figure to look like the source G8 figure:\n<ul>\n<li>with <b>" +
        Quote("Clone") + "</b>, the matching G8 clone morph (which is hidden under the " + Quote("Hidden") +
        " category) will be needed;</li>\n<li>with <b>" + Quote("Base feminine") + "</b>, the " +
        Quote("Base feminine") + " morph under " + Quote("Actor/People/Feminine") +
        " will be needed;</li>\n<li>with <b>" + Quote("Base masculine") + "</b>, the " +
        Quote("Base masculine") + " morph under " + Quote("Actor/People/Masculine") +
        " will be needed.</li>\n</ul><p>Please see the user manual for details.</p>\n";
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(ToStd(slider(row).toolTip()), help);
}

TEST_F(ConvertDialog, names_a_dial_in_the_explanation_as_it_is_called)
{
    dial(0).setLabel(QStringLiteral("%PLUGINNAME% A%%B %{c}% ``d"));
    open();
    const std::string name = "<b>" + Quote("%PLUGINNAME% A%%B %{c}% ``d") + "</b>, the matching";
    for (int row = 0; row < 4; ++row)
        EXPECT_NE(ToStd(slider(row).toolTip()).find(name), std::string::npos) << ToStd(slider(row).toolTip());
}

TEST_F(ConvertDialog, offers_to_match_the_height)
{
    open();
    EXPECT_EQ(ToStd(widget<QCheckBox>("pchkAutoAdjustProportionalHeight").text()),
              "Auto-adjust proportional height");
    EXPECT_EQ(tip("pchkAutoAdjustProportionalHeight"),
              "If " + bold("Auto-adjust proportional height") +
                  " is turned on, Gantrelwill automatically adjust the target figure's height when you open "
                  "this window, as if you had pressed the magic button above. This is the default behavior. "
                  "Turn this off if you would like to control this manually.");
    EXPECT_EQ(ToStd(dialButton(3, "Auto").toolTip()),
              "<b>Auto:</b> Calculates an optimal height value for the G9 target figure to match that of the "
              "source figure.");
    EXPECT_THROW(dialButton(2, "Auto"), std::out_of_range);
}

TEST_F(ConvertDialog, has_a_button_behind_each_path)
{
    open();
    for (const char* const row : {"phorzFullFigureMorphPath", "phorzHeadMorphPath", "phorzBodyMorphPath"})
        EXPECT_EQ(
            ToStd(toolButton(row).toolTip()),
            "<b>Pick morph path:</b> Allows you to pick a morph path from the tree of existing property "
            "paths in the target figure.");
}

QImage PictureOn(const QToolButton& button)
{
    return button.icon().pixmap(button.iconSize()).toImage();
}

TEST_F(ConvertDialog, has_a_picture_on_each_tool_button)
{
    open();
    const auto pictureOf = [](const char* file) {
        QToolButton button;
        kst::gui::SetUpToolButton(button, file, "Name", "");
        return PictureOn(button);
    };
    const QImage wand = pictureOf(":/bootstrap/24/magic.png");
    const QImage dropper = pictureOf(":/bootstrap/24/eyedropper.png");
    const QImage question = pictureOf(":/bootstrap/24/question-square.png");
    ASSERT_TRUE(!wand.isNull() && wand != dropper && dropper != question && question != wand);
    EXPECT_EQ(PictureOn(dialButton(3, "Auto")), wand);
    for (const char* const row : {"phorzFullFigureMorphPath", "phorzHeadMorphPath", "phorzBodyMorphPath"})
        EXPECT_EQ(PictureOn(toolButton(row)), dropper) << row;
    EXPECT_EQ(PictureOn(toolButton("phorzBottomButtons")), question);
}

TEST_F(ConvertDialog, opens_the_manual)
{
    open();
    QToolButton& help = toolButton("phorzBottomButtons");
    EXPECT_EQ(ToStd(help.accessibleName()), "Help");
    EXPECT_EQ(ToStd(help.toolTip()),
              "<b>Help:</b> Opens the tool's PDF manual in your system's default PDF viewer.");
    EXPECT_EQ(help.x(), dialog->layout()->contentsMargins().left()) << "at the left edge";
    ModalAnswer box(Press("OK"));
    QTest::mouseClick(&help, Qt::LeftButton);
    ASSERT_TRUE(box.seen) << "there is no manual here, and it says so";
    EXPECT_TRUE(
        box.text.contains(QStringLiteral("/Plugins/Gantrel for Genesis 9/Gantrel for Genesis 9 Manual.pdf")));
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(ConvertDialog, has_its_texts_about_the_resolution)
{
    open();
    EXPECT_EQ(ToStd(widget<QGroupBox>("pgrpResolution").title()), "Morph resolution");
    EXPECT_EQ(ToStd(widget<QRadioButton>("pRadioResolutionBase").text()), "Base");
    EXPECT_EQ(ToStd(widget<QLabel>("label").text()),
              "Note: Subd morphs can take several minutes to convert!");
    const std::string help =
        "\n<p>Since you have the Daz Studio HD morph plugin installed, you can elect whether the target "
        "morph should\nbe created in base or in high resolution. The " +
        Quote("subd") +
        " value is taken from the selected Genesis 8 figure\nin the scene. The target G9 figure will also be "
        "set to that resolution, and the morph will have that resolution as well.</p>\n<p>If you want to use "
        "a different subd value, please cancel now and change the subd value in your source G8 figure.</p>";
    EXPECT_EQ(tip("pRadioResolutionBase"), help);
    EXPECT_EQ(tip("pRadioResolutionSubd"), help);
}

TEST_F(ConvertDialog, goes_from_control_to_control_by_the_tabulator)
{
    open();
    std::string order;
    const QWidget* at = QApplication::focusWidget();
    for (int i = 0; at && i < 16; ++i) {
        order += ToStd(at->objectName().isEmpty() ? at->accessibleName() : at->objectName()) + "\n";
        QTest::keyClick(dialog.get(), Qt::Key_Tab);
        at = QApplication::focusWidget();
    }
    const bool hasResolution = widget<QGroupBox>("pgrpResolution").isVisible();
    EXPECT_EQ(order,
              "pchkCreateFullFigureMorph\npledFullFigureMorphPath\npledFullFigureMorphName\n"
              "pchkCreateHeadMorph\npledHeadMorphPath\npledHeadMorphName\n"
              "pchkCreateBodyMorph\npledBodyMorphPath\npledBodyMorphName\n" +
                  std::string(hasResolution ? "pRadioResolutionBase\n" : "") +
                  "pbtnConvert\npbtnCancel\nPick morph path\nPick morph path\nPick morph path\nHelp\n" +
                  (hasResolution ? "" : ToStd(slider(0).accessibleName()) + "\n"));
}

TEST_F(ConvertDialog, reaches_its_dials_by_keys_too)
{
    open();
    std::vector<const QWidget*> expected;
    for (int row = 0; row < 4; ++row) {
        expected.push_back(&slider(row));
        for (const char* const name : {"Min", "Default", "Max"})
            expected.push_back(&dialButton(row, name));
    }
    expected.push_back(&dialButton(3, "Auto"));
    expected.push_back(&widget<QCheckBox>("pchkAutoAdjustProportionalHeight"));
    expected.push_back(&widget<QCheckBox>("pchkCreateFullFigureMorph"));
    slider(0).setFocus();
    for (const QWidget* const next : expected) {
        EXPECT_EQ(QApplication::focusWidget(), next);
        QTest::keyClick(dialog.get(), Qt::Key_Tab);
    }
}

TEST_F(ConvertDialog, leaves_dials_alone_whose_figure_went_meanwhile)
{
    for (const bool isSource : {true, false}) {
        SetUp();
        open();
        dzScene->removeNode(isSource ? source : target);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        slider(1).setValue(0.5f);
        dialButton(3, "Auto").click();
        waitForMatching();
        dialog->reject(); // would put the dials back
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
        dialog.reset();
    }
}

TEST_F(ConvertDialog, takes_return_for_convert_and_escape_for_cancel)
{
    open();
    QTest::keyClick(&widget<QLineEdit>("pledHeadMorphName"), Qt::Key_Return);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_FALSE(dialog->isVisible());
    open();
    QTest::keyClick(&widget<QLineEdit>("pledHeadMorphName"), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ConvertDialog, has_the_texts_of_its_buttons)
{
    open();
    EXPECT_EQ(ToStd(widget<QPushButton>("pbtnConvert").text()), "Convert");
    EXPECT_EQ(ToStd(widget<QPushButton>("pbtnCancel").text()), "Cancel");
    const QLayout& row = widget<QHBoxLayout>("phorzBottomButtons");
    ASSERT_EQ(row.count(), 4);
    EXPECT_TRUE(qobject_cast<QToolButton*>(row.itemAt(0)->widget()));
    EXPECT_TRUE(row.itemAt(1)->spacerItem());
    EXPECT_EQ(row.itemAt(2)->widget(), &widget<QPushButton>("pbtnConvert"));
    EXPECT_EQ(row.itemAt(3)->widget(), &widget<QPushButton>("pbtnCancel"));
}

TEST_F(ConvertDialog, shows_its_parts_from_the_introduction_down_to_the_buttons)
{
    open();
    const QLayout& rows = widget<QVBoxLayout>("verticalLayout");
    EXPECT_EQ(dialog->layout(), &rows);
    const QObject* const parts[] = {&widget<QLabel>("plblIntro"), &widget<QGroupBox>("pgrpMorphBases"),
                                    &widget<QGridLayout>("pgridCreateMorphs"),
                                    &widget<QGroupBox>("pgrpResolution"),
                                    &widget<QHBoxLayout>("phorzBottomButtons")};
    int last = -1;
    for (const QObject* const part : parts) {
        int place = 0;
        while (place < rows.count() && rows.itemAt(place)->widget() != part &&
               rows.itemAt(place)->layout() != part)
            ++place;
        EXPECT_LT(place, rows.count()) << ToStd(part->objectName());
        EXPECT_GT(place, last) << ToStd(part->objectName());
        last = place;
    }
    const QLayout& bases = widget<QVBoxLayout>("pvertMorphBasesGroup");
    EXPECT_EQ(widget<QGroupBox>("pgrpMorphBases").layout(), &bases);
    EXPECT_EQ(bases.itemAt(0)->layout(), &widget<QGridLayout>("pgridMorphBases"));
    const QLayout& adjusting = widget<QHBoxLayout>("horizontalLayout");
    EXPECT_EQ(bases.itemAt(1)->layout(), &adjusting);
    EXPECT_TRUE(adjusting.itemAt(0)->spacerItem());
    EXPECT_EQ(adjusting.itemAt(1)->widget(), &widget<QCheckBox>("pchkAutoAdjustProportionalHeight"));
    const QLayout& resolutions = widget<QHBoxLayout>("horizontalLayout_2");
    EXPECT_EQ(widget<QGroupBox>("pgrpResolution").layout(), &resolutions);
    EXPECT_EQ(resolutions.itemAt(0)->widget(), &widget<QRadioButton>("pRadioResolutionBase"));
    EXPECT_EQ(resolutions.itemAt(1)->widget(), &widget<QRadioButton>("pRadioResolutionSubd"));
    EXPECT_EQ(resolutions.itemAt(2)->widget(), &widget<QLabel>("label"));
    EXPECT_TRUE(widget<QLabel>("label").wordWrap());
}

TEST_F(ConvertDialog, lines_its_dials_up_at_any_size_of_text)
{
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        dial(1).setMinMax(0.0f, 1.0f); // a number of another length
        params = GntConverter::FindSourceAndTargetInSceneSelected_X();
        open();
        ASSERT_EQ(slider(1).getMin(), 0.0f);
        for (int row = 0; row < 3; ++row) {
            EXPECT_EQ(slider(row).x(), slider(3).x()) << row;
            EXPECT_EQ(slider(row).width(), slider(3).width()) << row;
            EXPECT_EQ(slider(row).sizeHint(), slider(3).sizeHint()) << row << ": the number's place";
            for (const char* const name : {"Min", "Default", "Max"})
                EXPECT_EQ(dialButton(row, name).x(), dialButton(3, name).x()) << row << name;
        }
        EXPECT_GT(dialButton(3, "Auto").x(), dialButton(3, "Max").geometry().right());
    }
}

TEST_F(ConvertDialog, has_room_for_everything)
{
    open();
    SavePicture(*dialog, "convert");
    EXPECT_EQ(dialog->minimumSize(), dialog->sizeHint());
    for (const char* const name : {"FullFigure", "Head", "Body"})
        widget<QCheckBox>(("pchkCreate" + std::string(name) + "Morph").c_str()).setChecked(false);
    SavePicture(*dialog, "convert-no-job");
}

TEST_F(ConvertDialog, has_room_for_everything_at_a_large_font_too)
{
    const LargeFont large;
    open(12);
    SavePicture(*dialog, "convert-18pt");
    for (const QWidget* const child : dialog->findChildren<QWidget*>())
        if (child->isVisible() &&
            (qobject_cast<const QCheckBox*>(child) || qobject_cast<const QPushButton*>(child))) {
            EXPECT_GE(child->width(), child->sizeHint().width()) << ToStd(child->objectName());
            EXPECT_GE(child->height(), child->sizeHint().height()) << ToStd(child->objectName());
        }
    const QLabel& intro = widget<QLabel>("plblIntro");
    EXPECT_GE(intro.height(), intro.heightForWidth(intro.width()));
}

TEST_F(ConvertDialog, stays_on_the_screen_with_very_long_labels_and_names)
{
    source->setLabel(QStringLiteral("Vera ").repeated(60));
    target->setLabel(QStringLiteral("N").repeated(300));
    dial(0).setLabel(QStringLiteral("Clone shape of a very old figure ").repeated(6));
    open(1, std::string(200, 'x').c_str());
    SavePicture(*dialog, "convert-long");
    EXPECT_LE(dialog->width(), 1000);
    EXPECT_EQ(dialog->getMorphNames()[GntHead], std::string(200, 'x') + " Head");
    for (const char* const line : {"pledFullFigureMorphName", "pledHeadMorphName", "pledBodyMorphName",
                                   "pledFullFigureMorphPath", "pledHeadMorphPath", "pledBodyMorphPath"})
        EXPECT_EQ(widget<QLineEdit>(line).cursorPosition(), 0) << line << " shows its beginning";
}

} // namespace
