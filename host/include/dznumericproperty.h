// Numeric properties and their evaluation.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzproperty.h"

class DzNumericController;

/// A number driven by a raw value and links: raw, then each controller in order, then the limits if clamped.
///
/// Evaluated when read and cached; a change marks every dependant, each once. A cycle is cut: a property met
/// while it is being evaluated counts with its raw value, and the log says so once.
class DzNumericProperty : public DzProperty {
    Q_OBJECT
public:
    DzNumericProperty(const QString& name, bool canAnimate, bool isUserProperty, double defaultValue);
    ~DzNumericProperty();

    Q_INVOKABLE double getDoubleValue() const;
    double getDoubleValue(const DzTime& time) const;
    /// Sets the raw value so that getDoubleValue() returns the given one, held within the limits if clamped.
    /// A value that is not finite is refused.
    Q_INVOKABLE void setDoubleValue(double value);
    Q_INVOKABLE double getDoubleDefaultValue() const;
    Q_INVOKABLE void setDoubleDefaultValue(double value);
    Q_INVOKABLE double getDoubleRawValue() const;
    Q_INVOKABLE void setDoubleRawValue(double value);

    Q_INVOKABLE double getDoubleMin() const;
    Q_INVOKABLE double getDoubleMax() const;
    /// The limits are exchanged when they stand the wrong way round.
    Q_INVOKABLE void setDoubleMinMax(double min, double max);

    Q_INVOKABLE bool isClamped() const;
    Q_INVOKABLE void setIsClamped(bool onOff);
    bool isModulo() const;
    void setIsModulo(bool onOff);
    Q_INVOKABLE bool getDisplayAsPercent() const;
    Q_INVOKABLE void setDisplayAsPercent(bool onOff);

    /// Takes ownership. A negative index puts adding links before multiplying ones, each kind in order of
    /// insertion. False for a controller that has an owner.
    Q_INVOKABLE bool insertController(DzNumericController* controller, int index = -1);
    /// Deletes the controller.
    bool deleteController(DzNumericController* controller);

signals:
    void minMaxChanged();

protected:
    void inputsChanged() override;
    /// What the kind of property makes of an evaluated number; the number itself here.
    virtual double toKind(double value) const;
    double sensitivity() const;
    void setDoubleSensitivity(double value);

private:
    double evaluate() const;
    void evaluateFromInputs() const;
    double controlled(double raw) const;
    double limited(double value) const;
    void changed();
    void collectInputs() const;

    friend class DzNumericController;
    struct Impl;
    std::unique_ptr<Impl> _impl;
};
