// `gantrel config`, and the settings where other subcommands take them.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_held_file.h"
#include "cli_workspace.h"
#include "tests/plugin/mini_library.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <future>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Has the lock of a file until its process ends.
int HoldLock(const std::string& file)
{
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? descriptor : -1;
}

using nlohmann::json;

/// With a folder for settings of its own, which is empty at first.
struct Config : ::testing::Test {
    Workspace workspace;
    ScopedVariable folder{"XDG_CONFIG_HOME", workspace.path("config")};
    const std::string file = workspace.path("config/gantrel/config.json");

    static json shown()
    {
        const ProgramResult result = RunProgram({"config", "--json"});
        ExpectSuccess(result);
        const json report = json::parse(result.out);
        json byName;
        for (const json& setting : report.at("settings"))
            byName[setting.at("name").get<std::string>()] = setting;
        return byName;
    }

    void writeFile(const std::string& text) const
    {
        std::filesystem::create_directories(workspace.path("config/gantrel"));
        workspace.write("config/gantrel/config.json", text);
    }

    std::vector<std::string> filesBeside() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(workspace.path("config/gantrel")))
            names.push_back(entry.path().filename());
        return names;
    }

    /// Of a script that tells in which folder a file of the mini library was found.
    ProgramResult runFinder(const std::vector<std::string>& more = {}) const
    {
        const std::string script = workspace.write(
            "find.js", "print(App.getContentMgr().getAbsolutePath('People/Genesis 9/Genesis 9.duf', true));");
        std::vector<std::string> arguments{"script", script};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunProgram(arguments);
    }

    std::string library(const std::string& name) const
    {
        WriteMiniLibrary(workspace.path(name));
        return workspace.path(name);
    }
};

const std::string figure = "/People/Genesis 9/Genesis 9.duf\n";

} // namespace

TEST_F(Config, shows_what_is_set_and_where)
{
    EXPECT_EQ(RunProgram({"config"}).out,
              "NAME\tVALUE\tFROM\ncontent\t-\tnot set\nvendor\t-\tnot set\nproduct\t-\tnot set\n"
              "author\t-\tnot set\n"
              "threads\t-\tnot set\n");
    ExpectSuccess(RunProgram({"config", "set", "vendor", "Me"}));
    ExpectSuccess(RunProgram({"config", "set", "content", "/a b", "/c"}));
    ExpectSuccess(RunProgram({"config", "set", "threads", "2"}));
    const ScopedVariable product("GANTREL_PRODUCT", "Shapes");
    EXPECT_EQ(RunProgram({"config"}).out,
              "NAME\tVALUE\tFROM\ncontent\t/a b:/c\t" + file + "\nvendor\tMe\t" + file +
                  "\nproduct\tShapes\tGANTREL_PRODUCT\nauthor\t-\tnot set\nthreads\t2\t" + file + "\n");
}

TEST_F(Config, takes_settings_out_and_leaves_the_others)
{
    writeFile(R"({"vendor": "Me", "someday": [1, {"a": null}], "threads": 3})");
    const ProgramResult taken = RunProgram({"config", "unset", "vendor"});
    ExpectSuccess(taken);
    EXPECT_EQ(json::parse(workspace.read("config/gantrel/config.json")),
              json::parse(R"({"someday": [1, {"a": null}], "threads": 3})"));
    ExpectSuccess(RunProgram({"config", "unset", "vendor"})); // it is not there, as is wanted
    const ProgramResult told = RunProgram({"config"});
    EXPECT_EQ(told.err, "gantrel: warning: " + file + ": there is no setting \"someday\"\n");
}

TEST_F(Config, keeps_folders_whole_wherever_it_is_called_from)
{
    ExpectSuccess(RunProgram({"config", "set", "content", "some/folder"}));
    const std::string kept = shown().at("content").at("values").at(0);
    EXPECT_EQ(kept, (std::filesystem::current_path() / "some/folder").string());
}

