// The host's panes as the library drives them.
// SPDX-License-Identifier: MIT

#include "ks_panes.h"

#include "dzasset.h"
#include "dzcontentmgr.h"
#include "dzfloatproperty.h"
#include "dzmainwindow.h"
#include "dzpane.h"
#include "dzscript.h"
#include "ks_daz-managers.h"
#include "tests/host/host_fixture.h"
#include "tests/shared/throws.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>
#include <cstdlib>

using namespace kst::daz;

namespace {

/// As the host's pane of that name, which this one stands in for, but without its methods.
class DzParametersPane : public DzPane {
    Q_OBJECT
public:
    DzParametersPane() : DzPane(QStringLiteral("Parameters")) {}
};

/// Stops the script that asks it.
class DzContentLibraryPane : public DzPane {
    Q_OBJECT
public:
    DzContentLibraryPane() : DzPane(QStringLiteral("Content Library")) {}
    Q_INVOKABLE QObjectList getSelectedAssets()
    {
        DzScript::stopAll();
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 200) // scripts look at the stop sign every 50 ms
            QCoreApplication::processEvents();
        return QObjectList();
    }
};

/// Answers with something else where others have a tab.
class TablessPane : public DzPane {
    Q_OBJECT
public:
    TablessPane() : DzPane(QStringLiteral("Smart Content")) {}
    Q_INVOKABLE void setCurrentTab(int) {}
    Q_INVOKABLE QString getFileContentTab() { return QStringLiteral("none"); }
    Q_INVOKABLE void getProductContentTab() {}
};

DzPane* FindPane(const char* name)
{
    return dzApp->getInterface()->getPaneMgr()->findPane(QLatin1String(name));
}

QObject* TabOf(DzPane& pane, const char* getter)
{
    QObject* tab = nullptr;
    EXPECT_TRUE(QMetaObject::invokeMethod(&pane, getter, Q_RETURN_ARG(QObject*, tab)));
    return tab;
}

class PanesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dzApp->getContentMgr()->addContentDirectory(_folder.path());
    }

    /// A scene file at a path below the content directory.
    std::string write(const char* relative)
    {
        const QString path = _folder.filePath(QLatin1String(relative));
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{ \"file_version\" : \"0.6.0.0\", \"asset_info\" : { \"type\" : \"scene\" } }");
        return path.toStdString();
    }

    static DzNode* addNode(const char* name)
    {
        auto* const node = new DzNode;
        node->setName(QLatin1String(name));
        dzScene->addNode(node);
        return node;
    }

    QTemporaryDir _folder;
};

using Paths = std::vector<std::string>;

TEST_F(PanesTest, show_a_property_in_the_parameters_pane)
{
    addNode("Other")->select();
    DzNode* const chair = addNode("Chair");
    FindPane("DzParametersPane")->hidePane();
    ParametersPane::JumpToProperty_X(*chair->getXPosControl());
    EXPECT_EQ(dzScene->getPrimarySelection(), chair);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 1);
    EXPECT_FALSE(FindPane("DzParametersPane")->parentWidget()->isHidden());
    QObject* const widget =
        FindPane("DzParametersPane")->findChild<QObject*>(QStringLiteral("ParametersWgt"));
    ASSERT_NE(widget, nullptr);
    QObjectList picked;
    EXPECT_TRUE(
        QMetaObject::invokeMethod(widget, "getPropertySelections", Q_RETURN_ARG(QObjectList, picked)));
    EXPECT_EQ(picked, QObjectList{chair->getXPosControl()});
}

TEST_F(PanesTest, say_that_the_parameters_pane_cannot_jump)
{
    DzNode* const chair = addNode("Chair");
    ParametersPane::JumpToProperty_X(*chair->getXPosControl());
    delete FindPane("DzParametersPane");
    dzApp->getInterface()->getPaneMgr()->addPane(new DzParametersPane);
    EXPECT_EQ(MessageOf([&] { ParametersPane::JumpToProperty_X(*chair->getXPosControl()); }),
              "failed to invoke DzParametersPane::jumpToProperty()");
}

