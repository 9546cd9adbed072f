// Which nodes an export is about.
// SPDX-License-Identifier: MIT

#include "host/tools/obj_selection.h"

#include "dzfileiosettings.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskeleton.h"

#include <set>

namespace openhost {

namespace {

const DzNode* ItemOf(const DzNode& node)
{
    const DzSkeleton* const skeleton = node.getSkeleton();
    return skeleton ? skeleton : &node;
}

const DzNode* RootOf(const DzNode& node)
{
    const DzNode* root = &node;
    while (const DzNode* const parent = root->getNodeParent())
        root = parent;
    return root;
}

bool IsBelowOneOf(const DzNode& node, const std::set<const DzNode*>& items)
{
    for (const DzNode* n = &node; n; n = n->getNodeParent())
        if (items.count(n))
            return true;
    return false;
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
        if (primaryRootOnly && node != dzScene->getPrimarySelection())
            continue;
        items.insert(rootsOnly ? RootOf(*node) : ItemOf(*node));
    }

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
