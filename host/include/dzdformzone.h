// The field of a D-Former.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

namespace geometry {
class Falloff;
}

class DzDFormZone : public DzNode {
    Q_OBJECT
    Q_ENUMS(InfluenceMode)
public:
    enum InfluenceMode { Sphere, WeightMap };

    DzDFormZone();
    ~DzDFormZone();

    InfluenceMode getInfluenceMode() const { return _mode; }
    void setInfluenceMode(InfluenceMode mode);
    /// How the field's strength fades from its centre to its edge.
    const geometry::Falloff& getFalloff() const { return *_falloff; }
    void setFalloff(const geometry::Falloff& falloff);

signals:
    void fieldChanged();

private:
    InfluenceMode _mode;
    std::unique_ptr<geometry::Falloff> _falloff;
};