TEST_F(PanesTest, say_which_pane_is_missing)
{
    DzNode* const chair = addNode("Chair");
    for (const char* const name : {"DzParametersPane", "DzContentLibraryPane", "DzSmartContentPane"})
        delete FindPane(name);
    EXPECT_EQ(MessageOf([&] { ParametersPane::JumpToProperty_X(*chair->getXPosControl()); }),
              "failed to find the Daz Studio Parameters pane");
    EXPECT_EQ(MessageOf([] { ContentLibraryPane::GetAndShow_X(); }),
              "failed to find the Daz Studio Content Library pane");
    EXPECT_EQ(MessageOf([] { SmartContentPane::GetAndShow_X(); }),
              "failed to find the Daz Studio Smart Content pane");
}

TEST_F(PanesTest, tell_the_content_librarys_selection_of_none_one_and_two)
{
    const std::string chair = write("Things/Chair.duf");
    const std::string table = write("Things/Table.duf");
    const auto pane = ContentLibraryPane::GetAndShow_X();
    EXPECT_EQ(pane->getSelectedAssetPaths_X(), Paths());
    pane->browseToCategory_X("/Things");
    EXPECT_EQ(pane->getSelectedAssetPaths_X(), Paths()) << "a folder is no asset";

    const auto smart = SmartContentPane::GetAndShow_X();
    EXPECT_EQ(smart->getSelectedAssetPaths_X(), Paths());
    smart->browseToAssetInFilesTab_X("", {table});
    EXPECT_EQ(smart->getSelectedAssetPaths_X(), Paths{table});
    smart->browseToAssetInFilesTab_X("Things", {"Table", "/Things/Chair.duf"});
    EXPECT_EQ(smart->getSelectedAssetPaths_X(), (Paths{chair, table})) << "in the pane's order";
}

TEST_F(PanesTest, browse_to_an_asset_in_the_content_library)
{
    write("Things/Chairs/Stool.duf");
    const std::string chair = write("Things/Chairs/Chair.duf");
    const auto smart = SmartContentPane::GetAndShow_X();
    smart->browseToAssetInFilesTab_X("", {chair});
    QObjectList assets;
    QObject* const tab = TabOf(*FindPane("DzSmartContentPane"), "getFileContentTab");
    EXPECT_TRUE(QMetaObject::invokeMethod(tab, "getSelectedAssets", Q_RETURN_ARG(QObjectList, assets)));
    ASSERT_EQ(assets.size(), 1);

    const auto pane = ContentLibraryPane::GetAndShow_X();
    pane->browseToAsset_X(*static_cast<DzAsset*>(assets.first()));
    EXPECT_EQ(pane->getSelectedAssetPaths_X(), Paths{chair});
    pane->browseToProduct_X("Chairs");
    EXPECT_EQ(pane->getSelectedAssetPaths_X(), Paths{chair}) << "it is where that asset is";
}

TEST_F(PanesTest, split_a_path_that_contains_the_separator)
{
    const std::string odd = write("Things/Odd:::Chair.duf");
    const auto smart = SmartContentPane::GetAndShow_X();
    smart->browseToAssetInFilesTab_X("", {odd});
    const std::size_t split = odd.find(":::");
    EXPECT_EQ(smart->getSelectedAssetPaths_X(), (Paths{odd.substr(0, split), "Chair.duf"}));
}

TEST_F(PanesTest, turn_to_the_tab_that_they_browse)
{
    write("Things/Chairs/Chair.duf");
    write("Things/Tables/Table.duf");
    const auto smart = SmartContentPane::GetAndShow_X();
    DzPane& pane = *FindPane("DzSmartContentPane");
    const auto currentTab = [&] {
        int tab = -1;
        EXPECT_TRUE(QMetaObject::invokeMethod(&pane, "getCurrentTab", Q_RETURN_ARG(int, tab)));
        return SmartContentSubTab(tab);
    };
    smart->browseToProductInProductsTab_X("Things", {"Tables"});
    EXPECT_EQ(currentTab(), SmartContentSubTab::Products);
    QStringList products;
    QObject* const tab = TabOf(pane, "getProductContentTab");
    EXPECT_TRUE(QMetaObject::invokeMethod(tab, "getSelectedProducts", Q_RETURN_ARG(QStringList, products)));
    EXPECT_EQ(products, QStringList{QStringLiteral("Tables")});
    smart->browseToAssetInFilesTab_X("", {"Chair"});
    EXPECT_EQ(currentTab(), SmartContentSubTab::Files);
}

