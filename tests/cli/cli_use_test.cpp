// Help, version and wrong use of the program.
// SPDX-License-Identifier: MIT

#include "cli_expectations.h"
#include "cli_workspace.h"

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

TEST(CommandLine, proposes_the_subcommand_that_was_meant)
{
    const auto refused = [](const char* word, const std::string& sentence) {
        ExpectError(RunProgram({word, "--source", "a.duf"}), 2, sentence);
    };
    refused("covnert", "There is no subcommand \"covnert\"; did you mean convert?");
    refused("inspct", "There is no subcommand \"inspct\"; did you mean inspect?");
    refused("list", "There is no subcommand \"list\"; did you mean list-dials?");
    const std::string helps = "; --help lists those that there are.";
    refused("batch-worke", "There is no subcommand \"batch-worke\"" + helps); // one that is nobody's
    refused("help", "There is no subcommand \"help\"" + helps);
    refused("x", "There is no subcommand \"x\"" + helps);
}

TEST(CommandLine, leads_to_its_help)
{
    ExpectError(RunProgram({"help", "convert"}), 2,
                "There is no subcommand \"help\"; convert --help tells of convert.");
    ExpectError(RunProgram({"help", "inspect", "a.obj"}), 2,
                "There is no subcommand \"help\"; inspect --help tells of inspect.");
}

TEST(CommandLine, names_the_words_and_the_options_of_which_one_is_wanted)
{
    ExpectError(RunProgram({"convert", "--source", "a", "--target", "b", "--resolution", "high"}), 2,
                "--resolution: \"high\" is none of base, subd.");
    std::vector<std::string> morphs{
        "convert-morphs", "--source", "a",         "--target", "b", "--save-library", "c",
        "--vendor",       "d",        "--product", "e"};
    ExpectError(RunProgram(morphs), 2, "--morphs or --list is required.");
    morphs.insert(morphs.end(), {"--morphs", "*", "--list", "f"});
    ExpectError(RunProgram(morphs), 2, "--morphs and --list cannot both be given.");
}

TEST(CommandLine, proposes_the_option_that_was_meant)
{
    // Also where the parser misses the very option that was misspelt.
    ExpectError(RunProgram({"convert", "--sorce", "a.duf", "--target", "b.duf"}), 2,
                "There is no option --sorce for convert; did you mean --source?");
    ExpectError(RunProgram({"convert", "--source", "a.duf", "--target", "b.duf", "--overwite=1"}), 2,
                "There is no option --overwite for convert; did you mean --overwrite?");
    ExpectError(RunProgram({"convert-morphs", "--controlers", "--morphs", "A"}), 2,
                "There is no option --controlers for convert-morphs; did you mean --controllers?");
    ExpectError(RunProgram({"inspect", "a.obj", "--" + std::string(100000, 'x')}), 2,
                "There is no option --" + std::string(100000, 'x') + " for inspect.");
    ExpectJsonError(RunProgram({"--json", "inspect", "a.obj"}), 2,
                    "--json is an option of inspect, behind which it belongs.");
    ExpectError(RunProgram({"--versoin"}), 2,
                "There is no option --versoin for gantrel; did you mean --version?");
}

TEST(CommandLine, takes_options_of_the_whole_program_on_both_sides_of_the_subcommand)
{
    const Workspace workspace;
    const std::string file = workspace.write("hello.js", "print('Hello');");
    for (const char* option : {"--verbose", "--quiet"})
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{option, "script", file}, {"script", option, file}}) {
            SCOPED_TRACE(option);
            const ProgramResult result = RunProgram(arguments);
            EXPECT_EQ(result.exitCode, 0) << result.err;
            EXPECT_EQ(result.out, "Hello\n");
            EXPECT_EQ(result.err.empty(), std::string(option) == "--quiet") << result.err;
        }
    ExpectWrongUse(RunProgram({"--quiet", "script", file, "--verbose"}), "--quiet excludes --verbose");
    ExpectWrongUse(RunProgram({"script", file, "--verbose", "--quiet"}), "--quiet excludes --verbose");
    // Also where the object is to be on the standard output.
    ExpectJsonError(RunProgram({"--quiet", "inspect", "--json", "none.obj"}), 1,
                    "Cannot open none.obj: No such file or directory.");
}

