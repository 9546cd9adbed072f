// What a conversion made, for whoever tells of it.
// SPDX-License-Identifier: MIT

#include "gnt_outcome.h"

#include "ks_filtered-save.h"

#include <algorithm>

#include <dzfloatproperty.h>

bool GntMakesWholeFigure(GntJobs jobs)
{
    return jobs.test(GntJobFlag::Full) || (jobs.test(GntJobFlag::Head) && jobs.test(GntJobFlag::Body));
}

void GntWearMorphs(const std::vector<GntCreatedMorph>& created)
{
    const bool hasFull = std::any_of(created.begin(), created.end(),
                                     [](const GntCreatedMorph& morph) { return morph.kind == GntFull; });
    for (const GntCreatedMorph& morph : created)
        morph.property->setValue(!hasFull || morph.kind == GntFull ? 1.0f : 0.0f);
}

bool GntSaveMorphs_X(DzNode& target, const std::vector<GntCreatedMorph>& created,
                     const GntSaveOptions& options)
{
    std::vector<std::string> names;
    for (const GntCreatedMorph& morph : created)
        names.push_back(morph.name);
    return kst::FilteredSave::SaveMorphSupportAsset_X(target, options.contentDirectory, options.vendor,
                                                      options.product, names, options.compress, false);
}
