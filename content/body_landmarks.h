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
constexpr Vec3f eye{3.05f, 158.6f, 6.6f};

/// Thumb, index, mid, ring, pinky.
constexpr int fingerCount = 5;
/// Root, two knuckles and tip of each finger.
using FingerChain = std::array<Vec3f, 4>;
const std::array<FingerChain, fingerCount>& Fingers();
/// Radii at the places of a chain.
const std::array<std::array<float, 4>, fingerCount>& FingerRadii();

/// A place given along the hand, across it towards the thumb, and towards the palm's side.
Vec3f HandPoint(float along, float across, float palmward);

} // namespace content::landmarks
