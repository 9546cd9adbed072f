// Reading all morphs of a figure, to find what cannot be used.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "morph_files.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// What a morph file defines.
struct FoundMorph {
    std::filesystem::path file;
    std::string name, label, group;
    std::string kind; ///< morph, controller or alias
    std::string hdUrl;
};

/// A file that cannot be used, and why.
struct UnusableFile {
    std::filesystem::path file;
    std::string reason;
};

struct MorphSurvey {
    std::size_t fileCount = 0;
    std::vector<FoundMorph> morphs; ///< in the order of the files
    std::vector<UnusableFile> unusable;
    base::Diagnostics diagnostics; ///< of files that can be used
};

/// Which files are read, and how thoroughly.
struct SurveyOptions {
    bool checks = false; ///< read displacements and details, too, and compare them with the figure's mesh
};

/// Reads morph files in parallel. The result is in their order.
/// @throws base::Cancelled  the user asked to end
MorphSurvey SurveyMorphs(const std::vector<std::filesystem::path>& files, const ContentFiles& content,
                         const SurveyOptions& options);

} // namespace cli
