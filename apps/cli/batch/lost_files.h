// Files that rows of a batch name and nobody finds.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"
#include "batch/batch_plan.h"

#include <string>
#include <vector>

namespace cli {

/// Sources, targets, lists, content directories and folders of pages, each looked for once and told with
/// the line of its first row. Warnings: the other rows of a long table can be converted all the same.
/// @param name  of the table
base::Diagnostics FindLostFiles(const std::vector<BatchRow>& rows, const std::string& name);

} // namespace cli
