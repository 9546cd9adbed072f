// Applying D-Former presets.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "openhost/attendant.h"

class DzNode;

namespace openhost {

/// What is proposed for a D-Former preset: its own name, beside those that are there.
DFormLoadOptions ProposedDFormOptions(const dson::Document& preset);

/// Adds a D-Former to the scene that deforms the node within the file's influence weights.
/// @throws base::FormatError  the weights are not for the node's mesh; the scene is as it was
void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options);

} // namespace openhost
