// How far names and links are followed, and how much is listed.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace base {

/// Links in a row, as the system has it.
constexpr int mostLinks = 40;
/// Bytes of a folder's name; of all systems' usual file systems.
constexpr std::size_t longestName = 255;
/// Bytes of what tells which files change together; some hundred thousand names.
constexpr std::size_t longestJournal = std::size_t{1} << 24;
/// Bytes of a table of work to do; some hundred thousand rows.
constexpr std::size_t longestTable = std::size_t{1} << 26;

} // namespace base
