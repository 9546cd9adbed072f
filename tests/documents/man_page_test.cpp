// Pages of the manual as man reads them.
// SPDX-License-Identifier: MIT

#include "man_page.h"

#include <gtest/gtest.h>

namespace {

const documents::PageFacts facts{"1.2.3", "2001-02-03", "program"};

documents::Command Program(const std::string& description)
{
    documents::Command program;
    program.name = "program";
    program.description = description;
    return program;
}

bool Has(const std::string& page, const std::string& part)
{
    return page.find(part) != page.npos;
}

TEST(ManPage, has_name_version_and_day_in_its_head)
{
    const std::string page = documents::ProgramPage(Program("Program: does things."), facts);
    EXPECT_TRUE(Has(page, ".TH PROGRAM 1 2001\\-02\\-03 \"program 1.2.3\"")) << page;
    EXPECT_TRUE(Has(page, "program \\- does things\n")) << page;
}

TEST(ManPage, takes_nothing_in_a_text_for_a_request)
{
    documents::Command program = Program("Does things");
    documents::Argument option;
    option.names = {"--dot"};
    option.description = ".hidden files, 'quoted' \\ and a-b";
    program.options.push_back(option);
    const std::string page = documents::ProgramPage(program, facts);
    EXPECT_TRUE(Has(page, "\n\\&.hidden files, 'quoted' \\e and a\\-b.\n")) << page;
}

TEST(ManPage, shows_in_the_synopsis_what_is_required)
{
    documents::Command program = Program("Does things"), command = Program("Does one thing");
    command.name = "do";
    documents::Argument needed;
    needed.names = {"--needed"};
    needed.value.kind = documents::Value::Kind::Text;
    needed.value.placeholder = "TEXT";
    needed.isRequired = true;
    documents::Argument free = needed;
    free.names = {"--free"};
    free.isRequired = false;
    command.options = {needed, free};
    const std::string page = documents::SubcommandPage(command, program, facts);
    const std::string synopsis = page.substr(0, page.find(".SH DESCRIPTION"));
    EXPECT_TRUE(Has(synopsis, "\\fB\\-\\-needed\\fR \\fITEXT\\fR")) << synopsis;
    EXPECT_FALSE(Has(synopsis, "free")) << synopsis;
    EXPECT_TRUE(Has(page, ".TH PROGRAM\\-DO 1 ")) << page;
}

} // namespace
