// Where the rings of eyes, mouth, ears, nails and the navel lie.
// SPDX-License-Identifier: MIT

#include "body_face.h"
#include "body_landmarks.h"
#include "body_loops.h"
#include "body_nails.h"
#include "body_solid.h"

#include <array>

namespace content {

using namespace landmarks;

namespace {

constexpr float pi = 3.14159265f;

/// The first place on the open body that is met on the way from one place to another.
Vec3f FirstMet(Vec3f from, Vec3f to)
{
    const Vec3f way = Normalized(to - from);
    const float end = Length(to - from);
    float t = 0.0f;
    for (int step = 0; step < 300 && t < end; ++step) {
        const float distance = BodyDistance(from + way * t);
        if (distance < 1e-3f)
            break;
        t += std::max(0.6f * distance, 2e-3f);
    }
    return from + way * t;
}

Vec3f FromFront(float x, float y)
{
    return FirstMet({x, y, 12.5f}, {x, y, 3.0f});
}

float EllipseDistance(float x, float y, float radiusX, float radiusY)
{
    return std::sqrt(x * x / (radiusX * radiusX) + y * y / (radiusY * radiusY)) - 1.0f;
}

float TurnOfAngle(float x, float y)
{
    const float turn = std::atan2(y, x) / (2.0f * pi);
    return turn < 0.0f ? turn + 1.0f : turn;
}

struct Place2 {
    float x, y;
};

Place2 Between(Place2 a, Place2 b, float t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

// --- Eye ---

constexpr Place2 eyeMiddle{3.13f, 158.44f};

/// The lids' edge at equal steps of its length; turn 0 is the outer corner, 0.5 the inner one.
Place2 LidEdge(float turn)
{
    constexpr int count = 128;
    static const std::array<Place2, count + 1> edge = [] {
        std::array<Place2, 8 * count + 1> fine;
        std::array<float, 8 * count + 1> length{};
        for (int i = 0; i <= 8 * count; ++i) {
            const float t = static_cast<float>(i) / (8 * count),
                        along = t < 0.5f ? 2.0f * t : 2.0f - 2.0f * t;
            const float x = lidOuterCorner + (lidInnerCorner - lidOuterCorner) * along;
            const LidLine line = LidLineAt(x);
            fine[i] = {x, line.middle + (t < 0.5f ? line.up : -line.down)};
            if (i > 0)
                length[i] = length[i - 1] + std::hypot(fine[i].x - fine[i - 1].x, fine[i].y - fine[i - 1].y);
        }
        // Each lid has one half of the turn.
        std::array<Place2, count + 1> even;
        const float half = length[4 * count], whole = length[8 * count];
        for (int i = 0, at = 0; i <= count; ++i) {
            const float t = static_cast<float>(i) / count;
            const float wanted = t < 0.5f ? 2.0f * t * half : half + (2.0f * t - 1.0f) * (whole - half);
            while (at < 8 * count && length[at] < wanted)
                ++at;
            even[i] = fine[at];
        }
        return even;
    }();
    const float at = std::clamp(turn, 0.0f, 1.0f) * count;
    const int i = std::min(static_cast<int>(at), count - 1);
    return Between(edge[i], edge[i + 1], at - static_cast<float>(i));
}

Place2 EyeContour(float turn, float spread)
{
    const Place2 wide{eyeMiddle.x + 2.15f * std::cos(2.0f * pi * turn),
                      eyeMiddle.y + 1.6f * std::sin(2.0f * pi * turn)};
    return Between(LidEdge(turn), wide, spread);
}

/// On the socket's wall, as far from the line of sight as the lid's edge and `share` of what is left to the
/// back.
Vec3f SocketPlace(float turn, float share)
{
    const Place2 edge = LidEdge(turn);
    const float x = edge.x - eye.x, y = edge.y - eye.y, radius = eyeRadius + socketGap;
    const float start = std::asin(std::min(std::hypot(x, y) / radius, 0.98f));
    const float angle = start + (2.75f - start) * share;
    const float around = std::atan2(y, x), even = 2.0f * pi * turn;
    const float way = around + std::remainder(even - around, 2.0f * pi) * share;
    return eye +
           Vec3f{std::sin(angle) * std::cos(way), std::sin(angle) * std::sin(way), std::cos(angle)} * radius;
}

Vec3f LidMargin(float turn, float depth)
{
    const Place2 edge = EyeContour(turn, 0.0f);
    const Vec3f outer = FromFront(EyeContour(turn, 0.03f).x, EyeContour(turn, 0.03f).y);
    const Vec3f inner = SocketPlace(turn, 0.0f);
    return Mix(Vec3f{edge.x, edge.y, outer.z}, inner, depth);
}

// --- Mouth ---

constexpr Place2 mouthMiddle{0.0f, 151.9f};

/// Turn 0 is the left corner, then along the upper lip.
Place2 LipEdge(float turn)
{
    const float along = turn < 0.5f ? 2.0f * turn : 2.0f - 2.0f * turn;
    // Closer together towards the corners.
    const float x = mouthHalfWidth * (0.55f * (1.0f - 2.0f * along) + 0.45f * std::cos(pi * along));
    return {x, LipLine(std::abs(x)) + (turn < 0.5f ? lipGap : -lipGap)};
}

Place2 LipBorder(float turn)
{
    const Place2 edge = LipEdge(turn);
    const float t = std::abs(edge.x) / mouthHalfWidth, arch = 1.0f - t * t;
    const float peak = 0.12f * std::exp(-10.0f * (t - 0.25f) * (t - 0.25f));
    return {edge.x * 1.06f, edge.y + (turn < 0.5f ? 0.72f * arch + peak : -1.0f * arch)};
}

Place2 MouthContour(float turn, float spread)
{
    const Place2 wide{mouthMiddle.x + 3.5f * std::cos(2.0f * pi * turn),
                      mouthMiddle.y + 1.9f * std::sin(2.0f * pi * turn)};
    return Between(LipBorder(turn), wide, spread);
}

Vec3f LipPlace(float turn, float inward)
{
    const Place2 place = Between(LipBorder(turn), LipEdge(turn), inward);
    return FromFront(place.x, place.y);
}

Vec3f BetweenLips(float turn, float depth)
{
    const Place2 edge = LipEdge(turn);
    // The teeth's arch: the lips are as thick everywhere.
    return {edge.x * (1.0f - 0.02f * depth), edge.y, 8.75f - 0.13f * edge.x * edge.x - depth};
}

Vec3f PocketPlace(float turn, float share)
{
    const Vec3f exit = BetweenLips(turn, 0.6f);
    const float z = exit.z + (pocketBack - exit.z) * share, low = (z - pocketCenter.z) / pocketRadii.z;
    const float width = std::sqrt(std::max(1.0f - low * low, 0.02f));
    const float angle = 2.0f * pi * turn;
    return {pocketRadii.x * width * std::cos(angle), pocketCenter.y + pocketRadii.y * width * std::sin(angle),
            z};
}

// --- Ear ---

/// The shell's outline in the ear's own plane; turn 0 is the back, 0.25 the top, 0.5 the face's side.
Place2 EarOutline(float turn)
{
    const float angle = 2.0f * pi * turn, c = std::cos(angle), s = std::sin(angle);
    // Narrower towards the lobe.
    const float width = 1.75f - 0.6f * SmoothStep(0.3f, -1.0f, s);
    return {0.15f + width * c - 0.35f * SmoothStep(0.0f, -1.0f, s), 0.1f + 3.1f * s};
}

/// Beside the shell's wall, which falls off steeply but towards the face.
Vec3f BesideEarsWall(float turn, float spread, float height)
{
    const Place2 outline = EarOutline(turn);
    const float front = SmoothStep(0.34f, 0.2f, std::abs(turn - 0.52f));
    // The lobe stands farther off the skin behind it.
    const float lobe = 1.0f + 0.8f * SmoothStep(0.5f, -2.5f, outline.y);
    return FromEar({outline.x * spread, outline.y * spread,
                    height < 0.0f ? height * lobe * (1.0f - 0.6f * front) : height});
}

/// The first place on the ear or around it that is met from its open side.
Vec3f FromEarsSide(float turn, float spread)
{
    const Place2 outline = EarOutline(turn);
    const float inward = 1.0f - std::min(spread, 1.0f); // towards the bowl's middle
    const Place2 place{outline.x * spread - 0.35f * inward, outline.y * spread - 0.3f * inward};
    return FirstMet(FromEar({place.x, place.y, 2.5f}), FromEar({place.x, place.y, -3.5f}));
}

Opening LeftEyeOpening()
{
    Opening opening;
    opening.region = [](Vec3f p) {
        return p.z < 3.5f ? 1.0f : EllipseDistance(p.x - eyeMiddle.x, p.y - eyeMiddle.y, 1.95f, 1.45f);
    };
    opening.turnOf = [](Vec3f p) { return TurnOfAngle(p.x - eyeMiddle.x, 1.35f * (p.y - eyeMiddle.y)); };
    for (const float spread : {0.72f, 0.45f, 0.26f, 0.12f, 0.03f})
        opening.rings.emplace_back([=](float turn) {
            const Place2 place = EyeContour(turn, spread);
            return FromFront(place.x, place.y);
        });
    for (const float depth : {0.4f, 0.95f})
        opening.rings.emplace_back([=](float turn) { return LidMargin(turn, depth); });
    for (const float share : {0.15f, 0.4f, 0.7f, 1.0f})
        opening.rings.emplace_back([=](float turn) { return SocketPlace(turn, share); });
    opening.softRings = 2;
    return opening;
}

Opening LeftEarOpening()
{
    Opening opening;
    opening.region = [](Vec3f p) {
        const Vec3f q = EarPlace(p);
        return p.x < 4.5f ? 1.0f : EllipseDistance(q.x - 0.1f, q.y, 2.4f, 3.8f);
    };
    opening.turnOf = [](Vec3f p) {
        const Vec3f q = EarPlace(p);
        return TurnOfAngle(1.6f * q.x, q.y);
    };
    // From the skin up the shell's back, over its rim, and down into the bowl.
    opening.rings.emplace_back([](float turn) { return FromEarsSide(turn, 1.38f); });
    opening.rings.emplace_back([](float turn) { return BesideEarsWall(turn, 1.2f, -0.75f); });
    opening.rings.emplace_back([](float turn) { return BesideEarsWall(turn, 1.12f, -0.3f); });
    opening.rings.emplace_back([](float turn) { return BesideEarsWall(turn, 1.1f, 0.1f); });
    for (const float spread : {0.99f, 0.92f, 0.82f, 0.72f, 0.62f, 0.5f, 0.38f, 0.24f})
        opening.rings.emplace_back([=](float turn) { return FromEarsSide(turn, spread); });
    return opening;
}

Opening MouthOpening()
{
    Opening opening;
    opening.region = [](Vec3f p) {
        return p.z < 4.5f ? 1.0f : EllipseDistance(p.x - mouthMiddle.x, p.y - mouthMiddle.y, 3.3f, 1.6f);
    };
    opening.turnOf = [](Vec3f p) { return TurnOfAngle(p.x - mouthMiddle.x, 1.7f * (p.y - mouthMiddle.y)); };
    for (const float spread : {0.6f, 0.25f, 0.03f})
        opening.rings.emplace_back([=](float turn) {
            const Place2 place = MouthContour(turn, spread);
            return FromFront(place.x, place.y);
        });
    for (const float inward : {0.35f, 0.7f, 0.92f})
        opening.rings.emplace_back([=](float turn) { return LipPlace(turn, inward); });
    for (const float depth : {0.15f, 0.3f, 0.45f})
        opening.rings.emplace_back([=](float turn) { return BetweenLips(turn, depth); });
    for (const float share : {0.15f, 0.35f, 0.65f, 1.0f})
        opening.rings.emplace_back([=](float turn) { return PocketPlace(turn, share); });
    opening.softRings = 2;
    return opening;
}

Opening NavelOpening()
{
    Opening opening;
    opening.region = [](Vec3f p) {
        return p.z < 5.0f ? 1.0f : EllipseDistance(p.x - navel.x, p.y - navel.y, 1.9f, 2.1f);
    };
    opening.turnOf = [](Vec3f p) { return TurnOfAngle(p.x - navel.x, p.y - navel.y); };
    for (const float size : {1.5f, 1.1f, 0.82f, 0.6f, 0.42f, 0.2f})
        opening.rings.emplace_back([=](float turn) {
            const float angle = 2.0f * pi * turn;
            return FromFront(navel.x + size * std::cos(angle), navel.y + 1.2f * size * std::sin(angle));
        });
    opening.softRings = 1;
    return opening;
}

Opening NailOpening(const Nail& nail)
{
    Opening opening;
    opening.region = [&nail](Vec3f p) {
        const Vec3f offset = p - nail.center;
        return LengthSquared(offset) > 2.0f || Dot(offset, nail.up) < -0.5f ? 1.0f : nail.border(p) - 1.15f;
    };
    opening.turnOf = [&nail](Vec3f p) {
        const Vec3f offset = p - nail.center;
        return TurnOfAngle(Dot(offset, nail.along) / nail.halfLength,
                           Dot(offset, nail.across) / nail.halfWidth);
    };
    for (const float size : {1.22f, 1.02f, 0.88f, 0.5f})
        opening.rings.emplace_back([&nail, size](float turn) {
            const Vec3f place = nail.place(turn, size);
            return FirstMet(place + nail.up * 0.6f, place - nail.up * 0.8f);
        });
    opening.softRings = 0;
    return opening;
}

} // namespace

Opening MirrorImage(const Opening& left)
{
    // Seen from outside the mirror image runs the other way round.
    Opening right;
    right.region = [=](Vec3f p) { return left.region(Mirrored(p)); };
    right.turnOf = [=](Vec3f p) {
        const float turn = 1.0f - left.turnOf(Mirrored(p));
        return turn < 1.0f ? turn : 0.0f;
    };
    for (const auto& ring : left.rings)
        right.rings.emplace_back([=](float turn) { return Mirrored(ring(1.0f - turn)); });
    right.softRings = left.softRings;
    return right;
}

std::vector<Opening> LeftOpenings()
{
    std::vector<Opening> openings{LeftEyeOpening(), LeftEarOpening()};
    for (const Nail& nail : Nails())
        openings.push_back(NailOpening(nail));
    return openings;
}

std::vector<Opening> MiddleOpenings()
{
    return {MouthOpening(), NavelOpening()};
}

} // namespace content
