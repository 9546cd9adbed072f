// How faces are cut into triangles to be drawn.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/picture_stage.h"

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace geometry {

/// Those faces of a mesh that a fan around the first corner would reach beyond, cut by ear clipping
/// (Meisters, "Polygons have ears", 1975); as well as can be where one crosses itself. One of more than
/// mostCutCorners stays a fan.
class FaceCuts {
public:
    explicit FaceCuts(const PolygonMeshView& mesh);

    bool isEmpty() const { return _cuts.empty(); }
    /// Three vertices a triangle; null for a face whose fan fills it.
    const std::vector<std::uint32_t>* find(std::uint32_t face) const
    {
        const auto found = _cuts.find(face);
        return found == _cuts.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> _cuts;
};

/// @param visit  takes the three vertices of each triangle
template <class Visit>
void ForEachTriangle(const NumberedMesh& one, std::uint32_t f, const Visit& visit)
{
    const std::vector<std::uint32_t>* const cut = one.cuts ? one.cuts->find(f) : nullptr;
    if (cut) {
        for (std::size_t i = 0; i < cut->size(); i += 3)
            visit(std::array<std::uint32_t, 3>{(*cut)[i], (*cut)[i + 1], (*cut)[i + 2]});
        return;
    }
    const base::Span<const std::uint32_t> face = one.mesh.face(f);
    for (std::size_t i = 2; i < face.size(); ++i)
        visit(std::array<std::uint32_t, 3>{face[0], face[i - 1], face[i]});
}

} // namespace geometry
