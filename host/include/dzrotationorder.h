// The order in which a node's three rotations are applied.
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The first letter is applied first.
class DzRotationOrder {
public:
    enum Order { XYZ, XZY, YXZ, YZX, ZXY, ZYX };

    DzRotationOrder(Order order = XYZ) : _order(order) {}

    Order order() const { return _order; }
    QString toString() const;
    /// False, and nothing changed, when the text is none of the six orders.
    bool fromString(const QString& text);

private:
    Order _order;
};
