// Panes and the docks that hold them.
// SPDX-License-Identifier: MIT

#include "dzpane.h"
#include "dzpanemgr.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMainWindow>

#include <algorithm>

DzPaneMgr::DzPaneMgr(QWidget* parent) : QWidget(parent)
{
    hide();
}
DzPaneMgr::~DzPaneMgr() = default;

DzPane* DzPaneMgr::findPane(const QString& className) const
{
    for (DzPane* pane : _panes) {
        if (className == QLatin1String(pane->metaObject()->className()))
            return pane;
    }
    return nullptr;
}

DzError DzPaneMgr::showPane(DzPane* pane)
{
    return _panes.contains(pane) ? pane->showPane() : DZ_NOT_FOUND_ERROR;
}
DzError DzPaneMgr::showPane(const QString& className)
{
    return showPane(findPane(className));
}

DzError DzPaneMgr::hidePane(DzPane* pane)
{
    return _panes.contains(pane) ? pane->hidePane() : DZ_NOT_FOUND_ERROR;
}
DzError DzPaneMgr::hidePane(const QString& className)
{
    return hidePane(findPane(className));
}

DzPane* DzPaneMgr::getPane(int index) const
{
    return _panes.value(index);
}

namespace {

QDockWidget* DockOf(const QWidget& pane)
{
    return qobject_cast<QDockWidget*>(pane.parentWidget());
}

/// A dock of the window that stands on that side; null if none does.
QDockWidget* DockAt(const QMainWindow& window, Qt::DockWidgetArea area)
{
    for (QDockWidget* dock : window.findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (window.dockWidgetArea(dock) == area)
            return dock;
    }
    return nullptr;
}

void Dock(DzPane& pane, QMainWindow& window, Qt::DockWidgetArea area)
{
    QDockWidget* const neighbour = DockAt(window, area);
    auto* const dock = new QDockWidget(pane.windowTitle(), &window);
    // The window's layout is saved under this name.
    dock->setObjectName(QLatin1String(pane.metaObject()->className()) + QLatin1String("Dock"));
    dock->setWidget(&pane);
    window.addDockWidget(area, dock);
    if (neighbour)
        window.tabifyDockWidget(neighbour, dock);
    // An empty dock is of no use.
    QObject::connect(&pane, SIGNAL(destroyed()), dock, SLOT(deleteLater()));
}

} // namespace

void DzPaneMgr::addPane(DzPane* pane, Qt::DockWidgetArea area)
{
    if (!pane || _panes.contains(pane))
        return;
    _panes.append(pane);
    connect(pane, SIGNAL(destroyed(QObject*)), SLOT(handlePaneDestroyed(QObject*)));
    if (auto* const mainWindow = qobject_cast<QMainWindow*>(window()))
        Dock(*pane, *mainWindow, area);
}

void DzPaneMgr::handlePaneDestroyed(QObject* pane)
{
    // It is no pane any more, only the object that was one.
    const auto isIt = [pane](const QObject* one) { return one == pane; };
    _panes.erase(std::remove_if(_panes.begin(), _panes.end(), isIt), _panes.end());
}

DzPane::DzPane(const QString& label) : _label(label)
{
    // Its label tells it apart in any language.
    setWindowTitle(QCoreApplication::translate("openhost::Panes", label.toUtf8().constData()));
}
DzPane::~DzPane() = default;

DzError DzPane::showPane()
{
    QWidget* const shown = DockOf(*this) ? static_cast<QWidget*>(DockOf(*this)) : this;
    shown->show();
    shown->raise();
    return DZ_NO_ERROR;
}

DzError DzPane::hidePane()
{
    QWidget* const hidden = DockOf(*this) ? static_cast<QWidget*>(DockOf(*this)) : this;
    hidden->hide();
    return DZ_NO_ERROR;
}

void DzPane::refresh() {}
