// A scene with one of everything that files keep.
// SPDX-License-Identifier: MIT

#include "tests/host/save_fixture.h"

#include "dzassetiomgr.h"
#include "dzbone.h"
#include "dzerclink.h"
#include "dzfacetmesh.h"
#include "dzfacetshape.h"
#include "dzfigure.h"
#include "dzfileiosettings.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "figure/deltas_access.h"
#include "figure/fitting.h"
#include "figure/mesh_access.h"
#include "tests/host/foreign_fixture.h"
#include "tools/transfer_utility.h"

#include <QRegularExpression>

namespace fs = std::filesystem;

namespace {

geometry::PolygonMesh PropMesh(bool withPentagon)
{
    geometry::PolygonMesh mesh;
    mesh.positions = {{0, 0, 0}, {0.1f, 0, 0}, {1.0f / 3, 2, 0}, {-1, 3, 0}, {-2, 1, 0}, {5, 5, -0.7f}};
    auto topology = std::make_shared<geometry::Topology>();
    topology->vertexCount = 6;
    topology->groupNames = {"five", "three"};
    topology->surfaceNames = {"Cloth"};
    if (withPentagon)
        topology->addFace(std::vector<std::uint32_t>{0, 1, 2, 3, 4});
    else
        topology->addFace(std::vector<std::uint32_t>{0, 1, 2, 3});
    topology->addFace(std::vector<std::uint32_t>{2, 1, 5});
    topology->faceGroups = {0, 1};
    topology->faceSurfaces = {0, 0};
    mesh.topology = topology;
    return mesh;
}

void Enter(DzNode* node, DzNode* parent)
{
    if (parent)
        parent->addNodeChild(node);
    else
        dzScene->addNode(node);
}

} // namespace

void SaveTest::SetUp()
{
    LibraryTest::SetUp();
    mini::WriteMorph(mini::Morph("Up", 1, {0, 2, 0}), _library);
    dson::Modifier control = mini::Control("Bend");
    control.presentationType = "Modifier/Pose";
    control.formulas = {dson::MakeDeltaAdd(mini::NodeChannel("arm", "rotation/z"), mini::Dial("Bend"), 40.0)};
    mini::WriteMorph(control, _library);
}

DzNode* SaveTest::makeProp(const char* name, DzNode* parent, bool withPentagon)
{
    auto* const shape = new DzFacetShape;
    shape->setName(QString::fromUtf8(name));
    shape->setFacetMesh(openhost::MeshAccess::create(PropMesh(withPentagon)));
    auto* const object = new DzObject;
    object->addShape(shape);
    auto* const node = new DzNode;
    node->setName(QString::fromUtf8(name));
    node->setLabel(QString::fromUtf8(name));
    node->setObject(object);
    Enter(node, parent);
    return node;
}

DzMorph* SaveTest::addMorph(const DzNode& node, const char* name, geometry::SparseDeltas deltas)
{
    auto* const morph = new DzMorph(openhost::DeltasAccess::create(std::move(deltas), mini::vertexCount));
    morph->setName(QString::fromUtf8(name));
    morph->setLabel(QString::fromUtf8(name) + QStringLiteral(" \"label\""));
    DzFloatProperty& dial = *morph->getValueControl();
    dial.setPath(QString::fromUtf8("/Actor/Mine/\xC3\x84"));
    dial.setRegion(QStringLiteral("Head"));
    dial.setMinMax(-2.5f, 3.0f);
    dial.setIsClamped(false);
    node.getObject()->addModifier(morph);
    return morph;
}

DzFigure* SaveTest::makeGarment(DzFigure& wearer, const char* name)
{
    DzNode* const prop = makeProp(name);
    prop->getYPosControl()->setValue(1.0f);
    DzTransferUtility transfer;
    transfer.setSource(&wearer);
    transfer.setTarget(prop);
    transfer.setTransferBinding(true);
    transfer.setParentToFigure(false);
    transfer.setRemoveOriginalTarget(true);
    DzFigure* const garment = transfer.doTransfer() ? transfer.getTargetOutputFigure() : nullptr;
    if (garment)
        openhost::FitTo(*garment, wearer);
    return garment;
}

