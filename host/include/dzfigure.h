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
    /// Figures that follow this one and whose meshes replace a part of its mesh.
    int getNumGraftFigures() const;
    DzFigure* getGraftFigure(int index) const; ///< null out of range
    bool isGraftFollowing() const;

protected:
    void hierarchyChanged() override;
    void boneChanged() override;
    void followTargetChanged() override;
};
