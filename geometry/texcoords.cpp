// Refinement of texture coordinates through OpenSubdiv's face-varying values.
// SPDX-License-Identifier: MIT

#include "geometry/texcoords.h"

#include "base/counted.h"
#include "catmark_refiner.h"
#include "geometry/errors.h"

#include <opensubdiv/far/primvarRefiner.h>

#include <algorithm>

namespace geometry {

namespace {

namespace Far = OpenSubdiv::Far;

/// A coordinate as OpenSubdiv adds it up.
struct Sum : TexCoords::Uv {
    void Clear() { u = v = 0.0f; }
    void AddWithWeight(const Sum& source, float weight)
    {
        u += weight * source.u;
        v += weight * source.v;
    }
};

void CheckIndices(const TexCoords& texCoords, const Topology& cage)
{
    if (texCoords.cornerIndices.size() != cage.cornerCount())
        throw TopologyError(
            "{} given for {}",
            base::Counted(texCoords.cornerIndices.size(), "texture coordinate is", "texture coordinates are"),
            base::Counted(cage.cornerCount(), "corner", "corners"));
    for (const std::uint32_t index : texCoords.cornerIndices)
        if (index >= texCoords.coordinates.size())
            throw TopologyError("a corner names texture coordinate {} but only {} defined", index,
                                base::Counted(texCoords.coordinates.size(), "is", "are"));
}

} // namespace

TexCoords RefineTexCoords(const TexCoords& texCoords, const Topology& cage, int level, BoundaryRule rule,
                          base::Span<const Crease> creases)
{
    CheckIndices(texCoords, cage);
    CheckRefinedSize(cage, level);
    const auto refiner = MakeCatmarkRefiner(cage, level, rule, creases,
                                            {texCoords.coordinates.size(), texCoords.cornerIndices});
    std::vector<Sum> values;
    for (const TexCoords::Uv& uv : texCoords.coordinates)
        values.push_back({uv});
    for (int l = 1; l <= level; ++l) {
        std::vector<Sum> refined(static_cast<std::size_t>(refiner->GetLevel(l).GetNumFVarValues()));
        Far::PrimvarRefiner(*refiner).InterpolateFaceVarying(l, values, refined);
        values = std::move(refined);
    }
    const Far::TopologyLevel& finest = refiner->GetLevel(level);
    TexCoords result;
    result.coordinates.assign(values.begin(), values.end());
    result.cornerIndices.reserve(4 * static_cast<std::size_t>(finest.GetNumFaces()));
    for (int face = 0; face < finest.GetNumFaces(); ++face)
        for (const int index : finest.GetFaceFVarValues(face))
            result.cornerIndices.push_back(static_cast<std::uint32_t>(index));
    return result;
}

} // namespace geometry
