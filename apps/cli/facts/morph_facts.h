// The morphs of a figure or a folder, as a report.
// SPDX-License-Identifier: MIT

#pragma once

#include "facts/morph_check.h"
#include "report.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// Of a folder, those below it; of a figure's file or of a scene, those that belong to its figures.
/// @throws base::IoError, base::FormatError  the file cannot be read, or no figure of it can be found
std::vector<std::filesystem::path> MorphFilesOf(const std::filesystem::path& file,
                                                const ContentFiles& content);

/// @param patterns  names or labels that are listed; all without any, unless files are checked
/// @param checks    also tell how many were read and which cannot be used
Json MorphFacts(const MorphSurvey& survey, const std::vector<std::string>& patterns, bool checks,
                bool asJson);

} // namespace cli
