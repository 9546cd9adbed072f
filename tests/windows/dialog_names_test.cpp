// Names and paths that users type: what becomes of them in a whole conversion.
// SPDX-License-Identifier: MIT

#include "ks_string.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/dialog_use_scene.h"
#include "tests/windows/picture.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextDocument>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzmorph.h>
#include <dzobject.h>

#include <cmath>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

QString PlainText(const QString& richText)
{
    QTextDocument document;
    document.setHtml(richText);
    return document.toPlainText();
}

class TypedNames : public DialogUseTest {
protected:
    DzFloatProperty* dialOf(const char* name) const
    {
        DzMorph* const morph = morphOf(*target, ToQ(name));
        return morph ? morph->getValueChannel() : nullptr;
    }
    /// Checks the first box, enters vendor and library, saves.
    QString saveFrom(QWidget& dialog) const
    {
        QTest::keyClick(&box(dialog, 0), Qt::Key_Space);
        named<QLineEdit>(dialog, "pledVendorName").setText(QStringLiteral("Acme"));
        auto& library = named<QComboBox>(dialog, "pcboContentLibrary");
        library.setCurrentIndex(library.findText(own()));
        return save(dialog);
    }
};

const char* const oddNames[] = {"A/B\\C",
                                "say \"it's\"",
                                "A & B && C",
                                "<b>bold</b> &amp;",
                                "%d %% {} %1 %%",
                                " blanks ",
                                "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE5\xBD\xA2",
                                "YTranslate"};

TEST_F(TypedNames, are_the_morphs_names_whatever_they_hold)
{
    for (const char* const name : oddNames) {
        SCOPED_TRACE(name);
        const int before = countMorphs(*target);
        GntSuccessDialog* const dialog = convert(FullFigure(name));
        ASSERT_NE(dialog, nullptr) << ToStd(boxText);
        EXPECT_EQ(countMorphs(*target), before + 1);
        ASSERT_NE(dialOf(name), nullptr);
        EXPECT_EQ(ToStd(box(*dialog, 0).text().replace(QLatin1String("&&"), QLatin1String("&"))), name);
        slider(*dialog, 0).setValue(0.5f);
        EXPECT_FLOAT_EQ(dialOf(name)->getValue(), 0.5f);
        dialOf(name)->setValue(0.0f);
        EXPECT_GT(reach(*target, *dialOf(name)), 1.0f);
        delete dialog;
    }
}

TEST_F(TypedNames, are_read_as_they_are_in_the_help_of_the_dials)
{
    GntSuccessDialog* const dialog = convert(FullFigure("<b>bold</b> & x"));
    ASSERT_NE(dialog, nullptr) << ToStd(boxText);
    int found = 0;
    for (const QAbstractButton* const button : dialog->findChildren<QAbstractButton*>())
        if (PlainText(button->toolTip())
                .contains(QString::fromUtf8("Sets the \xE2\x80\x9C<b>bold</b> & x\xE2\x80\x9D dial")))
            ++found;
    EXPECT_EQ(found, 3) << "Min, Default and Max";
}

TEST_F(TypedNames, of_figures_are_read_as_they_are_in_the_introduction)
{
    source->setLabel(QStringLiteral("<i>Vera</i> & Co"));
    GntSuccessDialog* const dialog = convert(FullFigure("Shape"));
    ASSERT_NE(dialog, nullptr) << ToStd(boxText);
    const QString intro = PlainText(named<QLabel>(*dialog, "plblIntro").text());
    EXPECT_TRUE(intro.contains(QString::fromUtf8("\xE2\x80\x9C<i>Vera</i> & Co\xE2\x80\x9D has been")))
        << ToStd(intro);
    EXPECT_TRUE(intro.contains(QStringLiteral("<i>Vera</i> & Co converted to G9"))) << ToStd(intro);
}

TEST_F(TypedNames, come_back_with_the_next_load_of_the_figure)
{
    for (const char* const name : {"say \"it's\"", "<b>bold</b> &amp;", oddNames[6]}) {
        SCOPED_TRACE(name);
        GntSuccessDialog* const dialog = convert(FullFigure(name));
        ASSERT_NE(dialog, nullptr) << ToStd(boxText);
        const QString told = saveFrom(*dialog);
        EXPECT_TRUE(told.contains(QStringLiteral("has been saved to"))) << ToStd(told);
        delete dialog;
    }
    const DzFigure& next = LoadMini("People/Genesis 9/Genesis 9.duf");
    for (const char* const name : {"say \"it's\"", "<b>bold</b> &amp;", oddNames[6]}) {
        int found = 0;
        for (int i = 0; i < next.getObject()->getNumModifiers(); ++i)
            found += next.getObject()->getModifier(i)->getLabel() == ToQ(name) ? 1 : 0;
        EXPECT_EQ(found, 1) << name;
    }
}

