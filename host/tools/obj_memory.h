// The OBJ files that the steps of one long work hand to each other.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/kept_objs.h"

namespace openhost {

/// Those of the work that a progress shows: a file that one step has written, a later one need not parse.
/// Forgotten with the end of the work; without any, nothing is kept from one call to the next.
std::shared_ptr<geometry::KeptObjs> ObjsOfThisWork();

} // namespace openhost
