// Finding files in all content folders, and what else the Content Library does with files.
// SPDX-License-Identifier: MIT

#include "host/ui/content_library_pane.h"
#include "host/ui/favorite_files.h"
#include "host/ui/file_finder.h"
#include "host/ui/pane_asset_list.h"
#include "tests/host/content_fixture.h"
#include "tests/windows/picture.h"

#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

#include <memory>

namespace {

class FileFinderTest : public LibraryTest {
protected:
    void SetUp() override
    {
        LibraryTest::SetUp();
        for (const auto& [name, type] :
             {std::pair<const char*, const char*>{"People/Mini/Poses/Sit.duf", "preset_pose"},
              {"People/Mini/Vera.duf", "character"},
              {"People/Mini/Vera Smile.duf", "preset_shape"},
              {"Scenes/Garden.duf", "scene"},
              {"Things/Chair.duf", "prop"}})
            write(name, type);
        pane = std::make_unique<DzContentLibraryPane>();
        pane->resize(320, 560);
        pane->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(pane.get()));
        QCoreApplication::processEvents();
    }
    void TearDown() override { pane.reset(); }

    std::string write(const char* relative, const std::string& type) const
    {
        const std::filesystem::path file = _library / relative;
        std::filesystem::create_directories(file.parent_path());
        WriteBytes(file, "{\"asset_info\":{\"id\":\"/x\",\"type\":\"" + type + "\"}}");
        return file.string();
    }
    QString path(const char* relative) const
    {
        return QString::fromStdString((_library / relative).string());
    }
    QLineEdit& words() const { return *pane->findChild<openhost::FileFinder*>()->findChild<QLineEdit*>(); }
    QComboBox& kind() const { return *pane->findChild<QComboBox*>(); }
    openhost::AssetList& list() const { return *pane->findChild<openhost::AssetList*>(); }
    QTreeWidget& tree() const { return *pane->findChild<QTreeWidget*>(); }
    std::string state() const
    {
        return pane->findChild<openhost::FileFinder*>()->findChild<QLabel*>()->text().toStdString();
    }
    std::string names() const
    {
        QStringList all;
        for (int i = 0; i < list().count(); ++i)
            all << list().item(i)->text();
        return all.join(QLatin1Char('|')).toStdString();
    }
    bool finds(const char* expected) const
    {
        return QTest::qWaitFor([&] { return names() == expected; }, 20000);
    }

    std::unique_ptr<DzContentLibraryPane> pane;
};

TEST_F(FileFinderTest, finds_by_words_in_all_folders)
{
    QTest::keyClicks(&words(), QStringLiteral("vera"));
    EXPECT_TRUE(finds("Vera|Vera Smile")) << names();
    EXPECT_FALSE(tree().isVisible());
    QTest::keyClicks(&words(), QStringLiteral(" SMI"));
    EXPECT_TRUE(finds("Vera Smile")) << names();
    EXPECT_EQ(state(), "1 of 6 files");
    words().setText(QStringLiteral("people/mini/poses"));
    EXPECT_TRUE(finds("Sit")) << "folders count too";
    words().clear();
    EXPECT_TRUE(QTest::qWaitFor([&] { return tree().isVisible(); }));
}

TEST_F(FileFinderTest, finds_by_kind)
{
    for (const auto& [text, expected] : {std::pair<const char*, const char*>{"Figures", "Mini|Vera"},
                                         {"Shapes", "Vera Smile"},
                                         {"Poses", "Sit"},
                                         {"Scenes", "Garden"}}) {
        kind().setCurrentText(QLatin1String(text));
        EXPECT_TRUE(finds(expected)) << text << ": " << names();
    }
}

