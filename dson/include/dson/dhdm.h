// The companion file of a morph that holds its detail for subdivided meshes.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/multires_detail.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dson {

/// What one level of a .dhdm file changes.
struct DhdmLevel {
    std::size_t edits = 0;
    std::size_t vertices = 0; ///< fewer than edits where some have the same path
    std::size_t faces = 0;    ///< of the cage, with edits
};

/// What a .dhdm file says of itself.
struct DhdmFacts {
    std::uint32_t faceCount = 0;   ///< of the cage that it is for; 0 without a level
    std::vector<DhdmLevel> levels; ///< level 1 first
};

/// The same checks as DecodeDhdm, without a cage to compare with.
/// @throws base::FormatError  damaged or cut off
DhdmFacts DescribeDhdm(std::string_view bytes, const std::string& name);

/// What the bytes of a .dhdm file say: little-endian, per level the edits of each cage face, each with the
/// path from the face's corner down to a vertex.
/// @param cage  of the figure; its faces must be those that the file counts
/// @param name  stands for the data in error messages
/// @throws base::FormatError  damaged, cut off, or for a mesh with other faces
geometry::MultiresDetail DecodeDhdm(std::string_view bytes, const geometry::Topology& cage,
                                    const std::string& name);

/// The bytes of a .dhdm file.
/// @param detail   its corners are those of the cage's levels
/// @param leftOut  how many displacements the file cannot hold: a path leads to the first four corners of a
///                 face only
/// @throws base::FormatError  more levels or more bytes than a file can hold, or a displacement is not finite
std::string EncodeDhdm(const geometry::MultiresDetail& detail, const geometry::Topology& cage,
                       std::size_t* leftOut);

/// Tells the bytes of one companion file from those of another; kept in the morph's own file.
std::string DhdmChecksum(std::string_view bytes);
/// A phrase for when it does not fit: the file may have been changed by somebody who knows no checksums, so
/// it is used.
extern const char* const otherDetail;
/// Whether the bytes are those that the checksum was made of; true for checksums of unknown kinds, and none.
bool FitsChecksum(std::string_view bytes, const std::string& checksum);

} // namespace dson
