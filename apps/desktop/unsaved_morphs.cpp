// Morphs that are in no file of their own.
// SPDX-License-Identifier: MIT

#include "unsaved_morphs.h"

#include <dzmorph.h>
#include <dzmorphdeltas.h>
#include <dzobject.h>
#include <dzscene.h>
#include <dzskeleton.h>
#include <openhost/shapes.h>

#include <algorithm>

namespace desktop {

namespace {

/// Displacements that are made anew have no address; those that a scene's file describes have its.
bool IsInOwnFile(const DzMorph& morph)
{
    return morph.getDeltas()->getUri().getFilePath().endsWith(QLatin1String(".dsf"), Qt::CaseInsensitive);
}

bool IsMadeInScene(const DzMorph& morph)
{
    return morph.getDeltas()->getUri().isEmpty();
}

} // namespace

std::vector<UnsavedMorph> UnsavedMorphs()
{
    std::vector<UnsavedMorph> found;
    for (int f = 0; f < dzScene->getNumSkeletons(); ++f) {
        DzNode* const figure = dzScene->getSkeleton(f);
        const DzObject* const object = figure->getObject();
        // Without a file of its own a figure has no place for those of its morphs.
        if (!object || figure->getAssetUri().getFilePath().isEmpty())
            continue;
        for (int i = 0; i < object->getNumModifiers(); ++i) {
            auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i));
            if (morph && !IsInOwnFile(*morph))
                found.push_back({figure, morph});
        }
    }
    return found;
}

QStringList MorphsAtRisk(bool isSceneKept)
{
    QStringList labels;
    for (const UnsavedMorph& one : UnsavedMorphs())
        if (IsMadeInScene(*one.morph) && (!isSceneKept || !openhost::MorphDetail(*one.morph).empty()))
            labels.append(one.morph->getLabel());
    return labels;
}

} // namespace desktop
