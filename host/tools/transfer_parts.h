// The single things that a transfer carries over.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/morph_transfer.h"

class DzFigure;
class DzMorph;
class DzNode;

namespace openhost {

/// Positions of a node's base mesh, neither morphed nor posed, at its place in the world; cm.
base::Span<const geometry::Vec3f> BasePositionsInWorld(const DzNode& node,
                                                       std::vector<geometry::Vec3f>& moved);

/// @throws base::Error  the node is scaled to nothing, so nothing can be carried into its own space
void RequireInvertiblePlace(const DzNode& node);

/// A copy of the morph with deltas for the target's mesh; its dial stands at 0.
void TransferMorphTo(const geometry::SurfaceMap& map, const DzMorph& morph, const DzNode& source,
                     DzFigure& target, bool overrideExisting);

/// Copies the source's bones, as far as the target has none of that name, and interpolates its weights.
/// Without bones on the source the target keeps its own binding, or gets one bone for all its vertices.
void TransferBinding(const geometry::SurfaceMap& map, const DzNode& source, DzFigure& target);

/// Groups (and surfaces, if asked for) of the nearest source faces.
void TransferGroups(const geometry::SurfaceMap& map, const DzNode& source, DzFigure& target, bool faceGroups,
                    bool surfaces);

void TransferSelectionMap(const DzNode& source, DzFigure& target);

} // namespace openhost
