// The style's own pictures.
// SPDX-License-Identifier: MIT

#include "style_pictures.h"

#include <QPainter>
#include <QPainterPath>

namespace openhost {

namespace {

/// Lines through points of the unit square, y downwards.
QPainterPath Lines(std::initializer_list<std::initializer_list<QPointF>> strokes)
{
    QPainterPath path;
    for (const auto& stroke : strokes) {
        path.moveTo(*stroke.begin());
        for (const QPointF& point : stroke)
            path.lineTo(point);
    }
    return path;
}

/// Most of a circle, with an arrow's head where it ends.
QPainterPath Restore()
{
    QPainterPath path = Lines({{{0.2, 0.15}, {0.2, 0.4}, {0.45, 0.4}}});
    path.moveTo(0.2, 0.4);
    const QRectF circle(0.15, 0.2, 0.65, 0.65);
    path.arcMoveTo(circle, 165.0);
    path.arcTo(circle, 165.0, -290.0);
    return path;
}

QPainterPath Shape(const QString& name)
{
    if (name == QLatin1String("add"))
        return Lines({{{0.5, 0.2}, {0.5, 0.8}}, {{0.2, 0.5}, {0.8, 0.5}}});
    if (name == QLatin1String("remove"))
        return Lines({{{0.2, 0.5}, {0.8, 0.5}}});
    if (name == QLatin1String("close"))
        return Lines({{{0.25, 0.25}, {0.75, 0.75}}, {{0.75, 0.25}, {0.25, 0.75}}});
    if (name == QLatin1String("left"))
        return Lines({{{0.6, 0.2}, {0.3, 0.5}, {0.6, 0.8}}});
    if (name == QLatin1String("right"))
        return Lines({{{0.4, 0.2}, {0.7, 0.5}, {0.4, 0.8}}});
    if (name == QLatin1String("up"))
        return Lines({{{0.2, 0.6}, {0.5, 0.3}, {0.8, 0.6}}});
    if (name == QLatin1String("down"))
        return Lines({{{0.2, 0.4}, {0.5, 0.7}, {0.8, 0.4}}});
    return name == QLatin1String("restore") ? Restore() : QPainterPath();
}

} // namespace

QPixmap DrawStylePicture(const QString& name, int size)
{
    const QPainterPath shape = Shape(name);
    if (shape.isEmpty())
        return QPixmap();
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size, size);
    painter.setPen(QPen(Qt::black, 0.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(shape);
    return picture;
}

} // namespace openhost
