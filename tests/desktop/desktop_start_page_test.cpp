// The page over the view while the scene is empty.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/plugin/mini_scene.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include "apps/desktop/convertible_figures.h"
#include "apps/desktop/figure_list.h"
#include "openhost/content_files.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest/QTest>

#include <dzcontentmgr.h>
#include <dzfigure.h>
#include <dzmainwindow.h>

namespace {

class StartPageTest : public DesktopTest {
protected:
    static QWidget& page() { return *window().findChild<QWidget*>(QStringLiteral("StartPage")); }
    static QAbstractButton& button(const char* name)
    {
        return *page().findChild<QAbstractButton*>(QLatin1String(name));
    }
    static QListWidget& recent() { return *page().findChild<QListWidget*>(QStringLiteral("StartRecent")); }
    static bool isShown()
    {
        QCoreApplication::processEvents();
        return page().isVisible();
    }
    /// The lists of the two sides, source first.
    static QList<QListWidget*> lists(QWidget& dialog) { return dialog.findChildren<QListWidget*>(); }
    static QPushButton& convertButton(QWidget& dialog) { return *FindButton(dialog, "Convert..."); }
};

TEST_F(StartPageTest, stands_over_the_view_while_the_scene_is_empty)
{
    start();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(page().size(), window().getViewportMgr()->size());
    DzFigure& figure = openFigure(sourceFile);
    EXPECT_FALSE(isShown());
    dzScene->removeNode(&figure);
    EXPECT_TRUE(isShown());
    window().resize(window().size() - QSize(200, 100));
    QCoreApplication::processEvents();
    EXPECT_EQ(page().size(), window().getViewportMgr()->size());
    openFigure(targetFile);
    EXPECT_FALSE(isShown());
}

TEST_F(StartPageTest, can_be_used_by_keys_alone_and_is_named_for_screen_readers)
{
    start();
    ASSERT_TRUE(isShown());
    for (const char* const name : {"StartConvert", "StartOpen", "StartSamples", "StartManual"}) {
        QAbstractButton& one = button(name);
        EXPECT_TRUE(one.focusPolicy() & Qt::TabFocus) << name;
        QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&one);
        EXPECT_FALSE(access->text(QAccessible::Name).isEmpty()) << name;
        EXPECT_FALSE(access->text(QAccessible::Description).isEmpty()) << name;
    }
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(&recent())->text(QAccessible::Name).isEmpty());
    ModalAnswer dialog(TypeFile(pathOf(sourceFile)));
    button("StartOpen").setFocus();
    QTest::keyClick(&button("StartOpen"), Qt::Key_Space);
    EXPECT_TRUE(dialog.seen);
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_FALSE(isShown());
}

TEST_F(StartPageTest, opens_recent_files_which_it_shows_with_their_pictures)
{
    const QString folder = TestFolder() + QStringLiteral("/recent");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/Vera with a name that is rather long.duf");
    QFile::remove(file);
    ASSERT_TRUE(QFile::copy(pathOf(sourceFile), file));
    QImage picture(91, 91, QImage::Format_RGB32);
    picture.fill(QColor(200, 30, 30));
    ASSERT_TRUE(picture.save(file + QStringLiteral(".png")));
    start();
    EXPECT_FALSE(recent().isVisible()) << "nothing was used yet";
    ASSERT_TRUE(desktop->files().openFile(file));
    dzScene->clear();
    EXPECT_TRUE(isShown());
    ASSERT_EQ(recent().count(), 1);
    EXPECT_TRUE(recent().isVisible());
    const auto shown = [] { return recent().item(0)->icon().pixmap(16).toImage().pixelColor(8, 8); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == QColor(200, 30, 30); }));
    SavePicture(window(), "start-page-recent");
    recent().setFocus();
    recent().setCurrentRow(0);
    QTest::keyClick(&recent(), Qt::Key_Return);
    EXPECT_EQ(dzScene->getNumSkeletons(), 1);
    EXPECT_FALSE(isShown());
    QFile::remove(file);
    dzScene->clear();
    EXPECT_TRUE(isShown());
    {
        ModalAnswer box(Press("OK"));
        recent().setCurrentRow(0);
        QTest::keyClick(&recent(), Qt::Key_Return);
        EXPECT_TRUE(box.text.contains(QStringLiteral("any more"))) << box.text.toStdString();
    }
    EXPECT_EQ(recent().count(), 0);
}

