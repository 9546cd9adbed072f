// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "host/content/dson_reader.h"

class DzNode;

namespace openhost {

/// Adds a D-Former to the scene that deforms the node within the file's influence weights.
/// @throws geometry::FormatError  the weights are not for the node's mesh
void ApplyDForm(const dson::Document& preset, DzNode& node);

/// Sets the properties that a pose, properties or shape preset names, on the node's figure.
/// @return how many of them there are
int ApplyValues(const dson::Document& preset, DzNode& node);

} // namespace openhost
