// Meshes, figures and files for the tests of the tools.
// SPDX-License-Identifier: MIT

#include "tests/host/tools_fixture.h"

#include "dzbone.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "figure/deltas_access.h"
#include "figure/skin_access.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QFile>

using geometry::Vec3f;

namespace {

constexpr std::uint32_t sides = 8;

DzObject* MakeObject(const QString& name, geometry::PolygonMesh mesh, bool subdivides)
{
    DzFacetMesh* const facetMesh = openhost::MeshAccess::create(std::move(mesh));
    facetMesh->enableSubDivision(subdivides);
    auto* const shape = new DzFacetShape;
    shape->setName(name);
    shape->setFacetMesh(facetMesh);
    auto* const object = new DzObject;
    object->addShape(shape);
    return object;
}

} // namespace

geometry::PolygonMesh Tube(int segments)
{
    geometry::PolygonMesh mesh;
    auto topology = std::make_shared<geometry::Topology>();
    const auto rings = static_cast<std::uint32_t>(segments) + 1;
    for (std::uint32_t ring = 0; ring < rings; ++ring)
        for (std::uint32_t side = 0; side < sides; ++side) {
            const float angle = 0.3f + 6.2831853f * static_cast<float>(side) / sides;
            mesh.positions.push_back({5.0f * (static_cast<float>(ring) - 0.5f * static_cast<float>(segments)),
                                      3.0f * std::cos(angle), 3.0f * std::sin(angle)});
        }
    topology->groupNames = {"left", "right"};
    topology->surfaceNames = {"Skin"};
    for (std::uint32_t ring = 0; ring + 1 < rings; ++ring)
        for (std::uint32_t side = 0; side < sides; ++side) {
            const std::uint32_t next = (side + 1) % sides;
            topology->addFace(std::vector<std::uint32_t>{ring * sides + side, ring * sides + next,
                                                         (ring + 1) * sides + next,
                                                         (ring + 1) * sides + side});
            topology->faceGroups.push_back(2 * ring < static_cast<std::uint32_t>(segments) ? 0 : 1);
            topology->faceSurfaces.push_back(0);
        }
    topology->vertexCount = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.topology = topology;
    return mesh;
}

DzNode* AddProp(const char* label, geometry::PolygonMesh mesh)
{
    auto* const node = new DzNode;
    node->setName(QString::fromUtf8(label));
    node->setLabel(QString::fromUtf8(label));
    node->setObject(MakeObject(node->getName(), std::move(mesh), false));
    dzScene->addNode(node);
    return node;
}

TubeFigure::TubeFigure(const char* label, bool dualQuaternion, int segments, bool subdivides)
    : figure(new DzFigure), upper(new DzBone), lower(new DzBone)
{
    geometry::PolygonMesh mesh = Tube(segments);
    auto* const skin = new DzSkinBinding;
    skin->setName(QStringLiteral("SkinBinding"));
    skin->setTargetVertexCount(static_cast<int>(mesh.positions.size()));
    skin->setGeneralMapMode(dualQuaternion ? DzSkinBinding::DualQuat : DzSkinBinding::Linear);
    figure->setName(QString::fromUtf8(label));
    figure->setLabel(QString::fromUtf8(label));
    upper->setName(QStringLiteral("upper"));
    lower->setName(QStringLiteral("lower"));
    figure->addNodeChild(upper);
    upper->addNodeChild(lower);
    upper->setOrigin(DzVec3(-20, 0, 0));
    std::vector<std::uint32_t> all;
    std::vector<float> upperWeights, lowerWeights;
    for (std::uint32_t v = 0; v < mesh.positions.size(); ++v) {
        const float share = std::clamp(0.5f + mesh.positions[v].x / 20.0f, 0.0f, 1.0f);
        all.push_back(v);
        lowerWeights.push_back(share);
        upperWeights.push_back(1.0f - share);
    }
    openhost::SkinAccess::bind(*skin, *upper, all, upperWeights);
    openhost::SkinAccess::bind(*skin, *lower, all, lowerWeights);
    DzObject* const object = MakeObject(figure->getName(), std::move(mesh), subdivides);
    object->addModifier(skin);
    figure->setObject(object);
    dzScene->addNode(figure);
}

DzMorph* TubeFigure::addMorph(const char* name, std::vector<std::uint32_t> vertices,
                              std::vector<Vec3f> deltas) const
{
    auto* const morph = new DzMorph(openhost::DeltasAccess::create(
        {std::move(vertices), std::move(deltas)}, figure->getSkinBinding()->getTargetVertexCount()));
    morph->setName(QString::fromUtf8(name));
    morph->setLabel(QString::fromUtf8(name));
    figure->getObject()->addModifier(morph);
    return morph;
}

std::vector<Vec3f> WorldPositions(const DzNode& node)
{
    return openhost::MeshAccess::mesh(*node.getObject()->getCachedGeom()).positions;
}

float LargestDistance(const std::vector<Vec3f>& a, const std::vector<Vec3f>& b)
{
    if (a.size() != b.size())
        return std::numeric_limits<float>::infinity();
    float largest = 0.0f;
    for (std::size_t v = 0; v < a.size(); ++v)
        largest = std::max(largest, geometry::Length(a[v] - b[v]));
    return largest;
}

QString WritePositions(const char* name, const std::vector<Vec3f>& positions)
{
    QString text;
    for (const Vec3f p : positions)
        text += QStringLiteral("v %1 %2 %3\n")
                    .arg(double{p.x}, 0, 'f', 7)
                    .arg(double{p.y}, 0, 'f', 7)
                    .arg(double{p.z}, 0, 'f', 7);
    const QString file = TestFile(name);
    QFile stream(file);
    EXPECT_TRUE(stream.open(QIODevice::WriteOnly));
    stream.write(text.toUtf8());
    return file;
}

QString TestFile(const char* name)
{
    return TestFolder() + QLatin1Char('/') + QString::fromUtf8(name);
}

std::string FileText(const QString& file)
{
    QFile stream(file);
    return stream.open(QIODevice::ReadOnly) ? stream.readAll().toStdString() : std::string();
}
