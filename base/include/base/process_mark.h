// Which process a file that should not last belongs to.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace base {

/// Tells this process from all others of all machines that share a disk, also from later ones of its number:
/// letters, digits and '-', to be part of a file's name.
std::string ProcessMark();

/// Whether the process of the mark has ended. Those of other machines and containers count as running, as
/// does what is no mark at all.
bool HasEnded(std::string_view mark);

} // namespace base
