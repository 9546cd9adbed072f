// Rotations as unit quaternions.
// SPDX-License-Identifier: MIT

#pragma once

/// x, y, z and the real part w.
class DzQuat {
public:
    DzQuat() : m_x(0.0), m_y(0.0), m_z(0.0), m_w(1.0) {}
    DzQuat(double x, double y, double z, double w) : m_x(x), m_y(y), m_z(z), m_w(w) {}

    double m_x, m_y, m_z, m_w;
};
