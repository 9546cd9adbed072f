// Morph Loader Pro's settings as the mesh library's options.
// SPDX-License-Identifier: MIT

#include "morph_split.h"

#include "figure/pipeline.h"

namespace openhost {

namespace {

geometry::MorphSplitOptions OptionsOf(const MorphLoadSettings& settings)
{
    geometry::MorphSplitOptions options;
    options.smoothCage = settings.subdivisionSmoothCage;
    options.tolerance = settings.deltaTolerance;
    options.coarsestLevel = settings.subdivisionMinResolution;
    options.finestLevel = settings.subdivisionMaxResolution;
    options.mirroring = MirroringOf(settings.morphMirroring);
    return options;
}

} // namespace

std::optional<geometry::Mirroring> MirroringOf(DzMorphLoader::MirroringType type)
{
    if (type == DzMorphLoader::DoNotMirror)
        return std::nullopt;
    const int number = type - DzMorphLoader::XSwap;
    return geometry::Mirroring{number / 3, static_cast<geometry::MirrorSide>(number % 3)};
}

geometry::SubdividedMorph SplitMorph(const MorphLoadSettings& settings, Pipeline& pipeline,
                                     base::Span<const geometry::Vec3f> fine)
{
    const int level = settings.subdivisionBuiltResolution;
    const base::Span<const geometry::Vec3f> neutral = pipeline.base().positions;
    geometry::PresentShape present{neutral, neutral, neutral, {}, {}};
    SkinPose skin;
    std::vector<geometry::ActiveDetail> details;
    if (settings.reverseDeformations) {
        present.rest = pipeline.formedCage();
        present.posed = pipeline.posedCage();
        skin = pipeline.skinPose();
        if (!skin.atRest)
            present.pose = {skin.weights, skin.poses, skin.blend};
        details = pipeline.activeDetails();
        present.details = details;
    }
    return geometry::SplitMorph(*pipeline.subdivision(level), fine, level, present, OptionsOf(settings));
}

} // namespace openhost
