// Axis-aligned boxes.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzvec3.h"

/// Invalid until a point or a box is included.
class DzBox3 {
public:
    DzBox3();
    DzBox3(const DzVec3& min, const DzVec3& max) : _min(min), _max(max) {}

    DzVec3 getMin() const { return _min; }
    DzVec3 getMax() const { return _max; }
    DzVec3 getCenter() const { return (_min + _max) * 0.5f; }
    DzVec3 getSize() const { return isValid() ? _max - _min : DzVec3(); }
    bool isValid() const { return _min.m_x <= _max.m_x && _min.m_y <= _max.m_y && _min.m_z <= _max.m_z; }

    void include(const DzVec3& point);
    void include(const DzBox3& box);
    void translate(const DzVec3& offset);

private:
    DzVec3 _min;
    DzVec3 _max;
};
