// One piece of an OBJ text, parsed on its own so that pieces can be read in parallel.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

namespace geometry {

constexpr std::size_t smallestObjFace = 3, shortestObjLine = 2;

/// Indices as found in one chunk. Absolute ones count from 0. Relative ones count from the chunk's first
/// element until the number of elements before the chunk is known; they are listed to be shifted then.
struct ObjIndices {
    std::vector<std::int32_t> values;
    std::vector<std::uint32_t> relative; ///< places in values

    /// Takes back what came behind the first so many.
    void cut(std::size_t count)
    {
        values.resize(count);
        while (!relative.empty() && relative.back() >= count)
            relative.pop_back();
    }
};

/// From which face on a name holds.
struct ObjNameRun {
    std::uint32_t firstFace = 0; ///< within the chunk
    std::string name;
};

/// Records that make nothing to keep.
struct ObjLeftOut {
    std::size_t count = 0;
    const char* first = nullptr; ///< in the text; null for none
    void add(const char* record) { first = count++ == 0 ? record : first; }
};

struct ObjChunk {
    std::vector<Vec3f> positions;
    std::vector<TexCoords::Uv> uvs;
    std::vector<std::uint32_t> faceSizes;
    ObjIndices corners;
    ObjIndices cornerUvs;       ///< one per corner while cornersHaveUvs
    bool cornersHaveUvs = true; ///< turns false at the first corner without
    bool namesUvs = false;      ///< at some corner
    std::vector<std::uint32_t> lineSizes;
    ObjIndices lineVertices;
    std::vector<ObjNameRun> groups, surfaces;
    std::vector<std::string> materialLibraries;
    ObjLeftOut shortFaces, shortLines, unknown;
};

/// @param text  whole records
/// @throws ObjFault
ObjChunk ParseObjChunk(std::string_view text, const ObjReadOptions& options);

} // namespace geometry
