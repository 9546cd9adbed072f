// Conversions on disks that fail anywhere, and cut off anywhere: the old files or the new ones, never some of
// each, and nothing else.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_traced_program.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>

namespace {

namespace fs = std::filesystem;

using Contents = std::map<std::string, std::string>;

/// Times and all.
void Copy(const fs::path& from, const fs::path& to)
{
    fs::create_directories(to.parent_path());
    fs::copy(from, to, fs::copy_options::recursive);
    if (!fs::is_directory(from))
        return fs::last_write_time(to, fs::last_write_time(from));
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(from))
        fs::last_write_time(to / entry.path().lexically_relative(from), entry.last_write_time());
}

/// What a call is about, without the parts of names that are others in each run.
std::string Subject(const std::string& call)
{
    const std::string name = fs::path(call).filename().string();
    return call.substr(0, call.find(' ')) + ' ' + name.substr(0, name.find_first_of("-."));
}

/// A library that has "Vera Head" and "Vera Body" of one shape, which a conversion replaces by another's. All
/// that it writes lies in the workspace: the morphs, an OBJ file, the index of morphs and temporary files.
class SaveFaults : public ConversionTest {
protected:
    void SetUp() override
    {
        fs::create_directory(workspace.path("out"));
        workspace.write("out/Vera.obj", "v 0 0 0\n");
        ExpectSuccess(convert(saving(library(), {"--dial", "Wide=0", "--resolution", "subd"})));
        _old = contents();
        ASSERT_EQ(_old.size(), 5u) << "a file and its companion for each, and the OBJ file";
        // An index takes no files that have just been written.
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(library()))
            fs::last_write_time(entry.path(), fs::file_time_type::clock::now() - std::chrono::hours(1));
        for (const std::string& name : changing())
            Copy(workspace.path(name), workspace.path("kept/" + name));
    }
    void TearDown() override
    {
        RecordProperty("calls", static_cast<int>(_whole.calls.size()));
        RecordProperty("tries", static_cast<int>(_tries));
    }

    void runWhole(Counted counted)
    {
        restore();
        _whole = run({}, counted);
        EXPECT_EQ(_whole.exitCode, 0) << _whole.err;
        _new = contents();
        EXPECT_EQ(_new.size(), 5u);
        EXPECT_NE(_new, _old);
    }
    TracedProgram run(const Interference& interference = {}, Counted counted = Counted::Changes) const
    {
        const std::vector<std::string> more{"--overwrite", "--resolution", "subd", "--export-obj",
                                            workspace.path("out/Vera.obj")};
        return RunProgramTraced(workspace.path(""), arguments(saving(library(), more)), interference,
                                counted);
    }
    /// Any load of the figure does.
    void load() const
    {
        ExpectSuccessBehindSave(RunProgram({"list-dials", targetFile(), "--content", library()}));
    }

    fs::path folder() const { return library(std::string("/") + savedFolder); }
    std::vector<std::string> changing() const
    {
        return {std::string("lib/") + savedFolder, "out", "cache/gantrel"};
    }
    void restore() const
    {
        for (const std::string& name : changing()) {
            fs::remove_all(workspace.path(name));
            Copy(workspace.path("kept/" + name), workspace.path(name));
        }
    }
    Contents contents() const
    {
        Contents all;
        for (const std::string& place : {std::string("lib/") + savedFolder, std::string("out")})
            for (const fs::directory_entry& entry : fs::directory_iterator(workspace.path(place))) {
                const std::string name = entry.path().filename();
                std::string bytes = workspace.read(place + '/' + name);
                const std::size_t time = bytes.find("\"modified\"");
                all[name] = time == bytes.npos ? bytes : bytes.erase(time, bytes.find('\n', time) - time);
            }
        return all;
    }
    /// What is unfinished or temporary.
    std::vector<std::string> leavings() const
    {
        std::vector<std::string> all;
        for (const std::string& entry : workspace.entries())
            if (entry.compare(0, 4, "tmp/") == 0 || entry.find(".part") != entry.npos ||
                entry.find(".gantrel-saving") != entry.npos)
                all.push_back(entry);
        return all;
    }
    /// The OBJ file comes behind the morphs: each of both is old or new.
    void expectOldOrNew(const std::string& what) const
    {
        Contents left = contents();
        const auto obj = left.extract("Vera.obj");
        ASSERT_FALSE(obj.empty()) << what;
        EXPECT_TRUE(obj.mapped() == _old.at("Vera.obj") || obj.mapped() == _new.at("Vera.obj")) << what;
        left["Vera.obj"] = _old.at("Vera.obj");
        Contents made = _new;
        made["Vera.obj"] = _old.at("Vera.obj");
        EXPECT_TRUE(left == _old || left == made) << what;
    }
    /// The first of a kind, and half of those that have to do with the morphs, as the suite is to be short.
    bool isTried(std::size_t at)
    {
        const std::string& call = _whole.calls[at - 1];
        // The toolkit's cache of fonts is not ours.
        if (call.find("/fontconfig/") != call.npos)
            return false;
        // A folder that is there: the system has nothing else to say.
        if (call.compare(0, 6, "mkdir ") == 0 &&
            std::find(_whole.calls.begin(), _whole.calls.begin() + static_cast<std::ptrdiff_t>(at) - 1,
                      call) != _whole.calls.begin() + static_cast<std::ptrdiff_t>(at) - 1)
            return false;
        const bool isNew = _subjects.insert(Subject(call)).second;
        const bool isMorph = call.find(savedFolder) != call.npos && at % 2 == 0;
        if (!std::getenv("TEST_ALL_ERRORS") && !isNew && !isMorph)
            return false;
        ++_tries;
        return true;
    }
    std::size_t tries() const { return _tries; }

    TracedProgram _whole;
    Contents _old, _new;

