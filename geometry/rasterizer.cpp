// Sorting faces into tiles, drawing these.
// SPDX-License-Identifier: MIT

#include "rasterizer.h"

#include "base/cancellation.h"
#include "face_cuts.h"

#include <tbb/parallel_for.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace geometry {

namespace {

constexpr int tileSize = RasterTile::size;
constexpr std::uint32_t chunkFaces = 8192;
/// In an entry of a tile: not a face but a triangle that was clipped.
constexpr std::uint32_t clippedBit = 0x80000000u;

} // namespace

/// Some faces of one mesh, and where they are to be drawn.
struct Rasterizer::Chunk {
    std::size_t mesh;
    std::uint32_t firstFace, lastFace; ///< of the mesh; the last is outside
    std::vector<Triangle> clipped;
    std::vector<std::uint32_t>
        tileEntries; ///< of each tile in turn: a face of the mesh, or a clipped triangle
    std::vector<std::uint32_t> tileStarts; ///< tiles + 1
};

/// The rows that are drawn, in tiles.
struct Rasterizer::Band {
    int width, first, last, columns, rows;

    Band(int gridWidth, int firstRow, int lastRow)
        : width(gridWidth), first(firstRow), last(lastRow), columns((gridWidth + tileSize - 1) / tileSize),
          rows((lastRow - firstRow + tileSize - 1) / tileSize)
    {
    }
    int tileCount() const { return columns * rows; }

    /// Notes an entry in all tiles where a box has samples.
    void add(float left, float top, float right, float bottom, std::uint32_t entry,
             std::vector<std::uint64_t>& placed) const
    {
        const int x0 = std::max(0, CeilOf(left));
        const int x1 = std::min(width - 1, FloorOf(right));
        const int y0 = std::max(first, CeilOf(top));
        const int y1 = std::min(last - 1, FloorOf(bottom));
        if (x0 > x1 || y0 > y1)
            return;
        for (int row = (y0 - first) / tileSize; row <= (y1 - first) / tileSize; ++row)
            for (int column = x0 / tileSize; column <= x1 / tileSize; ++column)
                placed.push_back(static_cast<std::uint64_t>(row * columns + column) << 32 | entry);
    }
};

Rasterizer::Rasterizer(base::Span<const NumberedMesh> meshes, const PictureCamera& camera, SampleGrid grid)
    : _projection(meshes, camera, grid)
{
}

void Rasterizer::draw(int first, int last, base::Span<std::uint32_t> faces) const
{
    assert(faces.size() ==
           static_cast<std::size_t>(_projection.grid().width) * static_cast<std::size_t>(last - first));
    const Band band(_projection.grid().width, first, last);
    std::vector<Chunk> chunks = chunksOf();
    tbb::parallel_for(std::size_t{0}, chunks.size(), [&](std::size_t c) {
        base::ThrowIfCancelled();
        sort(chunks[c], band);
    });
    tbb::parallel_for(0, band.tileCount(), [&](int tile) {
        base::ThrowIfCancelled();
        drawTile(chunks, band, tile, faces);
    });
}

std::vector<Rasterizer::Chunk> Rasterizer::chunksOf() const
{
    std::vector<Chunk> chunks;
    for (std::size_t m = 0; m < _projection.meshes().size(); ++m) {
        const auto count = static_cast<std::uint32_t>(_projection.meshes()[m].mesh.faceCount());
        for (std::uint32_t first = 0; first < count; first += std::min(chunkFaces, count - first))
            chunks.push_back({m, first, first + std::min(chunkFaces, count - first), {}, {}, {}});
    }
    return chunks;
}