TEST_F(PanesTest, say_which_tab_is_missing)
{
    const auto smart = SmartContentPane::GetAndShow_X();
    delete TabOf(*FindPane("DzSmartContentPane"), "getFileContentTab");
    delete TabOf(*FindPane("DzSmartContentPane"), "getProductContentTab");
    EXPECT_EQ(MessageOf([&] { smart->browseToAssetInFilesTab_X("", {"Chair"}); }),
              "failed to find Files tab under Smart Content pane");
    EXPECT_EQ(MessageOf([&] { smart->browseToProductInProductsTab_X("", {"Chairs"}); }),
              "failed to find Products tab under Smart Content pane");
    EXPECT_EQ(MessageOf([&] { smart->getSelectedAssetPaths_X(); }), "Script error: no file sub-tab");
}

TEST_F(PanesTest, hand_on_what_the_script_says_of_a_missing_pane)
{
    DzPane other(QStringLiteral("Other"));
    // The panes' methods are looked up once, on the first of their kind.
    const auto library = ContentLibraryPane::GetAndShow_X();
    const auto smart = SmartContentPane::GetAndShow_X();
    delete FindPane("DzContentLibraryPane");
    delete FindPane("DzSmartContentPane");
    EXPECT_EQ(MessageOf([&] { ContentLibraryPane(other).getSelectedAssetPaths_X(); }),
              "Script error: no pane");
    EXPECT_EQ(MessageOf([&] { SmartContentPane(other).getSelectedAssetPaths_X(); }), "Script error: no pane");
}

TEST_F(PanesTest, hand_on_what_else_the_script_fails_with)
{
    const auto library = ContentLibraryPane::GetAndShow_X();
    ASSERT_TRUE(openhost::RemoveManager(QStringLiteral("DzPaneMgr")));
    const std::string message = MessageOf([&] { library->getSelectedAssetPaths_X(); });
    EXPECT_EQ(message.substr(0, 25), "Script error: TypeError: ") << message;
}

TEST_F(PanesTest, say_that_the_script_did_not_end_by_itself)
{
    ContentLibraryPane::GetAndShow_X();
    delete FindPane("DzContentLibraryPane");
    auto* const stopping = new DzContentLibraryPane;
    dzApp->getInterface()->getPaneMgr()->addPane(stopping);
    EXPECT_EQ(MessageOf([&] { ContentLibraryPane(*stopping).getSelectedAssetPaths_X(); }),
              "failed to execute script to get selected assets");
}

TEST_F(PanesTest, answer_scripts)
{
    const std::string chair = write("Things/Chair.duf");
    SmartContentPane::GetAndShow_X()->browseToAssetInFilesTab_X("", {chair});
    DzScript script;
    script.setCode(QStringLiteral(
        "var tab = MainWindow.getPaneMgr().findPane('DzSmartContentPane').getFileContentTab();"
        "var asset = tab.getSelectedAssets()[0];"
        "[asset.getName(), asset.getRelativePath(), asset.getAsLocalFile(),"
        " MainWindow.getPaneMgr().findPane('DzContentLibraryPane').getSelectedAssets().length].join()"));
    EXPECT_TRUE(script.execute()) << script.errorMessage().toStdString();
    EXPECT_EQ(script.result().toString().toStdString(), "Chair,/Things/Chair.duf," + chair + ",0");
}

using PanesDeathTest = PanesTest;

/// A process of its own, since a wrapper class looks for its methods once in a process.
TEST_F(PanesDeathTest, need_tabs_that_are_objects)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            TablessPane pane;
            const SmartContentPane smart(pane);
            const std::string files = MessageOf([&] { smart.browseToAssetInFilesTab_X("", {}); });
            const std::string products = MessageOf([&] { smart.browseToProductInProductsTab_X("", {}); });
            std::fprintf(stderr, "[%s, %s]", files.c_str(), products.c_str());
            std::_Exit(0);
        },
        testing::ExitedWithCode(0),
        "\\[failed to invoke .*TablessPane::getFileContentTab\\(\\), "
        "failed to invoke .*TablessPane::getProductContentTab\\(\\)\\]");
}

} // namespace

#include "panes_test.moc"
