// OBJ files out of the scene and into it.
// SPDX-License-Identifier: MIT

#include "dzbasiccamera.h"
#include "dzbone.h"
#include "dzenumproperty.h"
#include "dzexporter.h"
#include "dzexportmgr.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzimporter.h"
#include "dzimportmgr.h"
#include "dzintproperty.h"
#include "dznode.h"
#include "dzobject.h"
#include "dzprogress.h"
#include "figure/fitting.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "geometry/errors.h"
#include "openhost/refined_ahead.h"
#include "tests/host/tools_fixture.h"

#include <optional>
#include <set>
#include <sstream>

#include <QFile>

namespace {

class ObjFiles : public HostTest {
protected:
    DzError write(const DzFileIOSettings& options, const char* name = "out.obj") const
    {
        const std::unique_ptr<DzExporter> exporter(
            dzApp->getExportMgr()->findExporterByClassName(QStringLiteral("DzObjExporter")));
        return exporter->writeFile(TestFile(name), &options);
    }
    /// The node that was imported; null on an error.
    DzNode* read(const DzFileIOSettings& options, const char* name = "out.obj") const
    {
        const std::unique_ptr<DzImporter> importer(
            dzApp->getImportMgr()->findImporterByClassName(QStringLiteral("DzObjImporter")));
        return importer->readFile(TestFile(name), &options) == DZ_NO_ERROR ? importer->getImportedNode(0)
                                                                           : nullptr;
    }
    static DzFileIOSettings flags(std::initializer_list<const char*> names)
    {
        DzFileIOSettings options;
        options.setIntValue(QStringLiteral("RunSilent"), 1);
        for (const char* const name : names)
            options.setBoolValue(QString::fromUtf8(name), true);
        return options;
    }
    /// What stands behind records of a kind, in order.
    static std::vector<std::string> records(const char* kind, const char* name = "out.obj")
    {
        std::vector<std::string> found;
        std::istringstream lines(FileText(TestFile(name)));
        for (std::string line; std::getline(lines, line);)
            if (line.rfind(std::string(kind) + " ", 0) == 0)
                found.push_back(line.substr(std::string(kind).size() + 1));
        return found;
    }
    /// A square with texture coordinates and a line along two of its edges.
    DzNode* readQuad() const
    {
        QFile file(TestFile("in.obj"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0.25 0.5\nvt 1.25 0.5\nvt 1.25 1.5\nvt 0.25 1.5\n"
                   "f 1/1 2/2 3/3 4/4\nl 1 3 4\n");
        file.close();
        return read(flags({}), "in.obj");
    }
    /// Labels of the exported nodes, by `o` records.
    std::vector<std::string> exported(std::initializer_list<const char*> names) const
    {
        DzFileIOSettings options = flags(names);
        options.setBoolValue(QStringLiteral("WriteO"), true);
        QFile::remove(TestFile("out.obj"));
        write(options);
        return records("o");
    }
};

using Labels = std::vector<std::string>;

} // namespace

TEST_F(ObjFiles, a_round_trip_is_the_identity_for_every_choice_of_axes_and_scale)
{
    TubeFigure tube;
    tube.lower->getZRotControl()->setValue(33.0f);
    const std::vector<geometry::Vec3f> before = WorldPositions(*tube.figure);
    const char* const orders[] = {"XYZ", "XZY", "ZXY", "YZX"};
    for (const char* const order : orders)
        for (const double scale : {1.0, 100.0, 243.84, 0.1})
            for (const int inverted : {0, 3, 4, 7}) {
                DzFileIOSettings options = flags({});
                const char* const axes[] = {"LatAxis", "VertAxis", "DepthAxis"};
                const char* const inversions[] = {"InvertLat", "InvertVert", "InvertDepth"};
                for (int i = 0; i < 3; ++i) {
                    options.setStringValue(QString::fromUtf8(axes[i]), QString(QLatin1Char(order[i])));
                    options.setBoolValue(QString::fromUtf8(inversions[i]), inverted >> i & 1);
                }
                options.setFloatValue(QStringLiteral("Scale"), scale);
                options.setIntValue(QStringLiteral("FloatPrecision"), 8);
                ASSERT_EQ(write(options), DZ_NO_ERROR);
                DzNode* const prop = read(options);
                ASSERT_NE(prop, nullptr);
                // Half a unit of the last decimal on each axis, and single precision at 20 cm.
                EXPECT_LE(LargestDistance(WorldPositions(*prop), before), 0.9e-8 * scale + 4e-6)
                    << order << scale;
                dzScene->removeNode(prop);
            }
}

TEST_F(ObjFiles, of_a_work_are_read_as_they_are_on_disk)
{
    geometry::PolygonMesh mesh = Tube(2);
    mesh.positions[0] = {1.25f, 20, 3};
    AddProp("Tube", mesh);
    DzFileIOSettings options = flags({});
    const auto first = [&] {
        DzNode* const prop = read(options);
        const geometry::Vec3f position = WorldPositions(*prop).at(0);
        dzScene->removeNode(prop);
        return position.x;
    };
    const DzProgress work(QStringLiteral("Work"));
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(first(), 1.25f);
    // One digit, so that the file is as long as before.
    QByteArray text = QByteArray::fromStdString(FileText(TestFile("out.obj")));
    text.replace("1.250000", "7.250000");
    QFile file(TestFile("out.obj"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    EXPECT_EQ(first(), 7.25f);
}

TEST_F(ObjFiles, of_a_work_share_what_they_hold_until_it_is_done)
{
    AddProp("Tube", Tube(2));
    const DzFileIOSettings options = flags({});
    const auto topologyRead = [&] {
        DzNode* const prop = read(options);
        const auto topology = prop->getObject()->pipeline().base().topology;
        dzScene->removeNode(prop);
        return topology;
    };
    {
        const DzProgress work(QStringLiteral("Work"));
        const DzProgress part(QStringLiteral("Part"));
        ASSERT_EQ(write(options), DZ_NO_ERROR);
        EXPECT_EQ(topologyRead(), topologyRead());
    }
    EXPECT_NE(topologyRead(), topologyRead());
}

TEST(WorkMemory, keeps_a_refinement_for_a_later_mesh_of_the_same_topology)
{
    TestHost().reset();
    const geometry::PolygonMesh mesh = Tube(2);
    const auto refineAndDelete = [&] {
        DzNode* const prop = AddProp("Tube", mesh);
        const std::weak_ptr<const geometry::Subdivision> refinement =
            prop->getObject()->pipeline().subdivision(1);
        dzScene->removeNode(prop);
        return refinement;
    };
    std::weak_ptr<const geometry::Subdivision> first;
    {
        const DzProgress work(QStringLiteral("Work"));
        first = refineAndDelete();
        ASSERT_FALSE(first.expired());
        EXPECT_EQ(refineAndDelete().lock(), first.lock());
    }
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(refineAndDelete().expired());
}

TEST(RefinedAhead, hands_out_what_it_made_as_long_as_it_lives)
{
    TestHost().reset();
    DzNode* const one = AddProp("One", Tube(2));
    DzNode* const other = AddProp("Other", Tube(3));
    std::weak_ptr<const geometry::Subdivision> first, second;
    {
        const openhost::RefinedAhead ahead({one, other}, 2);
        first = one->getObject()->pipeline().subdivision(2);
        second = other->getObject()->pipeline().subdivision(1);
        EXPECT_EQ(second.lock()->levels(), 2);
        dzScene->removeNode(one);
        dzScene->removeNode(other);
        EXPECT_FALSE(first.expired());
        EXPECT_FALSE(second.expired());
    }
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(second.expired());
}

TEST(RefinedAhead, is_kept_by_the_work_that_uses_it)
{
    TestHost().reset();
    DzNode* const prop = AddProp("Tube", Tube(2));
    std::optional<openhost::RefinedAhead> ahead(std::in_place, std::vector<const DzNode*>{prop}, 1);
    std::weak_ptr<const geometry::Subdivision> used;
    {
        const DzProgress work(QStringLiteral("Work"));
        used = prop->getObject()->pipeline().subdivision(1);
        dzScene->removeNode(prop);
        ahead.reset();
        EXPECT_FALSE(used.expired());
    }
    EXPECT_TRUE(used.expired());
}

TEST(RefinedAhead, makes_one_for_nodes_of_one_topology)
{
    TestHost().reset();
    const geometry::PolygonMesh mesh = Tube(2);
    DzNode* const one = AddProp("One", mesh);
    DzNode* const other = AddProp("Other", mesh);
    const openhost::RefinedAhead ahead({one, other}, 1);
    EXPECT_EQ(one->getObject()->pipeline().subdivision(1), other->getObject()->pipeline().subdivision(1));
}

TEST(RefinedAhead, leaves_what_cannot_be_refined_to_whoever_needs_it)
{
    TestHost().reset();
    geometry::PolygonMesh points = Tube(2);
    auto faceless = std::make_shared<geometry::Topology>();
    faceless->vertexCount = points.topology->vertexCount;
    points.topology = faceless;
    DzNode* const prop = AddProp("Points", points);
    DzNode* const empty = new DzNode;
    dzScene->addNode(empty);
    const openhost::RefinedAhead ahead({prop, empty}, 1);
    EXPECT_THROW(prop->getObject()->pipeline().subdivision(1), geometry::TopologyError);
}

TEST_F(ObjFiles, scale_is_centimetres_per_file_unit_and_axes_are_those_of_the_scene)
{
    geometry::PolygonMesh mesh = Tube(2);
    mesh.positions[0] = {100, 20, 3};
    AddProp("Tube", mesh);
    DzFileIOSettings options = flags({"InvertDepth"});
    options.setFloatValue(QStringLiteral("Scale"), 50.0);
    options.setStringValue(QStringLiteral("VertAxis"), QStringLiteral("Z"));
    options.setStringValue(QStringLiteral("DepthAxis"), QStringLiteral("Y"));
    options.setIntValue(QStringLiteral("FloatPrecision"), 2);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(records("v").at(0), "2.00 0.06 -0.40");
    options.removeValue(QStringLiteral("InvertDepth"));
    options.setBoolValue(QStringLiteral("InvertDepthAxis"), true);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(records("v").at(0), "2.00 0.06 -0.40");
}

TEST_F(ObjFiles, senseless_options_are_refused)
{
    AddProp("Tube", Tube(2));
    QFile::remove(TestFile("out.obj"));
    struct Case {
        const char* key;
        const char* value;
        const char* message;
    };
    const Case cases[] = {{"LatAxis", "Y", "the axes of the OBJ options name one axis twice"},
                          {"LatAxis", "W", "LatAxis is \"W\" instead of X, Y or Z"},
                          {"VertAxis", "YY", "VertAxis is \"YY\" instead of X, Y or Z"},
                          {"Scale", "0", "the scale of the OBJ options is 0"},
                          {"Scale", "-1", "the scale of the OBJ options is -1"}};
    for (const Case& one : cases) {
        DzFileIOSettings options = flags({});
        options.setStringValue(QString::fromUtf8(one.key), QString::fromUtf8(one.value));
        EXPECT_EQ(write(options), DZ_OPERATION_FAILED_ERROR) << one.message;
        EXPECT_TRUE(LogText().contains(QString::fromUtf8(one.message))) << one.message;
        EXPECT_FALSE(QFile::exists(TestFile("out.obj")));
    }
}

TEST_F(ObjFiles, hold_the_nodes_that_the_options_ask_for)
{
    TubeFigure body("Body"), hat("Hat");
    body.lower->addNodeChild(hat.figure);
    DzNode* const chair = AddProp("Chair", Tube(2));
    DzNode* const cup = AddProp("Cup", Tube(2));
    chair->addNodeChild(cup);
    DzNode* const hidden = AddProp("Hidden", Tube(2));
    hidden->setVisible(false);

    EXPECT_EQ(exported({}), (Labels{"Body", "Hat", "Chair", "Cup", "Hidden"}));
    EXPECT_EQ(exported({"IgnoreInvisible"}), (Labels{"Body", "Hat", "Chair", "Cup"}));
    EXPECT_EQ(exported({"SelectedOnly"}), Labels{});

    dzScene->selectAllNodes(false);
    body.upper->select();
    EXPECT_EQ(exported({"SelectedOnly"}), (Labels{"Body"}));
    EXPECT_EQ(exported({"SelectedOnly", "SelectedRootsOnly"}), (Labels{"Body"}));
    EXPECT_EQ(exported({"SelectedOnly", "IncludeParented"}), (Labels{"Body", "Hat"}));

    hat.figure->select();
    chair->select();
    EXPECT_EQ(exported({"SelectedOnly"}), (Labels{"Body", "Hat", "Chair"}));
    EXPECT_EQ(exported({"SelectedOnly", "SelectedRootsOnly"}), (Labels{"Body", "Chair"}));
    EXPECT_EQ(exported({"SelectedRootsOnly", "IncludeParented"}), (Labels{"Body", "Hat", "Chair", "Cup"}));
    dzScene->setPrimarySelection(hat.figure);
    EXPECT_EQ(exported({"SelectedOnly", "PrimaryRootOnly"}), (Labels{"Hat"}));
    dzScene->selectAllNodes(false);
    hat.figure->select();
    EXPECT_EQ(exported({"SelectedOnly", "SelectedRootsOnly"}), (Labels{"Hat"}));
}

TEST_F(ObjFiles, of_a_figure_leave_out_what_hangs_on_it)
{
    TubeFigure body("Body"), shirt("Shirt"), doll("Doll");
    DzNode* const earring = AddProp("Earring", Tube(2));
    body.lower->addNodeChild(earring);
    DzNode* const group = AddNode("Group", AddNode("Outer group", body.upper));
    DzNode* const bag = AddProp("Bag", Tube(2));
    group->addNodeChild(bag);
    auto* const camera = new DzBasicCamera;
    body.figure->addNodeChild(camera);
    body.figure->addNodeChild(shirt.figure);
    openhost::FitTo(*shirt.figure, *body.figure);
    body.lower->addNodeChild(doll.figure);

    dzScene->selectAllNodes(false);
    body.figure->select();
    EXPECT_EQ(exported({"SelectedRootsOnly"}), (Labels{"Body"}));
    EXPECT_EQ(exported({"SelectedOnly", "SelectedRootsOnly"}), (Labels{"Body"}));
    EXPECT_EQ(records("v").size(), body.figure->getObject()->pipeline().base().vertexCount());
    EXPECT_EQ(exported({"PrimaryRootOnly"}), (Labels{"Body"}));
    EXPECT_EQ(exported({"SelectedRootsOnly", "IncludeParented"}).size(), 5u);

    bag->select();
    EXPECT_EQ(exported({"SelectedOnly"}), (Labels{"Body", "Bag"}));
    EXPECT_EQ(exported({"SelectedOnly", "SelectedRootsOnly"}), (Labels{"Body"}));
    dzScene->setPrimarySelection(earring);
    EXPECT_EQ(exported({"PrimaryRootOnly"}), (Labels{"Earring"}));
}

TEST_F(ObjFiles, groups_come_from_where_the_options_say)
{
    AddProp("Tube", Tube(2));
    write(flags({"WriteG", "GroupGeom"}));
    EXPECT_EQ(records("g"), (Labels{"left", "right"}));
    write(flags({"WriteG", "GroupSurfaces"}));
    EXPECT_EQ(records("g"), (Labels{"Skin"}));
    write(flags({"WriteG", "GroupNodes"}));
    EXPECT_EQ(records("g"), (Labels{"Tube"}));
    write(flags({"WriteG", "GroupSingle"}));
    EXPECT_EQ(records("g"), (Labels{"default"}));
    DzFileIOSettings none = flags({});
    none.setBoolValue(QStringLiteral("WriteG"), false);
    none.setBoolValue(QStringLiteral("WriteUsemtl"), false);
    none.setBoolValue(QStringLiteral("WriteF"), false);
    write(none);
    EXPECT_TRUE(records("g").empty() && records("usemtl").empty() && records("f").empty());
    EXPECT_EQ(records("v").size(), 24u);
}

TEST_F(ObjFiles, a_material_library_names_each_surface_once)
{
    AddProp("Tube", Tube(2));
    AddProp("Other", Tube(2));
    write(flags({"WriteMtllib", "WriteUsemtl"}));
    EXPECT_EQ(records("mtllib"), (Labels{"out.mtl"}));
    EXPECT_EQ(records("newmtl", "out.mtl"), (Labels{"Skin"}));
}

TEST_F(ObjFiles, options_for_maps_are_told_to_do_nothing_when_somebody_sets_them)
{
    AddProp("Prop", Tube(2));
    const QString before = LogText();
    DzFileIOSettings options = flags({"OriginalMaps", "QuoteMapPathsWithSpaces"});
    for (const char* const key : {"NoMaps", "CollectMaps", "ConvertMaps"})
        options.setBoolValue(QLatin1String(key), false);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(LogText().mid(before.size()), QString()) << "as it comes";
    options.setBoolValue(QStringLiteral("CollectMaps"), true);
    options.setBoolValue(QStringLiteral("OriginalMaps"), false);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    const QString told = LogText().mid(before.size());
    EXPECT_EQ(told.count(QLatin1Char('\n')), 1);
    EXPECT_TRUE(told.endsWith(
        QStringLiteral("out.obj: OriginalMaps, CollectMaps has no effect here: the scene holds no maps\n")))
        << told.toStdString();
}

TEST_F(ObjFiles, texture_coordinates_and_lines_come_out_as_they_went_in)
{
    ASSERT_NE(readQuad(), nullptr);
    DzFileIOSettings options = flags({});
    options.setIntValue(QStringLiteral("FloatPrecision"), 2);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(records("vt"), (Labels{"0.25 0.50", "1.25 0.50", "1.25 1.50", "0.25 1.50"}));
    EXPECT_EQ(records("f"), (Labels{"1/1 2/2 3/3 4/4"}));
    EXPECT_EQ(records("l"), (Labels{"1 3 4"}));
    options.setBoolValue(QStringLiteral("CollapseUVTiles"), true);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(records("vt"), (Labels{"0.25 0.50", "0.25 0.50", "0.25 0.50", "0.25 0.50"}));
    options.setBoolValue(QStringLiteral("WriteVT"), false);
    options.setBoolValue(QStringLiteral("WriteL"), false);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_EQ(records("f"), (Labels{"1 2 3 4"}));
    EXPECT_TRUE(records("vt").empty());
    EXPECT_TRUE(records("l").empty());
}

TEST_F(ObjFiles, have_texture_coordinates_at_finer_levels_too)
{
    TubeFigure tube("Tube", true, 8, true);
    auto* const shape = qobject_cast<DzFacetShape*>(tube.figure->getObject()->getCurrentShape());
    const geometry::Topology& topology = *openhost::MeshAccess::mesh(*shape->getFacetMesh()).topology;
    auto extras = std::make_shared<openhost::MeshExtras>();
    for (const std::uint32_t vertex : topology.cornerVertices)
        extras->texCoords.cornerIndices.push_back(vertex % 4);
    extras->texCoords.coordinates = {{0.25f, 0.5f}, {1.25f, 0.5f}, {1.25f, 1.5f}, {0.25f, 1.5f}};
    openhost::MeshAccess::setExtras(*shape->getFacetMesh(), extras);
    shape->getLODControl()->setValue(1);
    shape->getSubDLevelControl()->setValue(1);
    DzFileIOSettings options = flags({});
    options.setIntValue(QStringLiteral("FloatPrecision"), 2);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_GT(records("vt").size(), extras->texCoords.coordinates.size());
    EXPECT_EQ(records("f").size(), 4 * topology.faceCount());
    for (const std::string& face : records("f"))
        EXPECT_EQ(std::count(face.begin(), face.end(), '/'), 4) << face;
    options.setBoolValue(QStringLiteral("WriteVT"), false);
    ASSERT_EQ(write(options), DZ_NO_ERROR);
    EXPECT_TRUE(records("vt").empty());
}

TEST_F(ObjFiles, hold_the_subdivided_mesh_at_the_level_in_view)
{
    TubeFigure tube("Tube", true, 8, true);
    auto* const shape = qobject_cast<DzFacetShape*>(tube.figure->getObject()->getCurrentShape());
    // A tube open at both ends: each level doubles the sides and the segments.
    for (const int level : {0, 1, 2}) {
        if (level == 0)
            shape->getLODControl()->setValue(0);
        else
            shape->getLODControl()->setValue(1);
        if (level > 0)
            shape->getSubDLevelControl()->setValue(level);
        ASSERT_EQ(write(flags({})), DZ_NO_ERROR);
        EXPECT_EQ(records("v").size(), (8u << level) * ((8u << level) + 1u));
        EXPECT_EQ(records("f").size(), (8u << level) * (8u << level));
    }
}

TEST_F(ObjFiles, that_cannot_be_written_leave_no_file)
{
    AddProp("Tube", Tube(2));
    EXPECT_EQ(write(flags({"WriteMtllib"}), "none/out.obj"), DZ_UNABLE_TO_OPEN_FILE_ERROR);
    EXPECT_FALSE(QFile::exists(TestFile("none")));
    dzScene->clear();
    QFile::remove(TestFile("empty.obj"));
    EXPECT_EQ(write(flags({}), "empty.obj"), DZ_OPERATION_FAILED_ERROR);
    EXPECT_FALSE(QFile::exists(TestFile("empty.obj")));
    EXPECT_TRUE(LogText().contains(QStringLiteral("empty.obj: there is nothing to export")));
}

TEST_F(ObjFiles, an_import_is_labelled_after_the_file_and_selected)
{
    AddProp("My Prop.v2", Tube(2));
    write(flags({"WriteG", "GroupGeom"}), "My Prop.v2.obj");
    DzNode* const prop = read(flags({}), "My Prop.v2.obj");
    ASSERT_NE(prop, nullptr);
    EXPECT_EQ(prop->getLabel(), QStringLiteral("My Prop.v2 (2)"));
    EXPECT_EQ(dzScene->getPrimarySelection(), prop);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    const auto& topology = *openhost::MeshAccess::mesh(*prop->getObject()->getCachedGeom()).topology;
    EXPECT_EQ(topology.groupNames, (Labels{"left", "right"}));
    EXPECT_EQ(topology.faceCount(), 16u);
}

TEST_F(ObjFiles, a_bad_import_is_an_error_and_changes_nothing)
{
    QFile file(TestFile("bad.obj"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("v 0 0 0\nf 1 2 9\n");
    file.close();
    EXPECT_EQ(read(flags({}), "bad.obj"), nullptr);
    EXPECT_EQ(read(flags({}), "missing.obj"), nullptr);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.close();
    EXPECT_EQ(read(flags({}), "bad.obj"), nullptr);
    EXPECT_TRUE(LogText().contains(QStringLiteral("bad.obj: holds no vertices")));
    EXPECT_EQ(dzScene->getNumNodes(), 0);
}
