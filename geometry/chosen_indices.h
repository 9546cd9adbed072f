// Picking out.
// SPDX-License-Identifier: MIT

#pragma once

#include "for_each_index.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace geometry {

/// The indices below the count that are chosen, ascending.
template <class IsChosen>
std::vector<std::uint32_t> ChosenIndices(std::size_t count, const IsChosen& isChosen)
{
    constexpr std::size_t pieceSize = 16384;
    const std::size_t pieces = (count + pieceSize - 1) / pieceSize;
    const auto forPiece = [&](std::size_t piece, const auto& take) {
        for (std::size_t i = piece * pieceSize; i < std::min(count, (piece + 1) * pieceSize); ++i)
            if (isChosen(i))
                take(static_cast<std::uint32_t>(i));
    };
    std::vector<std::size_t> ends(pieces + 1);
    ForEachIndex(pieces, 1,
                 [&](std::size_t piece) { forPiece(piece, [&](std::uint32_t) { ++ends[piece + 1]; }); });
    for (std::size_t piece = 0; piece < pieces; ++piece)
        ends[piece + 1] += ends[piece];
    std::vector<std::uint32_t> chosen(ends.back());
    ForEachIndex(pieces, 1, [&](std::size_t piece) {
        std::size_t next = ends[piece];
        forPiece(piece, [&](std::uint32_t index) { chosen[next++] = index; });
    });
    return chosen;
}

} // namespace geometry
