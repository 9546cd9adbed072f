// What drives a numeric property.
// SPDX-License-Identifier: MIT

#pragma once

#include "dzcontroller.h"
#include "dztime.h"

#include <vector>

class DzNumericProperty;

class DzNumericController : public DzController {
    Q_OBJECT
public:
    DzNumericController();
    ~DzNumericController();

    /// The driven value after this controller.
    /// @param local  inputs count with their local values
    virtual double apply(double value, const DzTime& time, bool local) const = 0;
    /// The value from which apply() makes the given one; the given one where there is none or more than one.
    virtual double applyInverse(double value, const DzTime& time, bool local) const = 0;
    /// A factor on the sum of what the adding controllers give.
    virtual bool isMultiplying() const = 0;

    /// The properties that apply() reads.
    int getNumInputs() const { return static_cast<int>(_inputs.size()); }
    DzNumericProperty* getInput(int index) const { return _inputs[static_cast<std::size_t>(index)]; }

protected:
    /// Registers as a slave of each; null pointers are left out.
    void setInputs(const std::vector<DzNumericProperty*>& inputs);
    /// The input's evaluated value; its raw value when it is part of a cycle being cut.
    double inputValue(const DzNumericProperty& input) const;

private:
    friend class DzProperty;
    void inputDeleted(DzProperty* input) override;

    std::vector<DzNumericProperty*> _inputs;
};
