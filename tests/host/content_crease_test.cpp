// How files say that meshes are subdivided.
// SPDX-License-Identifier: MIT

#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzintproperty.h"
#include "dzobject.h"
#include "tests/host/foreign_fixture.h"
#include "tests/host/save_fixture.h"

namespace {

using namespace doll;

/// Folded along the edge between vertices 4 and 5, which is a crease; a further crease is none.
std::string FoldedFigure()
{
    std::string figure = Figure();
    const std::string flat = "[0,20,0],[5,20,0]";
    figure.replace(figure.find(flat), flat.size(), "[0,20,8],[5,20,8]");
    return figure.insert(figure.find("\"graft\""),
                         R"("edge_weights": {"count": 2, "values": [[5,4,10],[4,99,1]]}, )");
}

/// Whether the middle of the fold stays where it is at level 1: without the crease it sinks to the faces'
/// centres.
bool IsSharp(const DzFigure& figure)
{
    auto* const shape = qobject_cast<DzFacetShape*>(figure.getObject()->getCurrentShape());
    shape->getSubDLevelControl()->setValue(1);
    const DzVertexMesh& mesh = *figure.getObject()->getCachedGeom();
    for (int v = 0; v < mesh.getNumVertices(); ++v)
        if ((mesh.getVertex(v) - DzVec3(2.5f, 20.0f, 8.0f)).length() < 1e-4f)
            return true;
    return false;
}

class Creases : public ForeignTest {
protected:
    DzFigure* open(const std::string& figure)
    {
        write("data/Nord/Doll/Doll.dsf", File(figure, "figure"));
        return openDoll();
    }
};

class SavedCreases : public SaveTest {};

} // namespace

TEST_F(Creases, of_files_stay_sharp_and_odd_ones_are_told)
{
    const DzFigure* const figure = open(FoldedFigure());
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(IsSharp(*figure));
    EXPECT_TRUE(logged("Doll-1: 1 crease is not two vertices of the mesh and a sharpness and left out"))
        << log().toStdString();
}

TEST_F(Creases, are_only_where_files_say_so)
{
    std::string figure = FoldedFigure();
    figure.replace(figure.find("[5,4,10]"), 8, "[5,4,0]");
    const DzFigure* const loaded = open(figure);
    ASSERT_NE(loaded, nullptr);
    EXPECT_FALSE(IsSharp(*loaded));
}

TEST_F(Creases, go_with_a_warning_where_another_scheme_is_asked_for)
{
    std::string figure = Figure();
    figure.insert(figure.find(R"({"channel": {"id": "SubDIALevel")"),
                  R"({"channel": {"id": "SubDAlgorithmControl", "type": "enum", "value": 2}}, )");
    ASSERT_NE(open(figure), nullptr);
    EXPECT_TRUE(logged("Doll-1: is to be subdivided by Loop's scheme; that of Catmull and Clark is used"))
        << log().toStdString();
}

TEST_F(Creases, go_with_a_warning_where_a_scene_asks_for_another_scheme)
{
    write("data/Nord/Doll/Doll.dsf", File(Figure(), "figure"));
    const auto loadWith = [this](const char* scheme) {
        std::string instance = Instance();
        instance.insert(instance.find("}]}"),
                        R"(, "extra": [{"type": "studio_geometry_channels", "channels": [{"channel":
                            {"id": "SubDAlgorithmControl", "type": "enum", "current_value": )" +
                            std::string(scheme) + "}}]}]");
        EXPECT_TRUE(load("People/Doll.duf", Scene(instance, "", "character")));
    };
    loadWith("0");
    loadWith("3"); // Catmull and Clark's as well
    EXPECT_EQ(timesLogged("to be subdivided by"), 0) << log().toStdString();
    loadWith("1");
    EXPECT_TRUE(
        logged("Doll-1: is to be subdivided by the bilinear scheme; that of Catmull and Clark is used"));
    loadWith("2");
    EXPECT_TRUE(logged("Doll-1: is to be subdivided by Loop's scheme; that of Catmull and Clark is used"));
    loadWith("9");
    EXPECT_TRUE(
        logged("Doll-1: is to be subdivided by the unknown scheme 9; that of Catmull and Clark is used"))
        << log().toStdString();
    EXPECT_EQ(timesLogged("to be subdivided by"), 3);
}

