// One row of a batch, converted in the process that this is called in.
// SPDX-License-Identifier: MIT

#pragma once

#include "report.h"

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace cli {

struct RowTask {
    std::vector<std::string> arguments; ///< as BatchRow has them
    bool mayReplace = false;            ///< a character's morphs that have the names were made by the row
    std::vector<std::string> ownFiles;  ///< of single morphs, those that were
    bool wantsPicture = false;          ///< of a character
    bool isDryRun = false;              ///< "report" is that of `--dry-run`
    bool tellsProgress = false;         ///< of the row itself
    bool verbose = false;
    /// Called when everything is made, before files are put in place; what it throws ends the row.
    /// @param files  of single morphs, those that are to come, or more; of a character none
    std::function<void(const std::vector<std::string>& files)> beforeSaving;
};

/// "report", as the row's command has it with `--json`, "files_used", the libraries' files that it depends
/// on, and "picture", as DrawThumbnail() has it; also "error" when something was saved and the row has failed
/// all the same.
/// @throws std::exception  it has failed
Json ConvertRow(const RowTask& task);

} // namespace cli
