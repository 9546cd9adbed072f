// Rays to lamps and to what is all around, shared among the pixels of a surface.
// SPDX-License-Identifier: MIT

#include "picture_shadows.h"

#include <algorithm>
#include <cmath>

namespace geometry {

namespace {

// Of each share.
constexpr std::uint32_t raysAround = 4; // and one to each lamp
constexpr float goldenAngle = 2.39996323f;

/// The i-th of evenly spread places on a disc of radius 1 (Vogel, "A better way to construct the sunflower
/// head", 1979).
Vec3f OnDisc(std::uint32_t i, std::uint32_t count)
{
    const float away = std::sqrt((static_cast<float>(i) + 0.5f) / static_cast<float>(count));
    const float angle = static_cast<float>(i) * goldenAngle;
    return {away * std::cos(angle), away * std::sin(angle), 0.0f};
}

/// Two directions at right angles to each other and to a normal.
struct Frame {
    explicit Frame(Vec3f normal)
        : u(Normalized(Cross(std::abs(normal.x) > 0.6f ? Vec3f{0, 1, 0} : Vec3f{1, 0, 0}, normal))),
          v(Cross(normal, u))
    {
    }
    Vec3f u, v;
};

std::vector<Vec3f> LampDirections(Vec3f middle, std::uint32_t count)
{
    const Frame frame(middle);
    std::vector<Vec3f> directions;
    for (std::uint32_t i = 0; i < count; ++i) {
        const Vec3f place = OnDisc(i, count) * lampRadius;
        directions.push_back(Normalized(middle + frame.u * place.x + frame.v * place.y));
    }
    return directions;
}

/// Denser around the normal, as its surface takes light in.
std::vector<Vec3f> HemisphereDirections(std::uint32_t count)
{
    std::vector<Vec3f> directions;
    for (std::uint32_t i = 0; i < count; ++i) {
        Vec3f place = OnDisc(i, count);
        place.z = std::sqrt(std::max(0.0f, 1.0f - LengthSquared(place)));
        directions.push_back(place);
    }
    return directions;
}

} // namespace

ShadowTracer::ShadowTracer(const PictureView& view)
    : _view(view), _shares(view.samplesPerAxis), _likeness(view),
      _hemisphere(HemisphereDirections(_shares.count() * raysAround))
{
    for (std::size_t l = 0; l < lampCount; ++l)
        _toLamps[l] = LampDirections(view.light.lamps()[l].direction, _shares.count());
    view.stage.prepareToTrace();
}

int ShadowTracer::reach(int samplesPerAxis)
{
    return RayShares(samplesPerAxis).areTakenOver() ? 2 : 0;
}

struct ShadowTracer::Start {
    SurfaceSample from;
    std::uint32_t surface; ///< of the row
    std::uint32_t share;
    bool isFirst;