void Rasterizer::sort(Chunk& chunk, const Band& band) const
{
    const PolygonMeshView& mesh = _projection.meshes()[chunk.mesh].mesh;
    const RasterCorner* const corners = _projection.corners(chunk.mesh).data();
    std::vector<std::uint64_t> placed; // tile above, entry below
    for (std::uint32_t f = chunk.firstFace; f < chunk.lastFace; ++f) {
        const base::Span<const std::uint32_t> face = mesh.face(f);
        float left = corners[face[0]].x, right = left, top = corners[face[0]].y, bottom = top, sum = left;
        for (std::size_t i = 1; i < face.size(); ++i) {
            const RasterCorner& corner = corners[face[i]];
            left = std::min(left, corner.x), right = std::max(right, corner.x);
            top = std::min(top, corner.y), bottom = std::max(bottom, corner.y);
            sum += corner.x;
        }
        if (std::isnan(sum))
            addClipped(chunk, f, placed, band);
        else
            band.add(left, top, right, bottom, f, placed);
    }
    chunk.tileStarts.assign(static_cast<std::size_t>(band.tileCount()) + 1, 0);
    for (const std::uint64_t one : placed)
        ++chunk.tileStarts[(one >> 32) + 1];
    for (std::size_t tile = 1; tile < chunk.tileStarts.size(); ++tile)
        chunk.tileStarts[tile] += chunk.tileStarts[tile - 1];
    chunk.tileEntries.resize(placed.size());
    std::vector<std::uint32_t> next(chunk.tileStarts.begin(), chunk.tileStarts.end() - 1);
    for (const std::uint64_t one : placed)
        chunk.tileEntries[next[one >> 32]++] = static_cast<std::uint32_t>(one);
}

void Rasterizer::addClipped(Chunk& chunk, std::uint32_t f, std::vector<std::uint64_t>& placed,
                            const Band& band) const
{
    const NumberedMesh& one = _projection.meshes()[chunk.mesh];
    ForEachTriangle(one, f, [&](const std::array<std::uint32_t, 3>& corners) {
        const std::vector<RasterCorner> left = _projection.clipped(
            {one.mesh.positions[corners[0]], one.mesh.positions[corners[1]], one.mesh.positions[corners[2]]});
        for (std::size_t k = 2; k < left.size(); ++k) {
            const RasterCorner &a = left[0], &b = left[k - 1], &c = left[k];
            band.add(std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y}), std::max({a.x, b.x, c.x}),
                     std::max({a.y, b.y, c.y}), clippedBit | static_cast<std::uint32_t>(chunk.clipped.size()),
                     placed);
            chunk.clipped.push_back({{a, b, c}, f});
        }
    });
}

void Rasterizer::drawTile(const std::vector<Chunk>& chunks, const Band& band, int tile,
                          base::Span<std::uint32_t> faces) const
{
    const int left = tile % band.columns * tileSize, top = tile / band.columns * tileSize;
    const int right = std::min(left + tileSize, band.width);
    const int bottom = std::min(top + tileSize, band.last - band.first);
    std::uint32_t* const start =
        faces.data() + static_cast<std::size_t>(top) * static_cast<std::size_t>(band.width) + left;
    for (int row = 0; row < bottom - top; ++row)
        std::fill_n(start + static_cast<std::ptrdiff_t>(row) * band.width, right - left, noFace);
    RasterTile drawn(left, top + band.first, right, bottom + band.first, start, band.width);
    for (const Chunk& chunk : chunks) {
        const NumberedMesh& one = _projection.meshes()[chunk.mesh];
        const RasterCorner* const corners = _projection.corners(chunk.mesh).data();
        for (std::uint32_t e = chunk.tileStarts[static_cast<std::size_t>(tile)];
             e < chunk.tileStarts[static_cast<std::size_t>(tile) + 1]; ++e) {
            const std::uint32_t entry = chunk.tileEntries[e];
            if (entry & clippedBit) {
                const Triangle& part = chunk.clipped[entry & ~clippedBit];
                drawn.draw(part.corners[0], part.corners[1], part.corners[2], one.firstFace + part.face);
                continue;
            }
            ForEachTriangle(one, entry, [&](const std::array<std::uint32_t, 3>& three) {
                drawn.draw(corners[three[0]], corners[three[1]], corners[three[2]], one.firstFace + entry);
            });
        }
    }
}

} // namespace geometry
