// Turning the members of a DSON file into values: formulas.
// SPDX-License-Identifier: MIT

#include "parts.h"

#include <map>

#include <fmt/format.h>

namespace dson {

namespace {

/// What was read, or why it cannot be.
struct ParsedOperation {
    Operation operation;
    std::string reason; ///< empty when it was read
};

ParsedOperation ParseKnot(const Element& json)
{
    ParsedOperation parsed;
    parsed.operation.kind = Operation::Kind::PushKnot;
    std::size_t index = 0;
    ForEach(json, "val", [&](const Element& item) {
        const auto number = AsNumber(item);
        if (!number)
            parsed.reason = "a knot is not made of numbers";
        else if (index < parsed.operation.knot.size())
            parsed.operation.knot[index++] = *number;
    });
    return parsed;
}

ParsedOperation ParsePush(const Element& json)
{
    Operation operation;
    if (const auto url = Find(json, "url")) {
        operation.kind = Operation::Kind::PushUrl;
        operation.url = Text(json, "url");
        return {operation, {}};
    }
    const auto value = Find(json, "val");
    if (value && value->is_array())
        return ParseKnot(json);
    const auto number = value ? AsNumber(*value) : std::nullopt;
    if (!number)
        return {operation, "a push has neither address nor number"};
    operation.value = *number;
    return {operation, {}};
}

ParsedOperation ParseOperation(const Element& json)
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
    const std::string name(QuietText(json, "op"));
    if (name == "push")
        return ParsePush(json);
    const auto kind = kinds.find(name);
    if (kind == kinds.end())
        return {{}, name.empty() ? "an operation has no name" : "the operation " + name + " is unknown"};
    Operation operation;
    operation.kind = kind->second;
    return {operation, {}};
}

/// @return why it cannot be understood; empty when it is
std::string ParseOperations(const Element& json, std::vector<Operation>& operations)
{
    std::string reason;
    ForEach(json, "operations", [&](const Element& item) {
        ParsedOperation parsed = ParseOperation(item);
        if (reason.empty())
            reason = std::move(parsed.reason);
        operations.push_back(std::move(parsed.operation));
    });
    return operations.empty() ? "it has no operations" : reason;
}

Formula::Stage ParseStage(const Element& json, std::size_t& unknown)
{
    const std::string stage = Text(json, "stage", "sum");
    if (stage == "mult" || stage == "multiply")
        return Formula::Stage::Multiply;
    unknown += stage != "sum";
    return Formula::Stage::Sum;
}

} // namespace

std::vector<Formula> ParseFormulas(const Element& owner, ParseContext& context)
{
    std::vector<Formula> formulas;
    std::size_t strange = 0, unknownStages = 0;
    std::string example;
    ForEach(owner, "formulas", [&](const Element& json) {
        Formula formula;
        formula.output = QuietText(json, "output");
        std::string reason = ParseOperations(json, formula.operations);
        if (formula.output.empty())
            reason = "it drives nothing";
        if (!reason.empty()) {
            if (strange++ == 0)
                example = formula.output + ": " + reason;
            return;
        }
        formula.stage = ParseStage(json, unknownStages);
        formulas.push_back(std::move(formula));
    });
    if (strange == 1)
        context.warn(Text(owner, "id"), "1 formula cannot be understood and is left out, for " + example);
    if (strange > 1)
        context.warn(Text(owner, "id"),
                     fmt::format("{} formulas cannot be understood and are left out, the first for {}",
                                 strange, example));
    if (unknownStages > 0)
        context.warn(Text(owner, "id"), fmt::format("{} of an unknown stage and added",
                                                    Counted(unknownStages, "formula is", "formulas are")));
    return formulas;
}

} // namespace dson
