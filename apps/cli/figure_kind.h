// The kinds of stock figures by the names of the command line.
// SPDX-License-Identifier: MIT

#pragma once

#include "ks_daz-helpers.h"

namespace cli {

/// "genesis8_1female" and so on; "other" for no stock figure.
const char* FigureKindName(kst::daz::BaseFigure kind);

} // namespace cli
