// The sample figures' neutral shapes and the clones between them.
// SPDX-License-Identifier: MIT

#include "sample_figures.h"

#include "body_mesher.h"
#include "body_nails.h"
#include "loose_parts.h"

#include <algorithm>
#include <cassert>

namespace content {

using base::Span;
using namespace shapes;

namespace {

/// Gives the plates a surface of their own.
void MarkNails(geometry::PolygonMesh& mesh)
{
    auto topology = std::make_shared<geometry::Topology>(*mesh.topology);
    const auto nails = static_cast<std::uint32_t>(topology->surfaceNames.size());
    topology->surfaceNames.emplace_back("Nails");
    for (std::size_t f = 0; f < topology->faceCount(); ++f) {
        const base::Span<const std::uint32_t> face = topology->face(f);
        if (std::all_of(face.begin(), face.end(),
                        [&](std::uint32_t v) { return IsOnNail(mesh.positions[v]); }))
            topology->faceSurfaces[f] = nails;
    }
    mesh.topology = std::move(topology);
}

} // namespace

SampleTopology MakeSampleTopology(FigureKind kind)
{
    SampleTopology topology;
    const bool isNewest = kind == FigureKind::Genesis9;
    topology.body = MeshBody(isNewest ? NewGenerationRecipe() : OldGenerationRecipe());
    LooseDetail detail;
    if (isNewest)
        detail = {28, 5, 10, 4, 6};
    topology.canonical = Together(topology.body, MakeLooseParts(detail));
    MarkNails(topology.canonical);
    topology.weights = BodyWeights(topology.canonical.positions);
    return topology;
}

const std::vector<ShapePart>& NeutralParts(FigureKind kind)
{
    static const std::vector<ShapePart> female8{
        {Taller, -0.12f},      {LegsSpread, 1.0f},     {BroaderShoulders, -0.7f}, {WiderHips, 0.9f},
        {NarrowerWaist, 0.9f}, {FullerBreasts, 0.95f}, {FullerSeat, 0.6f},        {MoreMuscle, -0.45f},
        {ThickerNeck, -0.8f},  {WiderJaw, -0.45f},     {HeavierBrow, -0.6f},      {LargerEyes, 0.25f},
        {FullerLips, 0.45f},   {LongerNose, -0.2f},    {LargerHands, -0.35f},     {FullerCheeks, 0.6f}};
    static const std::vector<ShapePart> male8{
        {Taller, 0.5f},         {LegsSpread, 1.0f},      {BroaderShoulders, 1.0f}, {WiderHips, -0.5f},
        {NarrowerWaist, -0.3f}, {FullerBreasts, -0.15f}, {MoreMuscle, 0.7f},       {ThickerNeck, 0.7f},
        {WiderJaw, 0.6f},       {LongerChin, 0.4f},      {HeavierBrow, 0.6f},      {LargerHands, 0.3f},
        {LargerFeet, 0.3f}};
    static const std::vector<ShapePart> female3{
        {Taller, -0.2f},       {LongerLegs, 0.3f},     {BroaderShoulders, -0.5f}, {WiderHips, 0.6f},
        {NarrowerWaist, 1.2f}, {FullerBreasts, 0.75f}, {FullerSeat, 0.8f},        {MoreMuscle, -0.3f},
        {ThickerNeck, -0.6f},  {WiderJaw, -0.3f},      {HeavierBrow, -0.3f},      {LargerEyes, 0.4f},
        {FullerLips, 0.7f},    {NarrowerFace, 0.4f},   {LargerHands, -0.2f},      {FullerCheeks, 0.4f}};
    static const std::vector<ShapePart> male3{
        {Taller, 0.4f},      {LongerLegs, -0.2f}, {BroaderShoulders, 1.3f}, {WiderHips, -0.3f},
        {MoreMuscle, 0.5f},  {ThickerNeck, 0.9f}, {WiderJaw, 0.8f},         {LongerChin, 0.2f},
        {HeavierBrow, 0.8f}, {WiderNose, 0.4f},   {LargerHands, 0.4f},      {FullerBreasts, -0.1f}};
    static const std::vector<ShapePart> newest{{Taller, 0.15f}, {MoreMuscle, -0.15f}, {FullerLips, 0.2f}};
    switch (kind) {
    case FigureKind::Genesis3Female:
        return female3;
    case FigureKind::Genesis3Male:
        return male3;
    case FigureKind::Genesis8Female:
    case FigureKind::Genesis8_1Female:
        return female8;
    case FigureKind::Genesis8Male:
    case FigureKind::Genesis8_1Male:
        return male8;
    case FigureKind::Genesis9:
        break;
    }
    return newest;
}

Vec3f NeutralPlace(FigureKind kind, Vec3f canonical)
{
    return canonical + Displacement(NeutralParts(kind), canonical);
}

std::vector<Vec3f> NeutralPositions(FigureKind kind, base::Span<const Vec3f> canonical)
{
    std::vector<Vec3f> positions(canonical.size());
    for (std::size_t v = 0; v < canonical.size(); ++v)
        positions[v] = NeutralPlace(kind, canonical[v]);
    return positions;
}

std::vector<JointPlaces> NeutralJoints(FigureKind kind)
{
    std::vector<JointPlaces> places;
    for (const BodyBone& bone : BodyBones())
        places.push_back({NeutralPlace(kind, bone.center), NeutralPlace(kind, bone.end)});
    return places;
}

Vec3f CloneFlaw(Vec3f p)
{
    return Vec3f{std::sin(p.y / 9.0f + 0.7f) * std::cos(p.x / 8.0f), std::sin(p.x / 7.0f - p.z / 9.0f + 0.4f),
                 std::cos(p.y / 11.0f - 0.3f) * std::cos(p.x / 10.0f + 0.5f)} *
           0.05f;
}

std::vector<geometry::Joint> PosedJoints(const std::vector<JointPlaces>& places, double thighDegrees)
{
    const std::vector<BodyBone>& bones = BodyBones();
    assert(places.size() == bones.size());
    std::vector<geometry::Joint> joints(bones.size());
    for (std::size_t b = 0; b < bones.size(); ++b) {
        joints[b].parent = bones[b].parent;
        joints[b].center = geometry::ToEigen(places[b].center);
        joints[b].orientation = geometry::ToEigen(bones[b].orientation);
        joints[b].order = bones[b].order;
        joints[b].inheritsScale = false;
        if (bones[b].newName == "l_thigh")
            joints[b].rotation.z() = thighDegrees;
        if (bones[b].newName == "r_thigh")
            joints[b].rotation.z() = -thighDegrees;
    }
    return joints;
}

namespace {

bool StandsWithLegsApart(FigureKind kind)
{
    return kind != FigureKind::Genesis9 && kind != FigureKind::Genesis3Female &&
           kind != FigureKind::Genesis3Male;
}

/// The joint of the thigh that a bone hangs on, or -1.
int ThighAbove(std::size_t bone)
{
    const std::vector<BodyBone>& bones = BodyBones();
    for (int b = static_cast<int>(bone); b >= 0; b = bones[b].parent)
        if (bones[b].newName == "l_thigh" || bones[b].newName == "r_thigh")
            return b;
    return -1;
}

/// Where the joints must rest so that turning the thighs outwards brings them to the given places.
std::vector<JointPlaces> WithThighsTurnedBack(std::vector<JointPlaces> places, double degrees)
{
    for (std::size_t b = 0; b < places.size(); ++b) {
        const int thigh = ThighAbove(b);
        if (thigh < 0)
            continue;
        const Eigen::Vector3d center = geometry::ToEigen(places[thigh].center);
        const double angle = BodyBones()[thigh].side > 0 ? -degrees : degrees;
        const Eigen::Quaterniond turn =
            geometry::EulerRotation({0.0, 0.0, angle}, geometry::RotationOrder::XYZ);
        for (Vec3f* place : {&places[b].center, &places[b].end})
            *place = geometry::FromEigen(center + turn * (geometry::ToEigen(*place) - center));
    }
    return places;
}

} // namespace

CloneShape MakeClone(FigureKind kind, const SampleTopology& newest)
{
    const std::vector<Vec3f>& canonical = newest.canonical.positions;
    std::vector<Vec3f> shape = NeutralPositions(kind, canonical);
    for (std::size_t v = 0; v < shape.size(); ++v)
        shape[v] += CloneFlaw(canonical[v]);
    CloneShape clone;
    clone.joints = NeutralJoints(kind);
    if (StandsWithLegsApart(kind)) {
        clone.joints = WithThighsTurnedBack(std::move(clone.joints), spreadDegrees);
        const auto poses = geometry::EvaluateSkeleton(PosedJoints(clone.joints, spreadDegrees));
        const auto weights = geometry::MakeSkinWeights(canonical.size(), newest.weights);
        shape = geometry::Unskin(shape, weights, poses, geometry::SkinMode::DualQuaternion);
    }
    clone.deltas = NeutralPositions(FigureKind::Genesis9, canonical);
    for (std::size_t v = 0; v < shape.size(); ++v)
        clone.deltas[v] = shape[v] - clone.deltas[v];
    return clone;
}

} // namespace content
