// A small content library with every file that a conversion needs.
// SPDX-License-Identifier: MIT

#include "tests/plugin/mini_library.h"

#include "dson/writer.h"
#include "geometry/skinning.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <tuple>

namespace {

using geometry::Vec3f;

struct Kind {
    const char* id;
    const char* path;      ///< of the figure file
    const char* character; ///< file that loads it
    const char* label;
    int quadsPerSide; ///< of the cube that the blob is blown up from
};

const Kind genesis3Female{"Genesis3Female", "/data/DAZ 3D/Genesis 3/Female/Genesis3Female.dsf",
                          "/People/Genesis 3 Female/Genesis 3 Female.duf", "Genesis 3 Female", 9};
const Kind genesis3Male{"Genesis3Male", "/data/DAZ 3D/Genesis 3/Male/Genesis3Male.dsf",
                        "/People/Genesis 3 Male/Genesis 3 Male.duf", "Genesis 3 Male", 9};
const Kind genesis8Female{"Genesis8Female", "/data/Daz 3D/Genesis 8/Female/Genesis8Female.dsf",
                          "/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf",
                          "Genesis 8 Female", 9};
const Kind genesis8Male{"Genesis8Male", "/data/Daz 3D/Genesis 8/Male/Genesis8Male.dsf",
                        "/People/Genesis 8 Male/Developer Kit/Genesis 8 Male Dev Load.duf", "Genesis 8 Male",
                        9};
const Kind genesis9{"Genesis9", "/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf",
                    "/People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf", "Genesis 9", 12};

/// A cube's surface of n x n quads a side, blown up to an ellipsoid as tall as a person.
geometry::PolygonMesh MakeBlob(int n)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    std::map<std::tuple<int, int, int>, std::uint32_t> vertices;
    const auto vertex = [&](int x, int y, int z) {
        const auto entry =
            vertices.emplace(std::make_tuple(x, y, z), static_cast<std::uint32_t>(vertices.size()));
        if (entry.second) {
            const Vec3f unit =
                geometry::Normalized({2.0f * x / n - 1.0f, 2.0f * y / n - 1.0f, 2.0f * z / n - 1.0f});
            mesh.positions.push_back({30.0f * unit.x, 85.0f + 85.0f * unit.y, 20.0f * unit.z});
        }
        return entry.first->second;
    };
    const auto quad = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
        const std::uint32_t corners[4] = {a, b, c, d};
        topology->addFace({corners, 4});
    };
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            quad(vertex(i, j, n), vertex(i + 1, j, n), vertex(i + 1, j + 1, n), vertex(i, j + 1, n));
            quad(vertex(i, j, 0), vertex(i, j + 1, 0), vertex(i + 1, j + 1, 0), vertex(i + 1, j, 0));
            quad(vertex(i, n, j), vertex(i, n, j + 1), vertex(i + 1, n, j + 1), vertex(i + 1, n, j));
            quad(vertex(i, 0, j), vertex(i + 1, 0, j), vertex(i + 1, 0, j + 1), vertex(i, 0, j + 1));
            quad(vertex(n, i, j), vertex(n, i + 1, j), vertex(n, i + 1, j + 1), vertex(n, i, j + 1));
            quad(vertex(0, i, j), vertex(0, i, j + 1), vertex(0, i + 1, j + 1), vertex(0, i + 1, j));
        }
    }
    topology->vertexCount = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.topology = std::move(topology);
    return mesh;
}

float Step(float from, float to, float value)
{
    return std::clamp((value - from) / (to - from), 0.0f, 1.0f);
}

/// How much of a vertex follows a bone: legs below the hip by side, the head above the neck, the torso
/// between.
float Weight(const std::string& bone, Vec3f p)
{
    const float legs = Step(80.0f, 60.0f, p.y), left = Step(-4.0f, 4.0f, p.x),
                head = Step(130.0f, 150.0f, p.y);
    if (bone == "l_thigh")
        return legs * left;
    if (bone == "r_thigh")
        return legs * (1.0f - left);
    return bone == "head" ? head : (1.0f - legs) * (1.0f - head);
}

