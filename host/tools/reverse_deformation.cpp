// Taking a figure's place and pose out of positions.
// SPDX-License-Identifier: MIT

// Before Qt, whose keyword emit names a function there.
#include <tbb/parallel_for.h>

#include "base/cancellation.h"
#include "reverse_deformation.h"

#include "base/errors.h"
#include "dznode.h"
#include "figure/pipeline.h"
#include "scene/node_transform.h"

namespace openhost {

using base::Span;
using geometry::Vec3f;

void RequireInvertible(const NodeTransform& place, const DzNode& node)
{
    if (!place.isIdentity() && !place.linear.inverse().allFinite())
        throw base::Error(node.getLabel().toStdString() +
                          " is scaled to nothing, so its pose cannot be undone");
}

std::vector<Vec3f> UndoPlace(const NodeTransform& place, std::vector<Vec3f> positions)
{
    if (place.isIdentity())
        return positions;
    const Eigen::Matrix3d inverse = place.linear.inverse();
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        positions[v] =
            geometry::FromEigen(inverse * (geometry::ToEigen(positions[v]) - place.origin) + place.center);
    });
    return positions;
}

std::vector<Vec3f> UndoPlace(const DzNode& node, std::vector<Vec3f> positions)
{
    const NodeTransform& place = WorldTransform(node);
    RequireInvertible(place, node);
    return UndoPlace(place, std::move(positions));
}

std::vector<Vec3f> ShapingOffsets(Pipeline& pipeline, int level)
{
    std::vector<Vec3f> offsets = pipeline.shapingOffsets();
    if (!offsets.empty() && level > 0)
        offsets = pipeline.subdivision(level)->refine(offsets, 0, level);
    return offsets;
}

std::vector<Vec3f> UndoShaping(Pipeline& pipeline, std::vector<Vec3f> positions, int level)
{
    const std::vector<Vec3f> offsets = ShapingOffsets(pipeline, level);
    for (std::size_t v = 0; v < positions.size() && v < offsets.size(); ++v)
        positions[v] -= offsets[v];
    return positions;
}

std::vector<Vec3f> UndoSkin(const SkinPose& pose, base::Span<const Vec3f> posed)
{
    if (pose.atRest || !pose.weights)
        return {posed.begin(), posed.end()};
    return geometry::Unskin(posed, *pose.weights, pose.poses, pose.blend);
}

std::vector<Vec3f> UndoSkin(const Pipeline& pipeline, base::Span<const Vec3f> posed)
{
    return UndoSkin(pipeline.skinPose(), posed);
}

} // namespace openhost
