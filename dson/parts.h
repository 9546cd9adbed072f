// Turning the members of a DSON file into values.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "dson/reader.h"
#include "json_view.h"
#include "odd_parts.h"
#include "part_list.h"
#include "subdivision_parts.h"

namespace dson {

/// What the parsing of one file hands around.
struct ParseContext {
    std::string name; ///< of the file
    ReadOptions options;
    base::Diagnostics& diagnostics;
    OddLists lists = {};               ///< to be told at the end
    OddSubdivisions subdivisions = {}; ///< likewise
    OddParts odd = {};                 ///< likewise

    /// @param asset  id of what is concerned; empty for the file as a whole
    void warn(std::string asset, std::string what)
    {
        diagnostics.push_back({base::Severity::Warning, name, std::move(asset), std::move(what)});
    }
};

/// How many vertices or faces something is for; 0, which is for any number, where the file does not say so or
/// what is no number of things, which is told.
/// @param asset  id of what it is part of
std::uint32_t ParseCount(const Element& object, std::string_view key, const std::string& asset,
                         ParseContext& context);

AssetInfo ParseAssetInfo(const Element& json);
std::vector<Formula> ParseFormulas(const Element& owner, ParseContext& context);

Geometry ParseGeometry(const Element& json, ParseContext& context);
/// Adds the faces of a geometry to a topology that has its vertices and the names of groups and surfaces.
/// @param id  of the geometry
geometry::LeftOutFaces ParseFaces(const Element& json, geometry::Topology& topology, const std::string& id,
                                  ParseContext& context);
/// Empty for one that joins nothing.
/// @param id  of the geometry
geometry::Graft ParseGraft(const Element& geometry, const std::string& id, ParseContext& context);
Node ParseNode(const Element& json, ParseContext& context);
/// Whether a node or its instance stands for one more of another node.
bool RepeatsNode(const Element& node);
Modifier ParseModifier(const Element& json, ParseContext& context);
/// Of a modifier with a `skin` or a `legacy_skin`.
/// @param geometries  of the same file
SkinDefinition ParseSkin(const Element& modifier, const std::vector<Geometry>& geometries,
                         ParseContext& context);
/// @param id  of the morph
geometry::SparseDeltas ParseDeltas(const Element& morph, const std::string& id, ParseContext& context);

NodeInstance ParseNodeInstance(const Element& json, ParseContext& context);
ModifierInstance ParseModifierInstance(const Element& json, ParseContext& context);
/// Nothing for an entry that holds no number.
/// @param strange  grows by the keys that are not two numbers, where there are others
std::optional<AnimatedValue> ParseAnimation(const Element& json, std::size_t& strange);

/// Decoded paths of the files that a scene wants to be loaded after it, each once.
std::vector<std::string> CollectAddOns(const Element& scene);
/// Likewise of the scripts that it wants to be run.
/// @param besideAddOns  those of entries that name add-ons, too, or of the others
std::vector<std::string> CollectScripts(const Element& scene, bool besideAddOns);
/// Whether an entry of the scene's `extra` is for such files.
bool NamesAddOns(const Element& extra);
/// Whether it wants anything to be done after it.
bool HasFollowUps(const Element& scene);

/// What a modifier without morph or skin does; nothing for a plain dial or for formulas alone.
std::optional<Effect> ParseEffect(const Element& modifier, const Modifier& parsed, ParseContext& context);
/// What an instance of it says; nothing without `extra` and `dform`.
std::optional<Effect> ParseEffectInstance(const Element& instance, ParseContext& context);

/// Nothing for a node that is no part of a D-Former.
std::optional<DFormPart> ParseDFormPart(const Element& node, ParseContext& context);

/// The weights that an object has as its `influence_weights`; nothing where those are no map.
/// @param owner  see InfluenceMap
/// @param told   where it tells what it leaves out; null where that has been told
std::optional<InfluenceMap> ParseInfluenceMap(const Element& holder, const std::string& owner, bool inDForm,
                                              ParseContext* told);
/// Every weight map called `influence_weights`, wherever in the file it stands.
std::vector<InfluenceMap> CollectInfluenceMaps(const Element& root, ParseContext& context);

} // namespace dson
