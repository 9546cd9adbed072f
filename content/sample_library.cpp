// The sample library: open stand-ins for the stock figures, and characters shaped on them.
// SPDX-License-Identifier: MIT

#include "sample_content/sample_library.h"

#include "base/cancellation.h"
#include "base/file_set.h"
#include "figure_files.h"
#include "sample_figures.h"

#include <exception>

#include <tbb/parallel_for.h>
#include <tbb/parallel_invoke.h>

namespace content {

using base::Span;

namespace {

/// A source character: a name, its figure and its dials.
struct SampleCharacter {
    const char* name;
    FigureKind kind;
    std::vector<std::pair<std::string, double>> dials;
};

const std::vector<SampleCharacter>& Characters()
{
    static const std::vector<SampleCharacter> characters{
        {"Vera",
         FigureKind::Genesis8Female,
         {{"FBMPear", 0.55},
          {"PBMBreastSize", 0.4},
          {"PBMBelly", 0.35},
          {"PHMFullLips", 0.8},
          {"PHMLongNose", 0.5},
          {"PHMFullCheeks", 0.7}}},
        {"Gina",
         FigureKind::Genesis3Female,
         {{"FBMThin", 0.6},
          {"FBMLongLegs", 0.7},
          {"PHMElfEars", 1.0},
          {"PHMLargeEyes", 0.8},
          {"PHMNarrowFace", 0.6}}},
        {"Magnus",
         FigureKind::Genesis8Male,
         {{"FBMMuscular", 0.9},
          {"PBMBroadShoulders", 0.6},
          {"PBMBigHands", 0.5},
          {"PHMWideJaw", 0.7},
          {"PHMHeavyBrow", 0.9}}},
        {"Otto",
         FigureKind::Genesis3Male,
         {{"FBMHeavy", 0.85},
          {"FBMShort", 0.5},
          {"PBMBelly", 0.6},
          {"PHMWideNose", 0.9},
          {"PHMFullCheeks", 0.8},
          {"PHMUnevenFace", 0.6}}},
        {"Agnes",
         FigureKind::Genesis8Female,
         {{"FBMOld", 1.0}, {"FBMShort", 0.4}, {"PHMOldFace", 1.0}, {"PHMLongNose", 0.3}}},
        {"Timo", FigureKind::Genesis8Male, {{"FBMChild", 1.0}, {"PHMYoungFace", 1.0}, {"PHMSmile", 0.5}}},
        {"Hektor",
         FigureKind::Genesis8Male,
         {{"FBMHeroic", 1.0}, {"PHMWideJaw", 0.2}, {"PHMLongChin", 0.7}, {"PHMHeavyBrow", 0.6}}},
        {"Berta",
         FigureKind::Genesis8Female,
         {{"FBMHeavy", 1.0},
          {"PBMBelly", 0.9},
          {"PBMBreastSize", 1.0},
          {"PHMFullCheeks", 1.0},
          {"PHMSmile", 0.6}}},
        {"Lenz",
         FigureKind::Genesis3Male,
         {{"FBMThin", 1.0}, {"FBMLongLegs", 0.8}, {"PHMNarrowFace", 0.8}, {"PHMLongNose", 0.8}}},
        {"Iris",
         FigureKind::Genesis8_1Female,
         {{"PBMUnevenBody", 0.7}, {"PBMBigFeet", 0.5}, {"PHMBigHead", 0.3}, {"PHMLongChin", 0.6}}}};
    return characters;
}

std::vector<FigureBone> MakeBones(FigureKind kind)
{
    const std::vector<JointPlaces> places = NeutralJoints(kind);
    std::vector<FigureBone> bones;
    for (std::size_t b = 0; b < places.size(); ++b) {
        const BodyBone& from = BodyBones()[b];
        FigureBone bone;
        bone.id = bone.label = kind == FigureKind::Genesis9 ? from.newName : from.oldName;
        bone.parent = from.parent;
        bone.center = places[b].center;
        bone.end = places[b].end;
        bone.orientation = from.orientation;
        bone.order = from.order;
        bone.inLegs = from.part == BonePart::Legs;
        bone.inArms = from.part == BonePart::Arms;
        bone.inHead = from.part == BonePart::Head;
        bones.push_back(std::move(bone));
    }
    return bones;
}

std::vector<JointShift> JointShifts(base::Span<const ShapePart> parts)
{
    std::vector<JointShift> shifts;
    for (const BodyBone& bone : BodyBones())
        shifts.push_back({Displacement(parts, bone.center), Displacement(parts, bone.end)});
    return shifts;
}

MorphParts MakeMorphParts(const SampleMorph& morph, base::Span<const Vec3f> canonical)
{
    MorphParts parts;
    parts.name = morph.name;
    parts.label = morph.label;
    parts.group = morph.group;
    parts.lowest = morph.lowest;
    parts.deltas.resize(canonical.size());
    for (std::size_t v = 0; v < canonical.size(); ++v)
        parts.deltas[v] = Displacement(morph.parts, canonical[v]);
    parts.joints = JointShifts(morph.parts);
    return parts;
}

void WriteMorphs(const FigureFiles& files, const std::vector<SampleMorph>& morphs,
                 base::Span<const Vec3f> canonical)
{
    tbb::parallel_for(std::size_t(0), morphs.size(),
                      [&](std::size_t i) { files.writeMorph(MakeMorphParts(morphs[i], canonical)); });
}

MorphParts MakeCloneParts(std::size_t which, const SampleTopology& newest)
{
    static constexpr FigureKind kinds[4] = {FigureKind::Genesis3Female, FigureKind::Genesis3Male,
                                            FigureKind::Genesis8Female, FigureKind::Genesis8Male};
    CloneShape clone = MakeClone(kinds[which], newest);
    const std::vector<JointPlaces> neutral = NeutralJoints(FigureKind::Genesis9);
    MorphParts parts;
    parts.name = cloneNames[which];
    parts.label = "Clone " + InfoOf(kinds[which]).label;
    parts.group = "/General/Clones";
    parts.deltas = std::move(clone.deltas);
    for (std::size_t b = 0; b < neutral.size(); ++b)
        parts.joints.push_back(
            {clone.joints[b].center - neutral[b].center, clone.joints[b].end - neutral[b].end});
    return parts;
}

/// The dials that set the base shape: they have no shape of their own and drive one of the head and one of
/// the body.
void WriteBaseDials(const FigureFiles& files)
{
    MorphParts control;
    control.group = "/General/Base";
    control.name = baseFeminineName;
    control.label = "Base Feminine";
    control.drives = {{"body_bs_BaseFeminine", 1.0}, {"head_bs_BaseFeminine", 1.0}};
    files.writeMorph(control);
    control.name = baseMasculineName;
    control.label = "Base Masculine";
    control.drives = {{"body_bs_BaseMasculine", 1.0}, {"head_bs_BaseMasculine", 1.0}};
    files.writeMorph(control);
}

FigureFiles WritePlainFigure(FigureKind kind, const SampleTopology& topology,
                             const std::filesystem::path& directory, base::FileSet& set)
{
    FigureParts parts;
    parts.neutral.topology = topology.canonical.topology;
    parts.neutral.positions = NeutralPositions(kind, topology.canonical.positions);
    parts.bones = MakeBones(kind);
    parts.weights = topology.weights;
    const geometry::Topology& surfaces = *topology.canonical.topology;
    parts.partNames.assign(surfaces.surfaceNames.begin() + 1, surfaces.surfaceNames.end());
    parts.facePart = surfaces.faceSurfaces;
    return FigureFiles(InfoOf(kind), parts, directory, set);
}

std::string CharacterPath(const SampleCharacter& character)
{
    return InfoOf(character.kind).peopleFolder + "/Characters/" + character.name + ".duf";
}

std::vector<std::filesystem::path> Folders(const std::filesystem::path& directory)
{
    std::vector<std::filesystem::path> all;
    for (const FigureKindInfo& kind : FigureKinds())
        for (std::filesystem::path& folder : FigureFolders(kind, directory))
            all.push_back(std::move(folder));
    for (const SampleCharacter& character : Characters())
        all.push_back((directory / CharacterPath(character).substr(1)).parent_path());
    return all;
}

void WriteSource(FigureKind kind, const SampleTopology& topology, const std::filesystem::path& directory,
                 base::FileSet& set)
{
    const FigureFiles files = WritePlainFigure(kind, topology, directory, set);
    WriteMorphs(files, SourceMorphs(), topology.canonical.positions);
    for (const SampleCharacter& character : Characters())
        if (character.kind == kind)
            files.writeCharacter(CharacterPath(character), character.name, character.dials);
}

void WriteTarget(const SampleTopology& topology, const std::filesystem::path& directory, base::FileSet& set)
{
    const FigureFiles files = WritePlainFigure(FigureKind::Genesis9, topology, directory, set);
    const std::vector<Vec3f>& canonical = topology.canonical.positions;
    WriteMorphs(files, TargetMorphs(), canonical);
    WriteBaseDials(files);
    tbb::parallel_for(std::size_t(0), std::size_t(4),
                      [&](std::size_t which) { files.writeMorph(MakeCloneParts(which, topology)); });
    std::vector<float> head(canonical.size());
    for (std::size_t v = 0; v < canonical.size(); ++v)
        head[v] = HeadInfluence(canonical[v]);
    WriteHeadSplit(head, directory, set);
}

/// What an exception of one side cancels of the other, loops within it, ends in silence and half done.
template <class Work>
auto Kept(Work work, std::exception_ptr& failure)
{
    return [work, &failure] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    };
}

} // namespace

void WriteSampleLibrary(const std::filesystem::path& directory,
                        const std::function<void(const std::string&)>& progress)
{
    const auto tell = [&](const std::string& text) {
        if (progress)
            progress(text);
    };
    tell("Shaping the bodies");
    SampleTopology older, newest;
    std::exception_ptr failures[2];
    tbb::parallel_invoke(Kept([&] { older = MakeSampleTopology(FigureKind::Genesis8Female); }, failures[0]),
                         Kept([&] { newest = MakeSampleTopology(FigureKind::Genesis9); }, failures[1]));
    for (const std::exception_ptr& failure : failures)
        if (failure)
            std::rethrow_exception(failure);
    base::FileSet set(Folders(directory));
    for (const FigureKindInfo& info : FigureKinds()) {
        tell("Writing " + info.label);
        if (info.kind == FigureKind::Genesis9)
            WriteTarget(newest, directory, set);
        else
            WriteSource(info.kind, older, directory, set);
    }
    base::ThrowIfCancelled(); // for the last time: all of it is put in place together
    set.commit();
}

} // namespace content
