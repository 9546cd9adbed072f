// Joint-centred skinning, linear and dual-quaternion, and its inverse.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/transform.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// One joint's rest placement and present pose. Joints stand parents before children.
struct Joint {
    int parent = -1;                                       ///< index, -1 for the root
    Eigen::Vector3d center = Eigen::Vector3d::Zero();      ///< cm, figure space, absolute
    Eigen::Vector3d orientation = Eigen::Vector3d::Zero(); ///< degrees, always in order XYZ
    RotationOrder order = RotationOrder::XYZ;
    Eigen::Vector3d rotation = Eigen::Vector3d::Zero();    ///< degrees
    Eigen::Vector3d translation = Eigen::Vector3d::Zero(); ///< cm
    Eigen::Vector3d scale = Eigen::Vector3d::Ones();       ///< per axis, general scale already multiplied in
    bool inheritsScale = true;
};

/// Where a joint's pose puts things: x -> linear * (x - joint.center) + origin for a rest point x.
struct JointPose {
    Joint joint;                                          ///< that is posed
    Eigen::Matrix3d linear = Eigen::Matrix3d::Identity(); ///< rotation times scale
    Eigen::Quaternion<double, Eigen::DontAlign> rotation{1.0, 0.0, 0.0, 0.0};
    Eigen::Vector3d origin = Eigen::Vector3d::Zero();      ///< where the centre goes, cm
    Eigen::Matrix3d stretch = Eigen::Matrix3d::Identity(); ///< the accumulated scale alone
    Eigen::Vector3d restOrigin = Eigen::Vector3d::Zero();  ///< where scaling alone puts the centre, cm

    Eigen::Vector3d apply(const Eigen::Vector3d& x) const { return linear * (x - joint.center) + origin; }
};
static_assert(alignof(JointPose) == alignof(double),
              "users may be compiled for wider vectors than the library; both must see the same layout");

/// Poses of all joints in figure space, one per joint, following the DSON node transform: rotation
/// O*R*inverse(O) chained down the tree, translation turned and scaled by the parent, scale passed on where
/// inherited.
std::vector<JointPose> EvaluateSkeleton(base::Span<const Joint> joints);

/// Sparse weights of each vertex, by vertex. Rows are normalised to sum 1; a vertex with an empty row stays
/// put.
struct SkinWeights {
    std::vector<std::uint32_t> offsets{0}; ///< vertexCount + 1
    std::vector<std::uint32_t> joints;     ///< joint index
    std::vector<float> weights;

    std::size_t vertexCount() const { return offsets.size() - 1; }
};

/// One joint's weights, as files hold them.
struct JointWeights {
    std::vector<std::uint32_t> vertices;
    std::vector<float> weights; ///< one per vertex named; those that are not above 0 do not count
};
/// By vertex, as they are.
/// @param perJoint  in the order of the joints
/// @throws TopologyError  a vertex index is out of range, or a joint's two lists differ in length
SkinWeights WeightsByVertex(std::size_t vertexCount, base::Span<const JointWeights> perJoint);
/// The same, normalised.
SkinWeights MakeSkinWeights(std::size_t vertexCount, base::Span<const JointWeights> perJoint);

/// Weights of their own for each of the three angles of the joints. All three are for the same vertices.
struct AxisWeights {
    SkinWeights x, y, z;
};

enum class SkinMode { Linear, DualQuaternion };

/// How the poses of a vertex's joints are blended. Spans and pointers must outlive the calls.
struct SkinBlend {
    // Implicit, since most skins have nothing but their mode.
    SkinBlend(SkinMode skinMode = SkinMode::DualQuaternion) : mode(skinMode) {}

    SkinMode mode;
    /// One per vertex: 0 for the linear blend, 1 for the dual quaternions', between them for a mixture of the
    /// two maps. Empty where the mode counts for all.
    base::Span<const float> dualQuaternionShares;
    /// By which the joints' scales are blended, before the turns; null where the skin's weights serve for
    /// all. A vertex with an empty row is not scaled.
    const SkinWeights* scaleWeights = nullptr;
    /// By which the angles of the joints act, each alone: a vertex turns about each joint by a part of its
    /// angles. Null where the skin's weights serve for all three. Translations act by the mean of the three.
    const AxisWeights* axisWeights = nullptr;
    /// One per vertex: 0 where axisWeights count, 1 where the skin's weights do, between them for a mixture
    /// of the two maps. Empty where axisWeights, if any, count for all.
    base::Span<const float> generalShares;
};

/// Moves rest positions by the blended poses, in figure space. Dual quaternions: Kavan et al., "Geometric
/// skinning with approximate dual quaternion blending", 2008, after a linear blend of the joints' scales;
/// signs follow the largest weight.
/// @param rest   cm, one per vertex of the weights; the result likewise
/// @param poses  one per joint, see EvaluateSkeleton
/// @throws TopologyError  rest, weights and what the blend says of vertices differ in length, or a joint
/// index is
///                        out of range
std::vector<Vec3f> Skin(base::Span<const Vec3f> rest, const SkinWeights& weights,
                        base::Span<const JointPose> poses, const SkinBlend& blend);

/// The inverse: rest positions which Skin would move onto the given ones. Exact, since the blended map of a
/// vertex depends on its weights only. A vertex whose blended map is singular keeps its posed position.
/// @throws TopologyError  as Skin
std::vector<Vec3f> Unskin(base::Span<const Vec3f> posed, const SkinWeights& weights,
                          base::Span<const JointPose> poses, const SkinBlend& blend);

} // namespace geometry
