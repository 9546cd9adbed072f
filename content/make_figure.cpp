// Making a library figure from plain files.
// SPDX-License-Identifier: MIT

#include "sample_content/make_figure.h"

#include "base/ascii.h"
#include "base/cancellation.h"
#include "base/counted.h"
#include "base/errors.h"
#include "base/file_set.h"
#include "dson/reader.h"
#include "figure_files.h"
#include "geometry/obj.h"
#include "plain_formats.h"

#include <algorithm>
#include <set>

namespace content {

using base::FormatError;
using geometry::Vec3f;

namespace {

struct NamedWeights {
    std::string name;
    std::vector<float> weights;
};

/// All input, read and checked.
struct FigureInput {
    FigureParts parts;
    std::vector<MorphParts> morphs;
    std::vector<NamedWeights> weightMaps;
    std::string joints;
    base::Diagnostics diagnostics;
};

/// Letters only, in lower case: what remains when names are spelled in different ways.
std::string Folded(const std::string& name)
{
    std::string folded;
    for (const char c : name)
        if (base::IsLetterOrDigitAscii(c))
            folded += base::ToLowerAscii(c);
    return folded;
}

/// 'l' or 'r' when the name is one of a thigh's usual ones, otherwise 0.
char ThighSide(const std::string& name)
{
    const std::string folded = Folded(name);
    for (const char side : {'l', 'r'})
        for (const char* bone : {"thigh", "thighbend", "upperleg", "upleg", "femur"})
            for (const std::string& sideName :
                 {std::string(1, side), std::string(side == 'l' ? "left" : "right")})
                if (folded == sideName + bone || folded == bone + sideName)
                    return side;
    return 0;
}

bool Contains(const std::string& folded, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return folded.find(word) != std::string::npos; });
}

void MarkBodyPart(FigureBone& bone)
{
    const std::string folded = Folded(bone.id);
    bone.inLegs =
        Contains(folded, {"thigh", "shin", "leg", "knee", "calf", "foot", "toe", "femur", "metatars"});
    bone.inArms =
        !bone.inLegs && Contains(folded, {"arm", "shldr", "shoulder", "collar", "clavicle", "hand", "finger",
                                          "thumb", "index", "mid", "ring", "pinky", "wrist", "carpal"});
    bone.inHead =
        !bone.inLegs && !bone.inArms && Contains(folded, {"head", "neck", "jaw", "eye", "face", "tongue"});
}

/// The conversion turns the newest figure's thighs by name.
void NameThighs(std::vector<FigureBone>& bones, const std::string& file)
{
    std::string found;
    for (FigureBone& bone : bones) {
        const char side = ThighSide(bone.id);
        if (!side)
            continue;
        if (found.find(side) != std::string::npos)
            throw base::FormatError("{}: bone '{}' is a second {} thigh", file, bone.id,
                                    side == 'l' ? "left" : "right");
        found += side;
        bone.id = bone.label = side == 'l' ? "l_thigh" : "r_thigh";
    }
    for (const char side : {'l', 'r'})
        if (found.find(side) == std::string::npos)
            throw base::FormatError("{}: has no bone '{}_thigh'", file, side);
}

std::vector<FigureBone> MakeBones(const PlainSkeleton& skeleton, FigureKind kind)
{
    std::vector<FigureBone> bones;
    for (const PlainBone& from : skeleton.bones) {
        FigureBone bone;
        bone.id = bone.label = from.name;
        bone.parent = from.parent;
        bone.center = from.head;
        bone.end = from.tail;
        MarkBodyPart(bone);
        bones.push_back(std::move(bone));
    }
    if (kind == FigureKind::Genesis9)
        NameThighs(bones, skeleton.file);
    return bones;
}

/// Weights summing to 1 at each vertex; a vertex without any follows the first bone.
void Normalize(std::vector<geometry::JointWeights>& weights, std::size_t vertexCount)
{
    std::vector<float> sums(vertexCount, 0.0f);
    for (const geometry::JointWeights& bone : weights)
        for (std::size_t i = 0; i < bone.vertices.size(); ++i)
            sums[bone.vertices[i]] += bone.weights[i];
    for (geometry::JointWeights& bone : weights)
        for (std::size_t i = 0; i < bone.vertices.size(); ++i)
            if (sums[bone.vertices[i]] > 0.0f)
                bone.weights[i] /= sums[bone.vertices[i]];
    geometry::JointWeights& first = weights.front();
    std::vector<float> dense(vertexCount, 0.0f);
    for (std::size_t i = 0; i < first.vertices.size(); ++i)
        dense[first.vertices[i]] = first.weights[i];
    first = {};
    for (std::uint32_t v = 0; v < vertexCount; ++v)
        if (const float weight = sums[v] > 0.0f ? dense[v] : 1.0f; weight > 0.0f) {
            first.vertices.push_back(v);
            first.weights.push_back(weight);
        }
}

bool IsObj(const std::filesystem::path& file)
{
    return Folded(file.extension().string()) == "obj";
}

