// The steps of a conversion from files to files, and how long each takes beside the others.
// SPDX-License-Identifier: MIT

#pragma once

#include "progress_estimate.h"

#include <vector>

namespace cli {

struct ConversionRequest;

/// Those that the command line adds to the plug-in's; the progress shows them, and reports name them.
namespace steps {
constexpr const char *loading = "Loading the figures", *measuring = "Measuring the result",
                     *adjustingRig = "Adjusting the rig", *saving = "Saving the morphs",
                     *writingObj = "Writing the OBJ file", *drawingPictures = "Drawing the pictures",
                     *drawingReport = "Drawing the report";
} // namespace steps

/// All of them, in order.
/// @param level  at which the figures are subdivided; 0 for not at all
std::vector<ExpectedStep> StepsOf(const ConversionRequest& request, int level);

} // namespace cli
