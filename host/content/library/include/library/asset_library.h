// Parsed content files, kept while they are unchanged on disk.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "library/content_paths.h"
#include "library/header_index.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace openhost {

/// Files are read without deltas, once each until they change; those of large folders even from one run to
/// the next. What readings meet is reported once each.
class AssetLibrary {
public:
    explicit AssetLibrary(const ContentPaths& paths) : _paths(paths) {}

    const ContentPaths& paths() const { return _paths; }

    /// @throws base::IoError, base::FormatError  as dson::ReadDocument
    std::shared_ptr<const dson::Document> read(const std::filesystem::path& file);

    /// Reads many files in parallel; those that cannot be read are reported and left out.
    /// @param files  all that matter in their folders
    /// @return the documents, in the order of the files
    std::vector<std::shared_ptr<const dson::Document>> readAll(const std::vector<std::string>& files);

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
        FileStamp stamp;
        std::shared_ptr<const dson::Document> document; ///< null for what the index has, too
        std::weak_ptr<const dson::Document> used;
    };
    std::shared_ptr<const dson::Document> unchanged(const std::string& file,
                                                    const std::optional<FileStamp>& stamp) const;
    void keep(const std::string& file, const std::optional<FileStamp>& stamp,
              const std::shared_ptr<const dson::Document>& document, bool isInIndex);
    std::vector<HeaderIndex::File> look(const std::vector<std::string>& files) const;

    const ContentPaths& _paths;
    std::unordered_map<std::string, Entry> _entries;
    HeaderIndex _index;
};

} // namespace openhost
