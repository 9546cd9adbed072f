// Our kernels, each beside the least that this machine needs for it: memory read and written once, the ray
// tracer's and the subdivision library's own loops.
// SPDX-License-Identifier: MIT

#include "geometry/normals.h"
#include "geometry/obj.h"
#include "geometry/subdivision.h"
#include "geometry/surface_tree.h"
#include "shapes.h"

#include <benchmark/benchmark.h>
#include <embree3/rtcore.h>
#include <opensubdiv/far/primvarRefiner.h>
#include <opensubdiv/far/topologyDescriptor.h>
#include <opensubdiv/far/topologyRefinerFactory.h>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include <cmath>
#include <cstring>
#include <memory>

using namespace geometry;
namespace Far = OpenSubdiv::Far;

namespace {

constexpr int level = 3;

/// About the size of a figure's cage.
const PolygonMesh& Cage()
{
    static const PolygonMesh cage = [] {
        PolygonMesh body = shapes::Sphere(90.0f, 125, 200);
        for (Vec3f& p : body.positions)
            p = p * (1.0f + 0.05f * std::sin(p.x * 0.11f) * std::cos(p.y * 0.07f));
        return body;
    }();
    return cage;
}

const Subdivision& Refinement()
{
    static const Subdivision subdivision(Cage().topology, level);
    return subdivision;
}

const PolygonMesh& Fine()
{
    static const PolygonMesh fine{Refinement().topology(level),
                                  Refinement().refine(Cage().positions, 0, level)};
    return fine;
}

const std::string& FineText()
{
    static const std::string text = [] {
        ObjPart part;
        part.mesh = Fine().view();
        return FormatObj({&part, 1});
    }();
    return text;
}

void CountBytes(benchmark::State& state, std::size_t bytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

/// The same number of bytes as the text, read and written once by all threads.
void MemoryOfObjText(benchmark::State& state)
{
    const std::string& text = FineText();
    std::string copy(text.size(), ' ');
    for (auto _ : state) {
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, text.size(), 1 << 20), [&](const auto& range) {
            std::memcpy(copy.data() + range.begin(), text.data() + range.begin(), range.size());
        });
        benchmark::ClobberMemory();
    }
    CountBytes(state, text.size());
}

void ObjTextFormatted(benchmark::State& state)
{
    ObjPart part;
    part.mesh = Fine().view();
    for (auto _ : state)
        benchmark::DoNotOptimize(FormatObj({&part, 1}));
    CountBytes(state, FineText().size());
}

void ObjTextParsed(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(ParseObj(FineText(), {}, "bench"));
    CountBytes(state, FineText().size());
}

/// What the library below calls a vertex.
struct Value {
    Vec3f place;
    void Clear(void* = nullptr) { place = {}; }
    void AddWithWeight(const Value& other, float weight) { place += other.place * weight; }
};

std::unique_ptr<Far::TopologyRefiner> OwnRefiner()
{
    const Topology& cage = *Cage().topology;
    std::vector<int> sizes(cage.faceCount());
    for (std::size_t f = 0; f < sizes.size(); ++f)
        sizes[f] = static_cast<int>(cage.face(f).size());
    Far::TopologyDescriptor descriptor;
    descriptor.numVertices = static_cast<int>(cage.vertexCount);
    descriptor.numFaces = static_cast<int>(sizes.size());
    descriptor.numVertsPerFace = sizes.data();
    descriptor.vertIndicesPerFace = reinterpret_cast<const int*>(cage.cornerVertices.data());
    using Factory = Far::TopologyRefinerFactory<Far::TopologyDescriptor>;
    std::unique_ptr<Far::TopologyRefiner> refiner(
        Factory::Create(descriptor, Factory::Options(OpenSubdiv::Sdc::SCHEME_CATMARK, {})));
    refiner->RefineUniform(Far::TopologyRefiner::UniformOptions(level));
    return refiner;
}

void OpenSubdivTopology(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(OwnRefiner());
}

void SubdivisionTopology(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Subdivision(Cage().topology, level));
}

