// A small invented figure and folders to put it into.
// SPDX-License-Identifier: MIT

#pragma once

#include "base/errors.h"
#include "dson/writer.h"
#include "tests/host/host_fixture.h"

#include <filesystem>
#include <string>

class DzFigure;
class DzFloatProperty;
class DzMorph;
class DzNode;

/// Figure "Mini" of vendor "Acme": a strip of four quads along X, vertices 2i at (10 i, 0, 0) and 2i + 1 at
/// (10 i, 10, 0), the last six bound to bone "arm" at x = 20, the others to its parent "hip" at the origin.
namespace mini {

constexpr int vertexCount = 10;
constexpr const char* figurePath = "/data/Acme/Mini/Base/Mini.dsf";
constexpr const char* morphFolder = "/data/Acme/Mini/Base/Morphs/Acme/Shapes/";

dson::FigureAsset Figure();
/// Moves one vertex.
dson::Modifier Morph(const std::string& name, std::uint32_t vertex, geometry::Vec3f delta);
/// A dial without deltas.
dson::Modifier Control(const std::string& name);
dson::AssetInfo MorphInfo(const std::string& name);
/// Into the stock's morph folder.
std::filesystem::path WriteMorph(const dson::Modifier& modifier, const std::filesystem::path& library);
/// Writes People/Mini.duf.
std::filesystem::path WriteCharacter(const std::filesystem::path& library,
                                     std::vector<dson::DialValue> dials = {},
                                     const std::string& label = "Mini");
/// URI of a property of a morph or control of the figure, as formulas name it.
std::string Dial(const std::string& name);
/// URI of a channel of a node of the figure.
std::string NodeChannel(const std::string& node, const std::string& property);

} // namespace mini

void WriteBytes(const std::filesystem::path& file, const std::string& bytes);
std::string ReadBytes(const std::filesystem::path& file);

/// The text of the base::Error that the work throws; "no error" when it throws none.
template <class Work>
std::string ErrorOf(Work work)
{
    try {
        work();
    } catch (const base::Error& error) {
        return error.what();
    }
    return "no error";
}

/// A scene with a content library that holds Mini.
class LibraryTest : public HostTest {
protected:
    void SetUp() override;

    std::filesystem::path folder(const char* name) const;
    void use(const std::filesystem::path& library);
    /// Loads a file, merging.
    bool open(const std::filesystem::path& file);
    DzFigure* openMini(); ///< null when it cannot be loaded
    /// A D-Former preset "D-Former_1" with the weight 0.25 at each of the vertices.
    std::filesystem::path writeDForm(std::uint32_t vertexCount, std::vector<std::uint32_t> vertices) const;
    /// A pose preset of these animations, as JSON text.
    std::filesystem::path writePose(const char* animations) const;
    /// The log since the test began.
    QString log() const;

    QTemporaryDir _folder;
    std::filesystem::path _library;

private:
    int _logStart = 0;
};

DzMorph* FindMorph(const DzNode& node, const char* name);
DzFloatProperty* DialOf(const DzNode& node, const char* name); ///< of a morph or control
DzVec3 VertexAt(const DzNode& node, int vertex);
void ExpectAt(const DzVec3& position, float x, float y, float z, float tolerance = 1e-4f);
