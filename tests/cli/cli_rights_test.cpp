// The program where its user may change little.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// The superuser may write everywhere; for so long, this process and those that it starts are somebody's who
/// may not.
class WithoutPrivileges {
public:
    WithoutPrivileges() : _wasSuperuser(geteuid() == 0)
    {
        constexpr gid_t nobodysGroup = 65534;
        constexpr uid_t nobody = 65534;
        if (_wasSuperuser &&
            (setresgid(nobodysGroup, nobodysGroup, 0) != 0 || setresuid(nobody, nobody, 0) != 0))
            throw std::runtime_error("cannot become another user");
    }
    ~WithoutPrivileges()
    {
        if (_wasSuperuser && (setresuid(0, 0, 0) != 0 || setresgid(0, 0, 0) != 0))
            std::abort();
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    bool _wasSuperuser;
};

/// The library may be read only, and so may the folder of the index; anybody may write into "mine".
class FewRights : public ConversionTest {
protected:
    void SetUp() override
    {
        fs::create_directory(workspace.path("cache"));
        fs::create_directory(workspace.path("mine"));
        fs::permissions(workspace.path(""), fs::perms(0755));
        for (const char* const name : {"tmp", "mine"})
            fs::permissions(workspace.path(name), fs::perms(0777));
        setWritable(false);
        const WithoutPrivileges here;
        if (access(GANTREL_PROGRAM, X_OK) != 0)
            GTEST_SKIP() << "the program lies where its owner alone may go, so that nobody else can start it";
    }
    void TearDown() override { setWritable(true); }

    ProgramResult convertWithoutPrivileges(const std::vector<std::string>& more) const
    {
        const WithoutPrivileges here;
        return convert(more);
    }

private:
    void setWritable(bool is) const
    {
        const auto set = [is](const fs::path& path) {
            fs::permissions(path, fs::perms::owner_write,
                            is ? fs::perm_options::add : fs::perm_options::remove);
        };
        for (const char* const name : {"lib", "cache"}) {
            set(workspace.path(name));
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(workspace.path(name)))
                set(entry.path());
        }
    }

    const ScopedVariable _cacheFolder{"XDG_CACHE_HOME", workspace.path("cache")};
};

} // namespace

TEST_F(FewRights, do_not_stop_a_conversion_that_saves_elsewhere)
{
    const ProgramResult result = convertWithoutPrivileges(saving(workspace.path("mine/lib")));
    ExpectSuccess(result);
    EXPECT_TRUE(workspace.has(std::string("mine/lib/") + savedFolder + "/Vera Head.dsf"));
    EXPECT_FALSE(workspace.has("cache/gantrel"));
    expectNoTraces();
}

TEST_F(FewRights, leave_no_index_which_the_log_tells_once)
{
    const ProgramResult result = convertWithoutPrivileges({"--verbose"});
    EXPECT_EQ(result.exitCode, 0);
    const std::string told = "no index of morphs can be kept, so figures load more slowly: Permission denied";
    const std::size_t first = result.err.find(told);
    ASSERT_NE(first, result.err.npos) << result.err;
    EXPECT_EQ(result.err.find(told, first + 1), result.err.npos) << result.err;
}

TEST_F(FewRights, are_told_before_a_conversion_that_would_save_there)
{
    expectFailure(convertWithoutPrivileges(saving(library(), {"--dial", "No=1"})), 1,
                  "Cannot write folder " + library() + ": Permission denied.");
}

TEST_F(FewRights, to_the_vendors_folder_are_told_with_its_name)
{
    const fs::path folder = workspace.path("mine/") + savedFolder;
    fs::create_directories(folder.parent_path());
    fs::permissions(folder.parent_path(), fs::perms(0555));
    expectFailure(convertWithoutPrivileges(saving(workspace.path("mine"))), 1,
                  "Cannot save the morphs: cannot create folder " + folder.string() + ": Permission denied.");
    fs::permissions(folder.parent_path(), fs::perms(0755));
}

TEST_F(FewRights, to_the_settings_are_told_in_one_sentence)
{
    const ScopedVariable folder("XDG_CONFIG_HOME", workspace.path("config"));
    const fs::path kept = workspace.path("config/gantrel");
    fs::create_directories(kept);
    workspace.write("config/gantrel/config.json", "{}");
    const auto set = [] {
        const WithoutPrivileges here;
        return RunProgram({"config", "set", "vendor", "Me"});
    };
    ExpectError(set(), 1, "Cannot write " + kept.string() + "/config.json: it is write-protected.");
    fs::remove(kept / "config.json");
    ExpectError(set(), 1, "Cannot write " + kept.string() + "/config.json: Permission denied.");
    fs::remove(kept);
    ExpectError(set(), 1, "Cannot create folder " + kept.string() + ": Permission denied.");
}
