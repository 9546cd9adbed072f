// What DSON figure and morph files hold, as plain values.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/kept.h"
#include "geometry/deltas.h"
#include "geometry/grafting.h"
#include "geometry/left_out_faces.h"
#include "geometry/obj.h"
#include "geometry/polygon_mesh.h"
#include "geometry/subdivision.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The DSON file format (.dsf, .duf): figures, morphs, presets. All strings are UTF-8; lengths in cm, angles
/// in degrees. URIs are percent-encoded text; ids and names are raw text.
namespace dson {

/// A dial. Which members a file spelled out matters when an instance overlays a definition.
struct Channel {
    std::string id;             ///< "value" for a morph's dial; "x", "y", "z" within a vector
    std::string type = "float"; ///< float, int, bool, enum, string, alias, color, ...
    std::string name;           ///< internal property name
    std::string label;          ///< user text
    double value = 0.0;         ///< default value; bools are 0 or 1
    std::optional<double> currentValue;
    std::optional<double> min, max;
    bool clamped = false;
    bool displayAsPercent = false;
    bool visible = true;
    bool locked = false;
    bool autoFollow = false;
    double stepSize = 1.0;
    std::vector<std::string> enumValues;
    std::string text;          ///< value of a string channel
    std::string otherValue;    ///< JSON text of the present value where that is not one number
    std::string targetChannel; ///< of an alias
};

/// One step of a formula, which works on a stack of numbers.
struct Operation {
    enum class Kind {
        PushUrl,
        PushValue,
        PushKnot,
        Add,
        Sub,
        Mult,
        Div,
        Inv,
        Neg,
        SplineLinear,
        SplineConstant,
        SplineTcb
    };
    Kind kind = Kind::PushValue;
    std::string url;              ///< of PushUrl
    double value = 0.0;           ///< of PushValue
    std::array<double, 5> knot{}; ///< of PushKnot: in, out, tension, continuity, bias
};

/// What drives a property: its operations leave one number, which goes to the output.
struct Formula {
    enum class Stage { Sum, Multiply };
    std::string output; ///< URI with a property path
    Stage stage = Stage::Sum;
    std::vector<Operation> operations;
};

/// `output += input * factor`, the form that nearly all formulas have.
Formula MakeDeltaAdd(const std::string& outputUri, const std::string& inputUri, double factor);

/// The head of a file.
struct AssetInfo {
    std::string id;   ///< the file's own URI path
    std::string type; ///< "figure", "modifier", "character", "preset_dform", ...
    std::string author, email, website;
    std::string revision = "1.0";
    std::string modified; ///< ISO 8601 with Z; filled in when written, if empty
};

/// A mesh and what a file says of it.
struct Geometry {
    std::string id, name, label;
    bool subdivisionSurface = true;
    std::string edgeInterpolation = "edges_only";
    geometry::PolygonMesh mesh;                    ///< rest pose, cm; groups and surfaces in the topology
    geometry::LeftOutFaces leftOutFaces;           ///< of the file, which the mesh lacks
    std::string defaultUvSet;                      ///< URI, may be empty
    geometry::TexCoords texCoords;                 ///< of a set in the same file
    std::vector<std::vector<std::uint32_t>> lines; ///< vertex indices of each polyline
    std::vector<geometry::Crease> creases;
    int subdivisionLevel = 1; ///< default of the view level
    geometry::Graft graft;    ///< empty for most; not checked against either mesh
    KeptMembers kept;         ///< in a scene with nodes
};

/// Which part of a D-Former a node is.
struct DFormPart {
    enum class Role { Former, Base, Zone };
    Role role = Role::Former;
    std::optional<bool> usesWeights;            ///< of a zone: influence weights count instead of its field
    std::vector<std::array<double, 2>> falloff; ///< of a zone: parts of the radius and the strength there
};

/// A figure, a bone or another thing with a place.
struct Node {
    std::string id, name, label;
    std::string type = "bone"; ///< figure, bone, node
    std::string parent;        ///< id of the parent within the file; empty for the root
    std::string rotationOrder = "XYZ";
    bool inheritsScale = false;
    std::array<double, 3> centerPoint{}, endPoint{};     ///< cm, in figure space
    std::array<double, 3> orientation{};                 ///< degrees, always in order XYZ
    std::array<Channel, 3> rotation, translation, scale; ///< ids x, y, z
    Channel generalScale;
    std::string presentationType; ///< "Actor/Character" for a figure; empty for none
    std::vector<Formula> formulas;
    std::optional<DFormPart> dform; ///< none for all but the parts of D-Formers
    bool repeatsNode = false;       ///< stands for one more of another node of the scene
    KeptMembers kept;               ///< in a scene with nodes
};
/// A node with its twelve channels named as the host names them (XRotate, ... Scale).
Node MakeNode(const std::string& id, const std::string& label, const std::string& type);

/// Weights of some of a mesh's vertices.
struct WeightMap {
    std::vector<std::uint32_t> vertices; ///< ascending
    std::vector<float> weights;          ///< 0..1
};

struct JointBinding {
    std::string node;                    ///< id of the bone
    std::vector<std::uint32_t> vertices; ///< ascending
    std::vector<float> weights;          ///< 0..1
    WeightMap scale;                     ///< by which the bone's scale acts, where the skin says so
    /// By which the bone's angles about X, Y and Z act, where the skin says so; nothing where the file has
    /// none.
    std::optional<std::array<WeightMap, 3>> axes;
    bool isMeanOfAxes = false; ///< `vertices` and `weights` are what MeanOfAxes gives, and not for files
    KeptMembers kept;          ///< what has no effect here, such as bulging
};
/// Weights for all angles together that come next to those for each alone: the mean of the three, at the
/// precision that files and weight maps have.
WeightMap MeanOfAxes(const std::array<WeightMap, 3>& axes);

/// How much each bone moves each vertex.
struct SkinBinding {
    /// Which maps a bone's scale acts by.
    enum class Scaling { ByBinding, ByScaleMaps };
    /// Which weights are to be kept at a sum of 1 for each vertex while somebody paints them.
    struct Normalizing {
        bool general = true, local = true, scale = true;
    };
    /// Which weights turn: those of all angles together, those of each angle alone, or a mixture.
    enum class Turning { General, ByAxis, Mixed };

