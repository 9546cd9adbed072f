// Formulas of files as links between properties of the scene.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"

#include <functional>
#include <string>

class DzNumericProperty;

namespace openhost {

/// The property that a URI names; null for none.
using PropertyResolver = std::function<DzNumericProperty*(const std::string& uri)>;

enum class LinkResult { Made, MissingProperty, NotUnderstood };

/// Drives the formula's output. `push url, push value, mult` becomes a delta-add link, a spline of one
/// property a keyed link, a lone property in the multiply stage a multiply link; anything else a controller
/// of its own.
/// @param isFromDataFile  the link comes with an asset, so that saving a scene need not keep it
LinkResult MakeLink(const dson::Formula& formula, const PropertyResolver& resolve, bool isFromDataFile);

} // namespace openhost
