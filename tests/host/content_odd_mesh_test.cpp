// Meshes, skins and grafts of others that are not quite as they should be: what fits is used.
// SPDX-License-Identifier: MIT

#include "dson/reader.h"
#include "dzbone.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzobject.h"
#include "openhost/events.h"
#include "openhost/scene_picture.h"
#include "tests/host/foreign_fixture.h"

namespace {

using namespace doll;
using Faces = std::vector<std::vector<std::uint32_t>>;

std::string Replaced(std::string text, const std::string& what, const std::string& instead)
{
    const std::size_t at = text.find(what);
    EXPECT_NE(at, text.npos) << what;
    return at == text.npos ? text : text.replace(at, what.size(), instead);
}

const char* const faces = R"("values": [[0,0,0,1,3,2],[0,0,2,3,5,4],[1,0,4,5,7,6]])";
const char* const vertices = "[[0,0,0],[5,0,0],[0,10,0],[5,10,0],[0,20,0],[5,20,0],[0,30,0],[5,30,0]]";

/// A patch whose corners are vertices 4, 5, 6 and 7 of the Doll and whose middle stands out.
std::string Patch(const std::string& graft)
{
    return R"("geometry_library": [{"id": "Patch-1", "name": "Patch", "graft": )" + graft + R"(,
        "vertices": {"count": 5, "values": [[0,20,0],[5,20,0],[0,30,0],[5,30,0],[2,25,3]]},
        "polygon_groups": {"values": ["hand"]}, "polygon_material_groups": {"values": ["Horn"]},
        "polylist": {"values": [[0,0,0,1,4],[0,0,1,3,4],[0,0,3,2,4],[0,0,2,0,4]]}}],
        "node_library": [{"id": "Patch", "name": "Patch", "type": "figure", "label": "Patch"}])";
}

