// How much of a file is read.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace dson {

/// A text may have this many bytes at most, expanded; ten times the largest files known.
constexpr std::size_t maxTextSize = std::size_t{1} << 30;
/// Nor may it take more than this part of the machine's memory, since what is made of it takes several times
/// as much.
constexpr std::size_t memoryShare = 8;

/// A gzip may always expand to this many bytes, ...
constexpr std::size_t freelyExpanded = std::size_t{1} << 26;
/// ... and beyond them to this many times its own size. Lists of deltas come to ten or twenty.
constexpr std::size_t mostExpansion = 200;

/// Arrays and objects in each other: as deep as the parser goes where the innermost level is not empty.
constexpr std::size_t deepestNesting = 1023;

/// A path of morph detail has room for twelve steps, the last of which chooses the vertex.
constexpr int deepestDetailLevel = 11;
/// Faces of a cage that detail can be described for.
constexpr std::uint32_t mostDetailFaces = 10000000;

} // namespace dson
