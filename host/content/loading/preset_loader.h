// Applying presets to what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

namespace openhost {

/// Types may lie, so the content decides; presets with nodes of their own are told by the type alone.
bool IsPreset(const dson::Document& document);

/// Sets the properties that a pose, properties or shape preset names on the selected figure, or adds the
/// preset's D-Former to what is selected. Asks what to do about values beyond the limits of clamped dials.
/// @return false when it was cancelled
/// @throws base::FormatError  the file holds nothing to load
/// @throws base::Error  nothing is selected, or the figure has nothing that the file names
bool LoadPreset(const dson::Document& document);

} // namespace openhost
