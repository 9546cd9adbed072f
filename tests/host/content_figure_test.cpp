// Loading figures from a content library.
// SPDX-License-Identifier: MIT

#include "dzbone.h"
#include "dzfigure.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dzmorphdeltas.h"
#include "dzobject.h"
#include "dzskinbinding.h"
#include "tests/host/content_fixture.h"

#include <cmath>

namespace {

namespace fs = std::filesystem;

class LoadedFigure : public LibraryTest {
protected:
    void add(const dson::Modifier& modifier) { mini::WriteMorph(modifier, _library); }
    /// A control whose dial is the given operations on others.
    void addDriven(const char* name, std::vector<dson::Operation> operations,
                   dson::Formula::Stage stage = dson::Formula::Stage::Sum)
    {
        dson::Modifier control = mini::Control(name);
        control.channel.clamped = false;
        dson::Formula formula;
        formula.output = mini::Dial(name);
        formula.stage = stage;
        formula.operations = std::move(operations);
        control.formulas.push_back(std::move(formula));
        add(control);
    }
};

dson::Operation PushDial(const char* name)
{
    dson::Operation operation;
    operation.kind = dson::Operation::Kind::PushUrl;
    operation.url = mini::Dial(name);
    return operation;
}

dson::Operation PushValue(double value)
{
    dson::Operation operation;
    operation.value = value;
    return operation;
}

dson::Operation PushKnot(double in, double out)
{
    dson::Operation operation;
    operation.kind = dson::Operation::Kind::PushKnot;
    operation.knot = {in, out, 0, 0, 0};
    return operation;
}

dson::Operation Do(dson::Operation::Kind kind)
{
    dson::Operation operation;
    operation.kind = kind;
    return operation;
}

using Kind = dson::Operation::Kind;

} // namespace

TEST_F(LoadedFigure, has_its_bones_skin_and_mesh_and_is_selected)
{
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(figure->getLabel(), QStringLiteral("Mini"));
    EXPECT_EQ(figure->getAssetUri().toString(), QStringLiteral("/data/Acme/Mini/Base/Mini.dsf#Mini"));
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    auto* const arm = qobject_cast<DzBone*>(figure->findNodeChild(QStringLiteral("arm"), true));
    ASSERT_NE(arm, nullptr);
    EXPECT_EQ(arm->getNodeParent()->getName(), QStringLiteral("hip"));
    ExpectAt(arm->getOrigin(), 20, 0, 0);
    ASSERT_NE(figure->getSkinBinding(), nullptr);
    EXPECT_EQ(figure->getSkinBinding()->getNumBoneBindings(), 2);
    ExpectAt(VertexAt(*figure, 9), 40, 10, 0);
    arm->getZRotControl()->setValue(90.0f);
    ExpectAt(VertexAt(*figure, 9), 10, 20, 0);
    ExpectAt(VertexAt(*figure, 3), 10, 10, 0);
}

TEST_F(LoadedFigure, reads_the_deltas_only_when_their_dial_moves)
{
    add(mini::Morph("Up", 1, {0, 2, 0}));
    const fs::path file = mini::WriteMorph(mini::Morph("Gone", 1, {0, 2, 0}), _library);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(FindMorph(*figure, "Up"), nullptr);
    ExpectAt(VertexAt(*figure, 1), 0, 10, 0);
    EXPECT_FALSE(FindMorph(*figure, "Up")->getDeltas()->areDeltasLoaded());
    fs::remove(file);
    DialOf(*figure, "Up")->setValue(0.5f);
    ExpectAt(VertexAt(*figure, 1), 0, 11, 0);
    EXPECT_TRUE(FindMorph(*figure, "Up")->getDeltas()->areDeltasLoaded());
    EXPECT_FALSE(log().contains(QStringLiteral("Gone")));
    DialOf(*figure, "Gone")->setValue(1.0f);
    ExpectAt(VertexAt(*figure, 1), 0, 11, 0);
    EXPECT_TRUE(log().contains(QStringLiteral("Gone.dsf: No such file or directory"))) << log().toStdString();
}

