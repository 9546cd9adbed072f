// What a picture of a figure is to show.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <cstddef>

namespace geometry {

/// The box around the positions (cm) but those that lie farther outside of the middle 98 of 100 than three
/// times the size of these: a damaged file has a vertex in the next town, and the figure would be a dot.
/// @param farOff  is raised by how many these are; null where nobody asks
Box3f BoxToShow(base::Span<const Vec3f> positions, std::size_t* farOff = nullptr);

/// The same of those that a face has; the others are not to be seen.
Box3f BoxToShow(const PolygonMeshView& mesh, std::size_t* farOff = nullptr);

/// The part of that box which has the figure's head: that of the face group called "head", in any case;
/// without one, what is above the narrowest place between head and shoulders; where there is none, the
/// uppermost seventh.
Box3f HeadToShow(const PolygonMeshView& figure);

bool IsInside(Vec3f position, const Box3f& box);

} // namespace geometry
