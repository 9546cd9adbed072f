// The D-Formers of a scene that has been loaded.
// SPDX-License-Identifier: MIT

#include "scene_dforms.h"

#include "dzdform.h"
#include "dzdformbase.h"
#include "dzdformmodifier.h"
#include "dzdformzone.h"
#include "dzobject.h"
#include "figure/fitting.h"

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
    for (const LoadedFigure& figure : figures.all()) {
        Collect(*figure.node, parts);
        for (QObject* const child : figure.node->getNodeChildren(true)) {
            auto* const node = qobject_cast<DzNode*>(child);
            const bool isOther =
                std::any_of(figures.all().begin(), figures.all().end(), [&](const LoadedFigure& other) {
                    return other.node != figure.node && IsBelow(*other.node, *figure.node) &&
                           IsBelow(*node, *other.node);
                });
            if (!isOther)
                Collect(*node, parts);
        }
    }
    return parts;
}

bool IsNamedAfter(const DzElement& part, const DzElement& former)
{
    return part.getName().startsWith(former.getName()) || part.getLabel().startsWith(former.getLabel());
}

/// The part that hangs on the former or that it hangs on, else the one named after it, else the only one.
template <class Part>
Part* PartOf(const std::vector<Part*>& parts, const DzDForm& former, bool isOnly)
{
    for (Part* const part : parts)
        if (IsBelow(*part, former) || IsBelow(former, *part))
            return part;
    for (Part* const part : parts)
        if (IsNamedAfter(*part, former))
            return part;
    return isOnly && parts.size() == 1 ? parts.front() : nullptr;
}

DzDForm* FormerOf(const DzDFormModifier& modifier, const std::vector<DzDForm*>& formers)
{
    for (DzDForm* const former : formers)
        if (modifier.getName() == former->getName() || modifier.getLabel() == former->getLabel())
            return former;
    for (DzDForm* const former : formers)
        if (IsNamedAfter(modifier, *former))
            return former;
    return formers.size() == 1 ? formers.front() : nullptr;
}

} // namespace

std::vector<std::string> ConnectDFormers(const LoadedFigures& figures)
{
    const Parts parts = PartsOf(figures);
    const bool isOnly = parts.formers.size() == 1;
    for (DzDForm* const former : parts.formers) {
        former->setBase(PartOf(parts.bases, *former, isOnly));
        former->setZone(PartOf(parts.zones, *former, isOnly));
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
