// Figures that move with the one they are fitted to.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "figure/fitting.h"
#include "tests/host/host_fixture.h"

#include <cmath>

namespace {

class FittingTest : public HostTest {
protected:
    static DzFigure* makeFigure(const char* label)
    {
        auto* const figure = new DzFigure;
        figure->setLabel(QLatin1String(label));
        auto* const bone = new DzBone;
        bone->setName(QStringLiteral("arm"));
        figure->addNodeChild(bone);
        dzScene->addNode(figure);
        return figure;
    }
    static DzFloatProperty& bend(const DzFigure& figure)
    {
        return *figure.findBone(QStringLiteral("arm"))->getXRotControl();
    }
    void SetUp() override
    {
        HostTest::SetUp();
        shirt = makeFigure("Shirt");
        one = makeFigure("One");
        other = makeFigure("Other");
        bend(*one).setValue(10.0f);
        bend(*other).setValue(40.0f);
    }
    DzFigure *shirt = nullptr, *one = nullptr, *other = nullptr;
};

TEST_F(FittingTest, adds_what_is_its_own_to_what_it_follows)
{
    bend(*shirt).setValue(5.0f);
    openhost::FitTo(*shirt, *one);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 15.0f);
    bend(*one).setValue(20.0f);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 25.0f);
}

TEST_F(FittingTest, follows_once_however_often_it_changes_hands)
{
    openhost::FitTo(*shirt, *one);
    openhost::FitTo(*shirt, *one);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 10.0f);
    openhost::FitTo(*shirt, *other);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 40.0f);
    openhost::FitTo(*shirt, *one);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 10.0f);
    EXPECT_EQ(bend(*shirt).getNumControllers(), 1);
}

TEST_F(FittingTest, ends_with_the_follow_target)
{
    openhost::FitTo(*shirt, *one);
    shirt->setFollowTarget(nullptr);
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 0.0f);
    openhost::FitTo(*shirt, *one);
    dzScene->removeNode(one);
    TestHost().purge();
    EXPECT_FLOAT_EQ(bend(*shirt).getValue(), 0.0f);
}

TEST_F(FittingTest, in_a_circle_comes_to_an_end)
{
    openhost::FitTo(*shirt, *one);
    openhost::FitTo(*one, *shirt);
    EXPECT_TRUE(std::isfinite(bend(*shirt).getValue()));
    EXPECT_TRUE(std::isfinite(bend(*one).getValue()));
}

} // namespace
