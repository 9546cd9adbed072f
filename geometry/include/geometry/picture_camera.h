// Where a picture is taken from.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"

namespace geometry {

struct Ray {
    Vec3f origin;    ///< cm
    Vec3f direction; ///< unit
};

/// An upright rectangle in front of an eye. The three axes are unit and at right angles to each other.
struct PictureCamera {
    Vec3f eye; ///< cm
    Vec3f right{1, 0, 0}, up{0, 1, 0}, forward{0, 0, -1};
    float halfHeight = 0.16f;  ///< of the picture; at distance 1 with perspective, in cm without
    bool isPerspective = true; ///< without it all rays are parallel

    /// @param x, y    -1 to 1, right and up
    /// @param aspect  width of the picture through its height
    Ray ray(float x, float y, float aspect) const;

    /// Where a point (cm) is seen: x and y as above, z its depth along `forward` in cm. With perspective, x
    /// and y mean something only for a depth above 0.
    Vec3f project(Vec3f point, float aspect) const;
};

/// Through a long lens and level, the eight corners of a frame (cm) inside the picture.
/// @param turn  radians about the vertical axis; 0 looks along negative z
PictureCamera CameraAround(const Box3f& frame, float turn, float aspect);

/// How far, in cm and from the frame's centre, the eye must be along `forward` for the frame to fit.
/// @param halfHeight  at distance 1
float DistanceToSee(const Box3f& frame, const PictureCamera& axes, float halfHeight, float aspect);

} // namespace geometry
