// Reading DSON files.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "dson/asset.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dson {

/// A channel value that an instance sets, by the channel's id within its member ("rotation/x",
/// "general_scale").
using ChannelValues = std::map<std::string, double>;

/// What an instance says of a channel besides its value; what is not set stays as the definition has it.
struct ChannelChange {
    std::string label;
    std::optional<double> min, max;
    std::optional<bool> clamped, visible, locked;
};

struct GeometryInstance {
    std::string id, url, name, label;
    std::optional<int> subdivisionLevel;
    std::string edgeInterpolation; ///< empty for the definition's
    ChannelValues channels;        ///< of the resolution settings, by channel id
    KeptMembers kept;              ///< a way to treat borders among them that there is not
    std::string text;              ///< JSON
};

struct NodeInstance {
    std::string id, url, name, label;
    std::string parent;   ///< "#id" of the parent instance, or a selection URI; empty for a root
    bool inPlace = false; ///< the place in the world is to be kept when the parent is set
    std::string conformTarget;
    std::string rotationOrder;                    ///< empty for the definition's
    std::optional<bool> inheritsScale;            ///< none for the definition's
    ChannelValues channels;                       ///< "translation/x" ... "general_scale"
    std::map<std::string, ChannelChange> changes; ///< by the same ids
    ChannelValues properties;                     ///< of further channels, by property name
    std::vector<std::string> favorites;           ///< names of properties, also of the node's geometry
    std::vector<Formula> formulas;
    std::vector<GeometryInstance> geometries;
    std::optional<DFormPart> dform;
    bool repeatsNode = false; ///< stands for one more of another node of the scene
    KeptMembers kept;         ///< channels among them, also of those above
};

struct ModifierInstance {
    std::string id, url, parent, name;
    std::string group;           ///< where its dial is shown; empty where the definition says it
    std::optional<double> value; ///< of the channel
    std::string channelText;     ///< JSON of the channel; empty for one without a value
    std::string numberText;      ///< what the value was read from where a text may be meant
    ChannelChange change;
    std::vector<Formula> formulas;
    std::optional<Effect> effect; ///< what its `extra` says; of no kind where that is the definition's
    KeptMembers kept;             ///< in a scene with nodes
};

/// A preset's entry: a property's URI and its value at time 0.
struct AnimatedValue {
    std::string url;
    double value = 0.0;
    std::string text;      ///< JSON of the entry, in a scene with nodes
    bool isMoving = false; ///< it has several keys
};

/// A skin binding and what it binds.
struct SkinDefinition {
    /// What the file has something senseless for, which reading has told.
    struct Unread {
        bool all = false, node = false, geometry = false;
    };

    SkinBinding binding;
    Unread unread;
    std::string node, geometry;                                    ///< ids
    std::vector<std::pair<std::string, std::string>> selectionMap; ///< face groups and the nodes they select
    KeptMembers kept;                                              ///< in a scene with nodes
};

/// A file's content, as far as figures and their shapes need it.
struct Document {
    std::filesystem::path file;
    AssetInfo info;
    std::vector<Geometry> geometries;
    std::vector<Node> nodes;
    std::vector<Modifier> modifiers;
    std::vector<SkinDefinition> skins;
    std::vector<InfluenceMap> influenceMaps;

    std::vector<NodeInstance> nodeInstances;
    std::vector<ModifierInstance> modifierInstances;
    std::vector<AnimatedValue> animations;

    std::vector<std::string> addOns; ///< decoded paths of the files that are to be loaded after this one

    std::shared_ptr<const KeptContent> kept; ///< of a scene with nodes; null for nothing
    std::vector<std::string> leftOut;        ///< what else there is, such as "3 materials"
    base::Diagnostics diagnostics;           ///< what was met in reading it
    bool hasDeltas = true;                   ///< morphs came with their displacements
};

struct ReadOptions {
    bool deltas = true; ///< off: morphs come without their displacements, which are read later by ReadDeltas
};

/// Reads a plain or compressed file. Lenient where shipped files are (counts, commas, encodings): such things
/// become diagnostics. Face, delta and weight indices are checked here.
/// @throws base::IoError      the file cannot be read
/// @throws base::FormatError  the file is no DSON: names the file and what is wrong
Document ReadDocument(const std::filesystem::path& file, const ReadOptions& options = {});

/// The displacements of one morph of a file, by id or name.
/// @param diagnostics  what was met in reading them is added to it; null for nothing
/// @throws as ReadDocument, and base::FormatError when the file has no such morph
geometry::SparseDeltas ReadDeltas(const std::filesystem::path& file, const std::string& modifier,
                                  base::Diagnostics* diagnostics = nullptr);

} // namespace dson
