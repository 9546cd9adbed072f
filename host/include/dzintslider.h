// A slider for whole numbers.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzslider.h"

/// Limits are 0 and 100 at first.
class DzIntSlider : public DzSlider {
    Q_OBJECT
    Q_PROPERTY(int value READ getValue WRITE setValue)
    Q_PROPERTY(int min READ getMin)
    Q_PROPERTY(int max READ getMax)

public:
    /// @param parent  owns the slider; may be null
    /// @param name    label, and object name
    explicit DzIntSlider(QWidget* parent, const QString& name = QString());
    ~DzIntSlider() override;

    int getValue() const;
    int getMin() const;
    int getMax() const;
    /// The limits, in either order; a clamped slider's value follows them.
    void setMinMax(int min, int max);
    int getDefaultValue() const;
    /// What "restore default" sets; the bar is filled from there. 0 at first.
    void setDefaultValue(int value);
    int getSensitivity() const;
    /// The step of a key or of the wheel. 0 and less: 1.
    void setSensitivity(int step);

public slots:
    /// Clamped, the value obeys the limits.
    void setValue(int value);

signals:
    /// On every change, by whomever.
    void valueChanged(int value);

protected:
    double nearest(double number) const override;
    void reportChange() override;
};
