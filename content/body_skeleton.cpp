// The canonical body's bones.
// SPDX-License-Identifier: MIT

#include "body_skeleton.h"

#include "body_landmarks.h"

namespace content {

namespace {

using namespace landmarks;
using geometry::RotationOrder;

class SkeletonBuilder {
public:
    std::vector<BodyBone> bones;

    int add(const char* newName, const char* oldName, int parent, Vec3f center, Vec3f end, BonePart part,
            float radius, RotationOrder order = RotationOrder::YZX)
    {
        BodyBone bone;
        bone.newName = newName;
        bone.oldName = oldName;
        bone.parent = parent;
        bone.center = bone.reachStart = center;
        bone.end = bone.reachEnd = end;
        bone.part = part;
        bone.radius = radius;
        bone.order = order;
        bones.push_back(bone);
        return static_cast<int>(bones.size()) - 1;
    }

    /// A bone on the left or right; the names given without their side.
    int addSided(int side, const std::string& newName, const std::string& oldName, int parent, Vec3f center,
                 Vec3f end, BonePart part, float radius, RotationOrder order)
    {
        const bool left = side > 0;
        const int index =
            add(((left ? "l_" : "r_") + newName).c_str(), ((left ? "l" : "r") + oldName).c_str(), parent,
                left ? center : Mirrored(center), left ? end : Mirrored(end), part, radius, order);
        bones[index].side = side;
        return index;
    }

    /// Turns the bone's X axis into its direction (away from it on the right), within the frontal plane.
    void orientAlong(int index)
    {
        BodyBone& bone = bones[index];
        const Vec3f axis = bone.end - bone.center;
        const float sign = bone.side < 0 ? -1.0f : 1.0f;
        bone.orientation.z = std::atan2(axis.y * sign, axis.x * sign) * 57.29578f;
    }
};

int AddSpine(SkeletonBuilder& builder)
{
    const int hip = builder.add("hip", "hip", -1, hipCenter, {0.0f, 101.0f, -0.5f}, BonePart::Torso, 11.0f);
    const int pelvis = builder.add("pelvis", "pelvis", hip, {0.0f, 97.0f, -0.5f}, {0.0f, 84.0f, -0.5f},
                                   BonePart::Torso, 11.0f);
    builder.bones[hip].reachStart = {-4.0f, 98.0f, -1.0f};
    builder.bones[hip].reachEnd = {4.0f, 98.0f, -1.0f};
    builder.bones[pelvis].reachStart = {-7.0f, 90.5f, -1.0f};
    builder.bones[pelvis].reachEnd = {7.0f, 90.5f, -1.0f};
    static const struct {
        const char *newName, *oldName;
        float low, high, radius;
    } vertebrae[4] = {{"spine1", "abdomenLower", 101.0f, 109.0f, 11.0f},
                      {"spine2", "abdomenUpper", 109.0f, 117.0f, 11.0f},
                      {"spine3", "chestLower", 117.0f, 127.0f, 12.0f},
                      {"spine4", "chestUpper", 127.0f, 141.5f, 12.0f}};
    int parent = hip;
    for (const auto& vertebra : vertebrae)
        parent = builder.add(vertebra.newName, vertebra.oldName, parent, {0.0f, vertebra.low, -2.0f},
                             {0.0f, vertebra.high, -2.5f}, BonePart::Torso, vertebra.radius);
    builder.bones[parent].reachEnd = {0.0f, 135.0f, -2.5f};
    return parent;
}

void AddHead(SkeletonBuilder& builder, int chest)
{
    const Vec3f middle = Mix(neck, head, 0.5f);
    const int lower = builder.add("neck1", "neckLower", chest, neck, middle, BonePart::Head, 5.8f);
    const int upper = builder.add("neck2", "neckUpper", lower, middle, head, BonePart::Head, 5.4f);
    const int skull = builder.add("head", "head", upper, head, headEnd, BonePart::Head, 8.0f);
    builder.bones[skull].reachStart = {0.0f, 153.5f, 2.0f};
    builder.bones[skull].reachEnd = {0.0f, 163.0f, 0.0f};
}

void AddArm(SkeletonBuilder& builder, int side, int chest)
{
    const int first = static_cast<int>(builder.bones.size());
    const int clavicle = builder.addSided(side, "shoulder", "Collar", chest, collar, shoulder, BonePart::Arms,
                                          7.0f, RotationOrder::XYZ);
    builder.bones[clavicle].reachStart.x = 8.0f * static_cast<float>(side);
    builder.bones[clavicle].reachEnd.x = 14.5f * static_cast<float>(side);
    const int upper = builder.addSided(side, "upperarm", "ShldrBend", clavicle, shoulder, elbow,
                                       BonePart::Arms, 5.0f, RotationOrder::XYZ);
    const int fore = builder.addSided(side, "forearm", "ForearmBend", upper, elbow, wrist, BonePart::Arms,
                                      4.0f, RotationOrder::XYZ);
    const int hand = builder.addSided(side, "hand", "Hand", fore, wrist, HandPoint(9.0f, 0.5f, 0.0f),
                                      BonePart::Arms, 3.0f, RotationOrder::XYZ);
    const Vec3f palmEnd = HandPoint(6.5f, 0.2f, 0.0f);
    builder.bones[hand].reachEnd = side > 0 ? palmEnd : Mirrored(palmEnd);
    static const char* const names[fingerCount] = {"thumb", "index", "mid", "ring", "pinky"};
    static const char* const oldNames[fingerCount] = {"Thumb", "Index", "Mid", "Ring", "Pinky"};
    for (int f = 0; f < fingerCount; ++f) {
        int parent = hand;
        for (int i = 0; i < 3; ++i) {
            const std::string number = std::to_string(i + 1);
            parent = builder.addSided(side, names[f] + number, oldNames[f] + number, parent, Fingers()[f][i],
                                      Fingers()[f][i + 1], BonePart::Arms, FingerRadii()[f][i] * 1.05f,
                                      RotationOrder::XYZ);
        }
    }
    for (int i = first; i < static_cast<int>(builder.bones.size()); ++i)
        builder.orientAlong(i);
}

void AddLeg(SkeletonBuilder& builder, int side, int pelvis)
{
    const int upper = builder.addSided(side, "thigh", "ThighBend", pelvis, thigh, knee, BonePart::Legs, 8.3f,
                                       RotationOrder::YZX);
    builder.bones[upper].reachStart.y = 84.0f;
    const int lower =
        builder.addSided(side, "shin", "Shin", upper, knee, ankle, BonePart::Legs, 5.0f, RotationOrder::YZX);
    const int foot =
        builder.addSided(side, "foot", "Foot", lower, ankle, toes, BonePart::Legs, 3.6f, RotationOrder::XYZ);
    builder.bones[foot].reachStart.y = 4.0f;
    builder.addSided(side, "toes", "Toe", foot, toes, toesEnd, BonePart::Legs, 3.0f, RotationOrder::XYZ);
}

} // namespace

const std::vector<BodyBone>& BodyBones()
{
    static const std::vector<BodyBone> bones = [] {
        SkeletonBuilder builder;
        const int chest = AddSpine(builder);
        AddHead(builder, chest);
        for (const int side : {1, -1}) {
            AddLeg(builder, side, 1);
            AddArm(builder, side, chest);
        }
        return builder.bones;
    }();
    return bones;
}

} // namespace content