class OddMesh : public ForeignTest {
protected:
    dson::Document readDoll(const std::string& figure) const
    {
        return dson::ReadDocument(write("data/Nord/Doll/Doll.dsf", File(figure, "figure")));
    }
    DzFigure* openDollOf(const std::string& figure)
    {
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
        return openDoll();
    }
    static Faces facesOf(const dson::Document& document)
    {
        const geometry::Topology& topology = *document.geometries.at(0).mesh.topology;
        Faces all;
        for (std::size_t f = 0; f < topology.faceCount(); ++f)
            all.emplace_back(topology.face(f).begin(), topology.face(f).end());
        return all;
    }
    static std::vector<std::string> told(const dson::Document& document)
    {
        std::vector<std::string> all;
        for (const base::Diagnostic& diagnostic : document.diagnostics)
            all.push_back(diagnostic.asset + ": " + diagnostic.what);
        return all;
    }
    /// The Doll with the patch on it, as they are drawn: one item where the two have grown together.
    std::size_t facesDrawnWith(const std::string& graft)
    {
        write("data/Nord/Patch/Patch.dsf", File(Patch(graft), "figure"));
        dzScene->clear();
        EXPECT_TRUE(load("Scenes/Both.duf", Scene(Instance() + R"(,
            {"id": "Patch-i", "url": "/data/Nord/Patch/Patch.dsf#Patch", "label": "Patch", "parent": "#Doll",
             "conform_target": "#Doll", "geometries": [{"id": "Patch-g",
             "url": "/data/Nord/Patch/Patch.dsf#Patch-1"}]})")));
        const openhost::ScenePicture drawn = openhost::VisibleItems(*dzScene);
        return drawn.items.size() == 1 ? drawn.items.front().mesh.faceCount() : 0;
    }
};

using Told = std::vector<std::string>;

} // namespace

TEST_F(OddMesh, a_face_of_many_corners_stays_whole)
{
    const dson::Document document =
        readDoll(Replaced(Figure(), faces, R"("values": [[0,0,0,1,3,5,4,2],[1,0,4,5,7,6]])"));
    EXPECT_EQ(facesOf(document), (Faces{{0, 1, 3, 5, 4, 2}, {4, 5, 7, 6}}));
    EXPECT_EQ(told(document), Told{});
    DzFigure* const figure = openDoll();
    ASSERT_NE(figure, nullptr);
    const auto* const shape = qobject_cast<DzFacetShape*>(figure->getObject()->getCurrentShape());
    EXPECT_EQ(shape->getFacetMesh()->getNumPolygons(), 2);
    EXPECT_EQ(shape->getFacetMesh()->getNumFacets(), 3);
}

TEST_F(OddMesh, corners_that_are_not_there_are_told_and_left_out)
{
    const dson::Document document =
        readDoll(Replaced(Figure(), faces, R"("values": [[0,0,0,1,3,-1],[0,0,2,"x",5,8,4],[1,0,4,5,7,6]])"));
    EXPECT_EQ(facesOf(document), (Faces{{0, 1, 3}, {2, 5, 4}, {4, 5, 7, 6}}));
    EXPECT_EQ(told(document),
              Told{"Doll-1: 2 faces keep only those corners that the mesh has: the first is 0"});
}

TEST_F(OddMesh, faces_of_less_than_three_corners_are_told_and_left_out)
{
    const dson::Document document = readDoll(Replaced(
        Figure(), faces, R"("values": [[0,0,0,1,3,2],[0,0,2,3],"x",[0,0,2,3,99,1.5],[],[1,0,4,5,7,6]])"));
    EXPECT_EQ(facesOf(document), (Faces{{0, 1, 3, 2}, {4, 5, 7, 6}}));
    EXPECT_EQ(document.geometries.at(0).leftOutFaces.numbers, (std::vector<std::uint32_t>{1, 2, 3, 4}));
    EXPECT_EQ(document.geometries.at(0).mesh.topology->faceGroups, (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(told(document),
              Told{"Doll-1: 4 faces are not two labels and three corners that the mesh has, and "
                   "left out: the first is 1"});
}

TEST_F(OddMesh, faces_without_a_group_or_surface_get_the_default_ones)
{
    const dson::Document document =
        readDoll(Replaced(Figure(), faces, R"("values": [[0,0,0,1,3,2],[2,0,2,3,5,4],[1,"x",4,5,7,6]])"));
    const geometry::Topology& topology = *document.geometries.at(0).mesh.topology;
    EXPECT_EQ(topology.groupNames, (Told{"hip", "hand", "default"}));
    EXPECT_EQ(topology.faceGroups, (std::vector<std::uint32_t>{0, 2, 1}));
    EXPECT_EQ(topology.surfaceNames, (Told{"Skin", "default"}));
    EXPECT_EQ(topology.faceSurfaces, (std::vector<std::uint32_t>{0, 0, 1}));
    EXPECT_EQ(told(document),
              Told{"Doll-1: 2 faces are of a group or surface that is not defined, and put into "
                   "one named default: the first is 1"});
    const dson::Document bare = readDoll(
        Replaced(Replaced(Figure(), R"("polygon_groups": {"count": 2, "values": ["hip", "hand"]},)", ""),
                 R"("polygon_material_groups": {"count": 1, "values": ["Skin"]},)", ""));
    EXPECT_EQ(bare.geometries.at(0).mesh.topology->groupNames, Told{"default"});
    EXPECT_EQ(bare.geometries.at(0).mesh.topology->faceGroups, (std::vector<std::uint32_t>{0, 0, 0}));
}

TEST_F(OddMesh, vertices_of_other_than_three_numbers_are_told_and_keep_their_numbers)
{
    const dson::Document document = readDoll(
        Replaced(Figure(), vertices, "[[0,0,0],[5,0],[0,10,0],[5,10,0,7],[],\"x\",[0,30,0],[5,30,0]]"));
    const std::vector<geometry::Vec3f>& positions = document.geometries.at(0).mesh.positions;
    ASSERT_EQ(positions.size(), 8u);
    EXPECT_EQ(positions[1], (geometry::Vec3f{5, 0, 0}));
    EXPECT_EQ(positions[3], (geometry::Vec3f{5, 10, 0}));
    EXPECT_EQ(positions[4], (geometry::Vec3f{0, 0, 0}));
    EXPECT_EQ(positions[7], (geometry::Vec3f{5, 30, 0}));
    EXPECT_EQ(told(document),
              Told{"Doll-1: 4 vertices are not three numbers, what lacks taken as 0: the first is 1"});
}

TEST_F(OddMesh, texture_coordinates_count_the_faces_of_the_file)
{
    const std::string uvs = R"(, "uv_set_library": [{"id": "UVs",
        "uvs": [[0,0],[0,0],[0,0],[0,0],[0,0],[0,0],[0,0],[0,0],[0.5,0],[0.75,0]],
        "polygon_vertex_indices": [[2,5,8],[1,2,9]]}])";
    std::string figure = Replaced(Figure() + uvs, faces, R"("values": [[0,0,0,1,3,2],[0,0],[1,0,4,5,7,6]])");
    figure = Replaced(figure, R"("graft": {})", R"("default_uv_set": "#UVs", "graft": {})");
    const dson::Document document = readDoll(figure);
    EXPECT_EQ(document.geometries.at(0).texCoords.cornerIndices,
              (std::vector<std::uint32_t>{0, 1, 3, 2, 4, 8, 7, 6}));
}

TEST_F(OddMesh, a_skin_of_another_size_binds_what_fits_and_is_told)
{
    for (const char* const count : {"9", "5"}) {
        dzScene->clear();
        DzFigure* const figure = openDollOf(
            Replaced(Replaced(Figure(), "\"vertex_count\": 8", std::string("\"vertex_count\": ") + count),
                     "[7,1]]", "[7,1],[8,1]]"));
        ASSERT_NE(figure, nullptr) << log().toStdString();
        EXPECT_TRUE(
            logged(std::string("is for ") + count + " vertices but its mesh has 8; what fits is used"));
        EXPECT_TRUE(logged("1 weight is of vertices that the mesh does not have and left out"));
        BoneOf(*figure, "hand")->getZRotControl()->setValue(90.0f);
        ExpectAt(VertexAt(*figure, 7), -10, 25, 0);
    }
}

TEST_F(OddMesh, a_skin_that_does_not_say_what_mesh_it_is_for_binds_what_fits_and_is_told)
{
    DzFigure* const figure =
        openDollOf(Replaced(Replaced(Figure(), R"("geometry": "#Doll-1", "vertex_count": 8,)", ""), "[7,1]]",
                            "[7,1],[8,1],[9,1]]"));
    ASSERT_NE(figure, nullptr) << log().toStdString();
    EXPECT_TRUE(logged("2 weights of the skin are of vertices beyond the 8 of the mesh and left out"));
    BoneOf(*figure, "hand")->getZRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 7), -10, 25, 0);
}

