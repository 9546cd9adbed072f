// How much memory work asks for.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define COUNTS_ALLOCATIONS true
#else
#define COUNTS_ALLOCATIONS false // a sanitizer has the allocator
#endif

/// Of all threads since the program began. Always zero where none are counted.
Allocations AllocationsSoFar();
