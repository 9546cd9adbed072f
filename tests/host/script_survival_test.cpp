// Scripts that hand the host what it does not expect.
// SPDX-License-Identifier: MIT

#include "dzscript.h"

#include "dzfloatproperty.h"
#include "dznode.h"
#include "openhost/diagnostics.h"
#include "tests/host/host_fixture.h"

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

TEST_F(ScriptSurvivalTest, a_morph_lives_without_its_dial)
{
    EXPECT_EQ(textOf("var morph = new DzMorph(); morph.setName('Smile');"
                     "var removed = morph.removeProperty(morph.getValueControl());"
                     "morph.setLabel('Grin'); [removed, morph.getValueControl(), morph.getLabel()].join()"),
              "0,,Grin");
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

} // namespace
