// What a character's file wants to be loaded with it.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "library/asset_library.h"

#include <vector>

class DzNode;

namespace openhost {

/// Loads the add-ons that the file names: presets are applied to its figure, and figures are fitted to it if
/// their files do not say otherwise. What has been loaded and what could not be is reported. Add-ons may have
/// add-ons; each file is loaded once. Leaves the selection at the figure.
/// @param roots  what the file has brought into the scene; the first figure of them is meant
void LoadAddOns(AssetLibrary& library, const dson::Document& document, const std::vector<DzNode*>& roots);

} // namespace openhost
