// A scene with one of everything that files keep.
// SPDX-License-Identifier: MIT

#pragma once

#include "geometry/deltas.h"
#include "tests/host/content_fixture.h"

class DzFileIOSettings;
class DzFigure;
class DzMorph;

class SaveTest : public LibraryTest {
protected:
    void SetUp() override;

    /// Two Minis, posed and shaped, the second holding a prop; a group with a second prop; a garment that was
    /// made of a prop and is fitted to the first.
    void makeScene();
    /// A node with a mesh of two faces in the scene.
    static DzNode* makeProp(const char* name, DzNode* parent = nullptr, bool withPentagon = false);
    /// A morph that no file has.
    static DzMorph* addMorph(const DzNode& node, const char* name, geometry::SparseDeltas deltas);
    /// A figure made of a prop, with the bones of the wearer.
    DzFigure* makeGarment(DzFigure& wearer, const char* name = "Shirt");

    /// Opens a scene beside the Doll's own file.
    /// @param modifiers  that the Doll's file has behind its own, each with a comma in front
    bool openBesideDoll(const std::string& modifiers, const std::string& scene);

    /// Through the manager, silently and plain.
    static int save(const char* filterClass, const std::filesystem::path& file, bool compress = false,
                    const char* rootLabel = nullptr);
    /// Into an empty scene.
    bool reload(const std::filesystem::path& file);
    /// The file's text without its time stamp.
    static std::string untimed(const std::filesystem::path& file);

    std::filesystem::path file(const char* name) const { return folder("saved") / name; }
};
