// A skin binding as geometry weights.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzskinbinding.h"
#include "geometry/skinning.h"

class DzSkeleton;
class DzWeightMap;

namespace openhost {

class SkinAccess {
public:
    /// Joint indices count the skeleton's bones, parents first. Made when first asked for.
    /// @throws base::FormatError  a weight map has weights for more vertices than the mesh
    static const geometry::SkinWeights& weights(const DzSkinBinding& binding, const DzSkeleton& skeleton,
                                                std::size_t vertexCount);
    /// How the binding's modes and maps say that poses are blended. Valid until the binding changes.
    static geometry::SkinBlend blend(const DzSkinBinding& binding, const DzSkeleton& skeleton,
                                     std::size_t vertexCount);
    /// Adds what of a map is not 0, as 0..1, vertices in ascending order.
    static void append(const DzWeightMap& map, geometry::JointWeights& list);
    /// A binding of the bone with sparse weights 0..1; it is owned by the skin.
    static DzBoneBinding& bind(DzSkinBinding& binding, DzBone& bone,
                               const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights);
    /// Sparse weights 0..1 by which the bone's scale acts.
    static void bindScale(DzSkinBinding& binding, DzBoneBinding& bone,
                          const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights);
    /// Sparse weights 0..1 by which the bone's angle about X, Y or Z (0 to 2) acts.
    static void bindAxis(DzSkinBinding& binding, DzBoneBinding& bone, int axis,
                         const std::vector<std::uint32_t>& vertices, const std::vector<float>& weights);

private:
    static void update(const DzSkinBinding& binding, const DzSkeleton& skeleton, std::size_t vertexCount);
};

} // namespace openhost
