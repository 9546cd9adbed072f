// Parsed content files, kept while they are unchanged on disk.
// SPDX-License-Identifier: MIT

// oneTBB first: the toolkit's "emit" would hide a method of it.
#include <tbb/parallel_for.h>

#include "library/asset_library.h"

#include "base/errors.h"
#include "dson/uri.h"
#include "openhost/diagnostics.h"

#include <algorithm>

namespace openhost {

namespace {

namespace fs = std::filesystem;

std::shared_ptr<const dson::Document> ReadHeaders(const fs::path& file)
{
    dson::ReadOptions options;
    options.deltas = false;
    return std::make_shared<const dson::Document>(dson::ReadDocument(file, options));
}

} // namespace

const AssetLibrary::Entry* AssetLibrary::unchanged(const fs::path& file) const
{
    const auto found = _entries.find(file.string());
    if (found == _entries.end())
        return nullptr;
    std::error_code error;
    const bool isSame = fs::last_write_time(file, error) == found->second.modified &&
                        fs::file_size(file, error) == found->second.size;
    return isSame && !error ? &found->second : nullptr;
}

void AssetLibrary::keep(const fs::path& file, std::shared_ptr<const dson::Document> document)
{
    Report(document->diagnostics);
    std::error_code error;
    Entry entry;
    entry.modified = fs::last_write_time(file, error);
    entry.size = fs::file_size(file, error);
    entry.document = std::move(document);
    _entries[file.string()] = std::move(entry);
}

std::shared_ptr<const dson::Document> AssetLibrary::read(const fs::path& file)
{
    if (const Entry* const entry = unchanged(file))
        return entry->document;
    std::shared_ptr<const dson::Document> document = ReadHeaders(file);
    keep(file, document);
    return document;
}

std::vector<std::shared_ptr<const dson::Document>> AssetLibrary::readAll(const std::vector<fs::path>& files)
{
    std::vector<std::shared_ptr<const dson::Document>> documents(files.size());
    base::Diagnostics failures(files.size());
    std::vector<std::size_t> missing;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (const Entry* const entry = unchanged(files[i]))
            documents[i] = entry->document;
        else
            missing.push_back(i);
    }
    tbb::parallel_for(std::size_t{0}, missing.size(), [&](std::size_t m) {
        const std::size_t i = missing[m];
        try {
            documents[i] = ReadHeaders(files[i]);
        } catch (const std::exception& error) {
            failures[i] = base::FromSentence(base::Severity::Warning, files[i].string(), error.what());
        }
    });
    for (const std::size_t i : missing) {
        if (documents[i])
            keep(files[i], documents[i]);
        else
            Report(failures[i]);
    }
    return documents;
}

fs::path AssetLibrary::find(const std::string& uriPath, const fs::path& referringFile) const
{
    fs::path found = _paths.resolve(uriPath);
    const std::string path = dson::NormalPath(uriPath);
    if (found.empty() && !path.empty() && path.front() != '/' && !dson::LeavesFolder(path))
        found = FindIgnoringCase(referringFile.parent_path(), path);
    return found;
}

std::string AssetLibrary::addressOf(const std::string& uriPath, const fs::path& referringFile) const
{
    const std::string path = dson::NormalPath(uriPath);
    if (path.empty() || path.front() == '/')
        return WithoutCloudFolder(path);
    if (!_paths.resolve(path).empty())
        return WithoutCloudFolder("/" + path);
    const std::string beside = _paths.relativePath(find(path, referringFile));
    return beside.empty() ? path : beside;
}

std::optional<base::Diagnostic> AssetLibrary::whyMissing(const dson::Uri& uri, const fs::path& referringFile)
{
    base::Diagnostic why{base::Severity::Warning, uri.path, uri.id, "is in no content library"};
    const fs::path file = find(uri.path, referringFile);
    if (file.empty())
        return why;
    try {
        const std::vector<dson::Modifier>& modifiers = read(file)->modifiers;
        const bool isThere =
            std::any_of(modifiers.begin(), modifiers.end(), [&uri](const dson::Modifier& modifier) {
                return modifier.id == uri.id || modifier.name == uri.id;
            });
        // Files and what is in them get renamed one without the other.
        if (isThere || modifiers.size() == 1)
            return std::nullopt;
        why.what = "is not in its file";
    } catch (const base::Error& error) {
        why.what = base::FromSentence(why.severity, file.string(), error.what()).what;
    }
    why.file = file.string();
    return why;
}

} // namespace openhost
