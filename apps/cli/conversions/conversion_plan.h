// What a conversion would write, where it is only looked at.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"

class DzNode;

namespace cli {

/// Does all that comes before the first step: finds the files that the conversion needs, and sets the bases.
/// Lists the files to come.
/// @param names   of the morphs to be made, which are free
/// @param report  receives them, and what is known of the conversion by then
/// @throws std::runtime_error  the conversion would fail; kst::Exception and GntBaseRangeError likewise
void PlanConversion(DzNode& source, DzNode& target, const ConversionRequest& request,
                    const std::vector<std::string>& names, ConversionReport& report);

} // namespace cli
