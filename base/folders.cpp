// Folders for files to be written.
// SPDX-License-Identifier: MIT

#include "base/folders.h"

#include "base/errors.h"
#include "base/reason.h"
#include "base/write_bounds.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace base {

namespace fs = std::filesystem;

void MakeFolders(const fs::path& folder)
{
    std::error_code error, ignored;
    if (fs::is_directory(folder, ignored))
        return;
    ThrowIfOutOfBounds(folder);
    fs::create_directories(folder, error);
    // Another program may have come first.
    if (fs::is_directory(folder, ignored))
        return;
    // Of such a link the system says that a file exists, which nobody finds.
    std::string reason = DescribeLostLink(folder);
    if (reason.empty())
        reason = error ? ReasonOf(error) : ReasonOf(ENOTDIR);
    throw IoError("cannot create folder {}: {}", folder.string(), reason);
}

MadeFolders::~MadeFolders()
{
    // The system removes none that holds something.
    std::for_each(_made.rbegin(), _made.rend(), [](const fs::path& folder) { rmdir(folder.c_str()); });
}

void MadeFolders::make(const fs::path& folder)
{
    std::error_code error;
    std::vector<fs::path> missing;
    for (fs::path at = folder; !at.empty() && !fs::exists(fs::symlink_status(at, error));
         at = at.parent_path())
        missing.push_back(at);
    if (!missing.empty())
        ThrowIfOutOfBounds(folder);
    for (auto at = missing.rbegin(); at != missing.rend(); ++at)
        if (fs::create_directory(*at, error))
            _made.push_back(*at);
    MakeFolders(folder);
}

std::string DescribeLostLink(const fs::path& path)
{
    std::error_code error;
    fs::path link;
    for (const fs::path& part : path) {
        link /= part;
        if (fs::is_symlink(link, error) && fs::status(link, error).type() == fs::file_type::not_found)
            return fmt::format("the link {} leads to {}, which is not there", link.string(),
                               fs::read_symlink(link, error).string());
    }
    return {};
}

} // namespace base