private:
    const ScopedVariable _cacheFolder{"XDG_CACHE_HOME", workspace.path("cache")};
    std::set<std::string> _subjects;
    std::size_t _tries = 0;
};

/// The index and the log may fail; that a file cannot be removed, or let go of, harms nobody.
bool MayBeDoneWithout(const std::string& call)
{
    return call.find("/cache/") != call.npos || call.find("/log.txt") != call.npos ||
           call.compare(0, 6, "unlink") == 0 || call.compare(0, 5, "rmdir") == 0 ||
           call.compare(0, 6, "fchown") == 0;
}

} // namespace

TEST_F(SaveFaults, by_a_kill_leave_the_old_set_or_the_new_one)
{
    runWhole(Counted::Changes);
    ASSERT_GE(_whole.calls.size(), 100u);
    std::size_t keptOld = 0, keptNew = 0;
    for (std::size_t at = 1; at <= _whole.calls.size(); ++at) {
        if (!isTried(at))
            continue;
        restore();
        const TracedProgram killed = run({at});
        const std::string what = "killed before " + killed.calls.at(at - 1);
        EXPECT_TRUE(killed.wasKilled) << what;
        load();
        // What was unfinished goes with the next save; nobody takes it for a morph.
        Contents left = contents();
        for (auto entry = left.begin(); entry != left.end();)
            entry = fs::path(entry->first).extension() == ".part" ? left.erase(entry) : std::next(entry);
        ++(left.at("Vera Head.dsf") == _old.at("Vera Head.dsf") ? keptOld : keptNew);
        if (!leavings().empty()) {
            EXPECT_EQ(run().exitCode, 0) << what;
            EXPECT_EQ(leavings(), std::vector<std::string>()) << what;
            EXPECT_TRUE(contents() == _new) << what;
            continue;
        }
        expectOldOrNew(what);
    }
    EXPECT_GT(keptOld, 10u);
    EXPECT_GT(keptNew, 10u);
}

TEST_F(SaveFaults, of_the_system_are_told_with_its_reason)
{
    runWhole(Counted::Changes);
    for (std::size_t at = 1; at <= _whole.calls.size(); ++at) {
        if (!isTried(at))
            continue;
        for (const int error : ErrorsFor(tries(), {ENOSPC, EIO, EINTR, ENOENT})) {
            restore();
            const TracedProgram failed = run({at, error});
            const std::string what =
                failed.calls.at(at - 1) + ": " + std::strerror(error) + ": " + failed.err;
            const bool hasJournal = failed.err.find("as soon as that is possible") != failed.err.npos ||
                                    failed.err.find("its new files are in place") != failed.err.npos;
            if (!hasJournal && !MayBeDoneWithout(failed.calls[at - 1])) {
                EXPECT_EQ(leavings(), std::vector<std::string>()) << what;
            }
            if (!leavings().empty()) {
                load(); // which finishes what was begun
                EXPECT_EQ(leavings(), std::vector<std::string>()) << what;
            }
            if (failed.exitCode == 0) {
                EXPECT_TRUE(contents() == _new) << what;
                EXPECT_EQ(failed.err, "") << what;
                continue;
            }
            EXPECT_EQ(failed.exitCode, 1) << what;
            EXPECT_FALSE(MayBeDoneWithout(failed.calls[at - 1])) << what;
            EXPECT_NE(failed.err.find(std::strerror(error)), failed.err.npos) << what;
            EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << what;
            expectOldOrNew(what);
        }
    }
}

TEST_F(SaveFaults, of_reading_are_told_with_the_file)
{
    runWhole(Counted::Reads);
    for (std::size_t at = 1; at <= _whole.calls.size(); ++at) {
        if (!isTried(at))
            continue;
        for (const int error : ErrorsFor(tries(), {EIO, EACCES})) {
            restore();
            const TracedProgram failed = run({at, error}, Counted::Reads);
            if (failed.calls.size() < at)
                continue; // several threads read, and not always the same
            const std::string what = failed.calls[at - 1] + ": " + std::strerror(error) + ": " + failed.err;
            if (failed.calls[at - 1].find(workspace.path("tmp")) != std::string::npos)
                load(); // a folder that cannot be listed is removed by the next run
            EXPECT_EQ(leavings(), std::vector<std::string>()) << what;
            expectOldOrNew(what);
            if (failed.exitCode == 0)
                continue;
            EXPECT_EQ(failed.exitCode, 1) << what;
            EXPECT_NE(failed.err.find(std::strerror(error)), failed.err.npos) << what;
            EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << what;
        }
    }
}
