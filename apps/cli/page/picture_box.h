// What a picture of a figure is to show.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/span.h"
#include "geometry/vec3.h"

#include <cstddef>

namespace cli {

/// The box around the positions (cm) but those that lie farther outside of the middle 98 of 100 than three
/// times the size of these: a damaged file has a vertex in the next town, and the figure would be a dot.
/// @param farOff  is raised by how many these are; null where nobody asks
geometry::Box3f BoxToShow(base::Span<const geometry::Vec3f> positions, std::size_t* farOff = nullptr);

bool IsInside(geometry::Vec3f position, const geometry::Box3f& box);

} // namespace cli
