// Dials, poses and levels of a figure with ten thousand morphs.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzintproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzscene.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/mesh_access.h"
#include "figure/skin_access.h"
#include "openhost/openhost.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace {

constexpr std::uint32_t side = 160; // 25,600 vertices
constexpr int morphCount = 10000;
constexpr int activeMorphs = 20;
constexpr int boneCount = 140;

geometry::PolygonMesh Sheet()
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    for (std::uint32_t y = 0; y < side; ++y) {
        for (std::uint32_t x = 0; x < side; ++x)
            mesh.positions.push_back({float(x), float(y), 0.0f});
    }
    for (std::uint32_t y = 0; y + 1 < side; ++y) {
        for (std::uint32_t x = 0; x + 1 < side; ++x) {
            const std::uint32_t v = y * side + x;
            topology->addFace(std::vector<std::uint32_t>{v, v + 1, v + side + 1, v + side});
        }
    }
    topology->vertexCount = side * side;
    mesh.topology = topology;
    return mesh;
}

struct BenchFigure {
    DzFigure* figure = new DzFigure;
    DzObject* object = new DzObject;
    DzFacetShape* shape = new DzFacetShape;
    std::vector<DzMorph*> morphs;
    std::vector<DzBone*> bones;

    BenchFigure()
    {
        DzFacetMesh* const mesh = openhost::MeshAccess::create(Sheet());
        mesh->enableSubDivision(true);
        shape->setFacetMesh(mesh);
        shape->getSubDLevelControl()->setValue(0);
        object->addShape(shape);
        addBones();
        addMorphs();
        figure->setObject(object);
        dzScene->addNode(figure);
    }
    ~BenchFigure()
    {
        dzScene->removeNode(figure);
        dzScene->purgeRemoved();
    }
    void addBones()
    {
        auto* const skin = new DzSkinBinding;
        skin->setTargetVertexCount(side * side);
        for (int i = 0; i < boneCount; ++i) {
            auto* const bone = new DzBone;
            (bones.empty() ? static_cast<DzNode*>(figure) : bones[std::size_t(i) / 2])->addNodeChild(bone);
            bones.push_back(bone);
            std::vector<std::uint32_t> vertices;
            for (std::uint32_t v = std::uint32_t(i); v < side * side; v += boneCount / 4)
                vertices.push_back(v);
            openhost::SkinAccess::bind(*skin, *bone, vertices, std::vector<float>(vertices.size(), 0.25f));
        }
        object->addModifier(skin);
    }
    void addMorphs()
    {
        auto deltas = std::make_shared<geometry::SparseDeltas>();
        for (std::uint32_t v = 0; v < side * side; ++v) {
            deltas->vertices.push_back(v);
            deltas->deltas.push_back({0.0f, 0.0f, 0.001f * float(v % 97)});
        }
        for (int i = 0; i < morphCount; ++i) {
            auto* const morph = new DzMorph;
            morph->setName(QStringLiteral("morph %1").arg(i));
            openhost::DeltasAccess::setLoader(*morph->getDeltas(),
                                              [deltas](base::Diagnostics&) { return *deltas; });
            object->addModifier(morph);
            morphs.push_back(morph);
        }
        for (std::size_t i = 0; i < activeMorphs; ++i)
            morphs[i * 7]->getValueControl()->setValue(0.5f);
    }
    void turn(benchmark::State& state, DzFloatProperty* property)
    {
        object->getCachedGeom();
        float value = 0.0f;
        for (auto _ : state) {
            value = value > 0.9f ? 0.1f : value + 0.01f;
            property->setValue(value);
            benchmark::DoNotOptimize(object->getCachedGeom());
        }
    }
};

void OneDialAtRest(benchmark::State& state)
{
    BenchFigure figure;
    figure.turn(state, figure.morphs[5000]->getValueControl());
}
BENCHMARK(OneDialAtRest)->Unit(benchmark::kMillisecond);

void OneDialInAPose(benchmark::State& state)
{
    BenchFigure figure;
    figure.bones[9]->getXRotControl()->setValue(20.0f);
    figure.turn(state, figure.morphs[5000]->getValueControl());
}
BENCHMARK(OneDialInAPose)->Unit(benchmark::kMillisecond);

void OneJoint(benchmark::State& state)
{
    BenchFigure figure;
    figure.turn(state, figure.bones[9]->getXRotControl());
}
BENCHMARK(OneJoint)->Unit(benchmark::kMillisecond);

void OneDialAtLevelTwo(benchmark::State& state)
{
    BenchFigure figure;
    figure.shape->getSubDLevelControl()->setValue(2);
    figure.turn(state, figure.morphs[5000]->getValueControl());
}
BENCHMARK(OneDialAtLevelTwo)->Unit(benchmark::kMillisecond);

void MakeTenThousandMorphs(benchmark::State& state)
{
    for (auto _ : state) {
        DzObject object;
        for (int i = 0; i < morphCount; ++i) {
            auto* const morph = new DzMorph;
            morph->setName(QStringLiteral("morph %1").arg(i));
            morph->getValueControl()->setPath(QStringLiteral("/Actor/%1").arg(i % 50));
            object.addModifier(morph);
        }
        benchmark::DoNotOptimize(object.findModifier(QStringLiteral("morph 9999")));
    }
}
BENCHMARK(MakeTenThousandMorphs)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir folder;
    openhost::OpenHost::Options options;
    options.settingsFolder = folder.path();
    openhost::OpenHost host(argc, argv, options);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
