// What a conversion made, for whoever tells of it.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_request.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

class DzNode;

/// Morph name and dial value of morphs that were not there after the transfer.
typedef std::map<std::string, float> GntMissingMorphs;

struct GntOutcome {
    std::shared_ptr<GntParams> params;
    GntRequest request;               ///< as it was carried out: names, paths, label and pose are filled in
    std::size_t activeMorphCount = 0; ///< morphs of the source that were dialed in
    bool isHeightMatched = true;      ///< false when the height dial did not get as far as was wanted
    std::vector<GntCreatedMorph> created;
    GntMissingMorphs missing;
};

/// Whether the jobs' morphs together give the whole figure its new shape.
bool GntMakesWholeFigure(GntJobs jobs);
/// Dials the new morphs up so that the figure looks converted: the full one, or else the head's and the
/// body's.
void GntWearMorphs(const std::vector<GntCreatedMorph>& created);

/// Where new morphs are saved to. Texts are UTF-8.
struct GntSaveOptions {
    std::string contentDirectory;
    std::string vendor, product;
    bool compress = false;
};

/// Saves all the morphs, without a question, as files that every later load of the figure finds.
/// @return false when the host says that the user cancelled
/// @throws kst::Exception  the host could not
bool GntSaveMorphs_X(DzNode& target, const std::vector<GntCreatedMorph>& created,
                     const GntSaveOptions& options);
