// A small figure whose files are written by hand, as other programs write theirs.
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/host/content_fixture.h"

#include <string>

class DzNumericProperty;

/// Figure "Doll" of vendor "Nord": a ladder of three quads along Y, vertices 2i at (0, 10 i, 0) and 2i + 1 at
/// (5, 10 i, 0); vertices 0 to 3 bound to bone "hip" at the origin, 4 to 7 to its child "hand" at y = 20.
namespace doll {

constexpr const char* path = "/data/Nord/Doll/Doll.dsf";
constexpr const char* shapes = "data/Nord/Doll/Morphs/Nord/Shapes/";

/// A DSON file of these members.
std::string File(const std::string& members, const std::string& type = "");
/// A file of one modifier.
std::string ModifierFile(const std::string& modifier);
/// A modifier on the figure; further members begin with a comma.
std::string Control(const std::string& name, const std::string& more = "",
                    const std::string& channel = R"({"id": "value", "type": "float"})");
/// A control that moves one vertex along Y.
std::string Morph(const std::string& name, int vertex, double y, const std::string& more = "");
/// A formulas member, with its comma: `output += input * factor` in the sum stage.
std::string Driven(const std::string& output, const std::string& input, const std::string& factor);
/// The members of the figure's own file.
std::string Figure();
/// A file that loads things into a scene.
std::string Scene(const std::string& nodes, const std::string& more = "", const std::string& type = "scene");
/// An instance of the figure with its two bones; ids end in the suffix. Further members begin with a comma.
std::string Instance(const std::string& suffix = "", const std::string& more = "",
                     const std::string& hand = "", const std::string& file = path);

} // namespace doll

/// A scene with a content library that holds the Doll.
class ForeignTest : public LibraryTest {
protected:
    void SetUp() override;

    /// Below the library.
    std::filesystem::path write(const std::string& relative, const std::string& text) const;
    void writeShape(const std::string& name, const std::string& modifier) const;
    /// Writes the file, then loads it.
    bool load(const std::string& relative, const std::string& text);
    DzFigure* openDoll(); ///< null when it cannot be loaded

    bool logged(const std::string& line) const;
    int timesLogged(const std::string& part) const;

    /// The node of that label in the scene; null for none.
    static DzFigure* labelled(const char* label);
};

DzNode* BoneOf(const DzNode& figure, const char* name);
/// Of a morph or of a control of the figure or one of its bones; null for none.
DzNumericProperty* DialIn(const DzNode& figure, const char* name);
double ValueIn(const DzNode& figure, const char* dial); ///< -1000 if there is none
