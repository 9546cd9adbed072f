// Lists as text.
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

#include <fmt/format.h>

namespace documents {

inline std::string Joined(const std::vector<std::string>& texts, const char* between)
{
    return fmt::format("{}", fmt::join(texts, between));
}

} // namespace documents
