// What a conversion is checked for before it costs time.
// SPDX-License-Identifier: MIT

#pragma once

#include "conversions/conversion.h"

class DzNode;

namespace cli {

/// The places that will be written to can be; makes nothing yet, so that a conversion that fails leaves no
/// empty folders.
/// @throws std::runtime_error  one of them cannot
void CheckPlaces(const ConversionRequest& request);

/// Without the displacements of a shape that it wears, the figure would become another character.
/// @return what is missing all the same, since the request accepts it
/// @throws std::runtime_error  anything is missing; the text names every shape and its file
base::Diagnostics CheckShapesAreWhole(const DzNode& source, const ConversionRequest& request);

/// Nothing can be made from a shape that is beyond anything real, which would show at the end only.
/// @throws std::runtime_error  the figure wears such a one; the text names it and its file
void CheckShapesAreReal(const DzNode& figure);

} // namespace cli
