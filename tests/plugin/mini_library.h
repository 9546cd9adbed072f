// A small content library with every file that a conversion needs.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"

#include <filesystem>

/// Blobs of some hundred vertices under the stock figures' own addresses: a source generation and a Genesis 9
/// of another topology, each with a torso, thighs and a head.
///
/// The sources have the morphs "Wide" (scales x by 1.2), "Bulge" (pushes the head forward) and "Unused".
void WriteMiniLibrary(const std::filesystem::path& directory);

/// Where the source's dials at 1 put a point of its neutral shape; cm.
geometry::Vec3f SourceShape(geometry::Vec3f neutral, float wide, float bulge);
