// Meshes and morphs as pages carry them: few bytes, and as exact as a screen shows.
// SPDX-License-Identifier: MIT

#include "page/page_mesh.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include <QByteArray>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using geometry::Vec3f;

/// Numbers with their lower byte first, which every machine has that shows pages.
template <typename Number>
std::string Base64(const std::vector<Number>& numbers)
{
    using Bits = std::make_unsigned_t<Number>;
    QByteArray bytes;
    bytes.reserve(static_cast<int>(numbers.size() * sizeof(Number)));
    for (const Number number : numbers)
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            bytes.append(static_cast<char>(static_cast<Bits>(number) >> (8 * i) & 0xff));
    return bytes.toBase64().toStdString();
}

bool IsWide(std::size_t vertexCount)
{
    return vertexCount > std::numeric_limits<std::uint16_t>::max();
}

std::string PackIndices(const std::vector<std::uint32_t>& indices, std::size_t vertexCount)
{
    return IsWide(vertexCount) ? Base64(indices)
                               : Base64(std::vector<std::uint16_t>(indices.begin(), indices.end()));
}

void AppendFace(base::Span<const std::uint32_t> corners, std::uint32_t first,
                std::vector<std::uint32_t>& faces)
{
    for (std::size_t i = 1; i + 1 < corners.size(); i += 2) {
        const std::size_t last = std::min(i + 2, corners.size() - 1);
        for (const std::size_t corner : {std::size_t{0}, i, i + 1, last})
            faces.push_back(first + corners[corner]);
    }
}

std::array<float, 3> Parts(Vec3f value)
{
    return {value.x, value.y, value.z};
}

Vec3f FiniteOrZero(Vec3f value)
{
    return geometry::IsFinite(value) ? value : Vec3f{};
}

} // namespace

JoinedMesh Join(const std::vector<geometry::PolygonMeshView>& meshes)
{
    JoinedMesh joined;
    for (const geometry::PolygonMeshView& mesh : meshes) {
        const auto first = static_cast<std::uint32_t>(joined.positions.size());
        for (const Vec3f position : mesh.positions)
            joined.positions.push_back(FiniteOrZero(position));
        for (std::size_t f = 0; f < mesh.faceCount(); ++f)
            AppendFace(mesh.face(f), first, joined.faces);
    }
    return joined;
}

Json PackMesh(const JoinedMesh& mesh)
{
    constexpr float steps = 65535.0f;
    const geometry::Box3f box = geometry::BoundingBox(mesh.positions);
    const std::array<float, 3> low = box.isEmpty() ? Parts({}) : Parts(box.min),
                               size = box.isEmpty() ? Parts({}) : Parts(box.size());
    std::vector<std::uint16_t> packed;
    packed.reserve(3 * mesh.positions.size());
    for (const Vec3f position : mesh.positions)
        for (std::size_t k = 0; k < 3; ++k) {
            const float share = size[k] > 0.0f ? (Parts(position)[k] - low[k]) / size[k] : 0.0f;
            packed.push_back(static_cast<std::uint16_t>(std::lround(steps * std::clamp(share, 0.0f, 1.0f))));
        }
    return {{"low", low},
            {"size", size},
            {"positions", Base64(packed)},
            {"faces", PackIndices(mesh.faces, mesh.positions.size())},
            {"isWide", IsWide(mesh.positions.size())}};
}

Json PackDeltas(const std::vector<Vec3f>& deltas)
{
    constexpr float steps = 32767.0f;
    float largest = 0.0f;
    for (const Vec3f delta : deltas)
        for (const float part : Parts(FiniteOrZero(delta)))
            largest = std::max(largest, std::abs(part));
    const float scale = largest > 0.0f ? largest / steps : 1.0f;
    std::vector<std::uint32_t> vertices;
    std::vector<std::int16_t> packed;
    for (std::size_t v = 0; v < deltas.size(); ++v) {
        std::array<std::int16_t, 3> rounded;
        for (std::size_t k = 0; k < 3; ++k)
            rounded[k] = static_cast<std::int16_t>(std::lround(Parts(FiniteOrZero(deltas[v]))[k] / scale));
        if (rounded == std::array<std::int16_t, 3>{})
            continue;
        vertices.push_back(static_cast<std::uint32_t>(v));
        packed.insert(packed.end(), rounded.begin(), rounded.end());
    }
    const bool isWhole = vertices.size() == deltas.size();
    return {{"scale", scale},
            {"vertices", isWhole ? Json(nullptr) : Json(PackIndices(vertices, deltas.size()))},
            {"deltas", Base64(packed)}};
}

Json PackBytes(const std::vector<std::uint8_t>& bytes)
{
    return Base64(bytes);
}

} // namespace cli
