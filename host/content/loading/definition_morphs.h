// Morphs of the host from the definitions of a file.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "geometry/polygon_mesh.h"

#include <memory>
#include <string>

class DzMorph;

namespace openhost {

/// Its dial is as the host makes it. Deltas that the document does not have are read when they are first
/// needed; those of vertices that the mesh does not have are left out then, and reported.
/// @param file      the file that defines it
/// @param filePath  its decoded path
/// @param cage      of the mesh that it is for
std::unique_ptr<DzMorph> MakeMorph(const dson::Modifier& modifier, const std::string& name,
                                   const dson::Document& file, const std::string& filePath,
                                   const std::shared_ptr<const geometry::Topology>& cage);

} // namespace openhost
