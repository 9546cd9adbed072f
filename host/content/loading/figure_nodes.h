// A figure's nodes by what files call them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "dznode.h"
#include "figure_file.h"
#include "pending_formulas.h"

#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace openhost {

/// Of nodes that answer to the same text the first one counts; letter case matters only where two differ in
/// it.
class FigureNodes {
public:
    /// Makes the root and the nodes below it.
    /// @param file      must outlive them
    /// @param formulas  receives those of the nodes
    /// @throws base::FormatError  there is no such node
    FigureNodes(const FigureFile& file, std::string rootId, PendingFormulas& formulas);

    /// Lets files call a node by another id, unless that is taken.
    void addId(const std::string& id, DzNode& node);
    DzNode* find(const std::string& idOrName) const; ///< null for none
    /// Reports what files call nodes otherwise than their definitions do, and what nodes cannot have.
    void reportOddities() const;

    const std::string& rootId() const { return _rootId; }
    DzNode& root() const { return *_nodes.at(_rootId); }
    std::unique_ptr<DzNode> takeRoot() { return std::move(_ownedRoot); }

private:
    using Waiting = std::unordered_map<std::string, std::vector<const dson::Node*>>;

    const dson::Node& definitionOf(const std::string& id) const;
    /// Makes the node and those that wait for it.
    void make(const dson::Node& first, DzNode& parent, Waiting& waiting, PendingFormulas& formulas);
    /// Bones whose parents are nowhere in the file; the file's first figure gets them.
    void adopt(const dson::Node& top, Waiting& waiting, PendingFormulas& formulas);
    void enter(const dson::Node& source, DzNode& made, PendingFormulas& formulas);

    const FigureFile& _file;
    std::string _rootId;
    std::unique_ptr<DzNode> _ownedRoot; ///< until it is taken
    std::unordered_map<std::string, DzNode*> _nodes, _byFoldedText;
    std::vector<std::string> _beyondLimits;        ///< nodes with such channels
    mutable std::set<std::string> _otherSpellings; ///< by which nodes were found
};

} // namespace openhost
