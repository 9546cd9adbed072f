// How the desktop application starts.
// SPDX-License-Identifier: MIT

#include "tests/desktop/desktop_fixture.h"
#include "tests/windows/modal_answer.h"

#include <QProcess>
#include <QScreen>
#include <QtTest>

#include <dzcontentmgr.h>
#include <dzmainwindow.h>
#include <dzpluginmgr.h>

#include <sstream>

namespace {

struct Parsed {
    desktop::Options options;
    std::optional<int> code;
    std::string out;
    std::string err;
};

Parsed Parse(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "gantrel-desktop");
    Parsed parsed;
    std::ostringstream out, err;
    parsed.code =
        desktop::ParseOptions(static_cast<int>(arguments.size()), arguments.data(), parsed.options, out, err);
    parsed.out = out.str();
    parsed.err = err.str();
    return parsed;
}

/// Runs the program itself.
int RunProgram(const QStringList& arguments, QString* err = nullptr)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(QLatin1String(variable));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(GANTREL_DESKTOP), arguments);
    EXPECT_TRUE(program.waitForFinished(60000));
    if (err)
        *err = QString::fromUtf8(program.readAllStandardError());
    return program.exitCode();
}

using Texts = std::vector<std::string>;

TEST(DesktopOptions, take_folders_and_files)
{
    const Parsed parsed =
        Parse({"--content", "/a", "--plugins", "/p", "one.duf", "--content", "/b", "two.duf"});
    EXPECT_FALSE(parsed.code);
    EXPECT_EQ(parsed.options.contentFolders, (Texts{"/a", "/b"}));
    EXPECT_EQ(parsed.options.pluginFolder, "/p");
    EXPECT_EQ(parsed.options.files, (Texts{"one.duf", "two.duf"}));
}

TEST(DesktopOptions, take_what_scripts_may)
{
    const Parsed parsed =
        Parse({"--allow-files", "/a", "one.duf", "--allow-processes", "--allow-files", "/b"});
    EXPECT_FALSE(parsed.code);
    EXPECT_EQ(parsed.options.scriptFolders, (Texts{"/a", "/b"}));
    EXPECT_TRUE(parsed.options.scriptProcesses);
    EXPECT_EQ(parsed.options.files, Texts{"one.duf"});
}

TEST(DesktopOptions, take_which_way_windows_read)
{
    EXPECT_TRUE(Parse({"--right-to-left"}).options.rightToLeft);
    EXPECT_FALSE(Parse({"one.duf"}).options.rightToLeft);
}

TEST(DesktopOptions, may_all_be_left_out)
{
    const Parsed parsed = Parse({});
    EXPECT_FALSE(parsed.code);
    EXPECT_TRUE(parsed.options.contentFolders.empty());
    EXPECT_TRUE(parsed.options.pluginFolder.empty());
    EXPECT_TRUE(parsed.options.files.empty());
    EXPECT_TRUE(parsed.options.scriptFolders.empty());
    EXPECT_FALSE(parsed.options.scriptProcesses);
}

TEST(DesktopOptions, ask_for_help_and_for_the_version)
{
    const Parsed help = Parse({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.out.find("--content DIR"), std::string::npos) << help.out;
    EXPECT_NE(help.out.find("--plugins DIR"), std::string::npos) << help.out;
    const Parsed version = Parse({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.out, "gantrel-desktop " GANTREL_VERSION "\n");
}

TEST(DesktopOptions, refuse_wrong_use_in_one_sentence)
{
    for (const std::vector<const char*>& wrong : {std::vector<const char*>{"--wrong"},
                                                  {"--content"},
                                                  {"--content", ""},
                                                  {"--plugins", ""},
                                                  {"--allow-files"},
                                                  {"--allow-files", ""},
                                                  {""}}) {
        const Parsed parsed = Parse(wrong);
        EXPECT_EQ(parsed.code, 2);
        EXPECT_EQ(parsed.err.rfind("gantrel-desktop: ", 0), 0u) << parsed.err;
        EXPECT_EQ(parsed.err.find('\n'), parsed.err.size() - 1) << parsed.err;
        EXPECT_TRUE(parsed.out.empty());
    }
}

TEST(DesktopProgram, ends_with_the_codes_of_its_options)
{
    EXPECT_EQ(RunProgram({QStringLiteral("--help")}), 0);
    EXPECT_EQ(RunProgram({QStringLiteral("--wrong")}), 2);
}

TEST(DesktopProgram, says_that_there_is_no_display)
{
    QString err;
    EXPECT_EQ(RunProgram({}, &err), 1);
    EXPECT_EQ(err.toStdString(), "gantrel-desktop: There is no display to show a window on.\n");
}

namespace {

/// The program with a cache folder in which somebody may have left a log.
class DesktopLogFile : public testing::Test {
protected:
    QString path(const char* name) const
    {
        return _cache.filePath(QStringLiteral("gantrel/") + QLatin1String(name));
    }
    void leave(const char* name, const char* text) const
    {
        QDir().mkpath(path(""));
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QByteArray text(const char* name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    /// Kills it once it has told of a file that it cannot open.
    void run() const
    {
        leave("broken.duf", "{");
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), _cache.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), _cache.path());
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(GANTREL_DESKTOP), {path("broken.duf")});
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return text("desktop-log.txt").contains("broken.duf"); }, 60000));
        program.kill();
        EXPECT_TRUE(program.waitForFinished(60000));
    }

    QTemporaryDir _cache;
};

} // namespace

