// How long each kernel of the geometry library takes, at the sizes of real figures.
// SPDX-License-Identifier: MIT

#include "geometry/deltas.h"
#include "geometry/morph_transfer.h"
#include "geometry/multires_detail.h"
#include "geometry/normals.h"
#include "geometry/obj.h"
#include "geometry/picture.h"
#include "geometry/skinning.h"
#include "geometry/subdivision.h"
#include "geometry/surface_distance.h"
#include "geometry/surface_tree.h"
#include "humans.h"
#include "shapes.h"

#include <benchmark/benchmark.h>

#include <random>

using namespace geometry;

namespace {

/// A body of about rings * segments vertices: a sphere of 90 cm with waves, so that normals and distances
/// vary.
PolygonMesh Body(int rings, int segments)
{
    PolygonMesh body = shapes::Sphere(90.0f, rings, segments);
    for (Vec3f& p : body.positions)
        p = p *
            (1.0f + 0.05f * std::sin(p.x * 0.11f) * std::cos(p.y * 0.07f) + 0.03f * std::sin(p.z * 0.23f));
    return body;
}

PolygonMesh Target25k()
{
    return Body(125, 200);
}
PolygonMesh Source16k()
{
    return Body(100, 160);
}
/// About a cage of 25k vertices at level 2.
PolygonMesh Dense400k()
{
    return Body(500, 800);
}

SkinWeights Weights(const PolygonMesh& mesh, int joints)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> weight(0.1f, 1.0f);
    std::vector<JointWeights> lists(static_cast<std::size_t>(joints));
    for (std::uint32_t v = 0; v < mesh.vertexCount(); ++v)
        for (int i = 0; i < 4; ++i) {
            JointWeights& list = lists[random() % lists.size()];
            list.vertices.push_back(v);
            list.weights.push_back(weight(random));
        }
    return MakeSkinWeights(mesh.vertexCount(), lists);
}

std::vector<JointPose> Poses(int count)
{
    std::vector<Joint> joints(static_cast<std::size_t>(count));
    for (int j = 0; j < count; ++j) {
        Joint& joint = joints[static_cast<std::size_t>(j)];
        joint.parent = j - 1;
        joint.center = {0, double(j), 0};
        joint.rotation = {0.5, 0.2, -0.3};
    }
    return EvaluateSkeleton(joints);
}

void CountVertices(benchmark::State& state, const PolygonMesh& mesh)
{
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(mesh.vertexCount()));
}

void ObjParse(benchmark::State& state, const PolygonMesh& mesh)
{
    const ObjPart part{mesh.view()};
    const std::string text = FormatObj({&part, 1});
    for (auto _ : state)
        benchmark::DoNotOptimize(ParseObj(text, {}, "bench"));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void ObjFormat(benchmark::State& state, const PolygonMesh& mesh)
{
    const ObjPart part{mesh.view()};
    std::size_t size = 0;
    for (auto _ : state)
        size = FormatObj({&part, 1}).size();
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void ObjFileRead(benchmark::State& state, const PolygonMesh& mesh)
{
    const auto file = std::filesystem::temp_directory_path() / "geometry-bench-read.obj";
    const ObjPart part{mesh.view()};
    WriteObj(file, {&part, 1});
    for (auto _ : state)
        benchmark::DoNotOptimize(ReadObj(file));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(file)));
    std::filesystem::remove(file);
}

void ObjFileWrite(benchmark::State& state, const PolygonMesh& mesh)
{
    const auto file = std::filesystem::temp_directory_path() / "geometry-bench-write.obj";
    const ObjPart part{mesh.view()};
    for (auto _ : state)
        WriteObj(file, {&part, 1});
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(file)));
    std::filesystem::remove(file);
}

void SubdivisionBuild(benchmark::State& state, const PolygonMesh& mesh, int level)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Subdivision(mesh.topology, level));
    CountVertices(state, mesh);
}

void SubdivisionRefine(benchmark::State& state, const PolygonMesh& mesh, int level)
{
    const Subdivision subdivision(mesh.topology, level);
    for (auto _ : state)
        benchmark::DoNotOptimize(subdivision.refine(mesh.positions, 0, level));
    state.SetItemsProcessed(state.iterations() * subdivision.topology(level)->vertexCount);
}

void SubdivisionFitCage(benchmark::State& state, const PolygonMesh& mesh, int level)
{
    const Subdivision subdivision(mesh.topology, level);
    std::vector<Vec3f> fine = subdivision.refine(mesh.positions, 0, level);
    for (Vec3f& p : fine)
        p += {std::sin(p.y), std::sin(p.z), std::sin(p.x)};
    for (auto _ : state)
        benchmark::DoNotOptimize(subdivision.fit(fine, level, mesh.positions));
}

std::vector<Vec3f> Bumped(std::vector<Vec3f> fine)
{
    for (Vec3f& p : fine)
        p += {std::sin(9 * p.y), std::sin(9 * p.z), std::sin(9 * p.x)};
    return fine;
}

void DetailSplit(benchmark::State& state, const PolygonMesh& mesh, int level)
{
    const Subdivision subdivision(mesh.topology, level);
    const std::vector<Vec3f> fine = Bumped(subdivision.refine(mesh.positions, 0, level));
    for (auto _ : state)
        benchmark::DoNotOptimize(SplitDetail(subdivision, fine, level, mesh.positions, {}, 0.001f));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(fine.size()));
}

