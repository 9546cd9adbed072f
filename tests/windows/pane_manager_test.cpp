// The main window's panes as a person finds them.
// SPDX-License-Identifier: MIT

#include "dzmainwindow.h"
#include "dzpane.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QDockWidget>
#include <QSet>
#include <QTest>

namespace {

class PaneManagerTest : public HostTest {
protected:
    static DzMainWindow& window() { return *dzApp->getInterface(); }
    static DzPaneMgr& panes() { return *window().getPaneMgr(); }
    static DzPane* find(const char* name) { return panes().findPane(QLatin1String(name)); }
    static void show()
    {
        window().resize(1400, 900);
        window().show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window()));
    }
};

TEST_F(PaneManagerTest, has_every_pane_docked_under_its_name)
{
    ASSERT_EQ(panes().getNumPanes(), 5);
    QSet<QString> labels;
    for (int i = 0; i < panes().getNumPanes(); ++i) {
        const DzPane& pane = *panes().getPane(i);
        const auto* const dock = qobject_cast<QDockWidget*>(pane.parentWidget());
        ASSERT_NE(dock, nullptr);
        EXPECT_EQ(dock->windowTitle(), pane.getLabel());
        labels.insert(pane.getLabel());
    }
    EXPECT_EQ(labels, (QSet<QString>{QStringLiteral("Parameters"), QStringLiteral("Scene"),
                                     QStringLiteral("Content Library"), QStringLiteral("Smart Content"),
                                     QStringLiteral("Script IDE")}));
    EXPECT_EQ(panes().getPane(-1), nullptr);
    EXPECT_EQ(panes().getPane(5), nullptr);
    EXPECT_EQ(find("DzPane"), nullptr) << "exactly that class";
}

TEST_F(PaneManagerTest, brings_a_pane_to_the_front)
{
    show();
    DzPane* const library = find("DzContentLibraryPane");
    DzPane* const smart = find("DzSmartContentPane");
    QTRY_VERIFY(library->isVisible() && !library->visibleRegion().isEmpty());
    EXPECT_TRUE(smart->visibleRegion().isEmpty()) << "it is behind a tab";
    EXPECT_EQ(panes().showPane(smart), DZ_NO_ERROR);
    QTRY_VERIFY(!smart->visibleRegion().isEmpty());
    EXPECT_TRUE(library->visibleRegion().isEmpty());
}

TEST_F(PaneManagerTest, shows_a_pane_that_was_closed)
{
    show();
    DzPane* const parameters = find("DzParametersPane");
    EXPECT_EQ(panes().hidePane(parameters), DZ_NO_ERROR);
    QTRY_VERIFY(!parameters->isVisible());
    EXPECT_EQ(panes().showPane(QStringLiteral("DzParametersPane")), DZ_NO_ERROR);
    QTRY_VERIFY(parameters->isVisible());
}

TEST_F(PaneManagerTest, refuses_a_pane_that_is_none_of_its_own)
{
    DzPane foreign(QStringLiteral("Foreign"));
    EXPECT_NE(panes().showPane(&foreign), DZ_NO_ERROR);
    EXPECT_NE(panes().showPane(static_cast<DzPane*>(nullptr)), DZ_NO_ERROR);
    EXPECT_NE(panes().showPane(QStringLiteral("DzNoPane")), DZ_NO_ERROR);
    EXPECT_NE(panes().hidePane(&foreign), DZ_NO_ERROR);
    EXPECT_NE(panes().hidePane(QStringLiteral("DzNoPane")), DZ_NO_ERROR);
    EXPECT_FALSE(foreign.isVisible());
}

TEST_F(PaneManagerTest, forgets_a_pane_that_is_deleted_and_its_dock_too)
{
    show();
    const QString dockName = QStringLiteral("DzParametersPaneDock");
    ASSERT_NE(window().findChild<QDockWidget*>(dockName), nullptr);
    delete find("DzParametersPane");
    EXPECT_EQ(find("DzParametersPane"), nullptr);
    EXPECT_EQ(panes().getNumPanes(), 4);
    QTRY_VERIFY(!window().findChild<QDockWidget*>(dockName));
}

TEST_F(PaneManagerTest, stands_in_the_window_at_any_font)
{
    show();
    QCoreApplication::processEvents();
    SavePicture(window(), "main_window");
    const LargeFont large;
    QCoreApplication::processEvents();
    SavePicture(window(), "main_window_large");
    EXPECT_GT(find("DzParametersPane")->height(), 200);
}

} // namespace
