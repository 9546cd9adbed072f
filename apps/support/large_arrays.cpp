// Freed arrays go back; those that come get huge pages.
// SPDX-License-Identifier: MIT

#include "large_arrays.h"

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define ASKS_FOR_HUGE_PAGES
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#endif

namespace app {

void TreatLargeArraysWell()
{
#ifdef __GLIBC__
    // The allocator would keep arrays of up to 32 MiB once it has seen one freed: a tenth more memory at
    // subdivision level 3.
    constexpr int kept = 8 << 20;
    mallopt(M_MMAP_THRESHOLD, kept);
    // Places that each thread takes for itself would not be given to another one when they are free: as much
    // again.
    mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace app

#ifdef ASKS_FOR_HUGE_PAGES

namespace {

/// The allocator's own setting for this is read from the environment only, before the program begins.
void AskForHugePages(void* array, std::size_t size)
{
    constexpr std::uintptr_t large = 4 << 20, page = 2 << 20;
    if (size < large)
        return;
    // Whole pages only, or the array would take more memory than its size.
    const auto place = reinterpret_cast<std::uintptr_t>(array);
    const std::uintptr_t first = (place + page - 1) / page * page, end = (place + size) / page * page;
    if (first < end) // a system that has none says no, which changes nothing
        madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
}

} // namespace

void* operator new(std::size_t size)
{
    while (true) {
        if (void* const array = std::malloc(std::max<std::size_t>(size, 1))) {
            AskForHugePages(array, size);
            return array;
        }
        if (const std::new_handler helper = std::get_new_handler())
            helper();
        else
            throw std::bad_alloc();
    }
}

void operator delete(void* array) noexcept
{
    std::free(array);
}

void operator delete(void* array, std::size_t) noexcept
{
    std::free(array);
}

#endif
