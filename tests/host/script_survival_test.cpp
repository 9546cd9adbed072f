// Scripts that hand the host what it does not expect.
// SPDX-License-Identifier: MIT

#include "dzscript.h"

#include "dzerclink.h"
#include "dzfloatproperty.h"
#include "dzmorph.h"
#include "dznode.h"
#include "dzobject.h"
#include "openhost/diagnostics.h"
#include "tests/host/host_fixture.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>

namespace {

class ScriptSurvivalTest : public HostTest {
protected:
    /// What the code's last statement says, or the error.
    static std::string textOf(const std::string& code)
    {
        DzScript script;
        script.setCode(QString::fromStdString(code));
        return script.execute() ? script.result().toString().toStdString()
                                : script.errorMessage().toStdString();
    }
};

TEST_F(ScriptSurvivalTest, options_that_are_null_are_refused)
{
    EXPECT_EQ(textOf("var found = [], settings = [null, undefined, new DzNode()];"
                     "var all = [App.getImportMgr().getImporter(0), App.getExportMgr().getExporter(0)];"
                     "for (var i = 0; i < App.getAssetIOMgr().getNumAssetFilters(); ++i)"
                     "    all.push(App.getAssetIOMgr().getAssetFilter(i));"
                     "for (var i in all) for (var j in settings) {"
                     "    all[i].getDefaultOptions(settings[j]);"
                     "    found.push(all[i].getOptions(settings[j], false, 'x'));"
                     "    if (all[i].doSave) found.push(all[i].doSave(settings[j], 'x', '') == 0);"
                     "}"
                     "found.length > 20 && found.indexOf(true) < 0"),
              "true");
}

TEST_F(ScriptSurvivalTest, a_number_that_is_no_way_to_open_a_scene_opens_none)
{
    EXPECT_EQ(textOf("Scene.addNode(new DzNode()); Scene.loadScene('none.duf', -1)"),
              "RangeError: -1 is no DzOpenMethod");
    EXPECT_EQ(textOf("Scene.getNumNodes()"), "1");
    EXPECT_EQ(textOf("Scene.loadScene('none.duf', 3e9)"), "RangeError: 3000000000 is no DzOpenMethod");
}

TEST_F(ScriptSurvivalTest, a_line_stands_where_anybody_could_write_it)
{
    EXPECT_EQ(textOf("var script = new DzScript();"
                     "for (var i in [-5, 1e9, 2147483647]) script.addLine('1;', [-5, 1e9, 2147483647][i]);"
                     "script.getCode().length < 10000 && script.execute() && script.result()"),
              "1");
}

TEST_F(ScriptSurvivalTest, a_node_and_a_camera_keep_the_properties_they_are_built_upon)
{
    EXPECT_EQ(textOf("var kept = [], nodes = [new DzNode(), new DzBasicCamera()];"
                     "for (var i in nodes) {"
                     "    Scene.addNode(nodes[i]);"
                     "    var all = nodes[i].getPropertyList();"
                     "    for (var j in all) nodes[i].removeProperty(all[j]);"
                     "    kept.push(all.length > 9 && nodes[i].getNumProperties() == all.length);"
                     "}"
                     "kept.join() + nodes[0].getXPosControl().getValue()"),
              "true,true0");
}

TEST_F(ScriptSurvivalTest, a_morph_keeps_its_dial)
{
    EXPECT_EQ(
        textOf(
            "var morph = new DzMorph(); morph.setName('Smile');"
            "morph.removeProperty(morph.getValueControl());"
            "morph.setLabel('Grin'); [morph.getNumProperties(), morph.getValueControl().getLabel()].join()"),
        "1,Grin");
}

TEST_F(ScriptSurvivalTest, scripts_that_run_each_other_for_ever_end)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_EQ(textOf("var code = 'var next = new DzScript(); next.setCode(getArguments()[0]);'"
                     "    + 'next.call(\"none\", getArguments()) || next.errorMessage();';"
                     "var next = new DzScript(); next.setCode(code); next.execute([code]); 'lived'"),
              "lived");
    ASSERT_FALSE(met.all().empty());
    EXPECT_EQ(base::ToLine(met.all()[0]), "script: more than 8 scripts run each other");
}

