// Writing OBJ files while somebody looks on.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

#include <functional>

namespace geometry {

/// As WriteObj.
/// @param see  gets the text piece by piece, in order, from one thread at a time
void WriteObjSeen(const std::filesystem::path& file, base::Span<const ObjPart> parts,
                  const ObjWriteOptions& options, const std::function<void(std::string_view)>& see);

} // namespace geometry
