// The index of morphs on a disk that fails, and cut off by kills.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_traced_program.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// The dials of a figure are listed, for which the index is made.
class IndexFaults : public ConversionTest {
protected:
    void SetUp() override
    {
        // An index takes no files that have just been written.
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(library()))
            fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
        fs::create_directories(index());
    }

    fs::path index() const { return workspace.path("cache/gantrel"); }
    TracedProgram run(const Interference& interference = {}, Counted counted = Counted::Changes) const
    {
        return RunProgramTraced(index(), {"list-dials", targetFile(), "--content", library()}, interference,
                                counted);
    }
    void runWhole()
    {
        _whole = run();
        EXPECT_EQ(_whole.exitCode, 0) << _whole.err;
        EXPECT_FALSE(_whole.out.empty());
    }
    void restart() const
    {
        fs::remove_all(index());
        fs::create_directories(index());
    }
    /// Nothing of the database stands in the way of a run, which leaves the database alone.
    void expectUsable(const std::string& what) const
    {
        const TracedProgram next = run();
        EXPECT_EQ(next.out, _whole.out) << what;
        EXPECT_EQ(next.err, "") << what;
        EXPECT_EQ(std::distance(fs::directory_iterator(index()), fs::directory_iterator()), 1) << what;
    }

    TracedProgram _whole;

private:
    const ScopedVariable _cacheFolder{"XDG_CACHE_HOME", workspace.path("cache")};
};

} // namespace

TEST_F(IndexFaults, that_end_the_program_leave_an_index_that_serves)
{
    runWhole();
    ASSERT_GE(_whole.calls.size(), 30u);
    // Those in between write one piece after another of the same file.
    const std::size_t step = std::getenv("TEST_ALL_ERRORS") ? 1 : 3;
    for (std::size_t at = 1; at <= _whole.calls.size(); at += step) {
        restart();
        EXPECT_TRUE(run({at}).wasKilled) << _whole.calls[at - 1];
        expectUsable("killed before " + _whole.calls[at - 1]);
    }
}

TEST_F(IndexFaults, of_the_system_cost_nothing_but_the_index)
{
    runWhole();
    const std::size_t step = std::getenv("TEST_ALL_ERRORS") ? 1 : 3;
    for (std::size_t at = 1; at <= _whole.calls.size(); at += step)
        for (const int error : ErrorsFor(at, {ENOSPC, EIO, EINTR, ENOENT, EACCES})) {
            restart();
            const TracedProgram failed = run({at, error});
            const std::string what = _whole.calls[at - 1] + ": " + std::strerror(error);
            EXPECT_EQ(failed.exitCode, 0) << what << failed.err;
            EXPECT_EQ(failed.out, _whole.out) << what;
            expectUsable(what);
        }
}
