// Formulas of files as links between properties of the scene.
// SPDX-License-Identifier: MIT

#include "formula_links.h"

#include "dzerclink.h"
#include "dznumericproperty.h"
#include "library/asset_origin.h"
#include "scene/formula_controller.h"

#include <memory>
#include <optional>

namespace openhost {

namespace {

using Kind = dson::Operation::Kind;

bool IsSpline(Kind kind)
{
    return kind == Kind::SplineLinear || kind == Kind::SplineConstant || kind == Kind::SplineTcb;
}

DzERCLink::ERCKeyInterpolation InterpolationOf(Kind kind)
{
    return kind == Kind::SplineConstant ? DzERCLink::CONSTANT_INTERP
           : kind == Kind::SplineTcb    ? DzERCLink::TCB_INTERP
                                        : DzERCLink::LINEAR_INTERP;
}

SplineKind SplineKindOf(Kind kind)
{
    return kind == Kind::SplineConstant ? SplineKind::Constant
           : kind == Kind::SplineTcb    ? SplineKind::Tcb
                                        : SplineKind::Linear;
}

/// push url, push value, mult; or push url alone.
std::unique_ptr<DzERCLink> MakeScaledLink(const dson::Formula& formula, const PropertyResolver& resolve)
{
    const auto& operations = formula.operations;
    const bool isSum = formula.stage == dson::Formula::Stage::Sum;
    if (operations[0].kind != Kind::PushUrl)
        return nullptr;
    const bool isLone = operations.size() == 1;
    const bool isScaled = isSum && operations.size() == 3 && operations[1].kind == Kind::PushValue &&
                          operations[2].kind == Kind::Mult;
    if (!isLone && !isScaled)
        return nullptr;
    const DzERCLink::ERCType type = isSum ? DzERCLink::ERCDeltaAdd : DzERCLink::ERCMultiply;
    const double scalar = isScaled ? operations[1].value : 1.0;
    return std::make_unique<DzERCLink>(type, resolve(operations[0].url), scalar, 0.0);
}

/// push url, knots, push count, spline.
std::unique_ptr<DzERCLink> MakeKeyedLink(const dson::Formula& formula, const PropertyResolver& resolve)
{
    const auto& operations = formula.operations;
    const std::size_t count = operations.size();
    if (formula.stage != dson::Formula::Stage::Sum || count < 4 || operations[0].kind != Kind::PushUrl ||
        !IsSpline(operations[count - 1].kind) || operations[count - 2].kind != Kind::PushValue)
        return nullptr;
    for (std::size_t i = 1; i + 2 < count; ++i)
        if (operations[i].kind != Kind::PushKnot)
            return nullptr;
    auto link = std::make_unique<DzERCLink>(DzERCLink::ERCKeyed, resolve(operations[0].url), 1.0, 0.0);
    link->setKeyInterpolation(InterpolationOf(operations[count - 1].kind));
    for (std::size_t i = 1; i + 2 < count; ++i) {
        const auto& knot = operations[i].knot;
        link->addKeyValue(knot[0], knot[1], knot[2], knot[3], knot[4]);
    }
    return link;
}

FormulaOperation::Kind ArithmeticKind(Kind kind)
{
    switch (kind) {
    case Kind::Add:
        return FormulaOperation::Kind::Add;
    case Kind::Sub:
        return FormulaOperation::Kind::Subtract;
    case Kind::Mult:
        return FormulaOperation::Kind::Multiply;
    case Kind::Div:
        return FormulaOperation::Kind::Divide;
    case Kind::Inv:
        return FormulaOperation::Kind::Invert;
    default:
        return FormulaOperation::Kind::Negate;
    }
}

/// The knots before a spline, and the count behind them, are operands of the spline alone.
std::optional<FormulaOperation> TakeSpline(std::vector<FormulaOperation>& compiled,
                                           std::vector<SplineKnot>& knots, Kind kind)
{
    if (compiled.empty() || compiled.back().kind != FormulaOperation::Kind::PushValue)
        return std::nullopt;
    compiled.pop_back();
    FormulaOperation spline;
    spline.kind = FormulaOperation::Kind::Spline;
    spline.spline = SplineKindOf(kind);
    spline.knots.swap(knots);
    return spline;
}

std::unique_ptr<DzNumericController> MakeController(const dson::Formula& formula,
                                                    const PropertyResolver& resolve)
{
    std::vector<FormulaOperation> compiled;
    std::vector<SplineKnot> knots;
    for (const dson::Operation& operation : formula.operations) {
        FormulaOperation next;
        if (operation.kind == Kind::PushKnot) {
            knots.push_back({operation.knot[0], operation.knot[1], operation.knot[2], operation.knot[3],
                             operation.knot[4]});
            continue;
        }
        if (operation.kind == Kind::PushUrl) {
            next.kind = FormulaOperation::Kind::PushProperty;
            next.property = resolve(operation.url);
        } else if (operation.kind == Kind::PushValue) {
            next.value = operation.value;
        } else if (IsSpline(operation.kind)) {
            auto spline = TakeSpline(compiled, knots, operation.kind);
            if (!spline)
                return nullptr;
            next = std::move(*spline);
        } else {
            next.kind = ArithmeticKind(operation.kind);
        }
        compiled.push_back(std::move(next));
    }
    const FormulaStage stage =
        formula.stage == dson::Formula::Stage::Sum ? FormulaStage::Sum : FormulaStage::Multiply;
    return std::unique_ptr<DzNumericController>(FormulaController::Create(stage, std::move(compiled)));
}

} // namespace

LinkResult MakeLink(const dson::Formula& formula, const PropertyResolver& resolve, bool isFromDataFile)
{
    DzNumericProperty* const output = resolve(formula.output);
    if (!output)
        return LinkResult::MissingProperty;
    for (const dson::Operation& operation : formula.operations) {
        if (operation.kind != Kind::PushUrl)
            continue;
        const DzNumericProperty* const input = resolve(operation.url);
        if (!input)
            return LinkResult::MissingProperty;
        // A property that drives itself has no value; longer circles are cut when they are evaluated.
        if (input == output)
            return LinkResult::NotUnderstood;
    }
    std::unique_ptr<DzNumericController> controller = MakeScaledLink(formula, resolve);
    if (!controller)
        controller = MakeKeyedLink(formula, resolve);
    if (!controller)
        controller = MakeController(formula, resolve);
    if (!controller)
        return LinkResult::NotUnderstood;
    if (isFromDataFile)
        SetFromDataFile(*controller);
    output->insertController(controller.release());
    return LinkResult::Made;
}

} // namespace openhost
