// Links between properties of the scene as formulas of files.
// SPDX-License-Identifier: MIT

#include "link_export.h"

#include "dzerclink.h"
#include "dznumericproperty.h"
#include "scene/formula_controller.h"
#include "scene/link_knots.h"

namespace openhost {

namespace {

using Kind = dson::Operation::Kind;

dson::Operation Push(const std::string& url)
{
    dson::Operation operation;
    operation.kind = Kind::PushUrl;
    operation.url = url;
    return operation;
}

dson::Operation Push(double value)
{
    dson::Operation operation;
    operation.kind = Kind::PushValue;
    operation.value = value;
    return operation;
}

dson::Operation Do(Kind kind)
{
    dson::Operation operation;
    operation.kind = kind;
    return operation;
}

dson::Operation Knot(const SplineKnot& knot)
{
    dson::Operation operation;
    operation.kind = Kind::PushKnot;
    operation.knot = {knot.in, knot.out, knot.tension, knot.continuity, knot.bias};
    return operation;
}

Kind SplineOperation(SplineKind kind)
{
    return kind == SplineKind::Constant ? Kind::SplineConstant
           : kind == SplineKind::Tcb    ? Kind::SplineTcb
                                        : Kind::SplineLinear;
}

/// input * scalar + addend, added to the output.
void AppendScaled(dson::Formula& formula, double scalar, double addend)
{
    formula.operations.push_back(Push(scalar));
    formula.operations.push_back(Do(Kind::Mult));
    if (addend == 0.0)
        return;
    formula.operations.push_back(Push(addend));
    formula.operations.push_back(Do(Kind::Add));
}

void AppendKeys(dson::Formula& formula, const DzERCLink& link)
{
    const std::vector<SplineKnot>& knots = LinkKnots::of(link);
    for (const SplineKnot& knot : knots)
        formula.operations.push_back(Knot(knot));
    formula.operations.push_back(Push(static_cast<double>(knots.size())));
    const int interpolation = link.getKeyInterpolation();
    formula.operations.push_back(Do(interpolation == DzERCLink::CONSTANT_INTERP ? Kind::SplineConstant
                                    : interpolation == DzERCLink::TCB_INTERP    ? Kind::SplineTcb
                                                                                : Kind::SplineLinear));
}

std::optional<dson::Formula> DescribeErcLink(const DzERCLink& link, dson::Formula formula)
{
    const double addend = link.getAddend();
    switch (link.getType()) {
    case DzERCLink::ERCDeltaAdd:
        AppendScaled(formula, link.getScalar(), addend);
        return formula;
    case DzERCLink::ERCAdd:
        AppendScaled(formula, 1.0, addend);
        return formula;
    case DzERCLink::ERCSubtract:
        AppendScaled(formula, -1.0, addend);
        return formula;
    case DzERCLink::ERCKeyed:
        AppendKeys(formula, link);
        return formula;
    case DzERCLink::ERCMultiply:
        formula.stage = dson::Formula::Stage::Multiply;
        return addend == 0.0 ? std::optional<dson::Formula>(formula) : std::nullopt;
    default:
        return std::nullopt;
    }
}

Kind ArithmeticOperation(FormulaOperation::Kind kind)
{
    switch (kind) {
    case FormulaOperation::Kind::Add:
        return Kind::Add;
    case FormulaOperation::Kind::Subtract:
        return Kind::Sub;
    case FormulaOperation::Kind::Multiply:
        return Kind::Mult;
    case FormulaOperation::Kind::Divide:
        return Kind::Div;
    case FormulaOperation::Kind::Invert:
        return Kind::Inv;
    default:
        return Kind::Neg;
    }
}

void AppendSpline(dson::Formula& formula, const FormulaOperation& operation)
{
    for (const SplineKnot& knot : operation.knots)
        formula.operations.push_back(Knot(knot));
    formula.operations.push_back(Push(static_cast<double>(operation.knots.size())));
    formula.operations.push_back(Do(SplineOperation(operation.spline)));
}

dson::Formula DescribeFormula(const FormulaController& controller, const std::string& output,
                              const PropertyNamer& nameOf)
{
    dson::Formula formula;
    formula.output = output;
    if (controller.stage() == FormulaStage::Multiply)
        formula.stage = dson::Formula::Stage::Multiply;
    for (const FormulaOperation& operation : controller.operations()) {
        if (operation.kind == FormulaOperation::Kind::PushProperty)
            formula.operations.push_back(Push(nameOf(*operation.property)));
        else if (operation.kind == FormulaOperation::Kind::PushValue)
            formula.operations.push_back(Push(operation.value));
        else if (operation.kind == FormulaOperation::Kind::Spline)
            AppendSpline(formula, operation);
        else
            formula.operations.push_back(Do(ArithmeticOperation(operation.kind)));
    }
    return formula;
}

} // namespace

std::optional<dson::Formula> DescribeLink(const DzNumericController& link, const std::string& output,
                                          const PropertyNamer& nameOf)
{
    for (int i = 0; i < link.getNumInputs(); ++i)
        if (nameOf(*link.getInput(i)).empty())
            return std::nullopt;
    if (const auto* const controller = dynamic_cast<const FormulaController*>(&link))
        return DescribeFormula(*controller, output, nameOf);
    const auto* const erc = qobject_cast<const DzERCLink*>(&link);
    if (!erc || !erc->getProperty())
        return std::nullopt;
    dson::Formula formula;
    formula.output = output;
    formula.operations.push_back(Push(nameOf(*erc->getProperty())));
    return DescribeErcLink(*erc, formula);
}

} // namespace openhost
