// Running `gantrel batch` on a small library.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"

#include "cli_held_file.h"
#include "cli_traced_program.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace fs = std::filesystem;

namespace {

/// Of the process: who started it; 0 when it has ended.
pid_t ParentOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    std::istringstream fields(text.substr(std::min(text.rfind(')') + 2, text.size())));
    std::string state;
    pid_t parent = 0;
    fields >> state >> parent;
    return state == "Z" || state == "X" ? 0 : parent;
}

std::string EnvironmentOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/environ");
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string ValuesOf(std::size_t row)
{
    return "Wide=" + std::to_string(1.0 - 0.1 * static_cast<double>(row)) + ";Bulge=0.5";
}

} // namespace

std::string CommandOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/cmdline");
    return {std::istreambuf_iterator<char>(file), {}};
}

BatchTest::BatchTest()
{
    writeTable(3);
}

void BatchTest::writeTable(std::size_t rows) const
{
    std::string text = "name,dial\n";
    for (std::size_t row = 0; row < rows; ++row)
        text += nameOf(row) + ',' + ValuesOf(row) + '\n';
    workspace.write(room + "jobs.csv", text);
}

std::vector<std::string> BatchTest::batchArguments(const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"batch",    table(),      "--content", library(),
                                 "--source", sourceFile(), "--target",  targetFile()};
    all = saving(workspace.path(room + "saved"), all);
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

ProgramResult BatchTest::batch(const std::vector<std::string>& more) const
{
    return RunProgram(batchArguments(more));
}

nlohmann::json BatchTest::batchReport(const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"--json"};
    all.insert(all.end(), more.begin(), more.end());
    const ProgramResult result = batch(all);
    expectNoTraces();
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    EXPECT_TRUE(report.is_object()) << result.out << result.err;
    if (!report.is_object())
        return nlohmann::json::object();
    EXPECT_EQ(result.exitCode, report["failed"] == 0 ? 0 : 1);
    return report;
}

nlohmann::json BatchTest::reportWith(const std::vector<std::string>& more,
                                     const std::function<void()>& happens) const
{
    HeldFile file(library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf"));
    constexpr int noSignal = 0;
    std::vector<std::string> all{"--workers", "1", "--json", "--log", log()};
    all.insert(all.end(), more.begin(), more.end());
    const ProgramResult result = SignalProgram(
        batchArguments(all), noSignal, [&file] { return file.isWaitedFor(); },
        [&] {
            happens();
            file.letGo();
        });
    const nlohmann::json report = nlohmann::json::parse(result.out, nullptr, false);
    EXPECT_TRUE(report.is_object()) << result.out << result.err;
    return report.is_object() ? report : nlohmann::json::object();
}

BatchTest::Contents BatchTest::saved() const
{
    static const std::regex time("\"modified\" ?: ?\"[^\"]*\"");
    Contents contents;
    const fs::path folder = workspace.path(room + "saved/" + savedFolder);
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        contents[name] =
            std::regex_replace(workspace.read(room + "saved/" + savedFolder + '/' + name), time, "");
    }
    return contents;
}

BatchTest::Contents BatchTest::savedOneByOne(std::size_t rows) const
{
    for (std::size_t row = 0; row < rows; ++row) {
        const std::string values = ValuesOf(row);
        const std::size_t middle = values.find(';');
        ExpectSuccess(RunProgram(argumentsFor(
            sourceFile(), targetFile(),
            saving(workspace.path(room + "saved"), {"--dial", values.substr(0, middle), "--dial",
                                                    values.substr(middle + 1), "--name", nameOf(row)}))));
    }
    const Contents contents = saved();
    fs::remove_all(workspace.path(room + "saved"));
    return contents;
}

void BatchTest::forgetRuns() const
{
    fs::remove_all(workspace.path(room + "saved"));
    fs::remove(log());
    for (const char* const end : {".gantrel-batch", ".gantrel-batch-locks", ".gantrel-batch-journal"})
        fs::remove(table() + end);
}

void BatchTest::expectCompletedWhereverCutOff(const Contents& expected, std::size_t places) const
{
    const auto run = [this](const Interference& interference) {
        return RunProgramTraced(workspace.path(""), batchArguments({"--workers", "1"}), interference);
    };
    const TracedProgram whole = run({});
    EXPECT_EQ(whole.exitCode, 0) << whole.err;
    EXPECT_TRUE(saved() == expected);
    EXPECT_GE(whole.calls.size(), places);
    for (std::size_t i = 0; i < places && !whole.calls.empty(); ++i) {
        const std::size_t at = 1 + i * (whole.calls.size() - 1) / (places - 1);
        forgetRuns();
        run({at});
        const std::string what = "killed before " + whole.calls[at - 1];
        const ProgramResult resumed = batch({"--resume"});
        EXPECT_EQ(resumed.exitCode, 0) << what << ": " << resumed.out;
        EXPECT_EQ(resumed.err, "") << what;
        EXPECT_TRUE(saved() == expected) << what;
    }
    expectNoTraces();
}

std::string BatchTest::savedFile(const std::string& name) const
{
    return workspace.path(room + "saved/" + savedFolder + '/' + name);
}

void ExpectCounts(const nlohmann::json& report, int done, int skipped, int failed)
{
    EXPECT_EQ(report.value("done", -1), done);
    EXPECT_EQ(report.value("skipped", -1), skipped);
    EXPECT_EQ(report.value("failed", -1), failed) << report;
}

std::vector<pid_t> WorkersOfBatches()
{
    // Those of other tests that run at the same time have another temporary folder.
    const std::string folder = std::string("TMPDIR=") + std::getenv("TMPDIR");
    std::vector<pid_t> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error)) {
        const pid_t process = std::atoi(entry.path().filename().c_str());
        if (process > 0 && CommandOf(process).find("batch-worker") != std::string::npos &&
            EnvironmentOf(process).find(folder) != std::string::npos && ParentOf(process) != 0)
            found.push_back(process);
    }
    return found;
}
