// Where the canonical body's joints lie.
// SPDX-License-Identifier: MIT

#pragma once

#include "distance_field.h"

#include <array>

/// Places on the canonical body, left side, cm.
namespace content::landmarks {

constexpr Vec3f hipCenter{0.0f, 95.0f, -0.5f};
constexpr Vec3f thigh{8.8f, 89.5f, -0.5f};
constexpr Vec3f knee{9.3f, 48.0f, 0.3f};
constexpr Vec3f ankle{9.8f, 8.0f, -3.0f};
constexpr Vec3f toes{10.9f, 2.2f, 10.0f};
constexpr Vec3f toesEnd{11.3f, 1.4f, 17.0f};
constexpr Vec3f collar{3.0f, 139.0f, -1.5f};
constexpr Vec3f shoulder{17.0f, 137.6f, -2.6f};
constexpr Vec3f elbow{37.2f, 117.2f, -3.6f};
constexpr Vec3f wrist{54.6f, 99.4f, -1.2f};
constexpr Vec3f neck{0.0f, 141.5f, -3.2f};
constexpr Vec3f head{0.0f, 152.0f, -1.0f};
constexpr Vec3f headEnd{0.0f, 170.0f, -1.0f};
constexpr Vec3f navel{0.0f, 103.4f, 9.15f};
constexpr Vec3f eye{3.1f, 158.5f, 5.75f}; ///< the ball's centre
constexpr float eyeRadius = 1.2f;
constexpr float socketGap = 0.04f;                              ///< between the ball and what is around it
constexpr float lidThickness = 0.2f;                            ///< between the ball and the lid's outside
constexpr float lidInnerCorner = 1.68f, lidOuterCorner = 4.58f; ///< along x
constexpr float mouthHalfWidth = 2.45f;
constexpr float toothOverlap = 0.42f; ///< where the rows of teeth meet, below the lips' line
constexpr float lipGap = 0.015f;      ///< half of what the closed lips leave between them

constexpr Vec3f pocketCenter{0.0f, 152.0f, 5.8f}, pocketRadii{2.7f, 1.75f, 2.5f}; ///< behind the lips
constexpr float pocketBack = 3.7f;

/// The lids' edges over the left eye, seen from the front.
struct LidLine {
    float middle;             ///< height of the line from corner to corner
    float up, down;           ///< the edges above and below it, negative beyond the corners
    float upSlope, downSlope; ///< of `up` and `down` along x
};
LidLine LidLineAt(float x);

/// The height at which the lips meet; the left half's, x >= 0.
float LipLine(float x);

/// Thumb, index, mid, ring, pinky.
constexpr int fingerCount = 5;
/// Root, two knuckles and tip of each finger.
using FingerChain = std::array<Vec3f, 4>;
const std::array<FingerChain, fingerCount>& Fingers();
/// Radii at the places of a chain.
const std::array<std::array<float, 4>, fingerCount>& FingerRadii();

/// A toe's cone; big one first.
struct Toe {
    Vec3f root, tip;
    float rootRadius, tipRadius;
};
constexpr int toeCount = 5;
const std::array<Toe, toeCount>& Toes();

/// A place given along the hand, across it towards the thumb, and towards the palm's side.
Vec3f HandPoint(float along, float across, float palmward);

} // namespace content::landmarks
