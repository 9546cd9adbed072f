// The icons of the tool bar.
// SPDX-License-Identifier: MIT

#include "drawn_icons.h"

#include "openhost/palette_icon.h"

#include <QPainter>
#include <QPainterPath>

#include <initializer_list>

namespace desktop {

namespace {

using Stroke = std::initializer_list<QPointF>;

/// Lines through points of the unit square, y downwards.
QPainterPath Lines(std::initializer_list<Stroke> strokes)
{
    QPainterPath path;
    for (const Stroke& stroke : strokes) {
        path.moveTo(*stroke.begin());
        for (const QPointF& point : stroke)
            path.lineTo(point);
    }
    return path;
}

QPainterPath Folder()
{
    return Lines({{{0.1, 0.82}, {0.1, 0.22}, {0.4, 0.22}, {0.48, 0.32}, {0.82, 0.32}, {0.82, 0.46}},
                  {{0.1, 0.82}, {0.27, 0.46}, {0.95, 0.46}, {0.78, 0.82}, {0.1, 0.82}}});
}

QPainterPath Disk()
{
    return Lines({{{0.14, 0.14}, {0.72, 0.14}, {0.86, 0.28}, {0.86, 0.86}, {0.14, 0.86}, {0.14, 0.14}},
                  {{0.32, 0.14}, {0.32, 0.36}, {0.64, 0.36}, {0.64, 0.14}},
                  {{0.28, 0.86}, {0.28, 0.56}, {0.72, 0.56}, {0.72, 0.86}}});
}

/// One figure, an arrow, another figure.
QPainterPath Conversion()
{
    QPainterPath path = Lines({{{0.36, 0.55}, {0.62, 0.55}}, {{0.53, 0.45}, {0.63, 0.55}, {0.53, 0.65}}});
    for (const double x : {0.18, 0.82}) {
        path.addEllipse(QPointF(x, 0.24), 0.1, 0.1);
        path.moveTo(x - 0.14, 0.86);
        path.cubicTo(x - 0.14, 0.3, x + 0.14, 0.3, x + 0.14, 0.86);
        path.closeSubpath();
    }
    return path;
}

QPainterPath Back()
{
    QPainterPath path = Lines({{{0.36, 0.14}, {0.14, 0.36}, {0.36, 0.58}}, {{0.14, 0.36}, {0.58, 0.36}}});
    path.arcTo(QRectF(0.34, 0.36, 0.48, 0.46), 90.0, -180.0);
    path.lineTo(0.36, 0.82);
    return path;
}

QPainterPath Corners()
{
    return Lines({{{0.12, 0.34}, {0.12, 0.12}, {0.34, 0.12}},
                  {{0.66, 0.12}, {0.88, 0.12}, {0.88, 0.34}},
                  {{0.88, 0.66}, {0.88, 0.88}, {0.66, 0.88}},
                  {{0.34, 0.88}, {0.12, 0.88}, {0.12, 0.66}}});
}

QPainterPath Framed(bool isSelection)
{
    QPainterPath path = Corners();
    if (isSelection) {
        path.addEllipse(QPointF(0.5, 0.5), 0.18, 0.18);
    } else {
        path.addEllipse(QPointF(0.36, 0.5), 0.1, 0.16);
        path.addEllipse(QPointF(0.64, 0.5), 0.1, 0.16);
    }
    return path;
}

QPainterPath Cube()
{
    return Lines(
        {{{0.5, 0.08}, {0.88, 0.28}, {0.88, 0.72}, {0.5, 0.92}, {0.12, 0.72}, {0.12, 0.28}, {0.5, 0.08}},
         {{0.12, 0.28}, {0.5, 0.5}, {0.88, 0.28}},
         {{0.5, 0.5}, {0.5, 0.92}}});
}

QPainterPath Globe()
{
    QPainterPath path = Lines({{{0.14, 0.5}, {0.86, 0.5}}});
    path.addEllipse(QPointF(0.5, 0.5), 0.36, 0.36);
    path.addEllipse(QPointF(0.5, 0.5), 0.16, 0.36);
    return path;
}

QPainterPath ShapeOf(DrawnIcon icon)
{
    switch (icon) {
    case DrawnIcon::Open:
        return Folder();
    case DrawnIcon::Save:
        return Disk();
    case DrawnIcon::Convert:
        return Conversion();
    case DrawnIcon::Undo:
        return Back();
    case DrawnIcon::Redo:
        return QTransform(-1.0, 0.0, 0.0, 1.0, 1.0, 0.0).map(Back());
    case DrawnIcon::FrameAll:
        return Framed(false);
    case DrawnIcon::FrameSelection:
        return Framed(true);
    case DrawnIcon::Views:
        return Cube();
    case DrawnIcon::Styles:
        return Globe();
    }
    return QPainterPath();
}

void Draw(DrawnIcon icon, QPainter& painter, const QRect& rect, const QColor& color)
{
    const int side = qMin(rect.width(), rect.height());
    painter.translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
    painter.scale(side, side);
    painter.setPen(QPen(color, 0.075, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(ShapeOf(icon));
}

} // namespace

QIcon MakeIcon(DrawnIcon icon)
{
    return openhost::MakePaletteIcon(
        [icon](QPainter& painter, const QRect& rect, const QPalette& palette, QPalette::ColorGroup group,
               QIcon::State) { Draw(icon, painter, rect, palette.color(group, QPalette::ButtonText)); });
}

} // namespace desktop
