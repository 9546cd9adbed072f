// The preferences: what each does, and what is left of it in another run and in other programs.
// SPDX-License-Identifier: MIT

#include "apps/desktop/desktop_settings.h"
#include "apps/desktop/preferences.h"
#include "openhost/length_unit.h"
#include "openhost/look.h"
#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"
#include "tests/windows/picture.h"

#include <tbb/global_control.h>

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QtTest/QTest>

#include <dzapp.h>
#include <dzappsettings.h>
#include <dzcontentmgr.h>
#include <dzscene.h>
#include <dzundostack.h>

namespace {

enum Page { Folders, Author, Units, Memory, Threads, Look };

class PreferencesTest : public DesktopTest {
protected:
    void TearDown() override
    {
        desktop::ApplyPreferences({});
        qunsetenv("GANTREL_THREADS");
        DesktopTest::TearDown();
    }
    /// In the dialog; OK afterwards.
    static void change(const std::function<void(QWidget&)>& choose)
    {
        ModalAnswer dialog([&](QWidget& preferences) {
            choose(preferences);
            QTest::mouseClick(FindButton(preferences, "OK"), Qt::LeftButton);
        });
        entry("Preferences...")->trigger();
        EXPECT_TRUE(dialog.seen);
    }
    template <class Widget>
    static Widget& named(QWidget& dialog, const char* name)
    {
        return *dialog.findChild<Widget*>(QLatin1String(name));
    }
    static void open(QWidget& dialog, Page page)
    {
        named<QListWidget>(dialog, "Pages").setCurrentRow(page);
        QCoreApplication::processEvents();
    }
    void restart()
    {
        desktop.reset();
        dzApp->setCurrentAuthor(DzAuthor());
        desktop::ApplyPreferences({});
        DesktopTest::restart();
    }
    static std::size_t threads()
    {
        return tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism);
    }
    /// What the command line's program says, or does.
    static QString config(const QStringList& arguments)
    {
        QProcess program;
        program.start(QStringLiteral(GANTREL_CLI), QStringList(QStringLiteral("config")) + arguments);
        EXPECT_TRUE(program.waitForFinished(60000));
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
        return QString::fromUtf8(program.readAllStandardOutput());
    }
    static QString sharedFile()
    {
        return QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME")) + QStringLiteral("/gantrel/config.json");
    }
};

TEST_F(PreferencesTest, take_effect_and_survive_a_restart)
{
    start();
    const std::size_t all = threads();
    change([](QWidget& dialog) {
        named<QComboBox>(dialog, "LengthUnit").setCurrentIndex(2);
        named<QSpinBox>(dialog, "PictureCache").setValue(7);
        named<QSpinBox>(dialog, "Threads").setValue(1);
        named<QLineEdit>(dialog, "AuthorName").setText(QStringLiteral("Ada"));
        named<QLineEdit>(dialog, "AuthorEmail").setText(QStringLiteral("ada@example.org"));
    });
    const auto check = [](const char* when) {
        EXPECT_EQ(openhost::ShownLengthUnit(), openhost::LengthUnit::Inch) << when;
        EXPECT_EQ(threads(), 1u) << when;
        EXPECT_EQ(dzApp->getCurrentAuthor().getName(), QLatin1String("Ada")) << when;
        EXPECT_EQ(dzApp->getCurrentAuthor().getEmail(), QLatin1String("ada@example.org")) << when;
        EXPECT_EQ(desktop::RememberedPreferences().pictureCacheMiB, 7) << when;
    };
    check("at once");
    restart();
    check("after a restart");
    change([](QWidget& dialog) {
        for (const Page page : {Units, Memory, Threads, Author}) {
            open(dialog, page);
            QTest::mouseClick(FindButton(dialog, "Reset to Defaults"), Qt::LeftButton);
        }
    });
    EXPECT_EQ(openhost::ShownLengthUnit(), openhost::LengthUnit::Centimetre);
    EXPECT_EQ(threads(), all);
    EXPECT_EQ(dzApp->getCurrentAuthor().getName(), QString());
    EXPECT_EQ(desktop::RememberedPreferences().pictureCacheMiB, 64);
}

