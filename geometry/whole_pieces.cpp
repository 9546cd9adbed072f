// Connected pieces and their principal extents.
// SPDX-License-Identifier: MIT

#include "whole_pieces.h"

#include "geometry/incidence.h"
#include "geometry/transform.h"

#include <Eigen/Eigenvalues>

#include <algorithm>

namespace geometry {

namespace {

/// Of the surface's size: on a human body about 4 cm, more than an eyeball and less than a hand.
constexpr float largestRadius = 0.02f;
/// Of the largest extent: strips, rings and what clings to the skin are thinner.
constexpr double leastDepth = 1.0 / 3.0;

std::vector<std::vector<std::uint32_t>> ConnectedPieces(const PolygonMeshView& mesh)
{
    const IndexLists neighbours = VertexNeighbours(*mesh.topology);
    std::vector<std::vector<std::uint32_t>> pieces;
    std::vector<bool> isReached(mesh.vertexCount());
    for (std::uint32_t start = 0; start < mesh.vertexCount(); ++start) {
        if (isReached[start])
            continue;
        isReached[start] = true;
        std::vector<std::uint32_t> piece{start};
        for (std::size_t i = 0; i < piece.size(); ++i)
            for (const std::uint32_t next : neighbours[piece[i]])
                if (!isReached[next]) {
                    isReached[next] = true;
                    piece.push_back(next);
                }
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

WholePiece Measured(const PolygonMeshView& mesh, std::vector<std::uint32_t> vertices)
{
    WholePiece piece;
    Box3f box;
    for (const std::uint32_t vertex : vertices)
        box.include(mesh.positions[vertex]);
    piece.center = box.center();
    for (const std::uint32_t vertex : vertices)
        piece.radius = std::max(piece.radius, Length(mesh.positions[vertex] - piece.center));
    piece.vertices = std::move(vertices);
    return piece;
}

bool IsDeep(const PolygonMeshView& mesh, const WholePiece& piece)
{
    Eigen::Vector3d mean = Eigen::Vector3d::Zero();
    for (const std::uint32_t vertex : piece.vertices)
        mean += ToEigen(mesh.positions[vertex]) / static_cast<double>(piece.vertices.size());
    Eigen::Matrix3d spread = Eigen::Matrix3d::Zero();
    for (const std::uint32_t vertex : piece.vertices) {
        const Eigen::Vector3d place = ToEigen(mesh.positions[vertex]) - mean;
        spread += place * place.transpose();
    }
    const Eigen::Vector3d extents =
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d>(spread, Eigen::EigenvaluesOnly).eigenvalues();
    return extents[2] > 0.0 && extents[0] >= leastDepth * leastDepth * extents[2];
}

bool Holds(const WholePiece& whole, const WholePiece& other)
{
    return other.radius <= whole.radius && Length(other.center - whole.center) <= whole.radius;
}

} // namespace

std::vector<WholePiece> FindWholePieces(const PolygonMeshView& mesh, float surfaceSize)
{
    std::vector<WholePiece> small;
    for (std::vector<std::uint32_t>& vertices : ConnectedPieces(mesh)) {
        WholePiece piece = Measured(mesh, std::move(vertices));
        if (piece.radius <= largestRadius * surfaceSize)
            small.push_back(std::move(piece));
    }
    std::stable_sort(small.begin(), small.end(),
                     [](const WholePiece& a, const WholePiece& b) { return a.radius > b.radius; });
    std::vector<WholePiece> wholes;
    for (WholePiece& piece : small) {
        const auto holder = std::find_if(wholes.begin(), wholes.end(),
                                         [&](const WholePiece& whole) { return Holds(whole, piece); });
        if (holder != wholes.end())
            holder->vertices.insert(holder->vertices.end(), piece.vertices.begin(), piece.vertices.end());
        else if (IsDeep(mesh, piece))
            wholes.push_back(std::move(piece));
    }
    return wholes;
}

} // namespace geometry
