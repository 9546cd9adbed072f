// Morph Loader Pro, called by the names of its methods.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzclassfactory.h"
#include "dzdform.h"
#include "dzdformmodifier.h"
#include "dzerclink.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzscript.h"
#include "dzweightmap.h"
#include "figure/deltas_access.h"
#include "ks_exception.h"
#include "ks_morph-loader-script.h"
#include "ks_morph-loader.h"
#include "tests/host/tools_fixture.h"
#include "tests/shared/throws.h"
#include "tools/morph_loader.h"

#include <cmath>

#include <QEventLoop>
#include <QFile>
#include <QMetaMethod>
#include <QTimer>

using geometry::Vec3f;

namespace {

class MorphLoaderPro : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        _loader.setMorphName(QStringLiteral("New"));
        _loader.setDeltaTolerance(0.001f);
        _loader.setOverwriteExisting(DzMorphLoader::DeltasOnly);
        _loader.setPropertyGroupPath(QStringLiteral("Actor/Mine"));
    }
    /// Loads positions onto a node; the whole text that the loader gives.
    QString load(DzNode& node, const std::vector<Vec3f>& positions)
    {
        _loader.setFilename(WritePositions("morph.obj", positions));
        return _loader.createMorph(nullptr, &node, false, true);
    }
    static DzMorph* morph(const DzNode& node, const char* name = "New")
    {
        return qobject_cast<DzMorph*>(node.getObject()->findModifier(QString::fromUtf8(name)));
    }
    static const geometry::SparseDeltas& deltas(const DzNode& node, const char* name = "New")
    {
        return openhost::DeltasAccess::deltas(*morph(node, name)->getDeltas());
    }

    DzMorphLoader _loader;
};

/// Moves every vertex by something of its own, a few millimetres to a centimetre.
std::vector<Vec3f> Bumped(std::vector<Vec3f> positions)
{
    for (std::size_t v = 0; v < positions.size(); ++v) {
        const float t = static_cast<float>(v);
        positions[v] +=
            Vec3f{0.3f * std::sin(t), 0.4f + 0.3f * std::cos(0.7f * t), 0.5f * std::sin(1.3f * t)};
    }
    return positions;
}

const std::vector<Vec3f>& BasePositions()
{
    static const std::vector<Vec3f> positions = Tube(8).positions;
    return positions;
}

/// A D-Former on the figure whose weights run from 0 to 1 along the tube.
void AddHeadSplit(const TubeFigure& tube)
{
    auto* const former = new DzDForm;
    former->setName(QStringLiteral("D-Former_1"));
    dzScene->addNode(former);
    auto* const map =
        new DzWeightMap(static_cast<int>(BasePositions().size()), QStringLiteral("Influence Weights"));
    for (int v = 0; v < map->getNumWeights(); ++v)
        map->setFloatWeight(v, static_cast<float>(v) / static_cast<float>(map->getNumWeights() - 1));
    former->applyToNode(tube.figure)->setInfluenceWeights(map);
}

const char* const headSplitPath = "D-Former_1::weightmap::Tube/Influence Weights";

} // namespace

TEST_F(MorphLoaderPro, has_every_method_that_is_called_by_name)
{
    EXPECT_EQ(kst::MorphLoader::Signatures().size(), 67u);
    EXPECT_EQ(kst::MorphLoaderBatch::Signatures().size(), 25u);
    const struct {
        const char* name;
        const std::vector<const char*>& signatures;
    } classes[] = {{"DzMorphLoader", kst::MorphLoader::Signatures()},
                   {"DzMorphLoaderBatch", kst::MorphLoaderBatch::Signatures()}};
    for (const auto& one : classes) {
        const DzClassFactory* const factory = dzApp->findClassFactory(QString::fromUtf8(one.name));
        ASSERT_NE(factory, nullptr);
        const std::unique_ptr<QObject> object(factory->createInstance());
        ASSERT_NE(object, nullptr);
        for (const char* const signature : one.signatures)
            EXPECT_GE(object->metaObject()->indexOfMethod(QMetaObject::normalizedSignature(signature)), 0)
                << signature;
    }
    EXPECT_NE(kst::MorphLoader::CreateMlpInstance_X(), nullptr);
    EXPECT_NE(kst::MorphLoaderBatch::CreateMlBatchInstance_X(), nullptr);
}

