// Files that a row has read, and whether they still are what they were.
// SPDX-License-Identifier: MIT

#include "batch/files_read.h"

#include "batch/batch_state.h"

#include <algorithm>

#include <fmt/format.h>
#include <sys/stat.h>

namespace cli {

namespace {

std::string StampOf(const std::filesystem::path& file)
{
    struct stat found {};
    if (stat(file.c_str(), &found) != 0)
        return {};
    return fmt::format("{} {}.{:09}", found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec);
}

} // namespace

std::shared_ptr<const FileRead> FileReadings::now(const std::filesystem::path& file, const std::string& stamp)
{
    std::shared_ptr<const FileRead>& known = _known[file];
    if (!known || known->stamp != stamp)
        known = std::make_shared<FileRead>(FileRead{file, stamp, SumOfFile(file)});
    return known;
}

FilesRead FileReadings::describe(const std::vector<std::string>& files)
{
    FilesRead described;
    for (const std::string& file : files)
        described.push_back(now(file, StampOf(file)));
    return described;
}

bool FileReadings::areUnchanged(const FilesRead& files)
{
    return std::all_of(files.begin(), files.end(), [this](const auto& then) {
        const std::string stamp = StampOf(then->file);
        return stamp == then->stamp || (!stamp.empty() && now(then->file, stamp)->sum == then->sum);
    });
}

} // namespace cli
