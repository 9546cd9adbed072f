// All of a scene that steps take back, as text.
// SPDX-License-Identifier: MIT

#include "tests/host/undo_scene.h"

#include "dzerclink.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dznode.h"
#include "dznumericproperty.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "dzstringproperty.h"

#include <fmt/format.h>

namespace {

std::string Id(const DzElement* element)
{
    return element ? std::to_string(element->getElementID()) : "-";
}

std::string FullName(const DzProperty* property)
{
    return property ? Id(property->getOwner()) + "." + property->getName().toStdString() : "-";
}

std::string LinkText(const DzController& controller)
{
    const auto* const link = qobject_cast<const DzERCLink*>(&controller);
    if (!link)
        return " <?>";
    std::string text =
        fmt::format(" <{} {} {:a} {:a} {} {}", FullName(link->getProperty()), link->getType(),
                    link->getScalar(), link->getAddend(), link->isActive(), link->getKeyInterpolation());
    for (int i = 0; i < link->getNumKeyValues(); ++i)
        text += fmt::format(" {:a}:{:a}", link->getKey(i), link->getKeyValue(i));
    return text + ">";
}

std::string PropertyText(const DzProperty& property)
{
    std::string text =
        fmt::format("    {} '{}' {}{}{}", FullName(&property), property.getLabel().toStdString(),
                    property.getPath().toStdString(), property.isLocked() ? " locked" : "",
                    property.isHidden() ? " hidden" : "");
    text +=
        fmt::format(" {}{}{}{} {}", property.isFavorite(), property.canAnimate(), property.canAutoFollow(),
                    property.isManipulator(), property.getRegion().toStdString());
    if (const auto* const number = qobject_cast<const DzNumericProperty*>(&property))
        text +=
            fmt::format(" {:a} {:a} {:a}..{:a} {} {:a} {}", number->getDoubleRawValue(),
                        number->getDoubleValue(), number->getDoubleMin(), number->getDoubleMax(),
                        number->isClamped(), number->getDoubleDefaultValue(), number->getDisplayAsPercent());
    if (const auto* const words = qobject_cast<const DzStringProperty*>(&property))
        text += " " + words->getValue().toStdString();
    for (DzControllerListIterator link = property.controllerListIterator(); link.hasNext();)
        text += LinkText(*link.next());
    for (DzControllerListIterator link = property.slaveControllerListIterator(); link.hasNext();)
        text += " >" + FullName(link.next()->getOwner());
    for (int i = 0; i < property.getNumAliases(); ++i)
        text += " =" + FullName(property.getAlias(i));
    return text + "\n";
}

std::string ElementText(const DzElement& element)
{
    std::string text = fmt::format("  {} {} '{}'\n", Id(&element), element.getName().toStdString(),
                                   element.getLabel().toStdString());
    for (int i = 0; i < element.getNumProperties(); ++i)
        text += PropertyText(*element.getProperty(i));
    return text;
}

std::string ModifierText(const DzModifier& modifier)
{
    std::string text = ElementText(modifier);
    if (const auto* const morph = qobject_cast<const DzMorph*>(&modifier))
        for (int i = 0; i < morph->getDeltas()->getNumDeltas(); ++i) {
            const DzVec3 delta = morph->getDeltas()->getDeltaVec(i);
            text += fmt::format("    {}: {:a} {:a} {:a}\n", morph->getDeltas()->getDeltaIndex(i), delta.m_x,
                                delta.m_y, delta.m_z);
        }
    return text;
}

std::string NodeText(const DzNode& node)
{
    std::string text = ElementText(node) + "  " + node.getRotationOrder().toString().toStdString() +
                       (node.inheritsScale() ? ", scaled" : "") + ", below " + Id(node.getNodeParent()) +
                       ", above";
    for (int i = 0; i < node.getNumNodeChildren(); ++i)
        text += " " + Id(node.getNodeChild(i));
    if (const auto* const skeleton = qobject_cast<const DzSkeleton*>(&node)) {
        text += ", follows " + Id(skeleton->getFollowTarget()) + ", followed by";
        for (int i = 0; i < skeleton->getNumFollowSkeletons(); ++i)
            text += " " + Id(skeleton->getFollowSkeleton(i));
    }
    text += "\n";
    const DzObject* const object = node.getObject();
    for (int i = 0; object && i < object->getNumModifiers(); ++i)
        text += ModifierText(*object->getModifier(i));
    return text;
}

} // namespace

std::string SceneText()
{
    std::string text;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        text += NodeText(*dzScene->getNode(i));
    text += "selected";
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i)
        text += " " + Id(dzScene->getSelectedNode(i));
    return text + ", primary " + Id(dzScene->getPrimarySelection()) + "\n";
}
