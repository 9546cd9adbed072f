// The binding of a skin to bones.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzmodifier.h"

class DzBoneBinding;
class DzWeightMap;

namespace openhost {
class SkinAccess;
}

/// Owns its bone bindings.
class DzSkinBinding : public DzModifier {
    Q_OBJECT
    Q_ENUMS(BindingMode)
    Q_ENUMS(MapMode)
    Q_ENUMS(ScaleMode)
    Q_ENUMS(BlendMode)
public:
    enum BindingMode { General, Local, Blended };
    enum MapMode { Linear, DualQuat };
    enum ScaleMode { ScaleMaps, BindingMaps };
    enum BlendMode { BlendLocalGeneral, BlendLinearDualQuat };

    DzSkinBinding();
    ~DzSkinBinding();

    int getNumBoneBindings() const;
    DzBoneBinding* getBoneBinding(int index) const;
    void addBoneBinding(DzBoneBinding* binding);
    int getTargetVertexCount() const;
    void setTargetVertexCount(int count);

    BindingMode getBindingMode() const;
    void setBindingMode(BindingMode mode);
    MapMode getGeneralMapMode() const;
    void setGeneralMapMode(MapMode mode);
    ScaleMode getScaleMode() const;
    void setScaleMode(ScaleMode mode);
    BlendMode getBlendMode() const;
    void setBlendMode(BlendMode mode);
    DzWeightMap* getBlendMap() const;
    void setBlendMap(DzWeightMap* map);

    /// The weights of a binding have changed; the skin is to be made again.
    void invalidate();

private:
    friend class openhost::SkinAccess;
    struct SkinImpl;
    std::unique_ptr<SkinImpl> _skin;
};