TEST_F(OddMesh, weights_for_each_axis_of_vertices_that_are_not_there_are_left_out_and_told)
{
    DzFigure* const figure = openDollOf(
        Replaced(Replaced(Figure(), R"("geometry": "#Doll-1", "vertex_count": 8,)", ""), "[7,1]]}",
                 R"([7,1]]}, "local_weights": {"x": {"values": [[7,1]]}, "z": {"values": [[7,1],[8,1]]}})"));
    ASSERT_NE(figure, nullptr) << log().toStdString();
    EXPECT_TRUE(logged("1 weight of the skin is of vertices beyond the 8 of the mesh and left out"))
        << log().toStdString();
}

TEST_F(OddMesh, a_skin_that_binds_nothing_is_told)
{
    DzFigure* const figure = openDollOf(Replaced(Replaced(Figure(), "[[0,1],[1,1],[2,1],[3,1]]", "[[8,1]]"),
                                                 "[[4,1],[5,1],[6,1],[7,1]]", "[[-1,1]]"));
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(logged("the skin Skin binds no vertex to any bone"));
    ExpectAt(VertexAt(*figure, 7), 5, 30, 0);
}

TEST_F(OddMesh, joints_without_a_bone_or_with_one_that_has_another_are_told)
{
    DzFigure* const figure = openDollOf(Replaced(
        Figure(), R"({"id": "hand", "node": "#hand", "node_weights": {"count": 4, "values": [[4,1],[5,1],)",
        R"({"id": "tail", "node": "#tail", "node_weights": [[0,1]]}, {"node_weights": [[0,1]]},
           {"id": "hand", "node": "#hand", "node_weights": [[4,1],[5,1]]},
           {"id": "hand", "node": "#hand", "node_weights": {"count": 4, "values": [)"));
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(
        logged("2 joints of the skin are for no bone of the figure and left out, such as tail and one "
               "without a name"));
    EXPECT_TRUE(logged("1 joint of the skin is for a bone that has one, and both count, such as hand"));
    BoneOf(*figure, "hand")->getZRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 5), 0, 25, 0);
    ExpectAt(VertexAt(*figure, 7), -10, 25, 0);
}

TEST_F(OddMesh, unknown_modes_of_a_skin_are_told)
{
    const dson::Document document =
        readDoll(Replaced(Figure(), R"("general_map_mode": "DualQuat")",
                          R"("general_map_mode": "Quats", "scale_mode": "Both", "binding_mode": "Glue")"));
    EXPECT_EQ(told(document), (Told{"Skin: has the unknown general_map_mode Quats, read as DualQuat",
                                    "Skin: has the unknown scale_mode Both, read as BindingMaps",
                                    "Skin: has the unknown binding_mode Glue, read as General"}));
}

TEST_F(OddMesh, a_graft_with_bad_rows_is_grafted_by_the_others)
{
    EXPECT_EQ(facesDrawnWith(R"({"vertex_count": 8, "poly_count": 3,
        "vertex_pairs": {"values": [[0,4],[1,5],[2,6],[3,7]]}, "hidden_polys": {"values": [2]}})"),
              2u + 4u);
    EXPECT_EQ(facesDrawnWith(R"({"vertex_count": 8, "poly_count": 3,
        "vertex_pairs": {"values": [[0,4],[9,1],[1,"x"],[1,5],[2,6],[3,7],[3,0]]},
        "hidden_polys": {"values": [3,2,"x"]}})"),
              2u + 4u);
    EXPECT_EQ(
        timesLogged("Patch: is grafted onto Doll without 2 pairs of vertices and 1 hidden faces that are "
                    "not there or named twice"),
        1);
    EXPECT_TRUE(logged("2 entries of the graft that are no numbers of vertices or faces, left out"));
}

TEST_F(OddMesh, a_graft_that_does_not_fit_is_told_where_people_see_it)
{
    QStringList seen;
    QObject context;
    QObject::connect(&openhost::Events(), &openhost::HostEvents::contentLeftOut, &context,
                     [&](const QString&, const QString& what) { seen.append(what); });
    facesDrawnWith(R"({"vertex_count": 9, "vertex_pairs": [[0,4]]})");
    EXPECT_EQ(seen,
              QStringList(QStringLiteral("Patch follows Doll without being grafted onto it: the graft is "
                                         "for 9 vertices but the mesh has 8")));
}

TEST_F(OddMesh, a_graft_counts_the_faces_of_the_file_that_it_is_for)
{
    write("data/Nord/Doll/Doll.dsf",
          File(Replaced(Figure(), faces,
                        R"("values": [[0,0,0,1,3,2],[0,0],[0,0,2,3,5,4],[0,0,1],[1,0,4,5,7,6]])"),
               "figure"));
    EXPECT_EQ(facesDrawnWith(R"({"vertex_count": 8, "poly_count": 5,
        "vertex_pairs": [[0,4],[1,5],[2,6],[3,7]], "hidden_polys": [3,4]})"),
              2u + 4u);
}

