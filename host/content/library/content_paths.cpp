// Finding files in an ordered list of content directories.
// SPDX-License-Identifier: MIT

#include "library/content_paths.h"

#include "base/file_set.h"
#include "base/reason.h"
#include "dson/uri.h"
#include "openhost/diagnostics.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
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

bool HasExtension(const std::string& name, const std::string& extension)
{
    const std::size_t dot = name.rfind('.');
    return dot != std::string::npos && dot > 0 && FoldCase(name.substr(dot)) == extension;
}

/// Paths in files lead to what is not there, or is no folder; everything else is the disk's fault.
bool IsListed(const std::error_code& error)
{
    constexpr int expected[] = {0, ENOENT, ENOTDIR, ENAMETOOLONG, ELOOP};
    return std::find(std::begin(expected), std::end(expected), error.value()) != std::end(expected);
}

void TellUnlisted(const std::string& folder, const std::error_code& error)
{
    Report({base::Severity::Error,
            folder,
            {},
            "the folder cannot be read, and what lies in it is missing: " + base::ReasonOf(error)});
}

/// Gathers the files of an extension below a folder. What a link leads to and is there without it counts as
/// there, whatever the order of the names. Paths are texts, since there may be a hundred thousand.
class FileSearch {
public:
    explicit FileSearch(std::string extension) : _extension(std::move(extension)) {}

    /// Their paths, each of which begins with the folder's; what links lead to comes last.
    std::vector<std::string> below(const fs::path& folder)
    {
        std::error_code error;
        _above = fs::canonical(folder.parent_path(), error);
        enter(folder.string());
        for (std::size_t i = 0; i < _links.size(); ++i)
            follow(std::string(_links[i])); // which grows the list
        return std::move(_files);
    }

private:
    struct Entry {
        std::string name;
        fs::file_type type;
    };
    static std::vector<Entry> EntriesOf(const std::string& folder)
    {
        std::vector<Entry> entries;
        std::error_code error;
        auto entry = fs::directory_iterator(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            const std::string& path = entry->path().native();
            entries.push_back({path.substr(path.rfind('/') + 1), TypeOf(*entry)});
        }
        if (!IsListed(error))
            TellUnlisted(folder, error);
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return a.name < b.name; });
        return entries;
    }
    /// A program that has ended may have left files that are to be put in place together, or to go.
    static bool IsUnfinished(const std::vector<Entry>& entries)
    {
        return std::any_of(entries.begin(), entries.end(), [](const Entry& entry) {
            return entry.name == base::fileSetJournal || base::IsUnfinishedName(entry.name);
        });
    }
    static fs::file_type TypeOf(const fs::directory_entry& entry)
    {
        // Mostly known from the folder, without a look at the file.
        std::error_code error;
        return entry.is_symlink(error)        ? fs::file_type::symlink
               : entry.is_directory(error)    ? fs::file_type::directory
               : entry.is_regular_file(error) ? fs::file_type::regular
                                              : fs::file_type::unknown;
    }

    void enter(const std::string& folder)
    {
        std::error_code error;
        const std::string place = fs::canonical(folder, error).string();
        if (error || !_entered.insert(place).second)
            return;
        std::vector<Entry> entries = EntriesOf(folder);
        if (IsUnfinished(entries) && FinishLeftSave(folder))
            entries = EntriesOf(folder);
        for (const Entry& entry : entries) {
            const std::string path = folder + '/' + entry.name;
            if (entry.type == fs::file_type::symlink)
                _links.push_back(path);
            else if (entry.type == fs::file_type::directory)
                enter(path);
            else if (entry.type == fs::file_type::regular && isSought(entry.name) &&
                     (_linked.empty() || _linked.count(place + '/' + entry.name) == 0))
                _files.push_back(path);
        }
    }

    void follow(const std::string& link)
    {
        std::error_code error;
        const fs::path place = fs::canonical(link, error);
        if (error)
            return;
        // What holds the link, or the whole folder, would be found below itself.
        const fs::path home = fs::canonical(fs::path(link).parent_path(), error);
        if (!fs::is_directory(place, error))
            add(link, place);
        else if (!ComponentsMatch(place, home) && !ComponentsMatch(place, _above))
            enter(link);
    }

    /// A file that a link leads to.
    void add(const std::string& link, const fs::path& place)
    {
        const bool isFound =
            isSought(place.filename().string()) && _entered.count(place.parent_path().string()) > 0;
        if (!isFound && isSought(fs::path(link).filename().string()) && IsFile(place) &&
            _linked.insert(place.string()).second)
            _files.push_back(link);
    }

    bool isSought(const std::string& name) const
    {
        // Other systems leave companion files of the same extension behind.
        return name.compare(0, 2, "._") != 0 && HasExtension(name, _extension);
    }

    std::string _extension;
    fs::path _above; ///< the folder that holds the one that is searched
    std::vector<std::string> _files, _links;
    std::unordered_set<std::string> _entered, _linked; ///< where they lie without links: folders, files
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
    std::unique_lock<std::mutex> lock(_mutex);
    const auto kept = _listings.find(folder.string());
    if (kept != _listings.end() && _keeping == Keeping::ForGood)
        return kept->second.names;
    std::error_code error;
    const fs::file_time_type modified = fs::last_write_time(folder, error);
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
    if (_keeping == Keeping::ForGood || (!error && fs::file_time_type::clock::now() - modified > settled))
        _listings[folder.string()] = {modified, names};
    const bool isNews = !IsListed(error) && _unlisted.insert(folder.string()).second;
    lock.unlock();
    if (isNews)
        TellUnlisted(folder.string(), error);
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
    return FindIgnoringCase(listings, base, relative);
}

fs::path FindIgnoringCase(FolderListings& listings, const fs::path& base, const std::string& relative)
{
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

std::vector<std::string> ContentPaths::filesBelow(const std::string& relativeFolder,
                                                  const std::string& extension,
                                                  std::vector<fs::path>* duplicates) const
{
    const std::string wanted = Below(relativeFolder);
    if (dson::LeavesFolder(wanted))
        return {};
    struct Found {
        std::string key, file;
    };
    std::vector<Found> all;
    const fs::path path(wanted);
    const auto addThoseIn = [&](const fs::path& folder) {
        for (std::string& file : FileSearch(extension).below(folder))
            all.push_back({FoldCase(file.substr(folder.native().size())), std::move(file)});
        return false;
    };
    for (const fs::path& directory : _directories)
        for (const fs::path& root : rootsIn(directory))
            ForEachSpelling(_listings, root, path.begin(), path.end(), addThoseIn);
    // Of equal keys the first stays the first.
    std::stable_sort(all.begin(), all.end(), [](const Found& a, const Found& b) { return a.key < b.key; });
    std::vector<std::string> files;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i == 0 || all[i].key != all[i - 1].key)
            files.push_back(std::move(all[i].file));
        else if (duplicates)
            duplicates->emplace_back(std::move(all[i].file));
    }
    return files;
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

bool FinishLeftSave(const fs::path& folder)
{
    base::Diagnostics told;
    const bool hasPut = base::FinishFileSet(folder, &told);
    for (const base::Diagnostic& one : told)
        Report(one);
    return hasPut;
}

} // namespace openhost
