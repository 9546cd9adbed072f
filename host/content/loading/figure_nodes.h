// A figure's nodes by what files call them.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/asset.h"
#include "dznode.h"
#include "figure_file.h"
#include "pending_formulas.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace openhost {

/// Of nodes that answer to the same text the first one counts.
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

    const std::string& rootId() const { return _rootId; }
    DzNode& root() const { return *_nodes.at(_rootId); }
    std::unique_ptr<DzNode> takeRoot() { return std::move(_ownedRoot); }

private:
    const dson::Node& definitionOf(const std::string& id) const;
    void enter(const dson::Node& source, DzNode& made, PendingFormulas& formulas);

    const FigureFile& _file;
    std::string _rootId;
    std::unique_ptr<DzNode> _ownedRoot; ///< until it is taken
    std::unordered_map<std::string, DzNode*> _nodes;
};

} // namespace openhost
