// Reports as single pages that any browser shows from disk.
// SPDX-License-Identifier: MIT

#pragma once

#include "report.h"

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace cli {

/// One page: what it tells is data, which its scripts show.
struct Page {
    std::string title;
    Json data;                        ///< that "page.js" offers the scripts, with "version" and "date"
    std::vector<std::string> scripts; ///< names of assets behind "page.js" and "table.js", in order
    std::vector<std::string> styles;  ///< behind "page.css", likewise
    bool hasFigures = false;          ///< that can be turned: with three.js and "viewer.js"
};

/// Whole and self-contained: nothing on it is fetched from anywhere, and no text of the data becomes
/// anything but text.
/// @throws std::logic_error  there is no asset of a name
std::string PageText(const Page& page);

/// @throws base::IoError  the file cannot be written
void WritePage(const std::filesystem::path& file, const Page& page);

/// That a page can be written there, before the work that it is to tell of.
/// @param inputs  of the same run
/// @throws UsageError          it is a name of another kind of file
/// @throws std::runtime_error  the folder is missing, or the file cannot be made or replaced
void CheckPageFile(const std::filesystem::path& file, const std::vector<std::filesystem::path>& inputs);

} // namespace cli
