// Settings bound to a number of the scene.
// SPDX-License-Identifier: MIT

#include "ks_property-setting.h"

#include <dzfloatproperty.h>
#include <dzintproperty.h>

namespace kst {

IntPropertySetting::IntPropertySetting(DzIntProperty& property)
    : NumericPropertySetting(property, property.getDefaultValue(), property.getValue(), property.getMin(),
                             property.getMax())
{
}

FloatPropertySetting::FloatPropertySetting(DzFloatProperty& property)
    : NumericPropertySetting(property, property.getDefaultValue(), property.getValue(), property.getMin(),
                             property.getMax())
{
}

} // namespace kst
