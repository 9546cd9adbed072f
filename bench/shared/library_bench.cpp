// Finding, saving and loading content, and starting scripts, on the sample library.
// SPDX-License-Identifier: MIT

#include "bench/sample_host.h"
#include "dzapp.h"
#include "dzassetiomgr.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzscene.h"
#include "dzscript.h"
#include "ks_daz-helpers.h"
#include "ks_filtered-save.h"
#include "ks_morph-loader.h"
#include "ks_path-resolver.h"

#include <benchmark/benchmark.h>

#include <QDir>

#include <filesystem>

namespace {

openhost::OpenHost* g_host = nullptr;
std::string g_folder;

const char* const character = "People/Genesis 8 Female/Characters/Vera.duf";

void Load(const std::string& file)
{
    if (!dzApp->getContentMgr()->openFile(QString::fromStdString(file), true))
        std::abort();
}

std::string InLibrary(const char* relativePath)
{
    return kst::daz::GetAbsolutePath_X(relativePath);
}

void ResolveAPath(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(kst::daz::GetAbsolutePath_X(character));
}
BENCHMARK(ResolveAPath);

/// The way that a case-sensitive disk takes when the letters differ.
void ResolveAPathInOtherLetterCase(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(kst::daz::GetAbsolutePath_X("people/GENESIS 8 female/Characters/VERA.duf"));
}
BENCHMARK(ResolveAPathInOtherLetterCase);

void ResolveThroughThePathResolver(benchmark::State& state)
{
    const KsPathResolver resolver;
    std::string found;
    for (auto _ : state)
        benchmark::DoNotOptimize(resolver.resolve("12345", character, found));
}
BENCHMARK(ResolveThroughThePathResolver);

void ResolveTheMethodsOfMorphLoaderPro(benchmark::State& state)
{
    const auto loader = kst::MorphLoader::CreateMlpInstance_X();
    const QMetaObject& metaObject = *loader->getObject().metaObject();
    for (auto _ : state)
        for (const char* const signature : kst::MorphLoader::Signatures())
            benchmark::DoNotOptimize(kst::qt::MagicBase::FindMethodOrThrow(metaObject, signature));
}
BENCHMARK(ResolveTheMethodsOfMorphLoaderPro);

/// Every file is read from the disk, as by a new process.
template <class Prepare>
void LoadInAFreshHost(benchmark::State& state, const Prepare& prepare)
{
    const std::string file = prepare();
    for (auto _ : state) {
        state.PauseTiming();
        g_host->reset();
        state.ResumeTiming();
        Load(file);
    }
}

void LoadACharacter(benchmark::State& state)
{
    LoadInAFreshHost(state, [] { return InLibrary(character); });
}
BENCHMARK(LoadACharacter)->Unit(benchmark::kMillisecond);

std::string SavedScene(bool compress)
{
    g_host->reset();
    Load(InLibrary(character));
    const std::string file = g_folder + "/scene.duf";
    kst::FilteredSave::SaveScene_X(file, compress);
    return file;
}

void LoadASavedScene(benchmark::State& state)
{
    LoadInAFreshHost(state, [&state] { return SavedScene(state.range(0) != 0); });
}
BENCHMARK(LoadASavedScene)->ArgName("compressed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void SaveAScene(benchmark::State& state)
{
    SavedScene(false);
    const std::string file = g_folder + "/again.duf";
    for (auto _ : state)
        kst::FilteredSave::SaveScene_X(file, state.range(0) != 0);
}
BENCHMARK(SaveAScene)->ArgName("compressed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void SaveAPose(benchmark::State& state)
{
    SavedScene(false);
    for (auto _ : state)
        kst::FilteredSave::SavePosePreset_X(g_folder + "/pose.duf", false, false);
}
BENCHMARK(SaveAPose)->Unit(benchmark::kMillisecond);

void StartAScript(benchmark::State& state)
{
    DzScript script;
    script.setCode(QStringLiteral("1 + 1"));
    for (auto _ : state)
        benchmark::DoNotOptimize(script.execute());
}
BENCHMARK(StartAScript)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    bench::SampleHost sample(argc, argv);
    g_host = &sample.host();
    g_folder = (sample.folder() + QStringLiteral("/saved")).toStdString();
    QDir().mkpath(QString::fromStdString(g_folder));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
