// Parsed content files, kept while they are unchanged on disk.
// SPDX-License-Identifier: MIT

// oneTBB first: the toolkit's "emit" would hide a method of it.
#include <tbb/parallel_for.h>

#include "library/asset_library.h"

#include "app/current_attendant.h"
#include "base/errors.h"
#include "base/file_failure.h"
#include "base/file_set.h"
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

HeaderReading TryReadHeaders(const std::string& file)
{
    HeaderReading reading;
    try {
        reading.document = ReadHeaders(file);
    } catch (const std::exception& error) {
        reading.failure = base::FailureOfFile(base::Severity::Warning, file, error.what());
        reading.isLasting = dynamic_cast<const base::FormatError*>(&error) != nullptr;
    }
    return reading;
}

bool HasLeftSave(const fs::path& folder)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(folder / base::fileSetJournal, error));
}

} // namespace

std::shared_ptr<const dson::Document> AssetLibrary::unchanged(const std::string& file,
                                                              const std::optional<FileStamp>& stamp) const
{
    const auto found = _entries.find(file);
    return found != _entries.end() && stamp && *stamp == found->second.stamp ? found->second.used.lock()
                                                                             : nullptr;
}

void AssetLibrary::keep(const std::string& file, const std::optional<FileStamp>& stamp,
                        const std::shared_ptr<const dson::Document>& document, bool isInIndex)
{
    const auto known = _entries.find(file);
    if (known == _entries.end() || !stamp || !(*stamp == known->second.stamp))
        Report(document->diagnostics);
    if (stamp)
        _entries[file] = {*stamp, isInIndex ? nullptr : document, document};
}

std::shared_ptr<const dson::Document> AssetLibrary::read(const fs::path& path)
{
    // A figure is read before its folder of morphs is listed, and is to be as new or old as they are.
    if (HasLeftSave(path.parent_path()))
        FinishLeftSave(path.parent_path());
    const std::string file = path.string();
    const std::optional<FileStamp> stamp = StampOf(file);
    if (std::shared_ptr<const dson::Document> document = unchanged(file, stamp))
        return document;
    std::shared_ptr<const dson::Document> document = ReadHeaders(path);
    keep(file, stamp, document, false);
    return document;
}

std::vector<HeaderIndex::File> AssetLibrary::look(const std::vector<std::string>& files) const
{
    std::vector<HeaderIndex::File> seen(files.size());
    Attendant& attendant = CurrentAttendant();
    tbb::parallel_for(std::size_t{0}, files.size(), [&](std::size_t i) {
        attendant.beforeReading();
        seen[i].path = &files[i];
        seen[i].stamp = StampOf(files[i]);
        seen[i].reading.document = unchanged(files[i], seen[i].stamp);
        seen[i].isWanted = !seen[i].reading.document;
    });
    return seen;
}

std::vector<std::shared_ptr<const dson::Document>>
AssetLibrary::readAll(const std::vector<std::string>& files)
{
    std::vector<HeaderIndex::File> seen = look(files);
    const bool isNews =
        std::any_of(seen.begin(), seen.end(), [](const HeaderIndex::File& file) { return file.isWanted; });
    if (isNews) {
        _index.fill(seen, _paths.directories());
        Attendant& attendant = CurrentAttendant();
        tbb::parallel_for(std::size_t{0}, seen.size(), [&seen, &attendant](std::size_t i) {
            if (seen[i].reading)
                return;
            attendant.beforeReading();
            seen[i].reading = TryReadHeaders(*seen[i].path);
        });
        _index.update(seen);
    }
    std::vector<std::shared_ptr<const dson::Document>> documents;
    documents.reserve(files.size());
    for (const HeaderIndex::File& file : seen) {
        documents.push_back(file.reading.document);
        if (!file.reading.document)
            Report(file.reading.failure);
        else if (file.isWanted)
            keep(*file.path, file.stamp, file.reading.document, file.isKept);
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
        why.what = base::FailureOfFile(why.severity, file.string(), error.what()).what;
    }
    why.file = file.string();
    return why;
}

} // namespace openhost
