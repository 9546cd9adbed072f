// Skeletons with a skin.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzskeleton.h"

class DzSkinBinding;

class DzFigure : public DzSkeleton {
    Q_OBJECT
public:
    DzFigure();
    ~DzFigure();

    /// The skin binding among the object's modifiers; null if none.
    DzSkinBinding* getSkinBinding() const;
    int getNumGraftFigures() const;
    DzFigure* getGraftFigure(int index) const;
    bool isGraftFollowing() const;

protected:
    void hierarchyChanged() override;
    void boneChanged() override;
    void followTargetChanged() override;
};
