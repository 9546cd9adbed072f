// Normals of a part of a mesh: of the faces around the vertices in question.
// SPDX-License-Identifier: MIT

#include "seen_normals.h"

#include "chosen_indices.h"
#include "for_each_index.h"
#include "geometry/normals.h"

#include <algorithm>
#include <atomic>

namespace geometry {

namespace {

/// By vertex; set from several threads.
using VertexMarks = std::vector<std::atomic<char>>;

void Mark(base::Span<const std::uint32_t> vertices, VertexMarks& marks)
{
    for (const std::uint32_t v : vertices)
        marks[v].store(1, std::memory_order_relaxed);
}

/// Faces that have a vertex in question. All of its faces are among them, in their order, so that its normal
/// comes out as that of the whole mesh.
class Surroundings {
public:
    /// @param isWanted  by vertex
    Surroundings(const PolygonMeshView& mesh, const VertexMarks& isWanted)
    {
        std::vector<char> isNear(mesh.faceCount());
        ForEachIndex(isNear.size(), 8192, [&](std::size_t f) {
            char any = 0; // which corner it is no processor can foresee
            for (const std::uint32_t v : mesh.face(f))
                any |= isWanted[v].load(std::memory_order_relaxed);
            isNear[f] = any;
        });
        const std::vector<std::uint32_t> faces =
            ChosenIndices(isNear.size(), [&](std::size_t f) { return isNear[f] != 0; });
        VertexMarks isUsed(mesh.vertexCount());
        ForEachIndex(faces.size(), 4096, [&](std::size_t i) { Mark(mesh.face(faces[i]), isUsed); });
        _whole = ChosenIndices(mesh.vertexCount(),
                               [&](std::size_t v) { return isUsed[v].load(std::memory_order_relaxed) != 0; });
        takeVertices(mesh);
        takeFaces(mesh, faces);
    }

    std::vector<Vec3f> normals() const { return VertexNormals({&_topology, _positions}); }
    /// The mesh's own number of each vertex.
    const std::vector<std::uint32_t>& vertices() const { return _whole; }

private:
    void takeVertices(const PolygonMeshView& mesh)
    {
        _topology.vertexCount = static_cast<std::uint32_t>(_whole.size());
        _positions.resize(_whole.size());
        _part.resize(mesh.vertexCount());
        ForEachIndex(_whole.size(), 8192, [&](std::size_t v) {
            _positions[v] = mesh.positions[_whole[v]];
            _part[_whole[v]] = static_cast<std::uint32_t>(v);
        });
    }

    void takeFaces(const PolygonMeshView& mesh, const std::vector<std::uint32_t>& faces)
    {
        _topology.faceOffsets.resize(faces.size() + 1);
        for (std::size_t i = 0; i < faces.size(); ++i)
            _topology.faceOffsets[i + 1] =
                _topology.faceOffsets[i] + static_cast<std::uint32_t>(mesh.face(faces[i]).size());
        _topology.cornerVertices.resize(_topology.faceOffsets.back());
        ForEachIndex(faces.size(), 4096, [&](std::size_t i) {
            std::uint32_t* corner = _topology.cornerVertices.data() + _topology.faceOffsets[i];
            for (const std::uint32_t v : mesh.face(faces[i]))
                *corner++ = _part[v];
        });
    }

    Topology _topology;
    std::vector<Vec3f> _positions;
    std::vector<std::uint32_t> _part, _whole; ///< numbers of vertices here and there
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
    VertexMarks isWanted(_normals.size());
    ForEachIndex(isSeen.size(), 8192, [&](std::size_t f) {
        if (isSeen[f])
            Mark(_mesh.face(f), isWanted);
    });
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
    ForEachIndex(found.size(), 8192, [&](std::size_t v) {
        if (const std::uint32_t whole = around.vertices()[v]; isWanted[whole])
            _normals[whole] = found[v];
    });
    _found = Found::Part;
}

} // namespace geometry
