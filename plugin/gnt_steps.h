// The steps of a conversion: their names, their texts, and keeping to their order.
// SPDX-License-Identifier: MIT

#pragma once

#include "gnt_params.h"
#include "ks_progress.h"

#include <cstddef>
#include <string>
#include <vector>

enum class GntStep : int {
    NormalizeTarget = 1, ///< has a text, but is not shown
    ExportSource,
    LoadStockFigure,
    ExportStockFigure,
    RemoveStockFigure,
    ImportStockMesh,
    CreateConvertedMorph,
    DialConvertedMorph,
    LoadTempG9,
    ExportTempG9,
    RemoveTempG9,
    ImportFitSuit,
    RunTransferUtility,
    DialFitSuitMorphs,
    ExportFitSuit,
    AdjustTarget,
    CreateFullMorph,
    CreateHeadMorph,
    CreateBodyMorph
};

const char* GntStepText(GntStep step);

/// The step that creates a job's morph.
GntStep GntCreationStep(GntJobIndex job);
/// The steps of a run, in the order in which they are shown.
std::vector<GntStep> GntStepsOf(GntJobs jobs);

/// Shows the steps of one run. Each is begun by its name, in the list's order: a step that is another than
/// the list's next one, or that is left out, is a programming error and ends the process, because the user
/// would be told something else than what happens.
class GntStepper {
public:
    /// Begins the first step.
    /// @param steps    at least one
    /// @param texts    one for each step
    /// @param confirm  asks the user before each further one
    GntStepper(std::vector<GntStep> steps, std::vector<std::string> texts, bool confirm);

    /// @throws kst::CanceledException  the user does not want to go on
    void begin_X(GntStep step);
    /// All steps must have been begun.
    void done() const;

private:
    const std::vector<GntStep> _steps;
    const bool _confirm;
    std::size_t _begun = 1;
    const kst::daz::SimpleProgress _progress;
};
