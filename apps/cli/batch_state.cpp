// What is known of the rows of a batch from one run to the next.
// SPDX-License-Identifier: MIT

#include "batch_state.h"

#include "base/errors.h"
#include "base/input_file.h"
#include "base/reason.h"
#include "command.h"

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
#include <unistd.h>

namespace cli {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

/// Another version is not read; "gntb" in the file's head tells it from other databases.
constexpr int stateVersion = 1, stateMark = 0x676e7462;
constexpr const char* tables =
    "CREATE TABLE row(key TEXT PRIMARY KEY, step INTEGER NOT NULL, inputs TEXT NOT NULL, outputs TEXT NOT "
    "NULL) WITHOUT ROWID";
/// How long another program's change is waited for.
constexpr int patienceMs = 5000;

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

/// Empty for one that cannot be read, or would be empty afterwards as a pipe is.
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

std::string KeyOf(const BatchRow& row)
{
    return SumOf({row.identity});
}

Json Written(const KeptFiles& files)
{
    Json list = Json::array();
    for (const auto& [file, sum] : files)
        list.push_back({FileText(file), sum});
    return list;
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

std::string InputsOf(const BatchRow& row)
{
    std::vector<std::string> inputs{GANTREL_VERSION, SumOfFile(row.source), SumOfFile(row.target)};
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
            throw StateError(fmt::format("{}: {}", FileText(file),
                                         database ? sqlite3_errmsg(database) : sqlite3_errstr(code)));
    }
    void run(const std::string& sql) const
    {
        check(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr));
    }

    fs::path file;
    sqlite3* database = nullptr;
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
    _impl->check(sqlite3_open_v2(file.c_str(), &_impl->database,
                                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr));
    sqlite3_busy_timeout(_impl->database, patienceMs);
    // Logs beside the file are of no use where several machines share the folder.
    _impl->run("PRAGMA journal_mode=DELETE; BEGIN IMMEDIATE");
    const int mark = NumberOf(*_impl, "PRAGMA application_id");
    const int version = NumberOf(*_impl, "PRAGMA user_version");
    const bool isNew = NumberOf(*_impl, "SELECT count(*) FROM sqlite_master") == 0;
    if (isNew)
        _impl->run(fmt::format("PRAGMA application_id={}; PRAGMA user_version={}; {}", stateMark,
                               stateVersion, tables));
    else if (mark != stateMark || version != stateVersion)
        throw StateError(FileText(file) + ": is not the state of a batch of this version of Gantrel");
    _impl->run("COMMIT");
}

BatchState::~BatchState() = default;

std::optional<RowState> BatchState::find(const BatchRow& row)
{
    Statement found(*_impl, "SELECT step, inputs, outputs FROM row WHERE key = ?", {KeyOf(row)});
    if (!found.next())
        return std::nullopt;
    const int step = found.number(0);
    if (step < 0 || step > static_cast<int>(RowState::Step::Failed))
        throw StateError(FileText(_impl->file) + ": an entry is damaged");
    return RowState{static_cast<RowState::Step>(step), found.text(1), FilesIn(found.text(2))};
}

void BatchState::keep(const BatchRow& row, const RowState& state)
{
    Statement(*_impl, "INSERT OR REPLACE INTO row VALUES(?, ?, ?, ?)",
              {KeyOf(row), std::to_string(static_cast<int>(state.step)), state.inputs,
               Written(state.outputs).dump(-1, ' ', false, Json::error_handler_t::replace)})
        .next();
}

fs::path RowLocks::PlaceFor(const fs::path& table)
{
    return table.native() + ".gantrel-batch-locks";
}

RowLocks::RowLocks(const fs::path& file) : _descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666))
{
    if (_descriptor < 0)
        throw StateError(fmt::format("cannot write {}: {}", FileText(file), base::ReasonOf(errno)));
}

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

} // namespace cli
