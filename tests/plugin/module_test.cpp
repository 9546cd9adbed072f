// The module as a host loads it: by its file, through its two entry points.
// SPDX-License-Identifier: MIT

#include "dzaction.h"
#include "dzactionmgr.h"
#include "dzmainwindow.h"
#include "dzplugin.h"
#include "dzpluginmgr.h"
#include "dzscript.h"
#include "tests/host/host_fixture.h"

#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QMenu>
#include <QMenuBar>

namespace {

const QString module = QStringLiteral(GANTREL_MODULE);
const QString pluginName = QStringLiteral("Kestrom's Gantrel");

class ModuleTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        QString error;
        plugin = plugins().loadPlugin(module, &error);
        ASSERT_NE(plugin, nullptr) << error.toStdString();
    }
    void TearDown() override
    {
        plugins().unloadPlugin(pluginName);
        for (int i = plugins().getNumPlugins(); i-- > 0;)
            plugins().unloadPlugin(plugins().getPlugin(i)->getName());
    }

    static DzPluginMgr& plugins() { return *dzApp->getPluginMgr(); }
    static DzAction* action(const char* className)
    {
        return dzApp->getInterface()->getActionMgr()->findAction(QLatin1String(className));
    }
    static QStringList menuTitles()
    {
        QStringList titles;
        for (const QAction* const entry : dzApp->getInterface()->menuBar()->actions())
            titles << entry->menu()->title();
        return titles;
    }
    static const QMenu& menu(const char* title)
    {
        for (const QAction* const entry : dzApp->getInterface()->menuBar()->actions())
            if (entry->menu()->title() == QLatin1String(title))
                return *entry->menu();
        static const QMenu none;
        return none;
    }

    DzPlugin* plugin = nullptr;
};

TEST_F(ModuleTest, says_what_it_is)
{
    EXPECT_EQ(plugin->getName(), pluginName);
    EXPECT_EQ(plugin->getAuthor(), QLatin1String("Kestrom"));
    EXPECT_EQ(plugin->getVersionString(), QLatin1String(GANTREL_VERSION ".0"));
    EXPECT_EQ(
        plugin->getDescription(),
        QString::fromUtf8("\n<p>Gantrel for Genesis 9 is a plugin for Daz Studio 4.20 and above that can "
                          "convert Genesis 3, 8 and 8.1 Genesis shapes to Genesis 9.</p>\n<p>By default it "
                          "can be launched either with the menu item in the new \xE2\x80\x9C"
                          "Convert\xE2\x80\x9D menu or with the Ctrl + Alt + C keyboard shortcut.</p>"));
    EXPECT_TRUE(plugin->isActivated());
    EXPECT_EQ(plugin->getStatus(), DzPlugin::Loaded);
    EXPECT_EQ(plugins().getFilename(plugin), module);
    EXPECT_TRUE(plugins().getFailure(plugin).isEmpty());
}

TEST_F(ModuleTest, tells_the_version_of_the_host_that_it_was_made_for)
{
    QLibrary library(module);
    const auto version = reinterpret_cast<DzVersion (*)()>(library.resolve("getSDKVersion"));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version().getLongVersionString(), QLatin1String("4.5.0.100"));
}

TEST_F(ModuleTest, brings_two_actions_in_order_with_identifiers_of_their_own)
{
    ASSERT_EQ(plugin->getNumClassFactories(), 2);
    EXPECT_EQ(plugin->getClassFactory(0)->className(), QLatin1String("GntConvertFigureAction"));
    EXPECT_EQ(plugin->getClassFactory(1)->className(), QLatin1String("GntOpenManualAction"));
    EXPECT_EQ(plugin->getClassFactory(0)->guid().toString().toStdString(),
              "{6d0c1f0e-43b7-4c6a-9d5e-1b7f2c9a8e41}");
    EXPECT_EQ(plugin->getClassFactory(1)->guid().toString().toStdString(),
              "{b2f4a7d3-0e96-4f18-8a3c-57d1e6c0f924}");
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<QObject> made(plugin->getClassFactory(i)->createInstance());
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(plugin->getClassFactory(i)->className(), QLatin1String(made->metaObject()->className()));
        EXPECT_TRUE(made->inherits("GntActionBase"));
    }
}

TEST_F(ModuleTest, puts_both_actions_into_one_menu_and_only_one_has_a_shortcut)
{
    DzAction* const convert = action("GntConvertFigureAction");
    DzAction* const manual = action("GntOpenManualAction");
    ASSERT_TRUE(convert && manual);
    EXPECT_EQ(convert->text(), QLatin1String("Convert selected Genesis 3 / 8 / 8.1 &figure..."));
    EXPECT_EQ(convert->getDescription(),
              QLatin1String(
                  "Converts the morphs in the selected Genesis 3/8/8.1 figure to the selected G9 figure."));
    EXPECT_EQ(convert->shortcut(), QKeySequence(QStringLiteral("Ctrl+Alt+C")));
    EXPECT_EQ(manual->text(), QLatin1String("Open Gantrel PDF manual"));
    EXPECT_EQ(manual->getDescription(), QLatin1String("Opens the PDF user manual for Kestrom's Gantrel"));
    EXPECT_TRUE(manual->shortcut().isEmpty());
    for (DzAction* const each : {convert, manual}) {
        EXPECT_EQ(each->getActionGroup(), pluginName);
        EXPECT_EQ(each->getDefaultMenuPath(), QLatin1String("Co&nvert"));
    }
    EXPECT_EQ(menuTitles(), (QStringList{QStringLiteral("&Edit"), QStringLiteral("Co&nvert")}));
    EXPECT_EQ(menu("Co&nvert").actions(), (QList<QAction*>{convert, manual}));
}

