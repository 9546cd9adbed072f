// Turning the members of a DSON file into values: formulas.
// SPDX-License-Identifier: MIT

#include "base/counted.h"
#include "parts.h"

#include <map>

#include <fmt/format.h>

namespace dson {

namespace {

/// What was read, or why it cannot be.
struct ParsedOperation {
    Operation operation;
    std::string reason;     ///< empty when it was read
    bool isKnotCut = false; ///< it has not two to five numbers
};

ParsedOperation ParseKnot(const Element& json)
{
    ParsedOperation parsed;
    parsed.operation.kind = Operation::Kind::PushKnot;
    std::size_t count = 0;
    ForEach(json, "val", [&](const Element& item) {
        const auto number = AsNumber(item);
        if (!number)
            parsed.reason = "a knot is not made of numbers";
        else if (count < parsed.operation.knot.size())
            parsed.operation.knot[count] = *number;
        ++count;
    });
    parsed.isKnotCut = count < 2 || count > parsed.operation.knot.size();
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

/// What was met in the formulas of one thing.
struct FormulaOddities {
    std::size_t strange = 0, unknownStages = 0, cutKnots = 0, miscounted = 0;
    std::string example; ///< of a strange one

    void tell(const std::string& id, ParseContext& context) const
    {
        if (strange == 1)
            context.warn(id, "1 formula cannot be understood and is left out, for " + example);
        if (strange > 1)
            context.warn(id,
                         fmt::format("{} formulas cannot be understood and are left out, the first for {}",
                                     strange, example));
        const auto say = [&](std::size_t count, const char* one, const char* many) {
            if (count > 0)
                context.warn(id, base::Counted(count, one, many));
        };
        say(unknownStages, "formula is of an unknown stage and added",
            "formulas are of an unknown stage and added");
        say(cutKnots, "knot of a formula is not two to five numbers; what lacks is 0, the rest left out",
            "knots of formulas are not two to five numbers; what lacks is 0, the rest left out");
        say(miscounted, "formula counts other knots than it has; those that it has are used",
            "formulas count other knots than they have; those that they have are used");
    }
};

/// Whether a spline is told to have other knots than stand before it.
bool CountsOtherKnots(const std::vector<Operation>& operations)
{
    using Kind = Operation::Kind;
    double knots = 0.0;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        const Kind kind = operations[i].kind;
        if (kind == Kind::PushKnot)
            ++knots;
        if (kind != Kind::SplineLinear && kind != Kind::SplineConstant && kind != Kind::SplineTcb)
            continue;
        if (i > 0 && operations[i - 1].kind == Kind::PushValue && operations[i - 1].value != knots)
            return true;
        knots = 0.0;
    }
    return false;
}

/// @return why it cannot be understood; empty when it is
std::string ParseOperations(const Element& json, std::vector<Operation>& operations, std::size_t& cutKnots)
{
    std::string reason;
    ForEach(json, "operations", [&](const Element& item) {
        ParsedOperation parsed = ParseOperation(item);
        if (reason.empty())
            reason = std::move(parsed.reason);
        cutKnots += parsed.isKnotCut;
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
    FormulaOddities met;
    ForEach(owner, "formulas", [&](const Element& json) {
        Formula formula;
        formula.output = QuietText(json, "output");
        std::size_t cutKnots = 0;
        std::string reason = ParseOperations(json, formula.operations, cutKnots);
        if (formula.output.empty())
            reason = "it drives nothing";
        if (!reason.empty()) {
            if (met.strange++ == 0)
                met.example = formula.output + ": " + reason;
            return;
        }
        met.cutKnots += cutKnots;
        met.miscounted += CountsOtherKnots(formula.operations);
        formula.stage = ParseStage(json, met.unknownStages);
        formulas.push_back(std::move(formula));
    });
    met.tell(Text(owner, "id"), context);
    return formulas;
}

} // namespace dson
