// Joints that follow the shape of new morphs.
// SPDX-License-Identifier: MIT

#include "openhost/rig_adjustment.h"

#include "base/errors.h"
#include "dzbone.h"
#include "dzerclink.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "figure/pipeline.h"
#include "geometry/rig_fit.h"
#include "loading/channel_properties.h"
#include "openhost/diagnostics.h"
#include "openhost/shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include <fmt/format.h>

namespace openhost {

namespace {

using geometry::Vec3f;

const std::array<const char*, 2> members{"center_point", "end_point"};
const std::array<const char*, 3> axes{"x", "y", "z"};
constexpr double millimetresPerCentimetre = 10.0;
constexpr double smallestShift = 0.001; ///< cm; less is not worth a link
constexpr double coincident = 0.001;    ///< cm; one bone's end is the next one's beginning
constexpr float noticeable = 0.05f;     ///< cm; from there on a vertex counts as moved
constexpr float smallestClaim = 0.05f;  ///< of a point's flesh, moved by the parts

DzNumericProperty& Channel(const DzNode& node, const char* member, const char* axis)
{
    return *FindNodeChannel(node, std::string(member) + "/" + axis);
}

Vec3f Place(const DzNode& node, const char* member)
{
    Vec3f place;
    for (int axis = 0; axis < 3; ++axis)
        place[axis] =
            static_cast<float>(Channel(node, member, axes[static_cast<std::size_t>(axis)]).getDoubleValue());
    return place;
}

/// A centre or end of a joint, or of several where they are one.
struct SharedPoint {
    geometry::RigPoint point;
    std::vector<std::pair<DzBone*, const char*>> uses; ///< with the member of the channels
};

/// Its own joint, the parent's and the children's.
std::vector<std::uint32_t> JointsAround(const QList<DzBone*>& bones, const DzBone& bone)
{
    std::vector<std::uint32_t> joints;
    for (int i = 0; i < bones.size(); ++i)
        if (bones[i] == &bone || bones[i] == bone.getNodeParent() || bones[i]->getNodeParent() == &bone)
            joints.push_back(static_cast<std::uint32_t>(i));
    return joints;
}

std::vector<SharedPoint> PointsOf(const DzSkeleton& skeleton)
{
    std::vector<SharedPoint> points;
    for (DzBone* const bone : skeleton.bones())
        for (const char* const member : members) {
            const Vec3f place = Place(*bone, member);
            auto same = std::find_if(points.begin(), points.end(), [place](const SharedPoint& other) {
                return Length(other.point.position - place) <= coincident;
            });
            if (same == points.end())
                same = points.insert(
                    same, SharedPoint{geometry::RigPoint{place, JointsAround(skeleton.bones(), *bone)}, {}});
            same->uses.emplace_back(bone, member);
        }
    return points;
}

/// Adds all that the property depends on.
void CollectDrivers(const DzNumericProperty& property, std::set<const DzNumericProperty*>& drivers)
{
    for (int i = 0; i < property.getNumControllers(); ++i)
        if (const auto* const link = qobject_cast<const DzNumericController*>(property.getController(i)))
            for (int input = 0; input < link->getNumInputs(); ++input)
                if (drivers.insert(link->getInput(input)).second)
                    CollectDrivers(*link->getInput(input), drivers);
}

std::set<const DzNumericProperty*> DriversOfJoints(const DzSkeleton& skeleton)
{
    std::set<const DzNumericProperty*> drivers;
    for (const DzBone* const bone : skeleton.bones())
        for (const char* const member : members)
            for (const char* const axis : axes)
                CollectDrivers(Channel(*bone, member, axis), drivers);
    return drivers;
}

/// Whether the morph's dial, or one that turns it, moves joints as well.
bool SaysWhereJointsAre(const DzMorph& morph, const std::set<const DzNumericProperty*>& driversOfJoints)
{
    std::set<const DzNumericProperty*> dials{morph.getValueControl()};
    CollectDrivers(*morph.getValueControl(), dials);
    return std::any_of(dials.begin(), dials.end(),
                       [&](const auto* dial) { return driversOfJoints.count(dial) > 0; });
}

std::vector<DzMorph*> All(const NewMorphs& morphs)
{
    std::vector<DzMorph*> all = morphs.parts;
    if (morphs.whole)
        all.insert(all.begin(), morphs.whole);
    return all;
}

void RemoveJointLinks(const DzSkeleton& skeleton, const DzMorph& morph)
{
    for (const DzBone* const bone : skeleton.bones())
        for (const char* const member : members)
            for (const char* const axis : axes) {
                DzNumericProperty& channel = Channel(*bone, member, axis);
                for (int i = channel.getNumControllers() - 1; i >= 0; --i) {
                    auto* const link = qobject_cast<DzNumericController*>(channel.getController(i));
                    if (link && link->getNumInputs() == 1 && link->getInput(0) == morph.getValueControl())
                        channel.deleteController(link);
                }
            }
}

/// The figure's shapes, by what is known of its joints in them.
struct Shapes {
    geometry::PolygonMesh known; ///< where the joints are known
    std::vector<Vec3f> unknown;  ///< worn displacements that say nothing of them, cm
};

Shapes ShapesOf(const DzSkeleton& skeleton, const std::vector<DzMorph*>& fresh)
{
    const DzObject& object = *skeleton.getObject();
    const std::set<const DzNumericProperty*> drivers = DriversOfJoints(skeleton);
    Shapes shapes{object.pipeline().base(), {}};
    shapes.unknown.resize(shapes.known.vertexCount());
    for (int i = 0; i < object.getNumModifiers(); ++i) {
        const auto* const morph = qobject_cast<DzMorph*>(object.getModifier(i));
        if (!morph || std::find(fresh.begin(), fresh.end(), morph) != fresh.end())
            continue;
        const float value = morph->getValueControl()->getValue();
        if (value == 0.0f)
            continue;
        std::vector<Vec3f>& sum =
            SaysWhereJointsAre(*morph, drivers) ? shapes.known.positions : shapes.unknown;
        geometry::AddDeltas(sum, MorphDeltas(*morph), value);
    }
    return shapes;
}

std::vector<Vec3f> Dense(const DzMorph& morph, std::size_t vertexCount)
{
    return geometry::ToDense(MorphDeltas(morph), vertexCount);
}

void Add(std::vector<Vec3f>& sum, const std::vector<Vec3f>& more)
{
    for (std::size_t v = 0; v < sum.size(); ++v)
        sum[v] += more[v];
}

/// Displacements by vertex: of the shapes that say nothing of joints, of each morph, of all together.
struct Change {
    std::vector<std::vector<Vec3f>> parts; ///< the unknown shapes first
    std::vector<Vec3f> whole;
};

Change ChangeBy(const NewMorphs& morphs, std::vector<Vec3f> unknown)
{
    Change change;
    change.whole = unknown;
    for (const DzMorph* const morph : All(morphs))
        change.parts.push_back(Dense(*morph, unknown.size()));
    for (std::size_t i = 0; i < change.parts.size(); ++i)
        if (!morphs.whole || i == 0)
            Add(change.whole, change.parts[i]);
    change.parts.insert(change.parts.begin(), std::move(unknown));
    return change;
}

/// How much of a vertex hangs on the joints; all without weights.
float OwnFlesh(const geometry::SkinWeights& weights, std::size_t vertex,
               const std::vector<std::uint32_t>& joints)
{
    if (weights.joints.empty())
        return 1.0f;
    float own = 0.0f;
    for (std::uint32_t i = weights.offsets[vertex]; i < weights.offsets[vertex + 1]; ++i)
        if (std::find(joints.begin(), joints.end(), weights.joints[i]) != joints.end())
            own += weights.weights[i];
    return own;
}

/// What share of a point each part has: as much of the point's flesh as it moves. Where none moves a
/// noticeable part of it, the last has all.
std::vector<float> SharesOf(const geometry::PolygonMesh& mesh, const geometry::SkinWeights& weights,
                            const geometry::RigPoint& point, base::Span<const std::vector<Vec3f>> parts)
{
    std::vector<float> moved(parts.size());
    float all = 0.0f, claimed = 0.0f;
    for (std::size_t v = 0; v < mesh.vertexCount(); ++v) {
        const float own = OwnFlesh(weights, v, point.joints);
        if (own == 0.0f)
            continue;
        const float distance = 1.0f + Length(mesh.positions[v] - point.position);
        const float flesh = own / (distance * distance * distance);
        all += flesh;
        for (std::size_t i = 0; i < parts.size(); ++i)
            moved[i] += flesh * std::min(1.0f, Length(parts[i][v]) / noticeable);
    }
    for (const float one : moved)
        claimed += one;
    const bool isClaimed = claimed > smallestClaim * all;
    for (std::size_t i = 0; i < moved.size(); ++i)
        moved[i] = isClaimed ? moved[i] / claimed : i + 1 == moved.size() ? 1.0f : 0.0f;
    return moved;
}

/// Files hold them, and so do the shares of parts: hundredths of a thousandth of a centimetre will do.
double Rounded(float shift)
{
    return std::round(static_cast<double>(shift) * 1e5) / 1e5;
}

void Link(const SharedPoint& point, Vec3f shift, DzMorph& morph)
{
    for (const auto& [bone, member] : point.uses)
        for (int axis = 0; axis < 3; ++axis)
            if (std::abs(shift[axis]) > smallestShift)
                Channel(*bone, member, axes[static_cast<std::size_t>(axis)])
                    .insertController(new DzERCLink(morph.getValueControl(), Rounded(shift[axis]), 0.0));
}

AdjustedRig LinkAll(const std::vector<SharedPoint>& points, const std::vector<Vec3f>& shifts, DzMorph& morph)
{
    AdjustedRig adjusted{&morph};
    std::set<const DzBone*> moved;
    for (std::size_t p = 0; p < points.size(); ++p) {
        Link(points[p], shifts[p], morph);
        const double length = Length(shifts[p]);
        if (length <= smallestShift)
            continue;
        for (const auto& use : points[p].uses)
            moved.insert(use.first);
        if (length > adjusted.largestShiftCm) {
            adjusted.largestShiftCm = length;
            adjusted.furthest = points[p].uses.front().first->getLabel().toStdString();
        }
    }
    adjusted.joints = moved.size();
    return adjusted;
}

DzSkeleton& CheckedFigure(DzNode& figure, const NewMorphs& morphs)
{
    auto* const skeleton = qobject_cast<DzSkeleton*>(&figure);
    DzObject* const object = figure.getObject();
    if (!skeleton || !object || !object->pipeline().hasMesh() || skeleton->bones().isEmpty())
        throw base::Error(figure.getLabel().toStdString() + " has no joints that could follow a shape");
    for (const DzMorph* const morph : All(morphs))
        if (object->findModifierIndex(morph) < 0)
            throw base::Error(morph->getName().toStdString() + " is no morph of " +
                              figure.getLabel().toStdString());
    return *skeleton;
}

/// Of the shapes that say nothing of joints, what each morph makes up for.
void AddUnknown(std::vector<std::vector<Vec3f>>& shifts, const geometry::PolygonMesh& mesh,
                const geometry::SkinWeights& weights, const std::vector<SharedPoint>& points,
                const NewMorphs& morphs, const Change& change)
{
    const std::size_t firstPart = morphs.whole ? 2 : 1;
    const base::Span<const std::vector<Vec3f>> parts(change.parts.data() + firstPart, morphs.parts.size());
    for (std::size_t p = 0; p < points.size(); ++p) {
        const Vec3f unknown = shifts[0][p];
        if (morphs.whole)
            shifts[1][p] += unknown;
        if (unknown == Vec3f{})
            continue;
        const std::vector<float> shares = SharesOf(mesh, weights, points[p].point, parts);
        for (std::size_t i = 0; i < shares.size(); ++i)
            shifts[firstPart + i][p] += unknown * shares[i];
    }
}

/// By the morph that moves a joint furthest; nothing where none does.
void Tell(const DzNode& figure, const std::vector<AdjustedRig>& adjusted)
{
    const auto most = std::max_element(adjusted.begin(), adjusted.end(), [](const auto& a, const auto& b) {
        return a.largestShiftCm < b.largestShiftCm;
    });
    if (most == adjusted.end() || most->joints == 0)
        return;
    Report({base::Severity::Note,
            {},
            figure.getLabel().toStdString(),
            fmt::format("joints follow the new morphs, by up to {:.1f} mm ({})",
                        millimetresPerCentimetre * most->largestShiftCm, most->furthest)});
}

constexpr float dropped = 0.02f; ///< cm; shorter displacements may be missing from a morph

bool IsPartOf(const std::vector<Vec3f>& part, const std::vector<Vec3f>& whole)
{
    for (std::size_t v = 0; v < part.size(); ++v) {
        const float square = LengthSquared(whole[v]);
        const float share = square > 0.0f ? std::clamp(Dot(part[v], whole[v]) / square, 0.0f, 1.0f) : 0.0f;
        if (Length(part[v] - whole[v] * share) > dropped)
            return false;
    }
    return true;
}

} // namespace

NewMorphs WholeAndParts(const std::vector<DzMorph*>& morphs)
{
    std::size_t vertexCount = 0;
    for (const DzMorph* const morph : morphs)
        for (const std::uint32_t vertex : MorphDeltas(*morph).vertices)
            vertexCount = std::max<std::size_t>(vertexCount, vertex + 1);
    std::vector<std::vector<Vec3f>> displacements;
    for (const DzMorph* const morph : morphs)
        displacements.push_back(Dense(*morph, vertexCount));
    NewMorphs sorted{nullptr, morphs};
    for (std::size_t i = 0; i < morphs.size(); ++i)
        if (std::all_of(displacements.begin(), displacements.end(),
                        [&](const auto& other) { return IsPartOf(other, displacements[i]); })) {
            sorted.whole = morphs[i];
            sorted.parts.erase(sorted.parts.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        }
    return sorted;
}

std::vector<AdjustedRig> AdjustRig(DzNode& figure, const NewMorphs& morphs)
{
    const DzSkeleton& skeleton = CheckedFigure(figure, morphs);
    const std::vector<DzMorph*> all = All(morphs);
    for (const DzMorph* const morph : all)
        RemoveJointLinks(skeleton, *morph);

    Shapes shapes = ShapesOf(skeleton, all);
    const Change change = ChangeBy(morphs, std::move(shapes.unknown));
    const std::vector<SharedPoint> points = PointsOf(skeleton);
    std::vector<geometry::RigPoint> places;
    for (const SharedPoint& point : points)
        places.push_back(point.point);
    const geometry::SkinWeights* const skin = figure.getObject()->pipeline().skinPose().weights;
    const geometry::SkinWeights weights = skin ? *skin : geometry::SkinWeights();
    std::vector<std::vector<Vec3f>> shifts =
        geometry::FitRig(shapes.known.view(), weights, places, change.whole, change.parts);
    AddUnknown(shifts, shapes.known, weights, points, morphs, change);

    std::vector<AdjustedRig> adjusted;
    for (std::size_t i = 0; i < all.size(); ++i)
        adjusted.push_back(LinkAll(points, shifts[i + 1], *all[i]));
    Tell(figure, adjusted);
    return adjusted;
}

} // namespace openhost