TEST_F(MorphLoaderPro, a_figure_refuses_the_modes_of_props_and_a_prop_those_of_figures)
{
    TubeFigure tube;
    DzNode* const prop = AddProp("Prop", Tube(2));
    EXPECT_TRUE(_loader.setLoadMode(DzMorphLoader::SingleSkinFigure, tube.figure));
    EXPECT_FALSE(_loader.setLoadMode(DzMorphLoader::PrimaryNode, tube.figure));
    EXPECT_TRUE(_loader.setLoadMode(DzMorphLoader::PrimaryNode, prop));
    EXPECT_FALSE(_loader.setLoadMode(DzMorphLoader::SingleSkinFigure, prop));
    EXPECT_FALSE(_loader.setLoadMode(DzMorphLoader::PrimaryNode, tube.upper));
    EXPECT_FALSE(_loader.setLoadMode(DzMorphLoader::PrimaryNode, nullptr));
}

TEST_F(MorphLoaderPro, without_reversal_the_deltas_are_those_from_the_base_mesh)
{
    TubeFigure tube;
    tube.lower->getZRotControl()->setValue(40.0f);
    tube.addMorph("Other", {0}, {{0, 0, 9}})->getValueControl()->setValue(1.0f);
    std::vector<Vec3f> file = BasePositions();
    file[5] += Vec3f{0, 0.5f, 0};
    file[6] += Vec3f{0, 0.0005f, 0}; // below the tolerance
    EXPECT_EQ(load(*tube.figure, file), QStringLiteral("New was created successfully."));
    ASSERT_NE(morph(*tube.figure), nullptr);
    ASSERT_EQ(deltas(*tube.figure).vertices, std::vector<std::uint32_t>{5});
    EXPECT_NEAR(deltas(*tube.figure).deltas[0].y, 0.5f, 1e-6);
    const DzFloatProperty& dial = *morph(*tube.figure)->getValueControl();
    EXPECT_EQ(dial.getValue(), 0.0f);
    EXPECT_EQ(dial.getMin(), 0.0f);
    EXPECT_EQ(dial.getMax(), 1.0f);
    EXPECT_EQ(dial.getPath(), QStringLiteral("/Actor/Mine"));
    EXPECT_EQ(dial.getLabel(), QStringLiteral("New"));
    EXPECT_EQ(morph(*tube.figure)->getDeltas()->getTargetVertexCount(), 72);
}

TEST_F(MorphLoaderPro, reversal_reproduces_the_file_under_any_pose_and_dials)
{
    for (const bool dualQuaternion : {true, false}) {
        TestHost().reset();
        TubeFigure tube("Tube", dualQuaternion);
        tube.lower->getZRotControl()->setValue(50.0f);
        tube.lower->getXRotControl()->setValue(-20.0f);
        tube.upper->getYRotControl()->setValue(15.0f);
        tube.lower->getScaleControl()->setValue(1.2f);
        tube.figure->getXPosControl()->setValue(12.0f);
        tube.figure->getYRotControl()->setValue(70.0f);
        tube.addMorph("Other", {20, 40}, {{0, 1, 0}, {0.5f, 0, 1}})->getValueControl()->setValue(0.6f);
        const std::vector<Vec3f> file = Bumped(WorldPositions(*tube.figure));
        _loader.setReverseDeformations(true);
        _loader.setDeltaTolerance(0.0f);
        ASSERT_TRUE(load(*tube.figure, file).contains(QStringLiteral("successfully")));
        morph(*tube.figure)->getValueControl()->setValue(1.0f);
        EXPECT_LT(LargestDistance(WorldPositions(*tube.figure), file), 1e-3f) << dualQuaternion;
        // Loading over a morph that is dialed in counts it as not there.
        const std::vector<Vec3f> second = Bumped(file);
        ASSERT_TRUE(load(*tube.figure, second).contains(QStringLiteral("successfully")));
        EXPECT_EQ(morph(*tube.figure)->getValueControl()->getValue(), 1.0f);
        EXPECT_LT(LargestDistance(WorldPositions(*tube.figure), second), 1e-3f) << dualQuaternion;
        EXPECT_EQ(morph(*tube.figure, "New 2"), nullptr);
    }
}