    RaySums& sumsIn(PixelRow& row) const
    {
        PixelSurface& owner = row.surfaces[surface];
        return isFirst ? owner.first : owner.further;
    }
};

void ShadowTracer::trace(base::Span<PixelRow> rows, std::size_t which) const
{
    PixelRow& row = rows[which];
    std::vector<Start> starts = startsOf(rows, which);
    // Neighbours that send the same share, whose rays go nearly the same way, side by side.
    std::stable_sort(starts.begin(), starts.end(),
                     [](const Start& a, const Start& b) { return a.share < b.share; });
    traceOpenness(starts, row);
    std::vector<Start> facing;
    for (std::size_t l = 0; l < lampCount; ++l) {
        facing.clear();
        std::copy_if(starts.begin(), starts.end(), std::back_inserter(facing), [&](const Start& start) {
            return Dot(start.from.normal, _view.light.lamps()[l].direction) > 0.0f;
        });
        traceLamp(l, facing, row);
    }
}

/// Calls visit(surface, weight) for the surface itself and those around it that are one with it. The weights,
/// which fall off at the rim, give each share as much as a square of four by four does.
template <class Visit>
void ShadowTracer::visitLike(base::Span<const PixelRow> rows, std::size_t which, int column,
                             const PixelSurface& surface, const Visit& visit) const
{
    constexpr int reach = 2;
    constexpr float weights[] = {0.5f, 1.0f, 1.0f, 1.0f, 0.5f};
    const float slack = _likeness.slackAt(surface.position);
    const int first = std::max(0, column - reach), last = std::min(_view.width - 1, column + reach);
    for (int dy = -reach; dy <= reach; ++dy) {
        const std::ptrdiff_t y = static_cast<std::ptrdiff_t>(which) + dy;
        if (y < 0 || y >= static_cast<std::ptrdiff_t>(rows.size()))
            continue;
        const PixelRow& row = rows[static_cast<std::size_t>(y)];
        for (int x = first; x <= last; ++x)
            for (std::uint32_t s = row.firsts[static_cast<std::size_t>(x)];
                 s < row.firsts[static_cast<std::size_t>(x) + 1]; ++s)
                if (SurfaceLikeness::areOne(surface, row.surfaces[s], slack))
                    visit(row.surfaces[s], weights[dy + reach] * weights[x - column + reach]);
    }
}

std::vector<ShadowTracer::Start> ShadowTracer::startsOf(base::Span<PixelRow> rows, std::size_t which) const
{
    constexpr float enough = 15.0f; // of 16: next to an edge light changes too fast to be taken over
    PixelRow& row = rows[which];
    const auto samples = static_cast<std::uint32_t>(_view.samplesPerAxis * _view.samplesPerAxis);
    std::vector<Start> starts;
    for (int column = 0; column < _view.width; ++column)
        for (std::uint32_t s = row.firsts[static_cast<std::size_t>(column)];
             s < row.firsts[static_cast<std::size_t>(column) + 1]; ++s) {
            PixelSurface& surface = row.surfaces[s];
            float like = 0.0f;
            if (_shares.areTakenOver())
                visitLike(rows, which, column, surface,
                          [&](const PixelSurface&, float weight) { like += weight; });
            surface.takesOver = like >= enough;
            // A small part of a pixel needs fewer.
            const std::uint32_t count =
                surface.takesOver
                    ? 1
                    : std::min(_shares.count(),
                               std::max(1u, 2 * _shares.count() * surface.sampleCount / samples));
            const std::uint32_t own = RayShares::at(column, row.number), step = _shares.count() / count;
            for (std::uint32_t i = 0; i < count; ++i)
                starts.push_back({row.samples[surface.firstSample + (own + i) % surface.sampleCount], s,
                                  (own + i * step) % _shares.count(), i == 0});
        }
    return starts;
}

void ShadowTracer::traceOpenness(base::Span<const Start> starts, PixelRow& row) const
{
    std::vector<Frame> frames;
    frames.reserve(starts.size());
    for (const Start& start : starts) {
        frames.emplace_back(start.from.normal);
        start.sumsIn(row).shares += 1.0f;
    }
    std::vector<Ray> rays(starts.size());
    std::vector<std::uint8_t> areFree(starts.size());
    for (std::uint32_t r = 0; r < raysAround; ++r) {
        for (std::size_t i = 0; i < starts.size(); ++i) {
            const Vec3f way = _hemisphere[starts[i].share + r * _shares.count()];
            rays[i] = {starts[i].from.place,
                       frames[i].u * way.x + frames[i].v * way.y + starts[i].from.normal * way.z};
        }
        _view.stage.findFree(rays, _view.rayOffset(), 0.15f * _view.size, areFree.data());
        for (std::size_t i = 0; i < starts.size(); ++i)
            if (areFree[i])
                starts[i].sumsIn(row).open += 1.0f / raysAround;
    }
}

void ShadowTracer::traceLamp(std::size_t lamp, base::Span<const Start> starts, PixelRow& row) const
{
    std::vector<Ray> rays(starts.size());
    std::vector<std::uint8_t> areFree(starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i)
        rays[i] = {starts[i].from.place, _toLamps[lamp][starts[i].share]};
    _view.stage.findFree(rays, _view.rayOffset(), INFINITY, areFree.data());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        RaySums& sums = starts[i].sumsIn(row);
        sums.lampShares[lamp] += 1.0f;
        sums.lit[lamp] += static_cast<float>(areFree[i]);
    }
}

void ShadowTracer::light(base::Span<PixelRow> rows, std::size_t which) const
{
    PixelRow& row = rows[which];
    for (int column = 0; column < _view.width; ++column) {
        const auto c = static_cast<std::size_t>(column);
        for (std::uint32_t s = row.firsts[c]; s < row.firsts[c + 1]; ++s) {
            const PixelSurface& surface = row.surfaces[s];
            RaySums sums = surface.further;
            if (surface.takesOver)
                visitLike(rows, which, column, surface,
                          [&](const PixelSurface& other, float weight) { sums.add(other.first, weight); });
            else
                sums.add(surface.first, 1.0f);
            std::array<float, lampCount> lit{};
            for (std::size_t l = 0; l < lampCount; ++l)
                lit[l] = sums.lampShares[l] > 0.0f ? sums.lit[l] / sums.lampShares[l] : 0.0f;
            Add(_view.light.light(row.responses[s], sums.open / sums.shares, lit), row.colors[c]);
        }
    }
}

} // namespace geometry
