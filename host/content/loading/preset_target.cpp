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

DzNode* FindBelowIgnoringCase(const DzNode& node, const QString& name)
{
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node)) {
        for (DzBone* const bone : skeleton->bones())
            if (bone->getName().compare(name, Qt::CaseInsensitive) == 0)
                return bone;
        return nullptr;
    }
    const QObjectList below = node.getNodeChildren(true);
    for (QObject* const child : below) {
        auto* const other = qobject_cast<DzNode*>(child);
        if (other && other->getName().compare(name, Qt::CaseInsensitive) == 0)
            return other;
    }
    return nullptr;
}

DzNumericProperty* DialOf(const DzModifier& modifier)
{
    return modifier.getNumProperties() > 0 ? qobject_cast<DzNumericProperty*>(modifier.getProperty(0))
                                           : nullptr;
}

/// Of a morph or control of the node itself.
DzNumericProperty* FindOwnDial(const DzNode& node, const QString& name)
{
    if (const DzObject* const object = node.getObject())
        if (const DzModifier* const modifier = object->findModifier(name))
            return DialOf(*modifier);
    return qobject_cast<DzNumericProperty*>(node.findProperty(name));
}

/// The name of a morph or control of the node, spelled as it is; null for none.
QString SpellingOn(const DzNode& node, const QString& name)
{
    const DzObject* const object = node.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        if (const QString own = object->getModifier(i)->getName();
            own.compare(name, Qt::CaseInsensitive) == 0)
            return own;
    for (int i = 0; i < node.getNumProperties(); ++i)
        if (const QString own = node.getProperty(i)->getName(); own.compare(name, Qt::CaseInsensitive) == 0)
            return own;
    return {};
}

/// Likewise of the figure, else of one of its bones.
QString SpellingIn(const DzNode& figure, const QString& name)
{
    QString own = SpellingOn(figure, name);
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&figure))
        for (const DzBone* const bone : skeleton->bones())
            if (own.isNull())
                own = SpellingOn(*bone, name);
    return own;
}

/// Of the figure, else of one of its bones; aliases last, since they mostly have the name of what they stand
/// for.
DzNumericProperty* FindDialByName(const DzNode& figure, const QString& name)
{
    DzNumericProperty* alias = FindOwnDial(figure, name);
    if (alias && !alias->getAliasTarget())
        return alias;
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&figure))
        for (const DzBone* const bone : skeleton->bones()) {
            auto* const dial = qobject_cast<DzNumericProperty*>(bone->findProperty(name));
            if (dial && !dial->getAliasTarget())
                return dial;
            alias = alias ? alias : dial;
        }
    return alias;
}

} // namespace

bool IsOfMaterial(const dson::Uri& uri)
{
    return uri.id.compare(0, 10, "materials/") == 0;
}

DzNode* FindByPath(DzNode& top, const std::string& path, std::set<std::string>* otherSpellings)
{
    const auto findBelow = [otherSpellings](const DzNode& node, const QString& name) {
        DzNode* found = FindBelow(node, name);
        if (!found && (found = FindBelowIgnoringCase(node, name)) && otherSpellings)
            otherSpellings->insert(name.toStdString());
        return found;
    };
    DzNode* node = &top;
    const QStringList steps = ToQ(path).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& step : steps) {
        if (step == QLatin1String("@selection"))
            continue;
        node = findBelow(*node, step);
        if (!node)
            return steps.last() == step ? nullptr : findBelow(top, steps.last());
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
    if (uri.property.compare(0, 5, "value") == 0)
        return uri.id.empty() ? findAtEnd(uri.node) : findDial(uri.node, uri.id);
    DzNode* const part = FindByPath(_node, uri.node, &_otherSpellings);
    return part && uri.id.empty() ? FindNodeChannel(*part, uri.property) : nullptr;
}

DzNumericProperty* PresetTarget::findDial(const std::string& path, const std::string& nameOrId) const
{
    DzNode* const part = FindByPath(_node, path, &_otherSpellings);
    if (!part || nameOrId.empty())
        return nullptr;
    const QString text = ToQ(nameOrId);
    if (DzNumericProperty* const exact = findExactly(*part, text))
        return exact;
    QString spelling = SpellingOn(*part, text);
    if (spelling.isNull())
        spelling = SpellingIn(_node, text);
    DzNumericProperty* const alike = spelling.isNull() ? nullptr : findExactly(*part, spelling);
    if (alike)
        _otherDialSpellings.insert(nameOrId);
    return alike;
}

DzNumericProperty* PresetTarget::findExactly(const DzNode& part, const QString& text) const
{
    DzNumericProperty* property = &part == &_node ? nullptr : FindOwnDial(part, text);
    if (!property)
        property = FindDialByName(_node, text);
    return property ? property : findMorphById(text);
}

DzNumericProperty* PresetTarget::findAtEnd(const std::string& path) const
{
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos)
        return nullptr;
    const std::string name = path.substr(slash + 1);
    return name == "@selection" ? nullptr : findDial(path.substr(0, slash), name);
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
    return _morphsById->value(id);
}

} // namespace openhost