TEST_F(Config, refuses_values_that_cannot_be_meant)
{
    ExpectError(RunProgram({"config", "set", "vendor", "a/b"}), 2,
                "Vendor \"a/b\" cannot be the name of a folder.");
    ExpectError(RunProgram({"config", "set", "vendor", ""}), 2, "Vendor is empty.");
    ExpectError(RunProgram({"config", "set", "vendor", "A", "B"}), 2, "Vendor takes one value.");
    ExpectError(RunProgram({"config", "set", "threads", "many"}), 2,
                "Threads \"many\" is no number from 1 to 1024.");
    ExpectError(RunProgram({"config", "set", "threads", "0"}), 2,
                "Threads \"0\" is no number from 1 to 1024.");
    ExpectError(RunProgram({"config", "set", "content", "/a\xff"}), 2, "The value is not UTF-8.");
    ExpectError(RunProgram({"config", "set", "vendor"}), 2, "Set needs a value.");
    ExpectError(RunProgram({"config", "unset", "vendor", "Me"}), 2, "Unset takes no value.");
    ExpectError(RunProgram({"config", "set"}), 2, "Set needs the name of a setting.");
    ExpectWrongUse(RunProgram({"config", "set", "colour", "red"}), "\"colour\" is none of content, ");
    EXPECT_FALSE(workspace.has("config"));
}

TEST_F(Config, leaves_a_damaged_file_as_it_is_and_names_it)
{
    const std::string damaged = "{\n\"vendor\": \"Me\",\n\"product\": \n";
    writeFile(damaged);
    const std::string sentence = file + ": line 4 is no JSON, so that no setting is known.";
    ExpectError(RunProgram({"config"}), 1, sentence);
    ExpectError(RunProgram({"config", "set", "vendor", "You"}), 1, sentence);
    ExpectError(RunProgram({"config", "unset", "vendor"}), 1, sentence);
    ExpectError(runFinder(), 1, sentence);
    ExpectJsonError(RunProgram({"inspect", "none.obj", "--json"}), 1, sentence);
    EXPECT_EQ(workspace.read("config/gantrel/config.json"), damaged);
    ExpectSuccess(RunProgram({"convert", "--help"})); // which is the way out
    const std::string vendor = file + ": vendor is neither a text, a number nor a list of texts.";
    for (const char* text :
         {R"({"vendor": null})", R"({"vendor": {}})", R"({"vendor": [1]})", R"({"vendor": []})"}) {
        writeFile(text);
        ExpectError(RunProgram({"config"}), 1, vendor);
        ExpectError(RunProgram({"config", "set", "product", "Mine"}), 1, vendor);
        EXPECT_EQ(workspace.read("config/gantrel/config.json"), text);
    }
    writeFile(R"({"threads": 1e400})");
    ExpectError(RunProgram({"config", "set", "vendor", "Me"}), 1,
                file + ": holds a number that is too large for any use.");
    writeFile("[]");
    ExpectError(RunProgram({"config"}), 1, file + ": is not one JSON object with the settings.");
    writeFile(std::string(2000000, ' '));
    ExpectError(RunProgram({"config"}), 1, file + ": is too large for settings.");
}

TEST_F(Config, gives_way_to_the_environment_and_both_to_the_option)
{
    const std::string kept = library("kept"), ofEnvironment = library("env"), given = library("given");
    ExpectSuccess(RunProgram({"config", "set", "content", workspace.path(""), kept}));
    EXPECT_EQ(runFinder().out, kept + figure);
    const ScopedVariable variable("GANTREL_CONTENT", ":" + workspace.path("tmp") + ":" + ofEnvironment + ":");
    EXPECT_EQ(runFinder().out, ofEnvironment + figure);
    EXPECT_EQ(runFinder({"--content", given}).out, given + figure);
    EXPECT_EQ(runFinder({"--content=" + given}).out, given + figure);
    const ProgramResult told = RunProgram({"config", "set", "content", kept});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_NE(told.out.find("GANTREL_CONTENT is set in the environment"), told.out.npos) << told.out;
}

