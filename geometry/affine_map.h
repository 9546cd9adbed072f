// What moves one vertex: x -> linear * x + offset.
// SPDX-License-Identifier: MIT

#pragma once

#include <Eigen/Core>

namespace geometry {

struct AffineMap {
    Eigen::Matrix3d linear = Eigen::Matrix3d::Zero();
    Eigen::Vector3d offset = Eigen::Vector3d::Zero(); ///< cm

    static AffineMap identity() { return {Eigen::Matrix3d::Identity(), Eigen::Vector3d::Zero()}; }
    /// First the other, then this one.
    AffineMap after(const AffineMap& first) const
    {
        return {linear * first.linear, linear * first.offset + offset};
    }
    /// This one with the share, the other with the rest of 1.
    AffineMap mixedWith(const AffineMap& other, double share) const
    {
        return {share * linear + (1.0 - share) * other.linear, share * offset + (1.0 - share) * other.offset};
    }
};

} // namespace geometry
