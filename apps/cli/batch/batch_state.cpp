// What is known of the rows of a batch from one run to the next.
// SPDX-License-Identifier: MIT

#include "batch/batch_state.h"

#include "base/cancellation.h"
#include "base/errors.h"
#include "base/input_file.h"
#include "base/reason.h"
#include "command.h"
#include "dials.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <iterator>

#include <QCryptographicHash>
#include <fcntl.h>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

/// Another version is not read; "gntb" in the file's head tells it from other databases.
constexpr int stateVersion = 3, stateMark = 0x676e7462;
constexpr const char* tables =
    "CREATE TABLE row(key TEXT PRIMARY KEY, step INTEGER NOT NULL, inputs TEXT NOT NULL, outputs TEXT NOT "
    "NULL, result TEXT NOT NULL DEFAULT '', files TEXT NOT NULL DEFAULT '[]') WITHOUT ROWID";
/// The first version knew no results, and the second none of the files that a row is made from.
constexpr const char* addedByVersion2 = "ALTER TABLE row ADD COLUMN result TEXT NOT NULL DEFAULT ''";
constexpr const char* addedByVersion3 =
    "ALTER TABLE row ADD COLUMN files TEXT NOT NULL DEFAULT '[]'; PRAGMA user_version=3";
/// How often, and for how long in all, another program's change is waited for: a farm's tasks write one after
/// the other.
constexpr int lookMs = 20, patienceMs = 60000;

/// @return whether to look again
int WaitForOthers(void* /*unused*/, int looks)
{
    if (base::IsCancelled() || looks * lookMs >= patienceMs)
        return 0;
    sqlite3_sleep(lookMs);
    return 1;
}

std::string HexOf(const QCryptographicHash& hash)
{
    return hash.result().toHex().toStdString();
}

void Add(QCryptographicHash& hash, const std::string& text)
{
    hash.addData(text.c_str(), static_cast<int>(text.size() + 1)); // the zero tells where it ends
}

std::string SumOf(const std::vector<std::string>& texts)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string& text : texts)
        Add(hash, text);
    return HexOf(hash);
}

int OpenToWrite(const fs::path& file)
{
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw StateError(fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(errno)));
    return descriptor;
}

/// SQLite tries to read what it may not write, and tells why that failed.
void CheckOpensToWrite(const fs::path& file)
{
    close(OpenToWrite(file));
}

bool IsStill(const struct stat& former, const fs::path& file)
{
    struct stat now {};
    return stat(file.c_str(), &now) == 0 && now.st_dev == former.st_dev && now.st_ino == former.st_ino;
}

Json Written(const KeptFiles& files)
{
    Json list = Json::array();
    for (const auto& [file, sum] : files)
        list.push_back({FileText(file), sum});
    return list;
}

Json Written(const FilesRead& files)
{
    Json list = Json::array();
    for (const auto& read : files)
        list.push_back({FileText(read->file), read->stamp, read->sum});
    return list;
}

std::string Text(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

FilesRead FilesReadIn(const std::string& text)
{
    try {
        FilesRead files;
        for (const Json& one : Json::parse(text))
            files.push_back(
                std::make_shared<FileRead>(FileRead{one.at(0).get<std::string>(), one.at(1), one.at(2)}));
        return files;
    } catch (const Json::exception&) {
        throw StateError("an entry is damaged");
    }
}

KeptFiles FilesIn(const std::string& text)
{
    try {
        KeptFiles files;
        for (const Json& one : Json::parse(text))
            files.emplace_back(one.at(0).get<std::string>(), one.at(1).get<std::string>());
        return files;
    } catch (const Json::exception&) {
        throw StateError("an entry is damaged");
    }
}

} // namespace

std::string SumOfFile(const fs::path& path)
{
    std::error_code unknown;
    if (!fs::is_regular_file(path, unknown))
        return {};
    try {
        base::InputFile file(path);
        QCryptographicHash hash(QCryptographicHash::Sha256);
        std::vector<char> piece(1 << 16);
        while (const std::size_t count = file.read(piece.data(), piece.size()))
            hash.addData(piece.data(), static_cast<int>(count));
        return HexOf(hash);
    } catch (const base::Error&) {
        return {};
    }
}

