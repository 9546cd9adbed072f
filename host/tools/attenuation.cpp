// The weight maps that limit a morph.
// SPDX-License-Identifier: MIT

#include "morph_load.h"

#include "dzdformmodifier.h"
#include "dzobject.h"
#include "weight_map_context.h"

namespace openhost {

namespace {

const char* const separator = "::";
const char* const weightMapKind = "weightmap";
const char* const influenceWeights = "Influence Weights";

/// The modifier of that name, otherwise the first D-Former of the node: users may have renamed it.
const DzDFormModifier* FindDForm(const DzObject& object, const QString& name)
{
    const DzDFormModifier* first = nullptr;
    for (int i = 0; i < object.getNumModifiers(); ++i) {
        const auto* const modifier = qobject_cast<DzDFormModifier*>(object.getModifier(i));
        if (modifier && modifier->getName() == name)
            return modifier;
        if (modifier && !first)
            first = modifier;
    }
    return first;
}

} // namespace

const DzWeightMap* FindAttenuationMap(const DzNode& node, const QString& path)
{
    // Matched from its end: a name may hold the separator too.
    const QString end = QLatin1String(separator) + QLatin1String(weightMapKind) + QLatin1String(separator) +
                        node.getLabel() + QLatin1Char('/') + QLatin1String(influenceWeights);
    const DzObject* const object = node.getObject();
    if (!object || !path.endsWith(end))
        return nullptr;
    const DzDFormModifier* const modifier = FindDForm(*object, path.left(path.size() - end.size()));
    return modifier ? modifier->getInfluenceWeights() : nullptr;
}

QString AttenuationPath(const DzWeightMapContext* context, const DzNode* node)
{
    if (!context || !node)
        return QString();
    return context->getModifierName() + QLatin1String(separator) + QLatin1String(weightMapKind) +
           QLatin1String(separator) + node->getLabel() + QLatin1Char('/') + context->getMapName();
}

} // namespace openhost
