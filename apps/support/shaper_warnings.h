// What besides its shapes gets from a figure into converted morphs.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

#include <string>
#include <vector>

namespace app {

enum class ConvertedFigure { Source, Target };

/// A warning for each modifier that smooths or pushes a figure's mesh while the conversion takes that for its
/// shape.
/// @param file    that the figure is from; empty where nobody knows
/// @param labels  of the modifiers
base::Diagnostics ShaperWarnings(ConvertedFigure role, const std::string& file, const std::string& figure,
                                 const std::vector<std::string>& labels);

} // namespace app
