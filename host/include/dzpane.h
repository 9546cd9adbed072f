// Panes.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzerror.h"

#include <QWidget>

class DzPane : public QWidget {
    Q_OBJECT
public:
    explicit DzPane(const QString& label);
    ~DzPane();

    QString getLabel() const { return _label; }
    DzError showPane();
    DzError hidePane();
    virtual void refresh();

private:
    QString _label;
};