TEST_F(ModuleTest, tells_what_is_wrong_with_the_selection)
{
    action("GntConvertFigureAction")->trigger();
    EXPECT_TRUE(LogText().contains(QLatin1String("Could not convert figure")));
    EXPECT_TRUE(LogText().contains(QLatin1String("ou must select two figures")));
}

TEST_F(ModuleTest, tells_that_its_manual_is_not_there)
{
    action("GntOpenManualAction")->trigger();
    EXPECT_TRUE(LogText().contains(QLatin1String("Could not open PDF file")));
}

TEST_F(ModuleTest, is_known_to_scripts)
{
    DzScript script;
    script.setCode(
        QStringLiteral("var made = new GntConvertFigureAction(); made.text + '|' + made.getActionGroup()"));
    ASSERT_TRUE(script.execute()) << script.errorMessage().toStdString();
    EXPECT_EQ(script.result().toString(),
              QLatin1String("Convert selected Genesis 3 / 8 / 8.1 &figure...|Kestrom's Gantrel"));
    script.setCode(
        QStringLiteral("MainWindow.getActionMgr().findAction('GntConvertFigureAction').trigger(); 1"));
    EXPECT_TRUE(script.execute()) << script.errorMessage().toStdString();
}

TEST_F(ModuleTest, is_not_loaded_twice)
{
    QString error;
    const int before = plugins().getNumPlugins();
    EXPECT_EQ(plugins().loadPlugin(module, &error), nullptr);
    EXPECT_EQ(error, QLatin1String("plug-in \"Kestrom's Gantrel\" is loaded already"));
    EXPECT_EQ(plugins().getNumPlugins(), before);
    EXPECT_NE(action("GntConvertFigureAction"), nullptr);
}

TEST_F(ModuleTest, takes_its_actions_and_its_menu_along_when_it_is_unloaded_and_comes_back)
{
    ASSERT_TRUE(plugins().unloadPlugin(pluginName));
    EXPECT_FALSE(plugins().unloadPlugin(pluginName));
    EXPECT_EQ(plugins().findPlugin(pluginName), nullptr);
    EXPECT_EQ(action("GntConvertFigureAction"), nullptr);
    EXPECT_EQ(menuTitles(), QStringList{QStringLiteral("&Edit")});
    EXPECT_EQ(dzApp->findClassFactory(QStringLiteral("GntConvertFigureAction")), nullptr);
    EXPECT_NE(plugins().loadPlugin(module), nullptr);
    EXPECT_NE(action("GntConvertFigureAction"), nullptr);
}

TEST_F(ModuleTest, is_found_in_a_folder_beside_broken_ones_that_are_listed_as_failed)
{
    ASSERT_TRUE(plugins().unloadPlugin(pluginName));
    const QString folder = TestFolder() + QStringLiteral("/plugins");
    ASSERT_TRUE(QDir().mkpath(folder));
    const auto put = [&](const QString& from, const char* name) {
        QFile::remove(folder + QLatin1Char('/') + QLatin1String(name));
        ASSERT_TRUE(QFile::copy(from, folder + QLatin1Char('/') + QLatin1String(name)));
    };
    put(module, "libgantrel.so");
    put(QStringLiteral(GANTREL_WRONG_VERSION_MODULE), "a_wrong_version.so");
    put(QStringLiteral(GANTREL_NO_ENTRY_MODULE), "b_no_entry.so");
    QFile text(folder + QStringLiteral("/c_text.so"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("no library at all");
    text.close();
    QFile readme(folder + QStringLiteral("/readme.txt"));
    ASSERT_TRUE(readme.open(QIODevice::WriteOnly));
    readme.close();
    const int before = plugins().getNumPlugins();
    EXPECT_EQ(plugins().loadPlugins(folder), 1);
    ASSERT_EQ(plugins().getNumPlugins(), before + 4);
    const auto failureOf = [&](const char* name) {
        const DzPlugin* const failed = plugins().findPlugin(QLatin1String(name));
        EXPECT_NE(failed, nullptr) << name;
        EXPECT_EQ(failed->getStatus(), DzPlugin::Failed) << name;
        EXPECT_FALSE(failed->isActivated()) << name;
        return plugins().getFailure(failed).toStdString();
    };
    EXPECT_NE(failureOf("a_wrong_version").find("is made for another host, version 3.1.2.26"),
              std::string::npos);
    EXPECT_NE(failureOf("b_no_entry").find("is no plug-in"), std::string::npos);
    EXPECT_NE(failureOf("c_text").find("c_text.so"), std::string::npos);
    EXPECT_TRUE(plugins().findPlugin(pluginName)->isActivated());
    EXPECT_EQ(plugins().loadPlugins(QStringLiteral("/no/such/folder")), 0);
}

} // namespace
