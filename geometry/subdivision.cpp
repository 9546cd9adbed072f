// Catmull-Clark subdivision: OpenSubdiv refines the topology once, and its masks are kept as sparse rows.
// SPDX-License-Identifier: MIT

#include "geometry/subdivision.h"

#include "base/counted.h"
#include "catmark_refiner.h"
#include "catmark_rows.h"
#include "for_each_index.h"
#include "geometry/errors.h"
#include "known_fits.h"
#include "level_fit.h"
#include "refinement.h"

#include <opensubdiv/far/topologyRefiner.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cassert>
#include <mutex>

namespace geometry {

namespace {

namespace Far = OpenSubdiv::Far;

struct Level {
    std::shared_ptr<const Topology> topology;
    std::vector<std::uint32_t> cageFaces; ///< empty for the cage itself
    SparseRows rows;                      ///< from the level before
};

std::shared_ptr<const Topology> LevelTopology(const Far::TopologyLevel& refined, const Topology& cage,
                                              const std::vector<std::uint32_t>& cageFaces)
{
    auto topology = std::make_shared<Topology>();
    const std::size_t faces = cageFaces.size();
    topology->vertexCount = static_cast<std::uint32_t>(refined.GetNumVertices());
    topology->faceOffsets.resize(faces + 1);
    topology->cornerVertices.resize(4 * faces); // every refined face is a quad
    topology->groupNames = cage.groupNames;
    topology->surfaceNames = cage.surfaceNames;
    topology->faceGroups.resize(cage.faceGroups.empty() ? 0 : faces);
    topology->faceSurfaces.resize(cage.faceSurfaces.empty() ? 0 : faces);
    ForEachIndex(faces, 8192, [&](std::size_t f) {
        const Far::ConstIndexArray corners = refined.GetFaceVertices(static_cast<int>(f));
        for (int c = 0; c < 4; ++c)
            topology->cornerVertices[4 * f + static_cast<std::size_t>(c)] =
                static_cast<std::uint32_t>(corners[c]);
        topology->faceOffsets[f + 1] = static_cast<std::uint32_t>(4 * (f + 1));
        if (!cage.faceGroups.empty())
            topology->faceGroups[f] = cage.faceGroups[cageFaces[f]];
        if (!cage.faceSurfaces.empty())
            topology->faceSurfaces[f] = cage.faceSurfaces[cageFaces[f]];
    });
    return topology;
}

Level MakeLevel(const Far::TopologyRefiner& refiner, int level, const Topology& cage, const Level& before)
{
    const Far::TopologyLevel& refined = refiner.GetLevel(level);
    Level result;
    result.cageFaces.resize(static_cast<std::size_t>(refined.GetNumFaces()));
    for (std::size_t f = 0; f < result.cageFaces.size(); ++f) {
        const auto parent = static_cast<std::uint32_t>(refined.GetFaceParentFace(static_cast<int>(f)));
        result.cageFaces[f] = before.cageFaces.empty() ? parent : before.cageFaces[parent];
    }
    result.topology = LevelTopology(refined, cage, result.cageFaces);
    result.rows = CatmarkRows(refiner, level);
    return result;
}

} // namespace

struct Subdivision::Impl {
    std::vector<Level> levels;
    mutable std::mutex stepsMutex;
    mutable std::vector<std::shared_ptr<const FitStep>>
        steps; ///< to each level; made when a fit first needs them
    mutable KnownFits knownFits;

    std::size_t vertexCount(int level) const
    {
        return levels[static_cast<std::size_t>(level)].topology->vertexCount;
    }

    template <class T>
    std::vector<T> refine(base::Span<const T> values, int from, int to) const
    {
        assert(0 <= from && from <= to && to < static_cast<int>(levels.size()));
        if (values.size() != vertexCount(from))
            throw TopologyError("subdivision level {} has {} but {} given", from,
                                base::CountedVertices(vertexCount(from)),
                                base::Counted(values.size(), "value is", "values are"));
        std::vector<T> result;
        for (int level = from + 1; level <= to; ++level)
            result = levels[static_cast<std::size_t>(level)].rows.apply(
                level == from + 1 ? values : base::Span<const T>(result));
        return from == to ? std::vector<T>(values.begin(), values.end()) : result;
    }

