// Loading a figure with a large library of morph files: for the first time, and again in a new program.
// SPDX-License-Identifier: MIT

#include "dson/writer.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "openhost/openhost.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <fmt/format.h>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr const char* figurePath = "/data/Acme/Sheet/Base/Sheet.dsf";
constexpr std::uint32_t side = 30; // 900 vertices
constexpr int filesInFolder = 250; // what a product brings

dson::FigureAsset Figure()
{
    dson::FigureAsset figure;
    figure.info.id = figurePath;
    figure.info.type = "figure";
    figure.geometry.id = "Sheet-1";
    auto topology = std::make_shared<geometry::Topology>();
    for (std::uint32_t v = 0; v < side * side; ++v)
        figure.geometry.mesh.positions.push_back({float(v % side), float(v / side), 0.0f});
    for (std::uint32_t y = 0; y + 1 < side; ++y)
        for (std::uint32_t v = y * side; v + 1 < (y + 1) * side; ++v)
            topology->addFace(std::vector<std::uint32_t>{v, v + 1, v + side + 1, v + side});
    topology->vertexCount = side * side;
    figure.geometry.mesh.topology = topology;
    figure.nodes = {dson::MakeNode("Sheet", "Sheet", "figure"), dson::MakeNode("hip", "Hip", "bone")};
    figure.nodes.back().parent = "Sheet";
    figure.skin.vertexCount = side * side;
    return figure;
}

std::string Formula(int driver, int driven)
{
    return fmt::format(R"({{"output": "Sheet:#Shape{}?value", "operations": [
        {{"op": "push", "url": "Sheet:#Shape{}?value"}}, {{"op": "push", "val": 0.5}}, {{"op": "mult"}}]}})",
                       driven, driver);
}

/// Every fourth is a control that drives the three behind it; the others move vertices.
std::string MorphText(int number)
{
    const bool isControl = number % 4 == 0;
    std::string body;
    if (isControl) {
        body = fmt::format(R"("formulas": [{}, {}, {}])", Formula(number, number + 1),
                           Formula(number, number + 2), Formula(number, number + 3));
    } else {
        body = R"("morph": {"vertex_count": 900, "deltas": {"count": 300, "values": [)";
        for (int v = 0; v < 300; ++v)
            body += fmt::format("{}[{}, 0.0125, {}, -0.25]", v ? ", " : "", v * 3, v * 0.001);
        body += "]}}";
    }
    return fmt::format(R"({{"file_version": "0.6.0.0",
        "asset_info": {{"id": "/data/Acme/Sheet/Base/Morphs/Acme/Shape{0}.dsf", "type": "modifier",
            "contributor": {{"author": "Acme", "email": "", "website": ""}},
            "revision": "1.0", "modified": "2024-05-01T10:20:30Z"}},
        "modifier_library": [{{"id": "Shape{0}", "name": "Shape{0}",
            "parent": "/data/Acme/Sheet/Base/Sheet.dsf#Sheet-1",
            "presentation": {{"type": "Modifier/Shape", "label": "", "description": "", "icon_large": ""}},
            "channel": {{"id": "value", "type": "float", "name": "Shape{0}", "label": "Shape {0}",
                "auto_follow": true, "value": 0, "min": -1, "max": 1, "clamped": true,
                "display_as_percent": true, "step_size": 0.01}},
            "group": "/Head/Face {1}", "region": "Head", {2}}}],
        "scene": {{"modifiers": [{{"id": "Shape{0}-1", "url": "#Shape{0}"}}]}}}})",
                       number, number % 50, body);
}

void WriteLibrary(const fs::path& folder, int morphCount)
{
    dson::WriteFigure(Figure(), folder);
    dson::CharacterAsset character;
    character.info.id = "/People/Sheet.duf";
    character.info.type = "character";
    character.figureUri = dson::MakeUri(figurePath, "Sheet");
    character.label = "Sheet";
    dson::WriteCharacter(character, Figure(), folder);
    // Files that have just changed may change again unnoticed, so nothing is kept of them.
    const auto lately = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (int i = 0; i < morphCount; ++i) {
        const fs::path product =
            folder / fmt::format("data/Acme/Sheet/Base/Morphs/Acme/Product {}", i / filesInFolder);
        fs::create_directories(product);
        const fs::path file = product / fmt::format("Shape{}.dsf", i);
        std::ofstream(file) << MorphText(i);
        fs::last_write_time(file, lately);
    }
}

/// In megabytes, of this program.
long PeakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes / 1024;
        }
    return 0;
}

/// Loads the figure once and prints how long it took, on the clock and of processors, the peak, and how many
/// shapes there are.
int Load(int argc, char** argv, const std::string& folder)
{
    QTemporaryDir settings;
    openhost::OpenHost::Options options;
    options.settingsFolder = settings.path();
    options.contentDirectories << QString::fromStdString(folder);
    options.terminalProgress = false;
    openhost::OpenHost host(argc, argv, options);
    const auto start = Clock::now();
    const std::clock_t workStart = std::clock();
    if (!dzApp->getContentMgr()->openFile(QString::fromStdString(folder + "/People/Sheet.duf"), true))
        return 1;
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const double work = double(std::clock() - workStart) / CLOCKS_PER_SEC;
    std::cout << seconds << ' ' << work << ' ' << PeakMemory() << ' '
              << dzScene->getPrimarySelection()->getObject()->getNumModifiers() << std::endl;
    // Taking the scene down is not what is measured.
    std::_Exit(0);
}

void LoadInAnotherProgram(benchmark::State& state, const std::string& folder)
{
    for (auto _ : state) {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {"--load", QString::fromStdString(folder)});
        program.waitForFinished(-1);
        std::istringstream answer(program.readAllStandardOutput().toStdString());
        double seconds = 0.0, work = 0.0;
        long megabytes = 0, shapes = 0;
        if (!(answer >> seconds >> work >> megabytes >> shapes)) {
            state.SkipWithError("the figure could not be loaded");
            return;
        }
        state.SetIterationTime(seconds);
        state.counters["cpu_ms"] = work * 1000.0;
        state.counters["peak_MB"] = double(megabytes);
        state.counters["shapes"] = double(shapes);
    }
}

} // namespace

/// [--morphs COUNT] and the benchmarks' own options
int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--load") == 0)
        return Load(argc, argv, argv[2]);
    int morphCount = 200;
    if (argc > 2 && std::strcmp(argv[1], "--morphs") == 0)
        morphCount = std::atoi(argv[2]);
    const QCoreApplication application(argc, argv);
    QTemporaryDir folder, cache;
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    WriteLibrary(folder.path().toStdString(), morphCount);
    for (const char* const name : {"FirstLoad", "SecondLoad"})
        benchmark::RegisterBenchmark(name, LoadInAnotherProgram, folder.path().toStdString())
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