TEST_F(MorphLoaderPro, reversal_of_a_morph_that_stays_builds_upon_it)
{
    TubeFigure tube;
    _loader.setReverseDeformations(true);
    load(*tube.figure, Bumped(BasePositions()));
    morph(*tube.figure)->getValueControl()->setValue(1.0f);
    _loader.setOverwriteExisting(DzMorphLoader::MakeUnique);
    const std::vector<Vec3f> file = Bumped(Bumped(BasePositions()));
    load(*tube.figure, file);
    ASSERT_NE(morph(*tube.figure, "New 2"), nullptr);
    morph(*tube.figure, "New 2")->getValueControl()->setValue(1.0f);
    EXPECT_LT(LargestDistance(WorldPositions(*tube.figure), file), 1e-3f);
}

TEST_F(MorphLoaderPro, orphans_are_cleaned_up_when_a_morph_is_overwritten)
{
    TubeFigure tube;
    DzNode* const prop = AddProp("Prop", Tube(8));
    tube.upper->setObject(new DzObject);
    const auto addOther = [](DzNode& node, const char* name) {
        auto* const other = new DzMorph;
        other->setName(QLatin1String(name));
        node.getObject()->addModifier(other);
    };
    for (const char* const name : {"New", "Kept"})
        addOther(*tube.upper, name);
    addOther(*prop, "New");
    load(*tube.figure, Bumped(BasePositions()));
    EXPECT_NE(morph(*tube.upper), nullptr) << "nobody wants it cleaned up";
    _loader.setCleanUpOrphans(true);
    _loader.setOverwriteExisting(DzMorphLoader::MakeUnique);
    load(*tube.figure, Bumped(BasePositions()));
    EXPECT_NE(morph(*tube.upper), nullptr) << "nothing is overwritten";
    _loader.setOverwriteExisting(DzMorphLoader::DeltasOnly);
    load(*tube.figure, Bumped(BasePositions()));
    EXPECT_EQ(morph(*tube.upper), nullptr);
    EXPECT_NE(morph(*tube.upper, "Kept"), nullptr);
    EXPECT_NE(morph(*prop), nullptr) << "of another object";
    EXPECT_NE(morph(*tube.figure), nullptr);
}

TEST_F(MorphLoaderPro, a_load_by_a_graft_is_told_to_be_none)
{
    TubeFigure tube;
    const QString note =
        QStringLiteral("New: the load mode SingleSkinFigureFromGraft has no effect here; the file is "
                       "read as the figure's own mesh");
    _loader.setLoadMode(DzMorphLoader::SingleSkinFigure, tube.figure);
    load(*tube.figure, Bumped(BasePositions()));
    EXPECT_FALSE(LogText().contains(note));
    _loader.setLoadMode(DzMorphLoader::SingleSkinFigureFromGraft, tube.figure);
    load(*tube.figure, Bumped(BasePositions()));
    EXPECT_EQ(LogText().count(note), 1);
    EXPECT_NE(morph(*tube.figure), nullptr);
}

TEST_F(MorphLoaderPro, what_cannot_be_loaded_makes_no_morph_and_says_why)
{
    TubeFigure tube;
    const int modifiers = tube.figure->getObject()->getNumModifiers();
    std::vector<Vec3f> file = BasePositions();
    file.pop_back();
    EXPECT_EQ(load(*tube.figure, file), QStringLiteral("New: the file has 71 vertices but Tube has 72"));
    EXPECT_EQ(load(*tube.upper, file), QStringLiteral("New: there is no mesh to load a morph onto"));
    _loader.setFilename(TestFile("none.obj"));
    EXPECT_EQ(_loader.createMorph(nullptr, tube.figure, true, true),
              QStringLiteral("New: cannot open ") + TestFile("none.obj") +
                  QStringLiteral(": No such file or directory"));
    EXPECT_EQ(_loader.createMorph(nullptr, nullptr, true, true).left(18),
              QStringLiteral("New: cannot open /"));
    load(*tube.figure, file);
    _loader.setAttenuateMapPath(QStringLiteral("D-Former_1::weightmap::Tube/None"));
    EXPECT_EQ(load(*tube.figure, BasePositions()),
              QStringLiteral("New: there is no weight map at D-Former_1::weightmap::Tube/None"));
    EXPECT_EQ(tube.figure->getObject()->getNumModifiers(), modifiers);
}

