// How much memory work asks for.
// SPDX-License-Identifier: MIT

#include "tests/host/allocations.h"

#include <atomic>

#if COUNTS_ALLOCATIONS

namespace {

std::atomic<std::size_t> allocations{0}, allocatedBytes{0};

void Note(std::size_t size)
{
    allocations.fetch_add(1, std::memory_order_relaxed);
    allocatedBytes.fetch_add(size, std::memory_order_relaxed);
}

} // namespace

// The names are the C library's own.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size)
{
    Note(size);
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size)
{
    Note(count * size);
    return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size)
{
    Note(size);
    return __libc_realloc(memory, size);
}
}

Allocations AllocationsSoFar()
{
    return {allocations, allocatedBytes};
}

#else

Allocations AllocationsSoFar()
{
    return {};
}

#endif
