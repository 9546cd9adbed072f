// What runs leave behind that are killed, and who removes it.
// SPDX-License-Identifier: MIT

#include "base/process_mark.h"
#include "cli_expectations.h"
#include "cli_workspace.h"
#include "tests/plugin/mini_library.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Of a process that has ended by now.
std::string EndedMark()
{
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("cannot make a pipe");
    const pid_t child = fork();
    if (child == 0) {
        const std::string mark = base::ProcessMark();
        const bool isTold = write(ends[1], mark.data(), mark.size()) == static_cast<ssize_t>(mark.size());
        _exit(isTold ? 0 : 1);
    }
    close(ends[1]);
    std::string mark(256, '\0');
    const ssize_t size = read(ends[0], mark.data(), mark.size());
    close(ends[0]);
    waitpid(child, nullptr, 0);
    mark.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return mark;
}

class LeftOver : public ::testing::Test {
protected:
    LeftOver() { WriteMiniLibrary(workspace.path("lib")); }

    /// Any run of the host.
    void runNext() const { ExpectSuccess(RunProgram(scriptArguments("print('x');"))); }
    std::vector<std::string> scriptArguments(const std::string& text) const
    {
        return {"script", workspace.write("run.js", text), "--allow-files", workspace.path("")};
    }
    std::vector<std::string> folders() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(workspace.path("tmp")))
            names.push_back(entry.path().filename().string());
        return names;
    }
    fs::path makeFolder(const std::string& name) const
    {
        const fs::path folder = fs::path(workspace.path("tmp")) / name;
        fs::create_directories(folder / "settings");
        return folder;
    }

    Workspace workspace;
};

} // namespace

TEST_F(LeftOver, of_a_run_that_was_killed_goes_with_the_next_one)
{
    const std::string started = workspace.path("started");
    const ProgramResult killed =
        SignalProgram(scriptArguments("new DzMorphLoader().saveObjectSettingsToConfigFile('" + started +
                                      "', 'x', false);\nwhile (true) {}"),
                      SIGKILL, [&started] { return fs::exists(started); });
    EXPECT_EQ(killed.signal, SIGKILL);
    EXPECT_EQ(folders().size(), 1u);
    runNext();
    EXPECT_EQ(folders(), std::vector<std::string>());
}

TEST_F(LeftOver, goes_with_a_run_that_makes_nothing_of_its_own)
{
    const fs::path old = makeFolder("gantrel-" + EndedMark() + "-folder");
    ExpectSuccess(RunProgram({"inspect", workspace.write("point.obj", "v 0 0 0\n")}));
    EXPECT_FALSE(fs::exists(old));
}

TEST_F(LeftOver, of_a_run_that_goes_on_stays)
{
    const fs::path ours = makeFolder("gantrel-" + base::ProcessMark() + "-abcdef");
    runNext();
    EXPECT_TRUE(fs::exists(ours / "settings"));
}

TEST_F(LeftOver, is_no_link_and_nothing_of_another_name)
{
    const std::string mark = EndedMark();
    ASSERT_TRUE(base::HasEnded(mark)) << mark;
    const fs::path elsewhere = workspace.path("elsewhere");
    fs::create_directories(elsewhere / "precious");
    const fs::path link = fs::path(workspace.path("tmp")) / ("gantrel-" + mark + "-linked");
    fs::create_directory_symlink(elsewhere, link);
    const fs::path old = makeFolder("gantrel-" + mark + "-folder");
    fs::create_directory_symlink(elsewhere, old / "within");
    const fs::path kept = makeFolder("gantrel-kept-" + mark.substr(0, 6)), other = makeFolder(mark);
    runNext();
    EXPECT_FALSE(fs::exists(old));
    EXPECT_TRUE(fs::exists(elsewhere / "precious"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(fs::exists(kept / "settings"));
    EXPECT_TRUE(fs::exists(other / "settings"));
}
