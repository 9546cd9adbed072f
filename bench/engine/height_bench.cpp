// Matching heights on the sample library's Genesis 9 figure: one step, and a whole match.
// SPDX-License-Identifier: MIT

#include "bench/sample_host.h"
#include "dzapp.h"
#include "dzbox3.h"
#include "dzcontentmgr.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "ks_daz-helpers.h"
#include "ks_figure-height.h"

#include <benchmark/benchmark.h>

namespace {

openhost::OpenHost* g_host = nullptr;

struct Target {
    Target()
    {
        g_host->reset();
        figure = &Load("People/Genesis 9/Genesis 9.duf");
        kst::daz::SetNodeResolution(*figure, kst::daz::NodeResolution::BaseResolution, true);
        height = kst::daz::FindFloatProperty(*figure, kst::daz::PropertyLocation::Any,
                                             "body_bs_ProportionHeight", true);
        height->setMinMax(-100.0f, 100.0f);
    }

    static DzFigure& Load(const char* relativePath)
    {
        DzContentMgr& content = *dzApp->getContentMgr();
        content.openFile(content.getAbsolutePath(QLatin1String(relativePath), true), true);
        return *qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
    }
    double vertexCount() const { return figure->getObject()->getCachedGeom()->getNumVertices(); }

    DzFigure* figure;
    DzFloatProperty* height;
};

/// One dial step and the bounding box after it. The dial goes to and fro, so that it stays within limits.
void OneStep(benchmark::State& state)
{
    const Target target;
    float value = 0.0f;
    float step = 0.005f;
    benchmark::DoNotOptimize(target.figure->getWSBoundingBox());
    for (auto _ : state) {
        if (value > 1.0f || value < -1.0f)
            step = -step;
        value += step;
        target.height->setValue(value);
        benchmark::DoNotOptimize(target.figure->getWSBoundingBox());
    }
    state.counters["vertices"] = target.vertexCount();
}

/// From the target's own height to the reference's.
void WholeMatch(benchmark::State& state)
{
    const Target target;
    const DzFigure& reference = Target::Load("People/Genesis 8 Female/Characters/Vera.duf");
    float reached = 0.0f;
    for (auto _ : state) {
        target.height->setValue(0.0f);
        kst::daz::AdjustFigureHeight(*target.figure, *target.height, reference);
        reached = target.height->getValue();
    }
    state.counters["dial"] = reached;
    state.counters["vertices"] = target.vertexCount();
}

} // namespace

int main(int argc, char** argv)
{
    bench::SampleHost sample(argc, argv);
    g_host = &sample.host();
    benchmark::RegisterBenchmark("height/step", OneStep)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("height/match", WholeMatch)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
