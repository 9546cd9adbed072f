// Parsed content files, kept while they are unchanged on disk.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "library/content_paths.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace openhost {

/// Files are read without deltas, once each until they change. What readings meet is reported once each.
class AssetLibrary {
public:
    explicit AssetLibrary(const ContentPaths& paths) : _paths(paths) {}

    const ContentPaths& paths() const { return _paths; }

    /// @throws base::IoError, base::FormatError  as dson::ReadDocument
    std::shared_ptr<const dson::Document> read(const std::filesystem::path& file);

    /// Reads many files in parallel into the cache; files that cannot be read are reported and left out.
    /// @return the documents, in the order of the files
    std::vector<std::shared_ptr<const dson::Document>>
    readAll(const std::vector<std::filesystem::path>& files);

    /// The file that a URI's path names; relative paths are also looked for beside the file that refers to
    /// them. Empty when there is none.
    std::filesystem::path find(const std::string& uriPath, const std::filesystem::path& referringFile) const;

    /// The path by which content files call what find() finds: below its content directory, beginning with
    /// '/'. A path that names nothing there stays as it is.
    std::string addressOf(const std::string& uriPath, const std::filesystem::path& referringFile) const;

    /// Why the shape or control that a URI names cannot be had; nothing when its file has it.
    std::optional<base::Diagnostic> whyMissing(const dson::Uri& uri,
                                               const std::filesystem::path& referringFile);

private:
    struct Entry {
        std::filesystem::file_time_type modified;
        std::uintmax_t size = 0;
        std::shared_ptr<const dson::Document> document;
    };
    const Entry* unchanged(const std::filesystem::path& file) const;
    void keep(const std::filesystem::path& file, std::shared_ptr<const dson::Document> document);

    const ContentPaths& _paths;
    std::unordered_map<std::string, Entry> _entries;
};

} // namespace openhost
