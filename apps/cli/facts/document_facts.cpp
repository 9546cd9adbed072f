// What is in a DSON file.
// SPDX-License-Identifier: MIT

#include "command.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "facts/file_facts.h"
#include "geometry/deltas.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace cli {

namespace {

Json AssetFacts(const dson::AssetInfo& info)
{
    return {{"id", info.id},
            {"type", info.type},
            {"author", info.author},
            {"email", info.email},
            {"website", info.website},
            {"revision", info.revision},
            {"modified", info.modified}};
}

Json Geometries(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::Geometry& geometry : document.geometries)
        list.push_back({{"id", geometry.id},
                        {"vertices", geometry.mesh.vertexCount()},
                        {"polygons", geometry.mesh.faceCount()},
                        {"groups", geometry.mesh.topology->groupNames.size()},
                        {"surfaces", geometry.mesh.topology->surfaceNames.size()},
                        {"subdivision_surface", geometry.subdivisionSurface}});
    return list;
}

Json Nodes(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::Node& node : document.nodes)
        list.push_back({{"id", node.id},
                        {"label", node.label},
                        {"type", node.type},
                        {"parent", node.parent},
                        {"rotation_order", node.rotationOrder},
                        {"center_cm", {node.centerPoint[0], node.centerPoint[1], node.centerPoint[2]}},
                        {"formulas", node.formulas.size()}});
    return list;
}

Json Skins(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::SkinDefinition& skin : document.skins)
        list.push_back({{"id", skin.binding.id},
                        {"node", skin.node},
                        {"geometry", skin.geometry},
                        {"vertices", skin.binding.vertexCount},
                        {"joints", skin.binding.joints.size()}});
    return list;
}

Json Modifiers(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::Modifier& modifier : document.modifiers) {
        const geometry::SparseDeltas deltas =
            modifier.morph ? modifier.morph->deltas : geometry::SparseDeltas();
        const double largestMm = geometry::LargestLength(deltas) * millimetresPerCentimetre;
        list.push_back({{"name", modifier.name},
                        {"label", modifier.channel.label},
                        {"group", modifier.group},
                        {"moved_vertices", deltas.size()},
                        {"largest_displacement_mm", Rounded(largestMm, 4)},
                        {"formulas", modifier.formulas.size()}});
    }
    return list;
}

/// Second dials, and what they turn.
Json Aliases(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::Modifier& modifier : document.modifiers)
        if (modifier.channel.type == "alias")
            list.push_back({{"name", modifier.name},
                            {"label", modifier.channel.label},
                            {"on", dson::ParseUri(modifier.parent).id},
                            {"stands_for", modifier.channel.targetChannel}});
    return list;
}

/// The properties that a modifier's formulas change, other than its own dial; each once.
std::vector<std::string> DrivenBy(const dson::Modifier& modifier)
{
    std::vector<std::string> driven;
    for (const dson::Formula& formula : modifier.formulas) {
        const dson::Uri output = dson::ParseUri(formula.output);
        std::string text = output.id + "?" + output.property;
        const bool isOwn =
            (output.id == modifier.id || output.id == modifier.name) && output.property == "value";
        if (!isOwn && std::find(driven.begin(), driven.end(), text) == driven.end())
            driven.push_back(std::move(text));
    }
    return driven;
}

std::string FirstFew(const std::vector<std::string>& names)
{
    constexpr std::size_t shown = 4;
    std::string text;
    for (std::size_t i = 0; i < std::min(shown, names.size()); ++i)
        text += (i > 0 ? ", " : "") + names[i];
    return names.size() > shown ? text + ", ..." : text;
}

/// A summary names the first few.
Json Driven(const dson::Document& document, Detail detail)
{
    Json list = Json::array();
    for (const dson::Modifier& modifier : document.modifiers) {
        const std::vector<std::string> driven = DrivenBy(modifier);
        if (!driven.empty())
            list.push_back({{"by", modifier.name},
                            {"count", driven.size()},
                            {"properties", detail == Detail::Full ? Json(driven) : Json(FirstFew(driven))}});
    }
    return list;
}

Json InfluenceMaps(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::InfluenceMap& map : document.influenceMaps)
        list.push_back(
            {{"owner", map.owner}, {"vertices", map.vertices.size()}, {"mesh_vertices", map.vertexCount}});
    return list;
}

/// A summary leaves out the parts of figures and what is merely there without a value.
Json Instances(const dson::Document& document, Detail detail)
{
    Json list = Json::array();
    for (const dson::NodeInstance& node : document.nodeInstances)
        if (detail == Detail::Full || node.parent.empty())
            list.push_back({{"id", node.id}, {"label", node.label}, {"value", nullptr}, {"url", node.url}});
    for (const dson::ModifierInstance& modifier : document.modifierInstances)
        if (detail == Detail::Full || modifier.value)
            list.push_back({{"id", modifier.id},
                            {"label", modifier.name},
                            {"value", modifier.value ? Json(*modifier.value) : Json()},
                            {"url", modifier.url}});
    return list;
}

Json Settings(const dson::Document& document)
{
    Json list = Json::array();
    for (const dson::AnimatedValue& setting : document.animations)
        list.push_back({{"url", setting.url}, {"value", setting.value}});
    return list;
}

/// What a file of a kind never has would only be in the way.
void AddUnlessEmpty(Json& facts, const char* key, Json list)
{
    if (!list.empty())
        facts[key] = std::move(list);
}

} // namespace

Json DocumentFacts(const dson::Document& document, Detail detail)
{
    Json facts;
    facts["file"] = FileText(document.file);
    facts["asset"] = AssetFacts(document.info);
    AddUnlessEmpty(facts, "geometries", Geometries(document));
    if (detail == Detail::Full)
        AddUnlessEmpty(facts, "nodes", Nodes(document));
    else if (!document.nodes.empty())
        facts["nodes"] = document.nodes.size();
    AddUnlessEmpty(facts, "skins", Skins(document));
    AddUnlessEmpty(facts, "modifiers", Modifiers(document));
    AddUnlessEmpty(facts, "aliases", Aliases(document));
    AddUnlessEmpty(facts, "drives", Driven(document, detail));
    AddUnlessEmpty(facts, "influence_maps", InfluenceMaps(document));
    AddUnlessEmpty(facts, "instances", Instances(document, detail));
    AddUnlessEmpty(facts, "settings", Settings(document));
    return facts;
}

} // namespace cli