struct BoneSpec {
    const char* name;
    const char* parent;
    std::array<double, 3> center;
};

const BoneSpec boneSpecs[] = {{"hip", "", {0.0, 90.0, 0.0}},
                              {"l_thigh", "hip", {8.0, 82.0, 0.0}},
                              {"r_thigh", "hip", {-8.0, 82.0, 0.0}},
                              {"head", "hip", {0.0, 140.0, 0.0}}};

dson::FigureAsset MakeFigure(const Kind& kind)
{
    dson::FigureAsset figure;
    figure.info.id = kind.path;
    figure.info.type = "figure";
    figure.info.author = "Test";
    figure.geometry.id = std::string(kind.id) + "-1";
    figure.geometry.name = kind.id;
    figure.geometry.mesh = MakeBlob(kind.quadsPerSide);
    figure.nodes.push_back(dson::MakeNode(kind.id, kind.label, "figure"));
    figure.nodes.back().presentationType = "Actor/Character";
    figure.skin.vertexCount = static_cast<std::uint32_t>(figure.geometry.mesh.vertexCount());
    for (const BoneSpec& spec : boneSpecs) {
        dson::Node bone = dson::MakeNode(spec.name, spec.name, "bone");
        bone.parent = *spec.parent ? spec.parent : kind.id;
        bone.centerPoint = spec.center;
        figure.nodes.push_back(bone);
        dson::JointBinding joint;
        joint.node = spec.name;
        for (std::uint32_t v = 0; v < figure.skin.vertexCount; ++v) {
            const float weight = Weight(spec.name, figure.geometry.mesh.positions[v]);
            if (weight > 0.0f) {
                joint.vertices.push_back(v);
                joint.weights.push_back(weight);
            }
        }
        figure.skin.joints.push_back(std::move(joint));
    }
    return figure;
}

/// The figure's rest positions which its thighs, turned as for Genesis 8, bring back onto its neutral shape.
std::vector<Vec3f> BeforeThighPose(const dson::FigureAsset& figure)
{
    std::vector<geometry::Joint> joints;
    std::vector<geometry::JointWeights> weights;
    for (std::size_t i = 0; i < std::size(boneSpecs); ++i) {
        geometry::Joint joint;
        joint.parent = i == 0 ? -1 : 0;
        joint.center = {boneSpecs[i].center[0], boneSpecs[i].center[1], boneSpecs[i].center[2]};
        joint.rotation.z() = i == 1 ? 6.5 : i == 2 ? -6.5 : 0.0;
        joints.push_back(joint);
        weights.push_back({figure.skin.joints[i].vertices, figure.skin.joints[i].weights});
    }
    return geometry::Unskin(figure.geometry.mesh.positions,
                            geometry::MakeSkinWeights(figure.geometry.mesh.vertexCount(), weights),
                            geometry::EvaluateSkeleton(joints), geometry::SkinMode::DualQuaternion);
}

class LibraryWriter {
public:
    explicit LibraryWriter(const std::filesystem::path& directory) : _directory(directory) {}

    dson::FigureAsset writeFigure(const Kind& kind)
    {
        const dson::FigureAsset figure = MakeFigure(kind);
        dson::WriteFigure(figure, _directory);
        writeCharacter(kind, figure, kind.character);
        return figure;
    }

    void writeCharacter(const Kind& kind, const dson::FigureAsset& figure, const std::string& path)
    {
        dson::CharacterAsset character;
        character.info.id = path;
        character.info.type = "character";
        character.figureUri = dson::MakeUri(kind.path, kind.id);
        character.label = kind.label;
        dson::WriteCharacter(character, figure, _directory);
    }

