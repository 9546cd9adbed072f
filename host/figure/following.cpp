// What a fitted figure takes over of the shape of the one that it follows.
// SPDX-License-Identifier: MIT

#include "app/guard.h"
#include "dzmorph.h"
#include "dzskeleton.h"
#include "figure/deltas_access.h"
#include "figure/fitting.h"
#include "figure/pipeline.h"
#include "geometry/shape_projection.h"
#include "modifier_impl.h"

#include <algorithm>

namespace openhost {

using geometry::Vec3f;

void Pipeline::nodeChanged()
{
    _skinFailed = false;
    invalidate(Following);
}

// Those that follow this one in turn have been told when it became out of date.
void Pipeline::followedChanged()
{
    if (!_stale[Following])
        invalidate(Following);
}

void Pipeline::tellFollowers() const
{
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(_object.getNode());
    for (int i = 0; skeleton && i < skeleton->getNumFollowSkeletons(); ++i)
        if (const DzObject* const follower = skeleton->getFollowSkeleton(i)->getObject())
            follower->pipeline().followedChanged();
}

DzSkeleton* Pipeline::followTarget() const
{
    const auto* const skeleton = qobject_cast<const DzSkeleton*>(_object.getNode());
    return skeleton ? skeleton->getFollowTarget() : nullptr;
}

std::vector<Vec3f> Pipeline::shapeFor(const DzSkeleton& follower)
{
    const base::Span<const Vec3f> shape = followedCage();
    std::vector<const DzMorph*> owned;
    std::copy_if(_active.begin(), _active.end(), std::back_inserter(owned),
                 [&](const DzMorph* morph) { return HasDialFor(follower, *morph); });
    if (!_isFollowing && owned.size() == _active.size())
        return {};
    std::vector<Vec3f> displacements(shape.begin(), shape.end());
    for (std::size_t v = 0; v < displacements.size(); ++v)
        displacements[v] -= base().positions[v];
    for (const DzMorph* const morph : owned) {
        const geometry::SparseDeltas& deltas = DeltasAccess::deltas(*morph->getDeltas());
        // One for another mesh is not in the shape either.
        if (!deltas.empty() && deltas.vertices.back() < displacements.size())
            geometry::AddDeltas(base::Span<Vec3f>(displacements), deltas, -morph->_morph->applied);
    }
    return displacements;
}

void Pipeline::dropProjection()
{
    _projection.reset();
    _matchedSerials = {0, 0};
}

const geometry::ShapeProjection* Pipeline::projectionFrom(const Pipeline& followed)
{
    const std::pair<std::uint64_t, std::uint64_t> serials(followed._baseSerial, _baseSerial);
    if (_matchedSerials == serials)
        return _projection.get();
    _projection.reset();
    // Before the work, so that what has failed is not tried again with every dial.
    _matchedSerials = serials;
    ++_followingWork.matches;
    GuardHostCall({{},
                   _object.getNode()->getLabel().toStdString(),
                   "cannot follow the shape of " + followTarget()->getLabel().toStdString(),
                   base::Severity::Warning},
                  [&] {
                      _projection = std::make_unique<const geometry::ShapeProjection>(followed.base().view(),
                                                                                      base().view());
                      return true;
                  });
    return _projection.get();
}

void Pipeline::updateFollowing()
{
    _isFollowing = false;
    const DzSkeleton* const target = followTarget();
    if (!target || !target->getObject() || !target->getObject()->pipeline().hasMesh()) {
        dropProjection();
        return;
    }
    Pipeline& followed = target->getObject()->pipeline();
    const std::vector<Vec3f> shape = followed.shapeFor(*static_cast<const DzSkeleton*>(_object.getNode()));
    if (shape.empty())
        return;
    const geometry::ShapeProjection* const projection = projectionFrom(followed);
    if (!projection)
        return;
    ++_followingWork.projections;
    _following = projection->project(shape);
    for (std::size_t v = 0; v < _following.size(); ++v)
        _following[v] += _morphed[v];
    _isFollowing = true;
}

base::Span<const Vec3f> Pipeline::followedCage()
{
    const base::Span<const Vec3f> morphed = morphedCage();
    // Figures that follow each other in a circle come back here, and then see the own morphs alone.
    if (takeStale(Following))
        updateFollowing();
    return _isFollowing ? base::Span<const Vec3f>(_following) : morphed;
}

} // namespace openhost
