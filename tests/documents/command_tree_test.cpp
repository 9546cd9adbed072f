// What a parser understands, as it is read off it.
// SPDX-License-Identifier: MIT

#include "command_tree.h"
#include "options.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

namespace {

using Kind = documents::Value::Kind;
using Texts = std::vector<std::string>;

class CommandTree : public testing::Test {
protected:
    CLI::Option* add(const char* name, const char* type)
    {
        return app.add_option(name, text, "What it is for")->type_name(type);
    }
    documents::Argument only()
    {
        const documents::Command command = documents::ReadCommand(app);
        const auto& arguments = command.options.empty() ? command.positionals : command.options;
        EXPECT_EQ(arguments.size(), 1U);
        return arguments.at(0);
    }

    CLI::App app{"A program", "program"};
    std::string text;

    void SetUp() override { app.set_help_flag(); }
};

TEST_F(CommandTree, knows_files_by_their_endings)
{
    add("--out", "FILE.duf|FILE.obj");
    EXPECT_EQ(only().value.kind, Kind::File);
    EXPECT_EQ(only().value.endings, (Texts{"duf", "obj"}));
}

TEST_F(CommandTree, knows_endings_that_may_be_there)
{
    add("--weights", "W.json[.gz]");
    EXPECT_EQ(only().value.endings, (Texts{"json", "json.gz"}));
}

TEST_F(CommandTree, knows_files_behind_a_name)
{
    add("--morph", "NAME=FILE.obj|FILE.csv[.gz]");
    EXPECT_EQ(only().value.kind, Kind::NamedFile);
    EXPECT_EQ(only().value.endings, (Texts{"obj", "csv", "csv.gz"}));
}

TEST_F(CommandTree, knows_files_of_any_name_and_folders)
{
    add("--list", "FILE");
    EXPECT_EQ(only().value.kind, Kind::File);
    EXPECT_TRUE(only().value.endings.empty());
    app.remove_option(app.get_option("--list"));
    add("--content", "DIR");
    EXPECT_EQ(only().value.kind, Kind::Folder);
    app.remove_option(app.get_option("--content"));
    add("place", "FILE.duf|FOLDER");
    EXPECT_EQ(only().value.kind, Kind::FileOrFolder);
    EXPECT_EQ(only().positional, "place");
}

TEST_F(CommandTree, knows_words_and_where_they_stand)
{
    cli::AllowWords(*add("--view", "VIEW"), {"front", "side"});
    EXPECT_EQ(only().value.kind, Kind::Word);
    EXPECT_EQ(only().value.words, (Texts{"front", "side"}));
    EXPECT_EQ(only().value.placeholder, "VIEW");
    app.remove_option(app.get_option("--view"));
    cli::ListWords(*add("--jobs", "LIST"), {"head"});
    EXPECT_EQ(only().value.kind, Kind::WordList);
    app.remove_option(app.get_option("--jobs"));
    cli::ListWords(*add("--base", "DIAL=VALUE"), {"height"});
    EXPECT_EQ(only().value.kind, Kind::WordAndText);
}

TEST_F(CommandTree, takes_everything_else_for_a_text)
{
    for (const char* type : {"TEXT", "NAME=VALUE", "WxH", "N"}) {
        add("--thing", type);
        EXPECT_EQ(only().value.kind, Kind::Text) << type;
        app.remove_option(app.get_option("--thing"));
    }
}

TEST_F(CommandTree, knows_numbers_with_a_range)
{
    add("--level", "LEVEL")->check(CLI::Range(1, 5));
    EXPECT_EQ(only().value.least, "1");
    EXPECT_EQ(only().value.most, "5");
}

TEST_F(CommandTree, tells_flags_and_what_repeats)
{
    app.add_flag("--quiet", "Say nothing");
    EXPECT_EQ(only().value.kind, Kind::Nothing);
    app.remove_option(app.get_option("--quiet"));
    std::vector<std::string> texts;
    app.add_option("--each", texts, "Once for each")->type_name("TEXT")->allow_extra_args(false);
    EXPECT_TRUE(only().canRepeat);
    EXPECT_FALSE(only().takesSeveral);
    app.get_option("--each")->allow_extra_args(true);
    EXPECT_TRUE(only().takesSeveral);
}

TEST_F(CommandTree, leaves_out_hidden_subcommands_and_opens_groups)
{
    app.add_subcommand("shown", "Shown");
    app.add_subcommand("hidden", "Hidden")->group("");
    CLI::Option_group* const group = app.add_option_group("Choice", "One of them");
    group->add_option("--one", text);
    group->add_option("--other", text);
    group->require_option(1);
    const documents::Command command = documents::ReadCommand(app);
    ASSERT_EQ(command.subcommands.size(), 1U);
    EXPECT_EQ(command.subcommands[0].name, "shown");
    ASSERT_EQ(command.options.size(), 2U);
    EXPECT_EQ(command.options[0].oneOf, (Texts{"--one", "--other"}));
}

TEST_F(CommandTree, reads_the_example_without_its_indent)
{
    app.footer("Example:\n  program \\\n      --more");
    EXPECT_EQ(documents::ReadCommand(app).example, "program \\\n    --more");
}

} // namespace
