// OBJ files that are read again shortly after they were written.
// SPDX-License-Identifier: MIT

#include "geometry/kept_objs.h"

#include "base/errors.h"
#include "shapes.h"
#include "throws.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <random>

using namespace geometry;

namespace {

namespace fs = std::filesystem;

/// A folder and what was written there.
class KeptObjsTest : public ::testing::Test {
protected:
    KeptObjsTest() { fs::create_directories(folder); }
    ~KeptObjsTest() override { fs::remove_all(folder); }

    void write(const PolygonMesh& mesh, const ObjWriteOptions& options = {})
    {
        const ObjPart part{mesh.view()};
        kept.write(file, {&part, 1}, mesh.topology, options);
    }

    std::string text() const
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// The same size at the same time, as far as the file system can tell.
    void writeOver(const std::string& bytes) const
    {
        const fs::file_time_type time = fs::last_write_time(file);
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary) << bytes;
        fs::last_write_time(file, time);
    }

    const fs::path folder =
        fs::temp_directory_path() /
        ("kept-objs-" + std::to_string(std::random_device()()) + std::to_string(std::random_device()()));
    const fs::path file = folder / "body.obj";
    KeptObjs kept;
};

void ExpectSame(const ObjContent& found, const ObjContent& parsed)
{
    const Topology &a = *found.mesh.topology, &b = *parsed.mesh.topology;
    EXPECT_EQ(a.vertexCount, b.vertexCount);
    EXPECT_EQ(a.faceOffsets, b.faceOffsets);
    EXPECT_EQ(a.cornerVertices, b.cornerVertices);
    EXPECT_EQ(a.groupNames, b.groupNames);
    EXPECT_EQ(a.faceGroups, b.faceGroups);
    EXPECT_EQ(a.surfaceNames, b.surfaceNames);
    EXPECT_EQ(a.faceSurfaces, b.faceSurfaces);
    ASSERT_EQ(found.mesh.positions.size(), parsed.mesh.positions.size());
    EXPECT_EQ(std::memcmp(found.mesh.positions.data(), parsed.mesh.positions.data(),
                          parsed.mesh.positions.size() * sizeof(Vec3f)),
              0);
    EXPECT_EQ(found.lines, parsed.lines);
    EXPECT_EQ(found.texCoords.cornerIndices, parsed.texCoords.cornerIndices);
    EXPECT_EQ(found.texCoords.coordinates.size(), parsed.texCoords.coordinates.size());
    EXPECT_EQ(found.materialLibraries, parsed.materialLibraries);
    EXPECT_EQ(found.diagnostics.size(), parsed.diagnostics.size());
}

/// Names that are there twice, or change the order in which they first stand.
PolygonMesh RandomMesh(std::mt19937& random)
{
    const PolygonMesh plain[] = {shapes::Mixed(), shapes::Cube(2.0f), shapes::Grid(3, 5.0f),
                                 shapes::Labelled(shapes::Grid(3, 5.0f)), shapes::LooseVertex()};
    PolygonMesh mesh = plain[random() % 5];
    auto topology = std::make_shared<Topology>(*mesh.topology);
    if (random() % 2) {
        topology->groupNames = {"hip", "head", "hip", "left hand", "nobody"};
        topology->faceGroups.resize(topology->faceCount());
        for (std::uint32_t& label : topology->faceGroups)
            label = static_cast<std::uint32_t>(random() % 4);
    }
    mesh.topology = topology;
    std::uniform_real_distribution<float> size(-8.0f, 5.0f), side(-1.0f, 1.0f);
    for (Vec3f& p : mesh.positions)
        for (int k = 0; k < 3; ++k)
            p[k] = side(random) * std::pow(10.0f, size(random)); // also such as round to nothing
    return mesh;
}

ObjAxis RandomAxis(std::mt19937& random, int axis)
{
    return {axis, random() % 2 == 0};
}

} // namespace

