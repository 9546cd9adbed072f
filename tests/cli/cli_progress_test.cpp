// Progress on a terminal.
// SPDX-License-Identifier: MIT

#include "cli_conversion.h"
#include "cli_terminal.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace {

/// With how far the conversion is, where that is known.
const char* const steps[] = {
    R"(Loading the figures \.\.\.)",
    R"(\d+ %  (about \d+ s left  )?Exporting source as OBJ)",
    R"(\d+ %  (about \d+ s left  )?Running Transfer Utility to create morphs in fit)",
    R"(\d+ %  (about \d+ s left  )?Creating head morph)",
    R"(\d+ %  (about \d+ s left  )?Creating body morph)",
    R"(\d+ %  (about \d+ s left  )?Measuring the result)"};

class ProgressOnTerminal : public ConversionTest {};

/// Lines end in both on a terminal.
std::string WithoutCarriageReturns(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

} // namespace

TEST_F(ProgressOnTerminal, shows_each_step_and_leaves_nothing_of_it)
{
    const TerminalResult result = RunOnTerminal(arguments(), 100);
    EXPECT_EQ(result.exitCode, 0);
    std::string rest = result.bytes;
    for (const char* step : steps) {
        std::smatch found;
        ASSERT_TRUE(std::regex_search(rest, found, std::regex(std::string("\\r\x1b\\[K") + step))) << step;
        rest = found.suffix();
    }
    ASSERT_FALSE(result.screen.empty());
    EXPECT_EQ(result.screen.front(), "figures");
    for (const std::string& line : result.screen)
        EXPECT_FALSE(std::regex_search(line, std::regex(R"( %  | \.\.\.)"))) << line;
}

TEST_F(ProgressOnTerminal, tells_how_far_it_is_and_never_goes_back)
{
    const TerminalResult result = RunOnTerminal(arguments(), 100);
    const std::regex percent("\\r\x1b\\[K(\\d+) %  ");
    std::vector<int> told;
    for (std::sregex_iterator found(result.bytes.begin(), result.bytes.end(), percent), none; found != none;
         ++found)
        told.push_back(std::stoi((*found)[1]));
    ASSERT_GT(told.size(), 10u);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GT(told.back(), told.front());
    EXPECT_LT(told.back(), 100);
}

TEST_F(ProgressOnTerminal, leaves_the_error_alone_on_the_line)
{
    const TerminalResult result =
        RunOnTerminal(argumentsFor(sourceFile(), targetFile(), {"--dial", "Wide=0"}), 200);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(std::regex_search(result.bytes, std::regex(steps[0])));
    ASSERT_EQ(result.screen.size(), 1u);
    EXPECT_EQ(result.screen.front(), "gantrel: Source figure \xE2\x80\x9CGenesis 8 Female\xE2\x80\x9D has no "
                                     "morphs dialed in; nothing to do.");
}

TEST_F(ProgressOnTerminal, keeps_to_one_line_of_a_narrow_window)
{
    // "Reading" and the file's whole path are longer than that.
    const unsigned short columns = 40;
    ASSERT_GT(targetFile().size(), columns);
    const TerminalResult result =
        RunOnTerminal({"render", targetFile(), "--out", workspace.path("a.png"), "--size", "20x20"}, columns);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_GT(result.longestCleared, 0u);
    EXPECT_LT(result.longestCleared, columns);
    EXPECT_EQ(result.screen, std::vector<std::string>{workspace.path("a.png") + ": 20 x 20 pixels"});
}

TEST_F(ProgressOnTerminal, is_not_shown_with_json)
{
    const TerminalResult result = RunOnTerminal(arguments({"--json"}), 100);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.bytes.front(), '{');
    EXPECT_EQ(result.bytes.find('\x1b'), std::string::npos);
    EXPECT_NO_THROW(nlohmann::json::parse(WithoutCarriageReturns(result.bytes)));
}

TEST_F(ProgressOnTerminal, is_not_shown_when_quiet_or_beside_the_log)
{
    EXPECT_EQ(RunOnTerminal(arguments({"--quiet"}), 100).bytes, "");
    const TerminalResult verbose = RunOnTerminal(arguments({"--verbose"}), 100);
    EXPECT_EQ(verbose.exitCode, 0);
    EXPECT_EQ(verbose.bytes.find('\x1b'), std::string::npos);
}

TEST_F(ProgressOnTerminal, is_not_shown_to_a_pipe)
{
    const ProgramResult result = convert();
    ExpectSuccess(result);
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
    EXPECT_EQ(result.err, "");
}

TEST_F(ProgressOnTerminal, is_told_in_lines_to_a_program_that_wants_them)
{
    const std::string table = workspace.write("told.json", "[{\"name\": \"Told\"}]");
    std::vector<std::string> words = arguments();
    words.erase(words.begin()); // "convert", whose options stand for those of rows
    words.insert(words.begin(), {"batch", table, "--row", "1", "--progress-lines", "--json"});
    const ProgramResult result = RunProgram(words);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::istringstream lines(result.err);
    std::vector<int> told;
    for (std::string line; std::getline(lines, line);) {
        std::smatch found;
        ASSERT_TRUE(std::regex_match(line, found, std::regex(R"(progress: ((\d+) %  )?.*)"))) << line;
        if (found[2].matched)
            told.push_back(std::stoi(found[2]));
    }
    EXPECT_GT(told.size(), 10u);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_TRUE(nlohmann::json::accept(result.out)) << result.out;
}
