// Ctrl+C.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_held_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A pipe that lies where a file is wanted: who reads it waits for what is given.
class PipeForFile {
public:
    PipeForFile(const std::string& path, std::string content) : _path(path), _content(std::move(content))
    {
        std::filesystem::remove(path);
        if (mkfifo(path.c_str(), 0600) != 0)
            throw std::runtime_error("cannot make a pipe");
    }
    ~PipeForFile()
    {
        if (_writing >= 0)
            close(_writing);
    }
    PipeForFile(const PipeForFile&) = delete;
    PipeForFile& operator=(const PipeForFile&) = delete;

    bool isWaitedFor()
    {
        if (_writing < 0)
            _writing = open(_path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return _writing >= 0;
    }
    /// All of it; what comes later finds nothing in the pipe.
    void give()
    {
        // Who has been interrupted may not wait for it any more.
        std::signal(SIGPIPE, SIG_IGN);
        const ssize_t written = write(_writing, _content.data(), _content.size());
        EXPECT_TRUE(written == static_cast<ssize_t>(_content.size()) || errno == EPIPE) << errno;
        close(_writing);
        _writing = -1;
        std::filesystem::remove(_path);
    }

private:
    std::string _path, _content;
    int _writing = -1;
};

/// Tells of a name in a folder as soon as it is there: who looks now and then may find that the program has
/// ended meanwhile.
class Arrival {
public:
    Arrival(const std::string& folder, std::string name)
        : _name(std::move(name)), _events(inotify_init1(IN_CLOEXEC))
    {
        if (_events < 0 || inotify_add_watch(_events, folder.c_str(), IN_CREATE | IN_MOVED_TO) < 0)
            throw std::runtime_error("cannot watch " + folder);
    }
    ~Arrival() { close(_events); }
    Arrival(const Arrival&) = delete;
    Arrival& operator=(const Arrival&) = delete;

    /// Waits a moment for it.
    bool hasCome() const
    {
        constexpr int moment =
            100; // milliseconds, after which somebody may ask whether the program has ended
        pollfd wanted{_events, POLLIN, 0};
        if (poll(&wanted, 1, moment) <= 0)
            return false;
        alignas(inotify_event) char bytes[4096];
        const ssize_t count = read(_events, bytes, sizeof bytes);
        for (ssize_t at = 0; at < count;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(bytes + at);
            if (event->len > 0 && event->name == _name)
                return true;
            at += static_cast<ssize_t>(sizeof *event + event->len);
        }
        return false;
    }

private:
    std::string _name;
    int _events;
};

/// Interrupted while a file is read.
void ExpectInterrupted(const std::vector<std::string>& arguments, const std::string& readFile,
                       const std::string& content)
{
    SCOPED_TRACE(arguments.front() + " " + arguments.back());
    for (const bool isGiven : {true, false}) {
        PipeForFile pipe(readFile, content);
        const ProgramResult result = InterruptProgram(
            arguments, [&pipe] { return pipe.isWaitedFor(); },
            [&pipe, isGiven] {
                if (isGiven)
                    pipe.give();
            });
        EXPECT_EQ(result.signal, SIGINT);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
    }
}

class InterruptedLook : public ::testing::Test {
protected:
    InterruptedLook()
    {
        std::filesystem::create_directories(workspace.path("lib/data/Box/Morphs"));
        workspace.write("lib/data/Box/Morphs/Tall.dsf", morph);
    }
    ~InterruptedLook() override
    {
        for (const std::string& entry : workspace.entries())
            EXPECT_NE(entry.compare(0, 4, "tmp/"), 0) << entry;
    }

