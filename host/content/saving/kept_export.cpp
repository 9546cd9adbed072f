// Parts of loaded files that nothing in the scene stands for, in the file to be written.
// SPDX-License-Identifier: MIT

#include "kept_export.h"

#include "base/counted.h"
#include "channel_export.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "unit_export.h"

#include <algorithm>

#include <fmt/format.h>

namespace openhost {

namespace {

/// Id of the geometry or node that a material or a UV set is for; empty for none of the same file.
std::string OwnerOf(const dson::KeptPart& part)
{
    for (const char* const member : {"geometry", "parent"}) {
        const dson::Uri uri = dson::ParseUri(dson::TextMember(part.text, member));
        if (!uri.id.empty() && uri.path.empty() && uri.node.empty())
            return uri.id;
    }
    return {};
}

void AddTexts(const dson::KeptMembers& kept, std::vector<std::string>& texts)
{
    for (const auto& member : kept.members)
        texts.push_back(member.second);
    texts.insert(texts.end(), kept.extras.begin(), kept.extras.end());
}

void AddReferences(const std::string& text, std::set<std::string>& ids)
{
    ids.merge(dson::ReferencesIn(text));
}

/// What the parts refer to, and what that refers to in turn.
std::set<std::string> WithAllBelow(std::set<std::string> wanted, const dson::KeptContent& content)
{
    std::vector<const dson::KeptPart*> rest;
    for (const auto* const parts :
         {&content.geometries, &content.materialDefinitions, &content.uvSets, &content.images})
        for (const dson::KeptPart& part : *parts)
            rest.push_back(&part);
    for (std::size_t before = 0; before != rest.size();) {
        before = rest.size();
        const auto firstWanted = std::partition(rest.begin(), rest.end(), [&](const dson::KeptPart* part) {
            return wanted.count(part->id) == 0;
        });
        for (auto part = firstWanted; part != rest.end(); ++part)
            AddReferences((*part)->text, wanted);
        rest.erase(firstWanted, rest.end());
    }
    return wanted;
}

/// A vector of channels as JSON.
std::string PresentVector(const DzNode& node, const std::string& member)
{
    std::string text;
    for (const char* const axis : axisIds)
        text += fmt::format(R"({}{{"id":"{}","current_value":{}}})", text.empty() ? "[" : ",", axis,
                            FindNodeChannel(node, member + "/" + axis)->getDoubleRawValue());
    return text + "]";
}

bool IsRigVector(const std::string& member)
{
    return member == "center_point" || member == "end_point" || member == "orientation";
}

/// What an instance says of the node's axes, as it is now; empty where its definition in the file says it.
std::string PresentMember(const std::string& name, const std::string& text, const DzNode& node, bool isWhole)
{
    const bool isVector = IsRigVector(name);
    if (isVector && isWhole)
        return dson::RestOfChannels(text);
    if (isVector)
        return dson::WithChannels(PresentVector(node, name), text);
    if (name != "rotation_order" && name != "inherits_scale")
        return text;
    if (isWhole)
        return {};
    return name == "rotation_order" ? '"' + node.getRotationOrder().toString().toStdString() + '"'
           : node.inheritsScale()   ? "true"
                                    : "false";
}

/// What the file has said of the node's axes is said again, as it is now.
dson::KeptMembers WithPresent(const dson::KeptMembers& kept, const DzNode& node, bool isWhole)
{
    dson::KeptMembers now;
    now.extras = kept.extras;
    for (const auto& [name, text] : kept.members)
        if (std::string present = PresentMember(name, text, node, isWhole); !present.empty())
            now.members.emplace_back(name, std::move(present));
    return now;
}

/// How the borders of its mesh are treated.
int EdgesOf(const DzNode& node)
{
    return qobject_cast<const DzFacetShape*>(node.getObject()->getCurrentShape())
        ->getFacetMesh()
        ->getSubDEdgeInterpolation();
}

bool IsSame(const std::string& a, const std::vector<std::string>& all)
{
    return std::find(all.begin(), all.end(), a) != all.end();
}

} // namespace

KeptExport::Source& KeptExport::sourceOf(const std::shared_ptr<const KeptLoad>& load)
{
    const auto [place, isNew] = _bySource.emplace(load.get(), _sources.size());
    if (isNew)
        _sources.push_back({load, {}, {}});
    return _sources[place->second];
}

void KeptExport::Source::enter(const std::string& old, const std::string& id)
{
    if (!old.empty())
        written.emplace(old, id);
}

bool KeptExport::Source::lacks(const std::string& id) const
{
    return load->instances.count(id) > 0 && written.count(id) == 0;
}

void KeptExport::enterNode(const DzNode& node, std::size_t index, const std::string& id, bool isWhole)
{
    _nodeIds.emplace(&node, id);
    const KeptNode* const kept = KeptOfNode(node);
    if (!kept)
        return;
    Source& source = sourceOf(kept->load);
    source.enter(kept->id, id);
    AddTexts(kept->members, source.texts);
    AddTexts(kept->geometry, source.texts);
    for (const dson::KeptPart& geometry : kept->furtherGeometries)
        source.texts.push_back(geometry.text);
    _nodes.push_back({&node, kept, index, isWhole});
}

void KeptExport::enterDefinition(const DzNode& node, std::size_t index)
{
    const KeptNode* const kept = KeptOfNode(node);
    if (!kept)
        return;
    AddTexts(kept->definition, sourceOf(kept->load).texts);
    _definitions.push_back({&node, kept, index, true});
}

void KeptExport::enterGeometryDefinition(const DzNode& node, std::size_t index)
{
    const KeptNode* const kept = KeptOfNode(node);
    if (!kept || kept->geometryDefinition.empty())
        return;
    AddTexts(kept->geometryDefinition, sourceOf(kept->load).texts);
    _geometryDefinitions.push_back({&node, kept, index, true});
}

void KeptExport::enterDefinition(const QObject& owner, std::size_t index, std::vector<OfModifier>& all)
{
    const KeptModifier* const kept = KeptOfModifier(owner);
    if (!kept)
        return;
    AddTexts(kept->definition, sourceOf(kept->load).texts);
    all.push_back({kept, index});
}

void KeptExport::enterModifierDefinition(const QObject& owner, std::size_t index)
{
    enterDefinition(owner, index, _modifierDefinitions);
}

void KeptExport::enterSkinDefinition(const QObject& owner, std::size_t index)
{
    enterDefinition(owner, index, _skinDefinitions);
}

void KeptExport::enterGeometry(const DzNode& node, const std::string& id)
{
    const KeptNode* const kept = KeptOfNode(node);
    if (!kept)
        return;
    Source& source = sourceOf(kept->load);
    if (!id.empty() && !kept->geometryIds.empty())
        source.enter(kept->geometryIds.front(), id);
    for (const dson::KeptPart& geometry : kept->furtherGeometries) {
        std::vector<std::string>& ids = _furtherGeometries[&node];
        ids.push_back(geometry.id.empty() ? std::string() : _ids.take(geometry.id));
        source.enter(geometry.id, ids.back());
    }
}

void KeptExport::enterModifier(const QObject& owner, std::size_t index, const std::string& id)
{
    const KeptModifier* const kept = KeptOfModifier(owner);
    if (!kept)
        return;
    Source& source = sourceOf(kept->load);
    source.enter(kept->id, id);
    AddTexts(kept->members, source.texts);
    _modifiers.push_back({kept, index});
}

/// What the file has beside its nodes belongs into the one to be written.
bool KeptExport::isOfFile(const Source& source) const
{
    return source.load->content && (_type == "scene" || _type == source.load->content->type);
}

bool KeptExport::isWritten(const Source& source, const std::string& owner) const
{
    return source.written.count(owner) > 0 || (!source.lacks(owner) && isOfFile(source));
}

bool KeptExport::isWrittenUrl(const Source& source, const std::string& url,
                              const std::set<std::string>& without) const
{
    const dson::Uri uri = dson::ParseUri(url);
    const auto isLost = [&](const std::string& id) { return source.lacks(id) || without.count(id) > 0; };
    if (isLost(uri.node) || isLost(uri.id))
        return false;
    return source.written.count(uri.node) > 0 || source.written.count(uri.id) > 0 || isOfFile(source);
}

std::vector<KeptExport::Part> KeptExport::chooseOwned(const Source& source,
                                                      const std::vector<dson::KeptPart>& parts,
                                                      std::set<std::string>& without) const
{
    std::vector<Part> chosen;
    for (const dson::KeptPart& part : parts)
        if (isWritten(source, OwnerOf(part)))
            chosen.push_back(&part);
        else if (!part.id.empty())
            without.insert(part.id);
    return chosen;
}

KeptExport::Animation KeptExport::describe(const Source& source, const KeptAnimation& entry,
                                           const std::set<std::string>& without)
{
    const DzNode* const owner = entry.property ? qobject_cast<DzNode*>(entry.property->getOwner()) : nullptr;
    const auto node = _nodeIds.find(owner ? owner : entry.figure.data());
    const bool isOfSelection = entry.isOfProperty && dson::ParseUri(entry.url).node[0] == '/';
    const bool isThere = isOfSelection ? node != _nodeIds.end() : isWrittenUrl(source, entry.url, without);
    if (!isThere || (entry.isOfProperty && !entry.property))
        return {};
    if (entry.property && entry.property->getDoubleRawValue() != entry.value) {
        ++_stopped;
        return {};
    }
    if (!isOfSelection)
        return {entry.text, false};
    // In the file to be written, another figure may be the selected one.
    const dson::Uri uri = dson::ParseUri(entry.url);
    const std::string url =
        dson::MakePropertyUri(node->second, {}, owner ? node->second : uri.id, uri.property);
    return {dson::WithTextMember(entry.text, "url", url), true};
}

KeptExport::Chosen KeptExport::choose(const Source& source)
{
    Chosen chosen;
    std::set<std::string> without;
    if (const dson::KeptContent* const content = source.load->content.get()) {
        chosen.materials = chooseOwned(source, content->materials, without);
        chosen.uvs = chooseOwned(source, content->uvs, without);
        for (const dson::KeptPart& part : content->animations)
            if (isWrittenUrl(source, part.id, without))
                chosen.animations.push_back({part.text, false});
    }
    for (const KeptAnimation& entry : source.load->animations)
        if (Animation animation = describe(source, entry, without); !animation.text.empty())
            chosen.animations.push_back(std::move(animation));
    return chosen;
}

void KeptExport::collectTexts(Source& source, const Chosen& chosen) const
{
    for (const auto* const parts : {&chosen.materials, &chosen.uvs})
        for (const Part part : *parts)
            source.texts.push_back(part->text);
    for (const Animation& animation : chosen.animations)
        source.texts.push_back(animation.text);
    if (isOfFile(source)) {
        AddTexts(source.load->content->scene, source.texts);
        AddTexts(source.load->content->file, source.texts);
    }
}

/// Equal parts of several files are one.
void KeptExport::addDefinitions(Source& source, const std::set<std::string>& wanted,
                                const std::vector<dson::KeptPart>& parts, std::vector<dson::KeptPart>& all)
{
    std::set<std::string> seen; // of equal ids the first counts
    for (const dson::KeptPart& part : parts) {
        if (part.id.empty() || wanted.count(part.id) == 0 || !seen.insert(part.id).second)
            continue;
        const std::string text = dson::WithReferences(part.text, source.written);
        std::string& id = _parts[part.id + '\n' + text];
        if (id.empty()) {
            id = _ids.take(part.id);
            _renamed += id != part.id;
            all.push_back({id, id == part.id ? text : dson::WithTextMember(text, "id", id)});
        }
        source.enter(part.id, id);
    }
}

void KeptExport::addInstances(Source& source, const std::vector<Part>& parts,
                              std::vector<dson::KeptPart>& all)
{
    std::vector<std::string> ids;
    for (const Part part : parts) {
        ids.push_back(part->id.empty() ? std::string() : _ids.take(part->id));
        source.enter(part->id, ids.back());
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::string text = dson::WithReferences(parts[i]->text, source.written);
        all.push_back({ids[i], ids[i] == parts[i]->id ? text : dson::WithTextMember(text, "id", ids[i])});
    }
}

/// Parts that nothing refers to any more stay behind.
void KeptExport::addWanted(Source& source, dson::KeptContent& all)
{
    if (!source.load->content)
        return;
    const dson::KeptContent& content = *source.load->content;
    std::set<std::string> wanted;
    for (const std::string& text : source.texts)
        AddReferences(text, wanted);
    wanted = WithAllBelow(std::move(wanted), content);
    for (const std::string& id : _ownUvSets)
        wanted.erase(id);
    addDefinitions(source, wanted, content.geometries, all.geometries);
    addDefinitions(source, wanted, content.images, all.images);
    addDefinitions(source, wanted, content.uvSets, all.uvSets);
    addDefinitions(source, wanted, content.materialDefinitions, all.materialDefinitions);
}

dson::KeptMembers KeptExport::rewritten(const dson::KeptMembers& kept, const Source& source) const
{
    dson::KeptMembers now = kept;
    for (auto& member : now.members)
        member.second = dson::WithReferences(member.second, source.written);
    for (std::string& extra : now.extras)
        extra = dson::WithReferences(extra, source.written);
    return now;
}

/// A member that another file has, too, is kept as the first has it.
void KeptExport::mergeInto(dson::KeptMembers& all, const dson::KeptMembers& kept, const Source& source)
{
    const dson::KeptMembers now = rewritten(kept, source);
    const std::size_t present = all.members.size();
    for (const auto& member : now.members) {
        const auto end = all.members.begin() + std::ptrdiff_t(present);
        const auto same = std::find_if(all.members.begin(), end,
                                       [&](const auto& other) { return other.first == member.first; });
        if (same == end)
            all.members.push_back(member);
        else if (same->second != member.second)
            ++_differing;
    }
    const std::vector<std::string> before = all.extras;
    for (const std::string& extra : now.extras)
        if (!IsSame(extra, before))
            all.extras.push_back(extra);
}

void KeptExport::addMembers(const Source& source, dson::KeptContent& all)
{
    if (!isOfFile(source))
        return;
    const dson::KeptContent& content = *source.load->content;
    dson::KeptMembers scene = content.scene;
    // How a file presents itself says nothing of files of another kind.
    if (content.type == _type)
        mergeInto(all.info, content.info, source);
    else
        scene.members.erase(std::remove_if(scene.members.begin(), scene.members.end(),
                                           [](const auto& member) { return member.first == "presentation"; }),
                            scene.members.end());
    mergeInto(all.scene, scene, source);
    mergeInto(all.file, content.file, source);
}

/// Shapes and controls that could not be found are set again by the next one who can.
void KeptExport::addMissing(const Source& source, dson::SceneAsset& asset)
{
    for (const dson::ModifierInstance& missing : source.load->modifiers) {
        const auto parent = source.written.find(dson::ParseUri(missing.parent).id);
        if (parent == source.written.end())
            continue;
        dson::SceneModifier instance;
        instance.id = _ids.take(missing.id);
        instance.url = missing.url;
        instance.parent = "#" + dson::EncodeFragment(parent->second);
        instance.group = missing.group;
        if (missing.value)
            instance.channel = dson::SceneChannel{"value", "float", missing.value, missing.change};
        else if (!missing.channelText.empty())
            instance.effect = dson::Effect{{}, {}, {}, false, {{"channel", missing.channelText}}};
        instance.kept = rewritten(missing.kept, source);
        asset.sceneModifiers.push_back(std::move(instance));
    }
}

void KeptExport::keepGeometry(const OfNode& node, const Source& source, dson::SceneGeometry& first) const
{
    first.kept = rewritten(node.kept->geometry, source);
    auto& members = first.kept.members;
    const auto mode = std::find_if(members.begin(), members.end(), [](const auto& member) {
        return member.first == "edge_interpolation_mode";
    });
    if (mode != members.end()) {
        if (EdgesOf(*node.node) == node.kept->edgeInterpolation)
            first.edgeInterpolation.clear();
        else
            members.erase(mode);
    }
}

void KeptExport::addFurtherGeometries(const OfNode& node, const Source& source,
                                      dson::SceneNode& instance) const
{
    const auto ids = _furtherGeometries.find(node.node);
    for (std::size_t i = 0; ids != _furtherGeometries.end() && i < ids->second.size(); ++i) {
        const std::string& id = ids->second[i];
        const std::string text = dson::WithReferences(node.kept->furtherGeometries[i].text, source.written);
        instance.furtherGeometries.push_back({id, id.empty() ? text : dson::WithTextMember(text, "id", id)});
    }
}

void KeptExport::addToElements(dson::SceneAsset& asset)
{
    for (const OfNode& node : _nodes) {
        const Source& source = sourceOf(node.kept->load);
        dson::SceneNode& instance = asset.sceneNodes[node.index];
        instance.kept = rewritten(WithPresent(node.kept->members, *node.node, node.isWhole), source);
        if (instance.geometry)
            keepGeometry(node, source, *instance.geometry);
        addFurtherGeometries(node, source, instance);
    }
    for (const OfModifier& modifier : _modifiers)
        asset.sceneModifiers[modifier.index].kept =
            rewritten(modifier.kept->members, sourceOf(modifier.kept->load));
}

void KeptExport::addToDefinitions(dson::SceneAsset& asset)
{
    for (const OfNode& node : _definitions) {
        dson::Node& definition = asset.nodes[node.index];
        definition.kept = rewritten(node.kept->definition, sourceOf(node.kept->load));
        // Nodes of kinds that there are no classes for stay what they are.
        if (definition.type == "node" && !node.kept->definitionType.empty())
            definition.type = node.kept->definitionType;
    }
    for (const OfNode& node : _geometryDefinitions) {
        dson::Geometry& definition = asset.geometries[node.index];
        // Whatever it says may be about vertices by their numbers.
        if (definition.mesh.vertexCount() == node.kept->vertexCount)
            definition.kept = rewritten(node.kept->geometryDefinition, sourceOf(node.kept->load));
        else
            ++_remade;
    }
    for (const OfModifier& modifier : _modifierDefinitions)
        asset.modifiers[modifier.index].kept =
            rewritten(modifier.kept->definition, sourceOf(modifier.kept->load));
    for (const OfModifier& skin : _skinDefinitions)
        asset.skins[skin.index].kept = rewritten(skin.kept->definition, sourceOf(skin.kept->load));
}

void KeptExport::addTo(dson::SceneAsset& asset)
{
    for (const dson::Geometry& geometry : asset.geometries)
        _ownUvSets.insert(dson::ParseUri(geometry.defaultUvSet).id);
    for (Source& source : _sources) {
        const Chosen chosen = choose(source);
        collectTexts(source, chosen);
        addWanted(source, asset.kept);
        addInstances(source, chosen.uvs, asset.kept.uvs);
        addInstances(source, chosen.materials, asset.kept.materials);
        for (const auto& [text, hasNewIds] : chosen.animations)
            asset.kept.animations.push_back(
                {{}, hasNewIds ? text : dson::WithReferences(text, source.written)});
        addMembers(source, asset.kept);
        addMissing(source, asset);
    }
    addToElements(asset);
    addToDefinitions(asset);
    report();
}

void KeptExport::report() const
{
    const auto tell = [](base::Severity severity, std::size_t count, const char* one, const char* many,
                         const char* what) {
        if (count > 0)
            Report({severity, {}, {}, fmt::format("{} {}", base::Counted(count, one, many), what)});
    };
    tell(base::Severity::Note, _renamed, "image, UV set or material", "images, UV sets and materials",
         "had an id that something else has and got another one");
    tell(base::Severity::Warning, _differing, "setting", "settings",
         "of loaded files differ; each is kept as the first of the files has it");
    tell(base::Severity::Warning, _remade, "geometry has", "geometries have",
         "been given another mesh; what else its file said of the old one is left out");
    tell(base::Severity::Warning, _stopped, "animation", "animations",
         "of values that have been changed since loading cannot be kept; the present values are");
}

} // namespace openhost
