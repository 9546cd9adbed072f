// OpenSubdiv's refinement of a topology.
// SPDX-License-Identifier: MIT

#include "catmark_refiner.h"

#include "base/counted.h"
#include "geometry/errors.h"
#include "geometry/limits.h"

#include <opensubdiv/far/topologyDescriptor.h>
#include <opensubdiv/far/topologyRefinerFactory.h>
#include <opensubdiv/sdc/crease.h>

#include <algorithm>
#include <unordered_set>

namespace geometry {

namespace {

namespace Far = OpenSubdiv::Far;
namespace Sdc = OpenSubdiv::Sdc;

Sdc::Options::VtxBoundaryInterpolation ToOpenSubdiv(BoundaryRule rule)
{
    switch (rule) {
    case BoundaryRule::None:
        return Sdc::Options::VTX_BOUNDARY_NONE;
    case BoundaryRule::EdgeOnly:
        return Sdc::Options::VTX_BOUNDARY_EDGE_ONLY;
    case BoundaryRule::EdgeAndCorner:
        return Sdc::Options::VTX_BOUNDARY_EDGE_AND_CORNER;
    }
    return Sdc::Options::VTX_BOUNDARY_EDGE_ONLY;
}

void CheckValences(const Topology& cage)
{
    for (std::size_t f = 0; f < cage.faceCount(); ++f)
        if (cage.face(f).size() > mostCorners)
            throw TopologyError("face {} has {} corners but at most {} can be subdivided", f,
                                cage.face(f).size(), mostCorners);
    std::vector<std::uint32_t> valences(cage.vertexCount);
    for (const std::uint32_t vertex : cage.cornerVertices)
        if (++valences[vertex] == mostCorners)
            throw TopologyError("vertex {} has too many faces to be subdivided", vertex);
}

/// Creases in the two lists that OpenSubdiv wants.
struct CreaseLists {
    std::vector<int> vertices;
    std::vector<float> sharpness;

    CreaseLists(const Topology& cage, base::Span<const Crease> creases)
    {
        std::unordered_set<std::uint64_t> edges;
        for (std::size_t f = 0; f < cage.faceCount() && !creases.empty(); ++f) {
            const auto face = cage.face(f);
            for (std::size_t c = 0; c < face.size(); ++c)
                edges.insert(KeyOf(face[c], face[c + 1 == face.size() ? 0 : c + 1]));
        }
        for (const Crease& crease : creases) {
            if (crease.a >= cage.vertexCount || crease.b >= cage.vertexCount)
                throw TopologyError("a crease names vertex {} but only {} defined",
                                    std::max(crease.a, crease.b),
                                    base::Counted(cage.vertexCount, "is", "are"));
            if (edges.count(KeyOf(crease.a, crease.b)) == 0)
                continue;
            vertices.push_back(static_cast<int>(crease.a));
            vertices.push_back(static_cast<int>(crease.b));
            sharpness.push_back(std::clamp(crease.sharpness, 0.0f, Sdc::Crease::SHARPNESS_INFINITE));
        }
    }

private:
    static std::uint64_t KeyOf(std::uint32_t a, std::uint32_t b)
    {
        return std::uint64_t{std::min(a, b)} << 32 | std::max(a, b);
    }
};

} // namespace

void CheckRefinedSize(const Topology& cage, int levels)
{
    double corners = static_cast<double>(cage.cornerCount());
    for (int level = 1; level <= levels; ++level)
        corners *= 4.0;
    if (corners > 2147483648.0)
        throw TopologyError("subdivision level {} of {} is too large", levels,
                            base::Counted(cage.faceCount(), "face", "faces"));
}

std::unique_ptr<Far::TopologyRefiner> MakeCatmarkRefiner(const Topology& cage, int levels, BoundaryRule rule,
                                                         base::Span<const Crease> creases,
                                                         const FaceVarying& values)
{
    CheckValences(cage);
    const CreaseLists lists(cage, creases);
    std::vector<int> sizes(cage.faceCount());
    for (std::size_t f = 0; f < sizes.size(); ++f)
        sizes[f] = static_cast<int>(cage.face(f).size());
    Far::TopologyDescriptor descriptor;
    descriptor.numVertices = static_cast<int>(cage.vertexCount);
    descriptor.numFaces = static_cast<int>(sizes.size());
    descriptor.numVertsPerFace = sizes.data();
    descriptor.vertIndicesPerFace = reinterpret_cast<const int*>(cage.cornerVertices.data());
    descriptor.numCreases = static_cast<int>(lists.sharpness.size());
    descriptor.creaseVertexIndexPairs = lists.vertices.data();
    descriptor.creaseWeights = lists.sharpness.data();
    Far::TopologyDescriptor::FVarChannel channel;
    channel.numValues = static_cast<int>(values.count);
    channel.valueIndices = reinterpret_cast<const int*>(values.cornerIndices.data());
    if (!values.cornerIndices.empty()) {
        descriptor.numFVarChannels = 1;
        descriptor.fvarChannels = &channel;
    }

    Sdc::Options options;
    options.SetFVarLinearInterpolation(Sdc::Options::FVAR_LINEAR_CORNERS_ONLY);
    options.SetVtxBoundaryInterpolation(ToOpenSubdiv(rule));
    using Factory = Far::TopologyRefinerFactory<Far::TopologyDescriptor>;
    std::unique_ptr<Far::TopologyRefiner> refiner(
        Factory::Create(descriptor, Factory::Options(Sdc::SCHEME_CATMARK, options)));
    if (!refiner)
        throw TopologyError("the mesh cannot be subdivided");
    refiner->RefineUniform(Far::TopologyRefiner::UniformOptions(levels));
    return refiner;
}

} // namespace geometry
