// Scenes that are saved over others while the disk fails, or the program is killed.
// SPDX-License-Identifier: MIT

#include "dzfloatproperty.h"
#include "openhost/diagnostics.h"
#include "tests/base/traced_run.h"
#include "tests/host/save_fixture.h"

#include <cerrno>
#include <cstring>

namespace {

namespace fs = std::filesystem;

enum Outcome { saved = 0, failedAndTold = 1, failedInSilence = 2, isSpoilt = 3 };

/// A scene on disk, and in memory one with another shape that is saved over it.
class SceneFaults : public SaveTest {
protected:
    void SetUp() override
    {
        SaveTest::SetUp();
        ASSERT_NE(openMini(), nullptr);
        // Elsewhere: a program looks for what others left where it first writes.
        const fs::path first = folder("first") / "Scene.duf";
        ASSERT_EQ(dzScene->saveScene(QString::fromStdString(first.string())), 0);
        _old = ReadBytes(first);
        DialOf(*dzScene->getPrimarySelection(), "Up")->setValue(0.5f);
        ASSERT_EQ(save("DzSceneAssetFilter", folder("other") / "Scene.duf"), 0);
        _new = untimed(folder("other") / "Scene.duf");
    }
    TracedRun run(const Interference& interference = {}) const
    {
        return RunTraced(
            folder("saved"),
            [this] {
                const openhost::DiagnosticsCollector met(dzApp->diagnostics());
                if (save("DzSceneAssetFilter", file("Scene.duf")) == 0)
                    return saved;
                const base::Diagnostic* const told = base::FirstError(met.all());
                if (!told || told->what.find(std::strerror(interferedWith)) == std::string::npos)
                    return failedInSilence;
                // What is in memory can still be saved elsewhere.
                const fs::path rescue = folder("rescue") / "Scene.duf";
                return save("DzSceneAssetFilter", rescue) == 0 && untimed(rescue) == _new ? failedAndTold
                                                                                          : isSpoilt;
            },
            interference);
    }
    TracedRun failing(std::size_t at, int error)
    {
        interferedWith = error;
        return run({at, error});
    }
    void restore() const
    {
        fs::remove_all(folder("saved"));
        fs::create_directory(folder("saved"));
        WriteBytes(file("Scene.duf"), _old);
    }
    std::size_t fileCount() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder("saved")), fs::directory_iterator()));
    }
    bool isOld() const { return ReadBytes(file("Scene.duf")) == _old; }
    bool isNew() const { return !isOld() && untimed(file("Scene.duf")) == _new; }

    std::string _old, _new;
    int interferedWith = 0;
};

} // namespace

TEST_F(SceneFaults, leave_the_old_scene_or_the_new_one)
{
    restore();
    const TracedRun whole = run();
    ASSERT_EQ(whole.exitCode, saved);
    ASSERT_TRUE(isNew());
    ASSERT_GE(whole.calls.size(), 6u);
    for (const int error : {ENOSPC, EIO, EINTR, ENOENT})
        for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
            restore();
            const TracedRun failed = failing(at, error);
            const std::string what = whole.calls[at - 1] + ": " + std::strerror(error);
            EXPECT_EQ(fileCount(), 1u) << what;
            if (failed.exitCode == saved)
                EXPECT_TRUE(isNew()) << what;
            else
                EXPECT_EQ(failed.exitCode, failedAndTold) << what;
            EXPECT_TRUE(isOld() || isNew()) << what;
        }
}

TEST_F(SceneFaults, that_end_the_program_leave_nothing_for_ever)
{
    restore();
    const TracedRun whole = run();
    std::size_t unfinished = 0;
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        restore();
        EXPECT_TRUE(run({at}).wasKilled) << whole.calls[at - 1];
        EXPECT_TRUE(isOld() || isNew()) << whole.calls[at - 1];
        unfinished += fileCount() - 1;
        EXPECT_EQ(run().exitCode, saved) << whole.calls[at - 1];
        EXPECT_EQ(fileCount(), 1u) << whole.calls[at - 1];
    }
    EXPECT_GT(unfinished, 0u);
}
