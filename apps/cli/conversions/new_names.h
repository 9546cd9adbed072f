// Names for the morphs that a conversion makes.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"

class DzNode;

namespace cli {

/// Whether a morph can be called so at all.
/// @throws UsageError  it cannot; the text says why
void CheckMorphName(const std::string& name);

/// Nothing else may have the new morphs' names: not the target, where a conversion would change what has the
/// name, and no file that a save would replace, unless the request allows it. A morph of the target that is
/// to be replaced is taken off.
/// @param diagnostics  hears of dials that look as if they had the name
/// @return the names
/// @throws std::runtime_error  a name is not free; the text names what has it
std::vector<std::string> FreeMorphNames(const DzNode& source, DzNode& target,
                                        const ConversionRequest& request, base::Diagnostics& diagnostics);

} // namespace cli