    const std::string figure = R"({"file_version": "0.6.0.0",
        "asset_info": {"id": "/data/Box/Box.dsf", "type": "figure"},
        "geometry_library": [{"id": "Box-g", "vertices": {"values": [[0, 0, 0], [9, 0, 0], [9, 9, 0]]},
            "polygon_groups": {"values": ["all"]}, "polygon_material_groups": {"values": ["skin"]},
            "polylist": {"values": [[0, 0, 0, 1, 2]]}}],
        "node_library": [{"id": "Box", "label": "Box", "type": "figure"}]})";
    const std::string morph =
        R"({"file_version": "0.6.0.0", "asset_info": {"id": "/x.dsf"}, "modifier_library": [{
        "id": "Tall", "parent": "/data/Box/Box.dsf#Box-g", "channel": {"id": "value", "type": "float"},
        "morph": {"vertex_count": 3, "deltas": {"values": [[2, 0, 1, 0]]}, "hd_url": "/data/Box/Morphs/Tall.dhdm"}}]})";
    Workspace workspace;
};

} // namespace

using InterruptedConversion = ConversionTest;

TEST_F(InterruptedConversion, ends_at_the_next_step_and_makes_no_morphs)
{
    const auto hasFile = [this](const char* stem) {
        const std::vector<std::string> entries = workspace.entries();
        return std::any_of(entries.begin(), entries.end(), [stem](const std::string& entry) {
            return entry.find(std::string("/") + stem) != std::string::npos;
        });
    };
    // It waits for a figure that it loads on its way: on a busy machine it might be done before the signal.
    HeldFile figure(library("/People/Genesis 9/Developer Kit/Genesis 9 Dev Load.duf"));
    const ProgramResult result = InterruptProgram(
        arguments({"--keep-temp"}), [&figure] { return figure.isWaitedFor(); },
        [&figure] { figure.letGo(); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.find("gantrel: Interrupted; nothing was saved; the temporary files are in " +
                              workspace.path("tmp/gantrel-kept-")),
              0u)
        << result.err;
    EXPECT_TRUE(hasFile("tempg8-src1-")) << "the first file of a conversion";
    EXPECT_FALSE(hasFile("tempg9-")) << "the file of the next step";
    EXPECT_FALSE(hasFile("rigged-for-mlp-")) << "the last file";
}

TEST_F(InterruptedConversion, ends_between_two_pictures)
{
    const std::string pictures = workspace.path("pictures");
    std::filesystem::create_directory(pictures);
    const Arrival first(pictures, "source.png");
    const ProgramResult result =
        InterruptProgram(arguments({"--pictures", pictures}), [&first] { return first.hasCome(); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err.find("gantrel: Interrupted; " + pictures + "/source.png is written"), 0u)
        << result.err;
    EXPECT_FALSE(std::filesystem::exists(pictures + "/comparison-face.png")) << "the last one";
}

TEST_F(InterruptedConversion, names_the_morphs_that_were_saved_before)
{
    const std::string pictures = workspace.path("pictures");
    const Arrival folder(workspace.path(""), "pictures");
    const ProgramResult result = InterruptProgram(
        arguments(saving(workspace.path("saved"), {"--pictures", pictures, "--jobs", "head"})),
        [&folder] { return folder.hasCome(); });
    EXPECT_EQ(result.signal, SIGINT);
    const std::vector<std::string> entries = workspace.entries();
    const auto saved = std::find_if(entries.begin(), entries.end(), [](const std::string& entry) {
        return entry.compare(0, 6, "saved/") == 0 && entry.find(".dsf") != entry.npos;
    });
    ASSERT_NE(saved, entries.end());
    EXPECT_EQ(result.err.find("gantrel: Interrupted; the morphs are saved: " + workspace.path(*saved)), 0u)
        << result.err;
    expectNoTraces();
}

TEST_F(InterruptedConversion, that_waits_for_a_file_saves_nothing)
{
    const std::string path = library("/data/DAZ 3D/Genesis 9/Base/Genesis9.dsf");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const HeldFile figure(path);
        const ProgramResult result = SignalProgram(arguments(saving(workspace.path("saved"))), signal,
                                                   [&figure] { return figure.isWaitedFor(); });
        EXPECT_EQ(result.signal, signal) << "it is never let go of";
        EXPECT_EQ(result.err, "gantrel: Interrupted; nothing was saved.\n");
        EXPECT_FALSE(workspace.has("saved"));
        expectNoTraces();
    }
}

TEST(InterruptedScript, ends_where_the_toolkit_waits_for_a_file)
{
    // Opened and read by calls that go on waiting when a signal comes, inside of which no script can be
    // stopped.
    const Workspace workspace;
    const std::string settings = workspace.path("settings.json");
    const std::string reader =
        workspace.write("wait.js", "new DzMorphLoader().readObjectCommonSettingsFromConfigFile('" + settings +
                                       "');\n"
                                       "print('read');");
    for (const std::string& script : {reader, settings}) {
        PipeForFile pipe(settings, "");
        const ProgramResult result =
            InterruptProgram({"script", script}, [&pipe] { return pipe.isWaitedFor(); });
        EXPECT_EQ(result.signal, SIGINT) << script;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "gantrel: Interrupted.\n");
        EXPECT_EQ(workspace.entries(), (std::vector<std::string>{"settings.json", "wait.js"}));
    }
}