void SaveTest::makeScene()
{
    DzFigure* const first = openMini();
    DzFigure* const second = openMini();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    first->findBone(QStringLiteral("arm"))->getZRotControl()->setValue(33.3f);
    first->findBone(QStringLiteral("hip"))->getYPosControl()->setDoubleValue(1.0 / 3.0);
    first->getXPosControl()->setValue(-50.0f);
    second->getScaleControl()->setValue(1.1f);
    second->findBone(QStringLiteral("arm"))->getYRotControl()->setValue(-12.5f);
    DialOf(*first, "Up")->setValue(0.3f);
    DialOf(*second, "Up")->setIsClamped(false);
    DialOf(*second, "Up")->setLabel(QStringLiteral("Upper"));
    DialOf(*second, "Bend")->setValue(0.5f);
    DzMorph* const shape = addMorph(*first, "My Shape", {{2, 7}, {{0.1f, 0, -3}, {0, 1.0f / 3, 0}}});
    shape->getValueControl()->setValue(0.7f);
    addMorph(*second, "My Shape", {{0}, {{1e-20f, -0.0f, 123.456f}}})->getValueControl()->setValue(-1.5f);
    first->findBone(QStringLiteral("arm"))
        ->getXRotControl()
        ->insertController(new DzERCLink(DzERCLink::ERCDeltaAdd, shape->getValueControl(), 20.0, 0.0));
    DzNode* const sword = makeProp("Sword", second->findBone(QStringLiteral("arm")));
    sword->getXRotControl()->setValue(45.0f);
    auto* const group = new DzNode;
    group->setName(QStringLiteral("Group 1"));
    group->setLabel(QString::fromUtf8("Gr\xC3\xBCppe #1/50%"));
    dzScene->addNode(group);
    group->getYRotControl()->setValue(90.0f);
    DzNode* const stone = makeProp("Stone", group);
    stone->setVisible(false);
    DzFigure* const garment = makeGarment(*first);
    ASSERT_NE(garment, nullptr);
    addMorph(*garment, "Puff", {{5}, {{0, 0, 2}}})->getValueControl()->setValue(0.5f);
    dzScene->selectAllNodes(false);
}

bool SaveTest::openBesideDoll(const std::string& modifiers, const std::string& scene)
{
    std::string figure = doll::Figure();
    figure.insert(figure.rfind(']'), modifiers);
    WriteBytes(_library / "data/Nord/Doll/Doll.dsf", doll::File(figure, "figure"));
    WriteBytes(_library / "Scenes/All.duf", scene);
    return open(_library / "Scenes/All.duf");
}

int SaveTest::save(const char* filterClass, const fs::path& file, bool compress, const char* rootLabel)
{
    DzAssetIOMgr& manager = *dzApp->getAssetIOMgr();
    DzFileIOSettings options;
    options.setBoolValue(QStringLiteral("RunSilent"), true);
    options.setBoolValue(QStringLiteral("CompressOutput"), compress);
    if (rootLabel)
        options.setStringValue(QStringLiteral("RootLabel"), QString::fromUtf8(rootLabel));
    DzAssetIOFilter* const filter =
        manager.getAssetFilter(manager.findAssetFilterIndex(QLatin1String(filterClass)));
    return manager.doSaveWithOptions(filter, &options, false, QString::fromStdString(file.string()));
}

bool SaveTest::reload(const fs::path& file)
{
    TestHost().reset();
    use(_library);
    return open(file);
}

std::string SaveTest::untimed(const fs::path& file)
{
    QString text = QString::fromStdString(ReadBytes(file));
    const int length = text.size();
    text.remove(QRegularExpression(QStringLiteral("\"modified\"\\s*:\\s*\"[^\"]*\"")));
    EXPECT_LT(text.size(), length) << "there is no time stamp";
    return text.toStdString();
}
