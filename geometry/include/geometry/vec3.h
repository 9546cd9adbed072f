// Three single-precision coordinates.
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cmath>

namespace geometry {

/// A position, delta or direction; 12 bytes, so that an array of them is an array of floats.
struct Vec3f {
    float x = 0.0f, y = 0.0f, z = 0.0f;

    constexpr float operator[](int axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
    constexpr float& operator[](int axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    constexpr Vec3f& operator+=(Vec3f b)
    {
        x += b.x, y += b.y, z += b.z;
        return *this;
    }
    constexpr Vec3f& operator-=(Vec3f b)
    {
        x -= b.x, y -= b.y, z -= b.z;
        return *this;
    }
    constexpr Vec3f& operator*=(float s)
    {
        x *= s, y *= s, z *= s;
        return *this;
    }
};
static_assert(sizeof(Vec3f) == 3 * sizeof(float), "arrays of Vec3f are handed on as arrays of floats");

constexpr Vec3f operator+(Vec3f a, Vec3f b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3f operator-(Vec3f a, Vec3f b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3f operator-(Vec3f a)
{
    return {-a.x, -a.y, -a.z};
}
constexpr Vec3f operator*(Vec3f a, float s)
{
    return {a.x * s, a.y * s, a.z * s};
}
constexpr Vec3f operator*(float s, Vec3f a)
{
    return a * s;
}
constexpr bool operator==(Vec3f a, Vec3f b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
constexpr bool operator!=(Vec3f a, Vec3f b)
{
    return !(a == b);
}
constexpr float Dot(Vec3f a, Vec3f b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3f Cross(Vec3f a, Vec3f b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
constexpr float LengthSquared(Vec3f a)
{
    return Dot(a, a);
}
inline float Length(Vec3f a)
{
    return std::sqrt(LengthSquared(a));
}
/// The zero vector stays zero.
inline Vec3f Normalized(Vec3f a)
{
    const float length = Length(a);
    return length > 0.0f ? a * (1.0f / length) : a;
}
inline bool IsFinite(Vec3f a)
{
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/// An axis-aligned box; empty (min above max) until something is included.
struct Box3f {
    Vec3f min{INFINITY, INFINITY, INFINITY};
    Vec3f max{-INFINITY, -INFINITY, -INFINITY};

    bool isEmpty() const { return min.x > max.x; }
    Vec3f center() const { return (min + max) * 0.5f; }
    Vec3f size() const { return isEmpty() ? Vec3f{} : max - min; }
    void include(Vec3f p)
    {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
};

} // namespace geometry
