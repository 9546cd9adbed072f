// Where nodes stand in the world.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/transform.h"

class DzNode;

namespace openhost {

/// A point x of the rest shape stands at linear * (x - center) + origin.
struct NodeTransform {
    Eigen::Quaterniond rotation = Eigen::Quaterniond::Identity(); ///< accumulated
    Eigen::Matrix3d scale = Eigen::Matrix3d::Identity();          ///< accumulated
    Eigen::Matrix3d linear = Eigen::Matrix3d::Identity();         ///< rotation times scale
    Eigen::Matrix3d ownScale = Eigen::Matrix3d::Identity(); ///< the node's own, turned by its orientation
    Eigen::Vector3d center = Eigen::Vector3d::Zero();       ///< cm
    Eigen::Vector3d origin = Eigen::Vector3d::Zero();       ///< where the centre stands, cm

    /// Moves nothing.
    bool isIdentity() const { return linear == Eigen::Matrix3d::Identity() && origin == center; }
    Eigen::Vector3d apply(const Eigen::Vector3d& x) const { return linear * (x - center) + origin; }
};

/// Evaluated now if out of date.
const NodeTransform& WorldTransform(const DzNode& node);

/// The node's own channels.
struct LocalPlace {
    Eigen::Vector3d center, orientation, rotation, translation, scale;
    geometry::RotationOrder order;

    bool isAtRest() const
    {
        return rotation.isZero(0.0) && translation.isZero(0.0) && scale == Eigen::Vector3d::Ones();
    }
};
LocalPlace ReadPlace(const DzNode& node);

} // namespace openhost