TEST_F(Creases, of_several_meshes_go_with_one_warning)
{
    std::string scene = Instance() + ", " + Instance("-b");
    for (std::size_t at = 0; (at = scene.find("}]}", at)) != scene.npos; at += 60)
        scene.insert(at, R"(, "edge_interpolation_mode": "edges_at_random")");
    write("data/Nord/Doll/Doll.dsf", File(Figure(), "figure"));
    ASSERT_TRUE(load("Scenes/Two.duf", Scene(scene)));
    EXPECT_TRUE(
        logged("2 meshes are to be subdivided with the border \"edges_at_random\", which is unknown and "
               "has no effect, such as Doll-1"))
        << log().toStdString();
}

TEST_F(Creases, of_borders_treated_in_an_unknown_way_are_told_of_definitions)
{
    std::string figure = Figure();
    figure.insert(figure.find("\"graft\""), R"("edge_interpolation_mode": "edges_at_random", )");
    ASSERT_NE(open(figure), nullptr);
    EXPECT_TRUE(
        logged("Doll-1: is to be subdivided with the border \"edges_at_random\", which is unknown and "
               "has no effect"))
        << log().toStdString();
}

TEST_F(Creases, border_corners_are_as_the_figure_in_the_scene_says)
{
    write("data/Nord/Doll/Doll.dsf", File(Figure(), "figure"));
    const auto corner = [&](const std::string& geometry) {
        std::string instance = Instance();
        instance.insert(instance.find("}]}"), geometry);
        EXPECT_TRUE(load("People/Doll.duf", Scene(instance, "", "character")));
        auto* const figure = qobject_cast<DzFigure*>(dzScene->getPrimarySelection());
        qobject_cast<DzFacetShape*>(figure->getObject()->getCurrentShape())
            ->getSubDLevelControl()
            ->setValue(1);
        const DzVertexMesh& mesh = *figure->getObject()->getCachedGeom();
        float nearest = 1e9f;
        for (int v = 0; v < mesh.getNumVertices(); ++v)
            nearest = std::min(nearest, float(mesh.getVertex(v).length()));
        return nearest;
    };
    EXPECT_FLOAT_EQ(corner(R"(, "edge_interpolation_mode": "edges_and_corners")"), 0.0f);
    EXPECT_GT(corner(R"(, "edge_interpolation_mode": "edges_only")"), 0.5f);
    const std::string setting = R"(, "edge_interpolation_mode": "edges_only", "extra": [{"type":
        "studio_geometry_channels", "channels": [{"channel": {"id": "SubDEdgeInterpolateLevel", "type": "enum",
        "current_value": 1}}]}])";
    EXPECT_FLOAT_EQ(corner(setting), 0.0f);
    EXPECT_FLOAT_EQ(corner(""), corner(R"(, "edge_interpolation_mode": "edges_at_random")"))
        << "as its definition says";
    EXPECT_TRUE(
        logged("Doll-1: is to be subdivided with the border \"edges_at_random\", which is unknown and "
               "has no effect"))
        << log().toStdString();
    const std::string unknown = R"(, "edge_interpolation_mode": "edges_and_corners", "extra": [{"type":
        "studio_geometry_channels", "channels": [{"channel": {"id": "SubDEdgeInterpolateLevel", "type": "enum",
        "current_value": 7}}]}])";
    EXPECT_FLOAT_EQ(corner(unknown), 0.0f);
    EXPECT_TRUE(logged("Doll-1: is to be subdivided with the border setting 7, which is unknown and has no "
                       "effect"))
        << log().toStdString();
}

TEST_F(Creases, stay_when_the_scene_treats_the_border_otherwise)
{
    write("data/Nord/Doll/Doll.dsf", File(FoldedFigure(), "figure"));
    std::string instance = Instance();
    instance.insert(instance.find("}]}"), R"(, "edge_interpolation_mode": "edges_and_corners")");
    ASSERT_TRUE(load("People/Doll.duf", Scene(instance, "", "character")));
    EXPECT_TRUE(IsSharp(*qobject_cast<DzFigure*>(dzScene->getPrimarySelection())));
}

TEST_F(SavedCreases, come_back)
{
    WriteBytes(
        _library / "Scenes/Own.duf",
        File(FoldedFigure() + R"(, "scene": {"nodes": [{"id": "Doll-i", "url": "#Doll", "label": "Doll",
            "geometries": [{"id": "Doll-i-g", "url": "#Doll-1"}]}]})",
             "scene"));
    ASSERT_TRUE(open(_library / "Scenes/Own.duf")) << log().toStdString();
    ASSERT_EQ(save("DzSceneAssetFilter", file("Again.duf")), 0) << log().toStdString();
    ASSERT_TRUE(reload(file("Again.duf")));
    const auto* const figure = qobject_cast<DzFigure*>(dzScene->findNodeByLabel(QStringLiteral("Doll")));
    ASSERT_NE(figure, nullptr);
    EXPECT_TRUE(IsSharp(*figure));
}
