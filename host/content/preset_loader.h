// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "host/content/dson_reader.h"
#include "host/scene/load_questions.h"

class DzNode;

namespace openhost {

/// What is proposed for a D-Former preset: its own name, beside those that are there.
DFormLoadOptions ProposedDFormOptions(const dson::Document& preset);

/// Adds a D-Former to the scene that deforms the node within the file's influence weights.
/// @throws geometry::FormatError  the weights are not for the node's mesh; the scene is as it was
void ApplyDForm(const dson::Document& preset, DzNode& node, const DFormLoadOptions& options);

/// Sets the properties that a pose, properties or shape preset names, on the node's figure. Asks what to do
/// about values beyond the limits of clamped dials.
/// @return how many of them there are
int ApplyValues(const dson::Document& preset, DzNode& node);

} // namespace openhost