TEST_F(MorphLoaderPro, a_failed_load_leaves_pose_and_selection_alone)
{
    TubeFigure tube;
    DzNode* const prop = AddProp("Prop", Tube(2));
    dzScene->setPrimarySelection(prop);
    _loader.setReverseDeformationsPose(TestFile("none.duf"));
    std::vector<Vec3f> file = BasePositions();
    file.pop_back();
    EXPECT_TRUE(load(*tube.figure, file).contains(QStringLiteral("the file has 71 vertices")));
    EXPECT_EQ(dzScene->getPrimarySelection(), prop);
}

TEST_F(MorphLoaderPro, texts_are_empty_when_only_problems_are_asked_for_and_html_is_escaped)
{
    TubeFigure tube;
    load(*tube.figure, BasePositions());
    EXPECT_EQ(_loader.createMorph(nullptr, tube.figure), QString());
    _loader.setMorphName(QStringLiteral("<b>"));
    _loader.setFilename(WritePositions("short.obj", {{0, 0, 0}}));
    EXPECT_EQ(_loader.createMorph(nullptr, tube.figure, true, false),
              QStringLiteral("<p>&lt;b&gt;: the file has 1 vertices but Tube has 72</p>"));
}

TEST_F(MorphLoaderPro, overwriting_keeps_or_replaces_what_the_mode_says)
{
    TubeFigure tube;
    std::vector<Vec3f> file = BasePositions();
    file[5] += Vec3f{0, 1, 0};
    load(*tube.figure, file);
    DzMorph* const first = morph(*tube.figure);
    auto* const driver = new DzFloatProperty(QStringLiteral("Driver"), true, true, 0.0f);
    tube.figure->addProperty(driver);
    first->getValueControl()->insertController(new DzERCLink(driver, 1.0, 0.0));
    first->getValueControl()->setPath(QStringLiteral("/Elsewhere"));

    file = BasePositions();
    file[7] += Vec3f{0, 1, 0};
    load(*tube.figure, file);
    EXPECT_EQ(morph(*tube.figure), first);
    EXPECT_EQ(deltas(*tube.figure).vertices, std::vector<std::uint32_t>{7});
    EXPECT_EQ(first->getValueControl()->getPath(), QStringLiteral("/Elsewhere"));
    EXPECT_EQ(first->getValueControl()->getNumControllers(), 1);

    _loader.setPreserveExistingDeltas(true);
    file = BasePositions();
    file[3] += Vec3f{0, 1, 0};
    load(*tube.figure, file);
    EXPECT_EQ(deltas(*tube.figure).vertices, (std::vector<std::uint32_t>{3, 7}));

    _loader.setPreserveExistingDeltas(false);
    _loader.setOverwriteExisting(DzMorphLoader::MakeUnique);
    load(*tube.figure, file);
    ASSERT_NE(morph(*tube.figure, "New 2"), nullptr);
    EXPECT_EQ(deltas(*tube.figure).vertices, (std::vector<std::uint32_t>{3, 7}));

    _loader.setOverwriteExisting(DzMorphLoader::DeltasAndERCLinks);
    load(*tube.figure, file);
    EXPECT_EQ(deltas(*tube.figure).vertices, std::vector<std::uint32_t>{3});
    EXPECT_EQ(morph(*tube.figure)->getValueControl()->getNumControllers(), 0);
    EXPECT_TRUE(_loader.morphAlreadyExists(tube.figure));
    _loader.setMorphName(QStringLiteral("None"));
    EXPECT_FALSE(_loader.morphAlreadyExists(tube.figure));
}

