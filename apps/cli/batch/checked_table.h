// Whether a table is known to be right as a whole.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/row_command.h"

#include <filesystem>
#include <string>

namespace cli {

/// Beside a table stands what it was like when all of it was found right. Then a program that converts a few
/// of its rows need not look at all others, of which there may be a hundred thousand, on a disk that a
/// hundred machines share.
class CheckedTable {
public:
    static std::filesystem::path PlaceFor(const std::filesystem::path& table);

    CheckedTable(const std::filesystem::path& table, const std::string& text, const JobRow& defaults);

    bool isKnown() const;
    /// It is only slower next time where this cannot be written.
    void remember() const;

private:
    std::filesystem::path _file;
    std::string _sum;
};

} // namespace cli
