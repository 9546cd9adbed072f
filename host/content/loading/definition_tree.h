// The nodes that a file defines, by what they are called and what they hang on.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace openhost {

/// Made once for a file, since it may define thousands of things that are each loaded by themselves.
class DefinitionTree {
public:
    explicit DefinitionTree(std::shared_ptr<const dson::Document> document);

    const std::shared_ptr<const dson::Document>& document() const { return _document; }
    /// The first of the id; null for none.
    const dson::Node* find(const std::string& id) const;
    const dson::Node* findIgnoringCase(const std::string& id) const; ///< likewise
    /// Letter case matters only where two ids differ in it.
    const dson::Node* findMeant(const std::string& id) const;
    /// Gets what hangs on nothing.
    bool isFirstFigure(const dson::Node& node) const { return &node == _firstFigure; }
    /// Those that may hang on the node, below it or by no fault of its own, in the file's order; it is none
    /// of them.
    std::vector<const dson::Node*> candidates(const dson::Node& top) const;
    /// Bones whose parents are nowhere in the file, or that name none beside a figure, in its order.
    const std::vector<const dson::Node*>& orphans() const { return _orphans; }
    /// Of each circle of parents one bone.
    const std::vector<const dson::Node*>& circular() const { return _circular; }
    bool isPart(const dson::Node& bone) const; ///< of a figure, rather than a node by itself

private:
    using ByText = std::unordered_map<std::string, const dson::Node*>;

    const dson::Node* parentOf(const dson::Node& node) const; ///< null for none
    void findOrphans();
    void findCircles();

    std::shared_ptr<const dson::Document> _document;
    ByText _byId, _byFoldedId, _byName;
    std::unordered_map<std::string, std::vector<const dson::Node*>> _children; ///< by what they call parent
    std::vector<const dson::Node*> _orphans, _circular;
    const dson::Node* _firstFigure = nullptr;
};

} // namespace openhost
