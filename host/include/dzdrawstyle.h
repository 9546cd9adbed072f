// How a viewport draws the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"

/// One of the viewport manager's styles; it lives as long as the manager.
class DzDrawStyle : public DzBase {
    Q_OBJECT
public:
    explicit DzDrawStyle(const QString& description);
    ~DzDrawStyle();

    /// The text by which the user knows it, such as "Smooth Shaded".
    Q_INVOKABLE QString getDescription() const { return _description; }

private:
    QString _description;
};

/// A style that the user can choose.
class DzUserDrawStyle : public DzDrawStyle {
    Q_OBJECT
public:
    explicit DzUserDrawStyle(const QString& description);
    ~DzUserDrawStyle();
};
