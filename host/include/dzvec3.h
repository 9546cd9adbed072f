// Three float coordinates.
// SPDX-License-Identifier: MIT

#pragma once

/// A position or direction in cm, or three angles in degrees.
class DzVec3 {
public:
    DzVec3() : m_x(0.0f), m_y(0.0f), m_z(0.0f) {}
    DzVec3(float x, float y, float z) : m_x(x), m_y(y), m_z(z) {}

    float& operator[](int axis) { return axis == 0 ? m_x : axis == 1 ? m_y : m_z; }
    float operator[](int axis) const { return axis == 0 ? m_x : axis == 1 ? m_y : m_z; }

    DzVec3 operator+(const DzVec3& b) const { return DzVec3(m_x + b.m_x, m_y + b.m_y, m_z + b.m_z); }
    DzVec3 operator-(const DzVec3& b) const { return DzVec3(m_x - b.m_x, m_y - b.m_y, m_z - b.m_z); }
    DzVec3 operator-() const { return DzVec3(-m_x, -m_y, -m_z); }
    DzVec3 operator*(float s) const { return DzVec3(m_x * s, m_y * s, m_z * s); }
    DzVec3& operator+=(const DzVec3& b) { return *this = *this + b; }
    DzVec3& operator-=(const DzVec3& b) { return *this = *this - b; }
    DzVec3& operator*=(float s) { return *this = *this * s; }
    bool operator==(const DzVec3& b) const { return m_x == b.m_x && m_y == b.m_y && m_z == b.m_z; }
    bool operator!=(const DzVec3& b) const { return !(*this == b); }

    float dot(const DzVec3& b) const { return m_x * b.m_x + m_y * b.m_y + m_z * b.m_z; }
    DzVec3 cross(const DzVec3& b) const
    {
        return DzVec3(m_y * b.m_z - m_z * b.m_y, m_z * b.m_x - m_x * b.m_z, m_x * b.m_y - m_y * b.m_x);
    }
    float lengthSquared() const { return dot(*this); }
    float length() const;
    /// The zero vector stays zero.
    DzVec3 normalized() const;

    float m_x, m_y, m_z;
};