TEST_F(Config, says_where_a_wrong_setting_stands)
{
    {
        const ScopedVariable threads("GANTREL_THREADS", "0x2");
        ExpectError(runFinder(), 2, "GANTREL_THREADS \"0x2\" is no number from 1 to 1024.");
        ExpectSuccess(RunProgram({"--version"}));
    }
    const ScopedVariable empty("GANTREL_THREADS", ""); // as if it were not there
    ExpectError(RunProgram({"inspect", "none.obj"}), 1, "Cannot open none.obj: No such file or directory.");
    writeFile(R"({"threads": -1})");
    ExpectError(RunProgram({"inspect", "none.obj"}), 2,
                file + ": threads \"-1\" is no number from 1 to 1024.");
}

TEST_F(Config, stands_for_options_that_are_required_and_for_no_others)
{
    const ScopedVariable vendor("GANTREL_VENDOR", "Me"), product("GANTREL_PRODUCT", "Shapes");
    // Nothing is to be saved, so nothing of it is asked for.
    ExpectError(RunProgram({"convert", "--source", "none.duf", "--target", "none.duf"}), 1,
                "Cannot open none.duf: No such file or directory.");
    ExpectError(RunProgram({"convert", "--source", "none.duf", "--target", "none.duf", "--save-library",
                            workspace.path("out")}),
                1, "Cannot open none.duf: No such file or directory.");
    ExpectError(RunProgram({"convert-morphs", "--source", "none.duf", "--target", "none.duf", "--morphs", "A",
                            "B", "--save-library", workspace.path("out")}),
                1, "Cannot open none.duf: No such file or directory.");
    ExpectWrongUse(RunProgram({"convert", "--source", "a.duf", "--target", "b.duf", "--vendor", "Me"}),
                   "--save-library");
}

TEST_F(Config, gives_the_same_code_for_a_wrong_variable_everywhere)
{
    const ScopedVariable threads("GANTREL_THREADS", "abc");
    const std::string sentence = "GANTREL_THREADS \"abc\" is no number from 1 to 1024.";
    for (const char* const command : {"inspect", "list-dials"})
        ExpectError(RunProgram({command, "none.duf"}), 2, sentence);
    ExpectError(RunProgram({"config"}), 2, sentence);
    ExpectError(RunProgram({"sample-content", workspace.path("samples")}), 2, sentence);
    EXPECT_FALSE(workspace.has("samples"));
}

TEST_F(Config, tells_of_folders_that_are_not_there_and_later_whose_they_are)
{
    const std::string missing = workspace.path("missing");
    const ProgramResult kept = RunProgram({"config", "set", "content", missing});
    EXPECT_EQ(kept.exitCode, 0);
    EXPECT_NE(kept.out.find(missing + ": there is no such folder at the moment"), kept.out.npos) << kept.out;
    ExpectError(runFinder(), 1,
                missing + ": there is no such content directory (the setting content of " + file + ").");
    ExpectError(runFinder({"--content", missing}), 1, missing + ": there is no such content directory.");
    const ScopedVariable variable("GANTREL_CONTENT", missing);
    ExpectError(runFinder(), 1,
                missing + ": there is no such content directory (the setting content of GANTREL_CONTENT).");
}

