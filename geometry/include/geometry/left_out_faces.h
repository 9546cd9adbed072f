// Faces of a file that its mesh lacks.
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace geometry {

/// What else names faces of the file counts these, too.
struct LeftOutFaces {
    std::vector<std::uint32_t> numbers; ///< in the file, ascending

    bool empty() const { return numbers.empty(); }
    std::size_t count() const { return numbers.size(); }

    /// The mesh's number of a face of the file; nothing for one that is left out.
    std::optional<std::uint32_t> inMesh(std::uint32_t inFile) const
    {
        const auto next = std::lower_bound(numbers.begin(), numbers.end(), inFile);
        if (next != numbers.end() && *next == inFile)
            return std::nullopt;
        return inFile - static_cast<std::uint32_t>(next - numbers.begin());
    }
};

} // namespace geometry
