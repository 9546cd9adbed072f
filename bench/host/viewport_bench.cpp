// Frames of the viewport with the sample library's Genesis 9 figure at base resolution.
// SPDX-License-Identifier: MIT

#include "bench/sample_host.h"
#include "dz3dviewport.h"
#include "dzapp.h"
#include "dzcamera.h"
#include "dzcontentmgr.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmainwindow.h"
#include "dzmorph.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzviewport.h"
#include "dzviewportmgr.h"

#include <benchmark/benchmark.h>

#include <QPixmap>

namespace {

constexpr int width = 1000, height = 760; // pixels, as the desktop application has it on a common screen

/// The figure in the middle of the viewport, set to a draw style.
struct Stage {
    explicit Stage(const char* style)
        : view(dzApp->getInterface()->getViewportMgr()->getActiveViewport()->get3DViewport()),
          figure(qobject_cast<DzFigure*>(dzScene->getPrimarySelection()))
    {
        view->setUserDrawStyle(QLatin1String(style));
        view->setFixedSize(width, height);
        view->getCamera()->frame(dzScene->getBoundingBox(), float(width) / float(height));
        view->grab(); // what is made once and kept
    }
    Dz3DViewport* view;
    DzFigure* figure;
};

void Orbit(benchmark::State& state, const char* style)
{
    const Stage stage(style);
    for (auto _ : state) {
        stage.view->getCamera()->orbit(2.0f, 0.0f);
        benchmark::DoNotOptimize(stage.view->grab());
    }
    state.SetItemsProcessed(state.iterations());
}

/// A dial that moves at every frame.
void Dial(benchmark::State& state)
{
    const Stage stage("Smooth Shaded");
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

} // namespace

int main(int argc, char** argv)
{
    const bench::SampleHost sample(argc, argv, false);
    dzApp->getInterface()->show();
    DzContentMgr& content = *dzApp->getContentMgr();
    content.openFile(content.getAbsolutePath(QStringLiteral("People/Genesis 9/Genesis 9.duf"), true), true);
    for (const char* const style : {"Smooth Shaded", "Wire Shaded", "Wireframe"})
        benchmark::RegisterBenchmark((std::string("viewport/orbit/") + style).c_str(), Orbit, style)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    benchmark::RegisterBenchmark("viewport/dial", Dial)->Unit(benchmark::kMillisecond)->UseRealTime();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
