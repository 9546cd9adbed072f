// Help, version and wrong use of the program.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"

namespace {

const char* const subcommands[] = {"sample-content", "make-figure", "convert", "batch",
                                   "transfer",       "inspect",     "render"};

} // namespace

TEST(CommandLine, lists_its_subcommands_in_the_help)
{
    const ProgramResult result = RunProgram({"--help"});
    ExpectSuccess(result);
    for (const char* subcommand : subcommands)
        EXPECT_NE(result.out.find(subcommand), std::string::npos) << subcommand;
}

TEST(CommandLine, has_help_and_version_for_every_subcommand)
{
    for (const char* subcommand : subcommands) {
        SCOPED_TRACE(subcommand);
        const ProgramResult help = RunProgram({subcommand, "--help"});
        ExpectSuccess(help);
        EXPECT_NE(help.out.find("--help"), std::string::npos);
        const ProgramResult version = RunProgram({subcommand, "--version"});
        ExpectSuccess(version);
        EXPECT_EQ(version.out, "gantrel " GANTREL_VERSION "\n");
    }
}

TEST(CommandLine, wants_a_subcommand)
{
    ExpectWrongUse(RunProgram({}), "subcommand");
}

TEST(CommandLine, refuses_an_unknown_subcommand)
{
    ExpectWrongUse(RunProgram({"transmogrify"}), "transmogrify");
}

TEST(CommandLine, refuses_an_unknown_option)
{
    ExpectWrongUse(RunProgram({"inspect", "a.obj", "--colour"}), "--colour");
}

TEST(CommandLine, names_a_required_option_that_is_missing)
{
    ExpectWrongUse(RunProgram({"transfer", "--source-neutral", "a.obj"}), "required");
}

TEST(CommandLine, refuses_names_of_files_that_are_empty)
{
    ExpectWrongUse(RunProgram({"inspect", ""}), "FILE: the name is empty");
    ExpectWrongUse(RunProgram({"render", "a.obj", "--out", ""}), "--out: the name is empty");
    ExpectWrongUse(RunProgram({"convert", "--source", "", "--target", "b.duf"}),
                   "--source: the name is empty");
    ExpectWrongUse(RunProgram({"sample-content", ""}), "DIR: the name is empty");
}

TEST(CommandLine, refuses_an_unknown_view)
{
    ExpectWrongUse(RunProgram({"render", "a.obj", "--out", "a.png", "--view", "sideways"}), "\"sideways\"");
}

TEST(CommandLine, refuses_a_size_that_is_none)
{
    for (const char* size : {"big", "0x10", "10x", "10x-3", "10x20x30", "10x99999"})
        ExpectWrongUse(RunProgram({"render", "a.obj", "--out", "a.png", "--size", size}), size);
}

TEST(CommandLine, refuses_a_dial_without_a_number)
{
    for (const char* dial : {"Smile", "=1", "Smile=", "Smile=much", "Smile=nan", "Smile=1e999"})
        ExpectWrongUse(RunProgram({"render", "a.duf", "--out", "a.png", "--dial", dial}), dial);
}

TEST(CommandLine, refuses_an_unknown_kind_of_figure)
{
    ExpectWrongUse(RunProgram({"make-figure", "--kind", "genesis7", "--mesh", "a.obj", "--skeleton", "s.json",
                               "--weights", "w.json", "--library", "lib"}),
                   "\"genesis7\"");
}

TEST(CommandLine, refuses_a_morph_without_a_file)
{
    ExpectWrongUse(RunProgram({"make-figure", "--kind", "genesis9", "--mesh", "a.obj", "--skeleton", "s.json",
                               "--weights", "w.json", "--library", "lib", "--morph", "Smile"}),
                   "\"Smile\"");
}

TEST(CommandLine, tells_errors_as_json_where_that_is_wanted)
{
    const std::string missing = "Cannot open none.obj: No such file or directory.";
    ExpectJsonError(RunProgram({"inspect", "--json", "none.obj"}), 1, missing);
    ExpectJsonError(RunProgram({"transfer", "--source-neutral", "none.obj", "--source-morphed", "none.obj",
                                "--target-neutral", "none.obj", "--out", "out.obj", "--json"}),
                    1, missing);
    ExpectJsonError(RunProgram({"list-dials", "--json", "none.duf"}), 1,
                    "Cannot open none.duf: No such file or directory.");
    ExpectError(RunProgram({"inspect", "none.obj"}), 1, missing);
    // Also of wrong use, whether the parser finds it or the subcommand.
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"convert", "--json", "--source", "a.duf"},
          {"convert", "--source", "a.duf", "--target", "b.duf", "--jobs", "tail", "--json"}}) {
        const ProgramResult result = RunProgram(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ("gantrel: " + nlohmann::json::parse(result.out).at("error").get<std::string>() + "\n",
                  result.err);
    }
    ExpectWrongUse(RunProgram({"render", "a.obj", "--out", "a.png", "--json"}), "--json"); // has none
}
