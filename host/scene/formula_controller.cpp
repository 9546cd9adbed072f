// Links computed by a small stack machine.
// SPDX-License-Identifier: MIT

#include "scene/formula_controller.h"

#include "dznumericproperty.h"

#include <algorithm>
#include <cmath>

namespace openhost {

using Kind = FormulaOperation::Kind;

namespace {

bool IsPush(Kind kind)
{
    return kind == Kind::PushProperty || kind == Kind::PushValue;
}
bool IsUnary(Kind kind)
{
    return kind == Kind::Invert || kind == Kind::Negate || kind == Kind::Spline;
}

bool LeavesOneNumber(const std::vector<FormulaOperation>& operations)
{
    int depth = 0;
    for (const FormulaOperation& operation : operations) {
        if (operation.kind == Kind::PushProperty && !operation.property)
            return false;
        const int needed = IsPush(operation.kind) ? 0 : IsUnary(operation.kind) ? 1 : 2;
        if (depth < needed)
            return false;
        depth += 1 - needed;
    }
    return depth == 1;
}

// A division by 0 gives 0: the formula then adds nothing.
double Quotient(double a, double b)
{
    return b == 0.0 ? 0.0 : a / b;
}

double Unary(const FormulaOperation& operation, double top)
{
    switch (operation.kind) {
    case Kind::Invert:
        return Quotient(1.0, top);
    case Kind::Negate:
        return -top;
    default:
        return Interpolate(operation.knots, operation.spline, top);
    }
}

double Binary(Kind kind, double below, double top)
{
    switch (kind) {
    case Kind::Add:
        return below + top;
    case Kind::Subtract:
        return below - top;
    case Kind::Multiply:
        return below * top;
    default:
        return Quotient(below, top);
    }
}

} // namespace

FormulaController* FormulaController::Create(FormulaStage stage, std::vector<FormulaOperation> operations)
{
    if (!LeavesOneNumber(operations))
        return nullptr;
    for (FormulaOperation& operation : operations)
        std::stable_sort(operation.knots.begin(), operation.knots.end(),
                         [](const SplineKnot& a, const SplineKnot& b) { return a.in < b.in; });
    return new FormulaController(stage, std::move(operations));
}

FormulaController::FormulaController(FormulaStage stage, std::vector<FormulaOperation> operations)
    : _stage(stage), _operations(std::move(operations))
{
    std::vector<DzNumericProperty*> inputs;
    for (const FormulaOperation& operation : _operations)
        inputs.push_back(operation.property);
    setInputs(inputs);
}

FormulaController::~FormulaController() = default;

double FormulaController::result() const
{
    std::vector<double> stack;
    stack.reserve(_operations.size());
    for (const FormulaOperation& operation : _operations) {
        if (operation.kind == Kind::PushProperty) {
            stack.push_back(inputValue(*operation.property));
        } else if (operation.kind == Kind::PushValue) {
            stack.push_back(operation.value);
        } else if (IsUnary(operation.kind)) {
            stack.back() = Unary(operation, stack.back());
        } else {
            const double top = stack.back();
            stack.pop_back();
            stack.back() = Binary(operation.kind, stack.back(), top);
        }
    }
    return std::isfinite(stack.back()) ? stack.back() : 0.0;
}

double FormulaController::apply(double value, const DzTime&, bool) const
{
    return _stage == FormulaStage::Sum ? value + result() : value * result();
}

double FormulaController::applyInverse(double value, const DzTime&, bool) const
{
    const double formula = result();
    if (_stage == FormulaStage::Sum)
        return value - formula;
    return formula == 0.0 ? value : value / formula;
}

} // namespace openhost
