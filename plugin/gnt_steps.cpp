// The steps of a conversion: their names, their texts, and keeping to their order.
// SPDX-License-Identifier: MIT

#include "gnt_steps.h"

#include "ks_assert.h"

#include <map>
#include <utility>

const char* GntStepText(GntStep step)
{
    static const std::map<GntStep, const char*> mapSteps{
        {GntStep::NormalizeTarget, "Normalizing target G9 figure"},
        {GntStep::ExportSource, "Exporting source as OBJ"},
        {GntStep::LoadStockFigure, "Loading stock figure for morph conversion"},
        {GntStep::ExportStockFigure, "Exporting stock figure as OBJ for morph conversion"},
        {GntStep::RemoveStockFigure, "Removing stock figure"},
        {GntStep::ImportStockMesh, "Loading stock figure OBJ again"},
        {GntStep::CreateConvertedMorph, "Creating converted morph"},
        {GntStep::DialConvertedMorph, "Dialing up converted morph"},
        {GntStep::LoadTempG9, "Loading temporary G9 for fit suit"},
        {GntStep::ExportTempG9, "Exporting temporary G9 as OBJ for fit suit"},
        {GntStep::RemoveTempG9, "Removing temporary G9"},
        {GntStep::ImportFitSuit, "Loading fit suit OBJ again"},
        {GntStep::RunTransferUtility, "Running Transfer Utility to create morphs in fit suit OBJ"},
        {GntStep::DialFitSuitMorphs, "Dialing up morphs in fit suit with transfers"},
        {GntStep::ExportFitSuit, "Exporting fit suit with transfers as OBJ again"},
        {GntStep::AdjustTarget, "Adjusting target G9 before creating morphs"},
        {GntStep::CreateFullMorph, "Creating full figure morph"},
        {GntStep::CreateHeadMorph, "Creating head morph"},
        {GntStep::CreateBodyMorph, "Creating body morph"},
    };
    const auto it = mapSteps.find(step);
    assert(it != mapSteps.end());
    return it->second;
}

GntStep GntCreationStep(GntJobIndex job)
{
    switch (job) {
    case GntFull:
        return GntStep::CreateFullMorph;
    case GntHead:
        return GntStep::CreateHeadMorph;
    case GntBody:
        break;
    }
    return GntStep::CreateBodyMorph;
}

std::vector<GntStep> GntStepsOf(GntJobs jobs)
{
    // The display opens with the adjusting text and never shows the normalizing one; that is how users know
    // it.
    std::vector<GntStep> steps{
        GntStep::AdjustTarget,         GntStep::ExportSource,       GntStep::LoadStockFigure,
        GntStep::ExportStockFigure,    GntStep::RemoveStockFigure,  GntStep::ImportStockMesh,
        GntStep::CreateConvertedMorph, GntStep::DialConvertedMorph, GntStep::LoadTempG9,
        GntStep::ExportTempG9,         GntStep::RemoveTempG9,       GntStep::ImportFitSuit,
        GntStep::RunTransferUtility,   GntStep::DialFitSuitMorphs,  GntStep::ExportFitSuit,
        GntStep::AdjustTarget};
    for (const GntJob& job : GNT_JOBS)
        if (jobs.test(job.flag))
            steps.push_back(GntCreationStep(job.index));
    return steps;
}

GntStepper::GntStepper(std::vector<GntStep> steps, std::vector<std::string> texts, bool confirm)
    : _steps(std::move(steps)), _confirm(confirm), _progress(std::move(texts))
{
}

void GntStepper::begin_X(GntStep step)
{
    assert(_begun < _steps.size() && _steps[_begun] == step);
    ++_begun;
    _progress.step_X(_confirm);
}

void GntStepper::done() const
{
    assert(_begun == _steps.size());
    _progress.done();
}
