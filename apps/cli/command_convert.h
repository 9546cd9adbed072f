// `gantrel convert`: a source figure's shape as morphs on a Genesis 9 figure.
// SPDX-License-Identifier: MIT

#pragma once

#include "command.h"

namespace cli {

void AddConvertCommand(CLI::App& program, CommandContext& context);

} // namespace cli
