// Texture coordinates and polylines of a geometry.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "json_text.h"
#include "parts.h"

#include <vector>

namespace dson {

/// A file's set of texture coordinates: a vertex has those of its own number but in the faces that say
/// otherwise.
struct UvSet {
    std::string id;
    std::vector<geometry::TexCoords::Uv> values;
    struct Exception {
        std::uint32_t face, vertex, value;
    };
    std::vector<Exception> exceptions;
};

UvSet ParseUvSet(const Element& json, ParseContext& context);
/// One index a corner; empty, with a warning, when the set names what it or the mesh does not have.
/// @param leftOut  faces that the set may name and the mesh lacks
geometry::TexCoords CornersOf(const UvSet& set, const geometry::Topology& topology,
                              const geometry::LeftOutFaces& leftOut, ParseContext& context);
/// Vertex indices of each line; lines that name vertices the mesh does not have are left out, with a warning.
std::vector<std::vector<std::uint32_t>> ParsePolylines(const Element& json, std::uint32_t vertexCount,
                                                       ParseContext& context);

/// @param id  of the set
/// @throws base::FormatError  a value is not finite
Json EmitUvSet(const Geometry& geometry, const std::string& id);
Json EmitPolylines(const std::vector<std::vector<std::uint32_t>>& lines);

} // namespace dson
