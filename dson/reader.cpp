// Reading DSON files.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"

#include "base/counted.h"
#include "base/errors.h"
#include "dson/file_text.h"
#include "dson/uri.h"
#include "kept_parts.h"
#include "parsed_text.h"
#include "parts.h"
#include "uv.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include <fmt/format.h>

namespace dson {

namespace {

bool HasDsonMembers(const Element& root)
{
    constexpr std::string_view known[] = {
        "asset_info",       "geometry_library", "node_library",     "uv_set_library",
        "modifier_library", "image_library",    "material_library", "scene"};
    return std::any_of(std::begin(known), std::end(known),
                       [&root](std::string_view name) { return Find(root, name).has_value(); });
}

/// What has the parts of a DSON file is one, whatever it says of its version.
void CheckVersion(const ParsedText& text, ParseContext& context)
{
    const auto member = Find(text.root(), "file_version");
    const std::string version = Text(text.root(), "file_version"); // tells what is no text
    if (version.empty() && !HasDsonMembers(text.root()))
        throw base::FormatError("{}: is not a DSON file: it has no file_version", text.name());
    if (!member || (member->is_string() && version.empty()))
        return context.warn({}, "has no file_version and is read as if it had the usual one");
    int major = 0;
    const auto read = std::from_chars(version.data(), version.data() + version.size(), major);
    if (read.ec != std::errc() && !version.empty())
        context.warn(
            {}, fmt::format("has the file_version {}, which is none, and is read as if it had the usual one",
                            Shown(*member)));
    else if (major >= 1)
        context.warn({}, "has the newer format version " + version);
}

/// Those that geometries of the same file name; nobody needs the others.
void ReadUvSets(const Element& root, Document& document, ParseContext& context)
{
    const std::vector<Element> sets = PartsOf(root, "uv_set_library", context.lists);
    for (Geometry& geometry : document.geometries) {
        const Uri wanted = ParseUri(geometry.defaultUvSet);
        if (wanted.id.empty() || !wanted.path.empty())
            continue;
        for (const Element& json : sets)
            if (Text(json, "id") == wanted.id)
                geometry.texCoords = CornersOf(ParseUvSet(json, context), *geometry.mesh.topology,
                                               geometry.leftOutFaces, context);
    }
}

/// Bones below bones do not inherit scales where files do not say so.
void GuessInheritedScales(std::vector<Node>& nodes, const std::vector<std::size_t>& unsaid)
{
    std::unordered_map<std::string, const Node*> byId;
    for (const Node& node : nodes)
        byId.emplace(node.id, &node);
    for (const std::size_t i : unsaid) {
        const auto parent = byId.find(nodes[i].parent);
        const bool hangsOnBone = parent == byId.end() || parent->second->type == "bone";
        nodes[i].inheritsScale = nodes[i].type != "bone" || !hangsOnBone;
    }
}

bool IsSkin(const Element& modifier)
{
    return Find(modifier, "skin") || Find(modifier, "legacy_skin");
}

void ReadLibraries(const Element& root, Document& document, ParseContext& context)
{
    for (const Element& json : PartsOf(root, "geometry_library", context.lists))
        document.geometries.push_back(ParseGeometry(json, context));
    ReadUvSets(root, document, context);
    std::vector<std::size_t> unsaid;
    for (const Element& json : PartsOf(root, "node_library", context.lists)) {
        if (!SaysInheritsScale(json))
            unsaid.push_back(document.nodes.size());
        document.nodes.push_back(ParseNode(json, context));
    }
    GuessInheritedScales(document.nodes, unsaid);
    for (const Element& json : PartsOf(root, "modifier_library", context.lists)) {
        if (IsSkin(json))
            document.skins.push_back(ParseSkin(json, document.geometries, context));
        else
            document.modifiers.push_back(ParseModifier(json, context));
    }
}

void TellNameless(const Document& document, ParseContext& context)
{
    const auto count = std::count_if(document.modifiers.begin(), document.modifiers.end(),
                                     [](const Modifier& modifier) { return modifier.name.empty(); });
    if (count > 0)
        context.warn({}, base::Counted(static_cast<std::size_t>(count),
                                       "modifier has neither id nor name and is left out",
                                       "modifiers have neither id nor name and are left out"));
}

/// Counts the ids of one library that an earlier part has already.
template <class Parts>
void CountRepeated(const Parts& parts, std::size_t& count, std::string& example)
{
    std::unordered_set<std::string> ids;
    for (const auto& part : parts)
        if (!part.id.empty() && !ids.insert(part.id).second) {
            if (count++ == 0)
                example = part.id;
        }
}

void CheckIds(const Document& document, ParseContext& context)
{
    std::size_t count = 0;
    std::string example;
    CountRepeated(document.geometries, count, example);
    CountRepeated(document.nodes, count, example);
    CountRepeated(document.modifiers, count, example);
    if (count > 0)
        context.warn({}, fmt::format("{} given more than once, such as {}; the first counts",
                                     base::Counted(count, "id is", "ids are"), example));
    count = 0;
    CountRepeated(document.nodeInstances, count, example);
    if (count > 0)
        context.warn({}, fmt::format("{} given more than once, such as {}; what names {} means the first",
                                     base::Counted(count, "id of a node is", "ids of nodes are"), example,
                                     count == 1 ? "it" : "them"));
}

std::size_t CountItems(const Element& owner, std::string_view key)
{
    std::size_t count = 0;
    ForEach(owner, key, [&](const Element&) { ++count; });
    return count;
}

std::size_t CountProjections(const Element& scene)
{
    const ReadingTally alreadyTold;
    std::size_t projections = 0;
    ForEach(scene, "nodes", [&projections](const Element& node) {
        ForEach(node, "extra", [&projections](const Element& extra) {
            projections += Text(extra, "type") == "studio_follower_projection_options";
        });
    });
    return projections;
}

std::string CountedScripts(const std::vector<std::string>& scripts)
{
    return fmt::format("{} to be run after loading, such as {}",
                       base::Counted(scripts.size(), "script", "scripts"), scripts.front());
}

/// Parts that have no bearing on shapes and poses.
/// @param idle  takes those that are written again when the scene is saved
void NoteLeftOut(const Element& scene, Document& document, std::vector<std::string>& idle)
{
    if (const std::size_t count = CountItems(scene, "materials"))
        idle.push_back(base::Counted(count, "material", "materials"));
    if (const std::size_t count = CountItems(scene, "uvs"))
        idle.push_back(base::Counted(count, "UV set", "UV sets"));
    if (const std::size_t count = CountProjections(scene))
        idle.push_back(base::Counted(count, "choice of how a follower takes shapes over",
                                     "choices of how followers take shapes over"));
    const std::vector<std::string> besideAddOns = CollectScripts(scene, true);
    const std::vector<std::string> scripts = CollectScripts(scene, false);
    if (!besideAddOns.empty())
        document.leftOut.push_back(CountedScripts(besideAddOns));
    if (!scripts.empty())
        idle.push_back(CountedScripts(scripts));
    else if (besideAddOns.empty() && HasFollowUps(scene) && document.addOns.empty())
        idle.push_back("what is to be run or added after loading");
}

void KeepDefinitions(const Element& root, Document& document)
{
    OddLists alreadyTold;
    std::size_t node = 0;
    for (const Element& json : PartsOf(root, "node_library", alreadyTold))
        document.nodes[node++].kept = KeptOfNode(json);
    std::size_t geometry = 0;
    for (const Element& json : PartsOf(root, "geometry_library", alreadyTold))
        document.geometries[geometry++].kept = KeptOfGeometryDefinition(json);
    std::size_t skin = 0, modifier = 0;
    for (const Element& json : PartsOf(root, "modifier_library", alreadyTold)) {
        if (IsSkin(json)) {
            document.skins[skin++].kept = KeptOfSkin(json);
            continue;
        }
        Modifier& parsed = document.modifiers[modifier++];
        parsed.kept = KeptOfModifierDefinition(json, parsed);
    }
}

void TellUnkept(const Element& root, const Element& scene, ParseContext& context)
{
    const ReadingTally unheard;
    OddLists alreadyTold;
    std::size_t count = 0;
    for (const char* const library : {"node_library", "modifier_library"})
        for (const Element& json : PartsOf(root, library, alreadyTold))
            count += CountUnkept(json);
    for (const char* const list : {"nodes", "modifiers"})
        for (const Element& json : PartsOf(scene, list, alreadyTold))
            count += CountUnkept(json);
    if (count > 0)
        context.warn({}, fmt::format("{} more than is read, which saving will leave out",
                                     base::Counted(count, "formula, joint or list of deltas holds",
                                                   "formulas, joints or lists of deltas hold")));
}

void ReadAnimations(const Element& scene, bool isKept, Document& document, ParseContext& context,
                    std::vector<std::string>& idle)
{
    std::size_t strange = 0, strangeKeys = 0;
    for (const Element& json : PartsOf(scene, "animations", context.lists)) {
        const std::size_t strangeBefore = strangeKeys;
        auto animation = ParseAnimation(json, strangeKeys);
        if (!animation) {
            strange += strangeKeys == strangeBefore; // or it is told already
            continue;
        }
        if (isKept)
            animation->text = simdjson::minify(json);
        document.animations.push_back(std::move(*animation));
    }
    if (strangeKeys > 0)
        context.warn(
            {}, fmt::format("{} not a time and a number and left out",
                            base::Counted(strangeKeys, "key of animations is", "keys of animations are")));
    if (strange > 0)
        idle.push_back(base::Counted(strange, "value that is no number", "values that are no numbers"));
}

/// What it has beside nodes is kept where it is no preset for others.
void ReadScene(const Element& root, const Element& scene, Document& document, ParseContext& context)
{
    for (const Element& json : PartsOf(scene, "nodes", context.lists))
        document.nodeInstances.push_back(ParseNodeInstance(json, context));
    const bool isKept = !document.nodeInstances.empty();
    for (const Element& json : PartsOf(scene, "modifiers", context.lists)) {
        document.modifierInstances.push_back(ParseModifierInstance(json, context));
        if (isKept)
            document.modifierInstances.back().kept = KeptOfModifier(json);
    }
    for (std::string& addOn : CollectAddOns(scene))
        document.addOns.push_back(std::move(addOn));
    std::vector<std::string> idle;
    NoteLeftOut(scene, document, idle);
    ReadAnimations(scene, isKept, document, context, idle);
    if (!isKept) {
        document.leftOut.insert(document.leftOut.end(), idle.begin(), idle.end());
        return;
    }
    KeepDefinitions(root, document);
    TellUnkept(root, scene, context);
    document.kept = KeptOfFile(root, std::move(idle));
}

void TellOfLists(const ParsedText& text, ParseContext& context)
{
    for (std::string& phrase : context.lists.phrases())
        context.warn({}, std::move(phrase));
    if (!text.repeatedNames().empty())
        context.warn({}, text.repeatedNames());
}

} // namespace

Document ReadDocument(const std::filesystem::path& file, const ReadOptions& options)
{
    ParsedText parsed(ReadText(file), file.string(), options.deltas ? Deltas::Read : Deltas::Skipped);
    Document document;
    document.file = file;
    document.hasDeltas = options.deltas;
    ParseContext context{parsed.name(), options, parsed.diagnostics()};
    const ReadingTally tally;
    CheckVersion(parsed, context);
    if (const auto info = FindObject(parsed.root(), "asset_info"))
        document.info = ParseAssetInfo(*info);
    ReadLibraries(parsed.root(), document, context);
    for (const Element& scene : ScenesOf(parsed.root(), context.lists))
        ReadScene(parsed.root(), scene, document, context);
    context.subdivisions.tell(context);
    context.odd.tell(context);
    TellOfLists(parsed, context);
    CheckIds(document, context);
    TellNameless(document, context);
    document.influenceMaps = CollectInfluenceMaps(parsed.root(), context);
    tally.tell(context);
    document.diagnostics = std::move(parsed.diagnostics());
    return document;
}

geometry::SparseDeltas ReadDeltas(const std::filesystem::path& file, const std::string& modifier,
                                  base::Diagnostics* diagnostics)
{
    ParsedText parsed(ReadText(file), file.string());
    base::Diagnostics unheard;
    base::Diagnostics& met = diagnostics ? *diagnostics : unheard;
    // Oddities among the displacements were stepped over when the file was read without them.
    met.insert(met.end(), parsed.diagnostics().begin(), parsed.diagnostics().end());
    ParseContext context{parsed.name(), {}, met};
    const ReadingTally tally;
    std::optional<Element> found, only;
    std::size_t count = 0;
    for (const Element& json : PartsOf(parsed.root(), "modifier_library", context.lists)) {
        const auto morph = FindObject(json, "morph");
        if (!morph)
            continue;
        ++count;
        only = morph;
        if (!found && (Text(json, "id") == modifier || Text(json, "name") == modifier))
            found = morph;
    }
    if (!found && count == 1)
        found = only;
    if (!found)
        throw base::FormatError("{}: has no morph {}", parsed.name(), modifier);
    geometry::SparseDeltas deltas = ParseDeltas(*found, modifier, context);
    tally.tell(context);
    return deltas;
}

} // namespace dson
