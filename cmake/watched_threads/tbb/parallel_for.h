// Loops on threads that the thread sanitizer sees through.
// SPDX-License-Identifier: MIT
//
// What the packaged oneTBB does between its threads is not instrumented, so the sanitizer takes all that it
// orders for races. Builds under that sanitizer alone find these headers first; the loops' bodies are the
// same.

#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include <tbb/blocked_range.h>

namespace tbb {

namespace watched {

constexpr std::size_t threads = 4, piecesPerThread = 4;

/// Calls body(piece) for each of the pieces from 0; the first exception goes on to the caller.
template <typename Body>
void ForPieces(std::size_t pieces, const Body& body)
{
    std::atomic<bool> hasFailed{false};
    std::mutex failing;
    std::exception_ptr failure;
    // Dealt out beforehand: whoever came first could take all, and taking them in turns would put their work
    // in an order. Either hides races.
    const auto work = [&](std::size_t first) {
        try {
            for (std::size_t piece = first; piece < pieces && !hasFailed.load(std::memory_order_relaxed);
                 piece += threads)
                body(piece);
        } catch (...) {
            hasFailed.store(true, std::memory_order_relaxed);
            const std::lock_guard<std::mutex> lock(failing);
            if (!failure)
                failure = std::current_exception();
        }
    };
    std::vector<std::thread> team;
    for (std::size_t t = 0; t < std::min(threads, pieces); ++t)
        team.emplace_back(work, t);
    for (std::thread& member : team)
        member.join();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace watched

template <typename Value, typename Body>
void parallel_for(const blocked_range<Value>& range, const Body& body)
{
    if (range.empty())
        return;
    const std::size_t size =
        std::max(range.grainsize(), range.size() / (watched::threads * watched::piecesPerThread));
    watched::ForPieces((range.size() + size - 1) / size, [&](std::size_t piece) {
        const std::size_t first = piece * size, last = std::min(first + size, range.size());
        body(blocked_range<Value>(range.begin() + static_cast<Value>(first),
                                  range.begin() + static_cast<Value>(last)));
    });
}

template <typename Index, typename Body>
void parallel_for(Index first, Index last, const Body& body)
{
    if (first < last)
        parallel_for(blocked_range<Index>(first, last), [&](const blocked_range<Index>& range) {
            for (Index i = range.begin(); i != range.end(); ++i)
                body(i);
        });
}

} // namespace tbb
