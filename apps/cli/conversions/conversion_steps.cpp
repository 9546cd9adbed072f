// The steps of a conversion from files to files, and how long each takes beside the others.
// SPDX-License-Identifier: MIT

#include "conversions/conversion_steps.h"

#include "conversions/conversion.h"
#include "gnt_steps.h"

#include <cmath>
#include <map>

namespace cli {

namespace {

/// Seconds, measured with figures of 13,000 and 10,000 vertices on two processors. A subdivided mesh has four
/// times the vertices at each level.
struct Duration {
    double cage = 0;
    double perQuadrupled = 0; ///< times four to the power of the level
};

Duration DurationOf(GntStep step)
{
    static const std::map<GntStep, Duration> durations{
        {GntStep::ExportSource, {0.01, 0.015}},
        {GntStep::LoadStockFigure, {0.02, 0}},
        {GntStep::ExportStockFigure, {0.02, 0.003}},
        {GntStep::CreateConvertedMorph, {0, 0.001}},
        {GntStep::LoadTempG9, {0.02, 0}},
        {GntStep::ExportTempG9, {0.04, 0.025}},
        {GntStep::ImportFitSuit, {0, 0.001}},
        {GntStep::RunTransferUtility, {0.5, 0.06}},
        {GntStep::ExportFitSuit, {0.02, 0.007}},
        {GntStep::CreateFullMorph, {0.02, 0.045}},
        {GntStep::CreateHeadMorph, {0.02, 0.0025}},
        {GntStep::CreateBodyMorph, {0.01, 0.0025}},
    };
    const auto found = durations.find(step);
    return found == durations.end() ? Duration() : found->second; // the others take next to no time
}

} // namespace

std::vector<ExpectedStep> StepsOf(const ConversionRequest& request, int level)
{
    const double vertices = level > 0 ? std::pow(4.0, level) : 0.0;
    std::vector<ExpectedStep> all;
    const auto add = [&](bool isWanted, const char* name, Duration duration) {
        if (isWanted)
            all.push_back({name, duration.cage + vertices * duration.perQuadrupled});
    };
    add(true, steps::loading, {0.3, 0});
    for (const GntStep step : GntStepsOf(request.morphs.jobs))
        add(true, GntStepText(step), DurationOf(step));
    add(true, steps::measuring, GntMakesWholeFigure(request.morphs.jobs) ? Duration{0.2, 0.018} : Duration());
    add(request.adjustsRig, steps::adjustingRig, {0.3, 0});
    add(request.save.has_value(), steps::saving, {0.1, 0});
    add(!request.exportObj.empty(), steps::writingObj, {0.01, 0.003});
    add(!request.pictures.empty(), steps::drawingPictures, {6.5, 0});
    add(!request.page.empty(), steps::drawingReport, {1.5, 0});
    return all;
}

} // namespace cli
