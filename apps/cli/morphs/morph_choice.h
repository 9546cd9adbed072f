// Which of a figure's morphs are meant.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/diagnostic.h"

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

/// What is asked for and not there.
struct MissingMorph {
    std::string name;   ///< or pattern
    std::string reason; ///< with the line of the list
};

struct ChosenMorphs {
    std::vector<ShapeDial> dials; ///< in the figure's order, each once; at least one
    std::vector<MissingMorph> missing;
};

/// @param diagnostics  of the figure's load, which may say why it lacks a morph
/// @throws base::IoError       the list cannot be read
/// @throws base::FormatError   the list names none of the dials, or nothing at all; with the line
/// @throws std::runtime_error  no pattern fits any of them
ChosenMorphs ChooseMorphs(const DzNode& figure, const MorphChoice& choice,
                          const base::Diagnostics& diagnostics);

} // namespace cli
