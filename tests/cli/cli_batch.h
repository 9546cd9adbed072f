// Running `gantrel batch` on a small library.
// SPDX-License-Identifier: MIT

#pragma once

#include "cli_conversion.h"

#include <functional>
#include <map>

#include <sys/types.h>

/// Tables of conversions of the library's source, which differ in how far "Wide" and "Bulge" are turned.
class BatchTest : public ConversionTest {
protected:
    using Contents = std::map<std::string, std::string>;

    BatchTest();

    /// A table of rows named "A", "B" and so on.
    void writeTable(std::size_t rows) const;
    std::string table() const { return workspace.path("jobs.csv"); }
    std::vector<std::string> batchArguments(const std::vector<std::string>& more = {}) const;
    ProgramResult batch(const std::vector<std::string>& more = {}) const;
    /// What `--json` says; also of a batch in which rows fail.
    nlohmann::json batchReport(const std::vector<std::string>& more = {}) const;

    /// Files of the save library by name, without the time at which they were written.
    Contents saved() const;
    /// What single conversions of the first rows save.
    Contents savedOneByOne(std::size_t rows) const;
    std::string savedFile(const std::string& name) const;
    static std::string nameOf(std::size_t row) { return std::string(1, static_cast<char>('A' + row)); }
};

/// Processes that work for a batch that this program has started, as long as they live.
std::vector<pid_t> WorkersOfBatches();
