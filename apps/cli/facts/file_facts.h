// What is in a file, as a report.
// SPDX-License-Identifier: MIT

#pragma once

#include "morph_files.h"
#include "report.h"

#include <filesystem>

class DzNode;

namespace dson {
struct Document;
} // namespace dson

namespace cli {

enum class Detail { Summary, Full };

/// Vertices, faces by number of corners, groups, surfaces, size, edges.
/// @param met  receives what was left out
/// @throws base::IoError, base::FormatError
Json ObjFacts(const std::filesystem::path& file, base::Diagnostics& met);

/// What a DSON file defines and what it puts into a scene. Full detail lists the nodes, too.
Json DocumentFacts(const dson::Document& document, Detail detail);

/// Levels of a file of morph detail, and which morph and figure it is for.
/// @throws base::IoError, base::FormatError
Json DhdmFacts(const std::filesystem::path& file, const ContentFiles& content);

/// A figure of the scene with its dials: those not at their defaults, or in full detail all of them.
Json FigureFacts(const DzNode& figure, Detail detail);

} // namespace cli