    template <class Shape>
    void writeMorph(const dson::FigureAsset& figure, const std::string& name, Shape shape)
    {
        std::vector<Vec3f> deltas;
        for (std::size_t v = 0; v < figure.geometry.mesh.vertexCount(); ++v)
            deltas.push_back(shape(v, figure.geometry.mesh.positions[v]));
        dson::Modifier morph = dson::MakeMorph(name, "/Actor");
        morph.parent = dson::MakeUri(figure.info.id, figure.root().id);
        morph.channel.min = -1.0;
        morph.morph->vertexCount = static_cast<std::int64_t>(deltas.size());
        morph.morph->deltas = geometry::MakeDeltas(deltas, 0.0f);
        dson::AssetInfo info;
        info.id = figure.info.id.substr(0, figure.info.id.rfind('/')) + "/Morphs/Test/Base/" + name + ".dsf";
        info.type = "modifier";
        dson::WriteMorph(info, morph, _directory);
    }

    void writeHeadSplit(const dson::FigureAsset& figure)
    {
        dson::DFormAsset dform;
        dform.info.id = "/People/Genesis 9/Developer Kit/G9 HeadSplit DFormer.duf";
        dform.info.type = "preset_dform";
        dform.name = "D-Former_1";
        dform.vertexCount = figure.skin.vertexCount;
        for (std::uint32_t v = 0; v < dform.vertexCount; ++v) {
            const float weight = Weight("head", figure.geometry.mesh.positions[v]);
            if (weight > 0.0f) {
                dform.vertices.push_back(v);
                dform.weights.push_back(weight);
            }
        }
        dson::WriteDForm(dform, _directory);
    }

private:
    std::filesystem::path _directory;
};

} // namespace

Vec3f SourceShape(Vec3f neutral, float wide, float bulge)
{
    const float head = Step(130.0f, 150.0f, neutral.y);
    return {neutral.x * (1.0f + 0.2f * wide), neutral.y, neutral.z + 5.0f * bulge * head};
}

void WriteMiniLibrary(const std::filesystem::path& directory)
{
    LibraryWriter writer(directory);
    for (const Kind* const kind : {&genesis3Female, &genesis3Male, &genesis8Female, &genesis8Male}) {
        const dson::FigureAsset figure = writer.writeFigure(*kind);
        writer.writeMorph(figure, "Wide",
                          [](std::size_t, Vec3f p) { return SourceShape(p, 1.0f, 0.0f) - p; });
        writer.writeMorph(figure, "Bulge",
                          [](std::size_t, Vec3f p) { return SourceShape(p, 0.0f, 1.0f) - p; });
        writer.writeMorph(figure, "Unused", [](std::size_t, Vec3f) { return Vec3f{1.0f, 0.0f, 0.0f}; });
    }
    const dson::FigureAsset target = writer.writeFigure(genesis9);
    writer.writeCharacter(genesis9, target, "/People/Genesis 9/Genesis 9.duf");
    writer.writeHeadSplit(target);
    const std::vector<Vec3f> before = BeforeThighPose(target);
    const auto still = [](std::size_t, Vec3f) { return Vec3f{}; };
    const auto posed = [&before](std::size_t v, Vec3f p) { return before[v] - p; };
    writer.writeMorph(target, "CloneGenesis3Female", still);
    writer.writeMorph(target, "CloneGenesis3Male", still);
    writer.writeMorph(target, "CloneGenesis8Female", posed);
    writer.writeMorph(target, "CloneGenesis8Male", posed);
    writer.writeMorph(target, "BaseMasculine_figure_ctrl_Character", still);
    writer.writeMorph(target, "BaseFeminine_figure_ctrl_Character", [](std::size_t, Vec3f p) {
        return Vec3f{0.1f * p.x, 0.0f, 0.0f};
    });
    writer.writeMorph(target, "body_bs_ProportionHeight", [](std::size_t, Vec3f p) {
        return Vec3f{0.0f, 0.1f * p.y, 0.0f};
    });
}
