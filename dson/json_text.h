// JSON as DSON files write it: members in the order they were added, floats in single precision.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace dson {

/// A float is an entry of a list; other numbers with a fraction are binary values, see ToText.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

/// Indented text; an array of numbers, or of strings and numbers, stands on one line. Binary values hold JSON
/// text, which is written as it stands.
/// @throws base::FormatError  a float is not finite
std::string ToText(const Json& json);

/// A value that is JSON text already, and stands in the result as it is.
Json RawText(const std::string& json);

} // namespace dson
