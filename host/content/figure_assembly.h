// Putting one figure together from its files.
// SPDX-License-Identifier: MIT

#pragma once

#include "host/content/asset_library.h"
#include "host/content/dson_reader.h"

#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

class DzNode;
class DzNumericProperty;
class DzObject;

namespace openhost {

/// A node with its geometry, bones, skin, dials and links, not in the scene yet. The assembly knows it by the
/// files' ids; the dials keep no reference to it, so it may go away once everything is set.
class FigureAssembly {
public:
    /// Builds the node, the nodes below it and its geometry.
    /// @param definition  the file that defines it; shared, since morphs and formulas are resolved against it
    /// @param uriPath     decoded path of that file as the referring file spells it
    /// @param nodeId      id of the root node in the definition
    /// @throws geometry::FormatError  there is no such node, or its skin does not fit its mesh
    FigureAssembly(std::shared_ptr<const dson::Document> definition, std::string uriPath,
                   const std::string& nodeId);
    ~FigureAssembly();
    FigureAssembly(FigureAssembly&&) noexcept;

    /// Finds every morph and control below the figure's Morphs folder, in all content directories.
    void addMorphsOnDisk(AssetLibrary& library);
    /// Adds what the file defines for this figure and is not there yet.
    /// @param uriPath  decoded path of the file
    void addModifiers(std::shared_ptr<const dson::Document> file, const std::string& uriPath);
    /// The properties that two and more of the formulas to be connected drive in just the same way.
    std::set<std::string> duplicateOutputs() const;
    /// Makes the links of all formulas that were added; what they name and is not there is left out, with one
    /// line in the log for all.
    void connectFormulas();

    /// The root; the caller takes it over.
    std::unique_ptr<DzNode> takeRoot();
    DzNode& root() const;

    DzNode* findNode(const std::string& idOrName) const;            ///< null for none
    DzNumericProperty* findDial(const std::string& nameOrId) const; ///< of a morph or control; null for none
    bool isNamedBy(const std::string& uriPath) const;               ///< the path is that of the figure's file
    const std::string& geometryId() const;

private:
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace openhost
