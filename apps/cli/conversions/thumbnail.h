// A small picture of a conversion, one among many.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"
#include "report.h"

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace cli {

/// Source, converted figure and, where it was measured, their difference, from the front and side by side. To
/// be taken while both are in the scene and the target wears the new morphs; both are put back.
/// @return a PNG as base64
std::string DrawThumbnail(const GntOutcome& outcome, const ConversionReport& report);

/// What a page with such pictures has to know: "colors", "scale" and "pictureHeight".
Json ThumbnailLegend();

} // namespace cli