TEST_F(MorphLoaderPro, mirroring_swaps_sides_or_copies_one_onto_the_other)
{
    TubeFigure tube;
    // Rings run from -X to +X: vertex v of ring r has its mirror image at the same place of ring 8 - r.
    std::vector<Vec3f> file = BasePositions();
    file[8 * 1 + 2] += Vec3f{0.5f, 1, 0};
    file[8 * 6 + 3] += Vec3f{0.25f, 0, 1};
    file[8 * 4 + 1] += Vec3f{0.5f, 2, 0};
    struct Case {
        DzMorphLoader::MirroringType type;
        std::vector<std::uint32_t> vertices;
        std::vector<Vec3f> expected;
    };
    const Case cases[] = {
        {DzMorphLoader::DoNotMirror, {10, 33, 51}, {{0.5f, 1, 0}, {0.5f, 2, 0}, {0.25f, 0, 1}}},
        {DzMorphLoader::XSwap, {19, 33, 58}, {{-0.25f, 0, 1}, {-0.5f, 2, 0}, {-0.5f, 1, 0}}},
        {DzMorphLoader::XPosToNeg, {19, 33, 51}, {{-0.25f, 0, 1}, {0, 2, 0}, {0.25f, 0, 1}}},
        {DzMorphLoader::XNegToPos, {10, 33, 58}, {{0.5f, 1, 0}, {0, 2, 0}, {-0.5f, 1, 0}}},
    };
    for (const Case& one : cases) {
        _loader.setMorphMirroring(one.type);
        load(*tube.figure, file);
        ASSERT_EQ(deltas(*tube.figure).vertices, one.vertices) << one.type;
        for (std::size_t i = 0; i < one.expected.size(); ++i)
            EXPECT_LT(geometry::Length(deltas(*tube.figure).deltas[i] - one.expected[i]), 1e-5f)
                << one.type << i;
    }
}

TEST_F(MorphLoaderPro, the_parts_of_a_map_and_its_complement_add_up_to_the_full_morph_exactly)
{
    TubeFigure tube;
    AddHeadSplit(tube);
    std::vector<Vec3f> file = Bumped(BasePositions());
    file[36] = BasePositions()[36] + Vec3f{0, 0.0012f, 0}; // each part is below the tolerance
    load(*tube.figure, file);
    _loader.setAttenuateMapPath(QString::fromUtf8(headSplitPath));
    for (const auto& part : {std::make_pair("Head", 1.0f), std::make_pair("Body", -1.0f)}) {
        _loader.setMorphName(QString::fromUtf8(part.first));
        _loader.setAttenuateStrength(part.second);
        ASSERT_TRUE(load(*tube.figure, file).contains(QStringLiteral("successfully")));
    }
    const std::vector<Vec3f> full = geometry::ToDense(deltas(*tube.figure), 72);
    const std::vector<Vec3f> head = geometry::ToDense(deltas(*tube.figure, "Head"), 72);
    const std::vector<Vec3f> body = geometry::ToDense(deltas(*tube.figure, "Body"), 72);
    EXPECT_GT(geometry::Length(full[36]), 0.0f);
    for (std::size_t v = 0; v < full.size(); ++v)
        EXPECT_EQ(head[v] + body[v], full[v]) << v;
    EXPECT_EQ(head[0], Vec3f{});
    EXPECT_EQ(body[71], Vec3f{});
    _loader.setMorphName(QStringLiteral("None"));
    _loader.setAttenuateStrength(0.0f);
    load(*tube.figure, file);
    EXPECT_EQ(geometry::ToDense(deltas(*tube.figure, "None"), 72), full);
}

