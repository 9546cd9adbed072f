// Conversions that are stopped while they save: the old morphs or the new ones, never some of each.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include "tests/base/traced_run.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include <fcntl.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

/// A library that has "Vera Head" and "Vera Body" of one shape, which a conversion replaces by another's.
class SaveFaults : public ConversionTest {
protected:
    void SetUp() override
    {
        ExpectSuccess(convert(saving(library(), {"--dial", "Wide=0", "--resolution", "subd"})));
        _old = contents();
        ASSERT_EQ(_old.size(), 4u) << "a file and its companion for each";
    }

    fs::path folder() const { return library(std::string("/") + savedFolder); }
    Contents contents() const
    {
        Contents all;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder())) {
            const std::string name = entry.path().filename();
            std::string bytes = workspace.read(("lib/" + std::string(savedFolder) + "/" + name).c_str());
            const std::size_t time = bytes.find("\"modified\"");
            all[name] = time == bytes.npos ? bytes : bytes.erase(time, bytes.find('\n', time) - time);
        }
        return all;
    }
    void restore() const
    {
        fs::remove_all(folder());
        fs::copy(workspace.path("kept"), folder());
    }
    /// The program as a child of the tracer.
    TracedRun run(const Interference& interference = {}) const
    {
        std::vector<std::string> all = arguments(saving(library(), {"--overwrite", "--resolution", "subd"}));
        all.insert(all.begin(), GANTREL_PROGRAM);
        const std::string err = workspace.path("err.txt");
        return RunTraced(
            folder(),
            [&] {
                std::vector<char*> argv;
                for (std::string& argument : all)
                    argv.push_back(argument.data());
                argv.push_back(nullptr);
                const int null = open("/dev/null", O_RDWR);
                const int file = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
                dup2(null, STDIN_FILENO);
                dup2(null, STDOUT_FILENO);
                dup2(file, STDERR_FILENO);
                execv(GANTREL_PROGRAM, argv.data());
                return 126;
            },
            interference);
    }
    /// Any load of the figure does.
    void load() const { ExpectSuccess(RunProgram({"list-dials", targetFile(), "--content", library()})); }

    Contents _old;
};

} // namespace

TEST_F(SaveFaults, leave_the_old_set_or_the_new_one)
{
    fs::copy(folder(), workspace.path("kept"));
    const TracedRun whole = run();
    if (!whole.isPossible)
        GTEST_SKIP() << "this system lets nobody trace a process";
    ASSERT_EQ(whole.exitCode, 0) << workspace.read("err.txt");
    const Contents now = contents();
    ASSERT_EQ(now.size(), 4u);
    ASSERT_NE(now, _old);
    ASSERT_GE(whole.calls.size(), 20u);
    std::size_t keptOld = 0, keptNew = 0;
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        restore();
        EXPECT_TRUE(run({at}).wasKilled) << whole.calls[at - 1];
        load();
        Contents left = contents();
        // What was unfinished goes with the next save; nobody takes it for a morph.
        for (auto entry = left.begin(); entry != left.end();)
            entry = fs::path(entry->first).extension() == ".part" ? left.erase(entry) : std::next(entry);
        EXPECT_TRUE(left == _old || left == now) << "killed before " << whole.calls[at - 1];
        ++(left == _old ? keptOld : keptNew);
    }
    EXPECT_GT(keptOld, 0u);
    EXPECT_GT(keptNew, 0u);
    restore();
    run({whole.calls.size() / 2});
    ASSERT_EQ(run().exitCode, 0);
    EXPECT_EQ(contents(), now) << "nothing of the dead run is left";
}

TEST_F(SaveFaults, of_the_system_are_told_with_its_reason)
{
    fs::copy(folder(), workspace.path("kept"));
    const TracedRun whole = run();
    if (!whole.isPossible)
        GTEST_SKIP() << "this system lets nobody trace a process";
    const Contents now = contents();
    // What other errors leave is the same; there each call is tried with a set of its own.
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        restore();
        const TracedRun failed = run({at, ENOSPC});
        const std::string& what = whole.calls[at - 1];
        const std::string told = workspace.read("err.txt");
        load(); // which finishes what was begun
        const Contents left = contents();
        if (failed.exitCode == 0) {
            EXPECT_TRUE(left == now) << what;
            continue;
        }
        EXPECT_EQ(failed.exitCode, 1) << what;
        EXPECT_NE(told.find(std::strerror(ENOSPC)), told.npos) << what << ": " << told;
        EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
        EXPECT_TRUE(left == _old || left == now) << what;
    }
}
