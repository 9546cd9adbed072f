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

/// Of what is asked about a surface.
struct ShadowTracer::WantedRays {
    bool around;
    std::array<bool, lampCount> toLamps;

    bool any() const
    {
        return around || std::any_of(toLamps.begin(), toLamps.end(), [](bool b) { return b; });
    }
    static WantedRays All()
    {
        WantedRays all{true, {}};
        all.toLamps.fill(true);
        return all;
    }
    /// Where not all rays found the same.
    static WantedRays WhereUneven(const RaySums& found)
    {
        WantedRays uneven{found.open != found.shares, {}};
        for (std::size_t l = 0; l < lampCount; ++l)
            uneven.toLamps[l] = found.lit[l] != 0.0f && found.lit[l] != found.lampShares[l];
        return uneven;
    }
};

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
    std::uint32_t share;
    RaySums* sums; ///< receive what its rays find
    WantedRays wanted;
};

/// Next to an edge, light changes too fast to be taken over from what is left there.
bool ShadowTracer::Suffice(const RaySums& around)
{
    constexpr float all = 15.0f, some = 8.0f; // of 16
    return around.shares >= (WantedRays::WhereUneven(around).any() ? all : some);
}

/// A surface whose light cannot be told from its neighbours', and what these found.
struct ShadowTracer::Alone {
    int column;
    std::uint32_t surface; ///< of the row's
    RaySums around;        ///< own share included
};

void ShadowTracer::trace(PixelRow& row) const
{
    std::vector<Start> starts;
    for (int column = 0; column < _view.width; ++column)
        for (std::uint32_t s = row.firsts[static_cast<std::size_t>(column)];
             s < row.firsts[static_cast<std::size_t>(column) + 1]; ++s) {
            PixelSurface& surface = row.surfaces[s];
            const std::uint32_t share = RayShares::at(column, row.number);
            starts.push_back({row.samples[surface.firstSample + share % surface.sampleCount],
                              share % _shares.count(), &surface.own, WantedRays::All()});
        }
    trace(starts);
}

void ShadowTracer::trace(std::vector<Start>& starts) const
{
    // Neighbours that send the same share, whose rays go nearly the same way, side by side.
    std::stable_sort(starts.begin(), starts.end(),
                     [](const Start& a, const Start& b) { return a.share < b.share; });
    std::vector<Start> chosen;
    std::copy_if(starts.begin(), starts.end(), std::back_inserter(chosen),
                 [](const Start& start) { return start.wanted.around; });
    traceOpenness(chosen);
    for (std::size_t l = 0; l < lampCount; ++l) {
        chosen.clear();
        std::copy_if(starts.begin(), starts.end(), std::back_inserter(chosen), [&](const Start& start) {
            return start.wanted.toLamps[l] && Dot(start.from.normal, _view.light.lamps()[l].direction) > 0.0f;
        });
        traceLamp(l, chosen);
    }
}

void ShadowTracer::traceOpenness(base::Span<const Start> starts) const
{
    std::vector<Frame> frames;
    frames.reserve(starts.size());
    for (const Start& start : starts) {
        frames.emplace_back(start.from.normal);
        start.sums->shares += 1.0f;
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
                starts[i].sums->open += 1.0f / raysAround;
    }
}

void ShadowTracer::traceLamp(std::size_t lamp, base::Span<const Start> starts) const
{
    std::vector<Ray> rays(starts.size());
    std::vector<std::uint8_t> areFree(starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i)
        rays[i] = {starts[i].from.place, _toLamps[lamp][starts[i].share]};
    _view.stage.findFree(rays, _view.rayOffset(), INFINITY, areFree.data());
    for (std::size_t i = 0; i < starts.size(); ++i) {
        starts[i].sums->lampShares[lamp] += 1.0f;
        starts[i].sums->lit[lamp] += static_cast<float>(areFree[i]);
    }
}

