// From displacements of one figure's mesh to morphs of another.
// SPDX-License-Identifier: MIT

// Before Qt, whose keyword emit names a function there.
#include <tbb/parallel_for.h>

#include "base/cancellation.h"
#include "morphs/morph_carrier.h"

#include "dznode.h"
#include "geometry/kept_matches.h"
#include "geometry/misfit.h"
#include "openhost/shapes.h"

namespace cli {

namespace {

using geometry::Vec3f;

constexpr float smallestDisplacement = 0.001f; ///< cm; a conversion drops what is shorter, on either figure

std::vector<Vec3f> Positions(const DzNode& node)
{
    const base::Span<const Vec3f> world = openhost::WorldMesh(node).positions;
    return {world.begin(), world.end()};
}

} // namespace

MorphCarrier::MorphCarrier(const DzNode& stock, const DzNode& target, int level,
                           base::Diagnostics& diagnostics)
    : _neutral(Positions(target)),
      _map(geometry::MatchOnce(openhost::WorldMesh(stock), openhost::WorldMesh(target))),
      _maker(target, level)
{
    const std::string source = stock.getLabel().toStdString();
    if (geometry::IsMisfit(_map->statistics()))
        diagnostics.push_back(
            {base::Severity::Warning,
             {},
             target.getLabel().toStdString(),
             geometry::DescribeMisfit(_map->statistics(), Positions(stock), _neutral, source)});
}

geometry::SubdividedMorph MorphCarrier::carryOne(const std::vector<Vec3f>& displacements) const
{
    geometry::SparseDeltas noticeable = geometry::MakeDeltas(displacements, 0.0f);
    geometry::DropShort(noticeable, smallestDisplacement);
    if (noticeable.empty())
        return {};
    std::vector<Vec3f> shape = _map->transfer(geometry::ToDense(noticeable, displacements.size()));
    for (std::size_t v = 0; v < shape.size(); ++v)
        shape[v] += _neutral[v];
    return _maker.make(shape, smallestDisplacement);
}

std::vector<geometry::SubdividedMorph>
MorphCarrier::carry(const std::vector<std::vector<Vec3f>>& displacements) const
{
    std::vector<geometry::SubdividedMorph> morphs(displacements.size());
    tbb::parallel_for(std::size_t{0}, displacements.size(), [&](std::size_t i) {
        base::ThrowIfCancelled();
        morphs[i] = carryOne(displacements[i]);
    });
    return morphs;
}

} // namespace cli