TEST_F(StartPageTest, guides_a_conversion_by_keys)
{
    start();
    // The plug-in's dialog comes after the choice of the figures, within the same key press.
    QStringList titles;
    QTimer next;
    QObject::connect(&next, &QTimer::timeout, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (!dialog || titles.contains(dialog->windowTitle()))
            return;
        if (dialog->objectName() != QLatin1String("ChooseFiguresDialog")) {
            const auto* const box = qobject_cast<QMessageBox*>(dialog);
            titles << (box ? box->text() : dialog->windowTitle());
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        const QList<QListWidget*> sides = lists(*dialog);
        if (sides.size() != 2 || sides[0]->count() == 0 || sides[1]->count() == 0 ||
            dialog->findChildren<QLabel*>().last()->text().contains(QStringLiteral("Looking")))
            return;
        titles << dialog->windowTitle();
        EXPECT_FALSE(convertButton(*dialog).isEnabled());
        for (QListWidget* const side : sides) {
            const auto named = side->findItems(side == sides[0] ? QStringLiteral("Genesis 8 Female Dev Load")
                                                                : QStringLiteral("Genesis 9"),
                                               Qt::MatchStartsWith);
            ASSERT_FALSE(named.isEmpty());
            side->setFocus();
            QTest::keyClick(side, Qt::Key_Home);
            QTest::keyClick(side, Qt::Key_Space);
            while (side->currentItem() != named.first() && side->currentRow() + 1 < side->count())
                QTest::keyClick(side, Qt::Key_Down);
        }
        SavePicture(*dialog, "choose-figures");
        EXPECT_TRUE(convertButton(*dialog).isEnabled());
        QTest::keyClick(sides[1], Qt::Key_Return);
    });
    next.start(20);
    QTest::keyClick(&button("StartConvert"), Qt::Key_Space);
    ASSERT_EQ(titles.size(), 2) << titles.join(QLatin1Char('|')).toStdString();
    // The plug-in was asked, and knows which of the two is the source; the plain figure has no shape.
    EXPECT_TRUE(titles[1].contains(QStringLiteral("Genesis 8 Female\u201D has no morphs dialed in")))
        << titles[1].toStdString();
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
    EXPECT_EQ(dzScene->getNumSelectedNodes(), 2);
    EXPECT_FALSE(isShown());
}

TEST_F(StartPageTest, tells_when_there_is_nothing_to_convert)
{
    start();
    dzApp->getContentMgr()->removeAllContentDirectories();
    QString told;
    ModalAnswer dialog([&told](QWidget& choose) {
        const auto isDone = [&] {
            told = choose.findChildren<QLabel*>().last()->text();
            return !told.contains(QStringLiteral("Looking"));
        };
        EXPECT_TRUE(QTest::qWaitFor(isDone));
        EXPECT_FALSE(convertButton(choose).isEnabled());
        QTest::keyClick(&choose, Qt::Key_Escape);
    });
    button("StartConvert").click();
    EXPECT_TRUE(dialog.seen);
    EXPECT_TRUE(told.contains(QStringLiteral("Content Folders"))) << told.toStdString();
    EXPECT_EQ(dzScene->getNumNodes(), 0);
}

TEST_F(StartPageTest, makes_the_sample_library_and_adds_it_as_a_content_folder)
{
    start();
    const QString folder = TestFolder() + QStringLiteral("/sample library");
    ASSERT_TRUE(QDir().mkpath(folder));
    QString told;
    QTimer next;
    bool isChosen = false;
    QObject::connect(&next, &QTimer::timeout, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (!dialog || dialog->objectName() == QLatin1String("ProgressWindow"))
            return;
        if (auto* const box = qobject_cast<QMessageBox*>(dialog)) {
            told = box->text();
            box->accept();
        } else if (!std::exchange(isChosen, true)) {
            TypeFile(folder)(*dialog);
        }
    });
    next.start(20);
    button("StartSamples").click();
    EXPECT_TRUE(told.contains(QStringLiteral("is a content folder now"))) << told.toStdString();
    EXPECT_TRUE(QFile::exists(folder + QStringLiteral("/People/Genesis 9/Genesis 9.duf")));
    DzContentMgr& content = *dzApp->getContentMgr();
    EXPECT_EQ(content.getContentDirectoryPath(content.getNumContentDirectories() - 1), folder);
    EXPECT_TRUE(isShown()) << "nothing was opened";
}

