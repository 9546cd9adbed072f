// Texture coordinates and polylines of a geometry.
// SPDX-License-Identifier: MIT

#include "uv.h"

#include "base/counted.h"
#include "base/errors.h"
#include "json_rows.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include <fmt/format.h>

namespace dson {

namespace {

using geometry::TexCoords;

bool IsSame(const TexCoords::Uv& a, const TexCoords::Uv& b)
{
    return a.u == b.u && a.v == b.v;
}

Json EmitUv(const TexCoords::Uv& uv, std::size_t index)
{
    if (!std::isfinite(uv.u) || !std::isfinite(uv.v))
        throw base::FormatError("texture coordinate {} is not two finite numbers", index);
    return {uv.u, uv.v};
}

Json List(Json values)
{
    const std::size_t count = values.size();
    return Json{{"count", count}, {"values", std::move(values)}};
}

} // namespace

UvSet ParseUvSet(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    UvSet set;
    set.id = Text(json, "id");
    std::size_t spoilt = 0, broken = 0;
    ForEachValue(json, "uvs", [&](const Element& row) {
        double uv[2] = {NAN, NAN};
        ReadRow(row, uv, 2);
        spoilt += TakeNoNumbersAsZero(uv, 2) > 0;
        set.values.push_back({static_cast<float>(uv[0]), static_cast<float>(uv[1])});
    });
    if (spoilt > 0)
        context.warn(set.id, fmt::format("{}, taken as 0",
                                         base::Counted(spoilt, "texture coordinate that is no numbers",
                                                       "texture coordinates that are no numbers")));
    ForEachValue(json, "polygon_vertex_indices", [&](const Element& row) {
        double n[3];
        if (ReadRow(row, n, 3) == 3 && std::all_of(n, n + 3, [](double x) { return IsIndex(x, unlimited); }))
            set.exceptions.push_back({static_cast<std::uint32_t>(n[0]), static_cast<std::uint32_t>(n[1]),
                                      static_cast<std::uint32_t>(n[2])});
        else
            ++broken;
    });
    if (broken > 0)
        context.warn(set.id, fmt::format("{} not a face, a vertex and a coordinate and left out",
                                         base::Counted(broken, "corner is", "corners are")));
    return set;
}

TexCoords CornersOf(const UvSet& set, const geometry::Topology& topology,
                    const geometry::LeftOutFaces& leftOut, ParseContext& context)
{
    TexCoords result;
    result.coordinates = set.values;
    result.cornerIndices = topology.cornerVertices;
    std::size_t strange = 0;
    for (const UvSet::Exception& exception : set.exceptions) {
        const std::optional<std::uint32_t> face = leftOut.inMesh(exception.face);
        if (!face)
            continue;
        bool isCorner = false;
        if (*face < topology.faceCount() && exception.value < set.values.size())
            for (std::uint32_t c = topology.faceOffsets[*face]; c < topology.faceOffsets[*face + 1]; ++c)
                if (topology.cornerVertices[c] == exception.vertex) {
                    result.cornerIndices[c] = exception.value;
                    isCorner = true;
                }
        strange += !isCorner;
    }
    if (strange > 0)
        context.warn(set.id, base::Counted(strange, "corner of the UV set is not there and left out",
                                           "corners of the UV set are not there and left out"));
    const bool isWhole = std::all_of(result.cornerIndices.begin(), result.cornerIndices.end(),
                                     [&](std::uint32_t index) { return index < set.values.size(); });
    if (isWhole)
        return result;
    context.warn(set.id, "the UV set does not fit its mesh and is left out");
    return {};
}

std::vector<std::vector<std::uint32_t>> ParsePolylines(const Element& json, std::uint32_t vertexCount,
                                                       ParseContext& context)
{
    std::vector<std::vector<std::uint32_t>> lines;
    std::size_t broken = 0;
    ForEachValue(json, "polyline_list", [&](const Element& row) {
        std::vector<std::uint32_t> line;
        std::size_t place = 0;
        bool isWhole = row.is_array();
        if (isWhole)
            for (const Element item : Items(row)) {
                const double number = AsNumber(item).value_or(NAN);
                if (place++ < 2)
                    continue; // group and surface
                isWhole = isWhole && IsIndex(number, vertexCount);
                line.push_back(isWhole ? static_cast<std::uint32_t>(number) : 0);
            }
        if (isWhole && line.size() > 1)
            lines.push_back(std::move(line));
        else
            ++broken;
    });
    if (broken > 0)
        context.warn(Text(json, "id"),
                     base::Counted(broken, "line names vertices that are not there and is left out",
                                   "lines name vertices that are not there and are left out"));
    return lines;
}

Json EmitUvSet(const Geometry& geometry, const std::string& id)
{
    constexpr std::uint32_t none = UINT32_MAX;
    const geometry::Topology& topology = *geometry.mesh.topology;
    const TexCoords& uvs = geometry.texCoords;
    // A vertex keeps what its first corner has; corners with something else are exceptions.
    std::vector<std::uint32_t> ofVertex(topology.vertexCount, none);
    for (std::size_t c = 0; c < topology.cornerCount(); ++c)
        if (ofVertex[topology.cornerVertices[c]] == none)
            ofVertex[topology.cornerVertices[c]] = uvs.cornerIndices[c];
    Json values = Json::array(), exceptions = Json::array();
    for (std::size_t v = 0; v < ofVertex.size(); ++v)
        values.push_back(ofVertex[v] == none ? Json{0, 0} : EmitUv(uvs.coordinates[ofVertex[v]], v));
    std::unordered_map<std::uint32_t, std::size_t> added; // index in the mesh's list to index in the file's
    for (std::size_t f = 0; f < topology.faceCount(); ++f)
        for (std::uint32_t c = topology.faceOffsets[f]; c < topology.faceOffsets[f + 1]; ++c) {
            const std::uint32_t vertex = topology.cornerVertices[c], index = uvs.cornerIndices[c];
            if (IsSame(uvs.coordinates[index], uvs.coordinates[ofVertex[vertex]]))
                continue;
            const auto entry = added.emplace(index, values.size());
            if (entry.second)
                values.push_back(EmitUv(uvs.coordinates[index], index));
            exceptions.push_back({f, vertex, entry.first->second});
        }
    return Json{{"id", id},
                {"name", id},
                {"label", "Default UVs"},
                {"vertex_count", topology.vertexCount},
                {"uvs", List(std::move(values))},
                {"polygon_vertex_indices", std::move(exceptions)}};
}

Json EmitPolylines(const std::vector<std::vector<std::uint32_t>>& lines)
{
    Json values = Json::array();
    std::size_t segments = 0;
    for (const std::vector<std::uint32_t>& line : lines) {
        Json row = {0, 0};
        for (const std::uint32_t vertex : line)
            row.push_back(vertex);
        values.push_back(std::move(row));
        segments += line.size() - 1;
    }
    const std::size_t count = values.size();
    return Json{{"count", count}, {"segment_count", segments}, {"values", std::move(values)}};
}

} // namespace dson
