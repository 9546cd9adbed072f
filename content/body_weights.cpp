// Skin weights as closed forms of the canonical place.
// SPDX-License-Identifier: MIT

#include "base/cancellation.h"
#include "body_skeleton.h"
#include "shape_fields.h"

#include <array>

#include <tbb/parallel_for.h>

namespace content {

namespace {

constexpr std::size_t mostBones = 8;
/// How fast influence falls off with the squared distance, measured in the bone's radius.
constexpr float sharpness = 3.5f;
/// What is fainter than this is cut off, smoothly: the rest is lowered by as much.
constexpr float faintest = 0.012f;

struct Influence {
    float weight = 0.0f;
    std::uint32_t bone = 0;
};
using Influences = std::array<Influence, mostBones>;

/// Bones of one side reach over the middle nowhere; above the crotch they come in slowly.
float SideFactor(const BodyBone& bone, Vec3f p)
{
    if (bone.side == 0)
        return 1.0f;
    return LeftSide(bone.side > 0 ? p : Mirrored(p));
}

Influences Strongest(std::vector<Influence> all)
{
    std::stable_sort(all.begin(), all.end(),
                     [](const Influence& a, const Influence& b) { return a.weight > b.weight; });
    Influences kept;
    float sum = 0.0f;
    for (std::size_t i = 0; i < mostBones && i < all.size(); ++i) {
        kept[i] = all[i];
        sum += all[i].weight;
    }
    for (Influence& influence : kept)
        influence.weight /= sum;
    return kept;
}

Influences InfluencesAt(Vec3f p)
{
    const std::vector<BodyBone>& bones = BodyBones();
    std::vector<Influence> all(bones.size());
    std::vector<float> reach(bones.size());
    float nearest = 1e9f;
    for (std::size_t b = 0; b < bones.size(); ++b) {
        const float ratio = SegmentDistance(p, bones[b].reachStart, bones[b].reachEnd) / bones[b].radius;
        reach[b] = ratio * ratio;
        if (SideFactor(bones[b], p) > 0.5f)
            nearest = std::min(nearest, reach[b]);
    }
    for (std::size_t b = 0; b < bones.size(); ++b) {
        const float closeness =
            std::exp(-sharpness * std::max(reach[b] - nearest, -1.0f)) * SideFactor(bones[b], p);
        all[b] = {std::max(closeness - faintest, 0.0f), static_cast<std::uint32_t>(b)};
    }
    return Strongest(std::move(all));
}

} // namespace

std::vector<geometry::JointWeights> BodyWeights(base::Span<const Vec3f> canonical)
{
    std::vector<Influences> perVertex(canonical.size());
    tbb::parallel_for(std::size_t(0), canonical.size(), [&](std::size_t v) {
        base::ThrowIfCancelled();
        perVertex[v] = InfluencesAt(canonical[v]);
    });
    std::vector<geometry::JointWeights> perBone(BodyBones().size());
    for (std::uint32_t v = 0; v < perVertex.size(); ++v)
        for (const Influence& influence : perVertex[v])
            if (influence.weight > 0.0f) {
                perBone[influence.bone].vertices.push_back(v);
                perBone[influence.bone].weights.push_back(influence.weight);
            }
    return perBone;
}

} // namespace content