TEST_F(ScriptSurvivalTest, a_result_that_is_too_deep_is_left_out)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_EQ(
        textOf("var deep = {}; for (var i = 0; i < 1e6; ++i) deep = i % 2 ? {held: deep} : [deep]; deep"),
        "");
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(base::ToLine(met.all()[0]), "script: its result is nested too deeply and is left out");
    DzScript script;
    script.setCode(
        QLatin1String("var all = []; all.push(all); for (var i = 0; i < 5000; ++i) all.push({a: [i]}); all"));
    ASSERT_TRUE(script.execute());
    EXPECT_EQ(script.result().toList().size(), 5001) << "neither long nor ringed is deep";
}

TEST_F(ScriptSurvivalTest, a_result_names_no_object_that_went_with_its_script)
{
    DzScript script;
    script.setCode(
        QLatin1String("Scene.addNode(new DzNode()); [Scene.getNode(0), new DzNode(), {held: new DzNode()}]"));
    ASSERT_TRUE(script.execute());
    QVariantList all = script.result().toList();
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(all[0].value<QObject*>(), dzScene->getNode(0));
    EXPECT_EQ(all[1].value<QObject*>(), nullptr);
    EXPECT_EQ(all[2].toMap().value(QLatin1String("held")).value<QObject*>(), nullptr);
    dzScene->clear();
    TestHost().purge();
    EXPECT_EQ(script.result().toList()[0].value<QObject*>(), nullptr);
}

TEST_F(ScriptSurvivalTest, files_that_open_each_other_for_ever_end)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    const QTemporaryDir folder;
    QFile file(folder.filePath(QLatin1String("chair.duf")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"file_version": "0.6.0.0", "asset_info": {"id": "/chair.duf", "type": "scene"},
        "node_library": [{"id": "Chair", "type": "node"}],
        "scene": {"nodes": [{"id": "Chair-1", "url": "#Chair"}]}})");
    file.close();
    const std::string code = "var file = '" + file.fileName().toStdString() +
                             "', opened = 0;"
                             "function open() { return App.getContentMgr().openFile(file, true); }"
                             "Scene.sceneLoaded.connect(function () { if (open()) ++opened; });"
                             "[open(), opened, Scene.getNumNodes()].join()";
    EXPECT_EQ(textOf(code), "true,7,8");
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(base::ToLine(met.all()[0]),
              file.fileName().toStdString() + ": more than 8 files open each other");
}

/// A chair with a shape and a dial of its own, which scripts cannot make.
DzFloatProperty* AddChair()
{
    auto* const chair = new DzNode;
    auto* const size = new DzFloatProperty(QStringLiteral("Size"), true, true);
    chair->addProperty(size);
    chair->setObject(new DzObject);
    dzScene->addNode(chair);
    return size;
}

TEST_F(ScriptSurvivalTest, who_hears_of_a_thing_may_take_it_away)
{
    AddChair();
    EXPECT_EQ(textOf("var object = Scene.getNode(0).getObject(), told = [], morph = new DzMorph();"
                     "object.modifierAdded.connect(function (one) { object.removeModifier(one); });"
                     "object.modifierAdded.connect(function (one) { told.push(one === morph); });"
                     "object.addModifier(morph); told.concat(object.getNumModifiers()).join()"),
              "true,0");
    EXPECT_EQ(
        textOf("var node = Scene.getNode(0), size = node.findProperty('Size'), told = [];"
               "size.currentValueChanged.connect(function () { told.push(node.removeProperty(size)); });"
               "size.setValue(2); told.concat(node.findProperty('Size'), size.getValue()).join()"),
        "0,,2");
    TestHost().purge();
    EXPECT_EQ(dzScene->getNumNodes(), 1);
}

TEST_F(ScriptSurvivalTest, what_was_taken_away_goes_with_the_script_unless_it_was_put_elsewhere)
{
    const QPointer<DzFloatProperty> size = AddChair(), other = AddChair();
    const QPointer<DzNode> chair = dzScene->getNode(0), stool = dzScene->getNode(1);
    EXPECT_EQ(
        textOf("var chair = Scene.getNode(0), stool = Scene.getNode(1), size = chair.findProperty('Size');"
               "stool.removeProperty(stool.findProperty('Size'));"
               "chair.removeProperty(size); stool.addProperty(size);"
               "Scene.removeNode(stool); Scene.addNode(stool); Scene.removeNode(chair); chair.getLabel()"),
        "");
    EXPECT_FALSE(other);
    EXPECT_FALSE(chair);
    ASSERT_TRUE(stool);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->getOwner(), stool);
    TestHost().purge();
    EXPECT_EQ(dzScene->getNode(0), stool);
}

