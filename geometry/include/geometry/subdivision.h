// Catmull-Clark subdivision through OpenSubdiv.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <memory>
#include <vector>

namespace geometry {

/// What becomes of the border of an open mesh.
enum class BoundaryRule {
    None,         ///< faces along it only support those further in; their own refinement means little
    EdgeOnly,     ///< a smooth curve along its edges
    EdgeAndCorner ///< the same, but vertices of a single face stay where they are
};

/// An edge of the cage that stays sharper than its neighbours.
struct Crease {
    std::uint32_t a = 0, b = 0; ///< its vertices, in any order
    float sharpness = 0.0f; ///< levels for which it stays sharp, in part where it is no whole number; 10 and
                            ///< above for all

    bool operator==(const Crease& other) const
    {
        return a == other.a && b == other.b && sharpness == other.sharpness;
    }
};

/// Uniform refinement of one topology by the rules of Catmull and Clark, "Recursively generated B-spline
/// surfaces on arbitrary topological meshes", 1978. Build once, then refine any number of shapes, deltas or
/// weight maps, also from several threads at once.
///
/// Vertex order of a level is OpenSubdiv's own refined order for that topology and level: fixed for a given
/// topology, used alike for export and for loading. The positions are refined positions, not limit positions.
class Subdivision {
public:
    /// @param levels   0 or more; level 0 is the cage itself
    /// @param creases  of the cage (DeRose, Kass and Truong, "Subdivision surfaces in character animation",
    /// 1998);
    ///                 those that are no edges of it have no effect
    /// @throws TopologyError  the topology is invalid, a crease names a vertex that is not there, or the
    /// finest level
    ///                        would exceed 2^31 corners
    Subdivision(std::shared_ptr<const Topology> cage, int levels, BoundaryRule rule = BoundaryRule::EdgeOnly,
                base::Span<const Crease> creases = {});
    ~Subdivision();
    Subdivision(Subdivision&&) noexcept;
    Subdivision& operator=(Subdivision&&) noexcept;

    int levels() const;
    /// Topology of a level from 0 to levels(), groups and surfaces inherited from the cage's faces.
    const std::shared_ptr<const Topology>& topology(int level) const;
    /// The cage face that a face of the level lies in; `face >> 2 * level` only where all are quads.
    std::uint32_t cageFace(int level, std::uint32_t face) const;

    /// Refines values from one level to a later one (linear in the values: positions and deltas alike).
    /// @param values  one per vertex of fromLevel
    /// @return        one per vertex of toLevel
    /// @throws TopologyError  the number of values is not that level's vertex count
    std::vector<Vec3f> refine(base::Span<const Vec3f> values, int fromLevel, int toLevel) const;
    std::vector<float> refine(base::Span<const float> values, int fromLevel, int toLevel) const;

    /// The coarse shape whose refinement comes closest to the given fine one (least squares over the stencils
    /// between the two levels, conjugate gradients from the given start).
    /// @param fine   one per vertex of fineLevel; cm
    /// @param start  one per vertex of startLevel; the coarse shape to begin at
    /// @param accuracy  of the misfit that could still be removed, the share at which to stop; the default
    ///                  leaves a micrometre of 10 cm
    /// @throws TopologyError  a number of values is not its level's vertex count
    std::vector<Vec3f> fit(base::Span<const Vec3f> fine, int fineLevel, base::Span<const Vec3f> start,
                           int startLevel = 0, double accuracy = 1e-5) const;
    /// Gives back what fits have left for the next ones, which is as much again as the rest. Any thread may
    /// ask, also while others fit.
    void forgetFits() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace geometry
