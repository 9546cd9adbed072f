// Modifiers that are neither morphs nor dials as file content.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/scene.h"

#include <string>
#include <vector>

class DzModifier;

namespace openhost {

struct SceneUnit;

/// Those of the unit's object that a file has described, and its D-Formers', in stack order.
std::vector<const DzModifier*> EffectsOf(const SceneUnit& unit);
/// Whether a file other than the one to be written defines it.
bool IsDefinedElsewhere(const DzModifier& modifier, const SceneUnit& unit);
/// Whether loading the figure brings it along, as its file lies in the figure's folder.
bool IsFoundWithFigure(const DzModifier& modifier, const SceneUnit& unit);

/// What its file said of it, with the present values.
dson::Modifier DescribeEffect(const DzModifier& modifier, const std::string& id, const std::string& parent);
/// Sets what an instance says of it.
/// @param isDefined  a definition of the same file says the rest already
void DescribeEffectInstance(const DzModifier& modifier, bool isDefined, dson::SceneModifier& instance);

} // namespace openhost
