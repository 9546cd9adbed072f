// Frames of the viewport with the sample library's Genesis 9 figure, at base resolution and subdivided.
// SPDX-License-Identifier: MIT

#include "bench/sample_host.h"
#include "dz3dviewport.h"
#include "dzapp.h"
#include "dzcamera.h"
#include "dzcontentmgr.h"
#include "dzenumproperty.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmainwindow.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"
#include "openhost/viewport_extras.h"

#include <benchmark/benchmark.h>

#include <QPixmap>

namespace {

constexpr int width = 1280, height = 800; // pixels

/// The figure in the middle of the viewport, set to a draw style.
struct Stage {
    explicit Stage(const char* style, int level)
        : view(dzApp->getInterface()->getViewportMgr()->getActiveViewport()->get3DViewport()),
          figure(qobject_cast<DzFigure*>(dzScene->getPrimarySelection()))
    {
        setLevel(level);
        view->setUserDrawStyle(QLatin1String(style));
        view->setFixedSize(width, height);
        view->getCamera()->frame(dzScene->getBoundingBox(), float(width) / float(height));
        view->grab(); // what is made once and kept
    }
    Dz3DViewport* view;
    DzFigure* figure;

private:
    void setLevel(int level) const
    {
        const auto* const shape = qobject_cast<DzFacetShape*>(figure->getObject()->getCurrentShape());
        shape->getLODControl()->setValue(level > 0 ? 1 : 0); // high or base resolution
        shape->getSubDLevelControl()->setValue(level);
    }
};

void Orbit(benchmark::State& state, const char* style, int level)
{
    const Stage stage(style, level);
    for (auto _ : state) {
        stage.view->getCamera()->orbit(2.0f, 0.0f);
        benchmark::DoNotOptimize(stage.view->grab());
    }
    state.SetItemsProcessed(state.iterations());
}

/// A dial that moves at every frame.
void Dial(benchmark::State& state, const char* style, int level)
{
    const Stage stage(style, level);
    auto* const morph = qobject_cast<DzMorph*>(
        stage.figure->getObject()->findModifier(QStringLiteral("body_bs_ProportionHeight")));
    if (!morph) {
        state.SkipWithError("the figure has no such morph");
        return;
    }
    float value = 0.0f;
    for (auto _ : state) {
        value = value > 0.5f ? 0.0f : value + 0.01f;
        morph->getValueChannel()->setValue(value);
        benchmark::DoNotOptimize(stage.view->grab());
    }
    state.SetItemsProcessed(state.iterations());
}

/// Twice the figure, or the figure on the ground.
enum class Extra { SideBySide, Ground };

void OrbitWith(benchmark::State& state, Extra extra, int level)
{
    const Stage stage("Smooth Shaded", level);
    if (extra == Extra::Ground)
        openhost::ShowGround(*stage.view, true);
    else
        openhost::ShowSideBySide(*stage.view, stage.figure, stage.figure);
    stage.view->grab();
    for (auto _ : state) {
        stage.view->getCamera()->orbit(2.0f, 0.0f);
        benchmark::DoNotOptimize(stage.view->grab());
    }
    openhost::ShowGround(*stage.view, false);
    openhost::ShowSideBySide(*stage.view, nullptr, nullptr);
    state.SetItemsProcessed(state.iterations());
}

/// What lies under the pointer, found for the first time after a change.
void Hold(benchmark::State& state, int level)
{
    const Stage stage("Smooth Shaded", level);
    for (auto _ : state) {
        state.PauseTiming();
        emit dzScene->drawnDataChanged();
        stage.view->grab();
        state.ResumeTiming();
        benchmark::DoNotOptimize(stage.view->findNodeAt(QPoint(width / 2, height / 2)));
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

int main(int argc, char** argv)
{
    const bench::SampleHost sample(argc, argv, false);
    dzApp->getInterface()->show();
    DzContentMgr& content = *dzApp->getContentMgr();
    content.openFile(content.getAbsolutePath(QStringLiteral("People/Genesis 9/Genesis 9.duf"), true), true);
    for (const int level : {0, 2})
        for (const char* const style : {"Smooth Shaded", "Wire Shaded", "Hidden Line", "Wireframe"}) {
            const std::string name = std::string(style) + "/level:" + std::to_string(level);
            for (benchmark::internal::Benchmark* const registered :
                 {benchmark::RegisterBenchmark(("viewport/orbit/" + name).c_str(), Orbit, style, level),
                  benchmark::RegisterBenchmark(("viewport/dial/" + name).c_str(), Dial, style, level)})
                registered->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
        }
    for (const int level : {0, 2}) {
        const std::string name = "/level:" + std::to_string(level);
        for (benchmark::internal::Benchmark* const registered :
             {benchmark::RegisterBenchmark(("viewport/orbit/Side by Side" + name).c_str(), OrbitWith,
                                           Extra::SideBySide, level),
              benchmark::RegisterBenchmark(("viewport/orbit/Ground" + name).c_str(), OrbitWith, Extra::Ground,
                                           level),
              benchmark::RegisterBenchmark(("viewport/hold" + name).c_str(), Hold, level)})
            registered->Unit(benchmark::kMillisecond)->UseRealTime()->MeasureProcessCPUTime();
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
