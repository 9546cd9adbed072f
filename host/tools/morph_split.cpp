// A subdivided mesh in a new shape, split into the cage's deltas and detail per level.
// SPDX-License-Identifier: MIT

#include "morph_split.h"

#include "figure/pipeline.h"
#include "mirroring.h"
#include "reverse_deformation.h"

namespace openhost {

using base::Span;
using geometry::Vec3f;

namespace {

/// What the new shape is seen against.
struct Present {
    base::Span<const Vec3f> rest;  ///< the cage that the deltas are added to
    base::Span<const Vec3f> posed; ///< the same as it stands now
    std::vector<geometry::ActiveDetail> details;
};

Present PresentShape(Pipeline& pipeline, bool isReversed)
{
    const base::Span<const Vec3f> base = pipeline.base().positions;
    if (!isReversed)
        return {base, base, {}};
    return {pipeline.morphedCage(), pipeline.posedCage(), pipeline.activeDetails()};
}

/// The fine shape without what other morphs add to it, as far as that can be known before the cage is.
std::vector<Vec3f> WithoutOthers(const geometry::Subdivision& subdivision, base::Span<const Vec3f> fine,
                                 int level, const Present& present)
{
    std::vector<Vec3f> shape(fine.begin(), fine.end());
    if (present.details.empty())
        return shape;
    const std::vector<Vec3f> smooth = subdivision.refine(present.posed, 0, level);
    const std::vector<Vec3f> detailed =
        geometry::RefineWithDetail(subdivision, present.posed, level, present.details);
    for (std::size_t v = 0; v < shape.size(); ++v)
        shape[v] -= detailed[v] - smooth[v];
    return shape;
}

std::vector<Vec3f> Sum(base::Span<const Vec3f> positions, const geometry::SparseDeltas& deltas)
{
    std::vector<Vec3f> sum(positions.begin(), positions.end());
    geometry::AddDeltas(base::Span<Vec3f>(sum), deltas, 1.0f);
    return sum;
}

/// Cage and detail at rest, mirrored each on its own level and then expressed on the mirrored cage.
void MirrorSplit(const MorphLoadSettings& settings, const geometry::Subdivision& subdivision,
                 base::Span<const Vec3f> base, base::Span<const Vec3f> rest, geometry::SparseDeltas* deltas,
                 geometry::MultiresDetail* detail)
{
    const geometry::Topology& cage = *subdivision.topology(0);
    const std::vector<geometry::CornerFrame> before = geometry::CornerFrames(cage, Sum(rest, *deltas));
    std::vector<Vec3f> dense = geometry::ToDense(*deltas, base.size());
    Mirror(dense, base, settings.morphMirroring);
    *deltas = geometry::MakeDeltas(dense, 0.0f);
    const std::vector<geometry::CornerFrame> after = geometry::CornerFrames(cage, Sum(rest, *deltas));
    for (std::size_t i = 0; i < detail->levels.size(); ++i) {
        const int level = static_cast<int>(i) + 1;
        std::vector<Vec3f> displacements =
            geometry::ToDisplacements(detail->levels[i], level, subdivision, before);
        Mirror(displacements, subdivision.refine(base, 0, level), settings.morphMirroring);
        detail->levels[i] = geometry::ToDetail(displacements, level, subdivision, after, 0.0f);
    }
}

void KeepLevels(const MorphLoadSettings& settings, geometry::SparseDeltas* deltas,
                geometry::MultiresDetail* detail)
{
    const auto isKept = [&settings](int level) {
        return level >= settings.subdivisionMinResolution && level <= settings.subdivisionMaxResolution;
    };
    if (!isKept(0))
        *deltas = {};
    for (std::size_t i = 0; i < detail->levels.size(); ++i)
        if (!isKept(static_cast<int>(i) + 1))
            detail->levels[i] = {};
}

} // namespace

void Mirror(std::vector<Vec3f>& deltas, base::Span<const Vec3f> neutral, DzMorphLoader::MirroringType type)
{
    if (type == DzMorphLoader::DoNotMirror)
        return;
    const int number = type - DzMorphLoader::XSwap;
    MirrorDeltas(deltas, neutral, number / 3, static_cast<MirrorSide>(number % 3));
}

void SplitMorph(const MorphLoadSettings& settings, Pipeline& pipeline, base::Span<const Vec3f> fine,
                geometry::SparseDeltas* deltas, geometry::MultiresDetail* detail)
{
    const int level = settings.subdivisionBuiltResolution;
    const bool isReversed = settings.reverseDeformations;
    const auto subdivision = pipeline.subdivision(level);
    const Present present = PresentShape(pipeline, isReversed);

    const std::vector<Vec3f> shape = WithoutOthers(*subdivision, fine, level, present);
    std::vector<Vec3f> cage = settings.subdivisionSmoothCage
                                  ? subdivision->fit(shape, level, present.posed)
                                  : geometry::SampleCage(*subdivision, shape, level, present.posed);
    if (isReversed)
        cage = UndoSkin(pipeline, cage);
    *deltas = geometry::MakeDeltas(present.rest, cage, 0.0f);
    geometry::DropShort(*deltas, settings.deltaTolerance);

    // Against the cage as it will be, so that the detail makes up for what was dropped.
    cage = Sum(present.rest, *deltas);
    if (isReversed)
        cage = ApplySkin(pipeline, cage);
    *detail =
        geometry::SplitDetail(*subdivision, fine, level, cage, present.details, settings.deltaTolerance);
    if (settings.morphMirroring != DzMorphLoader::DoNotMirror)
        MirrorSplit(settings, *subdivision, pipeline.base().positions, present.rest, deltas, detail);
    KeepLevels(settings, deltas, detail);
}

} // namespace openhost
