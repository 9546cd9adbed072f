// Links from one numeric property to another.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznumericcontroller.h"

#include <memory>

namespace openhost {
struct LinkKnots;
}

/// v is the driven value so far, c the controlling property's, m the scalar, a the addend:
/// DeltaAdd v + c*m + a, DivideInto c/v + a, DivideBy v/c + a, Multiply c*v + a, Subtract v - c + a, Add v +
/// c + a, Keyed v + the interpolated key value at c. A division by 0 leaves v as it is.
class DzERCLink : public DzNumericController {
    Q_OBJECT
    Q_ENUMS(ERCType)
    Q_ENUMS(ERCKeyInterpolation)
public:
    enum ERCType { ERCDeltaAdd, ERCDivideInto, ERCDivideBy, ERCMultiply, ERCSubtract, ERCAdd, ERCKeyed };
    enum ERCKeyInterpolation { LINEAR_INTERP, CONSTANT_INTERP, TCB_INTERP };

    DzERCLink(ERCType type, DzNumericProperty* controller, double scalar = 1.0, double addend = 0.0);
    DzERCLink(DzNumericProperty* controller, double scalar, double addend);
    ~DzERCLink();

    Q_INVOKABLE int getType() const;
    void setType(ERCType type);
    Q_INVOKABLE double getScalar() const;
    Q_INVOKABLE void setScalar(double scalar);
    Q_INVOKABLE double getAddend() const;
    Q_INVOKABLE void setAddend(double addend);
    Q_INVOKABLE DzNumericProperty* getProperty() const;
    void setProperty(DzNumericProperty* controller);
    DzNumericProperty* getCurrentProperty() const;

    int getKeyInterpolation() const;
    void setKeyInterpolation(ERCKeyInterpolation interpolation);
    int getNumKeyValues() const;
    double getKey(int index) const;
    double getKeyValue(int index) const;
    /// Keys are kept ascending; a key that exists gets the new value. Returns its index.
    int addKeyValue(double key, double value);
    int addKeyValue(double key, double value, double tension, double continuity, double bias);

    double apply(double value, const DzTime& time, bool local) const override;
    double applyInverse(double value, const DzTime& time, bool local) const override;
    bool isMultiplying() const override;

private:
    friend struct openhost::LinkKnots;

    struct Impl;
    std::unique_ptr<Impl> _impl;
};
