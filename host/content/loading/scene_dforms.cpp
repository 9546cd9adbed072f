// The D-Formers of a scene that has been loaded.
// SPDX-License-Identifier: MIT

#include "scene_dforms.h"

#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzobject.h"
#include "figure/fitting.h"

#include <algorithm>

#include <unordered_set>

#include <fmt/format.h>

namespace openhost {

namespace {

/// What a file has of them, in its order.
struct Parts {
    std::vector<DzDForm*> formers;
    std::vector<DzDFormBase*> bases;
    std::vector<DzDFormZone*> zones;
    std::vector<DzDFormModifier*> modifiers;
};

template <class Kind>
void AddIf(DzNode& node, std::vector<Kind*>& parts)
{
    if (auto* const part = qobject_cast<Kind*>(&node))
        parts.push_back(part);
}

void Collect(DzNode& node, Parts& parts)
{
    AddIf(node, parts.formers);
    AddIf(node, parts.bases);
    AddIf(node, parts.zones);
    const DzObject* const object = node.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (auto* const modifier = qobject_cast<DzDFormModifier*>(object->getModifier(i)))
            if (!modifier->getDForm())
                parts.modifiers.push_back(modifier);
}

Parts PartsOf(const LoadedFigures& figures)
{
    Parts parts;
    std::unordered_set<const DzNode*> met;
    for (const LoadedFigure& figure : figures.all()) {
        // What hangs on another figure has come with that.
        if (!met.insert(figure.node).second)
            continue;
        Collect(*figure.node, parts);
        for (QObject* const child : figure.node->getNodeChildren(true)) {
            auto* const node = qobject_cast<DzNode*>(child);
            if (met.insert(node).second)
                Collect(*node, parts);
        }
    }
    return parts;
}

/// "Bend Base" is named after "Bend" and not after "Be"; "Bend_10" not after "Bend_1".
bool BeginsWith(const QString& text, const QString& name)
{
    return text.startsWith(name) && (text.size() == name.size() || !text.at(name.size()).isLetterOrNumber());
}

bool IsNamedAfter(const DzElement& part, const DzElement& former)
{
    return BeginsWith(part.getName(), former.getName()) || BeginsWith(part.getLabel(), former.getLabel());
}

/// The part that hangs on the former or that it hangs on, else the one named after it, else the only one.
/// @param parts  those that have no former yet; the one that is found is taken out
template <class Part>
Part* TakePart(std::vector<Part*>& parts, const DzDForm& former, bool isOnly)
{
    auto found = std::find_if(parts.begin(), parts.end(), [&](const Part* part) {
        return IsBelow(*part, former) || IsBelow(former, *part);
    });
    if (found == parts.end())
        found = std::find_if(parts.begin(), parts.end(),
                             [&](const Part* part) { return IsNamedAfter(*part, former); });
    if (found == parts.end() && isOnly && parts.size() == 1)
        found = parts.begin();
    if (found == parts.end())
        return nullptr;
    Part* const part = *found;
    parts.erase(found);
    return part;
}

DzDForm* FormerOf(const DzDFormModifier& modifier, const std::vector<DzDForm*>& formers)
{
    const auto isCalled = [&](const DzDForm& former) {
        return modifier.getName() == former.getName() || modifier.getLabel() == former.getLabel();
    };
    // Of two that are called the same each has one of the modifiers.
    for (DzDForm* const former : formers)
        if (isCalled(*former) && !former->getModifierForNode(modifier.getNode()))
            return former;
    for (DzDForm* const former : formers)
        if (IsNamedAfter(modifier, *former))
            return former;
    return formers.size() == 1 ? formers.front() : nullptr;
}

} // namespace

std::vector<std::string> ConnectDFormers(const LoadedFigures& figures)
{
    Parts parts = PartsOf(figures);
    const bool isOnly = parts.formers.size() == 1;
    for (DzDForm* const former : parts.formers) {
        former->setBase(TakePart(parts.bases, *former, isOnly));
        former->setZone(TakePart(parts.zones, *former, isOnly));
    }
    std::vector<std::string> left;
    for (DzDFormModifier* const modifier : parts.modifiers) {
        modifier->setDForm(FormerOf(*modifier, parts.formers));
        const DzDForm* const former = modifier->getDForm();
        const char* const missing = !former ? "no D-Former"
                                    : !former->getZone() && !modifier->getInfluenceWeights()
                                        ? "neither a field nor influence weights"
                                        : nullptr;
        if (missing)
            left.push_back(
                fmt::format("{} has {} and deforms nothing", modifier->getLabel().toStdString(), missing));
    }
    return left;
}

} // namespace openhost