TEST_F(StartPageTest, leaves_nothing_of_a_sample_library_that_is_cancelled)
{
    start();
    const QString folder = TestFolder() + QStringLiteral("/cancelled library");
    ASSERT_TRUE(QDir().mkpath(folder));
    const int folders = dzApp->getContentMgr()->getNumContentDirectories();
    QTimer next;
    bool isChosen = false, isCancelled = false;
    QObject::connect(&next, &QTimer::timeout, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        if (dialog->objectName() == QLatin1String("ProgressWindow")) {
            isCancelled = true;
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else if (!std::exchange(isChosen, true)) {
            TypeFile(folder)(*dialog);
        } else {
            ADD_FAILURE() << dialog->windowTitle().toStdString();
            dialog->close();
        }
    });
    next.start(20);
    button("StartSamples").click();
    EXPECT_TRUE(isCancelled);
    EXPECT_EQ(
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).join(QLatin1Char(' ')),
        QString());
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), folders);
}

TEST_F(StartPageTest, lists_figures_in_order_and_proposes_none_that_a_search_hides)
{
    desktop::FigureList list(QStringLiteral("Figures"));
    for (const char* const name : {"Vera", "Anna", "Otto", "anna 2", "Zoe"})
        list.add({QStringLiteral("/x/%1.duf").arg(QLatin1String(name)), {}, {}});
    auto& shown = *list.findChild<QListWidget*>();
    QStringList names;
    for (int row = 0; row < shown.count(); ++row)
        names << shown.item(row)->text();
    EXPECT_EQ(names.join(QLatin1Char(' ')), QStringLiteral("Anna anna 2 Otto Vera Zoe"));
    list.findChild<QLineEdit*>()->setText(QStringLiteral("o"));
    list.add({QStringLiteral("/x/Berta.duf"), {}, {}});
    list.proposePlain();
    EXPECT_EQ(list.chosenFile(), QStringLiteral("/x/Otto.duf"));
}

TEST(ConvertibleFigures, are_told_apart_by_the_data_that_their_file_names)
{
    const QString folder = TestFolder() + QStringLiteral("/kinds");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/one.duf");
    const auto brought = [&file](const char* text, const char* type) {
        QFile out(file);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(text);
        out.close();
        return desktop::FigureBroughtBy(file, QLatin1String(type)).toStdString();
    };
    const char* const older =
        R"({"nodes":[{"url":"/DATA/DAZ%203D/Genesis%208/Female/genesis8female.dsf#x"}]})";
    EXPECT_EQ(brought(older, "character"), "Genesis 8 Female");
    EXPECT_EQ(brought(older, "figure"), "Genesis 8 Female");
    EXPECT_EQ(brought(older, "scene"), "") << "would take the other one's place";
    EXPECT_EQ(brought(older, "preset_pose"), "");
    EXPECT_EQ(brought(R"({"url":"/data/x/Genesis8_1Male.dsf#x"})", "character"), "Genesis 8.1 Male");
    EXPECT_EQ(brought(R"({"url":"/data/Daz%203D/Genesis%209/Base/Genesis9.dsf#Genesis9"})", "character"),
              "Genesis 9");
    EXPECT_EQ(brought(R"({"url":"/data/x/NotGenesis9.dsf#x"})", "character"), "");
    EXPECT_EQ(brought("", "character"), "");
    EXPECT_TRUE(desktop::IsTarget(QStringLiteral("Genesis 9")));
    EXPECT_FALSE(desktop::IsTarget(QStringLiteral("Genesis 3 Male")));
}

TEST_F(StartPageTest, looks_well)
{
    for (const QSize& size : {QSize(1280, 800), QSize(1920, 1080), QSize(800, 600)}) {
        start();
        window().resize(size);
        EXPECT_TRUE(isShown());
        SavePicture(window(), qPrintable(QStringLiteral("start-page-%1").arg(size.width())));
    }
}

} // namespace
