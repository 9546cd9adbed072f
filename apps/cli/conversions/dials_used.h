// Where the dials of a conversion's figures stood.
// SPDX-License-Identifier: MIT

#pragma once

#include "dials.h"
#include "report.h"

#include <optional>
#include <string>
#include <vector>

class DzNode;

namespace cli {

struct DialUsed {
    std::string name, label;
    double value = 0.0;
    std::optional<double> wanted; ///< what was asked for, where that was
};
using DialsUsed = std::vector<DialUsed>;

/// Those of the figure that can be seen and are not at their defaults, and all that were asked for and are
/// there.
DialsUsed FindDialsUsed(const DzNode& figure, const std::vector<NameValue>& wanted);

/// A list of "name", "label", "value", "wanted", which is null where nothing was asked for, and "clamped",
/// whether limits kept the dial from it.
Json Describe(const DialsUsed& dials);

} // namespace cli