void OpenSubdivValues(benchmark::State& state)
{
    const std::unique_ptr<Far::TopologyRefiner> refiner = OwnRefiner();
    std::vector<std::vector<Value>> values(level + 1);
    for (int l = 0; l <= level; ++l)
        values[static_cast<std::size_t>(l)].resize(
            static_cast<std::size_t>(refiner->GetLevel(l).GetNumVertices()));
    for (std::size_t v = 0; v < Cage().positions.size(); ++v)
        values[0][v].place = Cage().positions[v];
    for (auto _ : state)
        for (int l = 1; l <= level; ++l) {
            const Value* const from = values[static_cast<std::size_t>(l - 1)].data();
            Value* to = values[static_cast<std::size_t>(l)].data();
            Far::PrimvarRefiner(*refiner).Interpolate(l, from, to);
        }
}

void SubdivisionValues(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Refinement().refine(Cage().positions, 0, level));
}

/// The values of all levels, written once.
void MemoryOfValues(benchmark::State& state)
{
    std::vector<Vec3f> copy(Fine().positions.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), Fine().positions.data(), copy.size() * sizeof(Vec3f));
        benchmark::ClobberMemory();
    }
    CountBytes(state, copy.size() * sizeof(Vec3f));
}

/// A scene of the ray tracer's own, over the same triangles.
class OwnScene {
public:
    OwnScene() : _device(rtcNewDevice(nullptr)), _scene(rtcNewScene(_device))
    {
        const Triangles& triangles = tree.triangles();
        const RTCGeometry mesh = rtcNewGeometry(_device, RTC_GEOMETRY_TYPE_TRIANGLE);
        void* const places = rtcSetNewGeometryBuffer(mesh, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                     sizeof(Vec3f), Cage().positions.size());
        std::memcpy(places, Cage().positions.data(), Cage().positions.size() * sizeof(Vec3f));
        const std::size_t bytes = triangles.corners.size() * sizeof(std::uint32_t);
        void* const corners =
            rtcSetNewGeometryBuffer(mesh, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(std::uint32_t), triangles.corners.size() / 3);
        std::memcpy(corners, triangles.corners.data(), bytes);
        rtcCommitGeometry(mesh);
        rtcAttachGeometry(_scene, mesh);
        rtcReleaseGeometry(mesh);
        rtcCommitScene(_scene);
    }
    ~OwnScene()
    {
        rtcReleaseScene(_scene);
        rtcReleaseDevice(_device);
    }
    OwnScene(const OwnScene&) = delete;
    OwnScene& operator=(const OwnScene&) = delete;

    bool hits(Vec3f origin, Vec3f direction) const
    {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit ray{};
        ray.ray = {origin.x,    origin.y, origin.z, 0.0f, direction.x, direction.y,
                   direction.z, 0.0f,     INFINITY, ~0u,  0,           0};
        ray.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(_scene, &context, &ray);
        return ray.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    }

    const SurfaceTree tree{Cage().view()};

private:
    RTCDevice _device;
    RTCScene _scene;
};

const OwnScene& Scene()
{
    static const OwnScene scene;
    return scene;
}

template <class Look>
void LookFromEachVertex(benchmark::State& state, const Look& look)
{
    static const std::vector<Vec3f> normals = VertexNormals(Cage().view());
    for (auto _ : state) {
        std::size_t found = 0;
        for (std::size_t v = 0; v < normals.size(); ++v)
            found += look(Cage().positions[v] + normals[v], normals[v]);
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(normals.size()));
}

void EmbreeRays(benchmark::State& state)
{
    LookFromEachVertex(state, [](Vec3f at, Vec3f normal) { return Scene().hits(at, -normal); });
}

void SurfaceTreeRays(benchmark::State& state)
{
    LookFromEachVertex(state,
                       [](Vec3f at, Vec3f normal) { return Scene().tree.firstHit(at, -normal).isValid(); });
}

void SurfaceTreeClosestPoints(benchmark::State& state)
{
    LookFromEachVertex(state, [](Vec3f at, Vec3f) { return Scene().tree.closestPoint(at).isValid(); });
}

BENCHMARK(MemoryOfObjText)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ObjTextFormatted)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ObjTextParsed)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenSubdivTopology)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SubdivisionTopology)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryOfValues)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenSubdivValues)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SubdivisionValues)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(EmbreeRays)->Unit(benchmark::kMillisecond);
BENCHMARK(SurfaceTreeRays)->Unit(benchmark::kMillisecond);
BENCHMARK(SurfaceTreeClosestPoints)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
