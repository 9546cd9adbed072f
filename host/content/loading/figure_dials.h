// A figure's dials while it is put together: those of morphs, controls and aliases.
// SPDX-License-Identifier: MIT

#pragma once

#include "dson/reader.h"
#include "dson/uri.h"
#include "figure_nodes.h"
#include "formula_links.h"
#include "library/dial_index.h"
#include "scene/group_paths.h"

#include <functional>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

class DzMorph;
class DzNode;
class DzNumericProperty;
class DzProperty;

namespace openhost {

/// Scripts and plug-ins look dials up by name, so each has a name of its own on its node; files tell them
/// apart by their paths.
class FigureDials {
public:
    /// @param nodes  that the dials are on; must outlive this
    explicit FigureDials(const FigureNodes& nodes) : _nodes(nodes), _index(nodes.root()) {}

    /// The node that has the dial: the root for a morph of its mesh, else what the modifier names as its
    /// parent, else the root.
    DzNode& ownerOf(const dson::Modifier& modifier) const;
    /// Whether something on its node has the name that the dial wants. Aliases give way, and never are in the
    /// way of another dial.
    bool isNameTaken(const dson::Modifier& modifier) const { return isTaken(modifier, modifier.name); }
    /// A name in place of one that is taken.
    std::string freeName(const dson::Modifier& modifier);

    /// Makes room for that many more.
    void expectMorphs(std::size_t count) { _morphNames.reserve(_morphNames.size() + count); }
    /// Sets up the dial of a morph that the figure has already.
    /// @param file      the file that defines it
    /// @param filePath  its decoded path
    void addOfMorph(DzMorph& morph, const dson::Modifier& modifier, const dson::Document& file,
                    const std::string& filePath);
    /// Sets up the dial that a modifier of another kind has already.
    void addOfEffect(DzNumericProperty& dial, const dson::Modifier& modifier, const dson::Document& file,
                     const std::string& filePath)
    {
        _index.add(modifier, file, filePath, _nodes.root(), dial);
    }
    /// A new dial on the node that the modifier names as its parent, else on the root.
    /// @return false when that cannot be
    bool addControl(const dson::Modifier& modifier, const std::string& name, const dson::Document& file,
                    const std::string& filePath);
    /// Likewise; it stands for nothing yet. It gets another name where its own is taken.
    void addAlias(const dson::Modifier& modifier, const dson::Document& file, const std::string& filePath);

    /// What could not be made, or not even read: what names it by its file finds no other dial of its name.
    void lose(const dson::Modifier& modifier, const std::string& filePath);
    void loseFile(const std::string& filePath) { _index.loseFile(filePath); }

    /// Finds what an alias stands for.
    using TargetResolver =
        std::function<DzNumericProperty*(const std::string& uri, const DzNumericProperty& alias)>;
    /// Those that stand for nothing in the end.
    struct HiddenAliases {
        std::vector<std::string> missing;                 ///< what they name in vain
        std::vector<std::string> circular, withoutTarget; ///< their names
        std::vector<std::string> ofHidden;                ///< names of those that stand for such aliases
    };
    /// Gives the aliases their targets; those without are hidden.
    HiddenAliases connectAliases(const TargetResolver& resolve);
    bool isAlias(const DzProperty* property) const { return _aliasProperties.count(property) > 0; }
    /// Aliases that have other names than in their files, since dials beside them have those.
    const std::vector<std::string>& renamedAliases() const { return _renamedAliases; }
    /// Dials that lie in more groups than a tree holds.
    const std::vector<std::string>& cutPaths() const { return _groups.cutNames(); }

    /// By what files call them.
    const DialIndex& index() const { return _index; }
    /// The dial or node channel that a URI names within this figure; null for none.
    /// @param asking  an alias that looks for its target
    DzNumericProperty* resolve(const std::string& text, const DzNumericProperty* asking = nullptr) const;
    /// A dial alone; where the URI names no node, those of the given one come first.
    DzNumericProperty* find(const dson::Uri& uri, const DzNode* node) const;

private:
    struct PendingAlias {
        DzNumericProperty* property;
        std::string target;
    };
    /// A dial of the host for a modifier's channel.
    void applyDial(DzNumericProperty& property, const dson::Modifier& modifier);
    void applyPlace(DzNumericProperty& property, const dson::Modifier& modifier); ///< where a pane shows it
    bool isOfMorph(const dson::Modifier& modifier) const;
    bool hasMorph(const DzNode& owner, const std::string& name) const;
    bool isTaken(const dson::Modifier& modifier, const std::string& name) const;
    std::string freeAliasName(const DzNode& owner, const std::string& taken);
    /// When another dial of the node is to have the name.
    void makeAliasGiveWay(const DzNode& owner, const std::string& name);

    const FigureNodes& _nodes;
    DialIndex _index;
    std::unordered_set<std::string> _morphNames;
    /// By node and name, the number that was given last: a search that begins anew each time would cost all
    /// pairs of equal names.
    std::map<std::pair<const DzNode*, std::string>, int> _lastNumbers;
    std::vector<PendingAlias> _aliases;
    std::unordered_set<const DzProperty*> _aliasProperties;
    std::vector<std::string> _renamedAliases;
    GroupPaths _groups;
};

} // namespace openhost
