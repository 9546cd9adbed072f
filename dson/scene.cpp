// What files that users save hold: scenes, parts of them, poses.
// SPDX-License-Identifier: MIT

#include "dson/scene.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "dson/gzip.h"
#include "dson/uri.h"
#include "emit.h"
#include "kept_parts.h"
#include "uv.h"

#include <cmath>

namespace dson {

namespace {

Json EmitValue(const SceneChannel& channel)
{
    if (channel.type == "bool")
        return *channel.value != 0.0;
    return ExactNumber(*channel.value);
}

Json EmitSceneChannel(const SceneChannel& channel)
{
    Json json{{"id", channel.id}, {"type", channel.type}};
    const ChannelChange& change = channel.change;
    if (!change.label.empty())
        json["label"] = change.label;
    if (change.visible)
        json["visible"] = *change.visible;
    if (change.locked)
        json["locked"] = *change.locked;
    if (channel.value)
        json["current_value"] = EmitValue(channel);
    if (change.min)
        json["min"] = ExactNumber(*change.min);
    if (change.max)
        json["max"] = ExactNumber(*change.max);
    if (change.clamped)
        json["clamped"] = *change.clamped;
    return json;
}

void AddVector(Json& json, const char* member, const std::vector<SceneChannel>& channels)
{
    for (const SceneChannel& channel : channels)
        json[member].push_back(EmitSceneChannel(channel));
}

Json EmitChannels(const char* type, const std::vector<SceneChannel>& channels)
{
    Json list = Json::array();
    for (const SceneChannel& channel : channels)
        list.push_back({{"channel", EmitSceneChannel(channel)}});
    return Json{{"type", type}, {"version", "0.1.8"}, {"channels", std::move(list)}};
}

/// Readers take what stands before the first slash for the dial's name.
Json EmitFavorites(const std::vector<std::string>& names)
{
    Json list = Json::array();
    for (const std::string& name : names)
        list.push_back(name + "/value");
    return Json{{"type", "studio/node/favorites"}, {"favorites", std::move(list)}};
}

Json EmitSceneGeometry(const SceneGeometry& geometry)
{
    Json json{{"id", geometry.id},
              {"url", geometry.url},
              {"name", geometry.name},
              {"label", geometry.label},
              {"type", geometry.subdivisionSurface ? "subdivision_surface" : "polygon_mesh"}};
    if (geometry.subdivisionSurface)
        json["current_subdivision_level"] = geometry.subdivisionLevel;
    if (!geometry.edgeInterpolation.empty())
        json["edge_interpolation_mode"] = geometry.edgeInterpolation;
    if (!geometry.resolution.empty())
        json["extra"].push_back(EmitChannels("studio_geometry_channels", geometry.resolution));
    AddKept(json, geometry.kept);
    return json;
}

template <class Items, class Emit>
void AddList(Json& json, const char* member, const Items& items, Emit emit)
{
    for (const auto& item : items) {
        base::ThrowIfCancelled();
        json[member].push_back(emit(item));
    }
}

Json EmitPart(const KeptPart& part)
{
    return RawText(part.text);
}

Json EmitSceneNode(const SceneNode& node)
{
    Json json{{"id", node.id}, {"url", node.url}, {"name", node.name}, {"label", node.label}};
    if (!node.parent.empty())
        json["parent"] = node.parent;
    if (!node.conformTarget.empty())
        json["conform_target"] = node.conformTarget;
    AddVector(json, "rotation", node.rotation);
    AddVector(json, "translation", node.translation);
    AddVector(json, "scale", node.scale);
    if (node.generalScale)
        json["general_scale"] = EmitSceneChannel(*node.generalScale);
    if (!node.formulas.empty())
        json["formulas"] = EmitFormulas(node.formulas);
    if (node.geometry)
        json["geometries"] = Json::array({EmitSceneGeometry(*node.geometry)});
    AddList(json, "geometries", node.furtherGeometries, EmitPart);
    if (!node.properties.empty())
        json["extra"].push_back(EmitChannels("studio_node_channels", node.properties));
    if (!node.favorites.empty())
        json["extra"].push_back(EmitFavorites(node.favorites));
    AddKept(json, node.kept);
    return json;
}

Json EmitSceneModifier(const SceneModifier& modifier)
{
    Json json{{"id", modifier.id}};
    if (!modifier.url.empty())
        json["url"] = modifier.url;
    json["parent"] = modifier.parent;
    if (!modifier.group.empty())
        json["group"] = modifier.group;
    if (modifier.channel)
        json["channel"] = EmitSceneChannel(*modifier.channel);
    if (modifier.effect)
        AddEffect(json, *modifier.effect);
    AddKept(json, modifier.kept);
    return json;
}

Json EmitAnimation(const AnimatedValue& animation)
{
    return Json{{"url", animation.url},
                {"keys", Json::array({Json::array({0, ExactNumber(animation.value)})})}};
}

} // namespace

void WriteScene(const SceneAsset& scene, const std::filesystem::path& file, const WriteOptions& options)
{
    Json json = EmitFileHead(scene.info);
    AddKept(json["asset_info"], scene.kept.info);
    AddList(json, "geometry_library", scene.geometries, EmitGeometry);
    AddList(json, "geometry_library", scene.kept.geometries, EmitPart);
    for (const Geometry& geometry : scene.geometries)
        if (!geometry.texCoords.cornerIndices.empty())
            json["uv_set_library"].push_back(EmitUvSet(geometry, ParseUri(geometry.defaultUvSet).id));
    AddList(json, "uv_set_library", scene.kept.uvSets, EmitPart);
    AddList(json, "node_library", scene.nodes, EmitNode);
    AddList(json, "modifier_library", scene.skins, [](const SkinDefinition& skin) {
        Json emitted = EmitSkin(skin.binding, skin.node, skin.geometry, skin.selectionMap);
        AddKept(emitted, skin.kept);
        return emitted;
    });
    AddList(json, "modifier_library", scene.modifiers, EmitModifier);
    AddList(json, "image_library", scene.kept.images, EmitPart);
    AddList(json, "material_library", scene.kept.materialDefinitions, EmitPart);
    Json content = Json::object();
    AddList(content, "nodes", scene.sceneNodes, EmitSceneNode);
    AddList(content, "uvs", scene.kept.uvs, EmitPart);
    AddList(content, "modifiers", scene.sceneModifiers, EmitSceneModifier);
    AddList(content, "materials", scene.kept.materials, EmitPart);
    AddList(content, "animations", scene.animations, EmitAnimation);
    AddList(content, "animations", scene.kept.animations, EmitPart);
    AddKept(content, scene.kept.scene);
    json["scene"] = std::move(content);
    AddKept(json, scene.kept.file);
    const std::string text = ToText(json), bytes = options.compress ? Compress(text) : text;
    base::ThrowIfCancelled();
    base::WriteFileAtomically(file, bytes);
}

} // namespace dson
