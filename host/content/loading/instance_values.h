// What an instance says of its node.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <functional>
#include <string>
#include <vector>

class DzNode;
class DzNumericProperty;

namespace openhost {

using ValueSetter = std::function<void(DzNumericProperty& property, double value)>;
void SetRawValue(DzNumericProperty& property, double value);

/// Name, label, channels and what its first geometry says of the mesh; what the instance leaves open stays as
/// the definition has it.
/// @param set  for the values of the node's own properties
/// @return     labels of the dials that hold the instance's values within their limits
std::vector<std::string> ApplyInstance(const dson::NodeInstance& instance, DzNode& node,
                                       const ValueSetter& set = SetRawValue);

/// Whether its limits keep a dial from having the value that it is set to.
bool IsHeldByLimits(const DzNumericProperty& property);

} // namespace openhost
