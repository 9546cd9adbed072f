// A database file that can be made anew at any time.
// SPDX-License-Identifier: MIT

#include "index_database.h"

#include <sqlite3.h>

namespace openhost {

namespace {

constexpr int patienceMs = 250;

IndexError::Kind KindOf(int code)
{
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return IndexError::Kind::Busy;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
    case SQLITE_ERROR: // other tables than ours
    case SQLITE_SCHEMA:
    case SQLITE_MISMATCH:
        return IndexError::Kind::Damaged;
    default:
        return IndexError::Kind::Useless;
    }
}

void Check(int code, sqlite3* database)
{
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        throw IndexError(KindOf(code), database ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

} // namespace

IndexDatabase::IndexDatabase(const std::filesystem::path& file, int version, const char* tables)
{
    const int code = sqlite3_open_v2(
        file.c_str(), &_database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        Check(code, _database);
        sqlite3_busy_timeout(_database, patienceMs);
        // Who reads does not wait for who writes, and the disk is not waited for at each change.
        run("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL");
        if (this->version() != version)
            makeTables(version, tables);
    } catch (...) {
        sqlite3_close(_database);
        throw;
    }
}

IndexDatabase::~IndexDatabase()
{
    sqlite3_close(_database);
}

void IndexDatabase::Remove(const std::filesystem::path& file)
{
    std::error_code ignored;
    for (const char* const ending : {"", "-wal", "-shm", "-journal"})
        std::filesystem::remove(file.string() + ending, ignored);
}

std::int64_t IndexDatabase::version()
{
    Statement statement(*this, "PRAGMA user_version");
    return statement.next() ? statement.number(0) : 0;
}

void IndexDatabase::makeTables(int version, const char* tables)
{
    run("BEGIN IMMEDIATE");
    // Another program may have been faster.
    if (this->version() != version) {
        run("DROP TABLE IF EXISTS head; DROP TABLE IF EXISTS folder");
        run(tables);
        run(("PRAGMA user_version=" + std::to_string(version)).c_str());
    }
    run("COMMIT");
}

void IndexDatabase::run(const char* sql)
{
    Check(sqlite3_exec(_database, sql, nullptr, nullptr, nullptr), _database);
}

std::int64_t IndexDatabase::lastId() const
{
    return sqlite3_last_insert_rowid(_database);
}

IndexDatabase::Statement::Statement(IndexDatabase& database, const char* sql) : _database(database._database)
{
    Check(sqlite3_prepare_v2(_database, sql, -1, &_statement, nullptr), _database);
}

IndexDatabase::Statement::~Statement()
{
    sqlite3_finalize(_statement);
}

bool IndexDatabase::Statement::next()
{
    const int code = sqlite3_step(_statement);
    Check(code, _database);
    return code == SQLITE_ROW;
}

std::int64_t IndexDatabase::Statement::number(int column) const
{
    return sqlite3_column_int64(_statement, column);
}

std::string_view IndexDatabase::Statement::bytes(int column) const
{
    const auto* const begin = static_cast<const char*>(sqlite3_column_blob(_statement, column));
    return begin ? std::string_view(begin, std::size_t(sqlite3_column_bytes(_statement, column)))
                 : std::string_view();
}

void IndexDatabase::Statement::restart()
{
    sqlite3_reset(_statement);
}

void IndexDatabase::Statement::bind(int index, std::int64_t value)
{
    Check(sqlite3_bind_int64(_statement, index, value), _database);
}

// As bytes, since names of files need not be texts.
void IndexDatabase::Statement::bind(int index, std::string_view value)
{
    Check(sqlite3_bind_blob(_statement, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC),
          _database);
}

} // namespace openhost
