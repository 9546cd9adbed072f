// Colours on a terminal.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_terminal.h"

namespace {

const std::string red = "\x1b[1;31m", yellow = "\x1b[1;33m", bold = "\x1b[1m", plain = "\x1b[0m";

using Environment = std::vector<std::pair<std::string, std::string>>;

class Colors : public ConversionTest {
protected:
    std::string cube = workspace.write("cube.obj", CubeText(0.0) + "v 100000 0 0\nf 1 2 -1\n");

    std::vector<std::string> warned(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> all{"render", cube, "--out", workspace.path("a.png"), "--size", "16x16"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
    static std::string errorBytes(const std::vector<std::string>& options,
                                  const Environment& environment = {})
    {
        std::vector<std::string> all{"inspect", "none.obj"};
        all.insert(all.end(), options.begin(), options.end());
        return RunOnTerminal(all, 100, environment).bytes;
    }
};

} // namespace

TEST_F(Colors, mark_errors_warnings_and_headings)
{
    const std::string sentence = " Cannot open none.obj: No such file or directory.";
    EXPECT_NE(errorBytes({}).find(red + "gantrel:" + plain + sentence), std::string::npos);
    const TerminalResult warnings = RunOnTerminal(warned(), 200);
    EXPECT_EQ(warnings.exitCode, 0);
    EXPECT_NE(
        warnings.bytes.find(yellow + "gantrel:" + plain + ' ' + yellow + "warning:" + plain + ' ' + cube),
        std::string::npos)
        << warnings.bytes;
    const std::string list = RunOnTerminal({"list-dials", sourceFile()}, 100).bytes;
    EXPECT_EQ(list.find(bold), list.rfind(bold)); // the headings alone
    EXPECT_NE(list.find(bold), std::string::npos) << list;
}

TEST_F(Colors, are_left_out_where_they_are_not_wanted)
{
    const auto isPlain = [](const std::string& bytes) {
        return bytes.find("gantrel: Cannot") != std::string::npos && bytes.find(red) == std::string::npos;
    };
    EXPECT_FALSE(isPlain(errorBytes({})));
    EXPECT_FALSE(isPlain(errorBytes({}, {{"NO_COLOR", ""}})));
    EXPECT_TRUE(isPlain(errorBytes({}, {{"NO_COLOR", "0"}})));
    EXPECT_TRUE(isPlain(errorBytes({}, {{"TERM", "dumb"}})));
    EXPECT_TRUE(isPlain(errorBytes({"--color", "never"})));
    EXPECT_TRUE(isPlain(errorBytes({"--color=auto"}, {{"NO_COLOR", "1"}})));
    EXPECT_FALSE(isPlain(errorBytes({"--color=always"}, {{"NO_COLOR", "1"}, {"TERM", "dumb"}})));
    EXPECT_EQ(RunProgram({"inspect", "none.obj"}).err,
              "gantrel: Cannot open none.obj: No such file or directory.\n");
}

TEST_F(Colors, are_told_in_front_of_the_subcommand_and_behind_it)
{
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--color", "always", "inspect", "none.obj"},
          {"inspect", "--color", "always", "none.obj"}})
        EXPECT_EQ(RunProgram(arguments).err.substr(0, red.size()), red);
    ExpectWrongUse(RunProgram({"inspect", "none.obj", "--color", "blue"}),
                   "\"blue\" is none of auto, always, never");
    ExpectWrongUse(RunProgram({"--color=", "inspect", "none.obj"}), "--color");
    EXPECT_EQ(RunProgram({"--color", "never", "inspect", "none.obj", "--bogus"}).err.find('\x1b'),
              std::string::npos);
}
