// Float, int, bool and enum properties.
// SPDX-License-Identifier: MIT

#include "dzboolproperty.h"
#include "dzenumproperty.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"

#include <cmath>
#include <limits>

DzFloatProperty::DzFloatProperty(const QString& name, bool canAnimate, bool isUserProperty,
                                 float defaultValue)
    : DzNumericProperty(name, canAnimate, isUserProperty, static_cast<double>(defaultValue))
{
}

DzFloatProperty::~DzFloatProperty() = default;

float DzFloatProperty::getValue() const
{
    return static_cast<float>(getDoubleValue());
}
float DzFloatProperty::getValue(const DzTime&) const
{
    return getValue();
}
void DzFloatProperty::setValue(float value)
{
    setDoubleValue(static_cast<double>(value));
}
void DzFloatProperty::setValue(const DzTime&, float value)
{
    setValue(value);
}
float DzFloatProperty::getLocalValue() const
{
    return getValue();
}
float DzFloatProperty::getRawValue() const
{
    return static_cast<float>(getDoubleRawValue());
}
void DzFloatProperty::setRawValue(float value)
{
    setDoubleRawValue(static_cast<double>(value));
}
float DzFloatProperty::getDefaultValue() const
{
    return static_cast<float>(getDoubleDefaultValue());
}
void DzFloatProperty::setDefaultValue(float value)
{
    setDoubleDefaultValue(static_cast<double>(value));
}
float DzFloatProperty::getMin() const
{
    return static_cast<float>(getDoubleMin());
}
float DzFloatProperty::getMax() const
{
    return static_cast<float>(getDoubleMax());
}
void DzFloatProperty::setMin(float min)
{
    setDoubleMinMax(static_cast<double>(min), std::fmax(getDoubleMax(), min));
}
void DzFloatProperty::setMax(float max)
{
    setDoubleMinMax(std::fmin(getDoubleMin(), max), static_cast<double>(max));
}

void DzFloatProperty::setMinMax(float min, float max)
{
    setDoubleMinMax(static_cast<double>(min), static_cast<double>(max));
}

float DzFloatProperty::getSensitivity() const
{
    return static_cast<float>(sensitivity());
}
void DzFloatProperty::setSensitivity(float value)
{
    setDoubleSensitivity(static_cast<double>(value));
}

DzIntProperty::DzIntProperty(const QString& name, bool canAnimate, bool isUserProperty, int defaultValue)
    : DzNumericProperty(name, canAnimate, isUserProperty, static_cast<double>(defaultValue))
{
    setDoubleSensitivity(1.0);
}

DzIntProperty::~DzIntProperty() = default;

namespace {

int ToInt(double value)
{
    const double limit = std::numeric_limits<int>::max();
    return static_cast<int>(std::lround(std::fmax(-limit, std::fmin(limit, value))));
}

} // namespace

int DzIntProperty::getValue() const
{
    return ToInt(getDoubleValue());
}
int DzIntProperty::getValue(const DzTime&) const
{
    return getValue();
}
void DzIntProperty::setValue(int value)
{
    setDoubleValue(value);
}
void DzIntProperty::setValue(const DzTime&, int value)
{
    setValue(value);
}
int DzIntProperty::getLocalValue() const
{
    return getValue();
}
int DzIntProperty::getRawValue() const
{
    return ToInt(getDoubleRawValue());
}
void DzIntProperty::setRawValue(int value)
{
    setDoubleRawValue(value);
}
int DzIntProperty::getDefaultValue() const
{
    return ToInt(getDoubleDefaultValue());
}
void DzIntProperty::setDefaultValue(int value)
{
    setDoubleDefaultValue(value);
}
int DzIntProperty::getMin() const
{
    return ToInt(getDoubleMin());
}
int DzIntProperty::getMax() const
{
    return ToInt(getDoubleMax());
}

bool DzIntProperty::getMinMax(int& min, int& max) const
{
    min = getMin();
    max = getMax();
    return isClamped();
}

void DzIntProperty::setMin(int min)
{
    setDoubleMinMax(min, std::fmax(getDoubleMax(), min));
}
void DzIntProperty::setMax(int max)
{
    setDoubleMinMax(std::fmin(getDoubleMin(), max), max);
}
void DzIntProperty::setMinMax(int min, int max)
{
    setDoubleMinMax(min, max);
}
int DzIntProperty::getSensitivity() const
{
    return ToInt(sensitivity());
}
void DzIntProperty::setSensitivity(int value)
{
    setDoubleSensitivity(value);
}
double DzIntProperty::toKind(double value) const
{
    return ToInt(value);
}

DzBoolProperty::DzBoolProperty(const QString& name, bool canAnimate, bool isUserProperty, bool defaultValue)
    : DzIntProperty(name, canAnimate, isUserProperty, defaultValue ? 1 : 0)
{
}

DzBoolProperty::~DzBoolProperty() = default;

bool DzBoolProperty::getBoolValue() const
{
    return getValue() != 0;
}
void DzBoolProperty::setBoolValue(bool value)
{
    setValue(value ? 1 : 0);
}
double DzBoolProperty::toKind(double value) const
{
    return value != 0.0 ? 1.0 : 0.0;
}

DzEnumProperty::DzEnumProperty(const QString& name, bool canAnimate, bool isUserProperty, int defaultValue)
    : DzIntProperty(name, canAnimate, isUserProperty, defaultValue)
{
}

DzEnumProperty::~DzEnumProperty() = default;

int DzEnumProperty::getNumItems() const
{
    return _items.size();
}
QString DzEnumProperty::getItem(int index) const
{
    return _items.value(index);
}
int DzEnumProperty::findItemString(const QString& item) const
{
    return _items.indexOf(item);
}

int DzEnumProperty::addItem(const QString& item, int index)
{
    const int position = index < 0 || index > _items.size() ? _items.size() : index;
    _items.insert(position, item);
    setDoubleMinMax(0.0, _items.size() - 1);
    return position;
}

QString DzEnumProperty::getStringValue() const
{
    return getItem(getValue());
}

bool DzEnumProperty::setValueFromString(const QString& item)
{
    const int index = findItemString(item);
    if (index >= 0)
        setValue(index);
    return index >= 0;
}

double DzEnumProperty::toKind(double value) const
{
    const int last = _items.size() - 1;
    return last < 0 ? value : std::fmax(0.0, std::fmin(last, ToInt(value)));
}
