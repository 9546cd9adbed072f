// What an OBJ text says, told from what it was made of.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

#include <memory>
#include <optional>

namespace geometry {

/// One part of an OBJ text, as it was written.
struct WrittenObj {
    PolygonMesh mesh;
    bool hasLines = false, hasTexCoords = false; ///< in the text
    ObjWriteOptions options;
};

/// What ParseObj makes of the text, to the bit. Nothing where that is to be seen in the text only.
std::optional<ObjContent> Recall(const WrittenObj& written, const ObjReadOptions& options);

} // namespace geometry
