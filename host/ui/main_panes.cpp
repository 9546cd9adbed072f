// The main window's panes.
// SPDX-License-Identifier: MIT

#include "main_panes.h"

#include "content_library_pane.h"
#include "dzmainwindow.h"
#include "hierarchy_pane.h"
#include "parameters_pane.h"
#include "script_pane.h"
#include "smart_content_pane.h"

#include <QGuiApplication>
#include <QTabWidget>

namespace openhost {

void AddPanes(DzMainWindow& window)
{
    DzPaneMgr& panes = *window.getPaneMgr();
    window.setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    // A window's docks stay on their sides where all else is mirrored.
    const bool isMirrored = QGuiApplication::isRightToLeft();
    const Qt::DockWidgetArea before = isMirrored ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea,
                             after = isMirrored ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea;
    // Beside narrow panes there is room for whole titles, above them there is not.
    window.setTabPosition(before, isMirrored ? QTabWidget::East : QTabWidget::West);
    panes.addPane(new DzContentLibraryPane, before);
    panes.addPane(new DzSmartContentPane, before);
    panes.addPane(new DzScriptPane, before);
    panes.addPane(new DzHierarchyPane, after);
    panes.addPane(new DzParametersPane, after);
    panes.showPane(QStringLiteral("DzContentLibraryPane"));
    panes.showPane(QStringLiteral("DzParametersPane"));
}

} // namespace openhost
