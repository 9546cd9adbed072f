// Signals of the host's objects in scripts.
// SPDX-License-Identifier: MIT

#include "dzscript.h"

#include "dznode.h"
#include "tests/host/host_fixture.h"

namespace {

class ScriptSignalTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        _node = new DzNode;
        _node->setName(QLatin1String("Chair"));
        dzScene->addNode(_node);
    }

    /// What the code's last statement says, with the node as `node`.
    static std::string textOf(const std::string& code)
    {
        DzScript script;
        script.setCode(QStringLiteral("var node = Scene.getNode(0), heard = [];\n"
                                      "function hear(what) { heard.push(what); }\n") +
                       QString::fromStdString(code));
        return script.execute() ? script.result().toString().toStdString()
                                : script.errorMessage().toStdString();
    }

    DzNode* _node = nullptr;
};

TEST_F(ScriptSignalTest, are_sent_by_the_host_alone)
{
    int sent = 0;
    const QObject listener;
    QObject::connect(dzScene, &DzScene::nodeAdded, &listener, [&] { ++sent; });
    QObject::connect(dzScene, &QObject::destroyed, &listener, [&] { ++sent; });
    const char* const calls[] = {"Scene.nodeAdded(null)", "Scene['nodeAdded(DzNode*)'](null)",
                                 "var send = Scene.nodeAdded; send(node)", "Scene.nodeAdded.call(Scene, 5)"};
    for (const char* const call : calls)
        EXPECT_EQ(textOf(call),
                  "TypeError: only the host sends the signal nodeAdded(DzNode*); a script can connect to it")
            << call;
    EXPECT_EQ(textOf("Scene.destroyed(Scene)"),
              "TypeError: only the host sends the signal destroyed(QObject*); a script can connect to it");
    EXPECT_EQ(sent, 0);
    EXPECT_EQ(dzScene->getNumNodes(), 1);
}

TEST_F(ScriptSignalTest, are_not_sent_through_objects_that_signals_or_widgets_hand_out)
{
    EXPECT_EQ(
        textOf("Scene.nodeAdded.connect(function (added) {"
               "    try { added.removed(); } catch (error) { hear(error.name + typeof added.deleteLater); }"
               "});"
               "Scene.addNode(new DzNode()); heard.join()"),
        "TypeErrorundefined");
    for (const char* const call : {"MessageBox.destroyed()", "Scene.__proto__.destroyed()"})
        EXPECT_EQ(textOf(call).compare(0, 30, "TypeError: only the host sends"), 0) << call;
}

TEST_F(ScriptSignalTest, reach_functions_until_they_are_disconnected)
{
    EXPECT_EQ(textOf("node.labelChanged.connect(hear); node.setLabel('one');"
                     "node.labelChanged.disconnect(hear); node.setLabel('two'); heard.join()"),
              "one");
    EXPECT_EQ(textOf("node['labelChanged(QString)'].connect(hear); node.setLabel('three'); heard.join()"),
              "three");
    EXPECT_EQ(textOf("var other = {name: 'other', hear: function (what) { hear(this.name + what); }};"
                     "node.labelChanged.connect(other, other.hear); node.setLabel('4');"
                     "node.labelChanged.disconnect(other, other.hear);"
                     "node.labelChanged.connect(other, 'hear'); node.setLabel('5'); heard.join()"),
              "other4,other5");
    EXPECT_EQ(textOf("var other = new DzNode(); node.labelChanged.connect(other, other.setLabel);"
                     "node.setLabel('six'); other.getLabel()"),
              "six");
}

TEST_F(ScriptSignalTest, are_connected_to_functions_only)
{
    EXPECT_EQ(textOf("node.labelChanged.connect(5)"),
              "TypeError: what is to hear the signal is not a function");
    EXPECT_EQ(textOf("node.labelChanged.connect(node, 'missing')"),
              "TypeError: what is to hear the signal is not a function");
    EXPECT_EQ(textOf("node.labelChanged.disconnect(hear)"), "Error: the signal is not connected to that");
    EXPECT_EQ(textOf("var connect = node.labelChanged.connect; connect(hear)"),
              "TypeError: this is no signal of an object that exists");
}

} // namespace
