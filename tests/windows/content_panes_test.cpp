// The Content Library and Smart Content panes, by mouse and keys.
// SPDX-License-Identifier: MIT

#include "dson/gzip.h"
#include "dzasset.h"
#include "dzcontentmgr.h"
#include "host/ui/content_library_pane.h"
#include "host/ui/pane_asset_list.h"
#include "host/ui/pane_user_files.h"
#include "host/ui/smart_content_pane.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/picture.h"

#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

#include <memory>

namespace {

using openhost::AssetList;

class ContentPanesTest : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        write("People/Mini/Poses/Sit.duf", "preset_pose");
        write("People/Mini/Poses/Stand.duf", "preset_pose");
        write("People/Mini/Bust.duf", "character");
        write("Things/Chairs/Chair.duf", "prop");
        write("data/Acme/Mini/Secret.dsf", "modifier");
    }
    void TearDown() override { shown.reset(); }

    std::filesystem::path write(const char* relative, const std::string& type) const
    {
        const std::filesystem::path file = _library / relative;
        std::filesystem::create_directories(file.parent_path());
        WriteBytes(file, "{\n\t\"file_version\" : \"0.6.0.0\",\n\t\"asset_info\" : {\n\t\t\"id\" : \"/x\",\n"
                         "\t\t\"type\" : \"" +
                             type + "\"\n\t}\n}\n");
        return file;
    }
    QString path(const char* relative) const
    {
        return QString::fromStdString((_library / relative).string());
    }

    template <class Pane>
    Pane& show()
    {
        auto* const pane = new Pane;
        shown.reset(pane);
        pane->resize(360, 500);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane));
        QCoreApplication::processEvents();
        return *pane;
    }
    static QTreeWidget& treeOf(const QWidget& pane) { return *pane.findChild<QTreeWidget*>(); }
    static AssetList& listOf(const QWidget& pane) { return *pane.findChild<AssetList*>(); }
    static std::string names(const AssetList& list)
    {
        QStringList names;
        for (int i = 0; i < list.count(); ++i)
            names.append(list.item(i)->text());
        return names.join(QLatin1Char(' ')).toStdString();
    }
    static QStringList paths(const QObjectList& assets)
    {
        QStringList paths;
        for (const QObject* asset : assets)
            paths.append(qobject_cast<const DzAsset*>(asset)->getAsLocalFile());
        return paths;
    }
    static void click(AssetList& list, const char* name, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QListWidgetItem& item = *list.findItems(QLatin1String(name), Qt::MatchExactly).first();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, list.visualItemRect(&item).center());
    }

    std::unique_ptr<DzPane> shown;
};

TEST_F(ContentPanesTest, show_folders_and_the_user_files_in_them)
{
    auto& pane = show<DzContentLibraryPane>();
    QTreeWidget& tree = treeOf(pane);
    ASSERT_EQ(tree.topLevelItemCount(), 1);
    EXPECT_TRUE(tree.topLevelItem(0)->isExpanded());
    EXPECT_TRUE(pane.browseToCategory(QStringLiteral("/people/")) ||
                pane.browseToCategory(QStringLiteral("/People/")));
    EXPECT_EQ(tree.currentItem()->text(0), QLatin1String("People"));
    EXPECT_TRUE(pane.browseToCategory(QStringLiteral("People/Mini/Poses")));
    EXPECT_EQ(names(listOf(pane)), "Sit Stand");
    EXPECT_TRUE(pane.browseToCategory(QStringLiteral("data/Acme/Mini")));
    EXPECT_EQ(names(listOf(pane)), "") << "the data behind user files";
}

TEST_F(ContentPanesTest, have_arrows_on_folders_with_subfolders_alone)
{
    auto& pane = show<DzContentLibraryPane>();
    const auto hasArrow = [&pane](const char* folder) {
        EXPECT_TRUE(pane.browseToCategory(QLatin1String(folder))) << folder;
        const QTreeWidgetItem& item = *treeOf(pane).currentItem();
        return item.childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator || item.childCount() > 0;
    };
    EXPECT_TRUE(hasArrow("People/Mini"));
    EXPECT_FALSE(hasArrow("People/Mini/Poses"));
    EXPECT_FALSE(hasArrow("Things/Chairs"));
}

TEST_F(ContentPanesTest, tell_what_is_selected_in_the_lists_order)
{
    auto& pane = show<DzContentLibraryPane>();
    EXPECT_TRUE(pane.getSelectedAssets().isEmpty());
    pane.browseToCategory(QStringLiteral("People/Mini/Poses"));
    click(listOf(pane), "Stand");
    EXPECT_EQ(paths(pane.getSelectedAssets()), QStringList{path("People/Mini/Poses/Stand.duf")});
    click(listOf(pane), "Sit", Qt::ControlModifier);
    const QObjectList assets = pane.getSelectedAssets();
    EXPECT_EQ(paths(assets),
              (QStringList{path("People/Mini/Poses/Sit.duf"), path("People/Mini/Poses/Stand.duf")}));
    EXPECT_EQ(pane.getSelectedAssets(), assets) << "each asset has one object";
    const auto& sit = *qobject_cast<DzAsset*>(assets.first());
    EXPECT_EQ(sit.getName(), QLatin1String("Sit"));
    EXPECT_EQ(sit.getRelativePath(), QLatin1String("/People/Mini/Poses/Sit.duf"));
}

