// From dials to the mesh in the world.
// SPDX-License-Identifier: MIT

#include "base/errors.h"
#include "dzbone.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzenumproperty.h"
#include "dzerclink.h"
#include "dzfacegroup.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzpropertygrouptree.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/pipeline.h"
#include "figure/skin_access.h"
#include "tests/host/host_fixture.h"

#include <QPointer>

using geometry::Vec3f;

namespace {

QString Q(const char* text)
{
    return QString::fromUtf8(text);
}

/// A row of quads along X: vertices 2i at (10 i, 0, 0) and 2i + 1 at (10 i, 10, 0).
geometry::PolygonMesh Strip(int quads)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    for (int i = 0; i <= quads; ++i) {
        mesh.positions.push_back({10.0f * float(i), 0.0f, 0.0f});
        mesh.positions.push_back({10.0f * float(i), 10.0f, 0.0f});
    }
    for (std::uint32_t i = 0; i < std::uint32_t(quads); ++i)
        topology->addFace(std::vector<std::uint32_t>{2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
    topology->vertexCount = std::uint32_t(mesh.positions.size());
    topology->groupNames = {"left", "right"};
    for (int i = 0; i < quads; ++i)
        topology->faceGroups.push_back(i < quads / 2 ? 0 : 1);
    mesh.topology = topology;
    return mesh;
}

/// Figure "Strip" with bones upper (at x = 0) and lower (at x = 20), which holds the vertices from x = 20 on.
struct TestFigure {
    DzFigure* figure = new DzFigure;
    DzBone* upper = new DzBone;
    DzBone* lower = new DzBone;
    DzSkinBinding* skin = new DzSkinBinding;
    DzFacetShape* shape = new DzFacetShape;
    DzObject* object = new DzObject;

    explicit TestFigure(DzSkinBinding::MapMode mode = DzSkinBinding::DualQuat, bool subdivides = false)
    {
        figure->setName(Q("Strip"));
        upper->setName(Q("upper"));
        lower->setName(Q("lower"));
        figure->addNodeChild(upper);
        upper->addNodeChild(lower);
        lower->setOrigin(DzVec3(20, 0, 0));
        lower->setInheritsScale(false);
        DzFacetMesh* const mesh = openhost::MeshAccess::create(Strip(4));
        mesh->enableSubDivision(subdivides);
        shape->setFacetMesh(mesh);
        object->addShape(shape);
        skin->setTargetVertexCount(10);
        skin->setGeneralMapMode(mode);
        openhost::SkinAccess::bind(*skin, *upper, {0, 1, 2, 3}, {1, 1, 1, 1});
        openhost::SkinAccess::bind(*skin, *lower, {4, 5, 6, 7, 8, 9}, {1, 1, 1, 1, 1, 1});
        object->addModifier(skin);
        figure->setObject(object);
        dzScene->addNode(figure);
    }
    DzMorph* addMorph(const char* name, std::vector<std::uint32_t> vertices, std::vector<Vec3f> deltas)
    {
        auto* const morph =
            new DzMorph(openhost::DeltasAccess::create({std::move(vertices), std::move(deltas)}, 10));
        morph->setName(Q(name));
        object->addModifier(morph);
        return morph;
    }
    DzVec3 at(int vertex) const { return object->getCachedGeom()->getVertex(vertex); }
};

void ExpectAt(const DzVec3& a, float x, float y, float z)
{
    EXPECT_NEAR(a.m_x, x, 1e-4);
    EXPECT_NEAR(a.m_y, y, 1e-4);
    EXPECT_NEAR(a.m_z, z, 1e-4);
}

class FigurePipeline : public HostTest {};

} // namespace

TEST_F(FigurePipeline, at_rest_positions_are_the_base_mesh_to_the_bit)
{
    TestFigure test;
    const auto& base = openhost::MeshAccess::mesh(*test.shape->getFacetMesh()).positions;
    const auto& world = openhost::MeshAccess::mesh(*test.object->getCachedGeom()).positions;
    ASSERT_EQ(world.size(), base.size());
    for (std::size_t i = 0; i < base.size(); ++i)
        EXPECT_EQ(world[i], base[i]);
}

TEST_F(FigurePipeline, sees_each_turn_of_a_joint_and_each_change_of_the_bones)
{
    TestFigure test;
    ExpectAt(test.at(9), 40, 10, 0);
    test.lower->getZRotControl()->setValue(90.0f);
    ExpectAt(test.at(9), 10, 20, 0);
    test.lower->getZRotControl()->setValue(180.0f);
    test.upper->getYPosControl()->setValue(5.0f);
    ExpectAt(test.at(9), 0, -5, 0);
    test.lower->setName(Q("renamed"));
    test.upper->getYPosControl()->setValue(0.0f);
    ExpectAt(test.at(9), 0, -10, 0);
    test.lower->getZRotControl()->setValue(0.0f);
    ExpectAt(test.at(9), 40, 10, 0);
    // A part that was turned elsewhere comes below the figure's bones, and is turned again there.
    auto* const finger = new DzBone;
    finger->getZRotControl()->setValue(30.0f);
    test.lower->addNodeChild(finger);
    ExpectAt(test.at(9), 40, 10, 0);
    openhost::SkinAccess::bind(*test.skin, *finger, {9}, {1});
    finger->getZRotControl()->setValue(90.0f);
    EXPECT_NE(test.at(9).m_x, 40.0f);
}

TEST_F(FigurePipeline, morphs_add_value_times_delta_and_leave_no_trace_at_zero)
{
    TestFigure test;
    DzMorph* const up = test.addMorph("up", {1, 3}, {{0, 0.3f, 0}, {0, 0.7f, 0}});
    DzMorph* const out = test.addMorph("out", {3}, {{0, 0.1f, 5}});
    up->getValueControl()->setValue(0.5f);
    out->getValueControl()->setValue(0.3f);
    ExpectAt(test.at(1), 0, 10.15f, 0);
    ExpectAt(test.at(3), 10, 10.38f, 1.5f);
    for (int i = 0; i < 1000; ++i) {
        up->getValueControl()->setValue(float(i % 10) / 9.0f);
        test.object->getCachedGeom();
    }
    up->getValueControl()->setValue(0.0f);
    out->getValueControl()->setValue(0.0f);
    EXPECT_EQ(test.at(1), DzVec3(0, 10, 0));
    EXPECT_EQ(test.at(3), DzVec3(10, 10, 0));
}

TEST_F(FigurePipeline, many_dials_in_any_order_give_the_same_sum)
{
    TestFigure test;
    std::vector<DzMorph*> morphs;
    for (std::uint32_t i = 0; i < 9; ++i)
        morphs.push_back(
            test.addMorph(("m" + std::to_string(i)).c_str(), {i, 9}, {{float(i), 1, 0}, {1, 2, 4}}));
    morphs.push_back(test.addMorph("m9", {9}, {{1, 2, 4}}));
    for (std::size_t step : {3u, 7u, 9u, 1u}) {
        for (std::size_t i = 0; i < morphs.size(); ++i) {
            morphs[i * step % 10]->getValueControl()->setValue(i % 2 ? 1.0f : 0.5f);
            test.object->getCachedGeom();
        }
    }
    float sum = 0.0f;
    for (DzMorph* morph : morphs)
        sum += morph->getValueControl()->getValue();
    ExpectAt(test.at(9), 40 + sum, 10 + 2 * sum, 4 * sum);
}

TEST_F(FigurePipeline, the_skin_turns_vertices_about_their_joint)
{
    for (const auto mode : {DzSkinBinding::Linear, DzSkinBinding::DualQuat}) {
        TestFigure test(mode);
        test.lower->getZRotControl()->setValue(90.0f);
        ExpectAt(test.at(3), 10, 10, 0);
        ExpectAt(test.at(4), 20, 0, 0);
        ExpectAt(test.at(9), 10, 20, 0);
        test.upper->getYPosControl()->setValue(5.0f);
        ExpectAt(test.at(9), 10, 25, 0);
        test.lower->getZRotControl()->setValue(0.0f);
        test.upper->getYPosControl()->setValue(0.0f);
        EXPECT_EQ(test.at(9), DzVec3(40, 10, 0));
    }
}

TEST_F(FigurePipeline, formulas_move_joints)
{
    TestFigure test;
    DzMorph* const longer =
        test.addMorph("longer", {4, 5, 6, 7, 8, 9},
                      {{10, 0, 0}, {10, 0, 0}, {10, 0, 0}, {10, 0, 0}, {10, 0, 0}, {10, 0, 0}});
    test.lower->getOriginXControl()->insertController(new DzERCLink(longer->getValueControl(), 10.0, 0.0));
    longer->getValueControl()->setValue(1.0f);
    ExpectAt(test.lower->getOrigin(), 30, 0, 0);
    ExpectAt(test.lower->getOrigin(true), 20, 0, 0);
    EXPECT_EQ(test.at(9), DzVec3(50, 10, 0)); // at rest the joint does not matter
    test.lower->getZRotControl()->setValue(90.0f);
    ExpectAt(test.at(4), 30, 0, 0);
    ExpectAt(test.at(8), 30, 20, 0);
    ExpectAt(test.lower->getWSPos(), 30, 0, 0);
}

TEST_F(FigurePipeline, a_rotation_drives_a_corrective)
{
    TestFigure test;
    DzMorph* const bulge = test.addMorph("bulge", {0}, {{0, 0, 3}});
    bulge->getValueControl()->insertController(new DzERCLink(test.lower->getZRotControl(), 0.01, 0.0));
    ExpectAt(test.at(0), 0, 0, 0);
    test.lower->getZRotControl()->setValue(50.0f);
    ExpectAt(test.at(0), 0, 0, 1.5f);
}

TEST_F(FigurePipeline, the_nodes_place_moves_the_box)
{
    TestFigure test;
    EXPECT_EQ(test.figure->getWSBoundingBox().getMax(), DzVec3(40, 10, 0));
    test.figure->getYPosControl()->setValue(3.0f);
    test.figure->getScaleControl()->setValue(2.0f);
    const DzBox3 box = test.figure->getWSBoundingBox();
    ExpectAt(box.getMin(), 0, 3, 0);
    ExpectAt(box.getMax(), 80, 23, 0);
    ExpectAt(test.figure->getLocalBoundingBox().getMax(), 80, 20, 0);
    EXPECT_FALSE(test.upper->getWSBoundingBox().isValid());
}

TEST_F(FigurePipeline, resolution_follows_the_two_properties)
{
    TestFigure test(DzSkinBinding::DualQuat, true);
    ASSERT_NE(test.shape->getLODControl(), nullptr);
    EXPECT_EQ(test.shape->getLODControl()->getStringValue(), Q("High Resolution"));
    const auto* mesh = qobject_cast<DzFacetMesh*>(test.object->getCachedGeom());
    EXPECT_EQ(mesh->getCurrentSubDivisionLevel(), 1);
    EXPECT_EQ(mesh->getNumPolygons(), 16);
    test.shape->getSubDLevelControl()->setValue(2);
    EXPECT_EQ(test.object->getCachedGeom()->getNumVertices(), 17 * 5);
    test.shape->getLODControl()->setValue(0);
    EXPECT_EQ(test.object->getCachedGeom()->getNumVertices(), 10);
    EXPECT_EQ(test.shape->getSubDDrawLevel(), 0);
    DzIntProperty* const level = test.shape->getSubDLevelControl();
    level->setValue(9);
    EXPECT_EQ(level->getValue(), 5);
    level->setMax(7);
    level->setValue(6);
    EXPECT_EQ(level->getValue(), 6);
    EXPECT_EQ(TestFigure().shape->getLODControl(), nullptr);
}

TEST_F(FigurePipeline, a_shape_lives_without_the_properties_of_its_resolution)
{
    for (const bool levelFirst : {true, false}) {
        TestFigure test(DzSkinBinding::DualQuat, true);
        DzFacetShape& shape = *test.shape;
        EXPECT_EQ(test.object->getCachedGeom()->getNumVertices(), 9 * 3);
        DzProperty* const first =
            levelFirst ? static_cast<DzProperty*>(shape.getSubDLevelControl()) : shape.getLODControl();
        ASSERT_EQ(shape.removeProperty(first), DZ_NO_ERROR);
        EXPECT_EQ(shape.getSubDLevelControl() == nullptr, levelFirst);
        EXPECT_EQ(shape.getLODControl() == nullptr, !levelFirst);
        EXPECT_EQ(shape.getSubDDrawLevel(), 0);
        EXPECT_EQ(test.object->getCachedGeom()->getNumVertices(), 10);
        shape.enableSubDivision(true);
        EXPECT_EQ(shape.getNumProperties(), 2) << "it is subdivided already";
        shape.enableSubDivision(false);
        EXPECT_EQ(shape.getNumProperties(), 0);
        shape.enableSubDivision(true);
        EXPECT_EQ(shape.getSubDDrawLevel(), 1);
    }
}

TEST_F(FigurePipeline, stages_are_offered_to_tools)
{
    TestFigure test;
    DzMorph* const morph = test.addMorph("m", {8}, {{0, 0, 1}});
    morph->getValueControl()->setValue(1.0f);
    test.lower->getZRotControl()->setValue(90.0f);
    test.figure->getXPosControl()->setValue(100.0f);
    openhost::Pipeline& pipeline = test.object->pipeline();
    EXPECT_EQ(pipeline.morphedCage()[8], (Vec3f{40, 0, 1}));
    ExpectAt(openhost::ToDz(pipeline.posedCage()[8]), 20, 20, 1);
    ExpectAt(openhost::ToDz(pipeline.worldCage()[8]), 120, 20, 1);
    const openhost::SkinPose pose = pipeline.skinPose();
    EXPECT_FALSE(pose.atRest);
    const auto rest = geometry::Unskin(pipeline.posedCage(), *pose.weights, pose.poses, pose.blend);
    ExpectAt(openhost::ToDz(rest[8]), 40, 0, 1);
}

TEST_F(FigurePipeline, morph_data_is_read_when_a_dial_moves)
{
    TestFigure test;
    int reads = 0;
    auto* const morph = new DzMorph;
    openhost::DeltasAccess::setLoader(*morph->getDeltas(), [&reads](base::Diagnostics&) {
        ++reads;
        return geometry::SparseDeltas{{2}, {{0, 0, 2}}};
    });
    test.object->addModifier(morph);
    ExpectAt(test.at(2), 10, 0, 0);
    EXPECT_EQ(reads, 0);
    morph->getValueControl()->setValue(1.0f);
    ExpectAt(test.at(2), 10, 0, 2);
    morph->getValueControl()->setValue(0.5f);
    ExpectAt(test.at(2), 10, 0, 1);
    EXPECT_EQ(reads, 1);
    morph->getDeltas()->unLoadDeltas();
    EXPECT_EQ(morph->getDeltas()->getNumDeltas(), 1);
    EXPECT_EQ(reads, 2);
}

TEST_F(FigurePipeline, morph_data_that_was_changed_is_not_let_go_of)
{
    const std::function<void(DzMorphDeltas&)> changes[] = {
        [](DzMorphDeltas& deltas) { deltas.addDelta(3, DzVec3(0, 1, 0)); },
        [](DzMorphDeltas& deltas) { deltas.setDelta(0, DzVec3(0, 1, 0)); },
        [](DzMorphDeltas& deltas) { deltas.removeVertex(2); }};
    for (const auto& change : changes) {
        const DzMorphDeltasPtr deltas(new DzMorphDeltas);
        openhost::DeltasAccess::setLoader(*deltas, [](base::Diagnostics&) {
            return geometry::SparseDeltas{{2}, {{0, 0, 2}}};
        });
        change(*deltas);
        const geometry::SparseDeltas before = openhost::DeltasAccess::deltas(*deltas);
        EXPECT_TRUE(before.vertices != std::vector<std::uint32_t>{2} || before.deltas[0].y == 1.0f);
        deltas->unLoadDeltas();
        EXPECT_EQ(openhost::DeltasAccess::deltas(*deltas).vertices, before.vertices);
        EXPECT_EQ(openhost::DeltasAccess::deltas(*deltas).deltas, before.deltas);
    }
}

TEST_F(FigurePipeline, data_that_does_not_fit_or_cannot_be_read_is_left_out_and_logged)
{
    TestFigure test;
    test.addMorph("alien", {99}, {{0, 0, 2}})->getValueControl()->setValue(1.0f);
    DzMorph* const lost = test.addMorph("lost", {}, {});
    lost->getDeltas()->setUri(DzUri(Q("/data/lost.dsf#lost")));
    openhost::DeltasAccess::setLoader(*lost->getDeltas(), [](base::Diagnostics&) -> geometry::SparseDeltas {
        throw base::IoError("cannot open {}", "lost.dsf");
    });
    lost->getValueControl()->setValue(1.0f);
    EXPECT_EQ(test.at(9), DzVec3(40, 10, 0));
    EXPECT_TRUE(LogText().contains(Q("alien: the morph moves vertex 99 of a mesh with 10; it is left out")));
    EXPECT_TRUE(
        LogText().contains(Q("WARNING: /data/lost.dsf: lost: cannot load the deltas: cannot open lost.dsf")));
    EXPECT_FALSE(lost->getDeltas()->loadDeltas() && lost->getDeltas()->hasDeltas());
}

TEST_F(FigurePipeline, changed_deltas_and_removed_morphs_take_effect)
{
    TestFigure test;
    DzMorph* const morph = test.addMorph("m", {2}, {{0, 0, 2}});
    morph->getValueControl()->setValue(1.0f);
    ExpectAt(test.at(2), 10, 0, 2);
    morph->getDeltas()->addDelta(2, DzVec3(0, 0, 7));
    ExpectAt(test.at(2), 10, 0, 7);
    morph->setDeltas(openhost::DeltasAccess::create({{2}, {{0, 0, 1}}}, 10));
    ExpectAt(test.at(2), 10, 0, 1);
    QPointer<DzMorph> watched(morph);
    test.object->removeModifier(morph);
    EXPECT_TRUE(watched.isNull());
    ExpectAt(test.at(2), 10, 0, 0);
}

TEST_F(FigurePipeline, morphs_stand_before_the_skin_and_are_found_by_name)
{
    TestFigure test;
    DzMorph* const first = test.addMorph("same", {0}, {{0, 0, 1}});
    DzMorph* const second = test.addMorph("same", {0}, {{0, 0, 1}});
    EXPECT_EQ(test.object->getModifier(2), test.skin);
    EXPECT_EQ(test.figure->getSkinBinding(), test.skin);
    EXPECT_EQ(test.object->findModifier(Q("same")), first);
    first->setName(Q("other"));
    EXPECT_EQ(test.object->findModifier(Q("same")), second);
    EXPECT_EQ(test.object->findModifier(Q("other")), first);
    EXPECT_EQ(first->getNumProperties(), 1);
    EXPECT_EQ(first->getProperty(0)->getName(), Q("Value"));
    first->getValueControl()->setPath(Q("/Actor/Head/Own"));
    EXPECT_TRUE(test.figure->getPropertyGroups()->getAllPaths().contains(Q("/Actor/Head/Own")));
    Recorder recorder;
    recorder.refused = openhost::Operation::AddMorph;
    DzMorph refused;
    EXPECT_EQ(test.object->addModifier(&refused), DZ_OPERATION_FAILED_ERROR);
}

TEST_F(FigurePipeline, a_d_former_takes_its_modifiers_with_it)
{
    TestFigure test;
    auto* const former = new DzDForm;
    former->setName(Q("D-Former_1"));
    dzScene->addNode(former);
    DzDFormModifier* const modifier = former->applyToNode(test.figure);
    ASSERT_NE(modifier, nullptr);
    modifier->setInfluenceWeights(new DzWeightMap(10, Q("Influence Weights")));
    EXPECT_EQ(former->applyToNode(test.figure), modifier);
    EXPECT_EQ(test.object->findModifier(Q("D-Former_1")), modifier);
    EXPECT_EQ(former->getModifierForNode(test.figure), modifier);
    dzScene->removeNode(former);
    EXPECT_EQ(test.object->findModifier(Q("D-Former_1")), nullptr);
}

TEST_F(FigurePipeline, facets_and_groups_are_those_of_the_mesh)
{
    TestFigure test;
    const DzFacetMesh* const mesh = test.shape->getFacetMesh();
    ASSERT_EQ(mesh->getNumFacets(), 4);
    EXPECT_EQ(mesh->getFacet(1).m_vertIdx[3], 3);
    EXPECT_EQ(mesh->getFacet(3).m_faceGroup, 1);
    ASSERT_NE(mesh->findFaceGroup(Q("right")), nullptr);
    EXPECT_EQ(mesh->findFaceGroup(Q("right"))->count(), 2);
    EXPECT_EQ(mesh->findFaceGroup(Q("right"))->getIndex(0), 2);
    DzFacetMesh pentagon;
    pentagon.setVertexArray(5);
    const int bad[4] = {0, 1, 5, -1};
    EXPECT_FALSE(pentagon.addFacet(bad));
    geometry::PolygonMesh five;
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = 5;
    topology->addFace(std::vector<std::uint32_t>{0, 1, 2, 3, 4});
    five.topology = topology;
    five.positions.resize(5);
    openhost::MeshAccess::assign(pentagon, five, 0);
    ASSERT_EQ(pentagon.getNumFacets(), 2);
    EXPECT_EQ(pentagon.getFacet(0).m_vertIdx[3], 3);
    EXPECT_EQ(pentagon.getFacet(1).m_vertIdx[2], 4);
    EXPECT_EQ(pentagon.getFacet(1).m_vertIdx[3], -1);
}
