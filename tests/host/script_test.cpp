// Scripts and what they find in the host.
// SPDX-License-Identifier: MIT

#include "dzscript.h"

#include "dzfloatproperty.h"
#include "dznode.h"
#include "openhost/class_registry.h"
#include "openhost/diagnostics.h"
#include "tests/host/host_fixture.h"

#include <QFile>
#include <QTimer>

namespace {

class ScriptTest : public HostTest {
protected:
    /// The value of the code's last statement, after a run that must succeed.
    static QVariant valueOf(const char* code)
    {
        DzScript script;
        script.setCode(QString::fromUtf8(code));
        EXPECT_TRUE(script.execute()) << code << ": " << script.errorMessage().toStdString();
        return script.result();
    }

    static std::string textOf(const char* code) { return valueOf(code).toString().toStdString(); }

    static DzNode* addNode(const char* label)
    {
        auto* const node = new DzNode;
        node->setName(QLatin1String(label));
        node->setLabel(QLatin1String(label));
        dzScene->addNode(node);
        return node;
    }
};

TEST_F(ScriptTest, gives_the_value_of_its_last_statement)
{
    EXPECT_EQ(valueOf("var a = 2; a * 21;").toInt(), 42);
    EXPECT_EQ(textOf("'Gr\xC3\xBC\xC3\x9F' + 'e'"), "Gr\xC3\xBC\xC3\x9F"
                                                    "e");
    EXPECT_EQ(valueOf("[1, 2, 3]").toList().size(), 3);
}

TEST_F(ScriptTest, finds_the_scene_and_its_nodes)
{
    DzNode* const chair = addNode("Chair");
    dzScene->setPrimarySelection(chair);
    EXPECT_EQ(valueOf("Scene.getNumNodes()").toInt(), 1);
    EXPECT_EQ(textOf("Scene.getPrimarySelection().getLabel()"), "Chair");
    EXPECT_TRUE(valueOf("Scene.findNodeByLabel('Chair').inherits('DzNode')").toBool());
    EXPECT_FALSE(valueOf("Scene.findNodeByLabel('Chair').inherits('DzFigure')").toBool());
    EXPECT_TRUE(valueOf("Scene.findNodeByLabel('Table') === null").toBool());
}

TEST_F(ScriptTest, reaches_viewports_tools_styles_and_render_options)
{
    EXPECT_EQ(textOf("MainWindow.getViewportMgr().findTool('DzPickTool').className()"), "DzPickTool");
    EXPECT_EQ(textOf("var view = MainWindow.getViewportMgr().getActiveViewport().get3DViewport();"
                     "view.setUserDrawStyle('Hidden Line'); view.getDrawStyle().getDescription()"),
              "Hidden Line");
    EXPECT_EQ(textOf("var camera = new DzBasicCamera(); Scene.addNode(camera);"
                     "var view = MainWindow.getViewportMgr().getActiveViewport().get3DViewport();"
                     "view.setCamera(camera); view.getCamera().getLabel()"),
              "Camera");
    EXPECT_EQ(textOf("var options = App.getRenderMgr().getRenderOptions();"
                     "options.imageSize = {width: 320, height: 200};"
                     "options.imageSize.width + 'x' + options.imageSize.height"),
              "320x200");
}

TEST_F(ScriptTest, moves_a_dial)
{
    DzNode* const chair = addNode("Chair");
    valueOf("Scene.findNode('Chair').findProperty('XTranslate').setValue(12.5)");
    EXPECT_EQ(qobject_cast<DzFloatProperty*>(chair->findProperty(QLatin1String("XTranslate")))->getValue(),
              12.5f);
}

TEST_F(ScriptTest, reaches_the_main_windows_managers)
{
    EXPECT_TRUE(valueOf("MainWindow.getActionMgr().findAction('DzDeleteAction') != null").toBool());
    EXPECT_TRUE(valueOf("MainWindow.getPaneMgr().findPane('NoSuchPane') === null").toBool());
}

TEST_F(ScriptTest, makes_objects_and_knows_the_enumerations_of_their_classes)
{
    EXPECT_EQ(valueOf("DzMorphLoader.PrimaryNode").toInt(), 2);
    EXPECT_EQ(valueOf("DzMorphLoader.SingleSkinFigure").toInt(), 3);
    EXPECT_EQ(valueOf("DzERCLink.ERCMultiply").toInt(), 3);
    EXPECT_EQ(textOf("var s = new DzFileIOSettings(); s.setStringValue('a', 'b'); s.getStringValue('a')"),
              "b");
    EXPECT_FALSE(valueOf("new DzFileIOSettings().fromString('{')").toBool());
}

TEST_F(ScriptTest, deletes_what_it_made_unless_the_scene_took_it)
{
    valueOf("var kept = new DzNode(); kept.setName('Kept'); Scene.addNode(kept); var lost = new DzNode();");
    ASSERT_EQ(dzScene->getNumNodes(), 1);
    EXPECT_EQ(dzScene->getNode(0)->getName().toStdString(), "Kept");
}

/// Counts those that live.
class CountedTimer : public QTimer {
public:
    CountedTimer()
    {
        ++alive;
        ++made;
    }
    ~CountedTimer() override { --alive; }
    static int alive, made;
};
int CountedTimer::alive = 0;
int CountedTimer::made = 0;

class CountedTimerFactory : public DzClassFactory {
public:
    CountedTimerFactory() : DzClassFactory(&QTimer::staticMetaObject, DzGuid()) {}
    QObject* createInstance() const override { return new CountedTimer; }
    QObject* createInstance(const QVariantList&) const override { return new CountedTimer; }
};

TEST_F(ScriptTest, deletes_what_nobody_took_when_the_run_ends)
{
    static const CountedTimerFactory factory;
    openhost::RegisterClassFactory(&factory);
    EXPECT_EQ(valueOf("var a = new QTimer(); var b = new QTimer(); 7").toInt(), 7);
    EXPECT_EQ(CountedTimer::made, 2);
    EXPECT_EQ(CountedTimer::alive, 0);
}

TEST_F(ScriptTest, starts_each_run_with_nothing_of_the_one_before)
{
    valueOf("var left = 1;");
    EXPECT_EQ(textOf("typeof left"), "undefined");
}

TEST_F(ScriptTest, tells_the_line_and_the_text_of_an_error)
{
    DzScript script;
    script.setCode(QLatin1String("var a = 1;\nvar b = a +\n  missing;\n"));
    EXPECT_FALSE(script.execute());
    EXPECT_EQ(script.errorMessage().toStdString(), "ReferenceError: Can't find variable: missing");
    EXPECT_EQ(script.errorLine(), 3);
    EXPECT_FALSE(script.stackTrace().isEmpty());
    EXPECT_FALSE(script.result().isValid());
    EXPECT_TRUE(LogText().contains(QLatin1String("line 3: ReferenceError: Can't find variable: missing")));
}

TEST_F(ScriptTest, finds_an_error_of_syntax_without_running)
{
    DzScript script;
    script.setCode(QLatin1String("Scene.clear();\nif (\n"));
    addNode("Chair");
    EXPECT_FALSE(script.checkSyntax());
    EXPECT_GE(script.errorLine(), 2);
    EXPECT_EQ(dzScene->getNumNodes(), 1);
    script.setCode(QLatin1String("1 + 1"));
    EXPECT_TRUE(script.checkSyntax());
}

TEST_F(ScriptTest, calls_a_function_with_arguments)
{
    DzScript script;
    script.addLine(QLatin1String("function join(a, b, c)"));
    script.addLine(QLatin1String("{"));
    script.addLine(QLatin1String("return a + '-' + b + '-' + c;"), 1);
    script.addLine(QLatin1String("}"));
    EXPECT_TRUE(script.call(QLatin1String("join"), {QLatin1String("x"), true, 1.5}));
    EXPECT_EQ(script.result().toString().toStdString(), "x-true-1.5");
    EXPECT_FALSE(script.call(QLatin1String("nope"), {}));
    EXPECT_EQ(script.errorMessage().toStdString(), "there is no function nope");
}

TEST_F(ScriptTest, hands_arguments_to_the_whole_script)
{
    DzScript script;
    script.setCode(QLatin1String("getArguments().join('+')"));
    EXPECT_TRUE(script.execute({QLatin1String("a"), 2}));
    EXPECT_EQ(script.result().toString().toStdString(), "a+2");
}

TEST_F(ScriptTest, is_read_from_a_file_and_named_by_it_in_errors)
{
    for (const char* const name : {"/broken.dsa", "/50%2 off, %3.dsa"}) {
        const QString path = TestFolder() + QLatin1String(name);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("throw 'no luck';");
        file.close();
        DzScript script;
        EXPECT_FALSE(script.loadFromFile(TestFolder() + QLatin1String("/missing.dsa")));
        ASSERT_TRUE(script.loadFromFile(path));
        EXPECT_FALSE(script.execute());
        EXPECT_EQ(script.errorMessage().toStdString(), "no luck");
        EXPECT_TRUE(LogText().contains(path + QLatin1String(", line 1: no luck"))) << LogText().toStdString();
    }
}

TEST_F(ScriptTest, that_never_ends_is_ended_by_its_time_limit_and_leaves_the_host_working)
{
    addNode("Chair");
    DzScript script;
    script.setTimeLimit(200);
    script.setCode(QLatin1String("Scene.getNode(0).setVisible(false); while (true) {}"));
    EXPECT_FALSE(script.execute());
    EXPECT_EQ(script.errorMessage().toStdString(), "the script was stopped after 0.2 s");
    EXPECT_FALSE(dzScene->getNode(0)->isVisible());
    EXPECT_EQ(valueOf("1 + 1").toInt(), 2);
}

TEST_F(ScriptTest, that_sleeps_is_ended_too)
{
    DzScript script;
    script.setTimeLimit(100);
    script.setCode(QLatin1String("sleep(1000000)"));
    EXPECT_FALSE(script.execute());
}

TEST_F(ScriptTest, is_stopped_from_outside)
{
    QTimer::singleShot(50, [] { DzScript::stopAll(); });
    DzScript script;
    script.setCode(QLatin1String("while (true) {}"));
    EXPECT_FALSE(script.execute());
    EXPECT_EQ(script.errorMessage().toStdString(), "the script was stopped");
    EXPECT_EQ(valueOf("1 + 1").toInt(), 2);
}

TEST_F(ScriptTest, evaluates_with_an_objects_members_in_reach)
{
    DzNode* const chair = addNode("Chair");
    EXPECT_EQ(DzScript::evaluate(QLatin1String("getLabel() + '!'"), chair).toString().toStdString(),
              "Chair!");
    EXPECT_FALSE(DzScript::evaluate(QLatin1String("missing")).isValid());
}

TEST_F(ScriptTest, writes_to_the_log)
{
    valueOf("App.log('from App'); debug('from debug');");
    EXPECT_TRUE(LogText().contains(QLatin1String("from App")));
    EXPECT_TRUE(LogText().contains(QLatin1String("DEBUG: from debug")));
}

TEST_F(ScriptTest, answers_a_question_by_itself_without_display)
{
    EXPECT_EQ(valueOf("MessageBox.question('Go on?', 'Title', '&Yes', '&No')").toInt(), 1);
    EXPECT_EQ(valueOf("MessageBox.information('Done.', 'Title', '&OK')").toInt(), 0);
    EXPECT_TRUE(LogText().contains(QLatin1String("not shown without display: Title: Go on?")));
}

TEST_F(ScriptTest, shows_progress_that_ends_with_the_run)
{
    const Recorder recorder;
    valueOf("startProgress('working', 3, true, false); stepProgress(); setProgressInfo('still working');");
    EXPECT_EQ(recorder.lines, (std::vector<std::string>{"progress working", "progress still working"}));
    EXPECT_EQ(valueOf("startProgress('again', 1); progressIsCancelled()").toBool(), false);
}

TEST_F(ScriptTest, cannot_delete_what_is_the_hosts)
{
    addNode("Chair");
    for (const char* const object :
         {"Scene", "App", "MainWindow", "Scene.getNode(0)", "Scene.getNodeList()[0]",
          "Scene.getNode(0).getXPosControl()", "MainWindow.getActionMgr().findAction('DzDeleteAction')",
          "App.getContentMgr()", "MainWindow.getViewportMgr().getPerspectiveView()", "new DzNode()"})
        EXPECT_EQ(textOf((std::string("typeof ") + object + ".deleteLater").c_str()), "undefined") << object;
    EXPECT_EQ(valueOf("Scene.getNodeList().length").toInt(), 1);
}

TEST_F(ScriptTest, leaves_no_busy_cursor_behind_and_takes_none_away)
{
    dzApp->setBusyCursor();
    valueOf("clearBusyCursor(); clearBusyCursor(); setBusyCursor(); setBusyCursor();");
    EXPECT_NE(QApplication::overrideCursor(), nullptr) << "the host's own";
    dzApp->clearBusyCursor();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ScriptTest, that_walks_through_too_long_an_array_gets_an_error_and_the_host_lives)
{
    const char* const calls[] = {
        "new Array(1e9).sort()",
        "new Array(4294967295).join()",
        "'' + new Array(4294967295)",
        "[].concat(new Array(1e9))",
        "new Array(1e9).map(function (x) { return x; })",
        "Array.prototype.reverse.call({length: 4294967295})",
        "new Array(10000001).unshift(1)",
    };
    for (const char* const call : calls) {
        DzScript script;
        script.setCode(QStringLiteral("var a = 1;\n%1;").arg(QLatin1String(call)));
        EXPECT_FALSE(script.execute()) << call;
        EXPECT_EQ(script.errorMessage().toStdString().compare(0, 24, "RangeError: an array of "), 0)
            << call << ": " << script.errorMessage().toStdString();
        EXPECT_EQ(script.errorLine(), 2) << call;
    }
    EXPECT_EQ(textOf("try { new Array(4294967295).sort(); } catch (error) { error.message; }"),
              "an array of 4294967295 elements is too long; at most 10000000 are taken");
}

TEST_F(ScriptTest, whose_value_is_too_long_an_array_has_none)
{
    const openhost::DiagnosticsCollector met(dzApp->diagnostics());
    EXPECT_FALSE(valueOf("new Array(4294967295)").isValid());
    ASSERT_EQ(met.all().size(), 1u);
    EXPECT_EQ(base::ToLine(met.all()[0]), "script: its result is too long an array and is left out");
}

TEST_F(ScriptTest, whose_value_holds_too_much_has_none)
{
    for (const auto& [code, what] : {
             std::pair("[1, [new Array(4294967295)]]", "holds too long an array"),
             std::pair("({here: {there: new Array(4294967295)}})", "holds too long an array"),
             std::pair("[new Array(6000000), new Array(6000000)]", "holds too long an array"),
             std::pair("var a = []; for (var i = 0; i < 2000; ++i) a = [a]; a", "is nested too deeply"),
         }) {
        const openhost::DiagnosticsCollector met(dzApp->diagnostics());
        EXPECT_FALSE(valueOf(code).isValid()) << code;
        ASSERT_EQ(met.all().size(), 1u) << code;
        EXPECT_EQ(base::ToLine(met.all()[0]), std::string("script: its result ") + what + " and is left out");
    }
    EXPECT_EQ(valueOf("[1, [2, {three: [3]}]]")
                  .toList()
                  .at(1)
                  .toList()
                  .at(1)
                  .toMap()
                  .value(QStringLiteral("three")),
              QVariantList{3});
    EXPECT_EQ(
        valueOf("var round = {one: 1}; round.again = round; round").toMap().value(QStringLiteral("one")), 1);
}

TEST_F(ScriptTest, uses_arrays_as_ever)
{
    EXPECT_EQ(textOf("[3, 1, 2].sort() + ' ' + [3, 1, 2].sort(function (a, b) { return b - a; })"),
              "1,2,3 3,2,1");
    EXPECT_EQ(textOf("[1, [2, 3]].concat([4], 5).slice(1).join('-')"), "2,3-4-5");
    EXPECT_EQ(textOf("var a = [1, 2, 3]; a.splice(1, 1, 'x', 'y'); a.reverse().toString()"), "3,y,x,1");
    EXPECT_EQ(valueOf("[1, 2, 3].reduce(function (a, b) { return a + b; })").toInt(), 6);
    EXPECT_EQ(textOf("var names = []; for (var name in [7]) names.push(name); names.join()"), "0")
        << "no method is listed";
    EXPECT_EQ(textOf("try { [2, 1].sort(function () { throw 'mine'; }); } catch (error) { 'got ' + error; }"),
              "got mine");
    EXPECT_EQ(valueOf("Array.prototype.sort.length + Array.prototype.slice.length").toInt(), 3);
    EXPECT_EQ(valueOf("new Array(10000000).join('').length").toInt(), 0);
}

TEST_F(ScriptTest, that_calls_itself_for_ever_ends_with_an_error)
{
    DzScript script;
    script.setCode(QLatin1String("function deeper(n) { return deeper(n + 1) + 1; } deeper(0);"));
    EXPECT_FALSE(script.execute());
    EXPECT_FALSE(script.errorMessage().isEmpty());
    EXPECT_EQ(valueOf("1 + 1").toInt(), 2);
}

TEST_F(ScriptTest, that_hands_one_thing_to_two_owners_is_refused_the_second)
{
    valueOf("var p = new DzNode(); var q = new DzNode(); Scene.addNode(p); Scene.addNode(q);"
            "p.addNodeChild(q); q.addNodeChild(p); Scene.addNode(p); p.addNodeChild(p);");
    EXPECT_EQ(dzScene->getNumNodes(), 2);
    TestHost().purge();
    EXPECT_EQ(dzScene->getNode(0)->getNumNodeChildren(), 1);
}

} // namespace
