// What each vertex of a subdivision level is made of, as sparse rows.
// SPDX-License-Identifier: MIT

#include "catmark_rows.h"

#include <opensubdiv/sdc/catmarkScheme.h>

#include <algorithm>
#include <limits>

namespace geometry {

namespace {

namespace Far = OpenSubdiv::Far;
namespace Sdc = OpenSubdiv::Sdc;

/// Weights of a new vertex, by what they belong to; what OpenSubdiv's masks fill in.
class Mask {
public:
    using Weight = float;

    int GetNumVertexWeights() const { return size(_vertices); }
    int GetNumEdgeWeights() const { return size(_edges); }
    int GetNumFaceWeights() const { return size(_faces); }
    void SetNumVertexWeights(int count) { _vertices.resize(static_cast<std::size_t>(count)); }
    void SetNumEdgeWeights(int count) { _edges.resize(static_cast<std::size_t>(count)); }
    void SetNumFaceWeights(int count) { _faces.resize(static_cast<std::size_t>(count)); }
    Weight VertexWeight(int i) const { return _vertices[static_cast<std::size_t>(i)]; }
    Weight EdgeWeight(int i) const { return _edges[static_cast<std::size_t>(i)]; }
    Weight FaceWeight(int i) const { return _faces[static_cast<std::size_t>(i)]; }
    Weight& VertexWeight(int i) { return _vertices[static_cast<std::size_t>(i)]; }
    Weight& EdgeWeight(int i) { return _edges[static_cast<std::size_t>(i)]; }
    Weight& FaceWeight(int i) { return _faces[static_cast<std::size_t>(i)]; }
    bool AreFaceWeightsForFaceCenters() const { return _areForFaceCenters; }
    void SetFaceWeightsForFaceCenters(bool areThey) { _areForFaceCenters = areThey; }

private:
    static int size(const std::vector<float>& weights) { return static_cast<int>(weights.size()); }

    std::vector<float> _vertices, _edges, _faces;
    bool _areForFaceCenters = false;
};

/// What OpenSubdiv's masks ask about an edge.
struct EdgeSurroundings {
    const Far::TopologyLevel& level;
    int edge;

    int GetNumFaces() const { return level.GetEdgeFaces(edge).size(); }
    float GetSharpness() const { return level.GetEdgeSharpness(edge); }
    void GetChildSharpnesses(const Sdc::Crease&, float (&sharpnesses)[2]) const
    {
        sharpnesses[0] = sharpnesses[1] = GetSharpness() - 1.0f;
    }
    void GetNumVerticesPerFace(int* counts) const
    {
        for (const int face : level.GetEdgeFaces(edge))
            *counts++ = level.GetFaceVertices(face).size();
    }
};

/// What OpenSubdiv's masks ask about a vertex.
struct VertexSurroundings {
    const Far::TopologyLevel &level, &next;
    int vertex, child;

    int GetNumEdges() const { return level.GetVertexEdges(vertex).size(); }
    int GetNumFaces() const { return level.GetVertexFaces(vertex).size(); }
    float GetSharpness() const { return level.GetVertexSharpness(vertex); }
    float* GetSharpnessPerEdge(float* sharpnesses) const
    {
        float* sharpness = sharpnesses;
        for (const int edge : level.GetVertexEdges(vertex))
            *sharpness++ = level.GetEdgeSharpness(edge);
        return sharpnesses;
    }
    float GetChildSharpness(const Sdc::Crease&) const { return next.GetVertexSharpness(child); }
    float* GetChildSharpnessPerEdge(const Sdc::Crease& crease, float* sharpnesses) const
    {
        std::vector<float> own(static_cast<std::size_t>(GetNumEdges()));
        crease.SubdivideEdgeSharpnessesAroundVertex(GetNumEdges(), GetSharpnessPerEdge(own.data()),
                                                    sharpnesses);
        return sharpnesses;
    }
};

/// Which face, edge or vertex of the level before each vertex stems from.
class Origins {
public:
    Origins(const Far::TopologyLevel& level, int children)
        : _edges(level.GetNumFaces()), _vertices(_edges + level.GetNumEdges()),
          _parents(static_cast<std::size_t>(children))
    {
        note(0, level.GetNumFaces(), [&](int face) { return level.GetFaceChildVertex(face); });
        note(_edges, level.GetNumEdges(), [&](int edge) { return level.GetEdgeChildVertex(edge); });
        note(_vertices, level.GetNumVertices(),
             [&](int vertex) { return level.GetVertexChildVertex(vertex); });
    }

    template <class OnFace, class OnEdge, class OnVertex>
    void visit(std::size_t child, const OnFace& onFace, const OnEdge& onEdge, const OnVertex& onVertex) const
    {
        const int parent = _parents[child];
        if (parent < _edges)
            onFace(parent);
        else if (parent < _vertices)
            onEdge(parent - _edges);
        else
            onVertex(parent - _vertices);
    }

private:
    template <class ChildOf>
    void note(int first, int count, const ChildOf& childOf)
    {
        tbb::parallel_for(tbb::blocked_range<int>(0, count, 8192), [&](const auto& range) {
            for (int i = range.begin(); i != range.end(); ++i)
                _parents[static_cast<std::size_t>(childOf(i))] = first + i;
        });
    }

    int _edges, _vertices; ///< where the numbers of edges and vertices begin
    std::vector<int> _parents;
};

/// Works out rows, one after the other; what they take is kept from one to the next.
class RowFiller {
public:
    RowFiller(const Far::TopologyRefiner& refiner, int level, const Origins& origins)
        : _level(refiner.GetLevel(level - 1)), _next(refiner.GetLevel(level)), _origins(origins),
          _areQuads(level > 1), _scheme(refiner.GetSchemeOptions())
    {
    }

