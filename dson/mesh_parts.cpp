// Turning the members of a DSON file into values: the large numeric lists.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "base/errors.h"
#include "dson/uri.h"
#include "geometry/limits.h"
#include "json_rows.h"
#include "parts.h"
#include "uv.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

namespace dson {

namespace {

using base::FormatError;
using geometry::Vec3f;

/// What lies so far out that no surface can be matched with it, which is told by whoever tries without the
/// file.
struct FarVertices {
    std::size_t count = 0, first = 0;

    void look(const Vec3f& reach, std::size_t vertex)
    {
        const float most = std::max({std::abs(reach.x), std::abs(reach.y), std::abs(reach.z)});
        if (most > geometry::farthestPosition && count++ == 0)
            first = vertex;
    }
    void tell(const std::string& id, const char* one, const char* many, ParseContext& context) const
    {
        if (count > 0)
            context.warn(id, fmt::format("{} farther than {:g} cm, which is nothing real: the first is {}",
                                         base::Counted(count, one, many), geometry::farthestPosition, first));
    }
};

std::vector<Vec3f> ParsePositions(const Element& json, const std::string& id, ParseContext& context)
{
    std::vector<Vec3f> positions;
    std::size_t spoilt = 0, first = 0, uneven = 0, firstUneven = 0;
    FarVertices far;
    ForEachValue(json, "vertices", [&](const Element& row) {
        double p[3] = {};
        const std::size_t numbers = ReadRow(row, p, 3);
        // Its number has to stay: faces, weights and morphs go by it.
        if (TakeNoNumbersAsZero(p, 3) > 0 && spoilt++ == 0)
            first = positions.size();
        if (numbers != 3 && uneven++ == 0)
            firstUneven = positions.size();
        positions.push_back({static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])});
        far.look(positions.back(), positions.size() - 1);
    });
    far.tell(id, "vertex lies", "vertices lie", context);
    if (spoilt > 0)
        context.warn(id, fmt::format("{} with coordinates that are no numbers, taken as 0: the first is {}",
                                     base::Counted(spoilt, "vertex", "vertices"), first));
    if (uneven > 0)
        context.warn(id, fmt::format("{} not three numbers, what lacks taken as 0: the first is {}",
                                     base::Counted(uneven, "vertex is", "vertices are"), firstUneven));
    return positions;
}

std::vector<std::string> ParseNames(const Element& json, std::string_view key)
{
    std::vector<std::string> names;
    ForEachText(json, key, [&](std::string_view name) { names.emplace_back(name); });
    return names;
}

/// The value of a resolution setting.
std::optional<double> ResolutionChannel(const Element& json, std::string_view id)
{
    std::optional<double> value;
    ForEach(json, "extra", [&](const Element& extra) {
        ForEachObject(extra, "channels", [&](const Element& entry) {
            const auto channel = FindObject(entry, "channel");
            if (!channel || Text(*channel, "id") != id)
                return;
            const auto given = Find(*channel, "value");
            value = given ? AsNumber(*given) : std::nullopt;
            if (given && !value)
                ReadingTally::addSpoilt(id);
        });
    });
    return value;
}

std::vector<geometry::Crease> ParseCreases(const Element& json, const std::string& id,
                                           std::uint32_t vertexCount, ParseContext& context)
{
    std::vector<geometry::Crease> creases;
    std::size_t strange = 0;
    ForEachValue(json, "edge_weights", [&](const Element& row) {
        double n[3];
        if (IsRow(row, n, 3) && IsIndex(n[0], vertexCount) && IsIndex(n[1], vertexCount) && n[2] >= 0.0)
            creases.push_back({static_cast<std::uint32_t>(n[0]), static_cast<std::uint32_t>(n[1]),
                               static_cast<float>(n[2])});
        else
            ++strange;
    });
    if (strange > 0)
        context.warn(id, fmt::format("{} not two vertices of the mesh and a sharpness and left out",
                                     base::Counted(strange, "crease is", "creases are")));
    return creases;
}

