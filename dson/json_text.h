// JSON as DSON files write it: members in the order they were added, floats in single precision.
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace geometry {
struct SparseDeltas;
}

namespace dson {

/// A float is an entry of a list; other numbers with a fraction are binary values, see ToText.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;

/// Indented text; an array of numbers, or of strings and numbers, stands on one line. Binary values hold JSON
/// text, which is written as it stands, or what DeltaRows() put there.
/// @throws base::FormatError  a float is not finite
std::string ToText(const Json& json);

/// A value that is JSON text already, and stands in the result as it is.
Json RawText(const std::string& json);

/// A list of rows of a vertex and its displacement (cm), held as they lie in memory: as values of JSON they
/// take ten times the room, and longer to make than to write.
Json DeltaRows(const geometry::SparseDeltas& deltas);

} // namespace dson
