// How far names and links are followed.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace base {

/// Links in a row, as the system has it.
constexpr int mostLinks = 40;
/// Bytes of a folder's name; of all systems' usual file systems.
constexpr std::size_t longestName = 255;

} // namespace base
