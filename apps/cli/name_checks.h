// What people and folders can be called.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace cli {

/// @param option  or whatever else holds the name, for the text
/// @throws UsageError  it cannot be the name of a folder
void CheckFolderName(const std::string& option, const std::string& name);

/// @param option  as above
/// @throws UsageError  nobody can be called so
void CheckAuthor(const std::string& option, const std::string& name);

/// The host's texts cannot hold other names, and would name other files.
/// @throws base::IoError  the file's or folder's name is not UTF-8
void CheckContentName(const std::filesystem::path& path);

} // namespace cli
