// The subcommand `convert-morphs`.
// SPDX-License-Identifier: MIT

#pragma once

#include "command.h"

namespace cli {

/// `gantrel convert-morphs`: single morphs of a figure as morphs of their own on a Genesis 9 figure.
void AddConvertMorphsCommand(CLI::App& program, CommandContext& context);

} // namespace cli
