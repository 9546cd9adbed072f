// What is known of the rows of a batch, kept while it runs.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "batch/batch_state.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace cli {

/// State and locks beside the table. What a disk refuses for a moment, or what somebody takes away, is kept
/// with what follows, or at the end.
class RowKeeper {
public:
    enum class Need {
        Wanted,  ///< where none can be kept, that is told in the end
        Required ///< rows that are done are to be known
    };

    /// @throws StateError  it is required, and cannot be opened
    RowKeeper(const std::filesystem::path& table, Need need);

    bool take(const BatchRow& row); ///< false while another program has it
    void release(const BatchRow& row);
    /// False when another program has taken it meanwhile, as it can where somebody removes the file of locks.
    bool isHeld(const BatchRow& row);

    std::optional<RowState> find(const BatchRow& row);
    /// As BatchState has them, when they are asked for the first time.
    const std::map<std::string, std::string>& filesOfDone();
    /// @param state  is kept as it is when that succeeds, and has to outlive this
    /// @return whether it is on disk
    bool keep(const BatchRow& row, const RowState& state);
    bool isReliable() const { return _state && _waiting.empty(); }

    /// Tries a last time.
    /// @return what a later run will not know, and why
    base::Diagnostics finish();

private:
    void open();
    void write();
    void renewLocks();

    std::filesystem::path _table;
    std::unique_ptr<BatchState> _state;
    std::unique_ptr<RowLocks> _locks;
    std::map<const BatchRow*, const RowState*> _states; ///< of this run
    std::set<const BatchRow*> _waiting;                 ///< of these, those that could not be kept yet
    std::set<const BatchRow*> _taken;
    std::optional<std::map<std::string, std::string>> _filesOfDone;
    std::string _reason;         ///< why they could not
    std::set<std::string> _told; ///< that has nothing to do with single rows
};

} // namespace cli
