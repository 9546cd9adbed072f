// The Script IDE pane, by mouse and keys.
// SPDX-License-Identifier: MIT

#include "host/ui/script_pane.h"

#include "dzscene.h"
#include "tests/host/host_fixture.h"
#include "tests/windows/picture.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

class ScriptPaneTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        pane.reset(new DzScriptPane);
        pane->resize(520, 420);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
    }
    void TearDown() override { pane.reset(); }

    QPlainTextEdit& editor() const { return *pane->findChild<QPlainTextEdit*>(QStringLiteral("Code")); }
    QPushButton& button(const char* text) const
    {
        for (QPushButton* const button : pane->findChildren<QPushButton*>())
            if (button->text() == QLatin1String(text))
                return *button;
        throw std::runtime_error(text);
    }
    void run(const char* code)
    {
        pane->setCode(QLatin1String(code));
        QTest::mouseClick(&button("Run"), Qt::LeftButton);
    }
    std::string output() const { return pane->getOutput().toStdString(); }

    std::unique_ptr<DzScriptPane> pane;
};

TEST_F(ScriptPaneTest, runs_what_was_typed)
{
    QTest::keyClicks(&editor(), QStringLiteral("6 * 7"));
    QTest::mouseClick(&button("Run"), Qt::LeftButton);
    EXPECT_EQ(output(), "= 42");
    EXPECT_EQ(pane->getErrorLine(), -1);
}

TEST_F(ScriptPaneTest, shows_what_a_script_prints)
{
    run("print('one', 2);\ndebug('three');\nundefined;");
    EXPECT_EQ(output(), "one 2\nthree");
    run("print('again'); undefined;");
    EXPECT_EQ(output(), "again") << "each run begins anew";
}

TEST_F(ScriptPaneTest, drives_the_scene)
{
    run("var node = new DzNode(); node.setLabel('Chair'); Scene.addNode(node);");
    EXPECT_NE(dzScene->findNodeByLabel(QStringLiteral("Chair")), nullptr);
}

TEST_F(ScriptPaneTest, marks_the_line_that_failed)
{
    run("var a = 1;\nvar b = a.nothing.more;\nvar c = 2;");
    EXPECT_EQ(pane->getErrorLine(), 2);
    EXPECT_EQ(output().substr(0, 19), "line 2: TypeError: ") << output();
    ASSERT_EQ(editor().extraSelections().size(), 1);
    EXPECT_EQ(editor().extraSelections().first().cursor.blockNumber(), 1);
    EXPECT_EQ(editor().textCursor().blockNumber(), 1);
    SavePicture(*pane, "script_pane_error");
    QTest::keyClicks(&editor(), QStringLiteral("x"));
    EXPECT_EQ(pane->getErrorLine(), -1) << "the code has changed";
    EXPECT_TRUE(editor().extraSelections().isEmpty());
}

TEST_F(ScriptPaneTest, marks_the_line_that_cannot_be_parsed)
{
    run("var a = 1;\n\nvar = 2;");
    EXPECT_EQ(pane->getErrorLine(), 3) << output();
}

TEST_F(ScriptPaneTest, stops_a_script_that_does_not_end)
{
    pane->setCode(QStringLiteral("while (true) {}"));
    QTimer clicker;
    bool couldRun = true;
    QObject::connect(&clicker, &QTimer::timeout, [&] {
        couldRun = button("Run").isEnabled();
        QTest::mouseClick(&button("Stop"), Qt::LeftButton);
    });
    clicker.start(10);
    EXPECT_FALSE(pane->run());
    EXPECT_FALSE(couldRun);
    EXPECT_EQ(output(), "the script was stopped");
    EXPECT_TRUE(button("Run").isEnabled());
    EXPECT_FALSE(button("Stop").isEnabled());
    run("1");
    EXPECT_EQ(output(), "= 1") << "the next run is not stopped";
}

TEST_F(ScriptPaneTest, runs_one_script_at_a_time)
{
    pane->setCode(QStringLiteral("var i; for (i = 0; i < 100; ++i) { sleep(1); processEvents(); } i;"));
    QTimer runner;
    int refused = 0;
    QObject::connect(&runner, &QTimer::timeout, [&] { refused += pane->run() ? 0 : 1; });
    runner.start(5);
    EXPECT_TRUE(pane->run());
    EXPECT_GT(refused, 0);
    EXPECT_EQ(output(), "= 100");
}

TEST_F(ScriptPaneTest, may_be_deleted_by_its_script)
{
    pane->setCode(QStringLiteral("processEvents(); print('done');"));
    QTimer::singleShot(0, [&] { pane.reset(); });
    DzScriptPane* const running = pane.get();
    EXPECT_TRUE(running->run());
    EXPECT_EQ(pane, nullptr);
}

TEST_F(ScriptPaneTest, looks_well_at_a_large_font)
{
    const LargeFont large;
    pane.reset(new DzScriptPane);
    pane->resize(620, 500);
    pane->show();
    run("for (var i = 0; i < Scene.getNumNodes(); ++i)\n    print(Scene.getNode(i).getLabel());\n\"done\";");
    QCoreApplication::processEvents();
    SavePicture(*pane, "script_pane_large");
    EXPECT_EQ(output(), "= done");
}

} // namespace
