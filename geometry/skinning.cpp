// Skeleton evaluation, skinning and its inverse: every vertex has one affine map, blended from its joints.
// SPDX-License-Identifier: MIT

#include "geometry/skinning.h"

#include "axis_turns.h"
#include "base/counted.h"
#include "for_each_index.h"
#include "geometry/errors.h"

#include <cassert>
#include <optional>

namespace geometry {

namespace {

using Eigen::Matrix3d;
using Eigen::Quaterniond;
using Eigen::Vector3d;

/// A joint's pose in the forms that blending adds up.
struct BlendTerm {
    AffineMap map;     ///< the whole pose: for linear blending
    AffineMap stretch; ///< the scales alone: first stage of dual quaternion blending
    AffineMap rigid;   ///< rotation and translation after the scales
    Quaterniond real;  ///< rotation and translation after the scales, as a dual quaternion
    Quaterniond dual;
    bool isRest = false; ///< moves nothing, exactly
};

BlendTerm MakeBlendTerm(const JointPose& pose)
{
    BlendTerm term;
    term.map = {pose.linear, pose.origin - pose.linear * pose.joint.center};
    term.stretch = {pose.stretch, pose.restOrigin - pose.stretch * pose.joint.center};
    const Vector3d shift = pose.origin - pose.rotation * pose.restOrigin;
    term.rigid = {pose.rotation.toRotationMatrix(), shift};
    term.real = pose.rotation.normalized();
    term.dual = Quaterniond(0, shift.x(), shift.y(), shift.z()) * term.real;
    term.dual.coeffs() *= 0.5;
    // Centres chained down the tree come back with the last digit off.
    const double rounding = 1e-12 * (1.0 + pose.joint.center.norm());
    term.isRest = pose.linear == Matrix3d::Identity() && pose.stretch == Matrix3d::Identity() &&
                  (pose.origin - pose.joint.center).norm() <= rounding &&
                  (pose.restOrigin - pose.joint.center).norm() <= rounding;
    return term;
}

std::vector<BlendTerm> MakeBlendTerms(base::Span<const JointPose> poses)
{
    std::vector<BlendTerm> terms;
    terms.reserve(poses.size());
    for (const JointPose& pose : poses)
        terms.push_back(MakeBlendTerm(pose));
    return terms;
}

/// The weights of one vertex.
struct Influences {
    base::Span<const std::uint32_t> joints;
    base::Span<const float> weights;
};

Influences InfluencesOf(const SkinWeights& weights, std::size_t v)
{
    const std::size_t first = weights.offsets[v], count = weights.offsets[v + 1] - first;
    return {{weights.joints.data() + first, count}, {weights.weights.data() + first, count}};
}

bool AllRest(const std::vector<BlendTerm>& terms, const Influences& at)
{
    for (const std::uint32_t joint : at.joints)
        if (!terms[joint].isRest)
            return false;
    return true;
}

template <AffineMap BlendTerm::*part>
AffineMap BlendMaps(const std::vector<BlendTerm>& terms, const Influences& at)
{
    AffineMap sum;
    for (std::size_t i = 0; i < at.joints.size(); ++i) {
        const AffineMap& map = terms[at.joints[i]].*part;
        sum.linear += double(at.weights[i]) * map.linear;
        sum.offset += double(at.weights[i]) * map.offset;
    }
    return sum;
}

std::uint32_t StrongestJoint(const Influences& at)
{
    const auto strongest = std::max_element(at.weights.begin(), at.weights.end());
    return at.joints[static_cast<std::size_t>(strongest - at.weights.begin())];
}

AffineMap BlendDualQuaternions(const std::vector<BlendTerm>& terms, const Influences& at,
                               const AffineMap& stretch)
{
    const BlendTerm& pivot = terms[StrongestJoint(at)];
    Eigen::Vector4d real = Eigen::Vector4d::Zero(), dual = Eigen::Vector4d::Zero();
    for (std::size_t i = 0; i < at.joints.size(); ++i) {
        const BlendTerm& term = terms[at.joints[i]];
        // Two quaternions of opposite sign mean the same turn: take the one that goes the short way round.
        const double w = term.real.dot(pivot.real) < 0.0 ? -double(at.weights[i]) : double(at.weights[i]);
        real += w * term.real.coeffs();
        dual += w * term.dual.coeffs();
    }
    const double norm = real.norm(); // at least the largest weight, thanks to the signs
    const Quaterniond q(Eigen::Vector4d(real / norm));
    const Quaterniond d(Eigen::Vector4d(dual / norm));
    const Matrix3d rotation = q.toRotationMatrix();
    return AffineMap{rotation, 2.0 * (d * q.conjugate()).vec()}.after(stretch);
}

/// What moves one vertex.
class VertexBlend {
public:
    /// @param axes  null where no angle has weights of its own
    VertexBlend(const std::vector<BlendTerm>& terms, const SkinWeights& weights, const SkinBlend& blend,
                const AxisTurns* axes, std::size_t vertex)
        : _terms(terms), _axes(axes), _vertex(vertex), _turns(InfluencesOf(weights, vertex)),
          _scales(InfluencesOf(blend.scaleWeights ? *blend.scaleWeights : weights, vertex)),
          _hasScales(blend.scaleWeights != nullptr),
          _share(!blend.dualQuaternionShares.empty() ? blend.dualQuaternionShares[vertex]
                 : blend.mode == SkinMode::Linear    ? 0.0
                                                     : 1.0),
          _generalShare(!axes                         ? 1.0
                        : blend.generalShares.empty() ? 0.0
                                                      : blend.generalShares[vertex])
    {
    }

