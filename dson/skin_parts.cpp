// Turning the members of a DSON file into values: skins.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "dson/uri.h"
#include "json_rows.h"
#include "kept_parts.h"
#include "parts.h"
#include "weight_losses.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

namespace dson {

namespace {

/// What joints say with weights for each axis alone.
struct AxisCounts {
    std::size_t with = 0;          ///< joints that have such weights
    std::size_t withoutOthers = 0; ///< of them, those without general ones
    std::size_t withOthersOnly = 0;
    std::size_t bulging = 0; ///< joints that swell when they turn

    void count(const JointBinding& joint, bool hasGeneral)
    {
        with += joint.axes.has_value();
        withoutOthers += joint.axes && !hasGeneral;
        withOthersOnly += !joint.axes && hasGeneral;
    }
};

/// One list serves for all three.
std::array<WeightMap, 3> ParseAxes(const Element& joint, const Element& axes, std::uint32_t vertexCount,
                                   WeightLosses& losses)
{
    if (Find(axes, "x") || Find(axes, "y") || Find(axes, "z"))
        return {ParseWeights(axes, "x", vertexCount, losses), ParseWeights(axes, "y", vertexCount, losses),
                ParseWeights(axes, "z", vertexCount, losses)};
    const WeightMap all = ParseWeights(joint, "local_weights", vertexCount, losses);
    return {all, all, all};
}

JointBinding ParseJoint(const Element& json, std::uint32_t vertexCount, WeightLosses& losses,
                        AxisCounts& counts)
{
    const PartBeingRead part(json);
    JointBinding joint;
    joint.node = ParseUri(Text(json, "node")).id;
    if (joint.node.empty())
        joint.node = Text(json, "id");
    if (const auto axes = Find(json, "local_weights"))
        joint.axes = ParseAxes(json, *axes, vertexCount, losses);
    const bool hasGeneral = Find(json, "node_weights").has_value();
    counts.count(joint, hasGeneral);
    counts.bulging += Find(json, "bulge_weights") || Find(json, "bulges");
    // What knows of general weights alone, such as fitting clothes, gets along with the mean.
    joint.isMeanOfAxes = joint.axes && !hasGeneral;
    WeightMap turns = joint.isMeanOfAxes ? MeanOfAxes(*joint.axes)
                                         : ParseWeights(json, "node_weights", vertexCount, losses);
    joint.vertices = std::move(turns.vertices);
    joint.weights = std::move(turns.weights);
    joint.scale = ParseWeights(json, "scale_weights", vertexCount, losses);
    joint.kept = KeptOfJoint(json);
    return joint;
}

void ReadBlend(const Element& settings, SkinBinding& binding, WeightLosses& losses, ParseContext& context)
{
    const bool mixesAxes = Text(settings, "blend_mode", "BlendLinearDualQuat") != "BlendLinearDualQuat";
    if (Find(settings, "blend_weights")) {
        WeightMap shares = ParseWeights(settings, "blend_weights", binding.vertexCount, losses);
        if (mixesAxes) {
            binding.turning = SkinBinding::Turning::Mixed;
            binding.generalShares = std::move(shares);
        } else {
            binding.dualQuaternionShares = std::move(shares);
        }
    } else if (mixesAxes) {
        context.warn(binding.id,
                     "mixes weights for each axis with others but does not say how; the others are used");
    }
}

void ReadSkinSettings(const Element& settings, SkinBinding& binding, WeightLosses& losses,
                      ParseContext& context)
{
    const auto isMode = [&](std::string_view member, std::string_view usual, std::string_view other) {
        const std::string mode = Text(settings, member, usual);
        if (mode != usual && mode != other)
            context.warn(binding.id, fmt::format("has the unknown {} {}, read as {}", member, mode, usual));
        return mode == other;
    };
    binding.dualQuaternion = !isMode("general_map_mode", "DualQuat", "Linear");
    if (isMode("scale_mode", "BindingMaps", "ScaleMaps"))
        binding.scaling = SkinBinding::Scaling::ByScaleMaps;
    binding.normalizing = {Flag(settings, "auto_normalize_general", true),
                           Flag(settings, "auto_normalize_local", true),
                           Flag(settings, "auto_normalize_scale", true)};
    const std::string mode = Text(settings, "binding_mode", "General");
    if (mode == "Local")
        binding.turning = SkinBinding::Turning::ByAxis;
    else if (mode == "Blended")
        ReadBlend(settings, binding, losses, context);
    else if (mode != "General")
        context.warn(binding.id, fmt::format("has the unknown binding_mode {}, read as General", mode));
}

/// The setting is for whoever paints weights. Sums other than 1 would pull the mesh towards the origin, so it
/// is drawn as if they were.
void TellNotNormalized(const SkinBinding& binding, ParseContext& context)
{
    const auto hasAny = [&binding](auto has) {
        return std::any_of(binding.joints.begin(), binding.joints.end(), has);
    };
    std::vector<std::string_view> kinds;
    if (!binding.normalizing.general && hasAny([](const JointBinding& joint) { return !joint.isMeanOfAxes; }))
        kinds.push_back("general");
    if (!binding.normalizing.local &&
        hasAny([](const JointBinding& joint) { return joint.axes.has_value(); }))
        kinds.push_back("local");
    if (!binding.normalizing.scale &&
        hasAny([](const JointBinding& joint) { return !joint.scale.vertices.empty(); }))
        kinds.push_back("scale");
    if (!kinds.empty())
        context.warn(binding.id,
                     fmt::format("says that its weights are not to be normalised: {}; that is kept, "
                                 "and they are drawn normalised all the same",
                                 fmt::join(kinds, ", ")));
}

/// Which weights turn, where the settings ask for such as no joint has; tells what stands in for what.
void SettleTurning(SkinBinding& binding, const AxisCounts& counts, ParseContext& context)
{
    const auto warn = [&](std::size_t joints, const char* singular, const char* plural, const char* then) {
        if (joints > 0)
            context.warn(binding.id, fmt::format("{} {}", base::Counted(joints, singular, plural), then));
    };
    using Turning = SkinBinding::Turning;
    if (counts.with == 0)
        binding.turning = Turning::General;
    else if (counts.withoutOthers == counts.with && counts.withOthersOnly == 0)
        binding.turning = Turning::ByAxis;
    if (binding.turning == Turning::General)
        warn(counts.withoutOthers, "joint has weights", "joints have weights",
             "for each axis alone; the mean of the three is used");
    else
        warn(counts.withOthersOnly, "joint has no weights", "joints have no weights",
             "for each axis; the general ones are used for all three");
    warn(counts.bulging, "joint bulges", "joints bulge", "when turned, which has no effect here and is kept");
}

/// How many vertices the skin's mesh has, whatever the skin says; that where the mesh is not in the file.
std::uint32_t BoundVertices(std::uint32_t said, const SkinDefinition& definition,
                            const std::vector<Geometry>& geometries, ParseContext& context)
{
    for (const Geometry& geometry : geometries) {
        if (geometry.id != definition.geometry)
            continue;
        const auto present = static_cast<std::uint32_t>(geometry.mesh.vertexCount());
        if (said != 0 && said != present)
            context.warn(definition.binding.id,
                         fmt::format("is for {} but its mesh has {}; what fits is used",
                                     base::CountedVertices(said), present));
        return present;
    }
    return said;
}

void ReadSelectionMap(const Element& skin, SkinDefinition& definition)
{
    ForEachObject(skin, "selection_map", [&](const Element& map) {
        bool hasOthers = false;
        ForEach(map, "mappings", [&](const Element& pair) {
            std::string names[2];
            std::size_t count = 0;
            if (pair.is_array())
                for (const Element item : Items(pair))
                    if (count < 2 && item.is_string())
                        names[count++] = TextOf(item);
            if (count == 2)
                definition.selectionMap.emplace_back(names[0], names[1]);
            hasOthers = hasOthers || count != 2;
        });
        if (hasOthers)
            ReadingTally::addOdd(map, "mappings", OddMembers::Wanted::Pairs);
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
    std::unordered_map<std::string_view, std::string_view> nodeOf;
    for (const auto& [group, node] : definition.selectionMap)
        nodeOf[group] = node;
    for (const std::string& name : topology.groupNames) {
        const auto mapped = nodeOf.find(name);
        joints.emplace_back().node = mapped == nodeOf.end() ? name : mapped->second;
    }
    for (std::uint32_t v = 0; v < topology.vertexCount; ++v)
        for (const std::uint32_t group : groupsOf[v]) {
            joints[group].vertices.push_back(v);
            joints[group].weights.push_back(1.0f / static_cast<float>(groupsOf[v].size()));
        }
    context.warn(definition.binding.id, "binds whole face groups; where two meet, both pull alike");
}

} // namespace

WeightMap MeanOfAxes(const std::array<WeightMap, 3>& axes)
{
    constexpr float whole = 65535.0f;
    std::map<std::uint32_t, long> sums;
    for (const WeightMap& axis : axes)
        for (std::size_t i = 0; i < axis.vertices.size(); ++i)
            sums[axis.vertices[i]] += std::lround(axis.weights[i] * whole);
    WeightMap mean;
    for (const auto& [vertex, sum] : sums) {
        const long third = (sum + 1) / 3;
        if (third == 0)
            continue;
        mean.vertices.push_back(vertex);
        mean.weights.push_back(static_cast<float>(third) / whole);
    }
    return mean;
}

SkinDefinition ParseSkin(const Element& modifier, const std::vector<Geometry>& geometries,
                         ParseContext& context)
{
    const PartBeingRead part(modifier);
    SkinDefinition definition;
    definition.binding.id = Text(modifier, "id", "SkinBinding");
    const auto legacy = FindObject(modifier, "legacy_skin");
    const auto skin = legacy ? legacy : FindObject(modifier, "skin");
    const auto isUnread = [](const Element& owner, std::string_view member) {
        const auto found = Find(owner, member);
        return found && !found->is_string();
    };
    definition.unread.all = !skin;
    if (!skin)
        return definition;
    definition.unread.node = isUnread(*skin, "node");
    definition.unread.geometry = isUnread(*skin, "geometry");
    definition.node = ParseUri(Text(*skin, "node")).id;
    definition.geometry = ParseUri(Text(*skin, "geometry")).id;
    definition.binding.vertexCount = BoundVertices(
        ParseCount(*skin, "vertex_count", definition.binding.id, context), definition, geometries, context);
    AxisCounts counts;
    WeightLosses losses;
    for (const KeyedPart& joint : KeyedPartsOf(*skin, "joints", context.lists)) {
        std::vector<JointBinding>& joints = definition.binding.joints;
        joints.push_back(ParseJoint(joint.part, definition.binding.vertexCount, losses, counts));
        if (joints.back().node.empty())
            joints.back().node = joint.key;
    }
    ForEach(modifier, "extra", [&](const Element& extra) {
        if (Text(extra, "type") == "skin_settings")
            ReadSkinSettings(extra, definition.binding, losses, context);
    });
    SettleTurning(definition.binding, counts, context);
    TellNotNormalized(definition.binding, context);
    losses.tell(definition.binding.id, context);
    ReadSelectionMap(*skin, definition);
    if (legacy)
        BindGroups(definition, geometries, context);
    return definition;
}

} // namespace dson
