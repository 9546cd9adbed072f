// Lines over the picture of a viewport.
// SPDX-License-Identifier: MIT

#include "viewport_lines.h"

#include <QPainter>

namespace openhost {

using geometry::Vec3f;

namespace {

constexpr float reach = 300.0f, square = 50.0f; ///< of the grid; cm

void DrawAxis(QPainter& painter, const Projector& projector, Vec3f direction, const QColor& color,
              const QString& name)
{
    QLineF line;
    if (!projector.line({}, direction * reach, &line))
        return;
    painter.setPen(QPen(color, 2.0));
    painter.drawLine(line);
    painter.drawText(line.p2() + QPointF(4.0, -4.0), name);
}

} // namespace

bool Projector::line(Vec3f a, Vec3f b, QLineF* result) const
{
    constexpr float nearest = 0.1f;
    const float depthA = depth(a), depthB = depth(b);
    if (_camera.isPerspective) {
        if (depthA < nearest && depthB < nearest)
            return false;
        if (depthA < nearest)
            a = a + (b - a) * ((nearest - depthA) / (depthB - depthA));
        else if (depthB < nearest)
            b = b + (a - b) * ((nearest - depthB) / (depthA - depthB));
    }
    *result = QLineF(place(a), place(b));
    return true;
}

QPointF Projector::place(Vec3f p) const
{
    const Vec3f at = _camera.project(p, _aspect);
    return QPointF(0.5 * (double(at.x) + 1.0) * _size.width(), 0.5 * (1.0 - double(at.y)) * _size.height());
}

void AddBox(const geometry::Box3f& box, const Projector& projector, QVector<QLineF>* lines)
{
    const auto corner = [&](int i) {
        return Vec3f{i & 1 ? box.max.x : box.min.x, i & 2 ? box.max.y : box.min.y,
                     i & 4 ? box.max.z : box.min.z};
    };
    for (int from = 0; from < 8; ++from)
        for (const int axis : {1, 2, 4}) {
            QLineF line;
            if (!(from & axis) && projector.line(corner(from), corner(from | axis), &line))
                lines->append(line);
        }
}

void DrawLines(QPainter& painter, const QVector<QLineF>& lines, const QColor& color)
{
    painter.setPen(QPen(color, 1.0));
    painter.drawLines(lines);
}

void DrawGround(QPainter& painter, const Projector& projector, const QColor& color)
{
    QVector<QLineF> lines;
    QLineF line;
    for (float at = -reach; at <= reach; at += square) {
        if (projector.line({at, 0.0f, -reach}, {at, 0.0f, reach}, &line))
            lines.append(line);
        if (projector.line({-reach, 0.0f, at}, {reach, 0.0f, at}, &line))
            lines.append(line);
    }
    DrawLines(painter, lines, color);
    // Told apart by their letters too, for whoever takes the colours for one.
    DrawAxis(painter, projector, {1.0f, 0.0f, 0.0f}, QColor(230, 120, 80), QStringLiteral("X"));
    DrawAxis(painter, projector, {0.0f, 0.0f, 1.0f}, QColor(96, 160, 240), QStringLiteral("Z"));
}

} // namespace openhost