std::vector<Vec3f> ReadMorphDeltas(const std::filesystem::path& file, const std::vector<Vec3f>& neutral)
{
    if (!IsObj(file))
        return ReadDeltaTable(file, neutral.size());
    geometry::ObjReadOptions options;
    options.readFaces = options.readLines = false; // only where its vertices are
    std::vector<Vec3f> deltas = std::move(geometry::ReadObj(file, options).mesh.positions);
    if (deltas.size() != neutral.size())
        throw base::FormatError("{}: has {} but the neutral mesh has {}", file.string(),
                                base::Counted(deltas.size(), "vertex", "vertices"), neutral.size());
    for (std::size_t v = 0; v < deltas.size(); ++v)
        deltas[v] -= neutral[v];
    return deltas;
}

void CheckName(const std::string& name, const std::filesystem::path& file, std::set<std::string>& used)
{
    if (name.empty())
        throw base::FormatError("{}: has no name", file.string());
    if (!used.insert(name).second)
        throw base::FormatError("{}: name '{}' is used twice", file.string(), name);
}

std::vector<MorphParts> ReadMorphs(const MakeFigureOptions& options, const PlainSkeleton& skeleton,
                                   const std::vector<Vec3f>& neutral)
{
    std::vector<MorphParts> morphs;
    std::set<std::string> used;
    for (const auto& [name, file] : options.morphs) {
        CheckName(name, file, used);
        MorphParts morph;
        morph.name = morph.label = name;
        morph.group = "/Shapes";
        morph.lowest = name == proportionHeightName ? -1.0 : 0.0;
        morph.deltas = ReadMorphDeltas(file, neutral);
        if (const auto joints = skeleton.morphs.find(name); joints != skeleton.morphs.end())
            for (std::size_t b = 0; b < skeleton.bones.size(); ++b)
                morph.joints.push_back({joints->second[b].head - skeleton.bones[b].head,
                                        joints->second[b].tail - skeleton.bones[b].tail});
        morphs.push_back(std::move(morph));
    }
    return morphs;
}

/// The dials that the conversion looks for on the newest figure, where none was given.
void AddRequiredDials(std::vector<MorphParts>& morphs, std::size_t vertexCount)
{
    const auto addUnlessGiven = [&](const char* name, double lowest) {
        if (std::any_of(morphs.begin(), morphs.end(),
                        [&](const MorphParts& morph) { return morph.name == name; }))
            return;
        MorphParts morph;
        morph.name = morph.label = name;
        morph.group = "/General/Base";
        morph.lowest = lowest;
        morph.deltas.resize(vertexCount);
        morphs.push_back(std::move(morph));
    };
    addUnlessGiven(baseFeminineName, 0.0);
    addUnlessGiven(baseMasculineName, 0.0);
    addUnlessGiven(proportionHeightName, -1.0);
    for (const char* clone : cloneNames)
        addUnlessGiven(clone, 0.0);
}

FigureInput ReadInput(const MakeFigureOptions& options, FigureKind kind)
{
    FigureInput input;
    geometry::ObjContent neutral = geometry::ReadObj(options.mesh);
    input.parts.neutral = std::move(neutral.mesh);
    input.diagnostics = std::move(neutral.diagnostics);
    const std::size_t vertexCount = input.parts.neutral.vertexCount();
    if (vertexCount == 0 || input.parts.neutral.faceCount() == 0)
        throw base::FormatError("{}: has no faces", options.mesh.string());
    const bool isNewest = kind == FigureKind::Genesis9;
    const PlainSkeleton skeleton =
        ReadPlainSkeleton(options.skeleton, options.joints, isNewest ? "target_default" : "source_neutral");
    input.joints = skeleton.joints;
    input.parts.bones = MakeBones(skeleton, kind);
    input.parts.weights = ReadPlainWeights(options.weights, skeleton, vertexCount);
    Normalize(input.parts.weights, vertexCount);
    input.morphs = ReadMorphs(options, skeleton, input.parts.neutral.positions);
    if (isNewest)
        AddRequiredDials(input.morphs, vertexCount);
    std::set<std::string> used;
    for (const auto& [name, file] : options.weightMaps) {
        CheckName(name, file, used);
        if (!isNewest || name != "head")
            throw base::FormatError("{}: weight map '{}' has no use; genesis9 takes one called head",
                                    file.string(), name);
        input.weightMaps.push_back({name, ReadWeightTable(file, vertexCount)});
    }
    return input;
}

} // namespace

MadeFigure MakeFigure(const MakeFigureOptions& options)
{
    const FigureKindInfo& kind = ParseFigureKind(options.kind);
    const FigureInput input = ReadInput(options, kind.kind);
    base::FileSet set(FigureFolders(kind, options.contentDirectory));
    const FigureFiles files(kind, input.parts, options.contentDirectory, set);
    for (const MorphParts& morph : input.morphs)
        files.writeMorph(morph);
    for (const NamedWeights& map : input.weightMaps)
        WriteHeadSplit(map.weights, options.contentDirectory, set);
    base::ThrowIfCancelled(); // for the last time: all of it is put in place together
    set.commit();
    base::Diagnostics told = set.diagnostics();
    told.insert(told.end(), input.diagnostics.begin(), input.diagnostics.end());
    return {kind.label,
            input.parts.neutral.vertexCount(),
            input.parts.bones.size(),
            input.morphs.size(),
            input.joints,
            std::move(told)};
}

} // namespace content