TEST(CommandLine, tells_exit_codes_in_every_help)
{
    EXPECT_NE(RunProgram({"--help"}).out.find("Exit codes: 0 "), std::string::npos);
    for (const char* subcommand : subcommands)
        EXPECT_NE(RunProgram({subcommand, "--help"}).out.find("Exit codes: 0 "), std::string::npos)
            << subcommand;
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

TEST(WrongUse, of_a_base_names_what_is_wrong_with_it)
{
    const auto expect = [](const std::string& base, const std::string& sentence) {
        ExpectError(RunProgram({"convert", "--source", "a.duf", "--target", "b.duf", "--base", base}), 2,
                    sentence);
    };
    expect("hight=auto",
           "--base names \"hight\"; the bases are clone, feminine, masculine and height; did you "
           "mean height?");
    expect("clone=auto", "--base clone=auto: only height can be auto.");
    expect("clone=0,5", "\"clone=0,5\" has a comma in its number, which takes a point: 0.5.");
    expect("clone=", "\"clone=\" has no number behind the equals sign.");
    expect("clone", "\"clone\" is not of the form NAME=VALUE.");
}

TEST(WrongUse, of_an_option_that_is_given_twice_or_without_a_value_says_so)
{
    ExpectError(RunProgram({"render", "a.duf", "--out", "a.png", "--out", "b.png"}), 2,
                "--out is given 2 times, and takes one value.");
    ExpectError(RunProgram({"render", "a.duf", "--out"}), 2,
                "--out needs a value behind it: FILE.png|FILE.jpg.");
}

TEST(NumbersOfDials, may_have_blanks_and_a_plus)
{
    const Workspace workspace;
    const std::string out = workspace.path("a.png");
    for (const char* const dial : {"A=+50%", "A=150 %", "A= 0.5 ", "A=+.5"})
        ExpectError(RunProgram({"render", "a.duf", "--out", out, "--dial", dial}), 1,
                    "Cannot open a.duf: No such file or directory.");
    for (const char* const dial : {"A=+-5", "A=%", "A=1 000", "A=", "A=+"})
        ExpectWrongUse(RunProgram({"render", "a.duf", "--out", out, "--dial", dial}), "has no number");
    ExpectWrongUse(RunProgram({"render", "a.duf", "--out", out, "--dial", "A=0,5 %"}), "takes a point: 0.5");
}

TEST(ClosedOutput, ends_a_command_without_a_word)
{
    const Workspace workspace;
    const std::string cube = workspace.write("cube.obj", CubeText(0.0));
    // Whoever reads the pipe has gone before the first byte comes.
    const std::string script = workspace.write("run", R"(mkfifo "$2/gone"
        (exec 3<"$2/gone"; exec 3<&-; touch "$2/closed") & reader=$!
        exec 4>"$2/gone"
        wait $reader
        "$1" inspect "$3" >&4 2>"$2/told"
        echo $? >"$2/code")");
    ASSERT_EQ(std::system(
                  ("bash '" + script + "' '" GANTREL_PROGRAM "' '" + workspace.path("") + "' '" + cube + "'")
                      .c_str()),
              0);
    EXPECT_EQ(workspace.read("told"), "");
    EXPECT_EQ(workspace.read("code"), "141\n"); // the shell's number for SIGPIPE
}

TEST(Usage, names_what_is_required_without_brackets)
{
    const auto usage = [](const std::vector<std::string>& arguments) {
        const std::string help = RunProgram(arguments).out;
        const std::size_t at = help.find("Usage: ");
        return help.substr(at, help.find('\n', at) - at);
    };
    EXPECT_EQ(usage({"--help"}), "Usage: gantrel [OPTIONS] SUBCOMMAND");
    EXPECT_EQ(usage({"batch", "--help"}), "Usage: gantrel batch [OPTIONS] [TABLE]") << "--merge needs none";
    EXPECT_EQ(usage({"render", "--help"}), "Usage: gantrel render [OPTIONS] FILE");
}
