// Where content was looked for, and where it is instead.
// SPDX-License-Identifier: MIT

#include "content_places.h"

#include "command.h"
#include "openhost/content_files.h"
#include "setting_origins.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Above first: who names a folder of the library's own is more common than who names the library's.
std::vector<fs::path> Neighbours(const fs::path& directory)
{
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(fs::absolute(directory, error), error);
    std::vector<fs::path> found, below;
    for (fs::path above = folder; above.has_relative_path();)
        found.push_back(above = above.parent_path());
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (std::error_code unknown; entry->is_directory(unknown))
            below.push_back(entry->path());
    std::sort(below.begin(), below.end());
    found.insert(found.end(), below.begin(), below.end());
    return found;
}

} // namespace

std::string WhereLooked(const std::vector<fs::path>& contentDirectories, const QString& missing)
{
    if (contentDirectories.empty())
        return "; no content folder is named";
    std::vector<std::string> names;
    for (const fs::path& directory : contentDirectories)
        names.push_back(FileText(directory) + OriginOf(directory.string()));
    std::string text = fmt::format("; looked in {}", fmt::join(names, ", "));
    for (const fs::path& directory : contentDirectories)
        for (const fs::path& neighbour : Neighbours(directory))
            if (!openhost::FileBelow(QString::fromStdString(neighbour.u8string()), missing).isEmpty())
                return text +
                       fmt::format("; {} has it, and is the content folder to name", FileText(neighbour));
    return text;
}

} // namespace cli
