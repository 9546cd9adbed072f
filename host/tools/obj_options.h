// OBJ option sets of the host as options of the geometry library.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/obj.h"

class DzFileIOSettings;
class QString;

namespace openhost {

/// Axes and scale. The exporter's option set says "InvertLatAxis" where the importer's says "InvertLat"; both
/// are read.
/// @throws base::FormatError  an axis is used twice or unknown, or the scale is not above 0
geometry::ObjSpace ReadObjSpace(const DzFileIOSettings& options);

/// The host's own: one unit of the file is a centimetre, axes as in the scene.
void SetDefaultObjSpace(DzFileIOSettings& options);

/// Options that have no effect, since the scene holds no maps, with the values that say nothing of them.
void SetDefaultMapOptions(DzFileIOSettings& options);
/// Tells in the log of those that somebody has set otherwise.
void NoteMapOptions(const QString& file, const DzFileIOSettings& options);

geometry::ObjReadOptions ReadObjReadOptions(const DzFileIOSettings& options);
geometry::ObjWriteOptions ReadObjWriteOptions(const DzFileIOSettings& options);

} // namespace openhost
