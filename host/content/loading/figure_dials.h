// A figure's dials while it is put together: those of morphs, controls and aliases.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "figure_nodes.h"
#include "formula_links.h"
#include "library/dial_index.h"

#include <set>
#include <string>
#include <vector>

class DzMorph;
class DzNode;
class DzNumericProperty;

namespace openhost {

/// Scripts and plug-ins look dials up by name, so each has a name of its own; files tell them apart by their
/// paths.
class FigureDials {
public:
    /// @param nodes  that the dials are on; must outlive this
    explicit FigureDials(const FigureNodes& nodes) : _nodes(nodes) {}

    bool hasName(const std::string& name) const; ///< of a dial that is no alias, or given away
    /// Gives a name away, in place of one that is taken.
    std::string freeName(const std::string& taken);

    /// Sets up the dial of a morph that the figure has already.
    /// @param file      the file that defines it
    /// @param filePath  its decoded path
    void addOfMorph(DzMorph& morph, const dson::Modifier& modifier, const dson::Document& file,
                    const std::string& filePath);
    /// A new dial on the node that the modifier names as its parent, else on the root.
    /// @return false when that cannot be
    bool addControl(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
                    const std::string& filePath);
    /// Likewise; it stands for nothing yet.
    bool addAlias(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath);

    /// What could not be made, or not even read: what names it by its file finds no other dial of its name.
    void lose(const dson::Modifier& modifier, const std::string& filePath);
    void loseFile(const std::string& filePath) { _index.loseFile(filePath); }

    /// Gives the aliases their targets; those without are hidden.
    /// @return how many have none
    std::size_t connectAliases(const PropertyResolver& resolve);

    /// By what files call them.
    const DialIndex& index() const { return _index; }
    /// The dial or node channel that a URI names within this figure; null for none.
    DzNumericProperty* resolve(const std::string& text) const;

private:
    struct PendingAlias {
        DzNumericProperty* property;
        std::string target;
    };
    DzNode& ownerOf(const dson::Modifier& modifier) const;

    const FigureNodes& _nodes;
    DialIndex _index;
    std::set<std::string> _givenNames;
    std::vector<PendingAlias> _aliases;
};

} // namespace openhost