TEST_F(PreferencesTest, bound_the_memory_of_steps_that_can_be_undone)
{
    start();
    dzUndoStack->setMeasure([](const QObject&) { return std::size_t(10) << 20; });
    const auto steps = [] {
        int count = 0;
        while (dzUndoStack->undo())
            ++count;
        while (dzUndoStack->redo()) {
        }
        return count;
    };
    for (int i = 0; i < 3; ++i) {
        auto* const node = new DzNode;
        dzScene->addNode(node);
        QCoreApplication::processEvents();
        dzScene->removeNode(node);
        QCoreApplication::processEvents();
    }
    const int before = steps();
    change([](QWidget& dialog) { named<QSpinBox>(dialog, "UndoMemory").setValue(16); });
    EXPECT_LT(steps(), before) << "at once";
    EXPECT_GT(steps(), 0) << "the last one stays";
    restart();
    EXPECT_EQ(desktop::RememberedPreferences().undoMiB, 16);
}

TEST_F(PreferencesTest, have_the_look_that_the_menu_shows)
{
    start();
    change([](QWidget& dialog) { named<QComboBox>(dialog, "Look").setCurrentIndex(1); });
    EXPECT_EQ(openhost::CurrentLook(), openhost::Look::Light);
    const auto isChecked = [](const char* text) {
        QMenu* const menu = entry("Look")->menu();
        emit menu->aboutToShow();
        for (const QAction* const action : menu->actions())
            if (action->text().remove(QLatin1Char('&')) == QLatin1String(text))
                return action->isChecked();
        return false;
    };
    EXPECT_TRUE(isChecked("Light"));
    restart();
    EXPECT_EQ(openhost::CurrentLook(), openhost::Look::Light);
    const openhost::Look ofSystem = openhost::SystemLook();
    openhost::SetLook(ofSystem == openhost::Look::Dark ? openhost::Look::Light : openhost::Look::Dark);
    change([](QWidget& dialog) { named<QComboBox>(dialog, "Look").setCurrentIndex(2); });
    EXPECT_EQ(openhost::CurrentLook(), ofSystem);
    EXPECT_TRUE(isChecked("System"));
    for (QAction* const action : entry("Look")->menu()->actions())
        if (action->text().contains(QLatin1String("Dark")))
            action->trigger();
    EXPECT_EQ(desktop::RememberedPreferences().look, desktop::LookChoice::Dark);
    EXPECT_EQ(openhost::CurrentLook(), openhost::Look::Dark);
}

TEST_F(PreferencesTest, have_the_look_of_earlier_versions)
{
    DzAppSettings settings(QStringLiteral("Gantrel Desktop"));
    settings.setBoolValue(QStringLiteral("light_look"), true);
    EXPECT_EQ(desktop::RememberedLook(), desktop::LookChoice::Light);
    settings.setIntValue(QStringLiteral("look"), 77);
    EXPECT_EQ(desktop::RememberedLook(), desktop::LookChoice::Light) << "no look has this number";
}

TEST_F(PreferencesTest, are_those_of_the_command_line_where_it_has_them)
{
    start();
    change([](QWidget& dialog) {
        named<QSpinBox>(dialog, "Threads").setValue(3);
        named<QLineEdit>(dialog, "AuthorName").setText(QStringLiteral("Ada"));
    });
    const QString shown = config({});
    EXPECT_TRUE(shown.contains(QStringLiteral("Ada"))) << shown.toStdString();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("threads\\s+3")).match(shown).hasMatch())
        << shown.toStdString();
    config({QStringLiteral("set"), QStringLiteral("threads"), QStringLiteral("2")});
    config({QStringLiteral("set"), QStringLiteral("content"), TestFolder()});
    config({QStringLiteral("set"), QStringLiteral("author"), QStringLiteral("Bea")});
    const desktop::Preferences all = desktop::RememberedPreferences();
    EXPECT_EQ(all.threads, 2);
    EXPECT_EQ(all.author.getName(), QLatin1String("Bea"));
    EXPECT_EQ(all.contentFolders, QStringList{TestFolder()});
}

TEST_F(PreferencesTest, keep_no_folders_for_others_that_one_run_was_started_with)
{
    config({QStringLiteral("set"), QStringLiteral("content"), TestFolder()});
    start();
    ASSERT_EQ(smallLibrary().contentFolders.size(), 1u);
    change([](QWidget& dialog) {
        open(dialog, Folders);
        for (QListWidget* const list : dialog.findChildren<QListWidget*>())
            if (list->objectName() != QLatin1String("Pages"))
                list->setCurrentRow(0);
        QTest::mouseClick(FindButton(dialog, "Remove"), Qt::LeftButton);
    });
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 0);
    EXPECT_EQ(desktop::RememberedPreferences().contentFolders, QStringList{TestFolder()});
}

