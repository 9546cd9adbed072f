// Modifiers that files put on what is selected.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

class DzNode;

namespace openhost {

/// Whether the instance is one of a modifier that acts on a mesh as a whole, and not of a shape or a dial.
bool IsEffect(const dson::Document& file, const dson::ModifierInstance& instance);

/// Gives the figure that modifier, or sets the one that it has already.
/// @return false when the figure cannot have it
bool ApplyEffectTo(DzNode& figure, const dson::Document& file, const dson::ModifierInstance& instance);

} // namespace openhost
