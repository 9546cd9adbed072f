// What files that users save hold: scenes, parts of them, poses.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/writer.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dson {

/// A channel of an instance: what differs from its definition.
struct SceneChannel {
    std::string id;             ///< "value"; "x" within a vector; a property's name
    std::string type = "float"; ///< float, int, bool, enum
    std::optional<double> value;
    ChannelChange change;
};

struct SceneGeometry {
    std::string id, url, name, label;
    bool subdivisionSurface = false;
    int subdivisionLevel = 0;
    std::string edgeInterpolation = "no_interpolation"; ///< empty where what is kept says it
    std::vector<SceneChannel> resolution;
    KeptMembers kept;
};

/// URLs and references are URI text.
struct SceneNode {
    std::string id, url, name, label;
    std::string parent;        ///< empty for a root
    std::string conformTarget; ///< empty for what is fitted to nothing
    std::vector<SceneChannel> rotation, translation, scale;
    std::optional<SceneChannel> generalScale;
    std::vector<SceneChannel> properties; ///< other channels that the node has by its kind
    std::vector<std::string> favorites;   ///< names of dials that the user has marked
    std::vector<Formula> formulas;
    std::optional<SceneGeometry> geometry;
    std::vector<KeptPart> furtherGeometries; ///< behind it
    KeptMembers kept;
};

struct SceneModifier {
    std::string id, url;
    std::string parent; ///< the geometry instance; the node's where there is none
    std::string group;  ///< where its dial has been put; empty if it stands where the definition has it
    std::optional<SceneChannel> channel;
    std::optional<Effect> effect; ///< where it differs from the definition's
    KeptMembers kept;
};

/// Definitions of what has no data file of its own, and the instances.
struct SceneAsset {
    AssetInfo info;
    std::vector<Geometry> geometries;
    std::vector<Node> nodes;
    std::vector<SkinDefinition> skins;
    std::vector<Modifier> modifiers;
    std::vector<SceneNode> sceneNodes;
    std::vector<SceneModifier> sceneModifiers;
    std::vector<AnimatedValue> animations;
    KeptContent kept; ///< with ids that nothing else has
};

/// Writes the file beside its place and renames it, so that a present file stays whole when that fails.
/// Values of channels read back to the same doubles.
/// @throws base::IoError      the file cannot be written
/// @throws base::FormatError  a value is not finite
void WriteScene(const SceneAsset& scene, const std::filesystem::path& file, const WriteOptions& options);

} // namespace dson
