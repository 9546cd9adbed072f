// A snapshot of the scene's node labels, for finding what an operation added.
// SPDX-License-Identifier: MIT

#include "ks_node-list.h"

#include "ks_string.h"

#include <dznode.h>
#include <dzscene.h>

namespace kst {

void NodeList::snapshot(const DzNode* root)
{
    _labels.clear();
    ForEachNode(root, [this](DzNode& node) {
        _labels.insert(str::ToStd(node.getLabel()));
        return true;
    });
}

void NodeList::clear()
{
    _labels.clear();
}

std::set<DzNode*> NodeList::getNew(const DzNode* root) const
{
    std::set<DzNode*> nodes;
    ForEachNode(root, [&](DzNode& node) {
        if (_labels.count(str::ToStd(node.getLabel())) == 0)
            nodes.insert(&node);
        return true;
    });
    return nodes;
}

DzNode* NodeList::findNewByLabel(std::string_view label) const
{
    const QString wanted = str::ToQ(label);
    for (DzNode* const node : getNew())
        if (node->getLabel() == wanted)
            return node;
    return nullptr;
}

bool NodeList::IsSceneNode(const DzNode* node)
{
    return !ForEachNode(nullptr, [node](const DzNode& visited) { return &visited != node; });
}

bool NodeList::ForEachNode(const DzNode* root, const std::function<bool(DzNode&)>& visitor)
{
    DzNodeListIterator iterator = root ? root->nodeChildrenIterator() : dzScene->nodeListIterator();
    while (iterator.hasNext()) {
        DzNode* const node = iterator.next();
        if (node && (!visitor(*node) || !ForEachNode(node, visitor)))
            return false;
    }
    return true;
}

} // namespace kst
