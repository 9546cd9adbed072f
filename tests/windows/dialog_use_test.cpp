// A day's work with the product: several conversions, their dialogs open side by side.
// SPDX-License-Identifier: MIT

#include "gnt_convert-figure.h"
#include "gnt_dlg_convert.h"
#include "ks_daz-helpers.h"
#include "ks_string.h"
#include "tests/windows/dialog_use_scene.h"
#include "tests/windows/modal_answer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzfloatslider.h>
#include <dzintproperty.h>
#include <dzmorph.h>
#include <dzobject.h>

namespace {

using kst::str::ToQ;
using kst::str::ToStd;

void Settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Two conversions under other names, both dialogs open.
class TwoConversions : public DialogUseTest {
protected:
    void SetUp() override
    {
        DialogUseTest::SetUp();
        first = convert(FullFigure("First"));
        second = convert(FullFigure("Second"));
        ASSERT_TRUE(first && second && first != second) << ToStd(boxText) << ToStd(LogText());
    }
    DzFloatProperty& dial(const char* name) const
    {
        return *morphOf(*target, QLatin1String(name))->getValueChannel();
    }
    void press(QWidget& dialog, const char* button) const
    {
        QTest::mouseClick(FindButton(dialog, button), Qt::LeftButton);
        Settle();
    }

