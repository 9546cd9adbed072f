// Turning the members of a DSON file into values: influence weights.
// SPDX-License-Identifier: MIT

#include "parts.h"
#include "weight_losses.h"

#include <algorithm>

namespace dson {

namespace {

void CollectFrom(const Element& element, const std::string& owner, bool inDForm,
                 std::vector<InfluenceMap>& maps, ParseContext& context);

std::int64_t VertexCount(const Element& holder, std::string_view member, std::int64_t unsaid)
{
    constexpr std::int64_t none = -2;
    const std::int64_t count = Find(holder, member) ? Count(holder, member, none) : unsaid;
    if (count != none)
        return count;
    ReadingTally::addOdd(holder, member, OddMembers::Wanted::Number);
    return unsaid;
}

void CollectFromObject(const Element& element, std::string owner, bool inDForm,
                       std::vector<InfluenceMap>& maps, ParseContext& context)
{
    for (const std::string_view key : {"name", "label"})
        if (const std::string_view name = QuietText(element, key); !name.empty()) {
            owner = name;
            break;
        }
    if (Find(element, "influence_weights"))
        if (auto map = ParseInfluenceMap(element, owner, inDForm, &context))
            maps.push_back(std::move(*map));
    for (const auto member : Members(element))
        CollectFrom(member.value, owner, inDForm || member.key == "dform", maps, context);
}

void CollectFrom(const Element& element, const std::string& owner, bool inDForm,
                 std::vector<InfluenceMap>& maps, ParseContext& context)
{
    // Geometry and delta lists cannot hold maps; entering only objects and arrays of them keeps the walk
    // short. No text is nested deeper than recursion goes.
    if (element.is_object()) {
        CollectFromObject(element, owner, inDForm, maps, context);
    } else if (element.is_array()) {
        for (const Element item : Items(element)) {
            if (!item.is_object())
                break;
            CollectFrom(item, owner, inDForm, maps, context);
        }
    }
}

} // namespace

std::optional<InfluenceMap> ParseInfluenceMap(const Element& holder, const std::string& owner, bool inDForm,
                                              ParseContext* told)
{
    InfluenceMap map;
    map.owner = owner;
    map.isDForm = inDForm;
    map.vertexCount = VertexCount(holder, "influence_vertex_count", VertexCount(holder, "vertex_count", -1));
    WeightLosses losses;
    const auto vertexCount = static_cast<std::uint32_t>(std::max<std::int64_t>(map.vertexCount, 0));
    WeightMap weights = ParseWeights(holder, "influence_weights", vertexCount, losses);
    map.vertices = std::move(weights.vertices);
    map.weights = std::move(weights.weights);
    if (told)
        losses.tell(owner, *told);
    if (map.vertices.empty())
        return std::nullopt;
    return map;
}

std::vector<InfluenceMap> CollectInfluenceMaps(const Element& root, ParseContext& context)
{
    std::vector<InfluenceMap> maps;
    CollectFrom(root, {}, false, maps, context);
    return maps;
}

} // namespace dson
