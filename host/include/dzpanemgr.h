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
    Q_INVOKABLE DzError showPane(DzPane* pane);
    Q_INVOKABLE DzError showPane(const QString& className);
    Q_INVOKABLE int getNumPanes() const { return _panes.size(); }
    Q_INVOKABLE DzPane* getPane(int index) const;
    /// The pane's parent widget keeps ownership.
    void addPane(DzPane* pane);

private slots:
    void handlePaneDestroyed(QObject* pane);

private:
    QList<DzPane*> _panes;
};
