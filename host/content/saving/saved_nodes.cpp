// Which nodes a saved file is about.
// SPDX-License-Identifier: MIT

#include "saved_nodes.h"

#include "base/errors.h"
#include "dzbone.h"
#include "dzscene.h"
#include "dzskeleton.h"
#include "scene_units.h"

#include <unordered_map>
#include <unordered_set>

namespace openhost {

namespace {

/// Nodes of the scene that are wanted while none above them is.
template <class IsWanted>
std::vector<DzNode*> Topmost(IsWanted isWanted)
{
    std::vector<DzNode*> topmost;
    std::unordered_set<const DzNode*> taken;
    std::unordered_map<const DzNode*, bool> isTaken; // itself or above it, of the nodes passed so far
    std::vector<const DzNode*> passed;
    for (int i = 0; i < dzScene->getNumNodes(); ++i) {
        DzNode* const node = dzScene->getNode(i);
        const DzNode* above = node->getNodeParent();
        while (above && !isTaken.count(above) && !isWanted(*above)) {
            passed.push_back(above);
            above = above->getNodeParent();
        }
        const bool isBelow = above && (!isTaken.count(above) || isTaken[above]);
        for (; !passed.empty(); passed.pop_back())
            isTaken[passed.back()] = isBelow;
        const bool isTop = !isBelow && isWanted(*node);
        isTaken[node] = isBelow || isTop;
        if (isTop && taken.insert(node).second)
            topmost.push_back(node);
    }
    return topmost;
}

DzNode* FigureFor(DzNode& node)
{
    DzNode* const figure = node.getSkeleton();
    return figure && qobject_cast<DzBone*>(&node) ? figure : &node;
}

bool Follows(const DzNode& node, const DzSkeleton& wearer)
{
    const auto* follower = qobject_cast<const DzSkeleton*>(&node);
    // Figures might be fitted to each other in a circle.
    for (int depth = 0; follower && depth < 100; ++depth) {
        follower = follower->getFollowTarget();
        if (follower == &wearer)
            return true;
    }
    return false;
}

/// A part of the figure itself, not something that hangs on it.
bool IsPartOf(const DzNode& node, const DzSkeleton& wearer)
{
    return &node == &wearer || (qobject_cast<const DzBone*>(&node) && node.getSkeleton() == &wearer);
}

} // namespace

std::vector<DzNode*> SceneRoots()
{
    return Topmost([](const DzNode& node) { return node.isRootNode(); });
}

std::vector<DzNode*> SelectedTrees()
{
    std::unordered_set<const DzNode*> wanted;
    for (int i = 0; i < dzScene->getNumSelectedNodes(); ++i)
        wanted.insert(FigureFor(*dzScene->getSelectedNode(i)));
    return Topmost([&wanted](const DzNode& node) { return wanted.count(&node) > 0; });
}

std::vector<DzNode*> WornBy(const DzSkeleton& wearer)
{
    return Topmost([&wearer](const DzNode& node) {
        const DzNode* const parent = node.getNodeParent();
        return Follows(node, wearer) ||
               (parent && IsPartOf(*parent, wearer) && !IsPartOf(node, wearer) && !IsOfDFormer(node));
    });
}

DzNode& SavedFigure(const QString& label)
{
    DzNode* const selected = dzScene->getPrimarySelection();
    DzSkeleton* const figure = selected ? selected->getSkeleton() : nullptr;
    DzNode* const current = figure ? figure : selected;
    if (current && (label.isEmpty() || current->getLabel() == label))
        return *current;
    if (label.isEmpty())
        throw base::Error("no figure is selected");
    DzNode* const named = dzScene->findSkeletonByLabel(label);
    DzNode* const found = named ? named : dzScene->findNodeByLabel(label);
    if (!found)
        throw base::Error("there is no figure " + label.toStdString());
    return *found;
}

} // namespace openhost