void DetailRefine(benchmark::State& state, const PolygonMesh& mesh, int level)
{
    const Subdivision subdivision(mesh.topology, level);
    const std::vector<Vec3f> fine = Bumped(subdivision.refine(mesh.positions, 0, level));
    const MultiresDetail detail = SplitDetail(subdivision, fine, level, mesh.positions, {}, 0.001f);
    const ActiveDetail active{&detail};
    for (auto _ : state)
        benchmark::DoNotOptimize(RefineWithDetail(subdivision, mesh.positions, level, {&active, 1}));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(fine.size()));
}

void TreeBuild(benchmark::State& state, const PolygonMesh& mesh)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(SurfaceTree(mesh.view()));
    CountVertices(state, mesh);
}

void ClosestPoints(benchmark::State& state, const PolygonMesh& source, const PolygonMesh& target)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(SurfaceDistances(target.positions, source.view()));
    CountVertices(state, target);
}

void Normals(benchmark::State& state, const PolygonMesh& mesh)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(VertexNormals(mesh.view()));
    CountVertices(state, mesh);
}

void Match(benchmark::State& state, const PolygonMesh& source, const PolygonMesh& target)
{
    std::size_t filled = 0;
    for (auto _ : state)
        filled = MatchSurfaces(source.view(), target.view()).statistics().filled;
    state.counters["filled"] = static_cast<double>(filled);
    CountVertices(state, target);
}

void MatchHumans(benchmark::State& state, const humans::Pair& pair)
{
    std::vector<float> errors;
    for (auto _ : state) {
        const SurfaceMap map = MatchSurfaces(pair.source.view(), pair.target.view());
        state.PauseTiming();
        errors.clear();
        for (const humans::KnownMorph& morph : pair.morphs)
            for (const float error : humans::Errors(map.transfer(morph.onSource), morph.onTarget))
                errors.push_back(error);
        state.ResumeTiming();
    }
    const DistanceSummary summary = Summarize(errors);
    state.counters["mean_mm"] = summary.mean * 10; // cm to mm
    state.counters["p95_mm"] = summary.p95 * 10;
    state.counters["max_mm"] = summary.max * 10;
    CountVertices(state, pair.target);
}

void Transfer(benchmark::State& state, const PolygonMesh& source, const PolygonMesh& target)
{
    const SurfaceMap map = MatchSurfaces(source.view(), target.view());
    for (auto _ : state)
        benchmark::DoNotOptimize(map.transfer(source.positions));
    CountVertices(state, target);
}

void Skinning(benchmark::State& state, const PolygonMesh& mesh, SkinMode mode, bool inverse)
{
    const SkinWeights weights = Weights(mesh, 150);
    const std::vector<JointPose> poses = Poses(150);
    for (auto _ : state)
        benchmark::DoNotOptimize(inverse ? Unskin(mesh.positions, weights, poses, mode)
                                         : Skin(mesh.positions, weights, poses, mode));
    CountVertices(state, mesh);
}

void AddMorph(benchmark::State& state, const PolygonMesh& mesh)
{
    const SparseDeltas deltas = MakeDeltas(mesh.positions, 0.0f);
    std::vector<Vec3f> positions = mesh.positions;
    for (auto _ : state)
        AddDeltas(positions, deltas, 1e-3f);
    CountVertices(state, mesh);
}

void RenderPicture(benchmark::State& state, const PolygonMesh& mesh)
{
    const PictureItem item{mesh.view()};
    PictureOptions options;
    options.width = 450;
    options.height = 600;
    for (auto _ : state)
        benchmark::DoNotOptimize(Render({&item, 1}, options));
}

/// Work runs on the library's own threads, so the clock on the wall is the one that counts.
template <class Function, class... Args>
void Register(const std::string& name, Function function, Args... args)
{
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { function(state, args...); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void RegisterAll()
{
    const PolygonMesh source = Source16k(), target = Target25k(), dense = Dense400k();
    for (const auto& [size, mesh] : {std::pair("25k", target), std::pair("400k", dense)}) {
        const std::string suffix = std::string("/") + size;
        Register("obj_parse" + suffix, ObjParse, mesh);
        Register("obj_format" + suffix, ObjFormat, mesh);
        Register("obj_read_file" + suffix, ObjFileRead, mesh);
        Register("obj_write_file" + suffix, ObjFileWrite, mesh);
        Register("tree_build" + suffix, TreeBuild, mesh);
        Register("closest_point" + suffix, ClosestPoints, source, mesh);
        Register("normals" + suffix, Normals, mesh);
        Register("match" + suffix, Match, source, mesh);
        Register("transfer" + suffix, Transfer, source, mesh);
    }
    for (int level = 1; level <= 3; ++level) {
        const std::string suffix = "/25k/level:" + std::to_string(level);
        Register("subdivision_build" + suffix, SubdivisionBuild, target, level);
        Register("subdivision_refine" + suffix, SubdivisionRefine, target, level);
        Register("subdivision_fit_cage" + suffix, SubdivisionFitCage, target, level);
        Register("detail_split" + suffix, DetailSplit, target, level);
        Register("detail_refine" + suffix, DetailRefine, target, level);
    }
    Register("skin/linear/25k", Skinning, target, SkinMode::Linear, false);
    Register("skin/dual_quaternion/25k", Skinning, target, SkinMode::DualQuaternion, false);
    Register("unskin/dual_quaternion/25k", Skinning, target, SkinMode::DualQuaternion, true);
    Register("add_morph/25k", AddMorph, target);
    Register("render/25k/450x600", RenderPicture, target);
    if (const auto folder = humans::Folder())
        Register("match/humans", MatchHumans, humans::Load(*folder));
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
