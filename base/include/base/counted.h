// Counts in sentences.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>

namespace base {

/// "1 vertex", "3 vertices"; what follows may belong to it, as in "vertex is" and "vertices are".
std::string Counted(std::size_t count, const char* one, const char* many);

/// The commonest of all.
inline std::string CountedVertices(std::size_t count)
{
    return Counted(count, "vertex", "vertices");
}

} // namespace base
