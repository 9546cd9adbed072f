// Soft shadows and ambient occlusion of a picture's surfaces.
// SPDX-License-Identifier: MIT

#pragma once

#include "picture_row.h"
#include "ray_shares.h"

#include <vector>

namespace geometry {

class ShadowTracer {
public:
    /// @param view  must outlive it; its stage is made ready to trace
    explicit ShadowTracer(const PictureView& view);

    /// How many rows above and below one are needed for its light.
    static int reach(int samplesPerAxis);
    /// Sends the own share of each surface of a row.
    void trace(PixelRow& row) const;
    /// Adds the light of a row's surfaces to its colours, after the rows within reach have been traced. Sends
    /// the other shares of those for which the neighbours' will not do.
    void light(base::Span<PixelRow> rows, std::size_t which) const;

private:
    struct WantedRays;
    struct Start;
    struct Alone;
    enum class Part { All, Even, Odd }; ///< of a surface's other shares, counted from its own

    static bool Suffice(const RaySums& around);
    RaySums lookAround(base::Span<const PixelRow> rows, std::size_t which, int column,
                       const PixelSurface& surface) const;
    void addOtherShares(const PixelRow& row, const Alone& one, Part part, WantedRays wanted, RaySums* sums,
                        std::vector<Start>& starts) const;
    void traceAlone(const PixelRow& row, std::vector<Alone>& alone, std::vector<RaySums>& sums) const;
    void trace(std::vector<Start>& starts) const;
    void traceOpenness(base::Span<const Start> starts) const;
    void traceLamp(std::size_t lamp, base::Span<const Start> starts) const;

    const PictureView& _view;
    RayShares _shares;
    SurfaceLikeness _likeness;
    std::vector<Vec3f>
        _hemisphere; ///< around z; those of a share are its number plus multiples of their count
    std::array<std::vector<Vec3f>, lampCount> _toLamps; ///< likewise
};

} // namespace geometry
