// Settings that are changed while the disk fails, or the program is killed.
// SPDX-License-Identifier: MIT

#include "dzappsettings.h"
#include "openhost/diagnostics.h"
#include "tests/base/traced_run.h"
#include "tests/host/host_fixture.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

enum Outcome { changed = 0, failedAndTold = 1, failedInSilence = 2 };

class SettingsFaults : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        restore();
    }
    void TearDown() override { fs::remove_all(folder()); }
    static fs::path folder() { return (TestFolder() + QLatin1String("/settings")).toStdString(); }
    static void restore()
    {
        fs::remove_all(folder());
        fs::create_directory(folder());
        std::ofstream(folder() / "settings.json") << R"({"Group/Count": 3, "Group/Name": "Vera"})";
    }
    static int count() { return DzAppSettings(QStringLiteral("Group")).getIntValue(QStringLiteral("Count")); }
    static bool setCount(int value)
    {
        return DzAppSettings(QStringLiteral("Group")).setIntValue(QStringLiteral("Count"), value);
    }
    static TracedRun run(const Interference& interference = {})
    {
        return RunTraced(
            folder(),
            [] {
                const openhost::DiagnosticsCollector met(dzApp->diagnostics());
                return setCount(4) ? changed : met.all().empty() ? failedInSilence : failedAndTold;
            },
            interference);
    }
    /// Old or new, and nothing that is left keeps anybody from other values.
    static void expectWhole(const std::string& what)
    {
        EXPECT_TRUE(count() == 3 || count() == 4) << what << ": " << count();
        EXPECT_EQ(DzAppSettings(QStringLiteral("Group")).getStringValue(QStringLiteral("Name")),
                  QStringLiteral("Vera"))
            << what;
        EXPECT_TRUE(setCount(5)) << what;
        EXPECT_EQ(count(), 5) << what;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder()), fs::directory_iterator()), 1) << what;
    }
};

} // namespace

TEST_F(SettingsFaults, leave_old_values_or_new_ones)
{
    const TracedRun whole = run();
    ASSERT_EQ(whole.exitCode, changed);
    ASSERT_EQ(count(), 4);
    ASSERT_GE(whole.calls.size(), 8u);
    for (const int error : {ENOSPC, EIO, EINTR, ENOENT, EACCES})
        for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
            restore();
            const TracedRun failed = run({at, error});
            const std::string what = whole.calls[at - 1] + ": " + std::strerror(error);
            EXPECT_NE(failed.exitCode, failedInSilence) << what;
            EXPECT_FALSE(failed.exitCode == changed && count() != 4) << what;
            expectWhole(what);
        }
}

TEST_F(SettingsFaults, of_reading_do_not_cost_the_values)
{
    restore();
    const auto reading = [](const Interference& interference) {
        return RunTraced(
            folder(), [] { return setCount(4) ? changed : failedAndTold; }, interference, Counted::Reads);
    };
    const TracedRun whole = reading({});
    ASSERT_GE(whole.calls.size(), 2u);
    for (const int error : {EIO, EACCES})
        for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
            restore();
            reading({at, error});
            expectWhole(whole.calls[at - 1] + ": " + std::strerror(error));
        }
}

TEST_F(SettingsFaults, that_end_the_program_leave_nothing_for_ever)
{
    const TracedRun whole = run();
    for (std::size_t at = 1; at <= whole.calls.size(); ++at) {
        restore();
        EXPECT_TRUE(run({at}).wasKilled) << whole.calls[at - 1];
        expectWhole("killed before " + whole.calls[at - 1]);
    }
}

TEST_F(SettingsFaults, that_cannot_be_understood_stay_where_they_cannot_be_set_aside)
{
    std::ofstream(folder() / "settings.json") << "{ nonsense";
    const fs::path broken = folder() / "settings.json.broken";
    fs::create_directories(broken / "within");
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_FALSE(setCount(4));
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(met.all().front().what, "the settings cannot be read, nor set aside: Is a directory");
    std::ifstream file(folder() / "settings.json");
    EXPECT_EQ(std::string((std::istreambuf_iterator<char>(file)), {}), "{ nonsense");
}

TEST_F(SettingsFaults, that_stay_are_told_once_until_all_is_well_again)
{
    fs::remove_all(folder());
    fs::create_directory_symlink(folder().string() + " gone", folder());
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    int told = 0;
    const QObject listener;
    QObject::connect(&dzApp->diagnostics(), &openhost::DiagnosticsHub::reported, &listener, [&] { ++told; });
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(setCount(i));
    EXPECT_EQ(told, 1);
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(met.all()[0].what, "the settings are not saved: cannot create folder " + folder().string() +
                                     ": the link " + folder().string() + " leads to " + folder().string() +
                                     " gone, which is not there");
    fs::remove(folder());
    EXPECT_TRUE(setCount(5));
    fs::remove_all(folder());
    fs::create_directory_symlink(folder().string() + " gone", folder());
    EXPECT_FALSE(setCount(6));
    EXPECT_EQ(told, 2);
}

TEST_F(SettingsFaults, a_pipe_in_their_place_is_not_waited_for)
{
    const fs::path pipe = folder() / "settings.json";
    fs::remove(pipe);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_EQ(count(), 0);
    EXPECT_FALSE(setCount(4));
    ASSERT_FALSE(met.all().empty());
    EXPECT_EQ(base::ToLine(met.all()[0]), pipe.string() + ": the settings cannot be read: it is no file");
    EXPECT_TRUE(fs::is_fifo(pipe));
}