TEST(InterruptedPicture, ends_within_the_picture)
{
    const Workspace workspace;
    const std::string mesh = workspace.path("cube.obj"), picture = workspace.path("cube.png");
    // As large as pictures can be: hours, of which one second would be too much.
    PipeForFile pipe(mesh, FineCubeText(6));
    const ProgramResult result =
        SignalProgram({"render", mesh, "--out", picture, "--size", "16384x16384"}, SIGTERM, [&pipe] {
            if (!pipe.isWaitedFor())
                return false;
            pipe.give();
            return true;
        });
    EXPECT_EQ(result.signal, SIGTERM);
    EXPECT_EQ(result.err, "gantrel: Interrupted; nothing was saved.\n");
    EXPECT_FALSE(std::filesystem::exists(picture));
}

TEST(InterruptedFigure, leaves_nothing)
{
    const Workspace workspace;
    const std::string mesh = workspace.path("cube.obj"), library = workspace.path("lib");
    PipeForFile pipe(mesh, CubeText(0.0));
    const ProgramResult result =
        InterruptProgram({"make-figure", "--kind", "genesis9", "--mesh", mesh, "--skeleton", mesh,
                          "--weights", mesh, "--library", library},
                         [&pipe] { return pipe.isWaitedFor(); });
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_EQ(result.err, "gantrel: Interrupted; nothing was saved.\n");
    EXPECT_FALSE(std::filesystem::exists(library));
}

TEST(InterruptedTwice, ends_at_once_without_a_word)
{
    const Workspace workspace;
    PipeForFile pipe(workspace.path("Box.dsf"), "");
    const ProgramResult result =
        InterruptProgramTwice({"inspect", workspace.path("Box.dsf")}, [&pipe] { return pipe.isWaitedFor(); });
    EXPECT_TRUE(result.signal == SIGINT || result.signal == SIGTERM) << result.signal;
    EXPECT_EQ(result.err, "");
}

TEST_F(InterruptedLook, at_dials_lists_none)
{
    const std::string file = workspace.path("lib/data/Box/Box.dsf");
    ExpectInterrupted({"list-dials", file}, file, figure);
}

TEST_F(InterruptedLook, into_a_file_tells_nothing)
{
    const std::string file = workspace.path("lib/data/Box/Box.dsf");
    ExpectInterrupted({"inspect", file}, file, figure);
}

TEST_F(InterruptedLook, into_morphs_tells_nothing)
{
    const std::string file = workspace.path("lib/data/Box/Box.dsf");
    ExpectInterrupted({"inspect", file, "--morphs", "*"}, file, figure);
}

TEST_F(InterruptedLook, for_what_cannot_be_used_tells_nothing)
{
    const std::string file = workspace.write("lib/data/Box/Box.dsf", figure);
    const std::string detail = workspace.path("lib/data/Box/Morphs/Tall.dhdm");
    ExpectInterrupted({"inspect", file, "--check"}, detail, "no detail");
    ExpectInterrupted({"inspect", "--check", workspace.path("lib/data")}, detail, "no detail");
}