TEST_F(PreferencesTest, tell_of_a_chosen_folder_that_is_not_there)
{
    config({QStringLiteral("set"), QStringLiteral("content"), TestFolder()});
    desktop::Options options = smallLibrary();
    options.contentFolders.emplace_back("/nowhere at all");
    {
        ModalAnswer box(Press("OK"));
        start(options);
    }
    std::unique_ptr<ModalAnswer> box;
    change([&box](QWidget& dialog) {
        open(dialog, Folders);
        for (QListWidget* const list : dialog.findChildren<QListWidget*>())
            if (list->objectName() != QLatin1String("Pages"))
                list->setCurrentRow(0);
        QTest::mouseClick(FindButton(dialog, "Remove"), Qt::LeftButton);
        box = std::make_unique<ModalAnswer>(Press("OK"));
    });
    EXPECT_TRUE(box->text.contains(QStringLiteral("/nowhere at all"))) << box->text.toStdString();
}

TEST_F(PreferencesTest, have_what_earlier_versions_kept_apart)
{
    desktop::RememberContentFolders({QStringLiteral("/old/library")});
    desktop::RememberAuthor(DzAuthor(QStringLiteral("Ada"), QStringLiteral("ada@example.org"), QString()));
    EXPECT_EQ(desktop::RememberedPreferences().contentFolders, QStringList{QStringLiteral("/old/library")});
    EXPECT_EQ(desktop::RememberedPreferences().author.getName(), QLatin1String("Ada"));
    start();
    change([](QWidget& dialog) { named<QSpinBox>(dialog, "PictureCache").setValue(9); });
    EXPECT_EQ(desktop::RememberedPreferences().author.getName(), QLatin1String("Ada")) << "still";
    EXPECT_EQ(desktop::RememberedPreferences().contentFolders, QStringList{QStringLiteral("/old/library")});
}

TEST_F(PreferencesTest, tell_that_the_environment_goes_before_them)
{
    qputenv("GANTREL_THREADS", "2");
    start();
    EXPECT_EQ(threads(), 2u);
    change([](QWidget& dialog) {
        EXPECT_FALSE(named<QSpinBox>(dialog, "Threads").isEnabled());
        EXPECT_EQ(named<QSpinBox>(dialog, "Threads").value(), 2);
        open(dialog, Threads);
        SavePicture(dialog, "preferences-environment");
    });
    EXPECT_FALSE(QFile::exists(sharedFile())) << "nothing was changed";
}

TEST_F(PreferencesTest, tell_of_a_damaged_file_and_leave_it_as_it_is)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(sharedFile()).path()));
    QFile file(sharedFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ broken");
    file.close();
    desktop::RememberContentFolders({QStringLiteral("/old/library")});
    {
        ModalAnswer box(Press("OK"));
        start();
        EXPECT_TRUE(box.text.contains(QStringLiteral("config.json"))) << box.text.toStdString();
    }
    std::unique_ptr<ModalAnswer> box;
    change([&box](QWidget& dialog) {
        named<QSpinBox>(dialog, "Threads").setValue(1);
        QTest::mouseClick(FindButton(dialog, "Remove"), Qt::LeftButton);
        box = std::make_unique<ModalAnswer>(Press("OK"));
    });
    EXPECT_TRUE(box->text.contains(QStringLiteral("could be kept"))) << box->text.toStdString();
    EXPECT_EQ(threads(), 1u) << "for this run";
    EXPECT_EQ(desktop::RememberedContentFolders(), QStringList{QStringLiteral("/old/library")});
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("{ broken"));
}

TEST_F(PreferencesTest, look_well)
{
    start();
    for (const bool isLarge : {false, true}) {
        const auto large = isLarge ? std::make_unique<LargeFont>() : nullptr;
        ModalAnswer dialog([&](QWidget& preferences) {
            const auto& pages = named<QListWidget>(preferences, "Pages");
            EXPECT_EQ(pages.count(), 7);
            for (int page = 0; page < pages.count(); ++page) {
                open(preferences, Page(page));
                SavePicture(preferences, qPrintable(QStringLiteral("preferences-%1%2")
                                                        .arg(page)
                                                        .arg(isLarge ? QStringLiteral("-18pt") : QString())));
            }
            QTest::keyClick(&preferences, Qt::Key_Escape);
        });
        entry("Preferences...")->trigger();
        EXPECT_TRUE(dialog.seen);
    }
}

} // namespace
