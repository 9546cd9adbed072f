// A whole conversion at base resolution, files on disk to morphs saved, on the sample library.
// SPDX-License-Identifier: MIT

#include "bench/sample_host.h"
#include "dzapp.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzscene.h"
#include "gnt_convert-figure.h"
#include "ks_filtered-save.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

openhost::OpenHost* g_host = nullptr;
std::filesystem::path g_library;

DzNode& Load(const char* relativePath)
{
    DzContentMgr& content = *dzApp->getContentMgr();
    content.openFile(content.getAbsolutePath(QLatin1String(relativePath), true), true);
    return *dzScene->getPrimarySelection();
}

void Convert(const char* source)
{
    DzNode& from = Load(source);
    DzNode& to = Load("People/Genesis 9/Genesis 9.duf");
    dzScene->selectAllNodes(false);
    from.select(true);
    to.select(true);
    GntConverter converter(GntConverter::FindSourceAndTargetInSceneSelected_X());
    GntMissingMorphs missing;
    const std::vector<std::string> names{"Bench", "Bench Head", "Bench Body"}, paths(3, "/Gantrel");
    converter.run_X(GntResolution::Base, converter.makeConvertedLabel(), paths, names,
                    GntJobs(GntJobFlag::Head) | GntJobFlag::Body, missing);
    std::filesystem::create_directories(g_library / "saved");
    kst::FilteredSave::SaveMorphSupportAsset_X(to, (g_library / "saved").string(), "Bench", "Bench",
                                               {"Bench Head", "Bench Body"}, false, false);
}

/// Managers made anew each time, so that every file is read from the disk.
void WholeConversion(benchmark::State& state, const char* source)
{
    for (auto _ : state) {
        state.PauseTiming();
        g_host->reset();
        std::filesystem::remove_all(g_library / "saved"); // which the next one is not to replace
        state.ResumeTiming();
        Convert(source);
    }
}

void LoadFigure(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        g_host->reset();
        state.ResumeTiming();
        Load("People/Genesis 9/Genesis 9.duf");
    }
}

} // namespace

int main(int argc, char** argv)
{
    bench::SampleHost sample(argc, argv);
    g_host = &sample.host();
    g_library = sample.folder().toUtf8().constData();
    qputenv("TMPDIR", sample.folder().toUtf8());
    benchmark::RegisterBenchmark("convert/genesis8", WholeConversion,
                                 "People/Genesis 8 Female/Characters/Vera.duf")
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("convert/genesis3", WholeConversion,
                                 "People/Genesis 3 Male/Characters/Otto.duf")
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("load/genesis9", LoadFigure)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
