// How much the methods here take on.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace geometry {

/// In cm, from the origin along any axis. The ray tracer adds up areas of boxes in single precision, and ends
/// the program where that overflows; figures of the size of planets keep well below.
constexpr float farthestPosition = 1e9f;

/// Pixels along each side.
constexpr int largestPicture = 16384;

/// Corners of a face that can be subdivided, and one fewer faces around a vertex: the library for it counts
/// in 16 bits.
constexpr std::uint32_t mostCorners = 65535;

/// Corners of a face that is drawn as what it is even where it is not convex: the work grows by their cube.
constexpr std::uint32_t mostCutCorners = 256;

/// Vertices or texture coordinates of an OBJ file: its indices may be negative, so one bit is the sign.
constexpr std::uint32_t mostObjVertices = INT32_MAX;

} // namespace geometry
