// How far the vertices of a surface have slid along another one, as told by the features of both.
// SPDX-License-Identifier: MIT

#pragma once

#include "offset_field.h"

namespace geometry {

/// What a slide may look like.
struct SlideRestraint {
    float tension = 0.03f; ///< against neighbouring control points that go apart
    float rest = 1e-5f;    ///< against leaving the place, for each vertex
    float longest = 1.0f;  ///< of a slide, in mean edge lengths
    float outlier = 0.25f; ///< in mean edge lengths: what remains as distance and counts half
    int smoothing = 2; ///< steps of averaging, an even number; what they leave is the shapes' own distance
};

/// A surface that follows another one closely has a distance from it that changes slowly. Where its features
/// (nose, ears, fingers) have slid beside the other's, the distance changes quickly instead: too far on one
/// side of the feature, too near on the other. The field is the smooth slide after which least of that is
/// left: a Gauss-Newton step of point-to-plane registration (Chen and Medioni, "Object modelling by
/// registration of multiple range images", 1992) whose residual is the high-frequency part of the distance,
/// over control points that blend as in Sumner, Schmid and Pauly, "Embedded deformation for shape
/// manipulation", 2007.
class SlideField {
public:
    /// @param neighbours, edgeLengths  of the surface's vertices, cm; must outlive this
    SlideField(const IndexLists& neighbours, base::Span<const float> edgeLengths);

    /// Improves the slide and tells where each vertex belongs: its slide and the distance's slow part.
    /// @param goals    one per vertex, as found from where the last call led
    /// @param offsets  cm, one per vertex; those of small pieces stay as they are
    void improve(base::Span<const OffsetGoal> goals, const SlideRestraint& restraint,
                 std::vector<Vec3f>& offsets);

    /// The slide of each vertex, not longer than the restraint lets it be; cm.
    std::vector<Vec3f> slides(const SlideRestraint& restraint) const;

private:
    /// What a control point adds to a vertex, or a vertex takes from it.
    struct Share {
        std::uint32_t index;
        float weight;
    };
    struct ShareLists {
        std::vector<std::uint32_t> offsets{0};
        std::vector<Share> shares;

        base::Span<const Share> operator[](std::size_t i) const
        {
            return {shares.data() + offsets[i], offsets[i + 1] - offsets[i]};
        }
    };
    class System;

    void placeControls();
    void findAdjacent(const std::vector<std::uint32_t>& places);
    void holdSmallPieces();
    bool isHeld(std::size_t vertex) const;
    static ShareLists Transposed(const ShareLists& lists, std::size_t count);
    Vec3f slideAt(std::size_t vertex) const;

    const IndexLists& _neighbours;
    base::Span<const float> _edgeLengths;
    ShareLists _controls;                              ///< by vertex; weights sum to 1
    ShareLists _vertices;                              ///< the same by control point
    std::vector<std::vector<std::uint32_t>> _adjacent; ///< control points that share vertices
    std::vector<bool> _isHeld;                         ///< by control point; its slide stays 0
    std::vector<Vec3f> _slides;                        ///< cm, by control point
};

} // namespace geometry
