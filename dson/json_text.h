// JSON as DSON files write it: members in the order they were added, floats in single precision.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace dson {

/// Single-precision floats print as the shortest text that reads back to the same float.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

/// Indented text; an array of numbers, or of strings and numbers, stands on one line. Binary values hold JSON
/// text, which is written as it stands.
std::string ToText(const Json& json);

/// The line, from 1, at which a text stops being JSON; 0 if it is.
std::size_t LineOfError(const std::string& text);

} // namespace dson
