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

std::vector<Vec3f> UndoPlace(const DzNode& node, base::Span<const Vec3f> world)
{
    const NodeTransform& place = WorldTransform(node);
    std::vector<Vec3f> positions(world.begin(), world.end());
    if (place.isIdentity())
        return positions;
    const Eigen::Matrix3d inverse = place.linear.inverse();
    if (!inverse.allFinite())
        throw base::Error(node.getLabel().toStdString() +
                          " is scaled to nothing, so its pose cannot be undone");
    tbb::parallel_for(std::size_t(0), positions.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        positions[v] =
            geometry::FromEigen(inverse * (geometry::ToEigen(positions[v]) - place.origin) + place.center);
    });
    return positions;
}

std::vector<Vec3f> UndoShaping(Pipeline& pipeline, std::vector<Vec3f> positions, int level)
{
    std::vector<Vec3f> offsets = pipeline.shapingOffsets();
    if (offsets.empty())
        return positions;
    if (level > 0)
        offsets = pipeline.subdivision(level)->refine(offsets, 0, level);
    for (std::size_t v = 0; v < positions.size() && v < offsets.size(); ++v)
        positions[v] -= offsets[v];
    return positions;
}

std::vector<Vec3f> UndoSkin(const Pipeline& pipeline, base::Span<const Vec3f> posed)
{
    const SkinPose pose = pipeline.skinPose();
    if (pose.atRest || !pose.weights)
        return {posed.begin(), posed.end()};
    return geometry::Unskin(posed, *pose.weights, pose.poses, pose.blend);
}

} // namespace openhost