TEST_F(DesktopLogFile, of_the_run_before_is_kept)
{
    leave("desktop-log.txt", "former\n");
    leave("desktop-log.old.txt", "older\n");
    run();
    EXPECT_EQ(text("desktop-log.old.txt"), "former\n");
    EXPECT_FALSE(text("desktop-log.txt").contains("former"));
}

TEST_F(DesktopLogFile, that_said_nothing_takes_no_other_ones_place)
{
    leave("desktop-log.txt", "");
    leave("desktop-log.old.txt", "older\n");
    run();
    EXPECT_EQ(text("desktop-log.old.txt"), "older\n");
}

TEST_F(DesktopLogFile, that_cannot_be_renamed_is_written_on)
{
    QDir().mkpath(path("desktop-log.old.txt/in the way"));
    leave("desktop-log.txt", "former\n");
    run();
    EXPECT_TRUE(text("desktop-log.txt").startsWith("former\n"));
}

TEST(DesktopFirstSize, leaves_room_for_the_frame_on_small_screens_and_fills_most_of_large_ones)
{
    constexpr int lineHeight = 20;
    const QSize small = desktop::FirstWindowSize(QSize(1280, 770), lineHeight);
    EXPECT_LT(small.width(), 1280);
    EXPECT_LE(small.height(), 770 - 2 * lineHeight) << "a title bar fits above it";
    EXPECT_GE(small.width(), 1200);
    EXPECT_GE(small.height(), 700);
    EXPECT_EQ(desktop::FirstWindowSize(QSize(1600, 1000), lineHeight), QSize(1280, 800));
    EXPECT_EQ(desktop::FirstWindowSize(QSize(3840, 2160), lineHeight), QSize(2880, 1620));
}

TEST_F(DesktopTest, fits_on_the_screen_at_its_first_start)
{
    start();
    EXPECT_TRUE(window().screen()->availableGeometry().contains(window().frameGeometry()))
        << window().width() << " by " << window().height();
}

TEST_F(DesktopTest, loads_the_plug_ins_of_a_folder_into_its_menus)
{
    start();
    EXPECT_EQ(menuTitles().join(QLatin1Char('|')).toStdString(), "&File|&Edit|&View|Co&nvert|&Window|&Help");
    ASSERT_NE(entry("Convert selected Genesis 3 / 8 / 8.1 figure..."), nullptr);
    EXPECT_NE(entry("Open Gantrel PDF manual"), nullptr);
}

TEST_F(DesktopTest, opens_the_files_that_it_is_given)
{
    desktop::Options options = smallLibrary();
    options.files = {pathOf(sourceFile).toStdString(), pathOf(targetFile).toStdString()};
    start(options);
    EXPECT_EQ(dzScene->getNumSkeletons(), 2);
}

TEST_F(DesktopTest, tells_what_is_missing_in_one_box)
{
    desktop::Options options = smallLibrary();
    const std::string there = options.contentFolders.front();
    options.contentFolders = {"/no/such/library", there};
    options.pluginFolder = "/no/such/plug-ins";
    options.files = {"/no/such/figure.duf"};
    ModalAnswer box(Press("OK"));
    start(options);
    EXPECT_EQ(box.text.toStdString(), "There is no content folder \u201C/no/such/library\u201D.\n"
                                      "There is no plug-in folder \u201C/no/such/plug-ins\u201D.\n"
                                      "There is no file \u201C/no/such/figure.duf\u201D.");
    EXPECT_EQ(box.icon, QMessageBox::Warning);
    EXPECT_EQ(dzApp->getContentMgr()->getNumContentDirectories(), 1);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(DesktopTest, tells_of_a_plug_in_that_is_none)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("broken.so")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no module");
    file.close();
    desktop::Options options = smallLibrary();
    options.pluginFolder = folder.path().toStdString();
    ModalAnswer box(Press("OK"));
    start(options);
    EXPECT_TRUE(box.text.startsWith(QStringLiteral("The plug-in \u201Cbroken\u201D could not be loaded: ")))
        << box.text.toStdString();
}

TEST_F(DesktopTest, has_the_plug_in_beside_the_program)
{
    EXPECT_TRUE(QFile::exists(QFileInfo(QStringLiteral(GANTREL_DESKTOP)).path() +
                              QStringLiteral("/plugins/libgantrel.so")));
}

} // namespace
