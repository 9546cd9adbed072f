// Figures that are loaded one after the other.
// SPDX-License-Identifier: MIT

#include "openhost/diagnostics.h"
#include "openhost/length_unit.h"
#include "tests/desktop/desktop_fixture.h"

#include <dzapp.h>
#include <dzbox3.h>
#include <dzfigure.h>
#include <dzfloatproperty.h>
#include <dzscene.h>
#include <dzscript.h>
#include <dzundostack.h>

#include <QApplication>

namespace {

class DesktopRoom : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        start();
    }
    static float placeOf(const DzNode& node) { return node.getXPosControl()->getValue(); }
};

TEST_F(DesktopRoom, a_second_figure_stands_beside_the_first_and_both_are_seen)
{
    DzFigure& first = openFigure(sourceFile);
    EXPECT_EQ(placeOf(first), 0.0f);
    DzFigure& second = openFigure(targetFile);
    EXPECT_GT(second.getWSBoundingBox().getMin().m_x, first.getWSBoundingBox().getMax().m_x);
    DzFigure& third = openFigure(targetFile);
    EXPECT_GT(third.getWSBoundingBox().getMin().m_x, second.getWSBoundingBox().getMax().m_x);
}

TEST_F(DesktopRoom, a_figure_with_room_or_a_place_of_its_own_stays)
{
    DzFigure& first = openFigure(sourceFile);
    first.getXPosControl()->setValue(500.0f);
    EXPECT_EQ(placeOf(openFigure(targetFile)), 0.0f);
}

TEST_F(DesktopRoom, tells_how_far_in_the_unit_that_is_chosen)
{
    openhost::ShowLengthsIn(openhost::LengthUnit::Inch);
    const openhost::DiagnosticsCollector told(dzApp->diagnostics());
    openFigure(sourceFile);
    const float way = placeOf(openFigure(targetFile));
    openhost::ShowLengthsIn(openhost::LengthUnit::Centimetre);
    ASSERT_GT(way, 0.0f);
    const std::string expected =
        QStringLiteral("was put %1 in to the right, beside the figure that stood there")
            .arg(double(way) / 2.54, 0, 'f', 1)
            .toStdString();
    std::vector<std::string> notes;
    for (const base::Diagnostic& one : told.all())
        notes.push_back(one.what);
    EXPECT_NE(std::find(notes.begin(), notes.end(), expected), notes.end()) << expected;
}

TEST_F(DesktopRoom, one_step_back_takes_the_second_figure_away)
{
    openFigure(sourceFile);
    QApplication::processEvents();
    openFigure(targetFile);
    QApplication::processEvents();
    dzUndoStack->undo();
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    dzUndoStack->redo();
    ASSERT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_GT(placeOf(*dzScene->getSkeleton(1)), 0.0f);
}

TEST_F(DesktopRoom, scripts_find_their_figures_where_they_load_them)
{
    openFigure(sourceFile);
    DzScript script;
    script.setCode(QStringLiteral("App.getContentMgr().openFile('%1', true);").arg(pathOf(targetFile)));
    ASSERT_TRUE(script.execute());
    ASSERT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_EQ(placeOf(*dzScene->getSkeleton(1)), 0.0f);
}

} // namespace
