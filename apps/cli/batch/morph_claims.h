// Which row of a run has which files, where rows learn their files only when figures are loaded.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_plan.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// Of several rows that would write a file, the uppermost does, whatever comes first. Rows are meant by their
/// indices.
class MorphClaims {
public:
    explicit MorphClaims(const std::vector<BatchRow>& rows) : _rows(rows) {}

    void begin(std::size_t row); ///< at each try
    void end(std::size_t row);

    /// Whether a row above it that is at work may still turn out to write one of the files: it has not said
    /// its own yet, or has said that one, but may leave it out.
    bool hasToWait(std::size_t row, const std::vector<std::string>& files) const;

    /// @return the first of the files that another row has, and which row; nothing when all are the row's
    std::optional<std::pair<std::string, std::size_t>> claim(std::size_t row,
                                                             const std::vector<std::string>& files);
    void letGo(std::size_t row, const std::string& file);

private:
    bool mayHave(std::size_t row, const std::vector<std::string>& files) const;

    const std::vector<BatchRow>& _rows;
    std::map<std::string, std::size_t> _owners; ///< of files, without case: their rows
    std::set<std::size_t> _atWork, _silent;     ///< those of the first that have not said their files
};

} // namespace cli
