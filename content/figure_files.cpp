// Writing one figure's files into a library: the figure, its morphs, the files that load it.
// SPDX-License-Identifier: MIT

#include "figure_files.h"

#include "dson/uri.h"
#include "dson/writer.h"
#include "geometry/deltas.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <cmath>

namespace content {

namespace {

/// Deltas shorter than this (cm) are left out of files.
constexpr float shortestDelta = 1e-4f;
/// A joint that moves by less (cm) gets no formula.
constexpr double shortestJointShift = 1e-3;

dson::AssetInfo MakeInfo(const std::string& path, const char* type)
{
    dson::AssetInfo info;
    info.id = path;
    info.type = type;
    info.author = "Gantrel";
    return info;
}

/// A name that can stand in a file name: no folder of it can be left.
std::string FileStem(const std::string& name)
{
    std::string stem = name;
    for (char& c : stem)
        if (c == '/' || c == '\\' || c == ':' || static_cast<unsigned char>(c) < 32)
            c = '_';
    return stem;
}

std::string MorphPath(const FigureKindInfo& kind, const std::string& name)
{
    const std::string folder = kind.figurePath.substr(0, kind.figurePath.rfind('/'));
    return folder + "/Morphs/Gantrel/Base Shapes/" + FileStem(name) + ".dsf";
}

/// The bone with most weight on each face's vertices.
std::vector<std::uint32_t> FaceBones(const geometry::Topology& topology,
                                     const std::vector<geometry::JointWeights>& weights)
{
    std::vector<std::vector<std::pair<std::uint32_t, float>>> perVertex(topology.vertexCount);
    for (std::uint32_t bone = 0; bone < weights.size(); ++bone)
        for (std::size_t i = 0; i < weights[bone].vertices.size(); ++i)
            perVertex[weights[bone].vertices[i]].emplace_back(bone, weights[bone].weights[i]);
    std::vector<std::uint32_t> bones(topology.faceCount(), 0);
    std::vector<float> sums(weights.size(), 0.0f);
    for (std::size_t f = 0; f < topology.faceCount(); ++f) {
        std::fill(sums.begin(), sums.end(), 0.0f);
        for (const std::uint32_t vertex : topology.face(f))
            for (const auto& [bone, weight] : perVertex[vertex])
                sums[bone] += weight;
        bones[f] = static_cast<std::uint32_t>(std::max_element(sums.begin(), sums.end()) - sums.begin());
    }
    return bones;
}

geometry::PolygonMesh WithGroups(const FigureParts& parts)
{
    auto topology = std::make_shared<geometry::Topology>(*parts.neutral.topology);
    topology->groupNames.clear();
    for (const FigureBone& bone : parts.bones)
        topology->groupNames.push_back(bone.id);
    topology->faceGroups = FaceBones(*topology, parts.weights);
    topology->surfaceNames = {"Torso", "Head", "Arms", "Legs"};
    topology->surfaceNames.insert(topology->surfaceNames.end(), parts.partNames.begin(),
                                  parts.partNames.end());
    topology->faceSurfaces.clear();
    for (const std::uint32_t group : topology->faceGroups) {
        const FigureBone& bone = parts.bones[group];
        topology->faceSurfaces.push_back(bone.inHead ? 1 : bone.inArms ? 2 : bone.inLegs ? 3 : 0);
    }
    for (std::size_t f = 0; f < parts.facePart.size(); ++f)
        if (parts.facePart[f] > 0)
            topology->faceSurfaces[f] = 3 + parts.facePart[f];
    geometry::PolygonMesh mesh;
    mesh.topology = topology;
    mesh.positions = parts.neutral.positions;
    return mesh;
}

dson::Node MakeBoneNode(const FigureBone& bone, const std::string& parent)
{
    dson::Node node = dson::MakeNode(bone.id, bone.label, "bone");
    node.parent = parent;
    node.rotationOrder = std::string(geometry::RotationOrderName(bone.order));
    for (int axis = 0; axis < 3; ++axis) {
        node.centerPoint[axis] = bone.center[axis];
        node.endPoint[axis] = bone.end[axis];
        node.orientation[axis] = bone.orientation[axis];
    }
    return node;
}

} // namespace

dson::FigureAsset MakeFigureAsset(const FigureKindInfo& kind, const FigureParts& parts)
{
    assert(parts.weights.size() == parts.bones.size());
    dson::FigureAsset figure;
    figure.info = MakeInfo(kind.figurePath, "figure");
    figure.geometry.id = kind.id + "-1";
    figure.geometry.name = figure.geometry.label = kind.id;
    figure.geometry.mesh = WithGroups(parts);
    dson::Node root = dson::MakeNode(kind.id, kind.label, "figure");
    root.rotationOrder = "XYZ";
    root.presentationType = "Actor/Character";
    figure.nodes.push_back(root);
    for (const FigureBone& bone : parts.bones)
        figure.nodes.push_back(MakeBoneNode(bone, bone.parent < 0 ? kind.id : parts.bones[bone.parent].id));
    figure.skin.vertexCount = static_cast<std::uint32_t>(parts.neutral.vertexCount());
    for (std::size_t b = 0; b < parts.bones.size(); ++b)
        if (!parts.weights[b].vertices.empty())
            figure.skin.joints.push_back(
                {parts.bones[b].id, parts.weights[b].vertices, parts.weights[b].weights});
    return figure;
}

std::vector<std::filesystem::path> FigureFolders(const FigureKindInfo& kind,
                                                 const std::filesystem::path& library)
{
    std::vector<std::string> paths = kind.characterPaths;
    paths.insert(paths.end(), {kind.figurePath, MorphPath(kind, "any")});
    if (kind.kind == FigureKind::Genesis9)
        paths.emplace_back(headSplitPath);
    std::vector<std::filesystem::path> folders;
    for (const std::string& path : paths)
        folders.push_back((library / path.substr(1)).parent_path());
    return folders;
}

FigureFiles::FigureFiles(const FigureKindInfo& kind, const FigureParts& parts, std::filesystem::path library,
                         base::FileSet& set)
    : _kind(kind), _figure(MakeFigureAsset(kind, parts)), _library(std::move(library))
{
    _options.set = &set;
    dson::WriteFigure(_figure, _library, _options);
    for (const std::string& path : kind.characterPaths)
        writeCharacter(path, kind.label, {});
}

void FigureFiles::addJointFormulas(const MorphParts& morph, dson::Modifier& modifier) const
{
    static const char* const axes[3] = {"x", "y", "z"};
    const std::string input = dson::MakePropertyUri(_kind.id, "", morph.name, "value");
    for (std::size_t b = 0; b < morph.joints.size(); ++b) {
        const std::string& bone = _figure.nodes[b + 1].id;
        const auto add = [&](const geometry::Vec3f& shift, const char* property) {
            for (int axis = 0; axis < 3; ++axis) {
                if (std::abs(static_cast<double>(shift[axis])) < shortestJointShift)
                    continue;
                const std::string output = dson::MakePropertyUri(bone, _kind.figurePath, bone,
                                                                 std::string(property) + "/" + axes[axis]);
                modifier.formulas.push_back(dson::MakeDeltaAdd(output, input, shift[axis]));
            }
        };
        add(morph.joints[b].center, "center_point");
        add(morph.joints[b].end, "end_point");
    }
}

void FigureFiles::writeMorph(const MorphParts& morph) const
{
    dson::Modifier modifier = dson::MakeMorph(morph.name, morph.group);
    modifier.parent = dson::MakeUri(_kind.figurePath, _kind.id);
    modifier.region = morph.group.rfind("/Head", 0) == 0 ? "Head" : "Actor";
    modifier.channel.label = morph.label.empty() ? morph.name : morph.label;
    modifier.channel.min = morph.lowest;
    if (morph.deltas.empty()) {
        modifier.morph.reset();
    } else {
        modifier.morph->vertexCount = static_cast<std::int64_t>(morph.deltas.size());
        modifier.morph->deltas = geometry::MakeDeltas(morph.deltas, shortestDelta);
    }
    addJointFormulas(morph, modifier);
    const std::string input = dson::MakePropertyUri(_kind.id, "", morph.name, "value");
    for (const auto& [driven, factor] : morph.drives)
        modifier.formulas.push_back(dson::MakeDeltaAdd(
            dson::MakePropertyUri(_kind.id, MorphPath(_kind, driven), driven, "value"), input, factor));
    dson::WriteMorph(MakeInfo(MorphPath(_kind, morph.name), "modifier"), modifier, _library, _options);
}

void FigureFiles::writeCharacter(const std::string& path, const std::string& label,
                                 const std::vector<std::pair<std::string, double>>& dials) const
{
    dson::CharacterAsset character;
    character.info = MakeInfo(path, "character");
    character.figureUri = dson::MakeUri(_kind.figurePath, _kind.id);
    character.label = label;
    for (const auto& [name, value] : dials)
        character.dials.push_back({dson::MakeUri(MorphPath(_kind, name), name), name, name, value});
    dson::WriteCharacter(character, _figure, _library, _options);
}

void WriteHeadSplit(base::Span<const float> weights, const std::filesystem::path& library, base::FileSet& set)
{
    dson::DFormAsset preset;
    preset.info = MakeInfo(headSplitPath, "preset_dform");
    preset.name = "D-Former_1";
    preset.vertexCount = static_cast<std::uint32_t>(weights.size());
    for (std::uint32_t v = 0; v < weights.size(); ++v)
        if (weights[v] > 0.0f) {
            preset.vertices.push_back(v);
            preset.weights.push_back(weights[v]);
        }
    dson::WriteOptions options;
    options.set = &set;
    dson::WriteDForm(preset, library, options);
}

} // namespace content
