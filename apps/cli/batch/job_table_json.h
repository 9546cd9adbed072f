// Tables of work as lists of objects.
// SPDX-License-Identifier: MIT

#pragma once

#include "batch/job_table.h"

namespace cli {

/// Values are texts, numbers, true and false; null says nothing. Those of a list may stand in a list, or as
/// members of an object where they are of the form NAME=VALUE.
JobTable ReadJsonTable(std::string_view text, const std::vector<JobColumn>& columns);

} // namespace cli
