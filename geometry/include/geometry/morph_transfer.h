// Carrying morphs from one mesh to another that lies close to it.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/polygon_mesh.h"

#include <memory>
#include <vector>

namespace geometry {

struct JointWeights;

struct MatchOptions {
    float maxDistanceInEdges = 3.0f; ///< in mean edge lengths near the vertex, not in cm
    float maxAngleDegrees = 75.0f;   ///< between the two normals
    /// The target's features may lie beside the source's, not only its vertices: registers them first, by up
    /// to four mean edge lengths, those of a coarser level where a dense mesh has one. Takes a few times as
    /// long. For targets that are bent; one that is rough is matched worse.
    bool registersFeatures = false;
};

/// What a match found, for reports.
struct MatchStatistics {
    std::size_t matched = 0; ///< target vertices with a place of their own on the source
    std::size_t filled = 0;  ///< target vertices that take their values from their neighbours
    /// How far vertices had slid along the source's surface; cm. 0 where a mesh is too dense to tell.
    float meanSlide = 0.0f, longestSlide = 0.0f;
};

/// Where each target vertex lies on the source's surface, and how the rest is filled in. Linear in the values
/// that are carried: build once per pair, apply to any number of morphs or weights, also from several
/// threads.
class SurfaceMap {
public:
    ~SurfaceMap();
    SurfaceMap(SurfaceMap&&) noexcept;
    SurfaceMap& operator=(SurfaceMap&&) noexcept;

    std::size_t sourceVertexCount() const;
    std::size_t targetVertexCount() const;
    const MatchStatistics& statistics() const;
    /// The source face each target vertex lies nearest to (for groups); UINT32_MAX where filled in.
    base::Span<const std::uint32_t> sourceFaces() const;

    /// @param values  one per source vertex; cm for deltas
    /// @return        one per target vertex
    /// @throws TopologyError  the number of values is not the source's vertex count
    std::vector<Vec3f> transfer(base::Span<const Vec3f> values) const;
    std::vector<float> transfer(base::Span<const float> values) const;
    /// The same values as list by list, in the time that is needed for those that are not 0.
    /// @param perJoint  by source vertex; what a list does not name is 0
    /// @return  one list per list, vertices in ascending order
    /// @throws TopologyError  a vertex index is out of range, or a list's two parts differ in length
    std::vector<JointWeights> transfer(base::Span<const JointWeights> perJoint) const;

private:
    struct Impl;
    explicit SurfaceMap(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> _impl;
    friend SurfaceMap MatchSurfaces(const PolygonMeshView&, const PolygonMeshView&, const MatchOptions&);
};

/// Finds where each target vertex lies on the source's neutral surface: closest point with compatible
/// normals, seen from where a smooth field of offsets, fitted to all matches at once, carries the vertex, and
/// then from where the features of both surfaces meet. Where the target folds over, so that a vertex's own
/// normal says nothing, the vertices around it tell;
/// far, turned-away or inconsistent matches are dropped and filled by a bi-Laplacian extension over the
/// target's surface, across disconnected pieces from what is near. For the filling see Abdrashitov et al.,
/// "Robust skin weights transfer via weight inpainting", 2023.
///
/// The meshes are read during the call only.
/// @throws TopologyError  a mesh has no faces, the source none with an area, or one holds a position that is
/// not finite or beyond farthestPosition
SurfaceMap MatchSurfaces(const PolygonMeshView& sourceNeutral, const PolygonMeshView& targetNeutral,
                         const MatchOptions& options = {});

/// Carries what faces are labelled with, such as groups or surfaces.
/// @param sourceLabels  one per face of the source
/// @return  one per face of the target: what most of the source faces nearest to its vertices have; without
///          any, what the face before it has
/// @throws TopologyError  the target has other vertices than the map, or too few labels are given
std::vector<std::uint32_t> TransferLabels(const SurfaceMap& map, const Topology& target,
                                          base::Span<const std::uint32_t> sourceLabels);

} // namespace geometry
