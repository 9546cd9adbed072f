// How much memory work asks for.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

/// Of all threads since the program began. Always zero where another watcher has the allocator.
Allocations AllocationsSoFar();
