// What is told of a conversion of single morphs, for programs and for people.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_conversion.h"
#include "report.h"

#include <string>

namespace cli {

class Progress;

/// @param asJson  with what only programs want to know
Json DescribeMorphConversion(const MorphConversionReport& report, const Progress& progress, bool asJson);

/// Why the conversion as a whole has failed, which it has when a morph has; otherwise empty.
std::string FailureOf(const MorphConversionReport& report);

} // namespace cli