TEST_F(FileFinderTest, keeps_favorites_which_other_runs_know_too)
{
    EXPECT_TRUE(pane->browseToCategory(QStringLiteral("People/Mini")));
    EXPECT_TRUE(list().selectFiles({path("People/Mini/Vera.duf")}));
    QMetaObject::invokeMethod(&list(), "toggleFavorite");
    EXPECT_TRUE(openhost::IsFavoriteFile(path("People/Mini/Vera.duf")));
    openhost::ReadFavoriteFiles();
    EXPECT_TRUE(openhost::IsFavoriteFile(path("People/Mini/Vera.duf")));
    auto* const button = pane->findChild<openhost::FileFinder*>()->findChild<QToolButton*>();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(finds("Vera")) << names();
    SavePicture(*pane, "library-favorites");
    list().selectFiles({path("People/Mini/Vera.duf")});
    QMetaObject::invokeMethod(&list(), "toggleFavorite");
    EXPECT_TRUE(finds("")) << names();
    openhost::ReadFavoriteFiles();
    EXPECT_FALSE(openhost::IsFavoriteFile(path("People/Mini/Vera.duf")));
}

TEST_F(FileFinderTest, shows_the_folder_of_a_file_that_was_found)
{
    words().setText(QStringLiteral("garden"));
    EXPECT_TRUE(finds("Garden"));
    emit list().folderWanted(path("Scenes/Garden.duf"));
    EXPECT_TRUE(tree().isVisible());
    EXPECT_EQ(tree().currentItem()->text(0), QLatin1String("Scenes"));
    EXPECT_EQ(list().selectedFiles(), QStringList{path("Scenes/Garden.duf")});
    EXPECT_TRUE(words().text().isEmpty());
}

TEST_F(FileFinderTest, finds_new_files_when_it_is_refreshed)
{
    words().setText(QStringLiteral("table"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return state() == "0 of 6 files"; }, 20000)) << state();
    write("Things/Table.duf", "prop");
    pane->refresh();
    EXPECT_TRUE(finds("Table"));
}

TEST_F(FileFinderTest, takes_keys_while_ten_thousand_files_are_gone_through)
{
    int expected = 0;
    for (int i = 0; i < 10000; ++i) {
        const QString name = QStringLiteral("Many/%1/File %2.duf").arg(i / 100).arg(i);
        write(qPrintable(name), "character");
        expected += name.contains(QLatin1String("77")) ? 1 : 0;
    }
    pane->refresh();
    const QString typed = QStringLiteral("file 77");

    for (const QChar letter : typed) {
        QTest::keyClicks(&words(), QString(letter));
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(words().text(), typed);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return state() == std::to_string(expected) + " of 10006 files"; }, 60000))
        << state();
    words().setText(QStringLiteral("file"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return list().count() == 10000; }, 60000));
}

TEST_F(FileFinderTest, shows_pictures_beside_names)
{
    QImage picture(128, 128, QImage::Format_RGB32);
    picture.fill(QColor(200, 30, 30));
    ASSERT_TRUE(picture.save(path("People/Mini/Vera.duf.png")));
    pane->browseToCategory(QStringLiteral("People/Mini"));
    const auto middle = [this](int row) {
        const auto pixmap = list().item(row)->data(Qt::DecorationRole).value<QPixmap>();
        return pixmap.toImage().pixelColor(pixmap.width() / 2, pixmap.height() / 2);
    };
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return middle(1) == QColor(200, 30, 30) || middle(0) == QColor(200, 30, 30); }));
    SavePicture(*pane, "library-pictures");
}

TEST_F(FileFinderTest, gives_files_to_who_they_are_dragged_to_and_drops_none_on_itself)
{
    pane->browseToCategory(QStringLiteral("People/Mini"));
    EXPECT_TRUE(list().dragEnabled());
    const std::unique_ptr<QMimeData> dragged(
        list().model()->mimeData({list().model()->index(0, 0), list().model()->index(1, 0)}));
    ASSERT_EQ(dragged->urls().size(), 2);
    EXPECT_EQ(dragged->urls().first(), QUrl::fromLocalFile(list().files().first()));
    EXPECT_EQ(list().model()->supportedDragActions(), Qt::CopyAction);
    const int before = list().count();
    QDragEnterEvent elsewhere(QPoint(9, 9), Qt::CopyAction, dragged.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list().viewport(), &elsewhere);
    EXPECT_FALSE(elsewhere.isAccepted()) << "of another program: for the window around";
    EXPECT_EQ(list().count(), before);
}

} // namespace
