// The panes of the main window.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"

#include <QList>
#include <QWidget>

class DzPane;

class DzPaneMgr : public QWidget {
    Q_OBJECT
public:
    explicit DzPaneMgr(QWidget* parent);
    ~DzPaneMgr();

    /// The pane of exactly that class; null if none.
    Q_INVOKABLE DzPane* findPane(const QString& className) const;
    /// Docks the pane and brings it to the front; within a hidden window it stays unseen until that is shown.
    /// @return an error code for null and for a pane that is not one of these
    Q_INVOKABLE DzError showPane(DzPane* pane);
    Q_INVOKABLE DzError showPane(const QString& className);
    Q_INVOKABLE DzError hidePane(DzPane* pane);
    Q_INVOKABLE DzError hidePane(const QString& className);
    Q_INVOKABLE int getNumPanes() const { return _panes.size(); }
    Q_INVOKABLE DzPane* getPane(int index) const; ///< null out of range
    /// Docks the pane in the manager's window, behind a tab where the side has panes already; the window owns
    /// it then. Without a window the pane stays with whom it was.
    void addPane(DzPane* pane, Qt::DockWidgetArea area = Qt::RightDockWidgetArea);

private slots:
    void handlePaneDestroyed(QObject* pane);

private:
    QList<DzPane*> _panes;
};
