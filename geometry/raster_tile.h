// Drawing triangles into one tile of a picture.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace geometry {

/// A corner on the picture: sample centres have whole numbers.
struct RasterCorner {
    float x = 0.0f, y = 0.0f;
    float nearness = 0.0f; ///< larger is nearer; even along lines on the picture
};

/// As std::floor and std::ceil, of what fits: those are calls where the processor's own rounding may not be
/// counted on, and there are several for each face and edge.
inline int FloorOf(float value)
{
    const int towardsZero = static_cast<int>(value);
    return towardsZero - (static_cast<float>(towardsZero) > value);
}
inline int CeilOf(float value)
{
    const int towardsZero = static_cast<int>(value);
    return towardsZero + (static_cast<float>(towardsZero) < value);
}

/// A square of samples with their depths.
class RasterTile {
public:
    static constexpr int size =
        64; ///< samples along each side; the depths fit into a processor's first cache

    /// @param faces   receives what is seen, beginning with the tile's first sample
    /// @param stride  from one row of it to the next
    RasterTile(int left, int top, int right, int bottom, std::uint32_t* faces, int stride);

    /// Draws where nothing nearer, or as near and earlier, has been drawn. Of two triangles on both sides of
    /// an edge exactly one gets a sample that lies on it.
    void draw(const RasterCorner& a, const RasterCorner& b, const RasterCorner& c, std::uint32_t face);

private:
    int _left, _top, _right, _bottom; ///< the last two are outside
    std::uint32_t* _faces;
    int _stride;
    float _nearness[size * size];
};

} // namespace geometry
