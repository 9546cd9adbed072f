// How libraries show a morph.
// SPDX-License-Identifier: MIT

#pragma once

#include "morphs/morph_choice.h"

#include <optional>
#include <string>

namespace cli {

struct MorphPresentation {
    std::string type, json; ///< the whole object
    std::string icon;       ///< its address; gone from the object where no content directory has it
    bool isIconThere = true;
};

/// What the file of a dial says, if that is more than a type: with an icon.
std::optional<MorphPresentation> ReadPresentation(const ShapeDial& dial);

} // namespace cli