    QPointer<GntSuccessDialog> first, second;
};

TEST_F(TwoConversions, are_told_by_two_dialogs_that_follow_their_own_morphs)
{
    EXPECT_TRUE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(ToStd(box(*first, 0).text()), "First");
    EXPECT_EQ(ToStd(box(*second, 0).text()), "Second");
    slider(*first, 0).setValue(0.25f);
    slider(*second, 0).setValue(0.75f);
    EXPECT_FLOAT_EQ(dial("First").getValue(), 0.25f);
    EXPECT_FLOAT_EQ(dial("Second").getValue(), 0.75f);
    dial("First").setValue(0.5f);
    EXPECT_FLOAT_EQ(slider(*first, 0).getValue(), 0.5f);
    EXPECT_FLOAT_EQ(slider(*second, 0).getValue(), 0.75f);
}

TEST_F(TwoConversions, keep_the_other_dialog_when_one_is_closed)
{
    press(*first, "Close");
    EXPECT_TRUE(first.isNull());
    ASSERT_TRUE(second);
    EXPECT_TRUE(second->isVisible());
    slider(*second, 0).setValue(0.5f);
    EXPECT_FLOAT_EQ(dial("Second").getValue(), 0.5f);
    dial("First").setValue(1.0f); // nobody shows it any more
}

TEST_F(TwoConversions, make_morphs_of_one_shape)
{
    // The first morph stood at 0 while the second was made.
    EXPECT_FLOAT_EQ(dial("First").getValue(), 0.0f);
    EXPECT_NEAR(reach(*target, dial("First")), reach(*target, dial("Second")), 1e-3f)
        << "the smallest move that is kept, in cm";
}

TEST_F(TwoConversions, live_through_the_loss_of_a_morph_then_the_figure_then_the_scene)
{
    DzObject& object = *target->getObject();
    ASSERT_EQ(object.removeModifier(morphOf(*target, QStringLiteral("First"))), DZ_NO_ERROR);
    TestHost().purge();
    EXPECT_FALSE(box(*first, 0).isEnabled());
    EXPECT_TRUE(box(*second, 0).isEnabled());
    slider(*second, 0).setValue(0.5f);
    EXPECT_FLOAT_EQ(dial("Second").getValue(), 0.5f);

    dzScene->removeNode(target);
    TestHost().purge();
    EXPECT_FALSE(box(*second, 0).isEnabled());
    EXPECT_FALSE(FindButton(*second, "Show in Parameters")->isEnabled());
    slider(*first, 0).setValue(0.5f);
    slider(*second, 0).setValue(0.75f);

    dzScene->clear();
    TestHost().purge();
    EXPECT_TRUE(first->isVisible());
    EXPECT_TRUE(second->isVisible());
    press(*second, "Close");
    EXPECT_TRUE(second.isNull());
    press(*first, "Close");
    EXPECT_TRUE(first.isNull());
}

TEST_F(TwoConversions, are_saved_from_their_own_dialogs)
{
    int saved = 0;
    for (GntSuccessDialog* const dialog : {first.data(), second.data()}) {
        QTest::keyClick(&box(*dialog, 0), Qt::Key_Space);
        auto& library = named<QComboBox>(*dialog, "pcboContentLibrary");
        library.setCurrentIndex(library.findText(own()));
        type(named<QLineEdit>(*dialog, "pledVendorName"), QStringLiteral("Acme"));
        type(named<QLineEdit>(*dialog, "pledProductName"), QStringLiteral("Day %1").arg(++saved));
        EXPECT_TRUE(save(*dialog).contains(QStringLiteral("The selected morph has been saved to ") + own()));
    }
    const QString morphs = QStringLiteral("data/DAZ 3D/Genesis 9/Base/Morphs/Acme/");
    EXPECT_EQ(filesIn(own()).filter(QStringLiteral(".dsf")),
              (QStringList{morphs + QStringLiteral("Day 1/First.dsf"),
                           morphs + QStringLiteral("Day 2/Second.dsf")}));
}

using SecondRun = DialogUseTest;

TEST_F(SecondRun, finds_the_choices_of_the_first_but_not_its_names)
{
    Wish wish;
    wish.head = {true, QStringLiteral("My Head"), QStringLiteral("/Gantrel/Heads")};
    wish.full.path = QStringLiteral("/Gantrel/Full");
    wish.body.path = QStringLiteral("/Gantrel/Bodies");
    QRect stood;
    wish.after = [&stood](QWidget& dialog) {
        QTest::keyClick(&named<QCheckBox>(dialog, "pchkAutoAdjustProportionalHeight"), Qt::Key_Space);
        dialog.setGeometry(60, 40, dialog.width() + 20, dialog.height() + 60);
        stood = dialog.geometry();
    };
    GntSuccessDialog* told = convert(wish);
    ASSERT_NE(told, nullptr) << ToStd(boxText);
    QTest::keyClick(&box(*told, 0), Qt::Key_Space);
    auto& library = named<QComboBox>(*told, "pcboContentLibrary");
    library.setCurrentIndex(library.findText(own()));
    type(named<QLineEdit>(*told, "pledVendorName"), QStringLiteral("Acme"));
    type(named<QLineEdit>(*told, "pledProductName"), QStringLiteral("Shapes"));
    QTest::keyClick(&named<QCheckBox>(*told, "pchkCompressFiles"), Qt::Key_Space);
    EXPECT_TRUE(save(*told).contains(QStringLiteral("has been saved to")));
    told->setGeometry(30, 20, told->width() + 30, told->height() + 15);
    const QRect toldAt = told->geometry();
    told->close();
    Settle();

    bool isSeen = false;
    Wish again;
    again.before = [&](QWidget& dialog) {
        isSeen = true;
        const auto isOn = [&dialog](const char* name) { return named<QCheckBox>(dialog, name).isChecked(); };
        EXPECT_FALSE(isOn("pchkCreateFullFigureMorph"));
        EXPECT_TRUE(isOn("pchkCreateHeadMorph"));
        EXPECT_FALSE(isOn("pchkCreateBodyMorph"));
        EXPECT_FALSE(isOn("pchkAutoAdjustProportionalHeight"));
        const auto text = [&dialog](const char* name) {
            return ToStd(named<QLineEdit>(dialog, name).text());
        };
        EXPECT_EQ(text("pledFullFigureMorphPath"), "/Gantrel/Full");
        EXPECT_EQ(text("pledHeadMorphPath"), "/Gantrel/Heads");
        EXPECT_EQ(text("pledBodyMorphPath"), "/Gantrel/Bodies");
        EXPECT_EQ(text("pledFullFigureMorphName"), "Vera converted to G9");
        EXPECT_EQ(text("pledHeadMorphName"), "Vera converted to G9 Head");
        EXPECT_EQ(text("pledBodyMorphName"), "Vera converted to G9 Body");
        EXPECT_EQ(dialog.geometry(), stood);
    };
    again.full = {true, QStringLiteral("Whole"), QString()};
    told = convert(again);
    EXPECT_TRUE(isSeen);
    ASSERT_NE(told, nullptr) << ToStd(boxText);
    EXPECT_EQ(ToStd(box(*told, 0).text()), "Whole");
    EXPECT_EQ(named<QComboBox>(*told, "pcboContentLibrary").currentText(), own());
    EXPECT_EQ(ToStd(named<QLineEdit>(*told, "pledVendorName").text()), "Acme");
    EXPECT_EQ(ToStd(named<QLineEdit>(*told, "pledProductName").text()), "Shapes");
    EXPECT_FALSE(named<QCheckBox>(*told, "pchkCompressFiles").isChecked());
    EXPECT_EQ(told->geometry(), toldAt);
}

using ThroughTheDialogs = DialogUseTest;

TEST_F(ThroughTheDialogs, a_subdivided_conversion_has_the_sources_level)
{
    openhost::SetHdMorphSupport(true);
    kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::HighResolution, true);
    kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(2);
    Wish wish = FullFigure("Fine");
    wish.before = [](QWidget& dialog) {
        EXPECT_TRUE(named<QGroupBox>(dialog, "pgrpResolution").isVisible());
        auto& high = named<QRadioButton>(dialog, "pRadioResolutionSubd");
        EXPECT_EQ(ToStd(high.text()), "High resolution (subd 2)");
        EXPECT_TRUE(high.isChecked());
        QTest::keyClick(&named<QRadioButton>(dialog, "pRadioResolutionBase"), Qt::Key_Space);
        EXPECT_FALSE(high.isChecked());
        QTest::keyClick(&high, Qt::Key_Space);
        EXPECT_TRUE(high.isChecked());
        EXPECT_FALSE(static_cast<GntConvertDialog&>(dialog).getDebugSteps());
    };
    ASSERT_NE(convert(wish), nullptr) << ToStd(boxText);
    EXPECT_EQ(kst::daz::GetNodeResolution(*target), kst::daz::NodeResolution::HighResolution);
    EXPECT_EQ(kst::daz::FindSubdivisionLevelIntProperty(*target, true)->getValue(), 2);
    EXPECT_GT(reach(*target, *morphOf(*target, QStringLiteral("Fine"))->getValueChannel()), 0.5f);
}

