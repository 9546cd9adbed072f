// Links between properties of the scene as formulas of files.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

#include <functional>
#include <optional>
#include <string>

class DzNumericController;
class DzProperty;

namespace openhost {

/// The URI by which formulas name a property; empty for one that they cannot name.
using PropertyNamer = std::function<std::string(const DzProperty& property)>;

/// The formula of a link; nothing when there is none that does the same, or it reads a property without a
/// name.
std::optional<dson::Formula> DescribeLink(const DzNumericController& link, const std::string& output,
                                          const PropertyNamer& nameOf);

} // namespace openhost