TEST_F(MorphLoaderPro, a_map_is_found_whatever_the_names_hold)
{
    TubeFigure tube("My::Tube");
    AddHeadSplit(tube);
    _loader.setAttenuateMapPath(QStringLiteral("D-Former_1::weightmap::My::Tube/Influence Weights"));
    EXPECT_TRUE(load(*tube.figure, Bumped(BasePositions())).contains(QStringLiteral("successfully")));
    _loader.setAttenuateMapPath(QStringLiteral("Renamed::weightmap::My::Tube/Influence Weights"));
    EXPECT_TRUE(load(*tube.figure, Bumped(BasePositions())).contains(QStringLiteral("successfully")));
    for (const char* const path : {"D-Former_1", "D-Former_1::facetlist::My::Tube/Influence Weights",
                                   "D-Former_1::weightmap::Tube/Influence Weights", "::"}) {
        _loader.setAttenuateMapPath(QString::fromUtf8(path));
        EXPECT_FALSE(load(*tube.figure, Bumped(BasePositions())).contains(QStringLiteral("successfully")))
            << path;
    }
}

TEST_F(MorphLoaderPro, a_control_property_drives_the_morph)
{
    TubeFigure tube;
    _loader.setCreateControlProperty(true);
    _loader.setHideSecondaryProperties(true);
    load(*tube.figure, Bumped(BasePositions()));
    auto* const control = qobject_cast<DzFloatProperty*>(tube.figure->findProperty(QStringLiteral("New")));
    ASSERT_NE(control, nullptr);
    EXPECT_TRUE(morph(*tube.figure)->getValueControl()->isHidden());
    control->setValue(0.5f);
    EXPECT_EQ(morph(*tube.figure)->getValueControl()->getValue(), 0.5f);
    _loader.setOverwriteExisting(DzMorphLoader::DeltasAndERCLinks);
    EXPECT_TRUE(load(*tube.figure, Bumped(BasePositions())).contains(QStringLiteral("successfully")));
    EXPECT_EQ(morph(*tube.figure)->getValueControl()->getValue(), 0.5f);
}

TEST_F(MorphLoaderPro, settings_files_give_settings_back_and_foreign_files_are_left_alone)
{
    const QString file = TestFile("settings.dsx");
    QFile::remove(file);
    _loader.setAttenuateStrength(-0.5f);
    _loader.setMorphMirroring(DzMorphLoader::YSwap);
    ASSERT_TRUE(_loader.saveObjectSettingsToConfigFile(file, QStringLiteral("Tube"), false));
    DzMorphLoader other;
    EXPECT_FALSE(other.readObjectSettingsFromConfigFile(file, QStringLiteral("Cone")));
    EXPECT_FALSE(other.readObjectCommonSettingsFromConfigFile(file));
    ASSERT_TRUE(other.readObjectSettingsFromConfigFile(file, QStringLiteral("Tube")));
    EXPECT_EQ(other.getMorphName(), QStringLiteral("New"));
    EXPECT_EQ(other.getAttenuateStrength(), -0.5f);
    EXPECT_EQ(other.getMorphMirroring(), DzMorphLoader::YSwap);
    QFile foreign(TestFile("foreign.txt"));
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.write("a letter");
    foreign.close();
    EXPECT_FALSE(_loader.saveObjectSettingsToConfigFile(foreign.fileName(), QStringLiteral("Tube"), false));
    EXPECT_EQ(FileText(foreign.fileName()), "a letter");
}

TEST_F(MorphLoaderPro, the_script_makes_the_same_morphs_as_the_driver)
{
    TubeFigure tube;
    AddHeadSplit(tube);
    tube.upper->getZRotControl()->setValue(20.0f);
    const QString json = QStringLiteral("{\"Scale\": 1.0}");
    const std::string file = WritePositions("script.obj", Bumped(BasePositions())).toStdString();
    dzScene->setPrimarySelection(tube.figure);
    for (const float strength : {1.0f, -1.0f}) {
        kst::MorphLoaderBatch::Exec_X(tube.figure, file, "Driver", json, false, 0, "/Actor", true,
                                      headSplitPath, strength);
        const std::string report = kst::MorphLoaderProScript::ScriptExec(
            file, "Script", json, false, 0, "/Actor", true, headSplitPath, strength);
        EXPECT_NE(report.find("successfully"), std::string::npos) << report;
        ASSERT_NE(morph(*tube.figure, "Script"), nullptr);
        EXPECT_FALSE(deltas(*tube.figure, "Script").deltas.empty());
        EXPECT_EQ(deltas(*tube.figure, "Script").deltas, deltas(*tube.figure, "Driver").deltas);
        EXPECT_EQ(morph(*tube.figure, "Script")->getValueControl()->getPath(),
                  morph(*tube.figure, "Driver")->getValueControl()->getPath());
    }
}

