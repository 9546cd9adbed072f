// What objects of the scene take in memory.
// SPDX-License-Identifier: MIT

#include "figure/held_memory.h"

#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/pipeline.h"
#include "scene/node_walk.h"

namespace openhost {

namespace {

constexpr std::size_t ofElement = 2000, ofProperty = 700; ///< bytes, with what they point to

std::size_t OfElement(const DzElement& element)
{
    return ofElement + ofProperty * static_cast<std::size_t>(element.getNumProperties() +
                                                             element.getNumPrivateProperties());
}

std::size_t OfModifier(const DzModifier& modifier)
{
    std::size_t bytes = OfElement(modifier);
    const auto* const morph = qobject_cast<const DzMorph*>(&modifier);
    return morph ? bytes + DeltasAccess::bytes(*morph->getDeltas()) : bytes;
}

std::size_t OfNode(const DzNode& node)
{
    std::size_t bytes = OfElement(node);
    const DzObject* const object = node.getObject();
    if (!object)
        return bytes;
    for (int i = 0; i < object->getNumModifiers(); ++i)
        bytes += OfModifier(*object->getModifier(i));
    if (object->pipeline().hasMesh()) {
        const geometry::PolygonMesh& mesh = object->pipeline().base();
        bytes += mesh.vertexCount() * sizeof(geometry::Vec3f) +
                 mesh.topology->cornerCount() * sizeof(std::uint32_t) + object->pipeline().keptBytes();
    }
    return bytes;
}

} // namespace

std::size_t HeldMemory(const QObject& held)
{
    if (const auto* const modifier = qobject_cast<const DzModifier*>(&held))
        return OfModifier(*modifier);
    const auto* const root = qobject_cast<const DzNode*>(&held);
    if (!root)
        return 0;
    std::size_t bytes = OfNode(*root);
    WalkBelow(*root, [&bytes](const DzNode& node) {
        bytes += OfNode(node);
        return Walk::On;
    });
    return bytes;
}

} // namespace openhost
