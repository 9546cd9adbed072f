// What an instance says of its node.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

class DzNode;

namespace openhost {

/// Name, label, channels and what its geometries say of the mesh; what the instance leaves open stays as the
/// definition has it.
void ApplyInstance(const dson::NodeInstance& instance, DzNode& node);

} // namespace openhost