TEST_F(ScriptSurvivalTest, what_was_taken_away_drives_nothing_any_more)
{
    DzFloatProperty* const size = AddChair();
    auto* const smile = new DzMorph;
    dzScene->getNode(0)->getObject()->addModifier(smile);
    auto* const height = new DzFloatProperty(QStringLiteral("Height"), true, true);
    dzScene->getNode(0)->addProperty(height);
    height->insertController(new DzERCLink(DzERCLink::ERCDeltaAdd, smile->getValueControl(), 1.0, 0.0));
    height->insertController(new DzERCLink(DzERCLink::ERCDeltaAdd, size, 1.0, 0.0));
    smile->getValueControl()->setValue(1.0f);
    size->setValue(2.0f);
    EXPECT_EQ(
        textOf(
            "var node = Scene.getNode(0), height = node.findProperty('Height'), found = [height.getValue()];"
            "node.getObject().removeModifier(node.getObject().getModifier(0));"
            "found.push(height.getValue()); node.removeProperty(node.findProperty('Size'));"
            "found.concat(height.getValue(), height.getNumControllers()).join()"),
        "3,2,0,0");
}

TEST_F(ScriptSurvivalTest, a_node_that_leaves_is_not_selected_again)
{
    const std::string code = "var node = Scene.getNode(0), again = 0; node.select(true);"
                             "Scene.nodeSelectionListChanged.connect(function () {"
                             "    if (++again < 5) node.select(true);"
                             "});"
                             "Scene.aboutToRemoveNode.connect(function () { Scene.removeNode(node); });"
                             "Scene.removeNode(node);"
                             "[again > 1, Scene.getNumSelectedNodes(), node.isSelected()].join()";
    dzScene->addNode(new DzNode);
    EXPECT_EQ(textOf(code), "true,0,false");
    dzScene->addNode(new DzNode);
    dzScene->getNode(0)->addNodeChild(new DzNode);
    EXPECT_EQ(textOf(code), "true,0,false") << "with another below it";
}

TEST_F(ScriptSurvivalTest, a_node_that_left_is_not_told_of_as_new)
{
    int told = 0;
    const QObject listener;
    QObject::connect(dzScene, &DzScene::nodeAdded, &listener, [&] {
        ++told;
        dzScene->clear();
    });
    EXPECT_EQ(textOf("var chair = new DzNode(); chair.addNodeChild(new DzNode()); Scene.addNode(chair);"
                     "chair.select(true); Scene.getNumSelectedNodes()"),
              "0");
    EXPECT_EQ(told, 1);
    EXPECT_EQ(dzScene->getNumNodes(), 0);
}

TEST_F(ScriptSurvivalTest, what_a_node_is_built_upon_keeps_its_name_in_files)
{
    EXPECT_EQ(
        textOf("var node = new DzNode(), x = node.getXPosControl(); Scene.addNode(node);"
               "x.setName('Left'); x.setName('Right'); x.kept = node;"
               "[x.kept === node, node.findProperty('XTranslate') === x, node.removeProperty(x)].join()"),
        "true,true,1");
}

TEST_F(ScriptSurvivalTest, a_text_with_a_nul_is_refused_where_it_stands)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    DzScript script;
    script.setCode(QLatin1String("var a = 1;\nvar b = 2; ") + QChar(QChar::Null) +
                   QLatin1String("\nthrow 'never read';"));
    EXPECT_FALSE(script.checkSyntax());
    EXPECT_FALSE(script.execute());
    EXPECT_EQ(script.errorLine(), 2);
    EXPECT_EQ(script.errorMessage(), QLatin1String("character 12 is a NUL, which no script can hold"));
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(base::ToLine(met.all()[0]), "script, line 2: character 12 is a NUL, which no script can hold");
}

} // namespace
