// Skeletons and bones.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzskeleton.h"
#include "scene/node_walk.h"
#include "scene/undo_recording.h"

#include <QHash>
#include <QPointer>

namespace {

/// Whom a skeleton follows, and which of those that do.
struct FollowerPlace {
    QPointer<DzSkeleton> target;
    int index = 0;
};

} // namespace

struct DzSkeleton::SkeletonImpl {
    QList<DzBone*> bones; ///< as of the last look, valid unless stale
    QHash<QString, DzBone*> byName;
    bool stale = true;
    QPointer<DzSkeleton> followTarget;
    QList<DzSkeleton*> followers;

    static FollowerPlace placeOf(DzSkeleton& follower)
    {
        DzSkeleton* const target = follower._skeleton->followTarget;
        return {target, target ? target->_skeleton->followers.indexOf(&follower) : 0};
    }
    static void setPlaceOf(DzSkeleton& follower, const FollowerPlace& place)
    {
        if (DzSkeleton* const former = follower._skeleton->followTarget)
            former->_skeleton->followers.removeOne(&follower);
        follower._skeleton->followTarget = place.target;
        if (place.target)
            openhost::PutBackAt(place.target->_skeleton->followers, place.index, &follower);
        follower.followTargetChanged();
    }
};

DzSkeleton::DzSkeleton() : _skeleton(new SkeletonImpl) {}

DzSkeleton::~DzSkeleton()
{
    setFollowTarget(nullptr);
    for (DzSkeleton* follower : QList<DzSkeleton*>(_skeleton->followers))
        follower->setFollowTarget(nullptr);
}

const QList<DzBone*>& DzSkeleton::bones() const
{
    if (_skeleton->stale) {
        _skeleton->stale = false;
        _skeleton->bones.clear();
        _skeleton->byName.clear();
        openhost::NoteHierarchyRead();
        openhost::WalkBelow(*this, [this](DzNode& node) {
            if (qobject_cast<DzSkeleton*>(&node))
                return openhost::Walk::Around;
            if (auto* const bone = qobject_cast<DzBone*>(&node))
                _skeleton->bones.append(bone);
            return openhost::Walk::On;
        });
        for (DzBone* bone : std::as_const(_skeleton->bones)) {
            if (!_skeleton->byName.contains(bone->getName()))
                _skeleton->byName.insert(bone->getName(), bone);
        }
    }
    return _skeleton->bones;
}

DzBone* DzSkeleton::findBone(const QString& name) const
{
    bones();
    return _skeleton->byName.value(name);
}

DzBone* DzSkeleton::findBoneByLabel(const QString& label) const
{
    for (DzBone* bone : bones()) {
        if (bone->getLabel() == label)
            return bone;
    }
    return nullptr;
}

QObjectList DzSkeleton::getAllBones() const
{
    QObjectList list;
    for (DzBone* bone : bones())
        list.append(bone);
    return list;
}

DzSkeleton* DzSkeleton::getFollowTarget() const
{
    return _skeleton->followTarget;
}

void DzSkeleton::setFollowTarget(DzSkeleton* target)
{
    if (target == this || target == _skeleton->followTarget)
        return;
    openhost::RecordValue(
        this, *this, SkeletonImpl::placeOf(*this),
        [](DzSkeleton& follower, FollowerPlace& other) {
            const FollowerPlace former = SkeletonImpl::placeOf(follower);
            SkeletonImpl::setPlaceOf(follower, other);
            other = former;
        },
        openhost::ChangeRank::Look, openhost::captions::fit);
    SkeletonImpl::setPlaceOf(*this, {target, target ? target->getNumFollowSkeletons() : 0});
}

int DzSkeleton::getNumFollowSkeletons() const
{
    return _skeleton->followers.size();
}

DzSkeleton* DzSkeleton::getFollowSkeleton(int index) const
{
    return index >= 0 && index < _skeleton->followers.size() ? _skeleton->followers.at(index) : nullptr;
}

void DzSkeleton::hierarchyChanged()
{
    // The tree is taken apart after this part of the object has gone.
    if (_skeleton)
        _skeleton->stale = true;
}

void DzSkeleton::boneChanged() {}
void DzSkeleton::followTargetChanged() {}

DzBone::DzBone() = default;
DzBone::~DzBone() = default;

void DzBone::propertyValueChanged(DzProperty* property)
{
    DzNode::propertyValueChanged(property);
    if (DzSkeleton* const skeleton = uninformedSkeleton())
        skeleton->boneChanged();
}
