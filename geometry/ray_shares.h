// Which rays a pixel sends itself, and which it takes over from its neighbours.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace geometry {

/// The rays that are needed for one place, cut into equal shares that each cover all directions. A pixel of
/// few samples sends one share and takes over the others from the pixels around it: in any square of four by
/// four no two send the same (Keller and Heidrich, "Interleaved sampling", 2001). A pixel of many samples
/// sends all.
class RayShares {
public:
    explicit RayShares(int samplesPerAxis)
        : _count(samplesPerAxis < 4 ? 16u : static_cast<std::uint32_t>(samplesPerAxis * samplesPerAxis)),
          _areTakenOver(samplesPerAxis < 4)
    {
    }

    /// That make up the whole.
    std::uint32_t count() const { return _count; }
    bool areTakenOver() const { return _areTakenOver; }
    /// The one that a pixel sends: far apart in the whole for pixels that are close (Bayer, "An optimum
    /// method for two-level rendition of continuous-tone pictures", 1973).
    static std::uint32_t at(int column, int row)
    {
        constexpr std::uint32_t order[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
        return order[row & 3][column & 3];
    }

private:
    std::uint32_t _count;
    bool _areTakenOver;
};

} // namespace geometry