    /// From the level after the coarse one to the fine one.
    std::vector<std::shared_ptr<const FitStep>> stepsBetween(int coarse, int fine) const
    {
        const std::lock_guard lock(stepsMutex);
        steps.resize(levels.size());
        const auto first = static_cast<std::size_t>(coarse) + 1;
        // Kept when all are whole: work that is cancelled ends within them, too.
        std::vector<std::shared_ptr<const FitStep>> made = steps;
        // A thread that waits meanwhile must not take up other work, which could want the same lock.
        tbb::this_task_arena::isolate([&] {
            tbb::parallel_for(first, static_cast<std::size_t>(fine) + 1, [&](std::size_t i) {
                if (!made[i])
                    made[i] = std::make_shared<const FitStep>(levels[i].rows);
            });
        });
        steps = std::move(made);
        return {steps.begin() + coarse + 1, steps.begin() + fine + 1};
    }
};

Subdivision::Subdivision(std::shared_ptr<const Topology> cage, int levels, BoundaryRule rule,
                         base::Span<const Crease> creases)
    : _impl(std::make_unique<Impl>())
{
    assert(levels >= 0);
    Validate(*cage);
    CheckRefinedSize(*cage, levels);
    _impl->levels.push_back({cage, {}, {}});
    if (levels == 0 || cage->faceCount() == 0) {
        if (levels > 0)
            throw TopologyError("a mesh without faces cannot be subdivided");
        return;
    }
    const std::unique_ptr<Far::TopologyRefiner> refiner = MakeCatmarkRefiner(*cage, levels, rule, creases);
    for (int level = 1; level <= levels; ++level)
        _impl->levels.push_back(MakeLevel(*refiner, level, *cage, _impl->levels.back()));
}

Subdivision::~Subdivision() = default;
Subdivision::Subdivision(Subdivision&&) noexcept = default;
Subdivision& Subdivision::operator=(Subdivision&&) noexcept = default;

int Subdivision::levels() const
{
    return static_cast<int>(_impl->levels.size()) - 1;
}

const std::shared_ptr<const Topology>& Subdivision::topology(int level) const
{
    return _impl->levels.at(static_cast<std::size_t>(level)).topology;
}

std::uint32_t Subdivision::cageFace(int level, std::uint32_t face) const
{
    return level == 0 ? face : _impl->levels.at(static_cast<std::size_t>(level)).cageFaces.at(face);
}

std::vector<Vec3f> Subdivision::refine(base::Span<const Vec3f> values, int fromLevel, int toLevel) const
{
    return _impl->refine(values, fromLevel, toLevel);
}

std::vector<float> Subdivision::refine(base::Span<const float> values, int fromLevel, int toLevel) const
{
    return _impl->refine(values, fromLevel, toLevel);
}

std::vector<Vec3f> Subdivision::fit(base::Span<const Vec3f> fine, int fineLevel,
                                    base::Span<const Vec3f> start, int startLevel, double accuracy) const
{
    if (start.size() != _impl->vertexCount(startLevel))
        throw TopologyError("subdivision level {} has {} but {} given", startLevel,
                            base::CountedVertices(_impl->vertexCount(startLevel)),
                            base::Counted(start.size(), "value is", "values are"));
    if (fine.size() != _impl->vertexCount(fineLevel))
        throw TopologyError("subdivision level {} has {} but {} given", fineLevel,
                            base::CountedVertices(_impl->vertexCount(fineLevel)),
                            base::Counted(fine.size(), "value is", "values are"));
    if (startLevel == fineLevel)
        return {fine.begin(), fine.end()};
    return _impl->knownFits.findOrMake({fine, fineLevel, start, startLevel, accuracy}, [&] {
        std::vector<Vec3f> misfit = _impl->refine(start, startLevel, fineLevel);
        tbb::parallel_for(tbb::blocked_range<std::size_t>(0, fine.size(), 8192), [&](const auto& range) {
            for (std::size_t v = range.begin(); v != range.end(); ++v)
                misfit[v] = fine[v] - misfit[v];
        });
        std::vector<Vec3f> coarse =
            LevelFit(_impl->stepsBetween(startLevel, fineLevel)).solve(std::move(misfit), accuracy);
        for (std::size_t v = 0; v < coarse.size(); ++v)
            coarse[v] += start[v];
        return coarse;
    });
}

void Subdivision::forgetFits() const
{
    _impl->knownFits.forget();
    const std::lock_guard lock(_impl->stepsMutex);
    _impl->steps.clear();
}

} // namespace geometry
