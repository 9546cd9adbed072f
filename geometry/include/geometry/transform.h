// Rotations, affine maps and dual quaternions in double precision.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"

#include <Eigen/Geometry>

#include <string_view>

namespace geometry {

enum class RotationOrder { XYZ, XZY, YXZ, YZX, ZXY, ZYX };

/// @throws base::FormatError  the text is none of the six orders
RotationOrder ParseRotationOrder(std::string_view text);
/// The three letters, which last as long as the program.
std::string_view RotationOrderName(RotationOrder order);

/// Rotation by Euler angles in degrees. The order's first letter is applied first (innermost): "YZX" is
/// Rx * Rz * Ry for column vectors.
Eigen::Quaterniond EulerRotation(const Eigen::Vector3d& degrees, RotationOrder order);

/// To double precision and back, for sums that single precision would blur.
inline Eigen::Vector3d ToEigen(Vec3f v)
{
    return {v.x, v.y, v.z};
}
inline Vec3f FromEigen(const Eigen::Vector3d& v)
{
    return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z())};
}

} // namespace geometry
