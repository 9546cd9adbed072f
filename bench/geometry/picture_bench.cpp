// Pictures of a figure, at base resolution and subdivided: time, and error against a long render.
// SPDX-License-Identifier: MIT

#include "geometry/picture_stage.h"
#include "geometry/subdivision.h"
#include "humans.h"
#include "shapes.h"

#include <benchmark/benchmark.h>

#include <cmath>

using namespace geometry;

namespace {

/// A ball with dents in the shadow of another one, where the human meshes are not at hand.
PolygonMesh StandIn()
{
    PolygonMesh ball = shapes::Sphere(60.0f, 130, 200);
    for (Vec3f& p : ball.positions)
        p *= 1.0f + 0.04f * std::sin(0.4f * p.x) * std::sin(0.3f * p.y);
    return shapes::Joined(ball, shapes::Moved(shapes::Sphere(15.0f, 20, 30), {-40, 50, 60}));
}

PolygonMesh Figure(int level)
{
    static const PolygonMesh cage = [] {
        const auto folder = humans::Folder();
        return folder ? humans::Load(*folder).target : StandIn();
    }();
    if (level == 0)
        return cage;
    const Subdivision subdivision(cage.topology, level);
    return {subdivision.topology(level),
            subdivision.refine(base::Span<const Vec3f>(cage.positions), 0, level)};
}

PictureOptions Options(View view, Lighting lighting, int width, int height)
{
    PictureOptions options;
    options.view = view;
    options.lighting = lighting;
    options.width = width;
    options.height = height;
    return options;
}

/// Errors of bytes; apart for pixels with much contrast around them, where the samples of a pixel count more
/// than shadows.
struct PictureError {
    double inside = 0.0, edges = 0.0;
};

bool IsEdge(const Picture& picture, int column, int row)
{
    constexpr int much = 24;
    int least = 255, most = 0;
    for (int y = std::max(0, row - 1); y <= std::min(picture.height - 1, row + 1); ++y)
        for (int x = std::max(0, column - 1); x <= std::min(picture.width - 1, column + 1); ++x) {
            const int green = picture.rgb[3 * static_cast<std::size_t>(y * picture.width + x) + 1];
            least = std::min(least, green), most = std::max(most, green);
        }
    return most - least > much;
}

/// Over the pixels that are not backdrop.
PictureError ErrorOf(const Picture& picture, const Picture& truth, const Picture& backdrop)
{
    double sums[2] = {};
    std::size_t counts[2] = {};
    for (int row = 0; row < truth.height; ++row)
        for (int column = 0; column < truth.width; ++column) {
            const std::size_t i = 3 * static_cast<std::size_t>(row * truth.width + column);
            if (std::equal(&truth.rgb[i], &truth.rgb[i] + 3, &backdrop.rgb[i]))
                continue;
            const bool isEdge = IsEdge(truth, column, row);
            for (std::size_t k = 0; k < 3; ++k)
                sums[isEdge] += std::pow(double(picture.rgb[i + k]) - double(truth.rgb[i + k]), 2);
            counts[isEdge] += 3;
        }
    const auto root = [&](int part) {
        return std::sqrt(sums[part] / double(std::max<std::size_t>(1, counts[part])));
    };
    return {root(0), root(1)};
}

/// With all that is made once for a figure.
void Draw(benchmark::State& state, View view, Lighting lighting, int level)
{
    const PolygonMesh mesh = Figure(level);
    const PictureItem item{mesh.view()};
    for (auto _ : state)
        benchmark::DoNotOptimize(Render({&item, 1}, Options(view, lighting, 640, 800)));
    state.counters["vertices"] = double(mesh.vertexCount());
}

/// Front, three quarters and face of one figure, as of each of a conversion's two.
void DrawThree(benchmark::State& state, int level)
{
    const PolygonMesh mesh = Figure(level);
    const PictureItem item{mesh.view()};
    for (auto _ : state) {
        const PictureStage stage({&item, 1});
        for (const View view : {View::Front, View::ThreeQuarter})
            benchmark::DoNotOptimize(RenderStage(stage, Options(view, Lighting::Studio, 640, 800)));
        benchmark::DoNotOptimize(RenderStage(stage, Options(View::Face, Lighting::Studio, 600, 600)));
    }
}

/// The time is that of the picture; the long render has 64 times the samples and rays.
void Error(benchmark::State& state, View view, int level)
{
    const PolygonMesh mesh = Figure(level);
    const PictureItem item{mesh.view()};
    const PictureStage stage({&item, 1});
    PictureOptions options = Options(view, Lighting::Studio, 160, 200);
    Picture picture;
    for (auto _ : state)
        picture = RenderStage(stage, options);
    options.samplesPerAxis = 16;
    const PictureError error = ErrorOf(picture, RenderStage(stage, options), Render({}, options));
    state.counters["rmse_inside"] = error.inside; // of 255
    state.counters["rmse_edges"] = error.edges;
}

void Encode(benchmark::State& state)
{
    const PolygonMesh mesh = Figure(0);
    const PictureItem item{mesh.view()};
    const Picture picture = Render({&item, 1}, Options(View::Front, Lighting::Studio, 640, 800));
    for (auto _ : state)
        state.counters["bytes"] = double(EncodePng(picture).size());
}

template <class Function, class... Args>
void Register(const std::string& name, Function function, Args... args)
{
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) { function(state, args...); })
        ->UseRealTime()
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    for (const int level : {0, 2}) {
        const std::string suffix = "/level:" + std::to_string(level);
        Register("picture/studio/front" + suffix, Draw, View::Front, Lighting::Studio, level);
        Register("picture/studio/face" + suffix, Draw, View::Face, Lighting::Studio, level);
        Register("picture/quick/front" + suffix, Draw, View::Front, Lighting::Quick, level);
        Register("picture/plain/front" + suffix, Draw, View::Front, Lighting::Plain, level);
        Register("picture/three" + suffix, DrawThree, level);
        Register("picture/error/front" + suffix, Error, View::Front, level);
        Register("picture/error/face" + suffix, Error, View::Face, level);
    }
    Register("picture/encode", Encode);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
