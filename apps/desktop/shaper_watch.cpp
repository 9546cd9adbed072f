// Smoothed and pushed meshes that get into converted morphs.
// SPDX-License-Identifier: MIT

#include "shaper_watch.h"

#include "shaper_warnings.h"

#include <dzaction.h>
#include <dzmorph.h>
#include <dznode.h>
#include <dzobject.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <openhost/diagnostics.h>
#include <openhost/shapes.h>

#include <algorithm>

namespace desktop {

namespace {

Displacements DisplacementsOf(const DzNode& figure)
{
    Displacements found;
    const DzObject* const object = figure.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (const auto* const morph = qobject_cast<const DzMorph*>(object->getModifier(i)))
            found.emplace(morph, morph->getDeltas());
    return found;
}

/// A morph that is converted again keeps its place, but not its displacements.
bool HasMoreThan(const Displacements& before, const DzNode& figure)
{
    const Displacements now = DisplacementsOf(figure);
    return !std::includes(before.begin(), before.end(), now.begin(), now.end());
}

} // namespace

void ShaperWatch::watch(const DzAction& action)
{
    if (!action.inherits("GntConvertFigureAction"))
        return;
    connect(&action, SIGNAL(preExecute()), SLOT(look()), Qt::UniqueConnection);
    // The action is connected to this itself, and earlier.
    connect(&action, SIGNAL(triggered()), SLOT(tell()), Qt::UniqueConnection);
}

void ShaperWatch::look()
{
    _figures.clear();
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i) {
        DzNode* const node = dzScene->getSelectedNode(i);
        DzNode* const figure = node->getSkeleton() ? node->getSkeleton() : node;
        const bool isKnown = std::any_of(_figures.begin(), _figures.end(),
                                         [figure](const Figure& known) { return known.node == figure; });
        if (isKnown)
            continue;
        const std::string label = figure->getLabel().toStdString();
        const std::vector<std::string> shapers = openhost::MeshShapers(*figure);
        _figures.push_back({figure, DisplacementsOf(*figure),
                            app::ShaperWarnings(app::ConvertedFigure::Source, {}, label, shapers),
                            app::ShaperWarnings(app::ConvertedFigure::Target, {}, label, shapers)});
    }
}

void ShaperWatch::tell()
{
    std::vector<bool> hasNewMorphs;
    for (const Figure& figure : _figures)
        hasNewMorphs.push_back(figure.node && HasMoreThan(figure.displacements, *figure.node));
    // Without any, the dialog was cancelled.
    if (std::find(hasNewMorphs.begin(), hasNewMorphs.end(), true) != hasNewMorphs.end())
        for (std::size_t i = 0; i < _figures.size(); ++i)
            openhost::Report(hasNewMorphs[i] ? _figures[i].asTarget : _figures[i].asSource);
    _figures.clear();
}

} // namespace desktop
