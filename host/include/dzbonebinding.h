// One bone's part of a skin.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzbase.h"
#include "dzweightmap.h"

class DzBone;
class DzSkinBinding;

class DzBoneBinding : public DzBase {
    Q_OBJECT
public:
    explicit DzBoneBinding(DzBone* bone = 0);
    ~DzBoneBinding();

    DzBone* getBone() const { return _bone; }
    void setBone(DzBone* bone);
    DzWeightMap* getWeights() const { return _weights; }
    /// Shares the map by counting.
    void setWeights(DzWeightMap* weights);
    /// By which the bone's scale acts where the skin has maps of its own for that; null for none.
    DzWeightMap* getScaleWeights() const { return _scaleWeights; }
    void setScaleWeights(DzWeightMap* weights);
    /// By which the bone's angle about X, Y or Z (0 to 2) acts where the skin has weights for each axis; null
    /// for none.
    DzWeightMap* getAxisWeights(int axis) const;
    /// Shares the map by counting. An axis that is none of 0 to 2 changes nothing.
    void setAxisWeights(int axis, DzWeightMap* weights);

private slots:
    void handleBoneDestroyed();

private:
    friend class DzSkinBinding;
    DzBone* _bone;
    DzWeightMapPtr _weights, _scaleWeights, _axisWeights[3];
    DzSkinBinding* _binding;
};
