// Wavefront OBJ text: reading and writing polygon meshes.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "geometry/polygon_mesh.h"
#include "geometry/texcoords.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace geometry {

/// One coordinate of the file: which of our axes (0 X, 1 Y, 2 Z) it holds, and whether negated.
struct ObjAxis {
    int axis = 0;
    bool invert = false;
};

/// How file coordinates and ours correspond; the same for reading and writing, so a round trip is the
/// identity.
struct ObjSpace {
    ObjAxis first{0, false}, second{1, false}, third{2, false}; ///< each axis is used once
    double centimetresPerUnit = 1.0; ///< OBJ carries no unit; reading multiplies by it, writing divides
};

struct ObjReadOptions {
    ObjSpace space;
    bool readFaces = true;     ///< `f` records
    bool readLines = true;     ///< `l` records
    bool readTexCoords = true; ///< `vt` records
    bool readGroups = true;    ///< `g` records, kept as face groups
    bool readSurfaces = true;  ///< `usemtl` records, kept as surfaces
};

/// What an OBJ file holds.
struct ObjContent {
    PolygonMesh mesh;
    TexCoords texCoords;
    std::vector<std::vector<std::uint32_t>> lines; ///< `l` records, vertex indices from 0
    std::vector<std::string> materialLibraries;    ///< `mtllib` records
    base::Diagnostics diagnostics;                 ///< what was left out
};

/// Reads one polygon mesh from OBJ text.
///
/// Positions come back in centimetres, Y up. Vertex i is the file's (i + 1)th `v` record, also when no face
/// uses it: a morph read from the file relies on the figure's own numbering. Faces keep corner count and
/// winding. Relative (negative) indices are resolved; records of other kinds are skipped, and so are faces of
/// fewer than three corners and lines of fewer than two vertices. Lines end as any system ends them. Large
/// texts are read in parallel.
///
/// @param name  stands for the text in error messages, usually the file name
/// @throws base::FormatError  a record cannot be understood; the text names the file and the line. Or it is
///                            no text of single bytes, such as a compressed file
ObjContent ParseObj(std::string_view text, const ObjReadOptions& options, const std::string& name);

/// As ParseObj, from a file.
/// @throws base::IoError      the file cannot be opened or read
/// @throws base::FormatError  as ParseObj
ObjContent ReadObj(const std::filesystem::path& file, const ObjReadOptions& options = {});

enum class ObjGrouping { None, Geometry, Surfaces, Single };

/// One mesh to write; several may stand in one file, numbered on. All of it is owned by others.
struct ObjPart {
    PolygonMeshView mesh;
    const TexCoords* texCoords = nullptr;
    std::string name;                ///< for `o` records and as the single group's or node's name
    base::Span<const Vec3f> normals; ///< one per vertex, or empty
    base::Span<const std::vector<std::uint32_t>> lines; ///< vertex indices of each polyline, at least two
};

struct ObjWriteOptions {
    ObjSpace space;
    int decimals = 6; ///< after the decimal point, 0 to 17
    bool writeFaces = true;
    bool writeLines = true;
    bool writeTexCoords = true;
    bool writeNormals = false;
    bool writeObjects = false; ///< `o` records
    ObjGrouping grouping = ObjGrouping::Geometry;
    bool writeSurfaces = true;   ///< `usemtl` records
    bool triangulate = false;    ///< faces with more than four corners only
    std::string materialLibrary; ///< `mtllib` record; empty for none
};

/// The text of an OBJ file: positions in units of the file's space, everything in the meshes' own order.
/// Parallel over large meshes; decimal point '.', lines end in '\n'.
std::string FormatObj(base::Span<const ObjPart> parts, const ObjWriteOptions& options = {});

/// Writes FormatObj beside the target and renames it into place, so that a failure leaves no half-written
/// file.
/// @throws base::IoError  the file cannot be written; the text names it and the reason
void WriteObj(const std::filesystem::path& file, base::Span<const ObjPart> parts,
              const ObjWriteOptions& options = {});

} // namespace geometry