TEST_F(OddMesh, a_graft_of_another_kind_is_told)
{
    struct Case {
        const char *graft, *line;
    };
    const Case cases[] = {
        {R"("x")", "has a graft that is no object and is left out"},
        {"[1]", "has a graft that is no object and is left out"},
        {R"({"hidden_polys": [2]})", "has a graft that hides faces but joins no vertices; nothing is hidden"},
        {R"({"vertex_pairs": 5, "hidden_polys": "x"})",
         "2 entries of the graft that are no numbers of vertices or faces, left out"},
        {R"({"vertex_count": 9, "vertex_pairs": [[0,4]]})",
         "Patch: follows Doll without being grafted onto it: the graft is for 9 vertices but the mesh has "
         "8"}};
    for (const Case& one : cases) {
        EXPECT_EQ(facesDrawnWith(one.graft), 0u) << "drawn each alone";
        EXPECT_TRUE(logged(one.line)) << one.graft << log().toStdString();
    }
}

TEST_F(OddMesh, counts_beyond_all_meshes_are_told_and_not_checked)
{
    // 2^32 + 8, which cut to 32 bits would seem to fit.
    EXPECT_EQ(facesDrawnWith(R"({"vertex_count": 4294967304, "poly_count": 2.5,
        "vertex_pairs": [[0,4],[1,5],[2,6],[3,7]], "hidden_polys": [2]})"),
              2u + 4u);
    EXPECT_TRUE(logged("Patch-1: has a vertex_count that is no number of things and is not checked"));
    EXPECT_TRUE(logged("Patch-1: has a poly_count that is no number of things and is not checked"));
    facesDrawnWith(R"({"vertex_count": -1, "poly_count": -1, "vertex_pairs": [[0,4]]})");
    EXPECT_EQ(timesLogged("is no number of things"), 2) << "-1 says that any will do";
}
