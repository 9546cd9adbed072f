// Counts in sentences.
// SPDX-License-Identifier: MIT

#include "base/counted.h"

#include <fmt/format.h>

namespace base {

std::string Counted(std::size_t count, const char* one, const char* many)
{
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

} // namespace base
