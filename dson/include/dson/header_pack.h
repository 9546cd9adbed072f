// What a morph file says besides its displacements, as few bytes that are read in no time.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace dson {

/// Whether all that the document holds can be packed: what morph files hold besides displacements can,
/// meshes, nodes, skins, weights, effects and poses cannot.
bool CanPackHeaders(const Document& document);

/// The bytes are for this machine and this version alone.
std::string PackHeaders(const Document& document);

/// The document as reading the file without deltas gives it.
/// @throws base::FormatError  the bytes are cut off or no packed headers
Document UnpackHeaders(std::string_view bytes, const std::filesystem::path& file);

} // namespace dson
