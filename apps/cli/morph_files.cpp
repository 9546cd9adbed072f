// The morph files of a figure, wherever content directories have them.
// SPDX-License-Identifier: MIT

#include "morph_files.h"

#include "base/cancellation.h"
#include "dials.h"
#include "dson/uri.h"
#include "mesh_files.h"

#include <algorithm>
#include <map>

#include <fnmatch.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// The entry of the name as it is spelled, else with other case; empty for none.
fs::path Entry(const fs::path& folder, const fs::path& name)
{
    std::error_code error;
    if (fs::exists(folder / name, error))
        return folder / name;
    const std::string wanted = Folded(name.u8string());
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        if (Folded(entry->path().filename().u8string()) == wanted)
            return entry->path();
    return {};
}

fs::path Resolve(fs::path at, const fs::path& relative)
{
    for (const fs::path& part : relative) {
        at = Entry(at, part);
        if (at.empty())
            break;
    }
    return at;
}

/// Below the directory; empty where the path lies elsewhere.
fs::path PathBelow(const fs::path& path, const fs::path& directory)
{
    const fs::path below = fs::weakly_canonical(path).lexically_relative(fs::weakly_canonical(directory));
    return below.empty() || *below.begin() == ".." ? fs::path() : below;
}

} // namespace

fs::path ContentFiles::find(const std::string& path) const
{
    if (path.empty() || dson::LeavesFolder(path))
        return {};
    for (const fs::path& directory : _directories)
        if (const fs::path found = Resolve(directory, fs::path(path).relative_path()); !found.empty())
            return found;
    return {};
}

std::vector<fs::path> ContentFiles::morphsOf(const fs::path& figureFile) const
{
    fs::path folder;
    for (const fs::path& directory : _directories)
        if (folder.empty())
            folder = PathBelow(figureFile.parent_path(), directory);
    if (folder.empty())
        return MorphFilesBelow(figureFile.parent_path() / "Morphs");
    std::map<std::string, fs::path> byPlace;
    for (const fs::path& directory : _directories) {
        const fs::path morphs = Resolve(directory, folder / "Morphs");
        for (const fs::path& file : morphs.empty() ? std::vector<fs::path>() : MorphFilesBelow(morphs))
            byPlace.emplace(Folded(file.lexically_relative(morphs).u8string()), file);
    }
    std::vector<fs::path> files;
    for (const auto& [place, file] : byPlace)
        files.push_back(file);
    return files;
}

std::vector<fs::path> MorphFilesBelow(const fs::path& folder)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        base::ThrowIfCancelled();
        const fs::path& file = entry->path();
        if (entry->is_regular_file(error) && HasExtension(file, ".dsf") &&
            file.filename().u8string().compare(0, 2, "._") != 0)
            files.push_back(file);
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool FitsPattern(const std::string& text, const std::string& pattern)
{
    return ::fnmatch(Folded(pattern).c_str(), Folded(text).c_str(), FNM_NOESCAPE) == 0;
}

} // namespace cli