KeptFiles DescribeFiles(const std::vector<fs::path>& files)
{
    KeptFiles kept;
    for (const fs::path& file : files)
        kept.emplace_back(file, SumOfFile(file));
    return kept;
}

bool AreUnchanged(const KeptFiles& files)
{
    return std::all_of(files.begin(), files.end(), [](const auto& file) {
        std::error_code error;
        return !fs::exists(file.first, error) || SumOfFile(file.first) == file.second;
    });
}

bool AreThere(const KeptFiles& files)
{
    return std::all_of(files.begin(), files.end(), [](const auto& file) {
        std::error_code error;
        return fs::exists(file.first, error);
    });
}

bool AreKnown(const KeptFiles& files)
{
    return std::none_of(files.begin(), files.end(), [](const auto& file) { return file.second.empty(); });
}

std::string KeyOf(const BatchRow& row)
{
    return SumOf({row.identity});
}

std::string InputsOf(const BatchRow& row)
{
    std::vector<std::string> inputs{GANTREL_VERSION, SumOfFile(row.source), SumOfFile(row.target)};
    if (!row.list.empty())
        inputs.push_back(SumOfFile(row.list));
    // Whether it may replace something makes no other shape.
    std::copy_if(
        row.arguments.begin(), row.arguments.end(), std::back_inserter(inputs),
        [](const std::string& argument) { return argument != "--overwrite" && argument != "--keep-temp"; });
    return SumOf(inputs);
}

struct BatchState::Impl {
    explicit Impl(fs::path path) : file(std::move(path)) {}
    ~Impl() { sqlite3_close(database); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void check(int code) const
    {
        if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
            throw StateError(fmt::format("{}: {}", FileText(file), reasonOf(code)));
    }
    /// The system's where it was asked, as SQLite's is "disk I/O error" for all of them.
    std::string reasonOf(int code) const
    {
        constexpr int kindOfError = 0xff;
        const int kind = code & kindOfError;
        if (kind == SQLITE_FULL)
            return base::ReasonOf(ENOSPC);
        if (!database)
            return sqlite3_errstr(code);
        const int error = sqlite3_system_errno(database);
        return (kind == SQLITE_IOERR || kind == SQLITE_CANTOPEN) && error != 0 ? base::ReasonOf(error)
                                                                               : sqlite3_errmsg(database);
    }
    void run(const std::string& sql) const
    {
        check(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr));
    }

    fs::path file;
    sqlite3* database = nullptr;
    struct stat made {}; ///< the file as it was opened
};

