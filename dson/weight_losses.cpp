// What is told of lists of weights.
// SPDX-License-Identifier: MIT

#include "weight_losses.h"

#include "json_rows.h"

namespace dson {

WeightMap ParseWeights(const Element& owner, std::string_view key, std::uint32_t vertexCount,
                       WeightLosses& losses)
{
    WeightMap map;
    // What does not say for how many vertices it is, is checked against its mesh later.
    const double limit = vertexCount > 0 ? vertexCount : unlimited;
    ForEachValue(owner, key, [&](const Element& row) {
        double pair[2];
        if (!IsRow(row, pair, 2)) {
            ++losses.rows;
        } else if (!IsIndex(pair[0], limit)) {
            ++losses.vertices;
        } else {
            map.vertices.push_back(static_cast<std::uint32_t>(pair[0]));
            map.weights.push_back(losses.held(pair[1]));
        }
    });
    return map;
}

} // namespace dson