TEST_F(MorphLoaderPro, the_script_names_what_is_missing_first_and_what_the_host_refuses)
{
    const auto run = [](const char* file, const char* name, const char* path, const char* json) {
        return MessageOf([&] {
            kst::MorphLoaderProScript::ScriptExec(file, name, QLatin1String(json), false, 0, path, false, "",
                                                  1.0f);
        });
    };
    EXPECT_EQ(run("", "", "", ""), "missing import OBJ file");
    EXPECT_EQ(run("a.obj", "", "", ""), "missing morph name");
    EXPECT_EQ(run("a.obj", "A", "", ""), "missing property group path");
    dzScene->setPrimarySelection(AddProp("Prop", Tube(8)));
    EXPECT_EQ(run("a.obj", "A", "/A", ""),
              "Script error: invalid JSON settings for OBJ importer in Morph Loader Pro");
    TubeFigure tube;
    dzScene->setPrimarySelection(tube.upper);
    EXPECT_EQ(run("a.obj", "A", "/A", "{\"Scale\": 1.0}"), "Script error: incompatible load mode");
    dzScene->selectAllNodes(false);
    EXPECT_EQ(run("a.obj", "A", "/A", "{\"Scale\": 1.0}").rfind("Script error: TypeError", 0), 0u);
}

/// Stops all scripts in the middle of a load, and waits until the running one has noticed.
class Stopper : public openhost::OperationWatch {
public:
    bool allow(openhost::Operation operation, const QString&) override
    {
        if (operation != openhost::Operation::CreateMorph)
            return true;
        DzScript::stopAll();
        QEventLoop loop;
        QTimer::singleShot(500, &loop, &QEventLoop::quit);
        loop.exec();
        return false;
    }
};

TEST_F(MorphLoaderPro, a_script_that_is_stopped_is_told_as_such)
{
    TubeFigure tube;
    dzScene->setPrimarySelection(tube.figure);
    const std::string file = WritePositions("stopped.obj", Bumped(BasePositions())).toStdString();
    const Stopper stopper;
    EXPECT_EQ(MessageOf([&] {
                  kst::MorphLoaderProScript::ScriptExec(file, "Stopped", QStringLiteral("{\"Scale\": 1.0}"),
                                                        false, 0, "/Actor", false, "", 1.0f);
              }),
              "failed to execute script to run Morph Loader Pro");
    EXPECT_EQ(morph(*tube.figure, "Stopped"), nullptr);
}

TEST_F(MorphLoaderPro, the_batch_runs_as_the_driver_calls_it)
{
    TubeFigure tube;
    DzNode* const prop = AddProp("Prop", Tube(8));
    AddHeadSplit(tube);
    const std::string file = WritePositions("batch.obj", Bumped(BasePositions())).toStdString();
    for (DzNode* const node : {static_cast<DzNode*>(tube.figure), prop})
        EXPECT_EQ(kst::MorphLoaderBatch::Exec_X(node, file, "Batch", QString(), false, 0, "/Actor", false, "",
                                                1.0f),
                  "");
    ASSERT_NE(morph(*tube.figure, "Batch"), nullptr);
    ASSERT_NE(morph(*prop, "Batch"), nullptr);
    EXPECT_EQ(deltas(*prop, "Batch").deltas, deltas(*tube.figure, "Batch").deltas);
    kst::MorphLoaderBatch::Exec_X(tube.figure, file, "Head", QStringLiteral("{\"Scale\": 1.0}"), false, 0,
                                  "/Actor", false, headSplitPath, 1.0f);
    EXPECT_NE(morph(*tube.figure, "Head"), nullptr);
    try {
        kst::MorphLoaderBatch::Exec_X(tube.upper, file, "Bone", QString(), false, 0, "/Actor", false, "",
                                      1.0f);
        FAIL() << "a bone took a morph";
    } catch (const kst::Exception& error) {
        EXPECT_STREQ(error.what(), "incompatible load mode");
    }
}