namespace {

class Statement {
public:
    template <class Owner>
    Statement(const Owner& owner, const char* sql, const std::vector<std::string>& values)
        : _check([&owner](int code) { owner.check(code); })
    {
        _check(sqlite3_prepare_v2(owner.database, sql, -1, &_statement, nullptr));
        int index = 0;
        for (const std::string& value : values)
            _check(sqlite3_bind_text(_statement, ++index, value.data(), static_cast<int>(value.size()),
                                     SQLITE_TRANSIENT));
    }
    ~Statement() { sqlite3_finalize(_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool next()
    {
        const int code = sqlite3_step(_statement);
        _check(code);
        return code == SQLITE_ROW;
    }
    int number(int column) const { return sqlite3_column_int(_statement, column); }
    std::string text(int column) const
    {
        const auto* const begin = reinterpret_cast<const char*>(sqlite3_column_text(_statement, column));
        return begin ? std::string(begin, static_cast<std::size_t>(sqlite3_column_bytes(_statement, column)))
                     : std::string();
    }

private:
    std::function<void(int)> _check;
    sqlite3_stmt* _statement = nullptr;
};

template <class Owner>
int NumberOf(const Owner& owner, const char* pragma)
{
    Statement statement(owner, pragma, {});
    return statement.next() ? statement.number(0) : 0;
}

} // namespace

fs::path BatchState::PlaceFor(const fs::path& table)
{
    return table.native() + ".gantrel-batch";
}

BatchState::BatchState(const fs::path& file) : _impl(std::make_unique<Impl>(file))
{
    CheckOpensToWrite(file);
    _impl->check(sqlite3_open_v2(file.c_str(), &_impl->database,
                                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr));
    sqlite3_busy_handler(_impl->database, WaitForOthers, nullptr);
    // Logs beside the file are of no use where several machines share the folder.
    _impl->run("PRAGMA journal_mode=DELETE; BEGIN IMMEDIATE");
    const int mark = NumberOf(*_impl, "PRAGMA application_id");
    const int version = NumberOf(*_impl, "PRAGMA user_version");
    const bool isNew = NumberOf(*_impl, "SELECT count(*) FROM sqlite_master") == 0;
    if (isNew)
        _impl->run(fmt::format("PRAGMA application_id={}; PRAGMA user_version={}; {}", stateMark,
                               stateVersion, tables));
    else if (mark == stateMark && version == 1)
        _impl->run(fmt::format("{}; {}", addedByVersion2, addedByVersion3));
    else if (mark == stateMark && version == 2)
        _impl->run(addedByVersion3);
    else if (mark != stateMark || version != stateVersion)
        throw StateError(FileText(file) + ": is not the state of a batch of this version of Gantrel");
    _impl->run("COMMIT");
    stat(file.c_str(), &_impl->made);
}

BatchState::~BatchState() = default;

std::optional<RowState> BatchState::find(const BatchRow& row)
{
    Statement found(*_impl, "SELECT step, inputs, outputs, files, result FROM row WHERE key = ?",
                    {KeyOf(row)});
    if (!found.next())
        return std::nullopt;
    const int step = found.number(0);
    if (step < 0 || step > static_cast<int>(RowState::Step::Failed))
        throw StateError(FileText(_impl->file) + ": an entry is damaged");
    return RowState{static_cast<RowState::Step>(step), found.text(1), FilesIn(found.text(2)),
                    FilesReadIn(found.text(3)), found.text(4)};
}

std::map<std::string, std::string> BatchState::filesOfDone() const
{
    std::map<std::string, std::string> keys;
    Statement done(*_impl, "SELECT key, outputs FROM row WHERE step = ?",
                   {std::to_string(static_cast<int>(RowState::Step::Done))});
    while (done.next())
        for (const auto& file : FilesIn(done.text(1)))
            keys.emplace(Folded(FileText(file.first)), done.text(0));
    return keys;
}

void BatchState::keep(const BatchRow& row, const RowState& state)
{
    Statement(
        *_impl,
        "INSERT OR REPLACE INTO row(key, step, inputs, outputs, files, result) VALUES(?, ?, ?, ?, ?, ?)",
        {KeyOf(row), std::to_string(static_cast<int>(state.step)), state.inputs, Text(Written(state.outputs)),
         Text(Written(state.files)), state.result})
        .next();
}

bool BatchState::isInPlace() const
{
    return IsStill(_impl->made, _impl->file);
}

fs::path RowLocks::PlaceFor(const fs::path& table)
{
    return table.native() + ".gantrel-batch-locks";
}

RowLocks::RowLocks(const fs::path& file) : _file(file), _descriptor(OpenToWrite(file)) {}

RowLocks::~RowLocks()
{
    close(_descriptor);
}

namespace {

/// One byte of the file stands for a row; the file itself stays empty.
int SetLock(int descriptor, const BatchRow& row, short type)
{
    constexpr int digits = 15;
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(std::strtoll(KeyOf(row).substr(0, digits).c_str(), nullptr, 16));
    lock.l_len = 1;
    return fcntl(descriptor, F_OFD_SETLK, &lock);
}

} // namespace

bool RowLocks::take(const BatchRow& row) const
{
    // Disks that know no locks are used by one program at a time anyway.
    return SetLock(_descriptor, row, F_WRLCK) == 0 || (errno != EAGAIN && errno != EACCES);
}

void RowLocks::release(const BatchRow& row) const
{
    SetLock(_descriptor, row, F_UNLCK);
}

bool RowLocks::isInPlace() const
{
    struct stat opened {};
    return fstat(_descriptor, &opened) == 0 && IsStill(opened, _file);
}

} // namespace cli
