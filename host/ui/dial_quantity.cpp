// What a property's number counts.
// SPDX-License-Identifier: MIT

#include "dial_quantity.h"

#include "dzfloatproperty.h"
#include "dznode.h"

#include <algorithm>

namespace openhost {

Quantity QuantityOf(const DzProperty& property)
{
    const auto* const node = qobject_cast<const DzNode*>(property.getOwner());
    if (!node)
        return Quantity::Plain;
    const auto isOneOf = [&property](std::initializer_list<const DzProperty*> controls) {
        return std::find(controls.begin(), controls.end(), &property) != controls.end();
    };
    if (isOneOf({node->getXPosControl(), node->getYPosControl(), node->getZPosControl()}))
        return Quantity::Length;
    if (isOneOf({node->getXRotControl(), node->getYRotControl(), node->getZRotControl()}))
        return Quantity::Angle;
    return Quantity::Plain;
}

} // namespace openhost