TEST_F(Config, keeps_the_author_whom_saved_morphs_name)
{
    ExpectError(RunProgram({"config", "set", "author", " "}), 2, "Author is blank.");
    ExpectError(RunProgram({"config", "set", "author", "A\nB"}), 2,
                "Author has characters that nobody can see.");
    const std::string content = library("lib");
    const auto authorOf = [&](const std::string& name, const std::vector<std::string>& more) {
        std::vector<std::string> arguments{
            "convert",
            "--content",
            content,
            "--source",
            content + "/People/Genesis 8 Female/Developer Kit/Genesis 8 Female Dev Load.duf",
            "--target",
            content + "/People/Genesis 9/Genesis 9.duf",
            "--dial",
            "Wide=1",
            "--jobs",
            "full",
            "--name",
            name,
            "--save-library",
            workspace.path("saved"),
            "--vendor",
            "Acme",
            "--product",
            "Heroes"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        ExpectSuccess(RunProgram(arguments));
        const std::string saved =
            workspace.read("saved/data/DAZ 3D/Genesis 9/Base/Morphs/Acme/Heroes/" + name + ".dsf");
        return json::parse(saved).at("asset_info").at("contributor").at("author").get<std::string>();
    };
    EXPECT_EQ(authorOf("A", {}), "Acme");
    ExpectSuccess(RunProgram({"config", "set", "author", "Ida R\u00fchl"}));
    EXPECT_EQ(authorOf("B", {}), "Ida R\u00fchl");
    const ScopedVariable variable("GANTREL_AUTHOR", "Ben");
    EXPECT_EQ(authorOf("C", {}), "Ben");
    EXPECT_EQ(authorOf("D", {"--author", "Cleo"}), "Cleo");
    ExpectWrongUse(RunProgram({"convert", "--source", "a.duf", "--target", "b.duf", "--author", "Me"}),
                   "--save-library");
}

TEST_F(Config, keeps_what_two_programs_set_at_once)
{
    writeFile("{}");
    const auto set = [](const char* name, const std::string& value) {
        return RunProgram({"config", "set", name, value});
    };
    for (int i = 1; i <= 20; ++i) {
        SCOPED_TRACE(i);
        const std::string value = std::to_string(i);
        // Both have started before either can read, so that they go on at the same moment.
        HeldFile held(file);
        std::future<ProgramResult> one = std::async(std::launch::async, set, "vendor", value);
        std::future<ProgramResult> other = std::async(std::launch::async, set, "product", value);
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
        while (std::chrono::steady_clock::now() < end || !held.isWaitedFor())
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        held.letGo();
        ExpectSuccess(one.get());
        ExpectSuccess(other.get());
        const json kept = json::parse(workspace.read("config/gantrel/config.json"));
        EXPECT_EQ(kept, (json{{"vendor", value}, {"product", value}}));
    }
    EXPECT_EQ(filesBeside(), std::vector<std::string>{"config.json"});
}

TEST_F(Config, does_not_change_what_another_program_is_changing)
{
    const std::string text = R"({"vendor": "Me"})";
    writeFile(text);
    const int other = HoldLock(file + ".lock");
    ASSERT_GE(other, 0);
    ExpectError(RunProgram({"config", "set", "product", "Shapes"}), 1,
                "Cannot write " + file + ": another program is changing it.");
    EXPECT_EQ(workspace.read("config/gantrel/config.json"), text);
    EXPECT_TRUE(workspace.has("config/gantrel/config.json.lock")); // which is the other's
    EXPECT_EQ(RunProgram({"config", "set", "product", "Shapes", "--dry-run"}).exitCode, 0);
    EXPECT_EQ(RunProgram({"config"}).exitCode, 0);
    close(other);
    ExpectSuccess(RunProgram({"config", "set", "product", "Shapes"}));
    EXPECT_EQ(filesBeside(), std::vector<std::string>{"config.json"});
}

TEST_F(Config, goes_on_where_a_program_was_killed_while_it_changed_the_settings)
{
    writeFile("{}");
    const pid_t killed = fork();
    if (killed == 0) {
        if (HoldLock(file + ".lock") >= 0)
            std::raise(SIGKILL);
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(killed, &status, 0), killed);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_TRUE(workspace.has("config/gantrel/config.json.lock"));
    ExpectSuccess(RunProgram({"config", "set", "vendor", "Me"}));
    EXPECT_EQ(filesBeside(), std::vector<std::string>{"config.json"});
}

TEST_F(Config, says_what_lies_where_its_lock_would)
{
    writeFile("{}");
    std::filesystem::create_directory(file + ".lock");
    ExpectError(RunProgram({"config", "set", "vendor", "Me"}), 1,
                "Cannot write " + file + ".lock: Is a directory.");
    EXPECT_EQ(workspace.read("config/gantrel/config.json"), "{}");
}
