// A viewport of the main window.
// SPDX-License-Identifier: MIT

#pragma once

#include "dz3dviewport.h"

#include <QPointer>
#include <QWidget>

/// Frame and contents.
class DzViewport : public QWidget {
    Q_OBJECT
public:
    explicit DzViewport(QWidget* parent);
    ~DzViewport();

    /// The picture of the scene; null once it was deleted.
    Q_INVOKABLE Dz3DViewport* get3DViewport() const { return _view; }

private:
    QPointer<Dz3DViewport> _view;
};
