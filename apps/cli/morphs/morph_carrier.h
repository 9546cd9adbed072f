// From displacements of one figure's mesh to morphs of another.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "geometry/morph_transfer.h"
#include "openhost/morph_making.h"

#include <memory>
#include <vector>

class DzNode;

namespace cli {

/// What a conversion does with the shape of the source, for one shape after another: the two figures are
/// matched once. Both are looked at when the object is made, and the target is to stay as it is.
class MorphCarrier {
public:
    /// @param stock   neutral, of the source's mesh
    /// @param target  worn and posed so that it looks like it
    /// @param level   of subdivision of both; 0 for the cage
    /// @param diagnostics  hears of two that do not fit
    MorphCarrier(const DzNode& stock, const DzNode& target, int level, base::Diagnostics& diagnostics);

    std::size_t sourceVertexCount() const { return _map->sourceVertexCount(); }

    /// The morphs of several shapes, some at the same time.
    /// @param displacements  cm, in the world, one per vertex of the stock figure at the level
    std::vector<geometry::SubdividedMorph>
    carry(const std::vector<std::vector<geometry::Vec3f>>& displacements) const;

private:
    geometry::SubdividedMorph carryOne(const std::vector<geometry::Vec3f>& displacements) const;

    std::vector<geometry::Vec3f> _neutral;            ///< of the target, in the world
    std::shared_ptr<const geometry::SurfaceMap> _map; ///< shared with later conversions of the two figures
    openhost::MorphMaker _maker;
};

} // namespace cli
