// The look of the application.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzstyledefs.h"

#include <QColor>
#include <QObject>
#include <QPixmap>
#include <QString>

class QAbstractButton;

/// Colours, lengths and pictures that windows of plug-ins share with those of the application.
class DzStyle : public QObject {
    Q_OBJECT

public:
    DzStyle();
    ~DzStyle() override;

    /// Gives a button a picture in the colour of its text; only the picture's opacity counts.
    /// @param pixmapName  as for standardPixmap()
    /// @return false, the button being left as it is, if there is no such picture
    Q_INVOKABLE bool setStyledIcon(QAbstractButton* button, const QString& pixmapName) const;
    /// @param name  one of the style's pictures ("add", "remove", "close", "left", "right", "up", "down",
    ///              "restore"), else the path of a resource or file
    /// @return a null pixmap if there is none
    Q_INVOKABLE QPixmap standardPixmap(const QString& name) const;
    /// @param name  of a palette role, such as "Window", "ButtonText" or "Highlight", in the active state
    /// @return an invalid colour for an unknown name
    Q_INVOKABLE QColor getInterfaceColor(const QString& name) const;
    /// @param metric  a DzPixelMetric
    /// @return pixels; 0 for an unknown metric
    Q_INVOKABLE int pixelMetric(int metric) const;
};
