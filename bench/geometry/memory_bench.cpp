// What memory each step of a morph takes at most, at the levels that figures are saved at.
// SPDX-License-Identifier: MIT

#include "bench/peak_memory.h"
#include "geometry/morph_transfer.h"
#include "geometry/multires_detail.h"
#include "geometry/obj.h"
#include "geometry/subdivision.h"
#include "shapes.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <string>

#include <unistd.h>

using namespace geometry;

namespace {

/// As many vertices as a figure's cage has.
PolygonMesh Cage()
{
    return shapes::Sphere(90.0f, 125, 200);
}

std::filesystem::path File()
{
    return std::filesystem::temp_directory_path() / ("memory-bench-" + std::to_string(getpid()) + ".obj");
}

/// The cage with bumps, refined.
PolygonMesh Surface(const Subdivision& subdivision, const PolygonMesh& cage, int level)
{
    PolygonMesh surface;
    surface.topology = subdivision.topology(level);
    surface.positions = subdivision.refine(cage.positions, 0, level);
    for (Vec3f& p : surface.positions)
        p += {std::sin(9 * p.y), std::sin(9 * p.z), std::sin(9 * p.x)};
    return surface;
}

/// What a step begins with.
struct Stage {
    explicit Stage(int atLevel) : level(atLevel), surface(Surface(subdivision, cage, level)) {}

    const PolygonMesh cage = Cage();
    int level;
    Subdivision subdivision{cage.topology, level};
    PolygonMesh surface;
};

void Load(const Stage&)
{
    benchmark::DoNotOptimize(ReadObj(File()));
}

void Fit(const Stage& stage)
{
    benchmark::DoNotOptimize(
        stage.subdivision.fit(stage.surface.positions, stage.level, stage.cage.positions));
}

void Transfer(const Stage& stage)
{
    const std::vector<Vec3f> deltas(stage.surface.vertexCount(), Vec3f{0, 1, 0});
    benchmark::DoNotOptimize(MatchSurfaces(stage.surface.view(), stage.cage.view()).transfer(deltas));
}

void Morph(const Stage& stage)
{
    benchmark::DoNotOptimize(SplitDetail(stage.subdivision, stage.surface.positions, stage.level,
                                         stage.cage.positions, {}, 0.001f));
}

void Save(const Stage& stage)
{
    const ObjPart part{stage.surface.view()};
    WriteObj(File(), {&part, 1});
}

void Measure(benchmark::State& state, void (*step)(const Stage&))
{
    const Stage stage(static_cast<int>(state.range(0)));
    Save(stage);
    const bench::PeakMemory memory;
    for (auto _ : state)
        step(stage);
    memory.show(state);
    std::filesystem::remove(File());
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    const std::pair<const char*, void (*)(const Stage&)> steps[] = {
        {"load", Load}, {"fit", Fit}, {"transfer", Transfer}, {"morph", Morph}, {"save", Save}};
    for (const auto& [name, step] : steps)
        benchmark::RegisterBenchmark(name, Measure, step)
            ->ArgName("level")
            ->DenseRange(0, 3)
            ->Iterations(1)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
