// What a D-Former does to an object.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/vec3.h"

#include <vector>

class DzDFormModifier;
class DzObject;

namespace openhost {

/// Moves the positions, which are those of the object's cage before the skin, as the D-Former's nodes stand.
/// @throws base::Error  its weights are not for this cage
void ApplyDFormer(const DzDFormModifier& modifier, const DzObject& object,
                  std::vector<geometry::Vec3f>& positions);

/// Whether it moves anything as its nodes stand now.
bool IsActive(const DzDFormModifier& modifier);

} // namespace openhost
