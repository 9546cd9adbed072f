// What is known of the rows of a batch from one run to the next.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_plan.h"
#include "batch/files_read.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace cli {

class StateError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Files that a row has written, with what tells that they are unchanged.
using KeptFiles = std::vector<std::pair<std::filesystem::path, std::string>>;

/// Empty for one that cannot be read, or would be empty afterwards as a pipe is.
std::string SumOfFile(const std::filesystem::path& path);

KeptFiles DescribeFiles(const std::vector<std::filesystem::path>& files);
/// Whether those that are there still are as they were.
bool AreUnchanged(const KeptFiles& files);
bool AreThere(const KeptFiles& files);
/// Whether all could be read.
bool AreKnown(const KeptFiles& files);

/// How far a row has come.
struct RowState {
    enum class Step {
        Saving, ///< its files were about to be put in place, over none but its own
        Done,
        Failed
    };
    Step step = Step::Failed;
    std::string inputs; ///< InputsOf() the row when it was begun
    KeptFiles outputs;
    FilesRead files;    ///< of the libraries, that it is made from; nothing where that is not known
    std::string result; ///< of one that is done, for whoever shows all rows later; empty for none
};

/// What a row is known by.
std::string KeyOf(const BatchRow& row);

/// What a row's result depends on: what it says, the program's version, and what the files hold that it
/// names.
std::string InputsOf(const BatchRow& row);

/// A database beside the table. Rows are known by what they write, so that a table may change between two
/// runs. Each change is on disk when the call returns, and several programs may use it. All throw StateError.
class BatchState {
public:
    static std::filesystem::path PlaceFor(const std::filesystem::path& table);

    /// Opens or makes it.
    explicit BatchState(const std::filesystem::path& file);
    ~BatchState();
    BatchState(const BatchState&) = delete;
    BatchState& operator=(const BatchState&) = delete;

    std::optional<RowState> find(const BatchRow& row);
    /// Of the rows that are done: the files of each without case, with the row's key.
    std::map<std::string, std::string> filesOfDone() const;
    void keep(const BatchRow& row, const RowState& state);
    /// Nobody has removed or replaced it since.
    bool isInPlace() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

/// Rows that this program is at work on; others, also on other machines that share the folder, leave them
/// alone meanwhile.
class RowLocks {
public:
    static std::filesystem::path PlaceFor(const std::filesystem::path& table);

    /// @throws StateError  the file that stands for the rows cannot be made
    explicit RowLocks(const std::filesystem::path& file);
    ~RowLocks();
    RowLocks(const RowLocks&) = delete;
    RowLocks& operator=(const RowLocks&) = delete;

    bool take(const BatchRow& row) const; ///< false while another program has it
    void release(const BatchRow& row) const;
    /// Nobody has removed or replaced the file since; otherwise others take rows in another one.
    bool isInPlace() const;

private:
    std::filesystem::path _file;
    int _descriptor;
};

} // namespace cli
