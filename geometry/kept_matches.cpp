// Matches of meshes that are asked for again and again.
// SPDX-License-Identifier: MIT

#include "geometry/kept_matches.h"

#include <algorithm>
#include <cstring>
#include <list>
#include <mutex>

namespace geometry {

namespace {

/// A copy, since nobody promises that a mesh stays as it is.
struct KeptMesh {
    explicit KeptMesh(const PolygonMeshView& mesh)
        : offsets(mesh.topology->faceOffsets), corners(mesh.topology->cornerVertices),
          positions(mesh.positions.begin(), mesh.positions.end())
    {
    }

    /// To the bit: the map is to be the one that a new match would give.
    bool is(const PolygonMeshView& mesh) const
    {
        return positions.size() == mesh.positions.size() && offsets == mesh.topology->faceOffsets &&
               corners == mesh.topology->cornerVertices &&
               std::memcmp(positions.data(), mesh.positions.data(), positions.size() * sizeof(Vec3f)) == 0;
    }

    std::vector<std::uint32_t> offsets, corners;
    std::vector<Vec3f> positions;
};

struct KeptMatch {
    KeptMesh source, target;
    std::shared_ptr<const SurfaceMap> map;
};

class KeptMatches {
public:
    std::shared_ptr<const SurfaceMap> find(const PolygonMeshView& source, const PolygonMeshView& target)
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        const auto found = std::find_if(_kept.begin(), _kept.end(), [&](const KeptMatch& kept) {
            return kept.source.is(source) && kept.target.is(target);
        });
        if (found == _kept.end())
            return nullptr;
        _kept.splice(_kept.begin(), _kept, found); // what is used last goes last
        return found->map;
    }

    void keep(const PolygonMeshView& source, const PolygonMeshView& target,
              const std::shared_ptr<const SurfaceMap>& map)
    {
        constexpr std::size_t most = 8, mostVertices = 1000000; // some 100 MB at most
        if (source.vertexCount() + target.vertexCount() > mostVertices)
            return;
        const std::lock_guard<std::mutex> lock(_mutex);
        _kept.push_front({KeptMesh(source), KeptMesh(target), map});
        while (_kept.size() > most || (_kept.size() > 1 && vertexCount() > mostVertices))
            _kept.pop_back();
    }

private:
    std::size_t vertexCount() const
    {
        std::size_t count = 0;
        for (const KeptMatch& kept : _kept)
            count += kept.source.positions.size() + kept.target.positions.size();
        return count;
    }

    std::mutex _mutex;
    std::list<KeptMatch> _kept; ///< the one used last comes first
};

} // namespace

std::shared_ptr<const SurfaceMap> MatchOnce(const PolygonMeshView& sourceNeutral,
                                            const PolygonMeshView& targetNeutral)
{
    static KeptMatches matches;
    if (std::shared_ptr<const SurfaceMap> known = matches.find(sourceNeutral, targetNeutral))
        return known;
    auto map = std::make_shared<const SurfaceMap>(MatchSurfaces(sourceNeutral, targetNeutral));
    matches.keep(sourceNeutral, targetNeutral, map);
    return map;
}

} // namespace geometry
