// Where a slider's parts are, and how they are painted.
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>
#include <QString>

class QPainter;
class QWidget;

namespace openhost {

/// What there is to show.
struct SliderLook {
    QString label;         ///< empty for none
    QString text;          ///< the value; empty for none
    QString widestText;    ///< the room beside the bar is for this one
    double fraction = 0.0; ///< of the bar, 0 to 1, where the handle stands
    double origin = 0.0;   ///< of the bar, 0 to 1, where the filling begins
    bool isIndeterminate = false;
    bool isTextEditable = false;
    bool isHovered = false;
    bool isPressed = false;
};

/// In the widget's pixels; the label's and the text's are null where there is none.
struct SliderParts {
    QRect label;
    QRect bar;
    QRect text;
};

SliderParts LayOutSlider(const QWidget& slider, const SliderLook& look);
/// How far the handle can travel, in pixels; at least 1.
int HandleTravel(const SliderParts& parts, const QWidget& slider);
/// Of the bar, where the handle's middle would be at this pixel; may lie outside 0 to 1.
double FractionAt(int x, const SliderParts& parts, const QWidget& slider);
QSize SliderSizeHint(const QWidget& slider, const SliderLook& look);
/// Smaller than the hint by the bar's length only.
QSize SliderMinimumSize(const QWidget& slider, const SliderLook& look);

/// In the colours of the widget's palette.
void PaintSlider(QPainter& painter, const QWidget& slider, const SliderLook& look);

} // namespace openhost
