// Files that a row has read, and whether they still are what they were.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace cli {

/// A file as it was.
struct FileRead {
    std::filesystem::path file;
    std::string stamp; ///< size and time of change; empty for one that is not there
    std::string sum;   ///< of what it holds
};

/// Shared, as rows have most of them in common.
using FilesRead = std::vector<std::shared_ptr<const FileRead>>;

/// Rows share figures: what a file holds is read once as long as size and time stay.
class FileReadings {
public:
    FilesRead describe(const std::vector<std::string>& files);
    /// Those with another size or time are read, as copies of a library differ in no more.
    bool areUnchanged(const FilesRead& files);

private:
    std::shared_ptr<const FileRead> now(const std::filesystem::path& file, const std::string& stamp);

    std::map<std::filesystem::path, std::shared_ptr<const FileRead>> _known;
};

} // namespace cli
