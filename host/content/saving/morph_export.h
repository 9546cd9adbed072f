// Morphs of the scene as file content.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

class DzMorph;
class DzNode;

namespace openhost {

/// What a data file says of a morph: its dial, group and deltas; the dial's default is 0.
/// @param name  the morph's name in the file; see FileName
dson::Modifier DescribeMorph(const DzMorph& morph, const DzNode& figure, const std::string& name);

/// A name that is safe as id and as file name: letters, digits, '_' and '-' stay, anything else becomes '_'.
std::string FileName(const std::string& name);

/// Folder of the file that defines the figure, decoded, such as /data/Acme/Mini/Base; empty for none.
std::string AssetFolder(const DzNode& figure);

} // namespace openhost
