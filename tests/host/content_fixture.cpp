// A small invented figure and folders to put it into.
// SPDX-License-Identifier: MIT

#include "tests/host/content_fixture.h"

#include "base/errors.h"
#include "dzcontentmgr.h"
#include "dzfacetmesh.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzobject.h"

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace mini {

namespace {

geometry::PolygonMesh Strip()
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    for (int i = 0; i < vertexCount / 2; ++i) {
        mesh.positions.push_back({10.0f * static_cast<float>(i), 0.0f, 0.0f});
        mesh.positions.push_back({10.0f * static_cast<float>(i), 10.0f, 0.0f});
    }
    topology->vertexCount = vertexCount;
    topology->groupNames = {"hip", "arm"};
    topology->surfaceNames = {"Skin"};
    for (std::uint32_t i = 0; i < 4; ++i) {
        topology->addFace(std::vector<std::uint32_t>{2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
        topology->faceGroups.push_back(i < 2 ? 0 : 1);
        topology->faceSurfaces.push_back(0);
    }
    mesh.topology = topology;
    return mesh;
}

dson::Node Bone(const char* id, const char* parent, double x)
{
    dson::Node bone = dson::MakeNode(id, id, "bone");
    bone.parent = parent;
    bone.centerPoint = {x, 0.0, 0.0};
    bone.endPoint = {x + 20.0, 0.0, 0.0};
    return bone;
}

} // namespace

dson::FigureAsset Figure()
{
    dson::FigureAsset figure;
    figure.info.id = figurePath;
    figure.info.type = "figure";
    figure.info.author = "Acme";
    figure.info.modified = "2024-05-01T10:20:30Z";
    figure.geometry.id = "Mini-1";
    figure.geometry.name = figure.geometry.label = "Mini";
    figure.geometry.mesh = Strip();
    figure.geometry.subdivisionLevel = 0; // tests look at the cage
    figure.nodes = {dson::MakeNode("Mini", "Mini", "figure"), Bone("hip", "Mini", 0.0),
                    Bone("arm", "hip", 20.0)};
    figure.nodes.front().presentationType = "Actor/Character";
    figure.skin.vertexCount = vertexCount;
    figure.skin.joints = {{"hip", {0, 1, 2, 3}, {1, 1, 1, 1}},
                          {"arm", {4, 5, 6, 7, 8, 9}, {1, 1, 1, 1, 1, 1}}};
    return figure;
}

dson::Modifier Morph(const std::string& name, std::uint32_t vertex, geometry::Vec3f delta)
{
    dson::Modifier modifier = dson::MakeMorph(name, "/Actor/Acme");
    modifier.parent = dson::MakeUri(figurePath, "Mini");
    modifier.morph->vertexCount = vertexCount;
    modifier.morph->deltas = {{vertex}, {delta}};
    return modifier;
}

dson::Modifier Control(const std::string& name)
{
    dson::Modifier modifier = Morph(name, 0, {});
    modifier.morph.reset();
    return modifier;
}

dson::AssetInfo MorphInfo(const std::string& name)
{
    dson::AssetInfo info;
    info.id = morphFolder + name + ".dsf";
    info.type = "modifier";
    info.author = "Acme";
    info.modified = "2024-05-01T10:20:30Z";
    return info;
}

fs::path WriteMorph(const dson::Modifier& modifier, const fs::path& library)
{
    return dson::WriteMorph(MorphInfo(modifier.name), modifier, library);
}

fs::path WriteCharacter(const fs::path& library, std::vector<dson::DialValue> dials, const std::string& label)
{
    dson::CharacterAsset character;
    character.info.id = "/People/" + label + ".duf";
    character.info.type = "character";
    character.info.author = "Acme";
    character.info.modified = "2024-05-01T10:20:30Z";
    character.figureUri = dson::MakeUri(figurePath, "Mini");
    character.label = label;
    character.dials = std::move(dials);
    return dson::WriteCharacter(character, Figure(), library);
}

std::string Dial(const std::string& name)
{
    return "Mini:#" + dson::EncodeFragment(name) + "?value";
}

std::string NodeChannel(const std::string& node, const std::string& property)
{
    return dson::MakePropertyUri(node, figurePath, node, property);
}

} // namespace mini

void WriteBytes(const fs::path& file, const std::string& bytes)
{
    fs::create_directories(file.parent_path());
    // Rewriting a file in place makes some file systems wait for the disk.
    fs::remove(file);
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string ReadBytes(const fs::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

void LibraryTest::SetUp()
{
    HostTest::SetUp();
    _logStart = LogText().size();
    _library = folder("stock");
    dson::WriteFigure(mini::Figure(), _library);
    mini::WriteCharacter(_library);
    use(_library);
}

fs::path LibraryTest::folder(const char* name) const
{
    return fs::path(_folder.path().toStdString()) / name;
}

void LibraryTest::use(const fs::path& library)
{
    dzApp->getContentMgr()->addContentDirectory(QString::fromStdString(library.string()));
}

bool LibraryTest::open(const fs::path& file)
{
    return dzApp->getContentMgr()->openFile(QString::fromStdString(file.string()), true);
}

DzFigure* LibraryTest::openMini()
{
    return open(_library / "People/Mini.duf") ? qobject_cast<DzFigure*>(dzScene->getPrimarySelection())
                                              : nullptr;
}

fs::path LibraryTest::writeDForm(std::uint32_t vertexCount, std::vector<std::uint32_t> vertices) const
{
    dson::DFormAsset dform;
    dform.info.id = "/Presets/Split.duf";
    dform.info.type = "preset_dform";
    dform.name = "D-Former_1";
    dform.vertexCount = vertexCount;
    dform.weights.assign(vertices.size(), 0.25f);
    dform.vertices = std::move(vertices);
    return dson::WriteDForm(dform, _library);
}

fs::path LibraryTest::writePose(const char* animations) const
{
    const fs::path file = _library / "Presets/Pose.duf";
    WriteBytes(
        file, std::string(R"({"file_version": "0.6.0.0", "asset_info": {"type": "preset_pose"}, "scene": )") +
                  "{\"animations\": " + animations + "}}");
    return file;
}

QString LibraryTest::log() const
{
    return LogText().mid(_logStart);
}

DzMorph* FindMorph(const DzNode& node, const char* name)
{
    const DzObject* const object = node.getObject();
    return object ? qobject_cast<DzMorph*>(object->findModifier(QString::fromUtf8(name))) : nullptr;
}

DzFloatProperty* DialOf(const DzNode& node, const char* name)
{
    if (DzMorph* const morph = FindMorph(node, name))
        return morph->getValueControl();
    return qobject_cast<DzFloatProperty*>(node.findProperty(QString::fromUtf8(name)));
}

DzVec3 VertexAt(const DzNode& node, int vertex)
{
    return node.getObject()->getCachedGeom()->getVertex(vertex);
}

void ExpectAt(const DzVec3& position, float x, float y, float z, float tolerance)
{
    EXPECT_NEAR(position.m_x, x, tolerance);
    EXPECT_NEAR(position.m_y, y, tolerance);
    EXPECT_NEAR(position.m_z, z, tolerance);
}
