// Applying D-Former presets.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "openhost/attendant.h"

class DzNode;

namespace openhost {

/// Whether there are influence weights, or a D-Former with a field.
bool HoldsDForm(const dson::Document& preset);

/// What is proposed for a D-Former preset: its own name, beside those that are there.
DFormLoadOptions ProposedDFormOptions(const dson::Document& preset);

/// Adds a D-Former to the scene that deforms the node within the file's influence weights or its field, its
/// parts placed as the file has them.
/// @throws base::FormatError  the weights are not for the node's mesh; the scene is as it was
void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options);

} // namespace openhost
