// Which of a figure's morphs are meant.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

class DzMorph;
class DzNode;
class DzNumericProperty;

namespace cli {

/// A dial that shapes its figure: a morph's, or one that drives such. Borrowed from the scene.
struct ShapeDial {
    DzNumericProperty* dial = nullptr;
    DzMorph* morph = nullptr; ///< null for a dial without displacements of its own
    std::string name, label;
};

/// All of the figure, hidden ones too; no aliases.
std::vector<ShapeDial> ShapeDialsOf(const DzNode& figure);
/// The morphs that a dial drives, directly or through others; without itself.
std::vector<DzMorph*> DrivenMorphs(const DzNumericProperty& dial);

/// What the user asks for: patterns, or a file of names.
struct MorphChoice {
    std::vector<std::string> patterns; ///< see FitsPattern(); for names and labels
    std::filesystem::path list; ///< a name a line; blank lines and those that begin with # do not count
    bool takesHidden = false;   ///< patterns mean hidden dials too; a whole name always does
};

/// In the figure's order, each once.
/// @throws base::IoError       the list cannot be read
/// @throws base::FormatError   the list names nothing, or something that is none of the dials; with the line
/// @throws std::runtime_error  a pattern fits none of them
std::vector<ShapeDial> ChooseMorphs(const std::vector<ShapeDial>& all, const MorphChoice& choice,
                                    const std::string& figure);

} // namespace cli
