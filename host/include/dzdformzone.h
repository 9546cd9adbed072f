// The field of a D-Former.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

class DzDFormZone : public DzNode {
    Q_OBJECT
    Q_ENUMS(InfluenceMode)
public:
    enum InfluenceMode { Sphere, WeightMap };

    DzDFormZone();
    ~DzDFormZone();

    InfluenceMode getInfluenceMode() const { return _mode; }
    void setInfluenceMode(InfluenceMode mode) { _mode = mode; }

private:
    InfluenceMode _mode;
};