    bool isRest() const
    {
        return AllRest(_terms, _turns) && (!_hasScales || AllRest(_terms, _scales)) &&
               (!_axes || _axes->isRest(_vertex));
    }

    AffineMap map() const
    {
        if (_generalShare >= 1.0)
            return general();
        const AffineMap turned = _axes->of(_vertex).after(stretch());
        return _generalShare <= 0.0 ? turned : general().mixedWith(turned, _generalShare);
    }

private:
    AffineMap general() const
    {
        if (_turns.joints.empty())
            return stretch();
        if (_share <= 0.0)
            return linear();
        const AffineMap turned = BlendDualQuaternions(_terms, _turns, stretch());
        return _share >= 1.0 ? turned : turned.mixedWith(linear(), _share);
    }

    AffineMap stretch() const
    {
        return _scales.joints.empty() ? AffineMap::identity()
                                      : BlendMaps<&BlendTerm::stretch>(_terms, _scales);
    }

    AffineMap linear() const
    {
        return _hasScales ? BlendMaps<&BlendTerm::rigid>(_terms, _turns).after(stretch())
                          : BlendMaps<&BlendTerm::map>(_terms, _turns);
    }

    const std::vector<BlendTerm>& _terms;
    const AxisTurns* _axes;
    std::size_t _vertex;
    Influences _turns, _scales;
    bool _hasScales;
    double _share;        ///< of the dual quaternions, in the general map
    double _generalShare; ///< of the general map, the rest being the axes'
};

Vec3f ApplyInverse(const AffineMap& map, Vec3f posed)
{
    const double determinant = map.linear.determinant();
    const double size = map.linear.norm();
    if (!(std::abs(determinant) > 1e-9 * size * size * size))
        return posed;
    return FromEigen(map.linear.inverse() * (ToEigen(posed) - map.offset));
}

void CheckWeights(std::size_t vertexCount, const SkinWeights& weights, std::size_t jointCount)
{
    if (vertexCount != weights.vertexCount())
        throw TopologyError("shape has {} but the weights are for {}", base::CountedVertices(vertexCount),
                            weights.vertexCount());
    if (weights.offsets.back() != weights.joints.size() || weights.joints.size() != weights.weights.size())
        throw TopologyError("the weight offsets do not span the weights");
    for (const std::uint32_t joint : weights.joints)
        if (joint >= jointCount)
            throw TopologyError("weight names joint {} but only {} defined", joint,
                                base::Counted(jointCount, "is", "are"));
}

void CheckSkin(base::Span<const Vec3f> positions, const SkinWeights& weights,
               base::Span<const JointPose> poses, const SkinBlend& blend)
{
    CheckWeights(positions.size(), weights, poses.size());
    if (blend.scaleWeights)
        CheckWeights(positions.size(), *blend.scaleWeights, poses.size());
    if (blend.axisWeights)
        for (const SkinWeights* axis : {&blend.axisWeights->x, &blend.axisWeights->y, &blend.axisWeights->z})
            CheckWeights(positions.size(), *axis, poses.size());
    for (const std::size_t shares : {blend.dualQuaternionShares.size(), blend.generalShares.size()})
        if (shares != 0 && shares != positions.size())
            throw TopologyError("shape has {} but {} how they are blended",
                                base::CountedVertices(positions.size()),
                                base::Counted(shares, "says", "say"));
}

/// A joint's own rotation in the figure's axes; exactly none without angles, so that the bind pose moves
/// nothing.
Quaterniond Turn(const Joint& joint)
{
    if (joint.rotation.isZero(0.0))
        return Quaterniond::Identity();
    const Quaterniond orient = EulerRotation(joint.orientation, RotationOrder::XYZ);
    return orient * EulerRotation(joint.rotation, joint.order) * orient.conjugate();
}

Matrix3d OwnScale(const Joint& joint)
{
    if (joint.scale == Vector3d::Ones())
        return Matrix3d::Identity();
    const Matrix3d orient = EulerRotation(joint.orientation, RotationOrder::XYZ).toRotationMatrix();
    return orient * joint.scale.asDiagonal() * orient.transpose();
}

template <class Apply>
std::vector<Vec3f> MapVertices(base::Span<const Vec3f> positions, const SkinWeights& weights,
                               base::Span<const JointPose> poses, const SkinBlend& blend, const Apply& apply)
{
    CheckSkin(positions, weights, poses, blend);
    const std::vector<BlendTerm> terms = MakeBlendTerms(poses);
    const std::optional<AxisTurns> axes =
        blend.axisWeights ? std::make_optional<AxisTurns>(poses, *blend.axisWeights) : std::nullopt;
    std::vector<Vec3f> result(positions.begin(), positions.end());
    ForEachIndex(result.size(), 1024, [&](std::size_t v) {
        const VertexBlend vertex(terms, weights, blend, axes ? &*axes : nullptr, v);
        if (!vertex.isRest())
            result[v] = apply(vertex.map(), result[v]);
    });
    return result;
}

void Normalize(SkinWeights& weights)
{
    for (std::size_t v = 0; v < weights.vertexCount(); ++v) {
        double sum = 0.0;
        for (std::size_t i = weights.offsets[v]; i < weights.offsets[v + 1]; ++i)
            sum += weights.weights[i];
        for (std::size_t i = weights.offsets[v]; i < weights.offsets[v + 1]; ++i)
            weights.weights[i] = static_cast<float>(weights.weights[i] / sum);
    }
}

/// Zero, negative and non-finite weights pull nothing.
bool Counts(float weight)
{
    return weight > 0.0f && std::isfinite(weight);
}

void CountRows(SkinWeights& weights, std::size_t vertexCount, base::Span<const JointWeights> perJoint)
{
    weights.offsets.assign(vertexCount + 1, 0);
    for (std::size_t j = 0; j < perJoint.size(); ++j) {
        const JointWeights& list = perJoint[j];
        if (list.vertices.size() != list.weights.size())
            throw TopologyError("joint {} has {} but {}", j, base::CountedVertices(list.vertices.size()),
                                base::Counted(list.weights.size(), "weight", "weights"));
        for (std::size_t i = 0; i < list.vertices.size(); ++i) {
            if (list.vertices[i] >= vertexCount)
                throw TopologyError("joint {} weighs vertex {} but only {} defined", j, list.vertices[i],
                                    base::Counted(vertexCount, "is", "are"));
            weights.offsets[list.vertices[i] + 1] += Counts(list.weights[i]);
        }
    }
    for (std::size_t v = 0; v < vertexCount; ++v)
        weights.offsets[v + 1] += weights.offsets[v];
}

} // namespace

std::vector<JointPose> EvaluateSkeleton(base::Span<const Joint> joints)
{
    std::vector<JointPose> poses(joints.size());
    std::vector<Matrix3d> inherited(joints.size(),
                                    Matrix3d::Identity()); // accumulated scale without the own one
    for (std::size_t j = 0; j < joints.size(); ++j) {
        const Joint& joint = joints[j];
        assert(joint.parent < static_cast<int>(j) && "joints stand parents before children");
        JointPose& pose = poses[j];
        pose.joint = joint;
        pose.rotation = Turn(joint);
        pose.origin = joint.center + joint.translation;
        pose.restOrigin = joint.center;
        if (joint.parent >= 0) {
            const std::size_t p = static_cast<std::size_t>(joint.parent);
            const JointPose& parent = poses[p];
            const Vector3d arm = joint.center - parent.joint.center;
            pose.rotation = parent.rotation * pose.rotation;
            pose.origin = parent.linear * (arm + joint.translation) + parent.origin;
            pose.restOrigin = parent.stretch * arm + parent.restOrigin;
            // Not inheriting takes back the parent's own scale only; dividing by it would fail at zero.
            inherited[j] = joint.inheritsScale ? parent.stretch : inherited[p];
        }
        pose.stretch = inherited[j] * OwnScale(joint);
        pose.linear = pose.rotation.toRotationMatrix() * pose.stretch;
    }
    return poses;
}

SkinWeights WeightsByVertex(std::size_t vertexCount, base::Span<const JointWeights> perJoint)
{
    SkinWeights weights;
    CountRows(weights, vertexCount, perJoint);
    weights.joints.resize(weights.offsets.back());
    weights.weights.resize(weights.offsets.back());
    std::vector<std::uint32_t> next(weights.offsets.begin(), weights.offsets.end() - 1);
    for (std::size_t j = 0; j < perJoint.size(); ++j)
        for (std::size_t i = 0; i < perJoint[j].vertices.size(); ++i) {
            if (!Counts(perJoint[j].weights[i]))
                continue;
            const std::uint32_t slot = next[perJoint[j].vertices[i]]++;
            weights.joints[slot] = static_cast<std::uint32_t>(j);
            weights.weights[slot] = perJoint[j].weights[i];
        }
    return weights;
}

SkinWeights MakeSkinWeights(std::size_t vertexCount, base::Span<const JointWeights> perJoint)
{
    SkinWeights weights = WeightsByVertex(vertexCount, perJoint);
    Normalize(weights);
    return weights;
}

std::vector<Vec3f> Skin(base::Span<const Vec3f> rest, const SkinWeights& weights,
                        base::Span<const JointPose> poses, const SkinBlend& blend)
{
    return MapVertices(rest, weights, poses, blend, [](const AffineMap& map, Vec3f x) {
        return FromEigen(map.linear * ToEigen(x) + map.offset);
    });
}

std::vector<Vec3f> Unskin(base::Span<const Vec3f> posed, const SkinWeights& weights,
                          base::Span<const JointPose> poses, const SkinBlend& blend)
{
    return MapVertices(posed, weights, poses, blend, ApplyInverse);
}

} // namespace geometry
