// Turning the members of a DSON file into values: influence weights.
// SPDX-License-Identifier: MIT

#include "parts.h"

#include <algorithm>
#include <cmath>

namespace dson {

namespace {

void CollectFrom(const Element& element, const std::string& owner, bool inDForm, int depth,
                 std::vector<InfluenceMap>& maps);

std::optional<InfluenceMap> ParseInfluenceMap(const Element& holder, const std::string& owner, bool inDForm)
{
    InfluenceMap map;
    map.owner = owner;
    map.isDForm = inDForm;
    map.vertexCount = Count(holder, "influence_vertex_count", Count(holder, "vertex_count", -1));
    bool isMap = true;
    ForEachValue(holder, "influence_weights", [&](const Element& row) {
        double pair[2] = {-1.0, 0.0};
        std::size_t numbers = 0;
        if (row.is_array())
            for (const Element item : Items(row))
                if (const auto number = AsNumber(item); number && numbers < 2)
                    pair[numbers++] = *number;
        isMap = isMap && numbers == 2 && pair[0] >= 0.0 && pair[0] < 4294967295.0 &&
                pair[0] == std::floor(pair[0]);
        if (isMap) {
            map.vertices.push_back(static_cast<std::uint32_t>(pair[0]));
            map.weights.push_back(static_cast<float>(std::clamp(pair[1], 0.0, 1.0)));
        }
    });
    if (!isMap || map.vertices.empty())
        return std::nullopt;
    return map;
}

void CollectFromObject(const Element& element, std::string owner, bool inDForm, int depth,
                       std::vector<InfluenceMap>& maps)
{
    for (const std::string_view key : {"name", "label"})
        if (const std::string name = Text(element, key); !name.empty()) {
            owner = name;
            break;
        }
    if (Find(element, "influence_weights"))
        if (auto map = ParseInfluenceMap(element, owner, inDForm))
            maps.push_back(std::move(*map));
    for (const auto member : Members(element))
        CollectFrom(member.value, owner, inDForm || member.key == "dform", depth + 1, maps);
}

void CollectFrom(const Element& element, const std::string& owner, bool inDForm, int depth,
                 std::vector<InfluenceMap>& maps)
{
    // Geometry and delta lists cannot hold maps; entering only objects and arrays of them keeps the walk
    // short.
    constexpr int deepest = 64;
    if (depth > deepest)
        return;
    if (element.is_object()) {
        CollectFromObject(element, owner, inDForm, depth, maps);
    } else if (element.is_array()) {
        for (const Element item : Items(element)) {
            if (!item.is_object())
                break;
            CollectFrom(item, owner, inDForm, depth + 1, maps);
        }
    }
}

} // namespace

std::vector<InfluenceMap> CollectInfluenceMaps(const Element& root)
{
    std::vector<InfluenceMap> maps;
    CollectFrom(root, {}, false, 0, maps);
    return maps;
}

} // namespace dson
