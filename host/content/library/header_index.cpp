// What morph files say besides their displacements, kept from one run to the next.
// SPDX-License-Identifier: MIT

// oneTBB first: the toolkit's "emit" would hide a method of it.
#include <tbb/parallel_for.h>

#include "base/cancellation.h"
#include "base/reason.h"
#include "library/header_index.h"

#include "base/errors.h"
#include "dson/header_pack.h"
#include "index_database.h"
#include "openhost/diagnostics.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <unordered_map>
#include <utility>

#include <sys/stat.h>

#include <QStandardPaths>

namespace openhost {

namespace {

namespace fs = std::filesystem;

// Made of the sources that fill it: what others have read is not taken.
constexpr int indexVersion = GANTREL_INDEX_VERSION;

constexpr const char* tables = R"(
    CREATE TABLE folder(id INTEGER PRIMARY KEY, path BLOB NOT NULL UNIQUE);
    CREATE TABLE head(folder INTEGER NOT NULL, name BLOB NOT NULL, size INTEGER NOT NULL,
                      modified INTEGER NOT NULL, bytes BLOB NOT NULL, PRIMARY KEY(folder, name)) WITHOUT ROWID)";

/// Files that are packed together.
constexpr std::size_t batch = 4096;

/// Empty where there is none.
fs::path Place()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return folder.isEmpty() ? fs::path() : fs::path(folder.toStdString()) / "gantrel" / "morphs.sqlite";
}

void Tell(const std::string& what)
{
    Report({base::Severity::Note, Place().string(), {}, what});
}

/// With the slash behind it; the name is what follows.
std::string_view FolderOf(std::string_view file)
{
    return file.substr(0, file.rfind('/') + 1);
}

std::string_view NameOf(std::string_view file)
{
    return file.substr(FolderOf(file).size());
}

std::uint64_t SumOf(const std::string& key, std::string_view bytes)
{
    std::uint64_t sum = 0xcbf29ce484222325u;
    for (std::string_view part : {std::string_view(key), bytes})
        while (!part.empty()) {
            std::uint64_t word = 0;
            const std::size_t size = std::min(part.size(), sizeof word);
            std::memcpy(&word, part.data(), size);
            sum = (sum ^ word) * 0x100000001b3u;
            sum ^= sum >> 29; // which lets the high bytes count lower down, too
            part.remove_prefix(size);
        }
    return sum;
}

/// What belongs together in a row, besides the bytes.
std::string KeyOf(const std::string& file, const FileStamp& stamp)
{
    return file + '\n' + std::to_string(stamp.size) + '\n' + std::to_string(stamp.modified);
}

// A sum, then 'D' and a packed document or 'F' and why there is none.

std::string Pack(const HeaderReading& reading, const std::string& key)
{
    const std::string body =
        reading.document ? 'D' + dson::PackHeaders(*reading.document) : 'F' + reading.failure.what;
    const std::uint64_t sum = SumOf(key, body);
    std::string bytes(sizeof sum, '\0');
    std::memcpy(bytes.data(), &sum, sizeof sum);
    return bytes + body;
}

HeaderReading Unpack(std::string_view bytes, const std::string& key, const std::string& file)
{
    std::uint64_t sum = 0;
    if (bytes.size() <= sizeof sum)
        throw IndexError(IndexError::Kind::Damaged, "an entry is cut off");
    std::memcpy(&sum, bytes.data(), sizeof sum);
    const std::string_view body = bytes.substr(sizeof sum);
    // What it says was checked when it was packed.
    if (sum != SumOf(key, body))
        throw IndexError(IndexError::Kind::Damaged, "an entry has changed by itself");
    HeaderReading reading;
    if (body.front() == 'D')
        reading.document = std::make_shared<const dson::Document>(dson::UnpackHeaders(body.substr(1), file));
    else
        reading.failure = {base::Severity::Warning, file, {}, std::string(body.substr(1))};
    return reading;
}

bool MayBeKept(const HeaderIndex::File& file)
{
    const HeaderReading& reading = file.reading;
    const bool isWhole = reading.document ? dson::CanPackHeaders(*reading.document) : bool(reading);
    return file.isWanted && !file.isKept && reading.isLasting && isWhole && file.stamp &&
           file.stamp->isSettled;
}

/// Whether a folder is gone for good, and not with the disk that has the content directory.
bool IsGone(const fs::path& folder, const std::vector<fs::path>& directories)
{
    std::error_code error;
    if (fs::exists(folder, error) || error)
        return false;
    return std::none_of(directories.begin(), directories.end(), [&](const fs::path& directory) {
        const std::string above = directory.string() + '/';
        return folder.native().compare(0, above.size(), above) == 0 && !fs::exists(directory, error);
    });
}

} // namespace

