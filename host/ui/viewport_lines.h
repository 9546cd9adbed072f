// Lines over the picture of a viewport.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_camera.h"

#include <QColor>
#include <QLineF>
#include <QSize>
#include <QVector>

class QPainter;

namespace openhost {

/// Places points on the picture and cuts lines at the eye.
class Projector {
public:
    /// @param camera  must outlive it
    Projector(const geometry::PictureCamera& camera, const QSize& size)
        : _camera(camera), _size(size), _aspect(float(size.width()) / float(size.height()))
    {
    }

    /// False when the line lies behind the eye.
    bool line(geometry::Vec3f a, geometry::Vec3f b, QLineF* result) const;

private:
    float depth(geometry::Vec3f p) const { return Dot(p - _camera.eye, _camera.forward); }
    QPointF place(geometry::Vec3f p) const;

    const geometry::PictureCamera& _camera;
    QSize _size;
    float _aspect;
};

/// The edges of a box.
void AddBox(const geometry::Box3f& box, const Projector& projector, QVector<QLineF>* lines);
void DrawLines(QPainter& painter, const QVector<QLineF>& lines, const QColor& color);

/// A grid at height 0 with the axes X and Z, named at their ends.
void DrawGround(QPainter& painter, const Projector& projector, const QColor& lines);

} // namespace openhost