TEST_F(TypedNames, of_three_hundred_letters_leave_the_dialog_on_the_screen)
{
    for (const QString& name : {QString(300, QLatin1Char('x')), QStringLiteral("Vera & Zoe ").repeated(27)}) {
        GntSuccessDialog* const dialog = convert(FullFigure(ToStd(name).c_str()));
        ASSERT_NE(dialog, nullptr) << ToStd(boxText);
        EXPECT_NE(morphOf(*target, name), nullptr);
        EXPECT_LE(dialog->width(), 1000);
        EXPECT_LE(dialog->height(), 700);
        SavePicture(*dialog, name.startsWith(QLatin1Char('x')) ? "use-success-300x" : "use-success-300");
        const QString told = saveFrom(*dialog);
        EXPECT_TRUE(told.contains(QStringLiteral("has been saved to"))) << ToStd(told);
        EXPECT_TRUE(dialog->isVisible());
        delete dialog;
    }
    const DzFigure& next = LoadMini("People/Genesis 9/Genesis 9.duf");
    EXPECT_EQ(countMorphs(next), 7 + 2);
}

TEST_F(TypedNames, that_are_empty_fail_the_conversion_and_spoil_nothing_that_was_there)
{
    const float before = reach(*target, *dialOf("body_bs_ProportionHeight"));
    EXPECT_EQ(convert(FullFigure("")), nullptr);
    EXPECT_TRUE(boxText.contains(QString::fromUtf8("Failed to find new morph \xE2\x80\x9C\xE2\x80\x9D")))
        << ToStd(boxText);
    EXPECT_EQ(ToStd(source->getLabel()), "Vera");
    EXPECT_FLOAT_EQ(reach(*target, *dialOf("body_bs_ProportionHeight")), before);
    EXPECT_NE(convert(FullFigure("Second try")), nullptr) << ToStd(boxText);
}

TEST_F(TypedNames, that_are_empty_leave_what_the_jobs_before_have_made)
{
    Wish wish = FullFigure("Good");
    wish.head = {true, QStringLiteral(""), QString()};
    EXPECT_EQ(convert(wish), nullptr);
    EXPECT_TRUE(boxText.contains(QStringLiteral("Failed to find new morph"))) << ToStd(boxText);
    ASSERT_NE(dialOf("Good"), nullptr);
    EXPECT_GT(reach(*target, *dialOf("Good")), 1.0f);
    EXPECT_EQ(dzScene->getNumSkeletons(), 2) << "no figure that was only needed on the way is left";
}

TEST_F(TypedNames, that_the_target_has_give_the_older_morph_the_new_shape)
{
    GntSuccessDialog* const first = convert(FullFigure("Shape"));
    ASSERT_NE(first, nullptr) << ToStd(boxText);
    DzFloatProperty* const dial = dialOf("Shape");
    const float wide = reach(*target, *dial);
    const int before = countMorphs(*target);
    morphOf(*source, QStringLiteral("Wide"))->getValueChannel()->setValue(0.5f);
    GntSuccessDialog* const second = convert(FullFigure("Shape"));
    ASSERT_NE(second, nullptr) << ToStd(boxText);
    EXPECT_EQ(countMorphs(*target), before);
    ASSERT_EQ(dialOf("Shape"), dial);
    EXPECT_GT(std::abs(reach(*target, *dial) - wide), 0.1f);
    ASSERT_NE(convert(FullFigure("Other")), nullptr) << ToStd(boxText);
    EXPECT_NEAR(reach(*target, *dial), reach(*target, *dialOf("Other")), 1e-3f)
        << "the smallest move that is kept, in cm";
    slider(*second, 0).setValue(0.25f);
    EXPECT_FLOAT_EQ(slider(*first, 0).getValue(), 0.25f) << "both dialogs show the one morph";
}

TEST_F(TypedNames, that_are_the_same_for_each_job_make_one_morph_that_every_row_moves)
{
    Wish wish;
    wish.full = {true, QStringLiteral("Same"), QStringLiteral("/Gantrel/Full")};
    wish.head = {true, QStringLiteral("Same"), QStringLiteral("/Gantrel/Head")};
    wish.body = {true, QStringLiteral("Same"), QStringLiteral("/Gantrel/Body")};
    const int before = countMorphs(*target);
    GntSuccessDialog* const dialog = convert(wish);
    ASSERT_NE(dialog, nullptr) << ToStd(boxText);
    EXPECT_EQ(countMorphs(*target), before + 1);
    for (const int moved : {0, 1, 2}) {
        slider(*dialog, moved).setValue(0.25f * (moved + 1));
        for (const int row : {0, 1, 2})
            EXPECT_FLOAT_EQ(slider(*dialog, row).getValue(), 0.25f * (moved + 1)) << moved << ' ' << row;
    }
}

TEST_F(TypedNames, of_paths_may_be_written_in_many_ways)
{
    const struct {
        const char* typed;
        const char* place;
    } paths[] = {{"Gantrel", "/Gantrel"},
                 {"/Gantrel/", "/Gantrel"},
                 {"//Gantrel//Heads/", "/Gantrel/Heads"},
                 {"/<b>", "/<b>"},
                 {"/A & B/\xE5\xBD\xA2", "/A & B/\xE5\xBD\xA2"},
                 {"", "/Morphs"}};
    int number = 0;
    for (const auto& path : paths) {
        SCOPED_TRACE(path.typed);
        const std::string name = "Shape " + std::to_string(++number);
        Wish wish = FullFigure(name.c_str());
        wish.full.path = ToQ(path.typed);
        GntSuccessDialog* const dialog = convert(wish);
        ASSERT_NE(dialog, nullptr) << ToStd(boxText);
        EXPECT_EQ(ToStd(dialOf(name.c_str())->getPath()), path.place);
        QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton); // Show in Parameters
        delete dialog;
    }
}

} // namespace
