// A conversion as a page to look at.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"
#include "report.h"

#include <nlohmann/json.hpp>

namespace cli {

class Progress;

/// What the page shows of both figures: pictures, and the target to turn. To be taken while they are in the
/// scene and the target wears the new morphs; both are put back.
Json ShowConversion(const GntOutcome& outcome, const ConversionReport& report);

/// @param shown  of ShowConversion()
/// @throws base::IoError  the file cannot be written
void WriteConversionPage(const ConversionRequest& request, const ConversionReport& report, Json shown,
                         const Progress& progress);

} // namespace cli