TEST_F(ContentPanesTest, browse_to_assets_categories_and_products)
{
    auto& pane = show<DzContentLibraryPane>();
    DzAsset chair(path("Things/Chairs/Chair.duf"), QStringLiteral("/Things/Chairs/Chair.duf"));
    EXPECT_TRUE(pane.browseToAsset(&chair));
    EXPECT_EQ(paths(pane.getSelectedAssets()), QStringList{path("Things/Chairs/Chair.duf")});
    EXPECT_TRUE(pane.browseToProduct(QStringLiteral("Mini")));
    EXPECT_EQ(names(listOf(pane)), "Bust");

    DzAsset gone(path("Things/Chairs/Gone.duf"), QString());
    EXPECT_FALSE(pane.browseToAsset(&gone));
    EXPECT_FALSE(pane.browseToAsset(nullptr));
    EXPECT_FALSE(pane.browseToCategory(QStringLiteral("Things/Tables")));
    EXPECT_FALSE(pane.browseToCategory(QStringLiteral("../..")));
    EXPECT_FALSE(pane.browseToProduct(QStringLiteral("Acme"))) << "that is data";
    EXPECT_EQ(names(listOf(pane)), "Bust") << "nothing has changed";
}

TEST_F(ContentPanesTest, follow_the_list_of_content_directories)
{
    auto& pane = show<DzContentLibraryPane>();
    pane.browseToCategory(QStringLiteral("Things/Chairs"));
    const std::filesystem::path other = folder("Other");
    std::filesystem::create_directories(other);
    dzApp->getContentMgr()->addContentDirectory(QString::fromStdString(other.string()));
    QCoreApplication::processEvents();
    EXPECT_EQ(treeOf(pane).topLevelItemCount(), 2);
    EXPECT_EQ(names(listOf(pane)), "Chair") << "the folder stays open";
    dzApp->getContentMgr()->removeAllContentDirectories();
    QCoreApplication::processEvents();
    EXPECT_EQ(treeOf(pane).topLevelItemCount(), 0);
    EXPECT_EQ(listOf(pane).count(), 0);
}

TEST_F(ContentPanesTest, open_a_file_by_double_click)
{
    const std::filesystem::path mini = mini::WriteCharacter(_library);
    auto& pane = show<DzContentLibraryPane>();
    pane.browseToCategory(QStringLiteral("People"));
    ASSERT_FALSE(
        listOf(pane).findItems(QString::fromStdString(mini.stem().string()), Qt::MatchExactly).isEmpty());
    AssetList& list = listOf(pane);
    const QPoint place =
        list.visualItemRect(list.findItems(QStringLiteral("Mini"), Qt::MatchExactly).first()).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTRY_VERIFY(dzScene->findNodeByLabel(QStringLiteral("Mini")));
}

TEST_F(ContentPanesTest, offer_presets_only_for_what_is_selected)
{
    auto& pane = show<DzSmartContentPane>();
    QTRY_VERIFY(listOf(pane).count() > 0);
    EXPECT_EQ(names(listOf(pane)), "Mini Bust Chair");
    auto* const chair = new DzNode;
    dzScene->addNode(chair);
    chair->select();
    QCoreApplication::processEvents();
    EXPECT_EQ(names(listOf(pane)), "Mini Bust Sit Stand Chair");
    QTest::keyClicks(pane.findChild<QLineEdit*>(), QStringLiteral("sta"));
    QTRY_COMPARE(names(listOf(pane)), std::string("Stand")); // the list follows a moment later
}

TEST_F(ContentPanesTest, select_assets_by_path_or_name_within_a_category)
{
    auto& pane = show<DzSmartContentPane>();
    auto& tab = *qobject_cast<DzFileContentTab*>(pane.getFileContentTab());
    EXPECT_TRUE(tab.getSelectedAssets().isEmpty());
    EXPECT_TRUE(tab.selectAssets(QString(), {path("Things/Chairs/Chair.duf")}));
    EXPECT_EQ(paths(tab.getSelectedAssets()), QStringList{path("Things/Chairs/Chair.duf")});
    EXPECT_TRUE(
        tab.selectAssets(QStringLiteral("/People"), {QStringLiteral("bust"), QStringLiteral("chair")}));
    EXPECT_EQ(paths(tab.getSelectedAssets()), QStringList{path("People/Mini/Bust.duf")});
    EXPECT_TRUE(tab.selectAssets(QString(), {QStringLiteral("/things/chairs/CHAIR.duf")}));
    EXPECT_FALSE(tab.selectAssets(QStringLiteral("Peop"), {QStringLiteral("Bust")})) << "no such folder";
    EXPECT_FALSE(tab.selectAssets(QString(), {QStringLiteral("Table")}));
    EXPECT_TRUE(tab.getSelectedAssets().isEmpty());
}

