// From what rows name to the rows that name it.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/cancellation.h"

#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace geometry {

/// What rows say about targets, by target and in the order of the rows: counted and filled by parts of the
/// rows that have places of their own, so that threads neither wait for each other nor show in the result.
template <class Row>
class Inversion {
public:
    /// @param row  called with the index of a row and a function that takes a target and what is said of it
    Inversion(std::size_t rows, std::size_t targets, const Row& row)
        : _rows(rows), _row(row), _starts(partCount(rows), std::vector<std::uint32_t>(targets)),
          _offsets(targets + 1)
    {
        eachPart([](std::uint32_t& count, const auto&) { ++count; });
        std::uint32_t end = 0;
        for (std::size_t target = 0; target < targets; ++target) {
            for (std::vector<std::uint32_t>& starts : _starts)
                end += std::exchange(starts[target], end);
            _offsets[target + 1] = end;
        }
    }

    std::size_t size() const { return _offsets.back(); }
    /// Where each target's list begins, and the end of the last one.
    std::vector<std::uint32_t> takeOffsets() { return std::move(_offsets); }

    /// Once.
    /// @param values  size() of them, set one by one
    template <class Value>
    void fill(Value* values)
    {
        eachPart([values](std::uint32_t& place, const Value& value) { values[place++] = value; });
        _starts.clear();
    }

private:
    static std::size_t partCount(std::size_t rows)
    {
        constexpr std::size_t most = 8, fewRows = 16384;
        const auto threads = static_cast<std::size_t>(std::max(1, tbb::this_task_arena::max_concurrency()));
        return std::clamp<std::size_t>(rows / fewRows, 1, std::min(most, threads));
    }

    template <class Take>
    void eachPart(const Take& take)
    {
        tbb::parallel_for(std::size_t{0}, _starts.size(), [&](std::size_t part) {
            std::uint32_t* const own = _starts[part].data();
            const std::size_t end = _rows * (part + 1) / _starts.size();
            for (std::size_t row = _rows * part / _starts.size(); row < end; ++row) {
                if (row % 65536 == 0)
                    base::ThrowIfCancelled();
                _row(row, [&](std::uint32_t target, const auto& value) { take(own[target], value); });
            }
        });
    }

    std::size_t _rows;
    const Row& _row;
    std::vector<std::vector<std::uint32_t>> _starts; ///< of each part, by target: where it goes on
    std::vector<std::uint32_t> _offsets;
};

} // namespace geometry