/// What the own shares of a surface and of those around it that are one with it found; weighted so that each
/// share has as much as in a square of four by four.
RaySums ShadowTracer::lookAround(base::Span<const PixelRow> rows, std::size_t which, int column,
                                 const PixelSurface& surface) const
{
    constexpr int reach = 2;
    constexpr float weights[] = {0.5f, 1.0f, 1.0f, 1.0f, 0.5f};
    const float slack = _likeness.slackAt(surface.position);
    const int first = std::max(0, column - reach), last = std::min(_view.width - 1, column + reach);
    RaySums found;
    for (int dy = -reach; dy <= reach; ++dy) {
        const std::ptrdiff_t y = static_cast<std::ptrdiff_t>(which) + dy;
        if (y < 0 || y >= static_cast<std::ptrdiff_t>(rows.size()))
            continue;
        const PixelRow& row = rows[static_cast<std::size_t>(y)];
        for (int x = first; x <= last; ++x)
            for (std::uint32_t s = row.firsts[static_cast<std::size_t>(x)];
                 s < row.firsts[static_cast<std::size_t>(x) + 1]; ++s)
                if (SurfaceLikeness::areOne(surface, row.surfaces[s], slack))
                    found.add(row.surfaces[s].own, weights[dy + reach] * weights[x - column + reach]);
    }
    return found;
}

void ShadowTracer::addOtherShares(const PixelRow& row, const Alone& one, Part part, WantedRays wanted,
                                  RaySums* sums, std::vector<Start>& starts) const
{
    const PixelSurface& surface = row.surfaces[one.surface];
    const auto samples = static_cast<std::uint32_t>(_view.samplesPerAxis * _view.samplesPerAxis);
    // A small part of a pixel needs fewer.
    const std::uint32_t count =
        std::min(_shares.count(), std::max(1u, _shares.count() * surface.sampleCount / samples));
    const std::uint32_t own = RayShares::at(one.column, row.number), step = _shares.count() / count;
    const std::uint32_t stride = part == Part::All ? 1 : 2;
    for (std::uint32_t i = part == Part::Even ? 2 : 1; i < count; i += stride)
        starts.push_back({row.samples[surface.firstSample + (own + i) % surface.sampleCount],
                          (own + i * step) % _shares.count(), sums, wanted});
}

/// Half of the shares tell whether the other half would find anything else.
void ShadowTracer::traceAlone(const PixelRow& row, std::vector<Alone>& alone,
                              std::vector<RaySums>& sums) const
{
    const Part first = _shares.areTakenOver() ? Part::Even : Part::All;
    std::vector<Start> starts;
    for (const Alone& one : alone)
        addOtherShares(row, one, first, WantedRays::All(), &sums[one.surface], starts);
    trace(starts);
    if (first == Part::All)
        return;
    starts.clear();
    for (Alone& one : alone) {
        one.around.add(sums[one.surface], 1.0f);
        const WantedRays uneven = WantedRays::WhereUneven(one.around);
        if (uneven.any())
            addOtherShares(row, one, Part::Odd, uneven, &sums[one.surface], starts);
    }
    trace(starts);
}

void ShadowTracer::light(base::Span<PixelRow> rows, std::size_t which) const
{
    PixelRow& row = rows[which];
    std::vector<RaySums> sums(row.surfaces.size());
    std::vector<Alone> alone;
    for (int column = 0; column < _view.width; ++column)
        for (std::uint32_t s = row.firsts[static_cast<std::size_t>(column)];
             s < row.firsts[static_cast<std::size_t>(column) + 1]; ++s) {
            sums[s] = row.surfaces[s].own;
            RaySums around;
            if (_shares.areTakenOver()) {
                around = lookAround(rows, which, column, row.surfaces[s]);
                if (Suffice(around)) {
                    sums[s] = around;
                    continue;
                }
            }
            alone.push_back({column, s, around});
        }
    traceAlone(row, alone, sums);
    for (std::size_t column = 0; column < row.colors.size(); ++column)
        for (std::uint32_t s = row.firsts[column]; s < row.firsts[column + 1]; ++s) {
            std::array<float, lampCount> lit{};
            for (std::size_t l = 0; l < lampCount; ++l)
                lit[l] = sums[s].lampShares[l] > 0.0f ? sums[s].lit[l] / sums[s].lampShares[l] : 0.0f;
            Add(_view.light.light(row.responses[s], sums[s].open / sums[s].shares, lit), row.colors[column]);
        }
}

} // namespace geometry
