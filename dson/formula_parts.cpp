// Turning the members of a DSON file into values: formulas.
// SPDX-License-Identifier: MIT

#include "parts.h"

#include <map>

#include <fmt/format.h>

namespace dson {

namespace {

std::optional<Operation> ParsePush(const Element& json)
{
    Operation operation;
    if (const auto url = Find(json, "url")) {
        operation.kind = Operation::Kind::PushUrl;
        operation.url = Text(json, "url");
        return operation;
    }
    const auto value = Find(json, "val");
    if (!value)
        return std::nullopt;
    if (!value->is_array()) {
        operation.value = AsNumber(*value).value_or(0.0);
        return operation;
    }
    operation.kind = Operation::Kind::PushKnot;
    std::size_t index = 0;
    ForEach(json, "val", [&](const Element& item) {
        if (index < operation.knot.size())
            operation.knot[index++] = AsNumber(item).value_or(0.0);
    });
    return operation;
}

std::optional<Operation> ParseOperation(const Element& json)
{
    using Kind = Operation::Kind;
    static const std::map<std::string, Kind> kinds{{"add", Kind::Add},
                                                   {"sub", Kind::Sub},
                                                   {"mult", Kind::Mult},
                                                   {"div", Kind::Div},
                                                   {"inv", Kind::Inv},
                                                   {"neg", Kind::Neg},
                                                   {"spline_linear", Kind::SplineLinear},
                                                   {"spline_constant", Kind::SplineConstant},
                                                   {"spline_tcb", Kind::SplineTcb}};
    const std::string name = Text(json, "op");
    if (name == "push")
        return ParsePush(json);
    const auto kind = kinds.find(name);
    if (kind == kinds.end())
        return std::nullopt;
    Operation operation;
    operation.kind = kind->second;
    return operation;
}

} // namespace

std::vector<Formula> ParseFormulas(const Element& owner, ParseContext& context)
{
    std::vector<Formula> formulas;
    ForEach(owner, "formulas", [&](const Element& json) {
        Formula formula;
        formula.output = Text(json, "output");
        const std::string stage = Text(json, "stage", "sum");
        formula.stage =
            stage == "mult" || stage == "multiply" ? Formula::Stage::Multiply : Formula::Stage::Sum;
        bool isComplete = !formula.output.empty();
        ForEach(json, "operations", [&](const Element& item) {
            const auto operation = ParseOperation(item);
            isComplete = isComplete && operation;
            if (operation)
                formula.operations.push_back(*operation);
        });
        if (isComplete && !formula.operations.empty())
            formulas.push_back(std::move(formula));
        else
            context.warn(
                Text(owner, "id"),
                fmt::format("a formula for {} cannot be understood and is left out", formula.output));
    });
    return formulas;
}

} // namespace dson
