// Single morphs of a figure as morphs of the Genesis 9 figure, from files to files.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "files_used.h"
#include "gnt_outcome.h"
#include "morphs/morph_choice.h"
#include "planned_files.h"

#include <filesystem>
#include <functional>
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
    std::string author;         ///< whom saved files name; empty for the vendor
    std::filesystem::path page; ///< a report to look at; empty for none
    std::string command;        ///< as a shell takes it, for the page
    bool mayOverwrite = false;
    std::vector<std::filesystem::path> ownFiles; ///< saved morphs that may be replaced in any case
    bool isDryRun = false;                       ///< ends when it is known what would be written
    bool verbose = false;
    bool tellsFilesUsed = false; ///< in the report
    /// Called once, before any morph is put in place; what it throws ends the conversion.
    /// @param files  of the morphs to come, some of which may turn out to move nothing
    std::function<void(const std::vector<std::string>& files)> beforeSaving;
};

struct ConvertedMorph {
    std::string name, label, path, region;
    std::string source;                  ///< the name of the source's dial
    std::size_t verticesMoved = 0;       ///< of the cage
    std::size_t detailVerticesMoved = 0; ///< of all subdivision levels
    double largestDisplacementMm = 0.0;
    std::vector<std::string> drivers; ///< morphs of the target that turn its dial
    std::vector<std::string> notes;   ///< what is not as the source has it
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
    FilesUsed filesUsed;        ///< of the figures and the morphs that were chosen, where that is asked for
    std::filesystem::path page; ///< empty for none
    bool wasDryRun = false;
    PlannedFiles planned; ///< of a dry run
    base::Diagnostics diagnostics;
};

/// Morphs that cannot be converted are skipped, the others saved, some together at a time.
/// @throws UsageError          a name or folder of the request cannot be used
/// @throws std::runtime_error  with one phrase for the user; what was saved by then stays
MorphConversionReport ConvertMorphs(const MorphConversionRequest& request, Progress& progress);

} // namespace cli
