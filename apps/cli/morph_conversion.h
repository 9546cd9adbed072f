// Single morphs of a figure as morphs of the Genesis 9 figure, from files to files.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "gnt_outcome.h"
#include "morph_choice.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

class Progress;

struct MorphConversionRequest {
    std::vector<std::filesystem::path> contentDirectories;
    std::filesystem::path source, target;
    MorphChoice choice;
    std::string pathPrefix, suffix; ///< of the new morphs' groups and names
    double value = 1.0;             ///< of a source's dial, whose shape becomes the whole morph
    bool takesControllers = false;  ///< dials that drive others drive their new morphs
    bool takesCorrectives = false;  ///< likewise those that several drive together
    GntResolution resolution = GntResolution::Base;
    GntSaveOptions save;
    bool mayOverwrite = false;
    bool verbose = false;
};

struct ConvertedMorph {
    std::string name, label, path;
    std::size_t verticesMoved = 0;       ///< of the cage
    std::size_t detailVerticesMoved = 0; ///< of all subdivision levels
    double largestDisplacementMm = 0.0;
    std::vector<std::string> drivers; ///< morphs of the target that turn its dial
    std::string file;
};

struct SkippedMorph {
    std::string name, reason;
    bool isFailure = true; ///< false for one that moves nothing
};

struct MorphConversionReport {
    std::string source, target; ///< labels
    std::vector<ConvertedMorph> created;
    std::vector<SkippedMorph> skipped;
    base::Diagnostics diagnostics;
};

/// Morphs that cannot be converted are skipped, the others saved, some together at a time.
/// @throws UsageError          a name or folder of the request cannot be used
/// @throws std::runtime_error  with one phrase for the user; what was saved by then stays
MorphConversionReport ConvertMorphs(const MorphConversionRequest& request, Progress& progress);

} // namespace cli