std::optional<FileStamp> StampOf(const std::string& file)
{
    struct stat status;
    if (::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    using namespace std::chrono;
    FileStamp stamp;
    stamp.size = status.st_size;
    stamp.modified = std::int64_t(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    const std::int64_t now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    stamp.isSettled = std::abs(now - stamp.modified) > nanoseconds(seconds(2)).count();
    return stamp;
}

HeaderIndex::HeaderIndex() = default;
HeaderIndex::~HeaderIndex() = default;

template <class Work>
void HeaderIndex::guard(const Work& work)
{
    if (!_isUsable)
        return;
    try {
        work();
    } catch (const IndexError& error) {
        _database.reset();
        if (error.kind() == IndexError::Kind::Damaged) {
            IndexDatabase::Remove(Place());
            reopen(error);
        } else if (error.kind() == IndexError::Kind::Useless) {
            _isUsable = false;
            Tell(std::string("no index of morphs can be kept, so figures load more slowly: ") + error.what());
        }
    }
}

void HeaderIndex::open()
{
    const fs::path file = Place();
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    if (error || file.empty())
        throw IndexError(IndexError::Kind::Useless,
                         error ? base::ReasonOf(error) : "there is no cache folder");
    _database = std::make_unique<IndexDatabase>(file, indexVersion, tables);
}

void HeaderIndex::reopen(const IndexError& damage)
{
    try {
        open();
        Tell(std::string("the index of morphs was damaged and is made anew: ") + damage.what());
    } catch (const IndexError&) {
        _isUsable = false;
        Tell(std::string(
                 "the index of morphs is damaged and cannot be made anew, so figures load more slowly: ") +
             damage.what());
    }
}

void HeaderIndex::fill(std::vector<File>& files, const std::vector<fs::path>& directories)
{
    _goneFiles.clear();
    _goneFolders.clear();
    bool isWhole = false;
    guard([&] {
        open();
        std::unordered_map<std::string_view, std::vector<File*>> byFolder;
        for (File& file : files)
            byFolder[FolderOf(*file.path)].push_back(&file);
        for (const auto& [folder, inIt] : byFolder)
            fillFolder(folder, inIt);
        noteGoneFolders(directories);
        isWhole = true;
    });
    if (isWhole)
        return;
    _goneFiles.clear();
    _goneFolders.clear();
    for (File& file : files)
        file.isKept = false;
}

void HeaderIndex::fillFolder(std::string_view folder, const std::vector<File*>& files)
{
    std::unordered_map<std::string_view, File*> byName;
    for (File* const file : files)
        byName.emplace(NameOf(*file->path), file);
    IndexDatabase::Statement rows(*_database,
                                  "SELECT folder, name, size, modified, bytes FROM head WHERE folder = "
                                  "(SELECT id FROM folder WHERE path = ?)");
    rows.with(folder);
    while (rows.next()) {
        const auto found = byName.find(rows.bytes(1));
        if (found == byName.end()) {
            _goneFiles.emplace_back(rows.number(0), rows.bytes(1));
            continue;
        }
        File& file = *found->second;
        FileStamp stamp;
        stamp.size = rows.number(2);
        stamp.modified = rows.number(3);
        if (!file.isWanted || !file.stamp || !(*file.stamp == stamp))
            continue;
        // By this thread alone: what it lets go of later can be had again for the figure's own parts.
        file.reading = Unpack(rows.bytes(4), KeyOf(*file.path, stamp), *file.path);
        file.isKept = true;
    }
}

void HeaderIndex::noteGoneFolders(const std::vector<fs::path>& directories)
{
    if (std::exchange(_hasLookedForGone, true))
        return;
    IndexDatabase::Statement rows(*_database, "SELECT id, path FROM folder");
    while (rows.next())
        if (IsGone(fs::path(rows.bytes(1)), directories))
            _goneFolders.push_back(rows.number(0));
}

void HeaderIndex::update(std::vector<File>& files)
{
    const bool hasNew = std::any_of(files.begin(), files.end(), MayBeKept);
    if (_database && (hasNew || !_goneFiles.empty() || !_goneFolders.empty()))
        guard([&] {
            _database->run("BEGIN IMMEDIATE");
            dropGone();
            keepNew(files);
            _database->run("COMMIT");
            for (File& file : files)
                file.isKept = file.isKept || MayBeKept(file);
        });
    _database.reset();
}

void HeaderIndex::dropGone()
{
    IndexDatabase::Statement file(*_database, "DELETE FROM head WHERE folder = ? AND name = ?");
    for (const auto& [folder, name] : _goneFiles)
        file.with(folder, name).next();
    IndexDatabase::Statement heads(*_database, "DELETE FROM head WHERE folder = ?");
    IndexDatabase::Statement itself(*_database, "DELETE FROM folder WHERE id = ?");
    for (const std::int64_t folder : _goneFolders) {
        heads.with(folder).next();
        itself.with(folder).next();
    }
}

void HeaderIndex::keepNew(const std::vector<File>& files)
{
    IndexDatabase::Statement row(*_database, "INSERT OR REPLACE INTO head VALUES(?, ?, ?, ?, ?)");
    std::string_view last;
    std::int64_t folder = 0;
    std::vector<std::string> packed(batch);
    for (std::size_t begin = 0; begin < files.size(); begin += batch) {
        const std::size_t end = std::min(begin + batch, files.size());
        tbb::parallel_for(begin, end, [&](std::size_t i) {
            base::ThrowIfCancelled();
            const File& file = files[i];
            packed[i - begin] =
                MayBeKept(file) ? Pack(file.reading, KeyOf(*file.path, *file.stamp)) : std::string();
        });
        for (std::size_t i = begin; i < end; ++i) {
            if (packed[i - begin].empty())
                continue;
            const std::string& path = *files[i].path;
            if (std::exchange(last, FolderOf(path)) != FolderOf(path))
                folder = folderId(last);
            row.with(folder, NameOf(path), files[i].stamp->size, files[i].stamp->modified, packed[i - begin])
                .next();
        }
    }
}

std::int64_t HeaderIndex::folderId(std::string_view path)
{
    IndexDatabase::Statement insertion(*_database, "INSERT OR IGNORE INTO folder(path) VALUES(?)");
    insertion.with(path).next();
    IndexDatabase::Statement row(*_database, "SELECT id FROM folder WHERE path = ?");
    return row.with(path).next() ? row.number(0) : 0;
}

} // namespace openhost
