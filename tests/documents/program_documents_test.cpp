// What is written about the programs themselves.
// SPDX-License-Identifier: MIT

#include "command.h"
#include "command_tree.h"
#include "completion.h"
#include "desktop_options.h"
#include "man_page.h"
#include "program.h"

#include <array>
#include <cstdio>
#include <sstream>

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

namespace {

/// The command line's tree. The context lives as long.
struct CommandLine {
    CommandLine() { cli::DescribeProgram(app, context); }

    cli::CommandContext context;
    CLI::App app;
};

std::string PageOf(const documents::Command& command, const documents::Command& program)
{
    return documents::SubcommandPage(command, program, {"1.0", "2001-02-03", "gantrel"});
}

std::string WithEscapedHyphens(const std::string& text)
{
    std::string escaped;
    for (const char c : text)
        escaped += c == '-' ? std::string("\\-") : std::string(1, c);
    return escaped;
}

/// A shell takes the lines apart, as it would for a user.
std::vector<std::string> WordsOf(const std::string& example)
{
    const std::string command = "printf '%s\\n' " + example.substr(example.find(' '));
    std::FILE* const shell = popen(command.c_str(), "r");
    std::string words;
    std::array<char, 256> part{};
    while (std::fgets(part.data(), static_cast<int>(part.size()), shell))
        words += part.data();
    pclose(shell);
    std::vector<std::string> list;
    std::istringstream lines(words);
    for (std::string line; std::getline(lines, line);)
        list.push_back(line);
    return list;
}

/// Several commands may stand in one example; each begins at the left.
std::vector<std::string> CommandsOf(const std::string& example)
{
    std::vector<std::string> commands;
    std::istringstream lines(example);
    for (std::string line; std::getline(lines, line);)
        if (commands.empty() || line[0] != ' ')
            commands.push_back(line);
        else
            commands.back() += '\n' + line;
    return commands;
}

TEST(ProgramDocuments, name_every_option_of_every_subcommand)
{
    const CommandLine line;
    const documents::Command program = documents::ReadCommand(line.app);
    const std::string bash = documents::BashCompletion(program), zsh = documents::ZshCompletion(program),
                      fish = documents::FishCompletion(program);
    ASSERT_GE(program.subcommands.size(), 10U);
    for (const documents::Command& command : program.subcommands) {
        const std::string page = PageOf(command, program),
                          help = line.app.get_subcommand(command.name)->help();
        ASSERT_GE(command.options.size(), 3U) << command.name;
        for (const documents::Argument& option : command.options)
            for (const std::string& name : option.names) {
                SCOPED_TRACE(command.name + ' ' + name);
                EXPECT_NE(help.find(name), help.npos);
                EXPECT_NE(page.find("\\fB" + WithEscapedHyphens(name) + "\\fR"), page.npos);
                EXPECT_NE(bash.find(name), bash.npos);
                EXPECT_NE(zsh.find(name), zsh.npos);
                EXPECT_NE(fish.find(name.substr(name.find_first_not_of('-'))), fish.npos);
            }
    }
}

TEST(ProgramDocuments, have_a_description_for_everything)
{
    const CommandLine line;
    for (const documents::Command& command : documents::ReadCommand(line.app).subcommands) {
        EXPECT_FALSE(command.description.empty()) << command.name;
        for (const auto& arguments : {command.options, command.positionals})
            for (const documents::Argument& argument : arguments)
                EXPECT_FALSE(argument.description.empty()) << command.name << ' ' << argument.positional;
    }
}

TEST(ProgramDocuments, give_examples_that_the_program_understands)
{
    for (const documents::Command& command : documents::ReadCommand(CommandLine().app).subcommands) {
        ASSERT_FALSE(command.example.empty()) << command.name;
        for (const std::string& example : CommandsOf(command.example)) {
            CommandLine line;
            std::vector<std::string> words = WordsOf(example);
            ASSERT_FALSE(words.empty()) << example;
            EXPECT_EQ(words[0], command.name);
            std::reverse(words.begin(), words.end()); // as the parser wants them
            EXPECT_NO_THROW(line.app.parse(words)) << example;
            EXPECT_TRUE(line.context.work) << example;
        }
    }
}

TEST(ProgramDocuments, name_every_option_of_the_application)
{
    CLI::App app;
    desktop::Options options;
    desktop::DescribeProgram(app, options);
    const documents::Command program = documents::ReadCommand(app);
    const std::string page = documents::ProgramPage(program, {"1.0", "2001-02-03", "gantrel"});
    EXPECT_NE(page.find("\\-\\-allow\\-processes"), page.npos);
    EXPECT_NE(documents::BashCompletion(program).find("_gantrel_desktop()"), std::string::npos);
    EXPECT_EQ(program.positionals.size(), 1U);
}

} // namespace