/// Ascending vertices, each once, the last of equal ones kept.
void SortDeltas(geometry::SparseDeltas& deltas, const std::string& id, ParseContext& context)
{
    const auto disorder =
        std::adjacent_find(deltas.vertices.begin(), deltas.vertices.end(), std::greater_equal<>());
    if (disorder == deltas.vertices.end())
        return;
    std::vector<std::size_t> order(deltas.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return deltas.vertices[a] < deltas.vertices[b]; });
    geometry::SparseDeltas sorted;
    for (const std::size_t i : order) {
        if (!sorted.empty() && sorted.vertices.back() == deltas.vertices[i]) {
            sorted.deltas.back() = deltas.deltas[i];
            continue;
        }
        sorted.vertices.push_back(deltas.vertices[i]);
        sorted.deltas.push_back(deltas.deltas[i]);
    }
    if (sorted.size() != deltas.size())
        context.warn(id, fmt::format("{} replaced by later ones of the same vertices",
                                     base::Counted(deltas.size() - sorted.size(), "delta is", "deltas are")));
    deltas = std::move(sorted);
}

} // namespace

Geometry ParseGeometry(const Element& json, ParseContext& context)
{
    const PartBeingRead part(json);
    Geometry geometry;
    geometry.id = Text(json, "id");
    geometry.name = Text(json, "name", geometry.id);
    geometry.label = Text(json, "label", geometry.name);
    TellGeometryType(json, context);
    geometry.subdivisionSurface = QuietText(json, "type") == "subdivision_surface";
    const auto mode = Find(json, "edge_interpolation_mode");
    geometry.edgeInterpolation = mode ? EdgeInterpolationMode(*mode, geometry.id, context) : std::string();
    if (geometry.edgeInterpolation.empty())
        geometry.edgeInterpolation = "no_interpolation";
    geometry.defaultUvSet = Text(json, "default_uv_set");
    geometry.subdivisionLevel =
        SubdivisionLevel(ResolutionChannel(json, "SubDIALevel").value_or(1.0), geometry.id, context);
    geometry.mesh.positions = ParsePositions(json, geometry.id, context);
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = static_cast<std::uint32_t>(geometry.mesh.positions.size());
    topology->groupNames = ParseNames(json, "polygon_groups");
    topology->surfaceNames = ParseNames(json, "polygon_material_groups");
    geometry.leftOutFaces = ParseFaces(json, *topology, geometry.id, context);
    geometry.creases = ParseCreases(json, geometry.id, topology->vertexCount, context);
    TellAlgorithm(ResolutionChannel(json, "SubDAlgorithmControl"), geometry.id, context);
    geometry.mesh.topology = std::move(topology);
    geometry.lines = ParsePolylines(json, geometry.mesh.topology->vertexCount, context);
    geometry.graft = ParseGraft(json, geometry.id, context);
    return geometry;
}

geometry::SparseDeltas ParseDeltas(const Element& morph, const std::string& id, ParseContext& context)
{
    geometry::SparseDeltas result;
    const std::int64_t vertexCount = Count(morph, "vertex_count", -1);
    const double limit = vertexCount > 0 ? static_cast<double>(vertexCount) : unlimited;
    std::size_t strange = 0, outside = 0;
    FarVertices far;
    ForEachValue(morph, "deltas", [&](const Element& row) {
        double n[4];
        const bool isRow = IsRow(row, n, 4);
        if (!isRow || !IsIndex(n[0], limit)) {
            ++(isRow ? outside : strange);
            return;
        }
        result.vertices.push_back(static_cast<std::uint32_t>(n[0]));
        result.deltas.push_back(
            {static_cast<float>(n[1]), static_cast<float>(n[2]), static_cast<float>(n[3])});
        far.look(result.deltas.back(), result.vertices.back());
    });
    far.tell(id, "vertex is moved", "vertices are moved", context);
    if (strange > 0)
        context.warn(id, fmt::format("{} not four numbers and left out",
                                     base::Counted(strange, "row of deltas is", "rows of deltas are")));
    if (outside > 0)
        context.warn(id, fmt::format("{} of vertices that the mesh does not have and left out",
                                     base::Counted(outside, "delta is", "deltas are")));
    SortDeltas(result, id, context);
    return result;
}

} // namespace dson
