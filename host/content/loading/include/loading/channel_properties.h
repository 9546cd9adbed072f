// Channels of files as properties of the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <memory>
#include <string>

class DzNode;
class DzNumericProperty;
class DzProperty;

namespace openhost {

/// Label, limits, default, display and present value of an existing property, from a file's channel.
void ApplyChannel(DzNumericProperty& property, const dson::Channel& channel);

/// What an instance says of a property besides its value.
void ApplyChange(DzNumericProperty& property, const dson::ChannelChange& change);

/// Whether a limit is more than a dial can have; it gets the nearest that it can.
bool HasLimitsBeyondFloat(const dson::Channel& channel);
/// False for one that is shown as a plain number, or not at all.
bool IsOfKnownType(const dson::Channel& channel);

/// A new property of the channel's type; null for types that hold no number.
std::unique_ptr<DzNumericProperty> MakeProperty(const std::string& name, const dson::Channel& channel);

/// The property of a node that a URI's property path names: "rotation/z" is ZRotate, "center_point/x" is
/// XOrigin, "scale/general" is Scale; null for none.
DzNumericProperty* FindNodeChannel(const DzNode& node, const std::string& propertyPath);

/// What an alias stands for in the end; the property itself for any other.
DzNumericProperty& AliasEnd(DzNumericProperty& property);

} // namespace openhost
