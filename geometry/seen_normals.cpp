// Normals of a part of a mesh: of the faces around the vertices in question.
// SPDX-License-Identifier: MIT

#include "seen_normals.h"

#include "for_each_index.h"
#include "geometry/normals.h"

#include <algorithm>

namespace geometry {

namespace {

/// Faces that have a vertex in question. All of its faces are among them, in their order, so that its normal
/// comes out as that of the whole mesh.
class Surroundings {
public:
    Surroundings(const PolygonMeshView& mesh, const std::vector<char>& isWanted)
        : _mesh(mesh), _part(mesh.vertexCount(), UINT32_MAX)
    {
        std::vector<char> isNear(mesh.faceCount());
        ForEachIndex(isNear.size(), 8192, [&](std::size_t f) {
            const base::Span<const std::uint32_t> face = mesh.face(f);
            isNear[f] =
                std::any_of(face.begin(), face.end(), [&](std::uint32_t v) { return isWanted[v] != 0; });
        });
        for (std::size_t f = 0; f < isNear.size(); ++f)
            if (isNear[f])
                add(mesh.face(f));
        _topology.vertexCount = static_cast<std::uint32_t>(_whole.size());
    }

    std::vector<Vec3f> normals() const { return VertexNormals({&_topology, _positions}); }
    /// The mesh's own number of each vertex.
    const std::vector<std::uint32_t>& vertices() const { return _whole; }

private:
    void add(base::Span<const std::uint32_t> face)
    {
        _corners.clear();
        for (const std::uint32_t v : face) {
            if (_part[v] == UINT32_MAX) {
                _part[v] = static_cast<std::uint32_t>(_whole.size());
                _whole.push_back(v);
                _positions.push_back(_mesh.positions[v]);
            }
            _corners.push_back(_part[v]);
        }
        _topology.addFace(_corners);
    }

    const PolygonMeshView& _mesh;
    Topology _topology;
    std::vector<Vec3f> _positions;
    std::vector<std::uint32_t> _part, _whole; ///< numbers of vertices here and there
    std::vector<std::uint32_t> _corners;
};

} // namespace

SeenNormals::SeenNormals(const PolygonMeshView& mesh) : _mesh(mesh), _normals(mesh.vertexCount()) {}

void SeenNormals::findAll()
{
    _normals = VertexNormals(_mesh);
    _found = Found::All;
}

void SeenNormals::find(const std::vector<char>& isSeen)
{
    if (_found == Found::All)
        return;
    std::vector<char> isWanted(_normals.size());
    for (std::size_t f = 0; f < isSeen.size(); ++f)
        if (isSeen[f])
            for (const std::uint32_t v : _mesh.face(f))
                isWanted[v] = 1;
    const auto count = static_cast<std::size_t>(std::count(isWanted.begin(), isWanted.end(), 1));
    if (count == 0)
        return;
    // A large part takes longer to be cut out than to be worked out with the rest.
    if (_found == Found::Part || count > isWanted.size() / 2) {
        findAll();
        return;
    }
    const Surroundings around(_mesh, isWanted);
    const std::vector<Vec3f> found = around.normals();
    for (std::size_t v = 0; v < found.size(); ++v)
        if (const std::uint32_t whole = around.vertices()[v]; isWanted[whole])
            _normals[whole] = found[v];
    _found = Found::Part;
}

} // namespace geometry
