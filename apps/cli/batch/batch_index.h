// All rows of a batch on one page.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_results.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace cli {

/// What stands on the page besides the rows.
struct BatchFacts {
    std::string table, command;
    double seconds = 0.0;
    bool isOfRows = false; ///< that is the time of all rows together, and not that of the run
    std::vector<std::pair<std::string, std::string>> settings; ///< name and value
    base::Diagnostics diagnostics;
    bool wasInterrupted = false;
    std::size_t rowsNotBegun = 0;
};

/// Gathers the rows as their results come; of many it holds little of each, and pictures of the worst only.
class BatchIndex {
public:
    /// Of a row that was heard of before the new result counts.
    /// @param earlier  of a row that was skipped: what BriefOf() said when it was done; null for nothing
    void add(const RowResult& result, const Json& earlier = nullptr);

    /// Lets go of rows that turned out to be others'; no more are added then.
    void keepOnly(const std::vector<RowResult>& results);
    std::size_t size() const { return _rows.size(); }

    /// @throws base::IoError  the file cannot be written
    void write(const std::filesystem::path& file, const BatchFacts& facts) const;

private:
    struct Row {
        std::size_t number = 0, line = 0;
        std::size_t folder = 0; ///< of the source; of _texts
        std::string file, name, error, page, picture;
        std::size_t kind = 0, status = 0; ///< of _texts
        std::optional<double> mean, p95, max, seconds, memory;
        std::optional<std::size_t> morphs;
        std::size_t leftOut = 0, warningCount = 0;
        std::vector<std::size_t> warnings; ///< of _texts
    };

    std::size_t textOf(const std::string& text);
    void addWarnings(Row& row, const Json& warnings);
    void keepWorstPictures(std::size_t row);
    Json describe(const Row& row, const std::filesystem::path& folder) const;

    std::vector<Row> _rows;
    std::map<std::size_t, std::size_t> _byNumber; ///< their indices
    std::vector<std::string> _texts;              ///< each once, as rows have many in common
    std::map<std::string, std::size_t> _textIndex;
    std::set<std::pair<double, std::size_t>> _pictured; ///< distance and index of the rows with pictures
    std::size_t _warningBytes = 0;
    std::size_t _untoldWarnings = 0, _droppedPictures = 0;
};

} // namespace cli
