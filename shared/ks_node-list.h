// A snapshot of the scene's node labels, for finding what an operation added.
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

class DzNode;

namespace kst {

/// A node counts as new because its label was not seen, not because its pointer was not: a new node that
/// shares its label with an old one is not found.
class NodeList {
public:
    NodeList() = default;
    NodeList(const NodeList&) = delete;
    NodeList& operator=(const NodeList&) = delete;

    /// Takes the labels of every node that ForEachNode visits.
    void snapshot(const DzNode* root = nullptr);
    void clear();

    /// Nodes whose labels were not there at the last snapshot; borrowed from the scene.
    std::set<DzNode*> getNew(const DzNode* root = nullptr) const;
    /// The first new node with exactly this label, or null.
    DzNode* findNewByLabel(std::string_view label) const;

    static bool IsSceneNode(const DzNode* node);

    /// Visits the scene's nodes (no root) or a node's children, each followed by its own children; with no
    /// root a child is visited again under its parent. Stops when the visitor answers false.
    /// @return whether the walk ran to the end
    static bool ForEachNode(const DzNode* root, const std::function<bool(DzNode&)>& visitor);

private:
    std::set<std::string> _labels;
};

} // namespace kst
