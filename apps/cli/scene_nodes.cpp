// Which nodes are in the scene.
// SPDX-License-Identifier: MIT

#include "scene_nodes.h"

#include "dznode.h"
#include "dzscene.h"

namespace cli {

std::set<const DzNode*> NodesInScene()
{
    std::set<const DzNode*> nodes;
    for (int i = 0; i < dzScene->getNumNodes(); ++i)
        nodes.insert(dzScene->getNode(i));
    return nodes;
}

void RemoveAllBut(const std::set<const DzNode*>& nodes)
{
    // Children go with their roots, so that the numbers of nodes before these stay.
    for (int i = dzScene->getNumNodes() - 1; i >= 0; --i)
        if (DzNode* const node = dzScene->getNode(i); node && node->isRootNode() && nodes.count(node) == 0)
            dzScene->removeNode(node);
}

} // namespace cli