    std::string id = "SkinBinding";
    std::uint32_t vertexCount = 0;
    std::vector<JointBinding> joints;
    bool dualQuaternion = true;
    Scaling scaling = Scaling::ByBinding;
    Turning turning = Turning::General;
    Normalizing normalizing;
    WeightMap generalShares; ///< of the general weights' map, where turning is mixed
    /// Shares of the dual quaternions' blend, the rest being linear; nothing where dualQuaternion counts for
    /// all.
    std::optional<WeightMap> dualQuaternionShares;
};

/// A morph's displacements.
struct MorphData {
    std::int64_t vertexCount = 0; ///< of the base mesh; -1 means unchecked
    geometry::SparseDeltas deltas;
    std::string hdUrl;
    std::string hdChecksum; ///< of the companion file that was saved with the morph; empty for unknown
};

/// Influence weights found anywhere in a file.
struct InfluenceMap {
    std::string owner;             ///< name or label of the modifier or node that holds it
    bool isDForm = false;          ///< it stood in a "dform" member
    std::int64_t vertexCount = -1; ///< -1 for unchecked
    std::vector<std::uint32_t> vertices;
    std::vector<float> weights;
};

/// One of the further dials that a modifier lists in its `extra`.
struct EffectChannel {
    Channel channel;      ///< the name is that of the property
    std::string group;    ///< where it is shown
    bool hasValue = true; ///< an instance need not say one
};

/// What a modifier does beside or instead of turning a morph's dial: smoothing, pushing, simulating, ...
struct Effect {
    /// Type of its `extra`, such as "studio/modifier/smoothing"; "dform" for a D-Former's; "channel" for what
    /// is but a value that is not one number.
    std::string kind;
    std::vector<EffectChannel> channels;
    std::optional<InfluenceMap> influence;
    bool pushesAfterSmoothing = false;
    /// `extra`, `dform` and what else a file has of it, by name: JSON text.
    std::vector<std::pair<std::string, std::string>> members;
};

/// A modifier with a dial: a morph when it has data, otherwise a control, unless it has an effect.
struct Modifier {
    std::string id, name;
    std::string parent; ///< URI of the figure node
    std::string presentationType = "Modifier/Shape";
    Channel channel;        ///< id "value"
    bool hasChannel = true; ///< off: the file names none
    std::optional<Effect> effect;
    std::string region;
    std::string group = "/"; ///< property path
    std::vector<Formula> formulas;
    std::optional<MorphData> morph;
    KeptMembers kept; ///< in a scene with nodes; without what is part of the effect
};
/// A dial of range 0..1, clamped, shown in percent. The label defaults to the name.
Modifier MakeMorph(const std::string& name, const std::string& group);

/// A figure with its mesh, bones and skin: what a figure's own .dsf holds.
struct FigureAsset {
    AssetInfo info; ///< id is the figure file's URI path, such as /data/Acme/Mini/Base/Mini.dsf
    Geometry geometry;
    std::vector<Node> nodes; ///< the figure's root first, parents before children
    SkinBinding skin;

    const Node& root() const { return nodes.front(); }
};

/// A dial's value in a scene or character file.
struct DialValue {
    std::string modifierUri; ///< URI of the definition: file and fragment
    std::string name;
    std::string label;
    double value = 0.0;
};

/// A file that loads one figure into a scene, its dials set.
struct CharacterAsset {
    AssetInfo info;
    std::string figureUri; ///< file and fragment of the figure's root node
    std::string label;     ///< of the figure in the scene
    std::vector<DialValue> dials;
};

/// A D-Former preset with an influence weight map.
struct DFormAsset {
    AssetInfo info;
    std::string name; ///< "D-Former_1"
    std::uint32_t vertexCount = 0;
    std::vector<std::uint32_t> vertices;
    std::vector<float> weights; ///< 0..1
};

} // namespace dson
