// Matching a figure's height.
// SPDX-License-Identifier: MIT

#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "ks_daz-helpers.h"
#include "ks_figure-height.h"
#include "tests/host/host_fixture.h"
#include "tests/plugin/mini_library.h"

namespace {

class FigureHeightTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        static const QString library = [] {
            const QString path = TestFolder() + QLatin1String("/heights");
            WriteMiniLibrary(path.toUtf8().constData());
            return path;
        }();
        dzApp->getContentMgr()->addContentDirectory(library, false);
        target = &load("People/Genesis 9/Genesis 9.duf");
        reference = &load("People/Genesis 3 Male/Genesis 3 Male.duf");
        height = kst::daz::FindFloatProperty(*target, kst::daz::PropertyLocation::Any,
                                             "body_bs_ProportionHeight", true);
    }

    static DzFigure& load(const char* path)
    {
        DzContentMgr& content = *dzApp->getContentMgr();
        EXPECT_TRUE(content.openFile(content.getAbsolutePath(QLatin1String(path), true), true));
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    static float top(const DzFigure& figure) { return figure.getWSBoundingBox().getMax().m_y; }

    DzFigure* target = nullptr;
    DzFigure* reference = nullptr;
    DzFloatProperty* height = nullptr;
};

TEST_F(FigureHeightTest, grows_until_the_figure_is_just_taller)
{
    reference->getYPosControl()->setValue(5.0f);
    EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, *height, *reference), 0.0f);
    EXPECT_GT(top(*target), top(*reference));
    height->setValue(height->getValue() - 0.005f);
    EXPECT_LE(top(*target), top(*reference));
}

TEST_F(FigureHeightTest, shrinks_until_the_figure_is_just_shorter)
{
    reference->getYPosControl()->setValue(-5.0f);
    EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, *height, *reference), 0.0f);
    EXPECT_LT(top(*target), top(*reference));
    EXPECT_LT(height->getValue(), 0.0f);
}

TEST_F(FigureHeightTest, goes_down_one_step_when_both_are_equal)
{
    reference->getYPosControl()->setValue(top(*target) - top(*reference));
    ASSERT_EQ(top(*target), top(*reference));
    EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, *height, *reference), 0.0f);
    EXPECT_FLOAT_EQ(height->getValue(), -0.005f);
}

TEST_F(FigureHeightTest, gives_up_on_a_dial_that_changes_nothing)
{
    DzFloatProperty& other = *kst::daz::FindFloatProperty(*target, kst::daz::PropertyLocation::Any,
                                                          "BaseMasculine_figure_ctrl_Character", true);
    other.setMinMax(-100.0f, 100.0f);
    reference->getYPosControl()->setValue(5.0f);
    EXPECT_EQ(kst::daz::AdjustFigureHeight(*target, other, *reference), -1.0f);
    EXPECT_NEAR(other.getValue(), 10.01f, 0.001f);
}

} // namespace
