// Links computed by a small stack machine.
// SPDX-License-Identifier: MIT

#include "scene/formula_controller.h"

#include "dzelement.h"
#include "dznumericproperty.h"
#include "openhost/diagnostics.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

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

std::string NameOf(const DzProperty* property)
{
    const DzElement* const element = property ? property->getOwner() : nullptr;
    const QString name = !property ? QStringLiteral("nothing")
                         : element ? QStringLiteral("%1 of %2").arg(property->getLabel(), element->getLabel())
                                   : property->getLabel();
    return name.toStdString();
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

// A division by 0 gives 0: the formula then adds nothing.
double FormulaController::quotient(double a, double b) const
{
    if (b != 0.0)
        return a / b;
    if (!_hasDividedByZero.exchange(true))
        Report({base::Severity::Warning,
                {},
                {},
                fmt::format("a formula for {} divides by 0, which gives 0", NameOf(getOwner()))});
    return 0.0;
}

double FormulaController::unary(const FormulaOperation& operation, double top) const
{
    switch (operation.kind) {
    case Kind::Invert:
        return quotient(1.0, top);
    case Kind::Negate:
        return -top;
    default:
        return Interpolate(operation.knots, operation.spline, top);
    }
}

double FormulaController::binary(Kind kind, double below, double top) const
{
    switch (kind) {
    case Kind::Add:
        return below + top;
    case Kind::Subtract:
        return below - top;
    case Kind::Multiply:
        return below * top;
    default:
        return quotient(below, top);
    }
}

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
            stack.back() = unary(operation, stack.back());
        } else {
            const double top = stack.back();
            stack.pop_back();
            stack.back() = binary(operation.kind, stack.back(), top);
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
