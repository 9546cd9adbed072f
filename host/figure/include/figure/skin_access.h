// A skin binding as geometry weights.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzskinbinding.h"
#include "geometry/skinning.h"

class DzSkeleton;

namespace openhost {

class SkinAccess {
public:
    /// Joint indices count the skeleton's bones, parents first. Made when first asked for.
    /// @throws base::FormatError  a weight map has weights for more vertices than the mesh
    static const geometry::SkinWeights& weights(const DzSkinBinding& binding, const DzSkeleton& skeleton,
                                                std::size_t vertexCount);
    /// A binding of the bone with sparse weights 0..1; the binding is owned by the skin.
    static void bind(DzSkinBinding& binding, DzBone& bone, const std::vector<std::uint32_t>& vertices,
                     const std::vector<float>& weights);
};

} // namespace openhost
