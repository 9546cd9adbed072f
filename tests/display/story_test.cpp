// The desktop application itself, run twice on a screen in memory by a user with mouse and keys.
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <vector>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

constexpr int startMilliseconds = 30000;
constexpr int runMilliseconds = 300000;

/// An X server without a display, and a window manager on it. Ends with the object.
class VirtualScreen {
public:
    VirtualScreen()
    {
        _server.start(QStringLiteral(GANTREL_XVFB),
                      {"-displayfd", "1", "-screen", "0", "1600x1000x24", "-nolisten", "tcp"});
        while (!_server.canReadLine() && _server.waitForReadyRead(startMilliseconds)) {
        }
        name = QLatin1Char(':') + QString::fromUtf8(_server.readLine()).trimmed();
    }
    ~VirtualScreen()
    {
        for (QProcess* const process : {&_manager, &_server}) {
            process->terminate();
            process->waitForFinished(startMilliseconds);
        }
    }
    /// Waits until it manages windows.
    void startManager(const QProcessEnvironment& environment)
    {
        _manager.setProcessEnvironment(environment);
        _manager.start(QStringLiteral(GANTREL_WINDOW_MANAGER), {"--startup", "echo started"});
        QByteArray said;
        while (!said.contains("started") && _manager.waitForReadyRead(startMilliseconds))
            said += _manager.readAllStandardOutput();
        ASSERT_TRUE(said.contains("started")) << said.toStdString();
    }

    QString name; ///< such as ":1"; ":" alone where the server did not start

private:
    QProcess _server;
    QProcess _manager;
};

class DisplayStory : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(_folder.isValid());
        for (const char* const name : {"saved", "plugins", "home"})
            ASSERT_TRUE(QDir(_folder.path()).mkdir(QLatin1String(name)));
        ASSERT_EQ(QProcess::execute(QStringLiteral(GANTREL_CLI), {"sample-content", path("sample")}), 0);
        for (const char* const module : {GANTREL_MODULE, GANTREL_STORY_MODULE})
            ASSERT_TRUE(QFile::link(QLatin1String(module),
                                    path("plugins/") + QFileInfo(QLatin1String(module)).fileName()));
        ASSERT_GT(screen.name.size(), 1) << "the X server does not start";
        screen.startManager(environment());
    }

    QString path(const char* relative) const { return _folder.filePath(QLatin1String(relative)); }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
        all.insert(QStringLiteral("DISPLAY"), screen.name);
        all.insert(QStringLiteral("HOME"), path("home"));
        for (const char* const variable :
             {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
            all.remove(QLatin1String(variable));
        return all;
    }

    /// @return what the program wrote, for the message of a failure
    std::string run(const char* story, const char* extent, const QStringList& more = {}) const
    {
        QProcessEnvironment told = environment();
        told.insert(QStringLiteral("GANTREL_STORY"), QLatin1String(story));
        told.insert(QStringLiteral("GANTREL_STORY_SOURCE"),
                    path("sample/People/Genesis 3 Female/Characters/Gina.duf"));
        told.insert(QStringLiteral("GANTREL_STORY_TARGET"), path("sample/People/Genesis 9/Genesis 9.duf"));
        told.insert(QStringLiteral("GANTREL_STORY_LIBRARY"), path("saved"));
        told.insert(QStringLiteral("GANTREL_STORY_EXTENT"), path(extent));
        QProcess program;
        program.setProcessEnvironment(told);
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(GANTREL_DESKTOP),
                      QStringList{"--content", path("sample"), "--content", path("saved"), "--plugins",
                                  path("plugins")} +
                          more);
        const bool hasEnded = program.waitForFinished(runMilliseconds);
        EXPECT_TRUE(hasEnded);
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        return program.readAll().toStdString();
    }

    /// Of the vendor that the stories by keys name.
    std::string savedMorphs() const
    {
        QDirIterator saved(path("sample/data"), {"*.dsf"}, QDir::Files, QDirIterator::Subdirectories);
        QStringList names;
        while (saved.hasNext())
            if (saved.next().contains(QStringLiteral("/Acme/Product/")))
                names.append(saved.fileName());
        return names.join(QLatin1Char('|')).toStdString();
    }

    std::vector<double> numbersIn(const char* relative) const
    {
        std::ifstream in(path(relative).toStdString());
        return {std::istream_iterator<double>(in), std::istream_iterator<double>()};
    }

private:
    QTemporaryDir _folder;

protected:
    VirtualScreen screen;
};

} // namespace

TEST_F(DisplayStory, from_two_figures_to_a_saved_morph_that_the_next_run_finds)
{
    std::string output = run("convert", "converted.txt");
    ASSERT_FALSE(HasFailure()) << output;
    const std::vector<double> converted = numbersIn("converted.txt");
    ASSERT_EQ(converted.size(), 6u);

    output = run("find", "found.txt");
    ASSERT_FALSE(HasFailure()) << output;
    const std::vector<double> found = numbersIn("found.txt");
    ASSERT_EQ(found.size(), 6u);
    const std::vector<double> bare = numbersIn("found.txt.bare");
    ASSERT_EQ(bare.size(), 6u);
    // Across, it stood beside the source.
    EXPECT_NEAR(found[3] - found[0], converted[3] - converted[0], 1e-4);
    for (const std::size_t i : {1, 2, 4, 5})
        EXPECT_NEAR(found[i], converted[i], 1e-4) << "centimetres, number " << i;
    EXPECT_GT(std::abs(found[4] - bare[4]), 1.0) << "the shape is a smaller woman's";
}

TEST_F(DisplayStory, by_keys_alone_saves_a_morph)
{
    const std::string output = run("keys", "unused.txt");
    ASSERT_FALSE(HasFailure()) << output;
    EXPECT_EQ(savedMorphs(), "Gina converted to G9 Body.dsf");
}

TEST_F(DisplayStory, by_keys_alone_in_mirrored_windows_saves_a_morph)
{
    const std::string output = run("mirrored", "unused.txt", {"--right-to-left"});
    ASSERT_FALSE(HasFailure()) << output;
    EXPECT_EQ(savedMorphs(), "Gina converted to G9 Body.dsf");
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
