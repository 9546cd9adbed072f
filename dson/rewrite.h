// Rewriting a file without losing what others put into it.
// SPDX-License-Identifier: MIT

#pragma once

#include "json_text.h"

#include <filesystem>

namespace dson {

/// The new content of a morph file, with what the file on disk holds beyond it: members that are never
/// written here
/// (`extra`, ...), formulas where the new content has none, other modifiers, other libraries. Members stand
/// in the order that the file has them in. A file that is not there or cannot be read adds nothing.
Json KeepUnknown(Json fresh, const std::filesystem::path& present);

} // namespace dson
