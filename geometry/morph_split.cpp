// A subdivided mesh in a new shape, split into the cage's deltas and detail per level.
// SPDX-License-Identifier: MIT

#include "geometry/morph_split.h"

#include "base/counted.h"
#include "geometry/errors.h"

namespace geometry {

namespace {

std::vector<Vec3f> Copy(base::Span<const Vec3f> positions)
{
    return {positions.begin(), positions.end()};
}

std::vector<Vec3f> Posed(base::Span<const Vec3f> rest, const CagePose& pose)
{
    return pose.weights ? Skin(rest, *pose.weights, pose.joints, pose.blend) : Copy(rest);
}

std::vector<Vec3f> AtRest(base::Span<const Vec3f> posed, const CagePose& pose)
{
    return pose.weights ? Unskin(posed, *pose.weights, pose.joints, pose.blend) : Copy(posed);
}

std::vector<Vec3f> Sum(base::Span<const Vec3f> positions, const SparseDeltas& deltas)
{
    std::vector<Vec3f> sum = Copy(positions);
    AddDeltas(sum, deltas, 1.0f);
    return sum;
}

void CheckSize(const Subdivision& subdivision, base::Span<const Vec3f> positions, int level)
{
    const std::size_t count = subdivision.topology(level)->vertexCount;
    if (positions.size() != count)
        throw TopologyError("subdivision level {} has {} but {} given", level, base::CountedVertices(count),
                            base::Counted(positions.size(), "value is", "values are"));
}

/// The fine shape without what other morphs add to it, as far as that can be known before the cage is.
/// @return  nothing where there are none
std::vector<Vec3f> WithoutOthers(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                                 const PresentShape& present)
{
    if (present.details.empty())
        return {};
    std::vector<Vec3f> shape = Copy(fine);
    const std::vector<Vec3f> smooth = subdivision.refine(present.posed, 0, level);
    const std::vector<Vec3f> detailed = RefineWithDetail(subdivision, present.posed, level, present.details);
    for (std::size_t v = 0; v < shape.size(); ++v)
        shape[v] -= detailed[v] - smooth[v];
    return shape;
}

/// Cage and detail at rest, mirrored each on its own level and then expressed on the mirrored cage.
void Mirror(SubdividedMorph& morph, const Subdivision& subdivision, const PresentShape& present,
            const Mirroring& how)
{
    const Topology& cage = *subdivision.topology(0);
    const std::vector<CornerFrame> before = CornerFrames(cage, Sum(present.rest, morph.deltas));
    std::vector<Vec3f> dense = ToDense(morph.deltas, present.neutral.size());
    MirrorDeltas(dense, present.neutral, how);
    morph.deltas = MakeDeltas(dense, 0.0f);
    const std::vector<CornerFrame> after = CornerFrames(cage, Sum(present.rest, morph.deltas));
    for (std::size_t i = 0; i < morph.detail.levels.size(); ++i) {
        const int level = static_cast<int>(i) + 1;
        DetailLevel& detail = morph.detail.levels[i];
        std::vector<Vec3f> displacements = ToDisplacements(detail, level, subdivision, before);
        MirrorDeltas(displacements, subdivision.refine(present.neutral, 0, level), how);
        detail = ToDetail(displacements, level, subdivision, after, 0.0f);
    }
}

void KeepLevels(SubdividedMorph& morph, const MorphSplitOptions& options)
{
    const auto isKept = [&options](int level) {
        return level >= options.coarsestLevel && level <= options.finestLevel;
    };
    if (!isKept(0))
        morph.deltas = {};
    for (std::size_t i = 0; i < morph.detail.levels.size(); ++i)
        if (!isKept(static_cast<int>(i) + 1))
            morph.detail.levels[i] = {};
}

} // namespace

SubdividedMorph SplitMorph(const Subdivision& subdivision, base::Span<const Vec3f> fine, int level,
                           const PresentShape& present, const MorphSplitOptions& options)
{
    CheckSize(subdivision, fine, level);
    for (const base::Span<const Vec3f> positions : {present.neutral, present.rest, present.posed})
        CheckSize(subdivision, positions, 0);

    const std::vector<Vec3f> alone = WithoutOthers(subdivision, fine, level, present);
    const base::Span<const Vec3f> shape = alone.empty() ? fine : base::Span<const Vec3f>(alone);
    std::vector<Vec3f> cage = options.smoothCage ? subdivision.fit(shape, level, present.posed)
                                                 : SampleCage(subdivision, shape, level, present.posed);
    SubdividedMorph morph;
    morph.deltas = MakeDeltas(present.rest, AtRest(cage, present.pose), 0.0f);
    DropShort(morph.deltas, options.tolerance);

    // Against the cage as it will be, so that the detail makes up for what was dropped.
    cage = Posed(Sum(present.rest, morph.deltas), present.pose);
    morph.detail = SplitDetail(subdivision, fine, level, cage, present.details, options.tolerance);
    if (options.mirroring)
        Mirror(morph, subdivision, present, *options.mirroring);
    KeepLevels(morph, options);
    return morph;
}

} // namespace geometry
