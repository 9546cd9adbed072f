// What is told of lists of weights.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/counted.h"
#include "parts.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include <fmt/format.h>

namespace dson {

/// Counts what a list of weights loses in reading.
struct WeightLosses {
    std::size_t rows = 0;     ///< are not two numbers
    std::size_t vertices = 0; ///< are not those of the mesh
    std::size_t beyond = 0;   ///< weights outside 0..1

    /// Within 0..1.
    float held(double weight)
    {
        beyond += weight < 0.0 || weight > 1.0;
        return static_cast<float>(std::clamp(weight, 0.0, 1.0));
    }

    void tell(const std::string& owner, ParseContext& context) const
    {
        if (rows > 0)
            context.warn(owner, fmt::format("{} not two numbers and left out",
                                            base::Counted(rows, "row of weights is", "rows of weights are")));
        if (vertices > 0)
            context.warn(owner, fmt::format("{} of vertices that the mesh does not have and left out",
                                            base::Counted(vertices, "weight is", "weights are")));
        if (beyond > 0)
            context.warn(owner, fmt::format("{} not between 0 and 1 and taken as the nearer of them",
                                            base::Counted(beyond, "weight is", "weights are")));
    }
};

/// The weights that a member lists.
/// @param vertexCount  of their mesh; 0 for unknown
WeightMap ParseWeights(const Element& owner, std::string_view key, std::uint32_t vertexCount,
                       WeightLosses& losses);

} // namespace dson
