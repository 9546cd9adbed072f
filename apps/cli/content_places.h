// Where content was looked for, and where it is instead.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <QString>

namespace cli {

/// For the end of a message that content is missing: the folders that were looked in, and the folder above or
/// directly below one of them that has the file, for whoever has named one too deep or too high.
/// @param missing  the file's path below a content folder
std::string WhereLooked(const std::vector<std::filesystem::path>& contentDirectories, const QString& missing);

} // namespace cli
