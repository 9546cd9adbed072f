// What a picture of a figure is to show.
// SPDX-License-Identifier: MIT

#include "geometry/picture_box.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace geometry {

namespace {

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
    // Of a dense mesh a few thousand tell as much; with that margin it does not come down to a hundredth.
    constexpr std::size_t enough = 8192;
    const std::size_t step = 1 + positions.size() / enough;
    std::array<std::vector<float>, 3> values;
    for (std::size_t v = 0; v < positions.size(); v += step)
        if (const Vec3f position = positions[v]; IsFinite(position)) {
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

/// The positions that a face has, once each.
class SeenPositions {
public:
    explicit SeenPositions(const PolygonMeshView& mesh) : _all(mesh.positions)
    {
        std::vector<char> isSeen(mesh.vertexCount(), 0);
        for (const std::uint32_t vertex : mesh.topology->cornerVertices)
            isSeen[vertex] = 1;
        if (std::find(isSeen.begin(), isSeen.end(), 0) == isSeen.end())
            return;
        for (std::size_t v = 0; v < isSeen.size(); ++v)
            if (isSeen[v])
                _some.push_back(mesh.positions[v]);
        _all = _some;
    }
    SeenPositions(const SeenPositions&) = delete;
    SeenPositions& operator=(const SeenPositions&) = delete;

    base::Span<const Vec3f> all() const { return _all; }

private:
    base::Span<const Vec3f> _all;
    std::vector<Vec3f> _some; ///< where not every vertex has a face
};

bool IsHead(const std::string& name)
{
    constexpr std::string_view head = "head";
    return std::equal(name.begin(), name.end(), head.begin(), head.end(),
                      [](char a, char b) { return base::ToLowerAscii(a) == b; });
}

Box3f HeadGroup(const PolygonMeshView& figure, const Box3f& whole)
{
    const Topology& topology = *figure.topology;
    const auto head = static_cast<std::uint32_t>(
        std::find_if(topology.groupNames.begin(), topology.groupNames.end(), IsHead) -
        topology.groupNames.begin());
    Box3f box;
    for (std::size_t f = 0; f < topology.faceGroups.size(); ++f)
        if (topology.faceGroups[f] == head)
            for (const std::uint32_t vertex : figure.face(f))
                if (IsInside(figure.positions[vertex], whole))
                    box.include(figure.positions[vertex]);
    return box;
}

/// How wide a figure is from its top down to a little above the middle.
class Widths {
public:
    Widths(const PolygonMeshView& figure, const Box3f& whole)
        : _top(whole.max.y), _step(0.45f * (whole.max.y - whole.min.y) / count)
    {
        for (std::size_t f = 0; f < figure.faceCount() && _step > 0.0f; ++f) {
            Box3f face;
            for (const std::uint32_t vertex : figure.face(f))
                if (IsInside(figure.positions[vertex], whole))
                    face.include(figure.positions[vertex]);
            if (!face.isEmpty())
                for (int i = sliceOf(face.max.y); i <= std::min(sliceOf(face.min.y), count - 1); ++i)
                    _slices[static_cast<std::size_t>(i)].include(face.min.x, face.max.x);
        }
    }

    /// The height of the narrowest place, in proportion to what is above and below it; the top without one.
    float neck() const
    {
        constexpr float pronounced = 0.9f;
        std::array<float, count> below{};
        for (std::size_t i = count - 1; i > 0; --i)
            below[i - 1] = std::max(below[i], _slices[i].width());
        float above = 0.0f, narrowest = pronounced, height = _top;
        for (std::size_t i = 0; i < count; ++i) {
            above = std::max(above, _slices[i].width());
            const float share = _slices[i].width() / std::min(above, below[i]);
            if (share < narrowest) {
                narrowest = share;
                height = _top - _step * (static_cast<float>(i) + 0.5f);
            }
        }
        return height;
    }

private:
    static constexpr int count = 60;
    struct Slice {
        float low = INFINITY, high = -INFINITY;
        void include(float from, float to) { low = std::min(low, from), high = std::max(high, to); }
        float width() const { return std::max(high - low, 0.0f); }
    };

    int sliceOf(float height) const
    {
        return static_cast<int>(std::clamp((_top - height) / _step, 0.0f, static_cast<float>(count)));
    }

    float _top, _step;
    std::array<Slice, count> _slices;
};

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

Box3f BoxToShow(const PolygonMeshView& mesh, std::size_t* farOff)
{
    return BoxToShow(SeenPositions(mesh).all(), farOff);
}

Box3f HeadToShow(const PolygonMeshView& figure)
{
    constexpr float headShare = 0.145f; // of a grown-up, with some of the neck
    const SeenPositions seen(figure);
    const Box3f whole = BoxToShow(seen.all());
    Box3f head = HeadGroup(figure, whole);
    if (!head.isEmpty() || whole.isEmpty())
        return head;
    float bottom = Widths(figure, whole).neck();
    if (bottom == whole.max.y)
        bottom = whole.max.y - headShare * (whole.max.y - whole.min.y);
    for (const Vec3f position : seen.all())
        if (IsInside(position, whole) && position.y >= bottom)
            head.include(position);
    return head;
}

bool IsInside(Vec3f position, const Box3f& box)
{
    return position.x >= box.min.x && position.y >= box.min.y && position.z >= box.min.z &&
           position.x <= box.max.x && position.y <= box.max.y && position.z <= box.max.z;
}

} // namespace geometry
