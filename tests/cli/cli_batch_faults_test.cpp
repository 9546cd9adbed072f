// Batches on disks that fail anywhere: nothing is lost, and a later run completes it.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_traced_program.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// What a call is about, without the parts of names that are others in each run.
std::string Subject(const std::string& call)
{
    const std::string name = fs::path(call).filename().string();
    return call.substr(0, call.find(' ')) + ' ' + name.substr(0, name.find(".part"));
}

/// Table, state, locks, log and what is saved lie in a folder of their own, and the calls for it fail; those
/// for the library and for temporary files do so in tests of single conversions.
class BatchFaults : public BatchTest {
protected:
    void SetUp() override
    {
        room = "job/";
        fs::create_directory(workspace.path(room));
        writeTable(2);
        _expected = savedOneByOne(2);
    }
    void TearDown() override
    {
        RecordProperty("calls", static_cast<int>(_whole.calls.size()));
        RecordProperty("tries", static_cast<int>(_tries));
    }

    void runWhole(Counted counted)
    {
        forgetRuns();
        _whole = run({}, counted);
        EXPECT_EQ(_whole.exitCode, 0) << _whole.err;
        EXPECT_TRUE(saved() == _expected);
    }
    TracedProgram run(const Interference& interference = {}, Counted counted = Counted::Changes) const
    {
        return RunProgramTraced(workspace.path(room), batchArguments({"--workers", "1", "--log", log()}),
                                interference, counted);
    }
    void tryAll(Counted counted, const std::vector<int>& errors)
    {
        for (std::size_t at = 1; at <= _whole.calls.size(); ++at) {
            if (!isTried(at))
                continue;
            for (const int error : ErrorsFor(_tries, errors)) {
                forgetRuns();
                const TracedProgram failed = run({at, error}, counted);
                if (failed.calls.size() >= at) // several threads read, and not always the same
                    expectNothingLost(failed, counted, failed.calls[at - 1], error);
            }
        }
    }
    void expectNothingLost(const TracedProgram& failed, Counted counted, const std::string& call,
                           int error) const
    {
        const std::string what = call + ": " + std::strerror(error) + ": " + failed.err + failed.out;
        SCOPED_TRACE(what);
        if (failed.exitCode == 0) {
            expectAllSaved(call);
            const ProgramResult merged = RunProgram({"batch", "--merge", log()});
            EXPECT_EQ(merged.out.find("rows             2\ndone             2\n"), 0u) << merged.out;
        } else {
            EXPECT_EQ(failed.exitCode, 1);
            EXPECT_NE((failed.err + failed.out).find(std::strerror(error)), failed.err.npos);
        }
        const nlohmann::json resumed = batchReport({"--resume"});
        EXPECT_EQ(resumed["failed"], 0) << resumed["failures"];
        if (failed.exitCode == 0) { // what could not be read again is not taken for done
            EXPECT_GE(resumed["skipped"], counted == Counted::Changes ? 2 : 1) << resumed;
        }
        expectAllSaved(call);
    }
    void expectAllSaved(const std::string& call) const
    {
        Contents all = saved();
        if (call.compare(0, 6, "unlink") == 0)
            all.erase(".gantrel-saving"); // goes with the next save
        EXPECT_TRUE(all == _expected);
    }
    /// The first of a kind and some of the others, as the suite is to be short.
    bool isTried(std::size_t at)
    {
        const std::string& call = _whole.calls[at - 1];
        const bool isNew = _subjects.insert(Subject(call)).second;
        if (!std::getenv("TEST_ALL_ERRORS") && !isNew && at % 12 != 0)
            return false;
        ++_tries;
        return true;
    }

    TracedProgram _whole;
    Contents _expected;
    std::size_t _tries = 0;

private:
    const ScopedVariable _cacheFolder{"XDG_CACHE_HOME", workspace.path("cache")};
    std::set<std::string> _subjects;
};

} // namespace

TEST_F(BatchFaults, of_writing_lose_nothing)
{
    runWhole(Counted::Changes);
    tryAll(Counted::Changes, {ENOSPC, EIO, EACCES, EINTR});
    EXPECT_GE(_tries, 12u);
}

TEST_F(BatchFaults, of_reading_lose_nothing)
{
    runWhole(Counted::Reads);
    tryAll(Counted::Reads, {EIO, EACCES});
    EXPECT_GE(_tries, 4u);
}
