// Links computed by a small stack machine.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznumericcontroller.h"
#include "scene/spline.h"

#include <atomic>

namespace openhost {

/// One step of a formula. Splines carry their knots; their operand is on the stack.
struct FormulaOperation {
    enum class Kind { PushProperty, PushValue, Add, Subtract, Multiply, Divide, Invert, Negate, Spline };
    Kind kind = Kind::PushValue;
    DzNumericProperty* property = nullptr; ///< of PushProperty
    double value = 0.0;                    ///< of PushValue
    SplineKind spline = SplineKind::Linear;
    std::vector<SplineKnot> knots; ///< of Spline, in any order
};

enum class FormulaStage { Sum, Multiply };

/// A formula that is no plain link: adds its result to the driven value, or multiplies by it.
class FormulaController : public DzNumericController {
public:
    /// Null when the operations do not leave exactly one number on the stack or take one from an empty one.
    static FormulaController* Create(FormulaStage stage, std::vector<FormulaOperation> operations);
    ~FormulaController() override;

    double apply(double value, const DzTime& time, bool local) const override;
    double applyInverse(double value, const DzTime& time, bool local) const override;
    bool isMultiplying() const override { return _stage == FormulaStage::Multiply; }

    FormulaStage stage() const { return _stage; }
    const std::vector<FormulaOperation>& operations() const { return _operations; }
    /// The formula's result with the inputs' present values.
    double result() const;

private:
    FormulaController(FormulaStage stage, std::vector<FormulaOperation> operations);

    double quotient(double a, double b) const;
    double unary(const FormulaOperation& operation, double top) const;
    double binary(FormulaOperation::Kind kind, double below, double top) const;

    FormulaStage _stage;
    std::vector<FormulaOperation> _operations;
    mutable std::atomic<bool> _hasDividedByZero{false}; ///< which is told the first time
};

} // namespace openhost
