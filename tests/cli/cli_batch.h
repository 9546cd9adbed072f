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
    std::string table() const { return workspace.path(room + "jobs.csv"); }
    std::vector<std::string> batchArguments(const std::vector<std::string>& more = {}) const;
    ProgramResult batch(const std::vector<std::string>& more = {}) const;
    /// What `--json` says; also of a batch in which rows fail.
    nlohmann::json batchReport(const std::vector<std::string>& more = {}) const;

    /// The same of a batch with one worker and a log, during whose next row something happens.
    nlohmann::json reportWith(const std::vector<std::string>& more,
                              const std::function<void()>& happens) const;
    std::string log() const { return workspace.path(room + "log.jsonl"); }

    /// Files of the save library by name, without the time at which they were written.
    Contents saved() const;
    /// What single conversions of the first rows save.
    Contents savedOneByOne(std::size_t rows) const;
    /// Takes away what batches have saved and what they know of it.
    void forgetRuns() const;
    /// A batch of the table that is killed at so many places, and goes on with --resume.
    void expectCompletedWhereverCutOff(const Contents& expected, std::size_t places) const;
    std::string savedFile(const std::string& name) const;
    static std::string nameOf(std::size_t row) { return std::string(1, static_cast<char>('A' + row)); }

    std::string room; ///< folder of the workspace, with a slash, for the table and what is saved
};

/// Of what a batch reports.
void ExpectCounts(const nlohmann::json& report, int done, int skipped, int failed);

/// Processes that work for a batch that this program has started, as long as they live.
std::vector<pid_t> WorkersOfBatches();
/// Program and arguments, each with a zero behind it.
std::string CommandOf(pid_t process);
