// Partial turns along the tree of joints, axis by axis.
// SPDX-License-Identifier: MIT

#include "axis_turns.h"

#include <algorithm>

namespace geometry {

namespace {

using Eigen::Matrix3d;
using Eigen::Quaterniond;
using Eigen::Vector3d;

/// How far a joint's own translation takes it, in its parent's axes.
Vector3d ShiftOf(const JointPose& pose, base::Span<const JointPose> poses)
{
    if (pose.joint.parent < 0)
        return pose.origin - pose.restOrigin;
    const JointPose& parent = poses[static_cast<std::size_t>(pose.joint.parent)];
    return Quaterniond(parent.rotation).conjugate() * (pose.origin - parent.origin) -
           (pose.restOrigin - parent.restOrigin);
}

/// How much of one turn a vertex takes.
struct Share {
    int turn;
    int axis;
    double weight;
};

} // namespace

AxisTurns::AxisTurns(base::Span<const JointPose> poses, const AxisWeights& weights)
    : _weights(weights), _nextMoving(poses.size(), -1)
{
    for (std::size_t j = 0; j < poses.size(); ++j) {
        const JointPose& pose = poses[j];
        const int above =
            pose.joint.parent < 0 ? -1 : _nextMoving[static_cast<std::size_t>(pose.joint.parent)];
        const Vector3d shift = ShiftOf(pose, poses);
        // Centres chained down the tree come back with the last digit off.
        const bool shifts = shift.norm() > 1e-12 * (1.0 + pose.origin.norm() + pose.restOrigin.norm());
        _nextMoving[j] = above;
        if (!shifts && pose.joint.rotation.isZero(0.0))
            continue;
        _nextMoving[j] = static_cast<int>(_turns.size());
        _turns.push_back({above, EulerRotation(pose.joint.orientation, RotationOrder::XYZ),
                          pose.joint.rotation, pose.joint.order, pose.restOrigin,
                          shifts ? shift : Vector3d::Zero()});
    }
}

AffineMap AxisTurns::Turn::map(const Vector3d& shares) const
{
    const Quaterniond orient(orientation);
    const Quaterniond turn = orient * EulerRotation(angles.cwiseProduct(shares), order) * orient.conjugate();
    const Matrix3d rotation = turn.toRotationMatrix();
    return {rotation, center - rotation * center + shares.mean() * shift};
}

bool AxisTurns::isRest(std::size_t vertex) const
{
    for (const SkinWeights* const axis : {&_weights.x, &_weights.y, &_weights.z})
        for (std::uint32_t i = axis->offsets[vertex]; i < axis->offsets[vertex + 1]; ++i)
            if (_nextMoving[axis->joints[i]] >= 0)
                return false;
    return true;
}

AffineMap AxisTurns::of(std::size_t vertex) const
{
    std::vector<Share> shares;
    const SkinWeights* const axes[] = {&_weights.x, &_weights.y, &_weights.z};
    for (int axis = 0; axis < 3; ++axis)
        for (std::uint32_t i = axes[axis]->offsets[vertex]; i < axes[axis]->offsets[vertex + 1]; ++i)
            for (int turn = _nextMoving[axes[axis]->joints[i]]; turn >= 0;
                 turn = _turns[static_cast<std::size_t>(turn)].above)
                shares.push_back({turn, axis, double(axes[axis]->weights[i])});
    std::sort(shares.begin(), shares.end(), [](const Share& a, const Share& b) { return a.turn > b.turn; });

    AffineMap map = AffineMap::identity();
    for (std::size_t i = 0; i < shares.size();) {
        const int turn = shares[i].turn;
        Vector3d sums = Vector3d::Zero();
        for (; i < shares.size() && shares[i].turn == turn; ++i)
            sums[shares[i].axis] += shares[i].weight;
        map = _turns[static_cast<std::size_t>(turn)].map(sums).after(map);
    }
    return map;
}

} // namespace geometry
