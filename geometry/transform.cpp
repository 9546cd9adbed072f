// Rotation orders and Euler angles.
// SPDX-License-Identifier: MIT

#include "geometry/transform.h"

#include "base/errors.h"

#include <array>

namespace geometry {

namespace {

struct OrderEntry {
    RotationOrder order;
    std::string_view name;
    std::array<int, 3> axes; ///< in the order of application
};

constexpr std::array<OrderEntry, 6> orders{{{RotationOrder::XYZ, "XYZ", {0, 1, 2}},
                                            {RotationOrder::XZY, "XZY", {0, 2, 1}},
                                            {RotationOrder::YXZ, "YXZ", {1, 0, 2}},
                                            {RotationOrder::YZX, "YZX", {1, 2, 0}},
                                            {RotationOrder::ZXY, "ZXY", {2, 0, 1}},
                                            {RotationOrder::ZYX, "ZYX", {2, 1, 0}}}};

constexpr double radiansPerDegree = 3.14159265358979323846 / 180.0;

} // namespace

RotationOrder ParseRotationOrder(std::string_view text)
{
    for (const OrderEntry& entry : orders)
        if (entry.name == text)
            return entry.order;
    throw base::FormatError("unknown rotation order \"{}\"", text);
}

std::string_view RotationOrderName(RotationOrder order)
{
    return orders[static_cast<std::size_t>(order)].name;
}

Eigen::Quaterniond EulerRotation(const Eigen::Vector3d& degrees, RotationOrder order)
{
    Eigen::Quaterniond rotation = Eigen::Quaterniond::Identity();
    for (const int axis : orders[static_cast<std::size_t>(order)].axes) {
        const Eigen::AngleAxisd turn(degrees[axis] * radiansPerDegree, Eigen::Vector3d::Unit(axis));
        rotation = turn * rotation; // a later letter is applied outside the earlier ones
    }
    return rotation;
}

} // namespace geometry
