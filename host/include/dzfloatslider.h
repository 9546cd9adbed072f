// A slider for numbers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzslider.h"

/// Limits are 0 and 1 at first.
class DzFloatSlider : public DzSlider {
    Q_OBJECT
    Q_PROPERTY(float value READ getValue WRITE setValue)
    Q_PROPERTY(float min READ getMin)
    Q_PROPERTY(float max READ getMax)

public:
    /// @param parent  owns the slider; may be null
    /// @param name    label, and object name
    explicit DzFloatSlider(QWidget* parent, const QString& name = QString());
    ~DzFloatSlider() override;

    float getValue() const;
    float getMin() const;
    float getMax() const;
    /// The limits, in either order; a clamped slider's value follows them.
    void setMinMax(float min, float max);
    float getDefaultValue() const;
    /// What "restore default" sets; the bar is filled from there. 0 at first.
    void setDefaultValue(float value);
    float getSensitivity() const;
    /// The step of a key or of the wheel. 0 and less: a hundredth of the range.
    void setSensitivity(float step);

public slots:
    /// Clamped, the value obeys the limits. NaN and infinity leave it as it is.
    void setValue(float value);

signals:
    /// On every change, by whomever.
    void valueChanged(float value);

protected:
    double nearest(double number) const override;
    void reportChange() override;
};
