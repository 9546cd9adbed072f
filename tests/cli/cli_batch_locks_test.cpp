// Batches whose file of locks somebody takes away.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"
#include "cli_held_file.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const char* const otherPath =
    "/data/Other/Other.duf"; ///< a second source, as rows read theirs when they begin

/// Another program that has taken all rows in a file of locks of its own.
class AllTaken {
public:
    explicit AllTaken(const std::string& file) : _file(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666))
    {
        struct flock all {};
        all.l_type = F_WRLCK;
        all.l_whence = SEEK_SET;
        if (_file < 0 || fcntl(_file, F_OFD_SETLK, &all) != 0)
            throw std::runtime_error("cannot lock " + file);
    }
    ~AllTaken() { close(_file); }
    AllTaken(const AllTaken&) = delete;
    AllTaken& operator=(const AllTaken&) = delete;

private:
    int _file;
};

class BatchLocks : public BatchTest {
protected:
    BatchLocks() : _expected(savedOneByOne(3)) {}

    std::string locks() const { return table() + ".gantrel-batch-locks"; }
    std::string renewed() const
    {
        return locks() + ": was removed or replaced during the batch, and is kept anew";
    }

    const Contents _expected;
};

} // namespace

TEST_F(BatchLocks, that_are_removed_are_made_again_and_told)
{
    const nlohmann::json report = reportWith({}, [this] { fs::remove(locks()); });
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(report["warnings"], nlohmann::json({renewed()}));
    EXPECT_TRUE(workspace.has("jobs.csv.gantrel-batch-locks"));
    EXPECT_TRUE(saved() == _expected);
}

TEST_F(BatchLocks, that_were_made_again_keep_others_off)
{
    fs::create_directories(fs::path(library(otherPath)).parent_path());
    fs::copy_file(sourceFile(), library(otherPath));
    workspace.write("jobs.csv",
                    "name,source,dial\nA," + sourceFile() + ",Wide=1\nB," + library(otherPath) + ",Wide=1\n");
    std::optional<HeldFile> second;
    HeldFile first(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    nlohmann::json other;
    constexpr int noSignal = 0;
    const ProgramResult result = SignalProgram(
        batchArguments({"--workers", "1"}), noSignal, [&first] { return first.isWaitedFor(); },
        [&] {
            second.emplace(library(otherPath));
            fs::remove(locks());
            first.letGo();
            for (int i = 0; i < 6000 && !second->isWaitedFor(); ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            fs::remove(library(otherPath)); // for the other, so that it does not wait as well
            fs::copy_file(sourceFile(), library(otherPath));
            other = nlohmann::json::parse(batch({"--row", "2", "--json"}).out, nullptr, false);
            second->letGo();
        });
    ExpectSuccess(result);
    ASSERT_TRUE(other.is_object());
    ExpectCounts(other, 0, 0, 1);
    EXPECT_EQ(other["failures"][0]["error"], "Another program is at work on this row.");
}

TEST_F(BatchLocks, that_another_has_made_meanwhile_are_respected_before_anything_is_saved)
{
    std::optional<AllTaken> other;
    const nlohmann::json report = reportWith({}, [&] {
        fs::remove(locks());
        other.emplace(locks());
    });
    ExpectCounts(report, 0, 0, 3);
    for (const nlohmann::json& failure : report["failures"])
        EXPECT_EQ(failure["error"], "Another program is at work on this row.");
    EXPECT_EQ(report["warnings"], nlohmann::json({renewed()}));
    EXPECT_TRUE(saved().empty());
    other.reset();
    ExpectCounts(batchReport({"--resume"}), 3, 0, 0);
    EXPECT_TRUE(saved() == _expected);
}

TEST_F(BatchLocks, that_another_has_made_are_no_failures_of_rows_where_logs_are_merged)
{
    std::optional<AllTaken> other;
    ExpectCounts(reportWith({},
                            [&] {
                                fs::remove(locks());
                                other.emplace(locks());
                            }),
                 0, 0, 3);
    other.reset();
    const std::string laterLog = workspace.path("later.jsonl");
    ExpectCounts(batchReport({"--resume", "--log", laterLog}), 3, 0, 0);
    const ProgramResult merged = RunProgram({"batch", "--merge", laterLog, log(), "--json"});
    ExpectCounts(nlohmann::json::parse(merged.out), 3, 0, 0);
}

TEST_F(BatchLocks, whose_place_is_taken_by_a_folder_are_told_of)
{
    const nlohmann::json report = reportWith({}, [this] {
        fs::remove(locks());
        fs::create_directory(locks());
    });
    ExpectCounts(report, 3, 0, 0);
    EXPECT_EQ(report["warnings"],
              nlohmann::json({"cannot write " + locks() +
                              ": Is a directory; so other programs may work on the same rows"}));
    EXPECT_TRUE(saved() == _expected);
}
