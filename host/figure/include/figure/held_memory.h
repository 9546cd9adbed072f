// What objects of the scene take in memory.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

class QObject;

namespace openhost {

/// About how many bytes a node with all below it, or a modifier, takes: dials, mesh with all that is
/// made of it, and displacements and detail that are read. 0 for other objects.
std::size_t HeldMemory(const QObject& held);

} // namespace openhost
