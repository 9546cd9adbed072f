// How much memory a conversion takes, and the machine has.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <optional>

namespace cli {

/// Bytes that a subdivided conversion takes at its height, about.
/// @param cageVertices  of source and target together
double SubdividedConversionNeed(std::size_t cageVertices, int level);

/// Bytes that this process may still take: what the machine has left, or a limit that is set to less. Nothing
/// where the system does not tell.
std::optional<double> MemoryLeft();

/// @throws std::runtime_error  the conversion needs more than there is; the text has both and what helps
void CheckMemory(std::size_t cageVertices, int level);

} // namespace cli
