// Which nodes an export is about.
// SPDX-License-Identifier: MIT

#include "obj_selection.h"

#include "dzbone.h"
#include "dzfileiosettings.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"

#include <set>

namespace openhost {

namespace {

// Only bones are parts of a figure: an earring below the head has a mesh of its own, and morphs are made by
// counting vertices.
const DzNode* ItemOf(const DzNode& node)
{
    const DzSkeleton* const skeleton = qobject_cast<const DzBone*>(&node) ? node.getSkeleton() : nullptr;
    return skeleton ? skeleton : &node;
}

bool IsBelowOneOf(const DzNode& node, const std::set<const DzNode*>& items)
{
    for (const DzNode* n = &node; n; n = n->getNodeParent())
        if (items.count(n))
            return true;
    return false;
}

/// Those that stand below no other of them.
std::set<const DzNode*> RootsAmong(const std::set<const DzNode*>& items)
{
    std::set<const DzNode*> roots;
    for (const DzNode* const item : items)
        if (!item->getNodeParent() || !IsBelowOneOf(*item->getNodeParent(), items))
            roots.insert(item);
    return roots;
}

} // namespace

std::vector<DzNode*> NodesToExport(const DzFileIOSettings& options)
{
    const auto isSet = [&options](const char* key) { return options.getBoolValue(QLatin1String(key)); };
    const bool primaryRootOnly = isSet("PrimaryRootOnly");
    const bool rootsOnly = isSet("SelectedRootsOnly") || primaryRootOnly;
    const bool isLimited = rootsOnly || isSet("SelectedOnly");

    std::set<const DzNode*> items;
    DzNodeListIterator selected = dzScene->selectedNodeListIterator();
    while (isLimited && selected.hasNext()) {
        const DzNode* const node = selected.next();
        if (!primaryRootOnly || node == dzScene->getPrimarySelection())
            items.insert(ItemOf(*node));
    }
    if (rootsOnly)
        items = RootsAmong(items);

    std::vector<DzNode*> nodes;
    DzNodeListIterator all = dzScene->nodeListIterator();
    while (all.hasNext()) {
        DzNode* const node = all.next();
        const bool isHidden = isSet("IgnoreInvisible") && !node->isVisible();
        if (isHidden || !node->getObject() || !node->getObject()->getCurrentShape())
            continue;
        const bool isWanted = !isLimited || items.count(ItemOf(*node)) ||
                              (isSet("IncludeParented") && IsBelowOneOf(*node, items));
        if (isWanted)
            nodes.push_back(node);
    }
    return nodes;
}

} // namespace openhost
