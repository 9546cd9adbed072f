// A database file that can be made anew at any time.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace openhost {

class IndexError : public std::runtime_error {
public:
    enum class Kind {
        Busy,    ///< another program has it
        Damaged, ///< nothing in it can be relied on
        Useless  ///< no place to read and write
    };
    IndexError(Kind kind, const std::string& text) : std::runtime_error(text), _kind(kind) {}
    Kind kind() const { return _kind; }

private:
    Kind _kind;
};

/// Everything throws IndexError. Statements must not outlive it.
class IndexDatabase {
public:
    /// Opens or makes it. Other programs that write are waited for briefly.
    /// @param version  what another version made is dropped
    /// @param tables   SQL that makes the tables "folder" and "head"
    IndexDatabase(const std::filesystem::path& file, int version, const char* tables);
    ~IndexDatabase();
    IndexDatabase(const IndexDatabase&) = delete;
    IndexDatabase& operator=(const IndexDatabase&) = delete;

    /// With what other programs may have beside it.
    static void Remove(const std::filesystem::path& file);

    class Statement {
    public:
        Statement(IndexDatabase& database, const char* sql);
        ~Statement();
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        /// The values of the parameters, the first first; texts must live until the next call.
        template <class... Values>
        Statement& with(const Values&... values)
        {
            restart();
            int index = 0;
            (bind(++index, values), ...);
            return *this;
        }
        bool next(); ///< false at the end
        std::int64_t number(int column) const;
        std::string_view bytes(int column) const; ///< until next()

    private:
        void restart();
        void bind(int index, std::int64_t value);
        void bind(int index, std::string_view value);

        sqlite3* _database;
        sqlite3_stmt* _statement = nullptr;
    };

    void run(const char* sql);
    std::int64_t lastId() const;

private:
    std::int64_t version();
    void makeTables(int version, const char* tables);

    sqlite3* _database = nullptr;
};

} // namespace openhost
