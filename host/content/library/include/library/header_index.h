// What morph files say besides their displacements, kept from one run to the next.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "dson/reader.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace openhost {

class IndexDatabase;
class IndexError;

/// Tells a file's content from an earlier one.
struct FileStamp {
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< in nanoseconds
    /// Disks keep times coarsely: what has just changed may change again within the same one.
    bool isSettled = false;

    bool operator==(const FileStamp& other) const { return size == other.size && modified == other.modified; }
};
/// Nothing for what cannot be looked at.
std::optional<FileStamp> StampOf(const std::string& file);

/// What reading a file without deltas gives: a document, or why there is none.
struct HeaderReading {
    std::shared_ptr<const dson::Document> document;
    base::Diagnostic failure;
    bool isLasting = true; ///< off: another try may give something else

    explicit operator bool() const { return document || !failure.what.empty(); }
};

/// A database in the user's cache folder, which several programs may use at once. It is good for speed alone:
/// what cannot be had from it is read from the files.
class HeaderIndex {
public:
    HeaderIndex();
    ~HeaderIndex();

    struct File {
        const std::string* path = nullptr;
        std::optional<FileStamp> stamp;
        bool isWanted = false; ///< off: it is there, and what it says is known
        bool isKept = false;   ///< as it is now
        HeaderReading reading;
    };

    /// Gives the wanted files what is kept of them, unless they have changed.
    /// @param files        all that are to be kept in their folders
    /// @param directories  the content directories; what is kept of others that are gone is dropped
    void fill(std::vector<File>& files, const std::vector<std::filesystem::path>& directories);
    /// Keeps what has been read since of wanted files, and drops what is kept in vain.
    void update(std::vector<File>& files);

private:
    template <class Work>
    void guard(const Work& work);
    void open();
    void reopen(const IndexError& damage);
    void fillFolder(std::string_view folder, const std::vector<File*>& files);
    void noteGoneFolders(const std::vector<std::filesystem::path>& directories);
    void dropGone();
    void keepNew(const std::vector<File>& files);
    std::int64_t folderId(std::string_view path);

    std::unique_ptr<IndexDatabase> _database;                     ///< between filling and updating
    std::vector<std::pair<std::int64_t, std::string>> _goneFiles; ///< folders and names
    std::vector<std::int64_t> _goneFolders;
    bool _hasLookedForGone = false, _isUsable = true;
};

} // namespace openhost
