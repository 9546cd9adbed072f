// What presets name, found on a figure.
// SPDX-License-Identifier: MIT

#include "preset_target.h"

#include "app/texts.h"
#include "dzbone.h"
#include "dzfloatproperty.h"
#include "dzmodifier.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzskeleton.h"
#include "loading/channel_properties.h"

#include <QStringList>

namespace openhost {

namespace {

DzNode* FindBelow(const DzNode& node, const QString& name)
{
    // The figure's own bones come before those of clothes that it wears.
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node))
        if (DzBone* const bone = skeleton->findBone(name))
            return bone;
    return node.findNodeChild(name, true);
}

DzNumericProperty* DialOf(const DzModifier& modifier)
{
    return modifier.getNumProperties() > 0 ? qobject_cast<DzNumericProperty*>(modifier.getProperty(0))
                                           : nullptr;
}

/// Of a morph or control of the node or of one of its bones.
DzNumericProperty* FindDialByName(const DzNode& node, const QString& name)
{
    if (const DzObject* const object = node.getObject())
        if (const DzModifier* const modifier = object->findModifier(name))
            return DialOf(*modifier);
    if (auto* const own = qobject_cast<DzNumericProperty*>(node.findProperty(name)))
        return own;
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node))
        for (const DzBone* const bone : skeleton->bones())
            if (auto* const property = qobject_cast<DzNumericProperty*>(bone->findProperty(name)))
                return property;
    return nullptr;
}

} // namespace

DzNode* FindByPath(DzNode& top, const std::string& path)
{
    DzNode* node = &top;
    const QStringList steps = ToQ(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& step : steps) {
        if (step == QLatin1String("@selection"))
            continue;
        node = FindBelow(*node, step);
        if (!node)
            return steps.last() == step ? nullptr : FindBelow(top, steps.last());
    }
    return node;
}

DzNode& FigureOf(DzNode& node)
{
    DzNode* const figure = qobject_cast<DzBone*>(&node) ? node.getSkeleton() : nullptr;
    return figure ? *figure : node;
}

DzNumericProperty* PresetTarget::find(const dson::Uri& uri) const
{
    DzNode* const part = FindByPath(_node, uri.node);
    if (!part)
        return nullptr;
    if (uri.property.compare(0, 5, "value") != 0)
        return uri.id.empty() ? FindNodeChannel(*part, uri.property) : nullptr;
    return part == &_node ? findDial(uri.id) : FindDialByName(*part, ToQ(uri.id));
}

DzNumericProperty* PresetTarget::findDial(const std::string& nameOrId) const
{
    const QString text = ToQ(nameOrId);
    DzNumericProperty* const property = FindDialByName(_node, text);
    return property ? property : findMorphById(text);
}

DzNumericProperty* PresetTarget::findMorphById(const QString& id) const
{
    if (!_morphsById) {
        _morphsById.emplace();
        const DzObject* const object = _node.getObject();
        for (int i = 0; object && i < object->getNumModifiers(); ++i)
            if (const auto* const morph = qobject_cast<DzMorph*>(object->getModifier(i)))
                _morphsById->insert(morph->getAssetUri().getId(), morph->getValueControl());
    }
    return id.isEmpty() ? nullptr : _morphsById->value(id);
}

} // namespace openhost