TEST_F(KeptObjsTest, read_as_a_parser_reads_them)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const PolygonMesh mesh = RandomMesh(random);
        ObjWriteOptions options;
        options.decimals = static_cast<int>(random() % 12);
        options.writeFaces = random() % 8 != 0;
        options.writeSurfaces = random() % 2;
        options.triangulate = random() % 4 == 0;
        options.grouping = static_cast<ObjGrouping>(random() % 4);
        options.space = {RandomAxis(random, 1), RandomAxis(random, 2), RandomAxis(random, 0),
                         random() % 2 ? 1.0 : 50.0};
        write(mesh, options);
        ObjReadOptions reading;
        reading.space = {RandomAxis(random, 0), RandomAxis(random, 2), RandomAxis(random, 1),
                         random() % 2 ? 1.0 : 2.54};
        reading.readFaces = random() % 4 != 0;
        reading.readGroups = random() % 2;
        reading.readSurfaces = random() % 2;
        ExpectSame(kept.read(file, reading), ReadObj(file, reading));
    }
    EXPECT_GT(kept.recalledCount(), 100);
    EXPECT_LT(kept.recalledCount(), 300); // more than nine decimals, for one, are left to the parser
}

TEST_F(KeptObjsTest, share_the_topology_that_was_written)
{
    const PolygonMesh mesh = shapes::Labelled(shapes::Grid(3, 5.0f));
    write(mesh);
    EXPECT_EQ(kept.read(file).mesh.topology, mesh.topology);
    EXPECT_EQ(kept.recalledCount(), 1);
}

TEST_F(KeptObjsTest, are_parsed_once_somebody_else_has_changed_them)
{
    PolygonMesh mesh = shapes::Cube(2.0f);
    mesh.positions[3] = {1.25f, 2.5f, 3.75f};
    write(mesh);
    std::string changed = text();
    changed.replace(changed.find("1.250000"), 8, "9.250000");
    writeOver(changed);
    EXPECT_EQ(kept.read(file).mesh.positions[3], (Vec3f{9.25f, 2.5f, 3.75f}));
    writeOver(changed.replace(changed.find("9.250000"), 8, "1.250000"));
    EXPECT_EQ(kept.read(file).mesh.positions[3], (Vec3f{1.25f, 2.5f, 3.75f}));
    EXPECT_EQ(kept.recalledCount(), 1); // the bytes are those that were written again
}

TEST_F(KeptObjsTest, are_parsed_when_another_file_has_taken_the_place)
{
    write(shapes::Cube(2.0f));
    const std::string first = text();
    const PolygonMesh larger = shapes::Cube(8.0f);
    const ObjPart other{larger.view()};
    fs::remove(file);
    WriteObj(file, {&other, 1});
    ASSERT_EQ(text().size(), first.size());
    EXPECT_EQ(kept.read(file).mesh.positions, larger.positions);
    EXPECT_EQ(kept.recalledCount(), 0);
}

TEST_F(KeptObjsTest, tell_of_a_file_that_is_gone)
{
    write(shapes::Cube(2.0f));
    fs::remove(file);
    EXPECT_THROW_MSG(kept.read(file), base::IoError,
                     "cannot open " + file.string() + ": No such file or directory");
}

TEST_F(KeptObjsTest, are_the_latest_of_their_name)
{
    write(shapes::Cube(2.0f));
    const PolygonMesh larger = shapes::Cube(8.0f);
    write(larger);
    EXPECT_EQ(kept.read(file).mesh.positions, larger.positions);
    EXPECT_EQ(kept.recalledCount(), 1);
}

TEST_F(KeptObjsTest, leave_odd_names_to_the_parser)
{
    for (const char* const name : {" hip", "hip ", "#hip", "hip\\", "\\hip", "a\nb", "a\tb", ""}) {
        PolygonMesh mesh = shapes::Labelled(shapes::Grid(2, 5.0f));
        auto topology = std::make_shared<Topology>(*mesh.topology);
        topology->groupNames[0] = name;
        mesh.topology = topology;
        write(mesh);
        ExpectSame(kept.read(file), ReadObj(file));
    }
    EXPECT_EQ(kept.recalledCount(), 0);
}

TEST_F(KeptObjsTest, write_files_of_several_parts_as_well)
{
    const PolygonMesh a = shapes::Cube(2.0f), b = shapes::Mixed();
    const ObjPart parts[] = {{a.view()}, {b.view()}};
    kept.write(file, {parts, 2}, a.topology);
    EXPECT_EQ(text(), FormatObj({parts, 2}));
    ExpectSame(kept.read(file), ReadObj(file));
    EXPECT_EQ(kept.recalledCount(), 0);
}
