// The nodes that a file defines, by what they are called and what they hang on.
// SPDX-License-Identifier: MIT

#include "definition_tree.h"

#include "library/content_paths.h"

#include <algorithm>
#include <unordered_set>

namespace openhost {

namespace {

template <class ByText>
const dson::Node* Look(const ByText& nodes, const std::string& text)
{
    const auto found = nodes.find(text);
    return found == nodes.end() ? nullptr : found->second;
}

} // namespace

DefinitionTree::DefinitionTree(std::shared_ptr<const dson::Document> document)
    : _document(std::move(document))
{
    std::unordered_set<std::string> texts;
    for (const dson::Node& node : _document->nodes) {
        _byId.emplace(node.id, &node);
        _byFoldedId.emplace(FoldCase(node.id), &node);
        _children[node.parent].push_back(&node);
        texts.insert({node.id, node.name});
        if (!_firstFigure && node.type != "bone")
            _firstFigure = &node;
    }
    for (const dson::Node& node : _document->nodes)
        if (node.type == "bone" && !node.parent.empty() && texts.count(node.parent) == 0)
            _orphans.push_back(&node);
}

const dson::Node* DefinitionTree::find(const std::string& id) const
{
    return Look(_byId, id);
}

const dson::Node* DefinitionTree::findIgnoringCase(const std::string& id) const
{
    return Look(_byFoldedId, FoldCase(id));
}

std::vector<const dson::Node*> DefinitionTree::candidates(const dson::Node& top) const
{
    std::vector<const dson::Node*> found{&top};
    std::unordered_set<const dson::Node*> known{&top};
    const auto addChildrenOf = [&](const std::string& text) {
        const auto children = _children.find(text);
        if (children == _children.end())
            return;
        for (const dson::Node* const child : children->second)
            if (known.insert(child).second)
                found.push_back(child);
    };
    for (const dson::Node* const orphan : isFirstFigure(top) ? _orphans : std::vector<const dson::Node*>())
        if (known.insert(orphan).second)
            found.push_back(orphan);
    for (std::size_t next = 0; next < found.size(); ++next) {
        const dson::Node& node = *found[next];
        addChildrenOf(node.id);
        addChildrenOf(node.name);
    }
    found.erase(found.begin());
    std::sort(found.begin(), found.end()); // they stand in the file one after another
    return found;
}

} // namespace openhost