TEST_F(LoadedFigure, takes_dial_settings_from_the_file)
{
    dson::Modifier morph = mini::Morph("Wide", 1, {0, 2, 0});
    morph.channel.label = "Wide Label";
    morph.channel.min = -1.0;
    morph.channel.max = 2.0;
    morph.channel.value = 0.25;
    morph.region = "Head";
    add(morph);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const dial = DialOf(*figure, "Wide");
    ASSERT_NE(dial, nullptr);
    EXPECT_EQ(dial->getLabel(), QStringLiteral("Wide Label"));
    EXPECT_EQ(dial->getPath(), QStringLiteral("/Actor/Acme"));
    EXPECT_EQ(dial->getRegion(), QStringLiteral("Head"));
    EXPECT_EQ(dial->getMin(), -1.0f);
    EXPECT_EQ(dial->getMax(), 2.0f);
    EXPECT_EQ(dial->getValue(), 0.25f);
    EXPECT_TRUE(dial->getDisplayAsPercent());
    dial->setValue(9.0f);
    EXPECT_EQ(dial->getValue(), 2.0f);
    EXPECT_EQ(FindMorph(*figure, "Wide")->getAssetUri().toString(),
              QStringLiteral("/data/Acme/Mini/Base/Morphs/Acme/Shapes/Wide.dsf#Wide"));
}

TEST_F(LoadedFigure, leaves_out_morphs_for_other_meshes_and_keeps_unchecked_ones)
{
    dson::Modifier wrong = mini::Morph("Wrong", 1, {0, 2, 0});
    wrong.morph->vertexCount = 11;
    add(wrong);
    dson::Modifier open = mini::Morph("Open", 1, {0, 2, 0});
    open.morph->vertexCount = -1;
    open.morph->deltas = {{1, 10, 99}, {{0, 2, 0}, {1, 1, 1}, {1, 1, 1}}};
    add(open);
    dson::Modifier stranger = mini::Morph("Stranger", 1, {0, 2, 0});
    stranger.parent = "/data/Acme/Maxi/Base/Maxi.dsf#Maxi";
    add(stranger);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(FindMorph(*figure, "Wrong"), nullptr);
    EXPECT_EQ(FindMorph(*figure, "Stranger"), nullptr);
    EXPECT_TRUE(log().contains(
        QStringLiteral("/data/Acme/Mini/Base/Mini.dsf: 1 morph is for a mesh of another size and "
                       "is left out, such as ")))
        << log().toStdString();
    EXPECT_TRUE(log().contains(QStringLiteral("/Wrong.dsf")));
    ASSERT_NE(DialOf(*figure, "Open"), nullptr);
    DialOf(*figure, "Open")->setValue(1.0f);
    ExpectAt(VertexAt(*figure, 1), 0, 12, 0);
    EXPECT_TRUE(log().contains(QStringLiteral(
        "Open.dsf: Open: 2 deltas are of vertices that the figure does not have and are left out")));
}

TEST_F(LoadedFigure, finds_morphs_of_other_directories_whatever_their_case)
{
    add(mini::Morph("Same", 1, {0, 2, 0}));
    const fs::path bought = folder("bought");
    const fs::path written = mini::WriteMorph(mini::Morph("Extra", 1, {0, 3, 0}), bought);
    mini::WriteMorph(mini::Morph("Same", 1, {0, 99, 0}), bought);
    fs::rename(bought / "data/Acme", bought / "data/aCME");
    fs::rename(bought / "data", bought / "DATA");
    use(bought);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    ASSERT_NE(DialOf(*figure, "Extra"), nullptr);
    DialOf(*figure, "Extra")->setValue(1.0f);
    DialOf(*figure, "Same")->setValue(1.0f);
    ExpectAt(VertexAt(*figure, 1), 0, 15, 0);
    EXPECT_TRUE(
        log().contains(QStringLiteral("/data/Acme/Mini/Base/Mini.dsf: 1 morph file is in more than one "
                                      "content library; the first is used")));
}

