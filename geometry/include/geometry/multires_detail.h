// Multi-resolution morphs: fine displacements over a subdivided cage, in frames that move with it.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/subdivision.h"

#include <cstdint>
#include <vector>

namespace geometry {

/// Displacements of some vertices of one subdivision level.
struct DetailLevel {
    /// Corners of the level's faces, 4 * face + corner, ascending. A corner names the vertex it stands on and
    /// the cage corner whose frame counts, `corner >> 2 * level`. Each vertex is named once.
    std::vector<std::uint32_t> corners;
    std::vector<Vec3f> offsets; ///< cm at dial 1, along the frame's three axes

    std::size_t size() const { return corners.size(); }
    bool empty() const { return corners.empty(); }
};

/// What a morph adds to the subdivision of its cage, level by level: each level's offsets are added before
/// the next refinement, so that coarse ones spread. For the idea see Zorin, Schröder and Sweldens,
/// "Interactive multiresolution mesh editing", 1997.
struct MultiresDetail {
    std::vector<DetailLevel> levels; ///< level 1 first

    bool empty() const;
};

/// The detail of one morph, which must outlive this, and how much of it counts.
struct ActiveDetail {
    const MultiresDetail* detail = nullptr; ///< not null
    float value = 1.0f;                     ///< the dial
    int finestLevel = INT32_MAX;            ///< finer levels are left out
};

/// The frame of one corner of a cage face: along the edge from the corner to the one before it, along the
/// face's normal, and across both. The first two are of unit length, but not quite at right angles where the
/// face is bent.
struct CornerFrame {
    Vec3f x, n, z;
    float cosine = 1.0f; ///< between x and n; near 1 or -1 for a degenerate face, whose frame is of no use

    bool isUsable() const;
    Vec3f toWorld(Vec3f offset) const { return x * offset.x + n * offset.y + z * offset.z; }
    Vec3f toLocal(Vec3f displacement) const; ///< the inverse; only of a usable frame
};

/// One frame per corner of the cage, in the order of its corners; of no use where a face has no area.
/// @param positions  cm, one per cage vertex
std::vector<CornerFrame> CornerFrames(const Topology& cage, base::Span<const Vec3f> positions);

/// The subdivided cage with all detail.
/// @param cage  cm, one per vertex of level 0
/// @return      cm, one per vertex of the level
/// @throws TopologyError  a detail names a corner that its level does not have
std::vector<Vec3f> RefineWithDetail(const Subdivision& subdivision, base::Span<const Vec3f> cage, int level,
                                    base::Span<const ActiveDetail> details);

/// The detail that, beside the others, makes the subdivided cage the given fine shape. Levels below the
/// finest get what brings each of them as near to the fine shape as its own vertices can (least squares), so
/// that the shape is good at every level.
/// @param fine       cm, one per vertex of the level
/// @param tolerance  cm; shorter displacements are dropped, and finer levels make up for them where they can
/// @throws TopologyError  a number of vertices does not fit
MultiresDetail SplitDetail(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                           base::Span<const Vec3f> cage, base::Span<const ActiveDetail> others,
                           float tolerance);

/// The cage of the vertices' own places in the fine shape: each cage vertex where its descendant stands. One
/// that no face uses stays where it is in the given cage.
/// @param fine  cm, one per vertex of the level
/// @param cage  cm, one per vertex of level 0; the result likewise
std::vector<Vec3f> SampleCage(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                              base::Span<const Vec3f> cage);

/// Attenuates as geometry::Attenuate does, the map refined to each level.
/// @param weights  0..1, one per cage vertex
/// @throws TopologyError  the number of weights is not the cage's vertex count
void Attenuate(MultiresDetail& detail, const Subdivision& subdivision, base::Span<const float> weights,
               float strength);

/// What the detail of a level moves in space: cm, one per vertex of the level.
/// @param frames  of the cage, see CornerFrames
/// @throws TopologyError  the detail names a corner that its level does not have
std::vector<Vec3f> ToDisplacements(const DetailLevel& detail, int level, const Subdivision& subdivision,
                                   base::Span<const CornerFrame> frames);
/// The way back. Displacements not longer than the tolerance (cm) are dropped, and those of vertices on faces
/// without an area only.
/// @throws TopologyError  the number of displacements is not the level's vertex count
DetailLevel ToDetail(base::Span<const Vec3f> displacements, int level, const Subdivision& subdivision,
                     base::Span<const CornerFrame> frames, float tolerance);

/// The fresh detail, and the old one where the fresh does not move the vertex.
/// @param level  the topology of their level, which has all corners that they name
DetailLevel WithPreserved(const DetailLevel& old, const DetailLevel& fresh, const Topology& level);

} // namespace geometry
