// Lines along the edges of faces.
// SPDX-License-Identifier: MIT

#pragma once

#include "projection.h"

#include <cstdint>

namespace geometry {

/// @param pixels  one a sample, top row first; those on an edge, hidden or not, get the colour
void DrawEdges(const Projection& projection, std::uint32_t color, base::Span<std::uint32_t> pixels);

} // namespace geometry
