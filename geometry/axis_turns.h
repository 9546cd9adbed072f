// The turns of a skin with weights of their own for each angle of a joint.
// SPDX-License-Identifier: MIT

#pragma once

#include "affine_map.h"
#include "geometry/skinning.h"

namespace geometry {

/// A vertex follows each joint that holds it or is above one that does. It turns about the joint by so much
/// of each angle as the joint and all below it hold of the vertex for this angle, the lowest joint first.
/// What one joint holds alone so moves with it rigidly, as in every other blend; what two hold goes round
/// the lower one by a part of its angles, instead of across the chord.
class AxisTurns {
public:
    /// @param weights  must outlive this
    AxisTurns(base::Span<const JointPose> poses, const AxisWeights& weights);

    /// Nothing turns the vertex or takes it along.
    bool isRest(std::size_t vertex) const;
    /// Rotation and translation behind the scales.
    /// @param vertex  one of the weights
    AffineMap of(std::size_t vertex) const;

private:
    struct Turn {
        int above = -1; ///< the next one up that moves, as an index of _turns
        Eigen::Quaternion<double, Eigen::DontAlign> orientation;
        Eigen::Vector3d angles; ///< degrees
        RotationOrder order;
        Eigen::Vector3d center, shift; ///< cm: where the scales put the joint, and how far it goes from there

        AffineMap map(const Eigen::Vector3d& shares) const;
    };

    const AxisWeights& _weights;
    std::vector<Turn> _turns; ///< of joints that move of their own, parents first
    std::vector<int>
        _nextMoving; ///< by joint: itself or the first above it that moves, in _turns; -1 for none
};

} // namespace geometry
