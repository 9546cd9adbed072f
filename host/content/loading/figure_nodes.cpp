// A figure's nodes by what files call them.
// SPDX-License-Identifier: MIT

#include "figure_nodes.h"

#include "base/counted.h"
#include "base/errors.h"
#include "definition_nodes.h"
#include "library/asset_origin.h"
#include "library/content_paths.h"
#include "load_report.h"
#include "loading/channel_properties.h"

#include <fmt/format.h>

namespace openhost {

namespace {

bool HasLimitsBeyond(const dson::Node& node)
{
    for (const auto* const channels : {&node.translation, &node.rotation, &node.scale})
        for (const dson::Channel& channel : *channels)
            if (HasLimitsBeyondFloat(channel))
                return true;
    return false;
}

} // namespace

FigureNodes::FigureNodes(const FigureFile& file, std::string rootId, PendingFormulas& formulas)
    : _file(file), _rootId(std::move(rootId))
{
    const dson::Node& top = definitionOf(_rootId);
    _rootId = top.id;
    _ownedRoot = MakeNode(top);
    enter(top, *_ownedRoot, formulas);
    // What does not hang on this figure belongs to another one.
    Waiting waiting;
    for (const dson::Node* const source : _file.tree().candidates(top)) {
        const auto parent = _nodes.find(source->parent);
        if (parent == _nodes.end())
            waiting[source->parent].push_back(source);
        else
            make(*source, *parent->second, waiting, formulas);
    }
    adopt(top, waiting, formulas);
}

void FigureNodes::make(const dson::Node& first, DzNode& parent, Waiting& waiting, PendingFormulas& formulas)
{
    std::vector<std::pair<const dson::Node*, DzNode*>> next{{&first, &parent}};
    while (!next.empty()) {
        const auto [source, above] = next.back();
        next.pop_back();
        if (_nodes.count(source->id) > 0)
            continue;
        std::unique_ptr<DzNode> made = MakeNode(*source);
        DzNode& node = *made;
        enter(*source, node, formulas);
        above->addNodeChild(made.release());
        for (const std::string& text : {source->id, source->name})
            if (const auto children = waiting.find(text); children != waiting.end()) {
                for (auto child = children->second.rbegin(); child != children->second.rend(); ++child)
                    next.emplace_back(*child, &node);
                waiting.erase(children);
            }
    }
}

void FigureNodes::adopt(const dson::Node& top, Waiting& waiting, PendingFormulas& formulas)
{
    if (!_file.tree().isFirstFigure(top))
        return;
    const auto hang = [&](const std::vector<const dson::Node*>& bones, const char* one, const char* many) {
        std::vector<std::string> hung;
        for (const dson::Node* const source : bones) {
            if (_nodes.count(source->id) > 0)
                continue;
            hung.push_back(source->id);
            make(*source, root(), waiting, formulas);
        }
        if (!hung.empty())
            _file.warn(base::Counted(hung.size(), one, many) + Examples(hung));
    };
    hang(_file.tree().orphans(), "bone hangs on nothing that is there and is hung on the figure itself",
         "bones hang on nothing that is there and are hung on the figure itself");
    hang(_file.tree().circular(), "bone is below itself and is hung on the figure itself",
         "bones are below themselves and are hung on the figure itself");
}

const dson::Node& FigureNodes::definitionOf(const std::string& id) const
{
    const dson::Node* const meant = _file.tree().findMeant(id);
    if (!meant)
        throw base::FormatError("{}: has no node {}", _file.definition()->file.string(), id);
    if (meant->id != id)
        _otherSpellings.insert(id);
    return *meant;
}

void FigureNodes::enter(const dson::Node& source, DzNode& made, PendingFormulas& formulas)
{
    made.setAssetUri(AssetUri(_file.path(), source.id));
    if (IsDataFile(_file.path()))
        SetTransformsAsDefined(made);
    addId(source.id, made);
    addId(source.name, made);
    if (HasLimitsBeyond(source))
        _beyondLimits.push_back(source.id);
    for (const dson::Formula& formula : source.formulas)
        formulas.add(formula, _file.definition());
}

void FigureNodes::addId(const std::string& id, DzNode& node)
{
    _nodes.emplace(id, &node);
    _byFoldedText.emplace(FoldCase(id), &node);
}

DzNode* FigureNodes::find(const std::string& idOrName) const
{
    const auto exact = _nodes.find(idOrName);
    if (exact != _nodes.end())
        return exact->second;
    const auto folded = _byFoldedText.find(FoldCase(idOrName));
    if (folded == _byFoldedText.end())
        return nullptr;
    _otherSpellings.insert(idOrName);
    return folded->second;
}

void FigureNodes::reportOddities() const
{
    if (!_otherSpellings.empty())
        _file.warn(
            base::Counted(
                _otherSpellings.size(),
                "name of a node differs from the figure's in letter case alone and is taken for it",
                "names of nodes differ from the figure's in letter case alone and are taken for them") +
            Examples({_otherSpellings.begin(), _otherSpellings.end()}));
    if (!_beyondLimits.empty())
        _file.warn(base::Counted(_beyondLimits.size(),
                                 "node has limits beyond single precision and gets the nearest",
                                 "nodes have limits beyond single precision and get the nearest") +
                   Examples(_beyondLimits));
}

} // namespace openhost
