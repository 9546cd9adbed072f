// Shapes of age.
// SPDX-License-Identifier: MIT

#include "shape_blends.h"
#include "shape_fields.h"

namespace content::shapes {

Vec3f Stooped(Vec3f p)
{
    // A bend that grows along the spine; the arms hang from where the shoulders come to lie.
    constexpr float most = 9.0f * 0.017453293f, start = 104.0f, end = 150.0f;
    const float height = p.y + (std::max(p.y, 136.0f) - p.y) * ArmInfluence(p);
    const float along = std::clamp((height - start) / (end - start), 0.0f, 1.0f);
    const float angle = most * along * along;
    const Vec3f offset{0.0f, height - start, p.z + 2.0f};
    const Vec3f turned{0.0f, std::cos(angle) * offset.y - std::sin(angle) * offset.z,
                       std::sin(angle) * offset.y + std::cos(angle) * offset.z};
    // The neck bends back, so that the face looks ahead.
    const float neck = SmoothStep(143.0f, 156.0f, height);
    return (turned - offset) + Vec3f{0.0f, 0.0f, 1.2f} * neck;
}

Vec3f Sagging(Vec3f p)
{
    Vec3f sum = OnBothSides(p, [](Vec3f q) {
        const Vec3f breast = Vec3f{0.5f, -3.0f, -0.4f} * (Bump(q, {7.9f, 123.5f, 9.0f}, {4.2f, 4.5f, 5.0f}) *
                                                          SmoothStep(2.0f, 7.0f, q.z));
        const Vec3f seat =
            Vec3f{0.0f, -2.0f, 0.6f} * (Bump(q, {7.2f, 87.0f, -11.5f}, 5.5f) * SmoothStep(1.0f, -6.0f, q.z));
        return breast + seat;
    });
    const float belly = Bump(p, {0.0f, 98.0f, 9.0f}, {8.0f, 6.5f, 7.0f}) * SmoothStep(-3.0f, 6.0f, p.z);
    return sum + Vec3f{0.0f, -1.6f, 2.2f} * belly;
}

Vec3f AgedFace(Vec3f p)
{
    const Vec3f sum = OnBothSides(p, [](Vec3f q) {
        Vec3f d = Vec3f{-0.5f, 0.0f, -0.2f} * Bump(q, {6.6f, 161.5f, 4.4f}, {1.6f, 1.8f, 2.2f}); // temple
        d += Vec3f{-0.5f, 0.0f, -0.35f} * Bump(q, {5.2f, 153.9f, 5.2f}, {1.5f, 1.3f, 1.8f});     // cheek
        d += Vec3f{0.1f, -0.35f, 0.3f} * Bump(q, {3.2f, 156.6f, 7.0f}, {1.2f, 0.5f, 1.3f});      // bag
        d += Vec3f{0.25f, -0.8f, 0.35f} * Bump(q, {3.3f, 149.6f, 6.2f}, {1.1f, 1.0f, 1.8f});     // jowl
        d += Vec3f{0.0f, -0.12f, -0.4f} * Bump(q, {2.6f, 153.4f, 7.8f}, {0.5f, 1.0f, 1.0f});     // fold
        d += Vec3f{0.1f, -0.35f, 0.25f} * Bump(q, {3.6f, 160.2f, 7.0f}, {1.8f, 0.7f, 1.4f});     // brow
        d += Vec3f{0.2f, -1.0f, 0.0f} *
             (Bump(q, {7.8f, 155.2f, -1.6f}, {1.0f, 1.7f, 1.4f}) * SmoothStep(6.4f, 7.4f, q.x));
        return d;
    });
    const float lips = Bump(p, {0.0f, 151.9f, 9.2f}, {2.0f, 0.9f, 1.0f});
    return sum + LongerNose(p) * 0.35f + Vec3f{0.0f, 0.0f, -0.4f} * lips;
}

Vec3f YoungFace(Vec3f p)
{
    const Vec3f chin = Vec3f{-0.12f * p.x, 1.0f, -0.5f} * Bump(p, {0.0f, 148.4f, 7.6f}, {2.6f, 1.6f, 2.4f});
    const Vec3f nose = Vec3f{0.0f, 0.3f, -1.1f} * Bump(p, {0.0f, 155.4f, 10.2f}, {1.0f, 1.5f, 1.7f});
    const Vec3f forehead = Vec3f{0.0f, 0.0f, 0.5f} * Bump(p, {0.0f, 165.0f, 7.5f}, {4.0f, 2.6f, 3.0f});
    return chin + nose + forehead + FullerCheeks(p) * 0.9f + HeavierBrow(p) * -1.3f + WiderJaw(p) * -1.5f +
           LargerEyes(p) * 1.1f;
}

} // namespace content::shapes
