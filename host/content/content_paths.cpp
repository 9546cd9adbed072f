// Finding files in an ordered list of content directories.
// SPDX-License-Identifier: MIT

#include "host/content/content_paths.h"

#include "host/content/dson_uri.h"

#include <algorithm>
#include <map>

namespace openhost {

namespace {

namespace fs = std::filesystem;

std::string WithoutLeadingSlash(const std::string& path)
{
    const std::size_t first = path.find_first_not_of('/');
    return first == std::string::npos ? std::string() : path.substr(first);
}

bool ComponentsMatch(const fs::path& directory, const fs::path& path)
{
    const auto mismatch = std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
    return mismatch.first == directory.end();
}

fs::path EntryIgnoringCase(const fs::path& folder, const std::string& name)
{
    const std::string wanted = FoldCase(name);
    fs::path best;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const fs::path candidate = entry.path().filename();
        // Of several spellings the first in order is taken, so that the answer does not depend on the disk.
        if (FoldCase(candidate.string()) == wanted && (best.empty() || candidate < best))
            best = candidate;
    }
    return best;
}

} // namespace

std::string FoldCase(const std::string& text)
{
    std::string folded = text;
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

fs::path FindIgnoringCase(const fs::path& base, const std::string& relative)
{
    std::error_code error;
    const fs::path direct = base / relative;
    if (fs::exists(direct, error))
        return direct;
    fs::path found = base;
    for (const fs::path& component : fs::path(relative)) {
        if (component.empty())
            continue;
        const fs::path next = found / component;
        if (fs::exists(next, error)) {
            found = next;
            continue;
        }
        const fs::path entry = EntryIgnoringCase(found, component.string());
        if (entry.empty())
            return {};
        found /= entry;
    }
    return found;
}

void ContentPaths::add(const fs::path& directory)
{
    std::error_code error;
    fs::path absolute = fs::absolute(directory, error).lexically_normal();
    if (!absolute.has_filename())
        absolute = absolute.parent_path();
    if (std::find(_directories.begin(), _directories.end(), absolute) == _directories.end())
        _directories.push_back(absolute);
}

void ContentPaths::clear()
{
    _directories.clear();
}

fs::path ContentPaths::resolve(const std::string& relative) const
{
    const std::string wanted = WithoutLeadingSlash(relative);
    if (wanted.empty() || dson::LeavesFolder(wanted))
        return {};
    std::error_code error;
    for (const fs::path& directory : _directories) {
        const fs::path found = FindIgnoringCase(directory, wanted);
        if (!found.empty() && fs::is_regular_file(found, error))
            return found;
    }
    return {};
}

std::vector<fs::path> ContentPaths::filesBelow(const std::string& relativeFolder, const std::string& extension,
                                               std::vector<fs::path>* duplicates) const
{
    const std::string wanted = WithoutLeadingSlash(relativeFolder);
    std::map<std::string, fs::path> files;
    if (dson::LeavesFolder(wanted))
        return {};
    for (const fs::path& directory : _directories) {
        const fs::path folder = FindIgnoringCase(directory, wanted);
        if (folder.empty())
            continue;
        std::error_code error;
        auto entry = fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied, error);
        for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            const fs::path& file = entry->path();
            // Other systems leave companion files of the same extension behind.
            const bool isCompanion = file.filename().string().compare(0, 2, "._") == 0;
            if (isCompanion || FoldCase(file.extension().string()) != extension || !entry->is_regular_file(error))
                continue;
            const bool isFirst = files.emplace(FoldCase(file.lexically_relative(folder).string()), file).second;
            if (!isFirst && duplicates)
                duplicates->push_back(file);
        }
    }
    std::vector<fs::path> sorted;
    for (const auto& file : files)
        sorted.push_back(file.second);
    return sorted;
}

const fs::path* ContentPaths::directoryOf(const fs::path& absolute) const
{
    const fs::path normal = absolute.lexically_normal();
    for (const fs::path& directory : _directories)
        if (ComponentsMatch(directory, normal))
            return &directory;
    return nullptr;
}

std::string ContentPaths::relativePath(const fs::path& absolute) const
{
    const fs::path* const directory = directoryOf(absolute);
    return directory ? "/" + absolute.lexically_normal().lexically_relative(*directory).string() : std::string();
}

} // namespace openhost
