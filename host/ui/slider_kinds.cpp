// Sliders for whole and other numbers.
// SPDX-License-Identifier: MIT

#include "dzfloatslider.h"
#include "dzintslider.h"

#include <algorithm>
#include <cmath>
#include <limits>

DzIntSlider::DzIntSlider(QWidget* parent, const QString& name) : DzSlider(parent, name, true)
{
    setLimits(0.0, 100.0);
}
DzIntSlider::~DzIntSlider() = default;

int DzIntSlider::getValue() const
{
    return static_cast<int>(number());
}
int DzIntSlider::getMin() const
{
    return static_cast<int>(minimum());
}
int DzIntSlider::getMax() const
{
    return static_cast<int>(maximum());
}
void DzIntSlider::setMinMax(int min, int max)
{
    setLimits(min, max);
}
int DzIntSlider::getDefaultValue() const
{
    return static_cast<int>(defaultNumber());
}
void DzIntSlider::setDefaultValue(int value)
{
    setDefaultNumber(value);
}
int DzIntSlider::getSensitivity() const
{
    return static_cast<int>(step());
}
void DzIntSlider::setSensitivity(int step)
{
    setStep(step);
}
void DzIntSlider::setValue(int value)
{
    setNumber(value);
}

double DzIntSlider::nearest(double number) const
{
    typedef std::numeric_limits<int> Limits;
    return std::round(std::clamp<double>(number, Limits::min(), Limits::max()));
}
void DzIntSlider::reportChange()
{
    emit valueChanged(getValue());
}

DzFloatSlider::DzFloatSlider(QWidget* parent, const QString& name) : DzSlider(parent, name, false)
{
    setLimits(0.0, 1.0);
}
DzFloatSlider::~DzFloatSlider() = default;

float DzFloatSlider::getValue() const
{
    return static_cast<float>(number());
}
float DzFloatSlider::getMin() const
{
    return static_cast<float>(minimum());
}
float DzFloatSlider::getMax() const
{
    return static_cast<float>(maximum());
}
void DzFloatSlider::setMinMax(float min, float max)
{
    setLimits(double(min), double(max));
}
float DzFloatSlider::getDefaultValue() const
{
    return static_cast<float>(defaultNumber());
}
void DzFloatSlider::setDefaultValue(float value)
{
    setDefaultNumber(double(value));
}
float DzFloatSlider::getSensitivity() const
{
    return static_cast<float>(step());
}
void DzFloatSlider::setSensitivity(float step)
{
    setStep(double(step));
}
void DzFloatSlider::setValue(float value)
{
    setNumber(double(value));
}

double DzFloatSlider::nearest(double number) const
{
    constexpr double largest = double(std::numeric_limits<float>::max());
    return double(static_cast<float>(std::clamp(number, -largest, largest)));
}
void DzFloatSlider::reportChange()
{
    emit valueChanged(getValue());
}
