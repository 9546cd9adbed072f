// What is known of the rows of a batch, kept while it runs.
// SPDX-License-Identifier: MIT

#include "batch/row_keeper.h"

#include "command.h"

#include <iterator>

#include <fmt/format.h>

namespace cli {

namespace fs = std::filesystem;

RowKeeper::RowKeeper(const fs::path& table, Need need) : _table(table)
{
    try {
        open();
    } catch (const StateError& error) {
        if (need == Need::Required)
            throw;
        _reason = error.what();
    }
    try {
        _locks = std::make_unique<RowLocks>(RowLocks::PlaceFor(table));
    } catch (const StateError& error) {
        if (need == Need::Required)
            throw;
        _told.insert(fmt::format("{}; so other programs may work on the same rows", error.what()));
    }
}

bool RowKeeper::take(const BatchRow& row)
{
    renewLocks();
    return !_locks || (_locks->take(row) && _taken.insert(&row).second);
}

void RowKeeper::release(const BatchRow& row)
{
    if (_locks && _taken.erase(&row) > 0)
        _locks->release(row);
}

bool RowKeeper::isHeld(const BatchRow& row)
{
    renewLocks();
    return !_locks || _taken.count(&row) > 0;
}

std::optional<RowState> RowKeeper::find(const BatchRow& row)
{
    try {
        return _state ? _state->find(row) : std::nullopt;
    } catch (const StateError& error) {
        _told.insert(error.what());
        return std::nullopt;
    }
}

const std::map<std::string, std::string>& RowKeeper::filesOfDone()
{
    if (_filesOfDone)
        return *_filesOfDone;
    _filesOfDone.emplace();
    try {
        if (_state)
            _filesOfDone = _state->filesOfDone();
    } catch (const StateError& error) {
        _told.insert(error.what());
    }
    return *_filesOfDone;
}

bool RowKeeper::keep(const BatchRow& row, const RowState& state)
{
    _states[&row] = &state;
    _waiting.insert(&row);
    write();
    return _waiting.count(&row) == 0;
}

base::Diagnostics RowKeeper::finish()
{
    if (!_state || !_waiting.empty())
        write();
    base::Diagnostics told;
    for (const std::string& what : _told)
        told.push_back({base::Severity::Warning, {}, {}, what});
    if (!_waiting.empty())
        told.push_back({base::Severity::Warning,
                        {},
                        {},
                        fmt::format("{}; so a later --resume does not know {} {}", _reason, _waiting.size(),
                                    _waiting.size() == 1 ? "row" : "rows")});
    return told;
}

void RowKeeper::open()
{
    _state = std::make_unique<BatchState>(BatchState::PlaceFor(_table));
}

void RowKeeper::write()
{
    try {
        if (_state && !_state->isInPlace()) {
            _state.reset();
            for (const auto& [row, state] : _states)
                _waiting.insert(row);
        }
        if (!_state)
            open();
        while (!_waiting.empty()) {
            const BatchRow& row = **_waiting.begin();
            _state->keep(row, *_states.at(&row));
            _waiting.erase(&row);
        }
    } catch (const StateError& error) {
        _reason = error.what();
    }
}

void RowKeeper::renewLocks()
{
    if (!_locks || _locks->isInPlace())
        return;
    const fs::path file = RowLocks::PlaceFor(_table);
    try {
        auto renewed = std::make_unique<RowLocks>(file);
        for (auto row = _taken.begin(); row != _taken.end();)
            row = renewed->take(**row) ? std::next(row) : _taken.erase(row);
        _locks = std::move(renewed);
        _told.insert(
            fmt::format("{}: was removed or replaced during the batch, and is kept anew", FileText(file)));
    } catch (const StateError& error) {
        _told.insert(fmt::format("{}; so other programs may work on the same rows", error.what()));
    }
}

} // namespace cli
