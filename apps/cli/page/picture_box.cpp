// What a picture of a figure is to show.
// SPDX-License-Identifier: MIT

#include "page/picture_box.h"

#include <algorithm>
#include <array>
#include <vector>

namespace cli {

namespace {

using geometry::Box3f;
using geometry::Vec3f;

struct Range {
    float low, high;
};

/// Of the middle 98 of 100 values.
Range MiddleOf(std::vector<float>& values)
{
    const std::size_t cut = values.size() / 100, last = values.size() - 1 - cut;
    const auto at = [&values](std::size_t index) {
        const auto place = values.begin() + static_cast<std::ptrdiff_t>(index);
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    return {at(cut), at(last)};
}

Box3f Allowed(base::Span<const Vec3f> positions)
{
    constexpr float margin = 3.0f;
    std::array<std::vector<float>, 3> values;
    for (const Vec3f position : positions)
        if (geometry::IsFinite(position)) {
            values[0].push_back(position.x);
            values[1].push_back(position.y);
            values[2].push_back(position.z);
        }
    if (values[0].empty())
        return {};
    const Range x = MiddleOf(values[0]), y = MiddleOf(values[1]), z = MiddleOf(values[2]);
    const float around = margin * std::max({x.high - x.low, y.high - y.low, z.high - z.low});
    return {{x.low - around, y.low - around, z.low - around},
            {x.high + around, y.high + around, z.high + around}};
}

} // namespace

Box3f BoxToShow(base::Span<const Vec3f> positions, std::size_t* farOff)
{
    const Box3f allowed = Allowed(positions);
    Box3f box;
    for (const Vec3f position : positions)
        if (IsInside(position, allowed))
            box.include(position);
        else if (farOff)
            ++*farOff;
    return box;
}

bool IsInside(Vec3f position, const Box3f& box)
{
    return position.x >= box.min.x && position.y >= box.min.y && position.z >= box.min.z &&
           position.x <= box.max.x && position.y <= box.max.y && position.z <= box.max.z;
}

} // namespace cli
