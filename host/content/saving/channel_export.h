// Properties of the scene as channels of files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/scene.h"

#include <array>
#include <optional>
#include <string>

class DzNode;
class DzNumericProperty;

namespace openhost {

/// The channels of a node's place, by member and axis.
extern const std::array<const char*, 3> transformMembers; ///< "translation", "rotation", "scale"
extern const std::array<const char*, 3> axisIds;          ///< "x", "y", "z"

/// The full definition of a channel; its value is the property's default.
dson::Channel DescribeChannel(const DzNumericProperty& property, const std::string& id);

/// What an instance says of it: the raw value where that is not the default or not what the asset has, and
/// the rest where it differs from what the asset defines. Nothing when there is nothing to say.
std::optional<dson::SceneChannel> DescribeChange(const DzNumericProperty& property, const std::string& id);

/// A node's rest place and its channels, without ids.
dson::Node DescribeNode(const DzNode& node);

/// The node's place, visibility and the like in an instance.
void DescribeInstanceChannels(const DzNode& node, dson::SceneNode& instance);

/// Whether a property belongs to the node by its class, and is no dial that a file or a user has added.
bool IsOwnChannel(const DzNode& node, const DzNumericProperty& property);

} // namespace openhost
