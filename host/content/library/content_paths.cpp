// Finding files in an ordered list of content directories.
// SPDX-License-Identifier: MIT

#include "library/content_paths.h"

#include "dson/uri.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <string_view>
#include <unordered_set>

#include <QString>

namespace openhost {

namespace {

namespace fs = std::filesystem;

/// Below a content directory.
std::string Below(const std::string& decodedPath)
{
    const std::string path = dson::NormalPath(decodedPath);
    const std::size_t first = path.find_first_not_of('/');
    return first == std::string::npos ? std::string() : path.substr(first);
}

constexpr const char* cloudFolder = "/data/cloud";

/// "1_" and the product's identifier.
bool IsProductName(std::string_view name)
{
    return name.size() > 2 && name.substr(0, 2) == "1_";
}

bool ComponentsMatch(const fs::path& directory, const fs::path& path)
{
    const auto mismatch = std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
    return mismatch.first == directory.end();
}

using Component = fs::path::const_iterator;

/// Calls visit(path) for each spelling of folder/name/.../end on disk until it answers true.
template <class Visit>
bool ForEachSpelling(FolderListings& listings, const fs::path& folder, Component name, Component end,
                     const Visit& visit)
{
    while (name != end && name->empty())
        ++name;
    if (name == end)
        return visit(folder);
    for (const fs::path& entry : listings.entries(folder, *name))
        if (ForEachSpelling(listings, folder / entry, std::next(name), end, visit))
            return true;
    return false;
}

/// The first spelling that passes; empty for none. The given spelling is tried without reading any folder.
template <class Test>
fs::path FindSpelling(FolderListings& listings, const fs::path& base, const std::string& relative,
                      const Test& test)
{
    const fs::path direct = base / relative;
    if (test(direct))
        return direct;
    const fs::path path(relative);
    fs::path found;
    ForEachSpelling(listings, base, path.begin(), path.end(), [&](const fs::path& candidate) {
        if (!test(candidate))
            return false;
        found = candidate;
        return true;
    });
    return found;
}

bool IsFile(const fs::path& path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

/// Gathers the files of an extension below a folder. What a link leads to and is there without it counts as
/// there, whatever the order of the names.
class FileSearch {
public:
    explicit FileSearch(std::string extension) : _extension(std::move(extension)) {}

    /// In order of their paths.
    std::vector<fs::path> below(const fs::path& folder)
    {
        std::error_code error;
        _above = fs::canonical(folder.parent_path(), error);
        enter(folder);
        for (std::size_t i = 0; i < _links.size(); ++i)
            follow(fs::path(_links[i])); // which grows the list
        std::sort(_files.begin(), _files.end());
        return std::move(_files);
    }

private:
    void enter(const fs::path& folder)
    {
        std::error_code error;
        const fs::path place = fs::canonical(folder, error);
        if (error || !_entered.insert(place.string()).second)
            return;
        std::vector<fs::directory_entry> entries;
        auto entry = fs::directory_iterator(folder, fs::directory_options::skip_permission_denied, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            entries.push_back(*entry);
        std::sort(entries.begin(), entries.end());
        for (const fs::directory_entry& each : entries) {
            if (each.is_symlink(error))
                _links.push_back(each.path());
            else if (each.is_directory(error))
                enter(each.path());
            else
                add(each.path(), place / each.path().filename());
        }
    }

    void follow(const fs::path& link)
    {
        std::error_code error;
        const fs::path place = fs::canonical(link, error);
        if (error)
            return;
        // What holds the link, or the whole folder, would be found below itself.
        const fs::path home = fs::canonical(link.parent_path(), error);
        if (!fs::is_directory(place, error))
            add(link, place);
        else if (!ComponentsMatch(place, home) && !ComponentsMatch(place, _above))
            enter(link);
    }

    void add(const fs::path& file, const fs::path& place)
    {
        // Other systems leave companion files of the same extension behind.
        const bool isCompanion = file.filename().string().compare(0, 2, "._") == 0;
        if (!isCompanion && FoldCase(file.extension().string()) == _extension && IsFile(file) &&
            _found.insert(place.string()).second)
            _files.push_back(file);
    }

    std::string _extension;
    fs::path _above; ///< the folder that holds the one that is searched
    std::vector<fs::path> _files, _links;
    std::unordered_set<std::string> _entered, _found; ///< without links
};

} // namespace

std::vector<fs::path> FolderListings::entries(const fs::path& folder, const fs::path& name)
{
    const std::shared_ptr<const Names> names = namesIn(folder);
    const auto found = names->find(FoldCase(name.string()));
    if (found == names->end())
        return {};
    std::vector<fs::path> entries = found->second;
    const auto exact = std::find(entries.begin(), entries.end(), name);
    if (exact != entries.end())
        std::rotate(entries.begin(), exact, exact + 1);
    return entries;
}

std::vector<fs::path> FolderListings::entries(const fs::path& folder)
{
    const std::shared_ptr<const Names> names = namesIn(folder);
    std::vector<fs::path> all;
    for (const auto& alike : *names)
        all.insert(all.end(), alike.second.begin(), alike.second.end());
    std::sort(all.begin(), all.end());
    return all;
}

std::shared_ptr<const FolderListings::Names> FolderListings::namesIn(const fs::path& folder)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    std::error_code error;
    const fs::file_time_type modified = fs::last_write_time(folder, error);
    const auto kept = _listings.find(folder.string());
    if (kept != _listings.end() && !error && kept->second.modified == modified)
        return kept->second.names;
    auto names = std::make_shared<Names>();
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const fs::path name = entry->path().filename();
        (*names)[FoldCase(name.string())].push_back(name);
    }
    // In order, so that the answer does not depend on the disk.
    for (auto& alike : *names)
        std::sort(alike.second.begin(), alike.second.end());
    // Disks keep times coarsely: a folder that has just changed may change again within the same one.
    constexpr std::chrono::seconds settled(2);
    if (!error && fs::file_time_type::clock::now() - modified > settled)
        _listings[folder.string()] = {modified, names};
    return names;
}

std::string FoldCase(const std::string& text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
    if (!isAscii)
        return QString::fromStdString(text)
            .normalized(QString::NormalizationForm_C)
            .toCaseFolded()
            .toStdString();
    std::string folded = text;
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

std::string PathKey(const std::string& decodedPath)
{
    return decodedPath.empty() ? decodedPath : WithoutCloudFolder("/" + FoldCase(Below(decodedPath)));
}

std::string WithoutCloudFolder(const std::string& path)
{
    const std::string above = std::string(cloudFolder) + "/";
    if (path.size() <= above.size() || FoldCase(path.substr(0, above.size())) != above)
        return path;
    const std::size_t end = path.find('/', above.size());
    const bool isInProduct =
        end != path.npos && IsProductName(std::string_view(path).substr(above.size(), end - above.size()));
    return isInProduct ? path.substr(end) : path;
}

fs::path FindIgnoringCase(const fs::path& base, const std::string& relative)
{
    FolderListings listings;
    return FindSpelling(listings, base, relative, [](const fs::path& path) {
        std::error_code error;
        return fs::exists(path, error);
    });
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

std::vector<fs::path> ContentPaths::rootsIn(const fs::path& directory) const
{
    std::vector<fs::path> roots{directory};
    const fs::path cloud(cloudFolder + 1);
    ForEachSpelling(_listings, directory, cloud.begin(), cloud.end(), [&](const fs::path& folder) {
        for (const fs::path& name : _listings.entries(folder))
            if (IsProductName(name.string()))
                roots.push_back(folder / name);
        return false;
    });
    return roots;
}

fs::path ContentPaths::resolve(const std::string& relative) const
{
    const std::string wanted = Below(relative);
    if (wanted.empty() || dson::LeavesFolder(wanted))
        return {};
    for (const fs::path& directory : _directories)
        for (const fs::path& root : rootsIn(directory)) {
            const fs::path found = FindSpelling(_listings, root, wanted, IsFile);
            if (!found.empty())
                return found;
        }
    return {};
}

std::vector<fs::path> ContentPaths::filesBelow(const std::string& relativeFolder,
                                               const std::string& extension,
                                               std::vector<fs::path>* duplicates) const
{
    const std::string wanted = Below(relativeFolder);
    std::map<std::string, fs::path> files;
    if (dson::LeavesFolder(wanted))
        return {};
    const fs::path path(wanted);
    const auto addThoseIn = [&](const fs::path& folder) {
        for (const fs::path& file : FileSearch(extension).below(folder)) {
            const bool isFirst =
                files.emplace(FoldCase(file.lexically_relative(folder).string()), file).second;
            if (!isFirst && duplicates)
                duplicates->push_back(file);
        }
        return false;
    };
    for (const fs::path& directory : _directories)
        for (const fs::path& root : rootsIn(directory))
            ForEachSpelling(_listings, root, path.begin(), path.end(), addThoseIn);
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
    return directory
               ? WithoutCloudFolder("/" + absolute.lexically_normal().lexically_relative(*directory).string())
               : std::string();
}

} // namespace openhost