TEST_F(ThroughTheDialogs, no_resolution_is_asked_without_the_add_on)
{
    openhost::SetHdMorphSupport(false);
    kst::daz::SetNodeResolution(*source, kst::daz::NodeResolution::HighResolution, true);
    Wish wish = FullFigure("Plain");
    wish.before = [](QWidget& dialog) {
        for (const char* const name :
             {"pgrpResolution", "pRadioResolutionBase", "pRadioResolutionSubd", "label"})
            EXPECT_TRUE(named<QWidget>(dialog, name).isHidden()) << name;
        EXPECT_FALSE(static_cast<GntConvertDialog&>(dialog).getDebugSteps());
    };
    ASSERT_NE(convert(wish), nullptr) << ToStd(boxText);
    EXPECT_EQ(kst::daz::GetNodeResolution(*target), kst::daz::NodeResolution::BaseResolution);
}

TEST_F(ThroughTheDialogs, the_choices_make_what_the_same_request_makes_without_them)
{
    openhost::SetHdMorphSupport(false); // both at base resolution
    Wish wish = FullFigure("Chosen");
    wish.full.path = QStringLiteral("/Actor/Chosen");
    ASSERT_NE(convert(wish), nullptr) << ToStd(boxText);
    GntRequest request;
    request.jobs = GntJobFlag::Full;
    request.names = GntProposedNames("Asked");
    request.paths.assign(3, "/Actor/Chosen");
    const GntOutcome outcome = GntConverter::Convert_X(*source, *target, request);
    ASSERT_EQ(outcome.created.size(), 1u);
    const DzMorph* const morph = morphOf(*target, QStringLiteral("Chosen"));
    ASSERT_NE(morph, nullptr);
    DzFloatProperty& chosen = *morph->getValueChannel();
    EXPECT_EQ(ToStd(chosen.getPath()), "/Actor/Chosen");
    EXPECT_EQ(outcome.created[0].property->getPath(), chosen.getPath());
    EXPECT_NEAR(reach(*target, *outcome.created[0].property), reach(*target, chosen), 1e-3f)
        << "the smallest move that is kept, in cm";
}

} // namespace
