// Links of one figure's dials for the dials of another.
// SPDX-License-Identifier: MIT

#include "openhost/link_copies.h"

#include "dzerclink.h"
#include "dznumericproperty.h"
#include "scene/formula_controller.h"
#include "scene/link_knots.h"

namespace openhost {

namespace {

std::unique_ptr<DzNumericController> CopyErcLink(const DzERCLink& link, const Counterpart& counterpart)
{
    auto copy =
        std::make_unique<DzERCLink>(static_cast<DzERCLink::ERCType>(link.getType()),
                                    counterpart(*link.getProperty()), link.getScalar(), link.getAddend());
    copy->setKeyInterpolation(static_cast<DzERCLink::ERCKeyInterpolation>(link.getKeyInterpolation()));
    for (const SplineKnot& knot : LinkKnots::of(link))
        copy->addKeyValue(knot.in, knot.out, knot.tension, knot.continuity, knot.bias);
    return copy;
}

std::unique_ptr<DzNumericController> CopyFormula(const FormulaController& formula,
                                                 const Counterpart& counterpart)
{
    std::vector<FormulaOperation> operations = formula.operations();
    for (FormulaOperation& operation : operations)
        if (operation.property)
            operation.property = counterpart(*operation.property);
    return std::unique_ptr<DzNumericController>(
        FormulaController::Create(formula.stage(), std::move(operations)));
}

} // namespace

std::unique_ptr<DzNumericController> CopyLink(const DzNumericController& link, const Counterpart& counterpart)
{
    for (int i = 0; i < link.getNumInputs(); ++i)
        if (!counterpart(*link.getInput(i)))
            return nullptr;
    if (const auto* const formula = dynamic_cast<const FormulaController*>(&link))
        return CopyFormula(*formula, counterpart);
    const auto* const erc = qobject_cast<const DzERCLink*>(&link);
    return erc && erc->getProperty() ? CopyErcLink(*erc, counterpart) : nullptr;
}

} // namespace openhost
