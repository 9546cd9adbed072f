// Running `gantrel batch` on a small library.
// SPDX-License-Identifier: MIT

#include "cli_batch.h"

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

std::string CommandOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/cmdline");
    return {std::istreambuf_iterator<char>(file), {}};
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

BatchTest::BatchTest()
{
    writeTable(3);
}

void BatchTest::writeTable(std::size_t rows) const
{
    std::string text = "name,dial\n";
    for (std::size_t row = 0; row < rows; ++row)
        text += nameOf(row) + ',' + ValuesOf(row) + '\n';
    workspace.write("jobs.csv", text);
}

std::vector<std::string> BatchTest::batchArguments(const std::vector<std::string>& more) const
{
    std::vector<std::string> all{"batch",    table(),      "--content", library(),
                                 "--source", sourceFile(), "--target",  targetFile()};
    all = saving(workspace.path("saved"), all);
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

BatchTest::Contents BatchTest::saved() const
{
    static const std::regex time("\"modified\" ?: ?\"[^\"]*\"");
    Contents contents;
    const fs::path folder = workspace.path(std::string("saved/") + savedFolder);
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename();
        contents[name] =
            std::regex_replace(workspace.read(std::string("saved/") + savedFolder + '/' + name), time, "");
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
            saving(workspace.path("saved"), {"--dial", values.substr(0, middle), "--dial",
                                             values.substr(middle + 1), "--name", nameOf(row)}))));
    }
    const Contents contents = saved();
    fs::remove_all(workspace.path("saved"));
    return contents;
}

std::string BatchTest::savedFile(const std::string& name) const
{
    return workspace.path(std::string("saved/") + savedFolder + '/' + name);
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
