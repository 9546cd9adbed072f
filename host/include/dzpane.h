// Panes.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"

#include <QWidget>

/// A part of the main window that people dock, stack and close.
class DzPane : public QWidget {
    Q_OBJECT
public:
    explicit DzPane(const QString& label);
    ~DzPane();

    Q_INVOKABLE QString getLabel() const { return _label; }
    Q_INVOKABLE DzError showPane();
    Q_INVOKABLE DzError hidePane();
    /// Brings what the pane shows up to date, now.
    virtual void refresh();

private:
    QString _label;
};
