// Keeping what nothing here understands.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/kept.h"
#include "json_text.h"
#include "json_view.h"

#include <memory>

namespace dson {

/// Of a definition.
KeptMembers KeptOfNode(const Element& definition);
/// Also what it says of axes, rotation order and inherited scales, which is written only where a file has
/// said it.
KeptMembers KeptOfNodeInstance(const Element& instance);
KeptMembers KeptOfGeometry(const Element& instance);
/// Of a skin.
KeptMembers KeptOfJoint(const Element& joint);
KeptMembers KeptOfModifier(const Element& instance);
/// Of a file with a scene; null where it holds nothing else.
/// @param idle  see KeptContent
std::shared_ptr<const KeptContent> KeptOfFile(const Element& root, std::vector<std::string> idle);

/// Puts it behind the present members. Channels go to the present entry of `extra` of their type.
void AddKept(Json& object, const KeptMembers& kept);

} // namespace dson
