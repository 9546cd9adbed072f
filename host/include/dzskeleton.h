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
    DzBone* findBoneByLabel(const QString& label) const;
    /// Parents before children.
    QObjectList getAllBones() const;
    const QList<DzBone*>& bones() const;

    DzSkeleton* getFollowTarget() const;
    void setFollowTarget(DzSkeleton* target);
    int getNumFollowSkeletons() const;
    DzSkeleton* getFollowSkeleton(int index) const;

protected:
    void hierarchyChanged() override;
    friend class DzBone;
    /// A bone's place at rest or in its pose has changed.
    virtual void boneChanged();

private:
    struct SkeletonImpl;
    std::unique_ptr<SkeletonImpl> _skeleton;
};
