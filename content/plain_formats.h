// The plain text formats that figures are made from: skeletons, weights, sparse tables.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "geometry/skinning.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace content {

/// All of these read plain or gzip files; what they throw names the file and the line, bone or index.

/// Parents before children. Positions in cm.
struct PlainBone {
    std::string name;
    int parent = -1; ///< index
    geometry::Vec3f head, tail;
};

/// A skeleton file: bones with names and parents, and sets of positions for them.
struct PlainSkeleton {
    std::string file;
    std::vector<PlainBone> bones; ///< in the chosen set's positions
    std::string joints;           ///< the chosen set's name
    /// Positions of the same bones in named morphs' shapes, where the file has them.
    std::map<std::string, std::vector<PlainBone>> morphs;
};

/// @param joints     the set to use; empty chooses `preferred` when the file has it, or else the only one
/// @throws base::IoError, base::FormatError
PlainSkeleton ReadPlainSkeleton(const std::filesystem::path& file, const std::string& joints,
                                const std::string& preferred);

/// One list per bone of the skeleton.
/// @throws base::IoError, base::FormatError
std::vector<geometry::JointWeights> ReadPlainWeights(const std::filesystem::path& file,
                                                     const PlainSkeleton& skeleton, std::size_t vertexCount);

/// `vertex,dx,dy,dz` rows below a header line.
/// @return one delta per vertex, cm
/// @throws base::IoError, base::FormatError
std::vector<geometry::Vec3f> ReadDeltaTable(const std::filesystem::path& file, std::size_t vertexCount);

/// `vertex,weight` rows below a header line; weights 0 to 1.
/// @return one weight per vertex
/// @throws base::IoError, base::FormatError
std::vector<float> ReadWeightTable(const std::filesystem::path& file, std::size_t vertexCount);

} // namespace content
