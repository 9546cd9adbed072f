// Putting one figure together from its files.
// SPDX-License-Identifier: MIT

#pragma once

#include "definition_tree.h"
#include "dson/reader.h"
#include "dson/uri.h"
#include "formula_links.h"
#include "library/asset_library.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class DzModifier;
class DzNode;
class DzObject;

namespace openhost {

/// A node with its geometry, bones, skin, dials and links, not in the scene yet. The assembly knows it by the
/// files' ids; the dials keep no reference to it, so it may go away once everything is set.
class FigureAssembly {
public:
    /// Builds the node, the nodes below it and its geometry.
    /// @param definition  of the file that defines it; shared, since formulas are resolved against it
    /// @param uriPath     decoded path of that file as the referring file spells it
    /// @param nodeId      id of the root node in the definition
    /// @param geometryId  id of its geometry in the definition, empty for a node without; if not given, the
    ///                    one that its skin names, else the first
    /// @throws base::FormatError  there is no such node, or its skin does not fit its mesh
    FigureAssembly(std::shared_ptr<const DefinitionTree> definition, std::string uriPath,
                   const std::string& nodeId, std::optional<std::string> geometryId = std::nullopt);
    ~FigureAssembly();
    FigureAssembly(FigureAssembly&&) noexcept;

    /// Finds every morph and control below the figure's Morphs folder, in all content directories. A figure
    /// in a folder "Name 8_1" also has those of "Name", whose mesh and bones it shares.
    void addMorphsOnDisk(AssetLibrary& library);
    /// Adds one morph or control that an instance on this figure names, whatever the file says about its
    /// parent; a morph for another mesh is left out.
    /// @param uriPath  decoded path of the file
    /// @return         false when the file has none of that name
    bool addModifier(std::shared_ptr<const dson::Document> file, const std::string& uriPath,
                     const std::string& idOrName);
    /// Makes an instance's values those of a modifier that is neither morph nor dial.
    /// @param uriPath  decoded path of the file that defines it
    void applyEffect(const dson::ModifierInstance& instance, const std::string& uriPath);
    /// The modifier that is neither morph nor dial; null for none.
    DzModifier* findEffect(const dson::Uri& uri) const;
    /// Adds formulas of an instance of this figure; those that are there already count once.
    void addFormulas(const std::vector<dson::Formula>& formulas,
                     const std::shared_ptr<const dson::Document>& owner);
    /// Lets formulas call a node by another id, unless that is taken.
    void addNodeId(const std::string& id, DzNode& node);
    /// The properties that two and more of the formulas to be connected drive in just the same way.
    std::set<std::string> duplicateOutputs() const;
    /// Notes that an instance dials in a shape that is not there.
    /// @param why  nothing for what its file has and is no shape of this figure
    void loseShape(const dson::Uri& uri, const std::optional<base::Diagnostic>& why, double value);
    /// Makes the links of all formulas that were added; what they name and is not there is left out, and
    /// reported once for all. The root has the lost shapes then.
    /// @param elsewhere  finds what this figure does not have
    void connectFormulas(const PropertyResolver& elsewhere);

    /// The root; the caller takes it over.
    std::unique_ptr<DzNode> takeRoot();
    DzNode& root() const;

    const std::string& geometryId() const;               ///< in its definition; empty for none
    DzNode* findNode(const std::string& idOrName) const; ///< null for none
    /// Of a morph or control; null for none.
    /// @param node  whose dials come first where the URI names none
    DzNumericProperty* findDial(const dson::Uri& uri, const DzNode* node) const;
    DzNumericProperty* findDial(const std::string& nameOrId, const DzNode& node) const; ///< likewise
    bool isAlias(const DzNumericProperty& property) const;                              ///< of this figure
    bool hasDialOf(const dson::Uri& uri) const;       ///< as the file that the URI names defines it
    bool hasSkin(const dson::Uri& uri) const;         ///< the figure's file defines it
    bool isNamedBy(const std::string& uriPath) const; ///< the path is that of the figure's file

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
