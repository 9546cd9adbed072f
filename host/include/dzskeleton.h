// Nodes with bones.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

class DzBone;

class DzSkeleton : public DzNode {
    Q_OBJECT
public:
    DzSkeleton();
    ~DzSkeleton();

    Q_INVOKABLE DzBone* findBone(const QString& name) const;
    Q_INVOKABLE DzBone* findBoneByLabel(const QString& label) const;
    /// Parents before children.
    Q_INVOKABLE QObjectList getAllBones() const;
    const QList<DzBone*>& bones() const;

    Q_INVOKABLE DzSkeleton* getFollowTarget() const;
    Q_INVOKABLE void setFollowTarget(DzSkeleton* target);
    Q_INVOKABLE int getNumFollowSkeletons() const;
    Q_INVOKABLE DzSkeleton* getFollowSkeleton(int index) const;

protected:
    void hierarchyChanged() override;
    friend class DzBone;
    /// A bone's place at rest or in its pose has changed.
    virtual void boneChanged();
    /// It follows another skeleton than before, or none.
    virtual void followTargetChanged();

private:
    struct SkeletonImpl;
    std::unique_ptr<SkeletonImpl> _skeleton;
};
