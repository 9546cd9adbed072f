// Writing DSON files.
// SPDX-License-Identifier: MIT

#include "dson/writer.h"

#include "base/atomic_file.h"
#include "base/cancellation.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "base/folders.h"
#include "base/write_bounds.h"
#include "dson/dhdm.h"
#include "dson/gzip.h"
#include "emit.h"
#include "rewrite.h"

#include <optional>
#include <set>

namespace dson {

namespace {

namespace fs = std::filesystem;

fs::path FilePath(const AssetInfo& info, const fs::path& contentDirectory)
{
    if (info.id.empty() || info.id.front() != '/' || LeavesFolder(info.id))
        throw base::FormatError("{} is no path within a content directory", info.id);
    return contentDirectory / info.id.substr(1);
}

void MakeFolderOf(const fs::path& file)
{
    base::ThrowIfOutOfBounds(file);
    base::MakeFolders(file.parent_path());
}

fs::path WriteFile(const AssetInfo& info, const Json& json, const fs::path& contentDirectory,
                   const WriteOptions& options)
{
    const fs::path file = FilePath(info, contentDirectory);
    MakeFolderOf(file);
    const std::string text = ToText(json);
    const std::string bytes = options.compress ? Compress(text) : text;
    base::ThrowIfCancelled();
    if (options.set)
        options.set->write(file, bytes);
    else
        base::WriteFileAtomically(file, bytes);
    return file;
}

/// Hands out ids that are unique within one file's scene.
class InstanceIds {
public:
    std::string take(const std::string& wanted)
    {
        std::string id = wanted;
        for (int n = 1; !_taken.insert(id).second; ++n)
            id = wanted + "-" + std::to_string(n);
        return id;
    }

private:
    std::set<std::string> _taken;
};

std::string Reference(const std::string& id)
{
    return "#" + EncodeFragment(id);
}

Json EmitNodeInstances(const CharacterAsset& character, const FigureAsset& figure,
                       const std::string& geometryId)
{
    const std::string& path = figure.info.id;
    Json nodes = Json::array();
    for (const Node& node : figure.nodes) {
        const bool isRoot = &node == &figure.root();
        Json json{{"id", node.id},
                  {"url", MakeUri(path, node.id)},
                  {"name", node.name},
                  {"label", isRoot ? character.label : node.label}};
        if (!isRoot)
            json["parent"] = Reference(node.parent);
        else
            json["geometries"] = Json::array(
                {Json{{"id", geometryId},
                      {"url", MakeUri(path, figure.geometry.id)},
                      {"name", figure.geometry.name},
                      {"label", figure.geometry.label},
                      {"type", figure.geometry.subdivisionSurface ? "subdivision_surface" : "polygon_mesh"},
                      {"current_subdivision_level", figure.geometry.subdivisionLevel},
                      {"edge_interpolation_mode", figure.geometry.edgeInterpolation}}});
        nodes.push_back(std::move(json));
    }
    return nodes;
}

Json EmitModifierInstances(const CharacterAsset& character, const FigureAsset& figure,
                           const std::string& geometryId, InstanceIds& ids)
{
    Json modifiers = Json::array();
    modifiers.push_back({{"id", ids.take(figure.skin.id + "-1")},
                         {"url", MakeUri(figure.info.id, figure.skin.id)},
                         {"parent", Reference(geometryId)}});
    for (const DialValue& dial : character.dials)
        modifiers.push_back({{"id", ids.take(dial.name)},
                             {"url", dial.modifierUri},
                             {"parent", Reference(geometryId)},
                             {"channel",
                              {{"id", "value"},
                               {"type", "float"},
                               {"name", "Value"},
                               {"label", dial.label.empty() ? dial.name : dial.label},
                               {"current_value", static_cast<float>(dial.value)}}}});
    return modifiers;
}

} // namespace

fs::path WriteFigure(const FigureAsset& figure, const fs::path& contentDirectory, const WriteOptions& options)
{
    Json json = EmitFileHead(figure.info);
    json["geometry_library"] = Json::array({EmitGeometry(figure.geometry)});
    json["node_library"] = Json::array();
    for (const Node& node : figure.nodes)
        json["node_library"].push_back(EmitNode(node));
    json["modifier_library"] = Json::array({EmitSkin(figure.skin, figure.root().id, figure.geometry.id)});
    return WriteFile(figure.info, json, contentDirectory, options);
}

fs::path WriteMorph(const AssetInfo& info, const Modifier& modifier, const fs::path& contentDirectory,
                    const WriteOptions& options, std::string_view detail)
{
    const fs::path file = FilePath(info, contentDirectory);
    Json json = EmitFileHead(info);
    json["modifier_library"] = Json::array({EmitModifier(modifier)});
    // Two files make up a morph, which have to change together.
    MakeFolderOf(file);
    std::optional<base::FileSet> own;
    WriteOptions together = options;
    if (!options.set)
        together.set = &own.emplace(file.parent_path());
    const fs::path companion = fs::path(file).replace_extension(".dhdm");
    if (!detail.empty()) {
        Json& morph = json["modifier_library"][0]["morph"];
        morph["hd_url"] = EncodePath(fs::path(info.id).replace_extension(".dhdm").generic_string());
        morph["hd_checksum"] = DhdmChecksum(detail);
        together.set->write(companion, detail);
    } else if (options.isReplacement) {
        together.set->remove(companion); // of the morph that was there
    }
    // The instance's id must differ from the library's in the same file.
    json["scene"] =
        Json{{"modifiers", Json::array({Json{{"id", modifier.id + "-1"}, {"url", Reference(modifier.id)}}})}};
    if (!options.isReplacement)
        json = KeepUnknown(std::move(json), file);
    WriteFile(info, json, contentDirectory, together);
    base::ThrowIfCancelled();
    if (own)
        own->commit();
    return file;
}

fs::path WriteCharacter(const CharacterAsset& character, const FigureAsset& figure,
                        const fs::path& contentDirectory, const WriteOptions& options)
{
    InstanceIds ids;
    for (const Node& node : figure.nodes)
        ids.take(node.id);
    const std::string geometryId = ids.take(figure.geometry.id);
    Json json = EmitFileHead(character.info);
    json["scene"] = Json{{"nodes", EmitNodeInstances(character, figure, geometryId)},
                         {"modifiers", EmitModifierInstances(character, figure, geometryId, ids)}};
    return WriteFile(character.info, json, contentDirectory, options);
}

fs::path WriteDForm(const DFormAsset& dform, const fs::path& contentDirectory, const WriteOptions& options)
{
    Json json = EmitFileHead(dform.info);
    json["modifier_library"] = Json::array({EmitDForm(dform)});
    json["scene"] = Json{{"modifiers", Json::array({Json{{"id", dform.name + "-1"},
                                                         {"url", Reference(dform.name)},
                                                         {"parent", "name://@selection:"}}})}};
    return WriteFile(dform.info, json, contentDirectory, options);
}

} // namespace dson
