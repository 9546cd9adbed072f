// What is kept of the result of a row for a page about all of them.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/batch_results.h"

#include <nlohmann/json.hpp>

namespace cli {

/// "name", "kind", "morphs", "left_out", "distance" with mean, p95 and max in mm, "seconds",
/// "peak_memory_mib", "warnings", "page" and "picture"; without what the row does not have. Results may come
/// from other versions' logs, so that what is not as expected is left out as well.
Json BriefOf(const RowResult& result);

} // namespace cli
