// What waits for others asks this.
// SPDX-License-Identifier: MIT

#pragma once

namespace base {

/// Whether work is to end, also while a Cancelled is on its way: of a loop that is divided among threads, one
/// that waits for what may never come would hold up all others.
bool IsToldToEnd() noexcept;

} // namespace base
