// Turning the members of a DSON file into values: skins.
// SPDX-License-Identifier: MIT

#include "dson/uri.h"
#include "json_rows.h"
#include "parts.h"
#include "weight_losses.h"

#include <algorithm>
#include <map>
#include <set>

#include <fmt/format.h>

namespace dson {

namespace {

/// The mean of the three axes' weights; one list for all of them is taken as it is.
WeightMap MeanOfAxes(const Element& joint, const Element& axes, std::uint32_t vertexCount,
                     WeightLosses& losses)
{
    if (!Find(axes, "x") && !Find(axes, "y") && !Find(axes, "z"))
        return ParseWeights(joint, "local_weights", vertexCount, losses);
    std::map<std::uint32_t, float> sums;
    for (const std::string_view axis : {"x", "y", "z"}) {
        const WeightMap map = ParseWeights(axes, axis, vertexCount, losses);
        for (std::size_t i = 0; i < map.vertices.size(); ++i)
            sums[map.vertices[i]] += map.weights[i];
    }
    WeightMap mean;
    for (const auto& [vertex, sum] : sums) {
        mean.vertices.push_back(vertex);
        mean.weights.push_back(sum / 3.0f);
    }
    return mean;
}

JointBinding ParseJoint(const Element& json, std::uint32_t vertexCount, WeightLosses& losses)
{
    JointBinding joint;
    joint.node = ParseUri(Text(json, "node")).id;
    if (joint.node.empty())
        joint.node = Text(json, "id");
    const auto axes = Find(json, "local_weights");
    WeightMap turns = axes && !Find(json, "node_weights")
                          ? MeanOfAxes(json, *axes, vertexCount, losses)
                          : ParseWeights(json, "node_weights", vertexCount, losses);
    joint.vertices = std::move(turns.vertices);
    joint.weights = std::move(turns.weights);
    joint.scale = ParseWeights(json, "scale_weights", vertexCount, losses);
    return joint;
}

void ReadSkinSettings(const Element& settings, SkinBinding& binding, WeightLosses& losses,
                      ParseContext& context)
{
    binding.dualQuaternion = Text(settings, "general_map_mode", "DualQuat") != "Linear";
    if (Text(settings, "scale_mode", "BindingMaps") != "BindingMaps")
        binding.scaling = SkinBinding::Scaling::ByScaleMaps;
    const std::string mode = Text(settings, "binding_mode", "General");
    if (mode != "Blended")
        return;
    if (Text(settings, "blend_mode", "BlendLinearDualQuat") != "BlendLinearDualQuat")
        context.warn(binding.id, "mixes weights for each axis with others; the others are used");
    else if (Find(settings, "blend_weights"))
        binding.dualQuaternionShares = ParseWeights(settings, "blend_weights", binding.vertexCount, losses);
}

void ReadSelectionMap(const Element& skin, SkinDefinition& definition)
{
    ForEach(skin, "selection_map", [&](const Element& map) {
        ForEach(map, "mappings", [&](const Element& pair) {
            std::string names[2];
            std::size_t count = 0;
            if (pair.is_array())
                for (const Element item : Items(pair))
                    if (count < 2 && item.is_string())
                        names[count++] = std::string(item.get_string().value_unsafe());
            if (count == 2)
                definition.selectionMap.emplace_back(names[0], names[1]);
        });
    });
}

/// Older figures say with face groups alone which bone moves what.
void BindGroups(SkinDefinition& definition, const std::vector<Geometry>& geometries, ParseContext& context)
{
    definition.binding.dualQuaternion = false;
    if (!definition.binding.joints.empty())
        return;
    const auto geometry = std::find_if(geometries.begin(), geometries.end(), [&](const Geometry& candidate) {
        return candidate.id == definition.geometry || geometries.size() == 1;
    });
    if (geometry == geometries.end())
        return;
    const geometry::Topology& topology = *geometry->mesh.topology;
    std::vector<std::set<std::uint32_t>> groupsOf(topology.vertexCount);
    for (std::size_t f = 0; f < topology.faceCount() && f < topology.faceGroups.size(); ++f)
        for (const std::uint32_t vertex : topology.face(f))
            groupsOf[vertex].insert(topology.faceGroups[f]);
    std::vector<JointBinding>& joints = definition.binding.joints;
    for (const std::string& name : topology.groupNames) {
        joints.emplace_back().node = name;
        for (const auto& [group, node] : definition.selectionMap)
            if (group == name)
                joints.back().node = node;
    }
    for (std::uint32_t v = 0; v < topology.vertexCount; ++v)
        for (const std::uint32_t group : groupsOf[v]) {
            joints[group].vertices.push_back(v);
            joints[group].weights.push_back(1.0f / static_cast<float>(groupsOf[v].size()));
        }
    context.warn(definition.binding.id, "binds whole face groups; where two meet, both pull alike");
}

} // namespace

SkinDefinition ParseSkin(const Element& modifier, const std::vector<Geometry>& geometries,
                         ParseContext& context)
{
    SkinDefinition definition;
    definition.binding.id = Text(modifier, "id", "SkinBinding");
    const auto legacy = Find(modifier, "legacy_skin");
    const auto skin = legacy ? legacy : Find(modifier, "skin");
    if (!skin)
        return definition;
    definition.node = ParseUri(Text(*skin, "node")).id;
    definition.geometry = ParseUri(Text(*skin, "geometry")).id;
    definition.binding.vertexCount =
        static_cast<std::uint32_t>(std::max<std::int64_t>(Count(*skin, "vertex_count", 0), 0));
    std::size_t perAxis = 0;
    WeightLosses losses;
    ForEach(*skin, "joints", [&](const Element& joint) {
        definition.binding.joints.push_back(ParseJoint(joint, definition.binding.vertexCount, losses));
        perAxis += !Find(joint, "node_weights") && Find(joint, "local_weights");
    });
    if (perAxis > 0)
        context.warn(definition.binding.id,
                     fmt::format("{} for each axis alone; the mean of the three is used",
                                 Counted(perAxis, "joint has weights", "joints have weights")));
    ForEach(modifier, "extra", [&](const Element& extra) {
        if (Text(extra, "type") == "skin_settings")
            ReadSkinSettings(extra, definition.binding, losses, context);
    });
    losses.tell(definition.binding.id, context);
    ReadSelectionMap(*skin, definition);
    if (legacy)
        BindGroups(definition, geometries, context);
    return definition;
}

} // namespace dson
