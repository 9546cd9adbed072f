// What a conversion is checked for before it costs time.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversion.h"

class DzNode;

namespace cli {

/// The places that will be written to can be; makes nothing yet, so that a conversion that fails leaves no
/// empty folders.
/// @throws std::runtime_error  one of them cannot
void CheckPlaces(const ConversionRequest& request);

/// @throws std::runtime_error  the figure of the file is of no generation that can be converted
void CheckIsSource(const DzNode& node, const std::filesystem::path& file);
/// @throws std::runtime_error  the figure of the file is no Genesis 9
void CheckIsTarget(const DzNode& node, const std::filesystem::path& file);

/// A shape whose file is missing or broken is left out by the host with a warning; the result would then be
/// another character.
/// @param warnings  the host's, after the figure's shape has been computed
/// @throws std::runtime_error  one of them is about a shape that the file dials in
void CheckShapesAreWhole(const std::filesystem::path& file, const base::Diagnostics& warnings);

} // namespace cli
