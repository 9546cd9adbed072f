// How much the methods here take on.
// SPDX-License-Identifier: MIT

#pragma once

namespace geometry {

/// In cm, from the origin along any axis. The ray tracer adds up areas of boxes in single precision, and ends
/// the program where that overflows; figures of the size of planets keep well below.
constexpr float farthestPosition = 1e9f;

/// Pixels along each side.
constexpr int largestPicture = 16384;

} // namespace geometry
