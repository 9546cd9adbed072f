// The main window's panes.
// SPDX-License-Identifier: MIT

#include "main_panes.h"

#include "content_library_pane.h"
#include "dzmainwindow.h"
#include "hierarchy_pane.h"
#include "parameters_pane.h"
#include "script_pane.h"
#include "smart_content_pane.h"

#include <QTabWidget>

namespace openhost {

void AddPanes(DzMainWindow& window)
{
    DzPaneMgr& panes = *window.getPaneMgr();
    window.setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    // Beside narrow panes there is room for whole titles, above them there is not.
    window.setTabPosition(Qt::LeftDockWidgetArea, QTabWidget::West);
    panes.addPane(new DzContentLibraryPane, Qt::LeftDockWidgetArea);
    panes.addPane(new DzSmartContentPane, Qt::LeftDockWidgetArea);
    panes.addPane(new DzScriptPane, Qt::LeftDockWidgetArea);
    panes.addPane(new DzHierarchyPane, Qt::RightDockWidgetArea);
    panes.addPane(new DzParametersPane, Qt::RightDockWidgetArea);
    panes.showPane(QStringLiteral("DzContentLibraryPane"));
    panes.showPane(QStringLiteral("DzParametersPane"));
}

} // namespace openhost
