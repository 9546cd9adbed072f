// Keeping what nothing here understands.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "dson/kept.h"
#include "json_text.h"
#include "json_view.h"

#include <memory>

namespace dson {

/// Of a definition.
KeptMembers KeptOfNode(const Element& definition);
KeptMembers KeptOfGeometryDefinition(const Element& definition);
/// @param parsed  the same, whose effect keeps what it is made of
KeptMembers KeptOfModifierDefinition(const Element& definition, const Modifier& parsed);
KeptMembers KeptOfSkin(const Element& definition);
/// Also what it says of axes, rotation order and inherited scales, which is written only where a file has
/// said it.
KeptMembers KeptOfNodeInstance(const Element& instance);
KeptMembers KeptOfGeometry(const Element& instance);
/// Of a skin.
KeptMembers KeptOfJoint(const Element& joint);
KeptMembers KeptOfModifier(const Element& instance);
/// How many formulas, joints and lists of deltas of a definition or an instance hold more than is read, for
/// which there is no place.
std::size_t CountUnkept(const Element& owner);

/// What a channel holds beyond what is read of it, with its id; empty for nothing.
std::string RestOfChannel(const Element& channel);
/// Likewise for an array of channels, and for one.
std::string RestOfChannels(const Element& channels);

/// Of a file with a scene; null where it holds nothing else.
/// @param idle  see KeptContent
std::shared_ptr<const KeptContent> KeptOfFile(const Element& root, std::vector<std::string> idle);

/// Puts it behind the present members, into those of its name where those are objects or lists of things with
/// ids, and into the present entry of `extra` of its type.
void AddKept(Json& object, const KeptMembers& kept);
/// The kept text of a member where it is of the type that is to be written, since nothing here changes the
/// rest.
Json KeptOr(const KeptMembers& kept, const std::string& member, Json written);

} // namespace dson