TEST_F(LoadedFigure, is_driven_by_formulas)
{
    add(mini::Control("In"));
    dson::Modifier longer = mini::Morph("Longer", 9, {10, 0, 0});
    longer.formulas = {
        dson::MakeDeltaAdd(mini::NodeChannel("arm", "center_point/x"), mini::Dial("Longer"), 5.0)};
    add(longer);
    addDriven("Sum", {PushDial("In"), PushValue(2.0), Do(Kind::Mult)});
    addDriven("Polynomial", {PushDial("In"), PushDial("In"), Do(Kind::Mult), PushValue(0.25), Do(Kind::Sub)});
    addDriven("Factor", {PushDial("In")}, dson::Formula::Stage::Multiply);
    addDriven("Spline", {PushDial("In"), PushKnot(0, 1), PushKnot(0.5, 3), PushKnot(1, 7), PushValue(3),
                         Do(Kind::SplineLinear)});
    addDriven("Lost", {PushDial("Nowhere"), PushValue(2.0), Do(Kind::Mult)});
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const in = DialOf(*figure, "In");
    ASSERT_NE(in, nullptr);
    DialOf(*figure, "Factor")->setRawValue(3.0f);
    for (const float x : {0.0f, 0.25f, 0.5f, 1.0f}) {
        in->setValue(x);
        EXPECT_NEAR(DialOf(*figure, "Sum")->getValue(), 2.0f * x, 1e-5);
        EXPECT_NEAR(DialOf(*figure, "Polynomial")->getValue(), x * x - 0.25f, 1e-5);
        EXPECT_NEAR(DialOf(*figure, "Factor")->getValue(), 3.0f * x, 1e-5);
        EXPECT_NEAR(DialOf(*figure, "Spline")->getValue(), x <= 0.5f ? 1 + 4 * x : 3 + 8 * (x - 0.5f), 1e-5);
    }
    ASSERT_NE(DialOf(*figure, "Lost"), nullptr);
    EXPECT_EQ(DialOf(*figure, "Lost")->getValue(), 0.0f);
    EXPECT_TRUE(log().contains(QStringLiteral(
        "/data/Acme/Mini/Base/Mini.dsf: 1 formula names what is not installed and is left out")))
        << log().toStdString();
    DialOf(*figure, "Longer")->setValue(1.0f);
    ExpectAt(figure->findNodeChild(QStringLiteral("arm"), true)->getOrigin(), 25, 0, 0);
}

TEST_F(LoadedFigure, survives_formulas_in_a_circle)
{
    addDriven("A", {PushDial("B"), PushValue(1.0), Do(Kind::Mult)});
    addDriven("B", {PushDial("A"), PushValue(1.0), Do(Kind::Mult)});
    addDriven("Self", {PushDial("Self"), PushValue(1.0), Do(Kind::Mult)});
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    for (const char* const name : {"A", "B", "Self"}) {
        DialOf(*figure, name)->setValue(1.0f);
        EXPECT_TRUE(std::isfinite(DialOf(*figure, name)->getValue())) << name;
    }
}

TEST_F(LoadedFigure, an_alias_is_a_second_dial_for_the_same_value)
{
    add(mini::Morph("Up", 1, {0, 2, 0}));
    dson::Modifier alias = mini::Control("alias_arm_Up");
    alias.parent = dson::MakeUri(mini::figurePath, "arm");
    alias.channel = {};
    alias.channel.id = "value";
    alias.channel.type = "alias";
    alias.channel.label = "Up here";
    alias.channel.targetChannel = mini::Dial("Up");
    add(alias);
    DzFigure* const figure = openMini();
    ASSERT_NE(figure, nullptr);
    DzFloatProperty* const second =
        DialOf(*figure->findNodeChild(QStringLiteral("arm"), true), "alias_arm_Up");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->getLabel(), QStringLiteral("Up here"));
    second->setValue(0.5f);
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 0.5f);
    ExpectAt(VertexAt(*figure, 1), 0, 11, 0);
}

TEST_F(LoadedFigure, a_character_file_sets_its_dials)
{
    add(mini::Morph("Up", 1, {0, 2, 0}));
    add(mini::Control("Switch"));
    const auto uri = [](const char* name) { return dson::MakeUri(mini::MorphInfo(name).id, name); };
    const fs::path file = mini::WriteCharacter(
        _library,
        {{uri("Up"), "Up", "", 0.75}, {uri("Switch"), "Switch", "", 0.5}, {uri("None"), "None", "", 1.0}},
        "Otto");
    ASSERT_TRUE(open(file));
    const DzNode* const figure = dzScene->getPrimarySelection();
    EXPECT_EQ(figure->getLabel(), QStringLiteral("Otto"));
    EXPECT_EQ(DialOf(*figure, "Up")->getValue(), 0.75f);
    EXPECT_EQ(DialOf(*figure, "Switch")->getValue(), 0.5f);
    ExpectAt(VertexAt(*figure, 1), 0, 11.5f, 0);
    EXPECT_TRUE(log().contains(QStringLiteral("None.dsf is in no content library")));
}

