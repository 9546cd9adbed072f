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
    /// Sends the rays of all surfaces of a row, for which it looks at the surfaces within reach.
    /// @param which  of the rows
    void trace(base::Span<PixelRow> rows, std::size_t which) const;
    /// Adds the light of a row's surfaces to its colours, after the rows within reach have been traced.
    void light(base::Span<PixelRow> rows, std::size_t which) const;

private:
    struct Start;
    std::vector<Start> startsOf(base::Span<PixelRow> rows, std::size_t which) const;
    void traceOpenness(base::Span<const Start> starts, PixelRow& row) const;
    void traceLamp(std::size_t lamp, base::Span<const Start> starts, PixelRow& row) const;
    template <class Visit>
    void visitLike(base::Span<const PixelRow> rows, std::size_t which, int column,
                   const PixelSurface& surface, const Visit& visit) const;

    const PictureView& _view;
    RayShares _shares;
    SurfaceLikeness _likeness;
    std::vector<Vec3f>
        _hemisphere; ///< around z; those of a share are its number plus multiples of their count
    std::array<std::vector<Vec3f>, lampCount> _toLamps; ///< likewise
};

} // namespace geometry
