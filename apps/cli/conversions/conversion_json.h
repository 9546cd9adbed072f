// What is told of a conversion, for programs and for people.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"
#include "report.h"

namespace cli {

class Progress;

/// @param asJson  with what only programs want to know
Json DescribeConversion(const ConversionReport& report, const Progress& progress, bool asJson);

} // namespace cli