TEST_F(ContentPanesTest, find_new_files_when_they_are_refreshed)
{
    auto& pane = show<DzSmartContentPane>();
    auto& files = *qobject_cast<DzFileContentTab*>(pane.getFileContentTab());
    auto& products = *qobject_cast<DzProductContentTab*>(pane.getProductContentTab());
    EXPECT_FALSE(files.selectAssets(QString(), {QStringLiteral("Table")}));
    EXPECT_FALSE(products.selectProducts(QString(), {QStringLiteral("Tables")}));
    write("Things/Tables/Table.duf", "prop");
    pane.refresh();
    EXPECT_TRUE(files.selectAssets(QString(), {QStringLiteral("Table")}));
    EXPECT_TRUE(products.selectProducts(QString(), {QStringLiteral("Tables")}));
}

TEST_F(ContentPanesTest, list_products_and_their_files)
{
    auto& pane = show<DzSmartContentPane>();
    pane.setCurrentTab(DzSmartContentPane::ProductsTab);
    EXPECT_EQ(pane.getCurrentTab(), DzSmartContentPane::ProductsTab);
    pane.setCurrentTab(7);
    EXPECT_EQ(pane.getCurrentTab(), DzSmartContentPane::ProductsTab);
    auto& tab = *qobject_cast<DzProductContentTab*>(pane.getProductContentTab());
    EXPECT_TRUE(tab.selectProducts(QString(), {QStringLiteral("Mini"), QStringLiteral("Chairs")}));
    EXPECT_EQ(tab.getSelectedProducts(), (QStringList{QStringLiteral("Chairs"), QStringLiteral("Mini")}));
    EXPECT_TRUE(
        tab.selectProducts(QStringLiteral("People"), {QStringLiteral("mini"), QStringLiteral("chairs")}));
    EXPECT_EQ(tab.getSelectedProducts(), QStringList{QStringLiteral("Mini")});
    EXPECT_EQ(names(listOf(tab)), "Bust Sit Stand");
    click(listOf(tab), "Sit");
    EXPECT_EQ(paths(tab.getSelectedAssets()), QStringList{path("People/Mini/Poses/Sit.duf")});
    EXPECT_FALSE(tab.selectProducts(QString(), {QStringLiteral("Acme")})) << "that is data";
    EXPECT_TRUE(tab.getSelectedProducts().isEmpty());
}

TEST_F(ContentPanesTest, read_a_files_type_from_its_beginning)
{
    const std::filesystem::path file = write("Types/Plain.duf", "preset_shape");
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Plain.duf")), QLatin1String("preset_shape"));
    WriteBytes(_library / "Types/Packed.duf", dson::Compress(ReadBytes(file)));
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Packed.duf")), QLatin1String("preset_shape"));
    WriteBytes(_library / "Types/Odd.duf", "\"type\" : \"scene\"");
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Odd.duf")), QString());
    WriteBytes(_library / "Types/Cut.duf", dson::Compress(ReadBytes(file)).substr(0, 12));
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Cut.duf")), QString());
    WriteBytes(_library / "Types/Empty.duf", "");
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Empty.duf")), QString());
    EXPECT_EQ(openhost::AssetTypeOf(path("Types/Gone.duf")), QString());
}

TEST_F(ContentPanesTest, look_well_at_any_font)
{
    auto& library = show<DzContentLibraryPane>();
    library.browseToCategory(QStringLiteral("People/Mini/Poses"));
    click(listOf(library), "Stand");
    SavePicture(library, "content_library_pane");
    {
        const LargeFont large;
        QCoreApplication::processEvents();
        SavePicture(library, "content_library_pane_large");
    }
    auto& smart = show<DzSmartContentPane>();
    QTRY_VERIFY(listOf(smart).count() > 0);
    SavePicture(smart, "smart_content_pane");
    const LargeFont large;
    smart.setCurrentTab(DzSmartContentPane::ProductsTab);
    qobject_cast<DzProductContentTab*>(smart.getProductContentTab())
        ->selectProducts(QString(), {QStringLiteral("Mini")});
    QCoreApplication::processEvents();
    SavePicture(smart, "smart_content_pane_products_large");
    EXPECT_EQ(smart.getCurrentTab(), DzSmartContentPane::ProductsTab);
}

} // namespace
