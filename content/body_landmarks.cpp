// Where the canonical body's joints lie.
// SPDX-License-Identifier: MIT

#include "body_landmarks.h"

namespace content::landmarks {

namespace {

const Vec3f handAlong = Normalized(Vec3f{0.72f, -0.69f, 0.06f});
const Vec3f handAcross = Normalized(Cross(Cross(handAlong, Vec3f{0.0f, 0.0f, 1.0f}), handAlong));
const Vec3f handPalmward = Normalized(Cross(handAcross, handAlong)) * -1.0f;

struct FingerMeasure {
    Vec3f root;          ///< along, across, palmward
    float spreadDegrees; ///< towards the thumb
    std::array<float, 3> lengths;
    std::array<float, 3> curlDegrees;
    std::array<float, 4> radii;
};

const std::array<FingerMeasure, fingerCount>& Measures()
{
    static const std::array<FingerMeasure, fingerCount> measures{{
        {{1.9f, 2.0f, 0.9f}, 47.0f, {4.3f, 3.2f, 2.5f}, {14.0f, 10.0f, 8.0f}, {1.45f, 1.15f, 1.0f, 0.78f}},
        {{8.7f, 3.25f, 0.0f}, 9.5f, {3.9f, 2.4f, 1.8f}, {4.0f, 12.0f, 18.0f}, {1.0f, 0.86f, 0.76f, 0.62f}},
        {{9.0f, 1.05f, -0.2f}, 2.5f, {4.3f, 2.7f, 1.9f}, {4.0f, 12.0f, 18.0f}, {1.02f, 0.88f, 0.78f, 0.64f}},
        {{8.6f, -1.1f, -0.1f}, -4.5f, {3.9f, 2.5f, 1.9f}, {5.0f, 13.0f, 19.0f}, {0.98f, 0.83f, 0.74f, 0.61f}},
        {{7.8f, -3.1f, 0.2f}, -13.0f, {3.2f, 1.9f, 1.6f}, {6.0f, 14.0f, 20.0f}, {0.88f, 0.74f, 0.65f, 0.54f}},
    }};
    return measures;
}

FingerChain MakeChain(const FingerMeasure& measure)
{
    constexpr float degree = 0.017453293f;
    FingerChain chain;
    Vec3f local = measure.root;
    chain[0] = HandPoint(local.x, local.y, local.z);
    float curl = 0.0f;
    for (int i = 0; i < 3; ++i) {
        curl += measure.curlDegrees[i] * 0.6f;
        const float flat = std::cos(curl * degree), spread = measure.spreadDegrees * degree;
        local += Vec3f{flat * std::cos(spread), flat * std::sin(spread), std::sin(curl * degree)} *
                 measure.lengths[i];
        chain[i + 1] = HandPoint(local.x, local.y, local.z);
    }
    return chain;
}

} // namespace

LidLine LidLineAt(float x)
{
    constexpr float up = 0.6f, down = 0.42f;
    constexpr float slope = 1.0f / (lidOuterCorner - lidInnerCorner);
    const float u = (x - lidInnerCorner) * slope;
    LidLine line;
    // The outer corner stands higher; the upper edge is highest on the nose's side, the lower one lowest
    // opposite.
    line.middle = 158.3f + 0.22f * u;
    const float arch = 4.0f * u * (1.0f - u), archSlope = 4.0f * (1.0f - 2.0f * u) * slope;
    const float inward = 1.15f - 0.3f * u, outward = 0.85f + 0.3f * u;
    line.up = up * arch * inward;
    line.down = down * arch * outward;
    line.upSlope = up * (archSlope * inward - 0.3f * slope * arch);
    line.downSlope = down * (archSlope * outward + 0.3f * slope * arch);
    return line;
}

float LipLine(float x)
{
    // The middle hangs over the lower lip; the corners point down a little.
    const float t = x / mouthHalfWidth;
    return 151.93f + 0.1f * t * t - 0.12f * t * t * t * t - 0.04f * std::exp(-9.0f * t * t);
}

Vec3f HandPoint(float along, float across, float palmward)
{
    return wrist + handAlong * along + handAcross * across + handPalmward * palmward;
}

const std::array<FingerChain, fingerCount>& Fingers()
{
    static const std::array<FingerChain, fingerCount> fingers = [] {
        std::array<FingerChain, fingerCount> result;
        for (int f = 0; f < fingerCount; ++f)
            result[f] = MakeChain(Measures()[f]);
        return result;
    }();
    return fingers;
}

const std::array<std::array<float, 4>, fingerCount>& FingerRadii()
{
    static const std::array<std::array<float, 4>, fingerCount> radii = [] {
        std::array<std::array<float, 4>, fingerCount> result;
        for (int f = 0; f < fingerCount; ++f)
            result[f] = Measures()[f].radii;
        return result;
    }();
    return radii;
}

const std::array<Toe, toeCount>& Toes()
{
    static const std::array<Toe, toeCount> measures{
        {{{8.2f, 1.9f, 10.2f}, {8.6f, 1.25f, 16.6f}, 1.55f, 1.22f},
         {{10.4f, 1.8f, 10.6f}, {11.0f, 1.0f, 16.4f}, 1.1f, 0.98f},
         {{12.0f, 1.7f, 10.0f}, {12.8f, 0.95f, 15.4f}, 1.05f, 0.92f},
         {{13.4f, 1.6f, 9.0f}, {14.4f, 0.9f, 14.0f}, 1.05f, 0.87f},
         {{14.6f, 1.5f, 7.6f}, {15.8f, 0.85f, 12.2f}, 1.05f, 0.82f}}};
    return measures;
}

} // namespace content::landmarks
