// The D-Formers of a scene that has been loaded.
// SPDX-License-Identifier: MIT

#pragma once

#include "loaded_figures.h"

#include <string>
#include <vector>

namespace openhost {

/// Gives each former its base and its field, and the modifiers their formers. Files say which belong together
/// by where they hang and by names only: what hangs on a former or is named after it is its own, and what
/// remains goes to the only former that there is.
/// @return what is left without a former, in sentences
std::vector<std::string> ConnectDFormers(const LoadedFigures& figures);

} // namespace openhost