TEST_F(LoadedFigure, bones_of_equal_names_belong_to_their_own_figure)
{
    const char* const instances =
        R"({"file_version": "0.6.0.0", "asset_info": {"type": "scene_subset"}, "scene": {"nodes": [
        {"id": "Mini", "url": "/data/Acme/Mini/Base/Mini.dsf#Mini", "label": "First"},
        {"id": "Mini-2", "url": "/data/acme/mini/base/mini.dsf#Mini", "label": "Second", "translation": [0, 0, 50]},
        {"id": "hip", "url": "/data/Acme/Mini/Base/Mini.dsf#hip", "parent": "#Mini"},
        {"id": "arm", "url": "/data/Acme/Mini/Base/Mini.dsf#arm", "parent": "#hip",
         "rotation": [{"id": "z", "current_value": 90}]},
        {"id": "hip-2", "url": "/data/Acme/Mini/Base/Mini.dsf#hip", "parent": "#Mini-2"},
        {"id": "arm-2", "url": "/data/Acme/Mini/Base/Mini.dsf#arm", "parent": "#hip-2",
         "rotation": [{"id": "x", "current_value": 10}, {"id": "z", "current_value": -90}]}]}})";
    WriteBytes(_library / "People/Two.duf", instances);
    ASSERT_TRUE(open(_library / "People/Two.duf"));
    const DzNode* const first = dzScene->findNodeByLabel(QStringLiteral("First"));
    const DzNode* const second = dzScene->findNodeByLabel(QStringLiteral("Second"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(dzScene->getNumNodes(), 6);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 2);
    EXPECT_EQ(dzScene->getPrimarySelection(), first);
    ExpectAt(VertexAt(*first, 8), 20, 20, 0);
    ExpectAt(VertexAt(*second, 8), 20, -20, 50);
    EXPECT_EQ(first->findNodeChild(QStringLiteral("arm"), true)->getXRotControl()->getValue(), 0.0f);
}

TEST_F(LoadedFigure, opened_twice_has_another_label)
{
    ASSERT_NE(openMini(), nullptr);
    DzFigure* const second = openMini();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->getLabel(), QStringLiteral("Mini (2)"));
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
}

TEST_F(LoadedFigure, that_is_missing_or_broken_leaves_the_scene_as_it_was)
{
    ASSERT_NE(openMini(), nullptr);
    const DzNode* const before = dzScene->getPrimarySelection();
    const fs::path figure = _library / "data/Acme/Mini/Base/Mini.dsf";
    struct Case {
        std::string bytes;
        const char* message;
    };
    const Case cases[] = {{"", "Mini.dsf: is empty"},
                          {"{}", "Mini.dsf: is not a DSON file: it has no file_version"},
                          {"{\"file_version\": \"0.6.0.0\"}", "Mini.dsf: has no node Mini"}};
    for (const Case& one : cases) {
        WriteBytes(figure, one.bytes);
        EXPECT_FALSE(open(_library / "People/Mini.duf"));
        EXPECT_TRUE(log().contains(QString::fromUtf8(one.message))) << log().toStdString();
        EXPECT_TRUE(log().contains(QStringLiteral("Mini.duf: none of its figures could be loaded")));
        EXPECT_EQ(dzScene->getNumNodes(), 3);
        EXPECT_EQ(dzScene->getPrimarySelection(), before);
    }
    fs::remove(figure);
    EXPECT_FALSE(open(_library / "People/Mini.duf"));
    EXPECT_TRUE(
        log().contains(QStringLiteral("Mini.duf: /data/Acme/Mini/Base/Mini.dsf is in no content library")));
    EXPECT_FALSE(open(_library / "People/None.duf"));
    EXPECT_TRUE(log().contains(QStringLiteral("None.duf: there is no such file")));
    EXPECT_EQ(dzScene->getNumNodes(), 3);
}