    void operator()(std::size_t child, std::vector<SparseRows::Entry>& row)
    {
        _origins.visit(
            child, [&](int face) { addFace(face, 1.0f, row); },
            [&](int edge) { addEdge(edge, static_cast<int>(child), row); },
            [&](int vertex) { addVertex(vertex, static_cast<int>(child), row); });
    }

private:
    using Row = std::vector<SparseRows::Entry>;

    static void add(int source, float weight, Row& row)
    {
        const auto index = static_cast<std::uint32_t>(source);
        for (SparseRows::Entry& entry : row)
            if (entry.source == index) {
                entry.weight += weight;
                return;
            }
        row.push_back({index, weight});
    }

    /// A share of the face's center.
    void addFace(int face, float share, Row& row) const
    {
        const Far::ConstIndexArray corners = _level.GetFaceVertices(face);
        const float weight = 1.0f / static_cast<float>(corners.size());
        for (const int corner : corners)
            add(corner, weight * share, row);
    }

    bool isSmooth(int child) const { return _next.GetVertexRule(child) == Sdc::Crease::RULE_SMOOTH; }

    /// Nearly all there is on fine levels. The weights are OpenSubdiv's, without the way through its masks.
    bool isRegularEdge(int edge, int child) const
    {
        return _areQuads && _level.GetEdgeFaces(edge).size() == 2 && _level.GetEdgeSharpness(edge) <= 0.0f &&
               isSmooth(child);
    }

    bool isRegularVertex(int vertex, int child) const
    {
        return _areQuads && _level.GetVertexFaces(vertex).size() == 4 &&
               _level.GetVertexEdges(vertex).size() == 4 &&
               _level.GetVertexRule(vertex) == Sdc::Crease::RULE_SMOOTH && isSmooth(child);
    }

    void addRegularEdge(int edge, Row& row) const
    {
        for (const int end : _level.GetEdgeVertices(edge))
            row.push_back({static_cast<std::uint32_t>(end), 3.0f / 8.0f});
        for (const int face : _level.GetEdgeFaces(edge))
            for (const int corner : _level.GetFaceVertices(face))
                if (const auto index = static_cast<std::uint32_t>(corner);
                    index != row[0].source && index != row[1].source)
                    add(corner, 1.0f / 16.0f, row);
    }

    void addRegularVertex(int vertex, Row& row) const
    {
        for (const int face : _level.GetVertexFaces(vertex)) {
            const Far::ConstIndexArray corners = _level.GetFaceVertices(face);
            for (int i = 0; i < 4; ++i)
                // Each neighbour is a corner of two of the faces, the vertex of all.
                add(corners[i],
                    corners[i] == vertex             ? 9.0f / 64.0f
                    : corners[(i + 2) % 4] == vertex ? 1.0f / 64.0f
                                                     : 3.0f / 64.0f,
                    row);
        }
    }

    void addEdge(int edge, int child, Row& row)
    {
        if (isRegularEdge(edge, child))
            return addRegularEdge(edge, row);
        const Sdc::Crease::Rule rule =
            _level.GetEdgeSharpness(edge) > 0.0f ? Sdc::Crease::RULE_CREASE : Sdc::Crease::RULE_SMOOTH;
        _scheme.ComputeEdgeVertexMask(EdgeSurroundings{_level, edge}, _mask, rule,
                                      _next.GetVertexRule(child));
        const Far::ConstIndexArray ends = _level.GetEdgeVertices(edge), faces = _level.GetEdgeFaces(edge);
        for (int i = 0; i < 2; ++i)
            add(ends[i], _mask.VertexWeight(i), row);
        for (int i = 0; i < _mask.GetNumFaceWeights(); ++i)
            addFace(faces[i], _mask.FaceWeight(i), row);
    }

    void addVertex(int vertex, int child, Row& row)
    {
        if (isRegularVertex(vertex, child))
            return addRegularVertex(vertex, row);
        _scheme.ComputeVertexVertexMask(VertexSurroundings{_level, _next, vertex, child}, _mask,
                                        _level.GetVertexRule(vertex), _next.GetVertexRule(child));
        const Far::ConstIndexArray edges = _level.GetVertexEdges(vertex),
                                   faces = _level.GetVertexFaces(vertex);
        // Small weights first, which loses the least.
        for (int i = 0; i < _mask.GetNumFaceWeights(); ++i)
            addFace(faces[i], _mask.FaceWeight(i), row);
        for (int i = 0; i < _mask.GetNumEdgeWeights(); ++i) {
            const Far::ConstIndexArray ends = _level.GetEdgeVertices(edges[i]);
            add(ends[0] == vertex ? ends[1] : ends[0], _mask.EdgeWeight(i), row);
        }
        add(vertex, _mask.VertexWeight(0), row);
    }

    const Far::TopologyLevel &_level, &_next;
    const Origins& _origins;
    bool _areQuads;
    Sdc::Scheme<Sdc::SCHEME_CATMARK> _scheme;
    Mask _mask;
};

} // namespace

SparseRows CatmarkRows(const Far::TopologyRefiner& refiner, int level)
{
    const Far::TopologyLevel& before = refiner.GetLevel(level - 1);
    const int count = refiner.GetLevel(level).GetNumVertices();
    const Origins origins(before, count);
    return JoinRows(MakePieces(static_cast<std::size_t>(count), RowFiller(refiner, level, origins)),
                    static_cast<std::uint32_t>(before.GetNumVertices()));
}

} // namespace geometry
