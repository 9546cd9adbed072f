// The nodes that a file defines, by what they are called and what they hang on.
// SPDX-License-Identifier: MIT

#include "definition_tree.h"

#include "dson/uri.h"
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

/// A bone that its file has an instance of may be alone, unless a skin says otherwise.
std::unordered_set<std::string> LoneBones(const dson::Document& document)
{
    std::unordered_set<std::string> lone;
    for (const dson::NodeInstance& instance : document.nodeInstances)
        if (const dson::Uri url = dson::ParseUri(instance.url); url.path.empty())
            lone.insert(url.id);
    for (const dson::SkinDefinition& skin : document.skins)
        for (const dson::JointBinding& joint : skin.binding.joints)
            lone.erase(joint.node);
    return lone;
}

bool IsFigure(const dson::Node* node)
{
    return node && (node->type == "figure" || node->type == "legacy_figure");
}

} // namespace

DefinitionTree::DefinitionTree(std::shared_ptr<const dson::Document> document)
    : _document(std::move(document))
{
    for (const dson::Node& node : _document->nodes) {
        _byId.emplace(node.id, &node);
        _byFoldedId.emplace(FoldCase(node.id), &node);
        _byName.emplace(node.name, &node);
        _children[node.parent].push_back(&node);
        if (!_firstFigure && node.type != "bone")
            _firstFigure = &node;
    }
    findOrphans();
    findCircles();
}

const dson::Node* DefinitionTree::parentOf(const dson::Node& node) const
{
    if (node.parent.empty())
        return nullptr;
    const dson::Node* const parent = Look(_byId, node.parent);
    return parent ? parent : Look(_byName, node.parent);
}

void DefinitionTree::findOrphans()
{
    const std::unordered_set<std::string> lone =
        IsFigure(_firstFigure) ? LoneBones(*_document) : std::unordered_set<std::string>();
    for (const dson::Node& node : _document->nodes) {
        const bool isAlone = node.parent.empty() && (!IsFigure(_firstFigure) || lone.count(node.id) > 0);
        if (node.type == "bone" && !isAlone && !parentOf(node))
            _orphans.push_back(&node);
    }
}

void DefinitionTree::findCircles()
{
    std::unordered_map<const dson::Node*, const dson::Node*> metFrom;
    for (const dson::Node& first : _document->nodes) {
        const dson::Node* next = &first;
        while (next && metFrom.emplace(next, &first).second)
            next = parentOf(*next);
        if (next && metFrom.at(next) == &first && next->type == "bone")
            _circular.push_back(next);
    }
}

const dson::Node* DefinitionTree::find(const std::string& id) const
{
    return Look(_byId, id);
}

const dson::Node* DefinitionTree::findIgnoringCase(const std::string& id) const
{
    return Look(_byFoldedId, FoldCase(id));
}

const dson::Node* DefinitionTree::findMeant(const std::string& id) const
{
    const dson::Node* const exact = find(id);
    return exact ? exact : findIgnoringCase(id);
}

bool DefinitionTree::isPart(const dson::Node& bone) const
{
    // They stand in the file one after another.
    return !bone.parent.empty() || std::binary_search(_orphans.begin(), _orphans.end(), &bone);
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
    if (isFirstFigure(top))
        for (const auto* const homeless : {&_orphans, &_circular})
            for (const dson::Node* const bone : *homeless)
                if (known.insert(bone).second)
                    found.push_back(bone);
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
