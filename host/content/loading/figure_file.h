// The file that defines a figure, and where the figure's shapes are.
// SPDX-License-Identifier: MIT

#pragma once

#include "definition_tree.h"

#include <memory>
#include <string>
#include <vector>

namespace openhost {

/// True for the path of a scene, a character or a preset.
bool IsPresetFile(const std::string& decodedPath);

/// A figure in a folder "Name 8_1" shares mesh, bones and morphs with the one in "Name".
class FigureFile {
public:
    /// @param path  decoded, as the referring file spells it; empty for a node that no file defines
    FigureFile(std::shared_ptr<const DefinitionTree> tree, std::string path);

    const DefinitionTree& tree() const { return *_tree; }
    const std::shared_ptr<const dson::Document>& definition() const { return _tree->document(); }
    const std::string& path() const { return _path; }

    bool isAt(const std::string& path) const; ///< the path is that of this file
    /// Whether a path leads to where this figure's shapes are.
    bool isHome(const std::string& path) const;
    /// Whether a path is that of the figure whose shapes this one shares.
    bool isOfSharedFigure(const std::string& path) const;
    /// The figure's own first; none for a figure within a scene file.
    std::vector<std::string> morphFolders() const;

    /// Reports what concerns the figure as a whole.
    void warn(std::string what) const;
    void note(std::string what) const; ///< likewise, where nothing is amiss

private:
    std::shared_ptr<const DefinitionTree> _tree;
    std::string _path, _key;
};

} // namespace openhost
