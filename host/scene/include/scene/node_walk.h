// Walking the nodes below one, however deep they hang.
// SPDX-License-Identifier: MIT

#pragma once

#include "dznode.h"

#include <vector>

namespace openhost {

enum class Walk {
    On,
    Around, ///< not to what is below this one
    Stop
};

/// Calls visit(node) for those below, parents before what hangs on them, in order. A list of its own instead
/// of recursion: files may chain any number of nodes.
/// @return where it stopped; null at the end
template <class Visit>
DzNode* WalkBelow(const DzNode& top, const Visit& visit)
{
    std::vector<DzNode*> next;
    const auto addChildren = [&next](const DzNode& node) {
        for (int i = node.getNumNodeChildren(); i-- > 0;)
            next.push_back(node.getNodeChild(i));
    };
    addChildren(top);
    while (!next.empty()) {
        DzNode* const node = next.back();
        next.pop_back();
        const Walk walk = visit(*node);
        if (walk == Walk::Stop)
            return node;
        if (walk == Walk::On)
            addChildren(*node);
    }
    return nullptr;
}

/// To be called by who reads a hierarchy that it is told the changes of: only then is it told the next ones.
void NoteHierarchyRead();

} // namespace openhost
