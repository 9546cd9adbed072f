// `gantrel batch`: a table of conversions.
// SPDX-License-Identifier: MIT

#pragma once

#include "command.h"

namespace cli {

void AddBatchCommand(CLI::App& program, CommandContext& context);

} // namespace cli
