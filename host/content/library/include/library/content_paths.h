// Finding files in an ordered list of content directories.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace openhost {

/// What folders hold, by names without case. Kept, since a scene may look for thousands of files in vain.
/// Safe to use from several threads.
class FolderListings {
public:
    enum class Keeping {
        WhileUnchanged, ///< as far as the folders' times tell
        ForGood         ///< for one look at many files at a time
    };
    explicit FolderListings(Keeping keeping = Keeping::WhileUnchanged) : _keeping(keeping) {}

    /// All, in order.
    std::vector<std::filesystem::path> entries(const std::filesystem::path& folder);
    /// The entries of the name, whatever their case: the exact spelling first, then in order.
    std::vector<std::filesystem::path> entries(const std::filesystem::path& folder,
                                               const std::filesystem::path& name);

private:
    using Names = std::unordered_map<std::string, std::vector<std::filesystem::path>>;
    struct Listing {
        std::filesystem::file_time_type modified;
        std::shared_ptr<const Names> names;
    };
    std::shared_ptr<const Names> namesIn(const std::filesystem::path& folder);

    const Keeping _keeping;
    std::mutex _mutex;
    std::unordered_map<std::string, Listing> _listings;
    std::unordered_set<std::string> _unlisted; ///< folders of which it is told that they cannot be read
};

/// Content grew on disks that ignore case, so a path that does not exist as spelled is looked for ignoring
/// case. Paths that climb out of a content directory name nothing.
///
/// What was installed from the cloud lies in folders of its own below a directory, data/cloud/1_ID/ for each
/// product, laid out as the directory is. They count as parts of their directory, after what it holds itself
/// and in the order of their names, and files in them are called as if they lay in the directory.
class ContentPaths {
public:
    void
    add(const std::filesystem::path& directory); ///< at the end; one that is there already stays where it is
    void clear();
    const std::vector<std::filesystem::path>& directories() const { return _directories; }

    /// The file in the first directory that holds it; empty if none does.
    /// @param relative  decoded, with or without a leading '/'; ".." within it is taken back first
    std::filesystem::path resolve(const std::string& relative) const;

    /// Every file with the extension below a folder, united over all directories and sorted by relative path;
    /// of equal relative paths the first directory's file alone. Linked folders are entered; what lies in
    /// several of them is found once.
    /// @param relativeFolder  decoded, with or without a leading '/'
    /// @param duplicates      receives the files that were left out
    std::vector<std::string> filesBelow(const std::string& relativeFolder, const std::string& extension,
                                        std::vector<std::filesystem::path>* duplicates) const;

    /// Path below its directory, or below a product's folder there, beginning with '/'; empty if it is below
    /// none.
    std::string relativePath(const std::filesystem::path& absolute) const;
    /// The directory that holds the path; null if none.
    const std::filesystem::path* directoryOf(const std::filesystem::path& absolute) const;

private:
    /// The directory and the products in it.
    std::vector<std::filesystem::path> rootsIn(const std::filesystem::path& directory) const;

    std::vector<std::filesystem::path> _directories;
    mutable FolderListings _listings;
};

/// `base`/`relative` as it is on disk, ignoring case where the spelling does not exist; empty if there is
/// none.
std::filesystem::path FindIgnoringCase(const std::filesystem::path& base, const std::string& relative);
/// The same for one of many files.
std::filesystem::path FindIgnoringCase(FolderListings& listings, const std::filesystem::path& base,
                                       const std::string& relative);

/// What all spellings of a text have in common that differ in case, or in how accents are composed.
std::string FoldCase(const std::string& text);

/// What all spellings of a content file's path have in common; empty for none. Paths are compared by it,
/// since files spell one path in many ways.
std::string PathKey(const std::string& decodedPath);

/// A path below a content directory without the folder of a cloud product that it leads through; the path
/// itself where it does not.
std::string WithoutCloudFolder(const std::string& path);

/// Puts in place what a program that was stopped left in the folder, or takes it back, and tells of it.
/// @return whether files were put in place
bool FinishLeftSave(const std::filesystem::path& folder);

} // namespace openhost
