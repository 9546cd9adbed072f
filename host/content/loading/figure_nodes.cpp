// A figure's nodes by what files call them.
// SPDX-License-Identifier: MIT

#include "figure_nodes.h"

#include "base/errors.h"
#include "definition_nodes.h"
#include "library/asset_origin.h"

namespace openhost {

FigureNodes::FigureNodes(const FigureFile& file, std::string rootId, PendingFormulas& formulas)
    : _file(file), _rootId(std::move(rootId))
{
    const dson::Node& top = definitionOf(_rootId);
    _ownedRoot = MakeNode(top);
    enter(top, *_ownedRoot, formulas);
    // Parents stand before children in files; what does not hang on this figure belongs to another one.
    for (const dson::Node& source : _file.definition()->nodes) {
        DzNode* const parent = &source == &top ? nullptr : find(source.parent);
        if (!parent || find(source.id))
            continue;
        std::unique_ptr<DzNode> made = MakeNode(source);
        enter(source, *made, formulas);
        parent->addNodeChild(made.release());
    }
}

const dson::Node& FigureNodes::definitionOf(const std::string& id) const
{
    for (const dson::Node& candidate : _file.definition()->nodes)
        if (candidate.id == id)
            return candidate;
    throw base::FormatError("{}: has no node {}", _file.definition()->file.string(), id);
}

void FigureNodes::enter(const dson::Node& source, DzNode& made, PendingFormulas& formulas)
{
    made.setAssetUri(AssetUri(_file.path(), source.id));
    if (IsDataFile(_file.path()))
        SetTransformsAsDefined(made);
    addId(source.id, made);
    addId(source.name, made);
    for (const dson::Formula& formula : source.formulas)
        formulas.add(formula, _file.definition());
}

void FigureNodes::addId(const std::string& id, DzNode& node)
{
    _nodes.emplace(id, &node);
}

DzNode* FigureNodes::find(const std::string& idOrName) const
{
    const auto found = _nodes.find(idOrName);
    return found == _nodes.end() ? nullptr : found->second;
}

} // namespace openhost
