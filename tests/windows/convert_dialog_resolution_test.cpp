// The convert dialog's choice between base and high resolution.
// SPDX-License-Identifier: MIT

#include "tests/windows/convert_dialog_scene.h"

#include "ks_daz-helpers.h"
#include "ks_daz-managers.h"
#include "ks_string.h"
#include "tests/windows/picture.h"

#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QtTest/QTest>

#include <dzfigure.h>
#include <dzintproperty.h>

namespace {

using kst::daz::NodeResolution;
using kst::str::ToStd;

class ConvertDialogResolution : public ConvertDialogTest {
protected:
    void SetUp() override
    {
        ConvertDialogTest::SetUp();
        openhost::SetHdMorphSupport(true);
        ASSERT_TRUE(kst::daz::IsHdMorphPluginPresent());
    }

    void setSource(NodeResolution resolution, int level)
    {
        kst::daz::SetNodeResolution(*source, resolution, true);
        kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setValue(level);
    }
    bool isOffered() const
    {
        const bool isVisible = widget<QGroupBox>("pgrpResolution").isVisible();
        for (const char* const name : {"pRadioResolutionBase", "pRadioResolutionSubd", "label"})
            EXPECT_EQ(widget<QWidget>(name).isHidden(), !isVisible) << name;
        return isVisible;
    }
    /// What the dialog gives: resolution and level.
    std::pair<GntResolution, int> choice() const
    {
        int subd = 99;
        const GntResolution resolution = dialog->getBaseOrHighResolution(subd);
        return {resolution, subd};
    }
    const std::pair<GntResolution, int> base{GntResolution::Base, 0};
};

TEST_F(ConvertDialogResolution, begins_with_the_high_one_of_the_source)
{
    setSource(NodeResolution::HighResolution, 3);
    open();
    ASSERT_TRUE(isOffered());
    EXPECT_EQ(ToStd(widget<QRadioButton>("pRadioResolutionSubd").text()), "High resolution (subd 3)");
    EXPECT_TRUE(widget<QRadioButton>("pRadioResolutionSubd").isChecked());
    EXPECT_EQ(choice(), std::pair(GntResolution::Subd, 3));
    SavePicture(*dialog, "convert-hd");
}

TEST_F(ConvertDialogResolution, begins_with_the_base_one_of_the_source)
{
    setSource(NodeResolution::BaseResolution, 2);
    open();
    ASSERT_TRUE(isOffered());
    EXPECT_EQ(ToStd(widget<QRadioButton>("pRadioResolutionSubd").text()), "High resolution (subd 2)");
    EXPECT_TRUE(widget<QRadioButton>("pRadioResolutionBase").isChecked());
    EXPECT_EQ(choice(), base);
}

TEST_F(ConvertDialogResolution, is_chosen_by_click_and_by_key_for_one_run)
{
    setSource(NodeResolution::BaseResolution, 2);
    open();
    click("pRadioResolutionSubd");
    EXPECT_EQ(choice(), std::pair(GntResolution::Subd, 2));
    widget<QRadioButton>("pRadioResolutionSubd").setFocus();
    QTest::keyClick(&widget<QRadioButton>("pRadioResolutionSubd"), Qt::Key_Left);
    EXPECT_EQ(choice(), base);
    QTest::keyClick(&widget<QRadioButton>("pRadioResolutionBase"), Qt::Key_Right);
    EXPECT_EQ(choice(), std::pair(GntResolution::Subd, 2));
    dialog->accept();
    EXPECT_EQ(choice(), std::pair(GntResolution::Subd, 2));
    openInNextRun();
    EXPECT_EQ(choice(), base);
}

TEST_F(ConvertDialogResolution, is_not_offered_when_the_sources_level_cannot_be_read)
{
    setSource(NodeResolution::HighResolution, 3);
    kst::daz::FindSubdivisionLevelIntProperty(*source, true)->setName(QStringLiteral("Elsewhere"));
    open();
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(choice(), base);
}

TEST_F(ConvertDialogResolution, is_not_offered_without_the_plugin_for_it)
{
    setSource(NodeResolution::HighResolution, 3);
    openhost::SetHdMorphSupport(false);
    ASSERT_FALSE(kst::daz::IsHdMorphPluginPresent());
    open();
    EXPECT_FALSE(isOffered());
    EXPECT_EQ(choice(), base);
    SavePicture(*dialog, "convert-without-hd");
}

TEST_F(ConvertDialogResolution, has_room_at_a_large_font_too)
{
    const LargeFont large;
    setSource(NodeResolution::HighResolution, 3);
    open();
    SavePicture(*dialog, "convert-hd-18pt");
    const auto& note = widget<QLabel>("label");
    EXPECT_GE(note.height(), note.heightForWidth(note.width()));
    const auto& radio = widget<QRadioButton>("pRadioResolutionSubd");
    EXPECT_GE(radio.width(), radio.sizeHint().width());
}

} // namespace
